"""What the README says of backups: a copy of one file, and that file put back."""

import shutil

import harness
from dayprogram import UNNAMED, DayProgram
from harness import STORE

TASK = "Årsopgørelse"


class Backup(harness.Story):
    program = DayProgram

    def shouldComeBackFromACopyOfTheStoresFile(self):
        folder = self.home / STORE
        copy = self.home / "copy.sqlite"
        with self.running() as program:
            self.make_task(program, TASK)
            program.quit()
            program.ends_well()
        self.assertEqual(sorted(file.name for file in folder.iterdir()),
                         ["store.sqlite", "store.sqlite-reserve"])
        shutil.copy(folder / "store.sqlite", copy)

        # What is beside the store after a kill goes with it.
        with self.running() as program:
            self.make_task(program, "Efter kopien")
            program.kill()
        for file in folder.iterdir():
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
