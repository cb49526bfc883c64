"""What the README says of backups: they are there, and one is put back."""

import shutil

import harness
from dayprogram import UNNAMED, DayProgram
from harness import STORE

TASK = "Årsopgørelse"


class Backup(harness.Story):
    program = DayProgram

    def shouldComeBackFromABackup(self):
        folder = self.home / STORE
        with self.running() as program:
            self.make_task(program, TASK)
            program.quit()
            program.ends_well()
        self.assertEqual(sorted(file.name for file in folder.iterdir()),
                         ["backups", "store.sqlite", "store.sqlite-reserve"])
        backup, = (folder / "backups").iterdir()
        self.assertRegex(backup.name, r"^\d{4}-\d\d-\d\d\.sqlite$")
        copy = self.home / "copy.sqlite"
        shutil.copy(backup, copy)

        # What is beside the store after a kill goes with it.
        with self.running() as program:
            self.make_task(program, "Efter kopien")
            program.kill()
        for file in folder.glob("store.sqlite*"):
            file.unlink()
        shutil.copy(copy, folder / "store.sqlite")
        with self.running() as program:
            program.row(TASK)
            self.assertEqual(len(program.all("list item")), 1)
            program.quit()
            program.ends_well()

    def make_task(self, program, name):
        program.press_button("Ny opgave")
        program.row(UNNAMED)
        program.rename(UNNAMED, name)


if __name__ == "__main__":
    harness.main()
