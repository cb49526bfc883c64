"""What is said at the end of changes that could not be written."""

import datetime
import resource

import harness
from menubar import CLOCK, MenuBarProgram

TASK = "Årsopgørelse"


class FullDisk(harness.Story):
    program = MenuBarProgram

    def shouldNameWhatIsUnsavedWhenTheUserQuits(self):
        self.lose_a_task(self.quit_from_the_panel)

    def shouldNameWhatIsUnsavedWhenTheDesktopQuits(self):
        self.lose_a_task(lambda program: program.quit())

    def shouldNameWhatIsUnsavedAtASignal(self):
        self.lose_a_task(lambda program: program.terminate())

    def quit_from_the_panel(self, program):
        program.press_button("Vis dagens opgaver", program.see_window_called(CLOCK))
        program.press_in_panel("Afslut")

    def lose_a_task(self, end):
        with self.running() as program:
            # A file of the store takes more than this, and what is said less.
            resource.prlimit(program.process.pid, resource.RLIMIT_FSIZE, (4096, 4096))
            program.make_task(TASK)
            end(program)
            self.assertEqual(program.wait_for_end(), 1)
            first, *changes = harness.own_words(program.output()).splitlines()
        self.assertIn("These changes are not in the store", first)
        self.assertIn("store.sqlite", first)
        today = datetime.date.today().isoformat()
        self.assertEqual(changes, [f'  new: task "{TASK}" of {today}, 00:00:00'])


if __name__ == "__main__":
    harness.main()
