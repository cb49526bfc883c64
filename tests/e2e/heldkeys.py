"""Keys that are held down, on a machine that is busy with other things, too: then one half of a
repetition often reaches the program before the other.
"""

import contextlib
import os
import subprocess
import sys
import time

import harness
from dayprogram import UNNAMED, DayProgram
from gi.repository import Atspi
from harness import danish_date, has_state, press, wait_until, write, xdotool

NAME = "Kørsel"


@contextlib.contextmanager
def busy_machine():
    """Processes that compute without end, on all processors but one. On that one, the program's
    threads wait for each other."""
    processes = [subprocess.Popen([sys.executable, "-c", "while True: pass"])
                 for _ in range(max(1, os.cpu_count() - 1))]
    try:
        yield
    finally:
        for process in processes:
            process.kill()
            process.wait()


@contextlib.contextmanager
def held(*keys):
    """Keys that are held down while the block runs, and for two seconds at least: X repeats the
    last of them after 0.66 s, 25 times a second."""
    begin = time.monotonic()
    for key in keys:
        xdotool("keydown", key)
    try:
        yield
        wait_until(lambda: time.monotonic() > begin + 2, "the keys are held long enough")
    finally:
        for key in reversed(keys):
            xdotool("keyup", key)


class HeldKeys(harness.Story):
    program = DayProgram

    def shouldTakeAHeldKeyForOnePress(self):
        with self.running() as program, busy_machine():
            with held("ctrl", "Return"):
                pass
            self.settle(program)
            self.assertEqual(self.rows(program), [UNNAMED])

            # The one that ends an edit does not add a task, too.
            program.press_button("Rediger navn", program.row(UNNAMED))
            field = program.see("field", "Opgavenavn")
            wait_until(lambda: has_state(field, Atspi.StateType.FOCUSED), "the name is edited")
            write(NAME)
            with held("ctrl", "Return"):
                program.see_none("field", "Opgavenavn")
            self.settle(program)
            self.assertEqual(self.rows(program), [NAME])

            # The way to today is gone once.
            with held("ctrl", "t"):
                program.press_button("Forrige dag")
                program.see("text", danish_date(-1))
            press("Left")
            program.see("text", danish_date(-2))
            press("ctrl+t")

            # A button is pressed once.
            button = program.see("button", "Ny opgave")
            button.grab_focus()
            wait_until(lambda: has_state(button, Atspi.StateType.FOCUSED), "the button is focused")
            with held("space"):
                pass
            self.settle(program)
            self.assertEqual(self.rows(program), [NAME, UNNAMED])
            program.quit()
            program.ends_well()

    def settle(self, program):
        """Waits until all keys up to now have done what they do."""
        press("Left")
        program.see("text", danish_date(-1))
        press("Right")
        program.see("text", danish_date())

    def rows(self, program):
        return [row.get_name() for row in program.all("list item")]


if __name__ == "__main__":
    harness.main()
