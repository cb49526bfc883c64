"""The system's time zone changes while the program runs, as on a laptop that travels."""

import datetime
import os
import pathlib
import subprocess
import unittest

import harness
from dayprogram import UNNAMED, DayProgram
from harness import danish_date

# Gives the program a file system of its own, in which /etc is the folder named first. What the
# folder's links lead to is the machine's /etc, under the name given second.
IN_ITS_OWN_ETC = 'mount --bind /etc "$2" && mount --bind "$1" /etc && shift 2 && exec "$@"'
NAMESPACE = ["unshare", "--mount", "--map-current-user", "--keep-caps", "sh", "-c", IN_ITS_OWN_ETC,
             "sh"]


class Zone(harness.Story):
    program = DayProgram

    def setUp(self):
        super().setUp()
        self.etc = self.home / "etc"
        machine = self.home / "machine"
        self.etc.mkdir()
        machine.mkdir()
        for entry in pathlib.Path("/etc").iterdir():
            (self.etc / entry.name).symlink_to(machine / entry.name)
        self.command = [*NAMESPACE, str(self.etc), str(machine)]
        if subprocess.run([*self.command, "true"], check=False).returncode != 0:
            raise unittest.SkipTest("There is no right to a file system of one's own here")
        # Noon, more or less, so that the hour before and the hour after are of the same day.
        self.hours = 12 - datetime.datetime.now(datetime.timezone.utc).hour
        self.go_to(self.hours)

    def environment(self):
        """Without a zone of its own: the program is in the system's."""
        return {name: value for name, value in super().environment().items() if name != "TZ"}

    def go_to(self, hours):
        """Moves the system to another zone, as its settings do: by a new link in one step."""
        link = self.etc / "new"
        link.symlink_to(f"/usr/share/zoneinfo/Etc/GMT{-hours:+d}" if hours else
                        "/usr/share/zoneinfo/Etc/GMT")
        os.rename(link, self.etc / "localtime")

    def shouldShowDaysAsTheyAreInANewZone(self):
        with self.running() as program:
            program.see("text", danish_date())
            self.make_task(program, "Hjemme")

            # Eastward: tasks that are made there are seen there.
            self.go_to(self.hours + 1)
            self.make_task(program, "Østpå")
            program.row("Hjemme")
            program.see("text", danish_date())

            # Westward the day that is shown began on the evening before.
            self.go_to(self.hours - 1)
            program.see("text", danish_date(-1))
            program.row("Hjemme")
            program.row("Østpå")
            program.press_button(danish_date())
            program.see("text", danish_date())
            program.see_none("list item", "Hjemme")
            self.make_task(program, "Vestpå")
            program.quit()
            program.ends_well()

    def make_task(self, program, name):
        program.press_button("Ny opgave")
        program.row(UNNAMED)
        program.rename(UNNAMED, name)


if __name__ == "__main__":
    harness.main()
