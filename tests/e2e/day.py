"""A day's work in the main window, and what of it is there after the program ended."""

import tempfile
import time

import harness
from dayprogram import UNNAMED, DayProgram
from harness import STORE, danish_date, is_checked, press, wait_until

EMPTY = "Ingen opgaver for denne dag"
FIRST = "Møde på Ærø"
SECOND = "Kørsel til Ålborg"
THIRD = "Blåbærgrød"


class Day(harness.Story):
    program = DayProgram

    def shouldKeepADaysWorkWhenItIsKilled(self):
        with self.running() as program:
            self.begin_empty(program)
            self.time_two_tasks(program)
            self.look_at_other_days(program)
            self.use_the_keys(program)
            self.correct_times(program)
            self.delete_a_task(program)

            program.see_running(SECOND)
            before, seen = program.clock(SECOND)[0], time.monotonic()
            program.kill()

        closed_for = 3
        wait_until(lambda: time.monotonic() > seen + closed_for, "the program stays closed")

        with self.running() as program:
            self.assertGreaterEqual(program.clock(SECOND)[0], before + closed_for)
            self.assertLessEqual(program.clock(SECOND)[0], before + time.monotonic() - seen + 1)
            program.see_running(SECOND)
            program.see_stopped(FIRST)
            self.assertEqual(program.clock(FIRST)[0], 5400)
            self.assertEqual([row.get_name() for row in program.all("list item")], [FIRST, SECOND])
            program.wait_for_clock(SECOND, program.clock(SECOND)[0] + 1)
            program.quit()
            program.ends_well()

    def begin_empty(self, program):
        program.see("text", EMPTY)
        program.see("text", danish_date())
        program.see("text", "0.00 t")

        program.press_button("Ny opgave")

        program.row(UNNAMED)
        program.see_none("text", EMPTY)

    def time_two_tasks(self, program):
        program.rename(UNNAMED, FIRST)
        program.press_button(f"Start {FIRST}")
        program.see_running(FIRST)
        program.wait_for_clock(FIRST, 1)

        press("ctrl+Return")
        program.rename(UNNAMED, SECOND)
        program.press_button(f"Start {SECOND}")
        program.see_running(SECOND)
        program.see_stopped(FIRST)
        stopped_at = program.clock(FIRST)[0]
        program.wait_for_clock(SECOND, 2)
        self.assertEqual(program.clock(FIRST)[0], stopped_at)

    def look_at_other_days(self, program):
        press("Left")
        program.see("text", danish_date(-1))
        program.see("text", EMPTY)

        # Had the upper-case letter led to today, the arrow would lead to yesterday.
        press("ctrl+shift+t", "Left")
        program.see("text", danish_date(-2))

        press("ctrl+t")
        program.see("text", danish_date())
        program.row(FIRST)

        program.press_button("Næste dag")
        program.see("text", danish_date(1))
        program.press_button("Forrige dag")
        program.see("text", danish_date())
        program.see_running(SECOND)

    def use_the_keys(self, program):
        press("Down")
        program.see_selected(FIRST)
        press("Down", "Down")
        program.see_selected(SECOND)
        press("Up")
        program.see_selected(FIRST)

        press("space")
        program.see_running(FIRST)
        program.see_stopped(SECOND)
        press("space")
        program.see_stopped(FIRST)
        press("Down", "space")
        program.see_running(SECOND)
        program.see_stopped(FIRST)

    def correct_times(self, program):
        program.set_clock(FIRST, "1:30")
        self.assertEqual(program.clock(FIRST)[0], 5400)
        program.see_stopped(FIRST)

        press("ctrl+Return")
        program.rename(UNNAMED, THIRD)
        program.set_clock(THIRD, "10")
        self.assertEqual(program.clock(THIRD)[0], 600)

        # Ten minutes are two fifths of the quarter that they are billed as.
        self.assertTrue(is_checked(program.see("radio button", "Fakturerbar")))
        program.see_hours(THIRD, "0.25")
        program.see("text", "1.75 t")
        program.click(program.see("radio button", "Faktisk"))
        program.see_hours(THIRD, "0.17")
        program.see_hours(FIRST, "1.50")
        program.see_none("text", "1.75 t")
        program.click(program.see("radio button", "Fakturerbar"))
        program.see_hours(THIRD, "0.25")
        program.see("text", "1.75 t")

    def delete_a_task(self, program):
        question = ("Denne opgave har registreret tid. "
                    f'Er du sikker på, at du vil slette "{THIRD}"?')
        program.press_button(f"Slet {THIRD}")
        alert = program.see("alert", "Slet opgave")
        program.see("text", question, within=alert)
        program.see("button", "Annuller", within=alert)
        press("Escape")
        program.see_none("alert", "Slet opgave")
        program.row(THIRD)

        program.press_button(f"Slet {THIRD}")
        program.press_button("Slet", within=program.see("alert", "Slet opgave"))
        program.see_none("alert", "Slet opgave")
        program.see_none("list item", THIRD)

    def shouldSaveAndEndWellWhenTerminated(self):
        with self.running() as program:
            program.press_button("Ny opgave")
            program.row(UNNAMED)
            program.terminate()
            program.ends_well()

        with self.running() as program:
            program.row(UNNAMED)

    def shouldLeaveATaskOfAnEarlierDayRunningWhenItStarts(self):
        with self.running() as program:
            press("Left")
            program.see("text", danish_date(-1))
            program.press_button("Ny opgave")
            program.rename(UNNAMED, FIRST)
            program.press_button(f"Start {FIRST}")
            program.see_running(FIRST)
            program.quit()
            program.ends_well()

        with self.running() as program:
            # Nothing of today runs, and so there is nothing to pause.
            program.see("text", danish_date())
            program.see("text", EMPTY)
            program.press_button("Ny opgave")
            program.rename(UNNAMED, SECOND)
            program.see("button", "Start første opgave")

            # It goes on when another one starts.
            program.press_button(f"Start {SECOND}")
            program.see_running(SECOND)
            press("Left")
            program.see_running(FIRST)
            before = program.clock(FIRST)[0]
            program.wait_for_clock(FIRST, before + 1)

            # To pause means all of them.
            program.press_button("Sæt aktiv opgave på pause")
            program.see_stopped(FIRST)
            press("Right")
            program.see_stopped(SECOND)
            program.quit()
            program.ends_well()

    def shouldRefuseAStoreThatAnotherOneHolds(self):
        with self.running() as program:
            self.assertTrue(any((self.home / STORE).iterdir()))

            # One on another bus, so that it does not find the first and leave the work to it.
            with tempfile.TemporaryDirectory() as runtime:
                status, said = self.run_again(
                    XDG_RUNTIME_DIR=runtime, DBUS_SESSION_BUS_ADDRESS=f"unix:path={runtime}/bus")

            self.assertEqual(status, 1)
            self.assertIn("Could not create ModelContainer: ", said)
            program.press_button("Ny opgave")
            program.row(UNNAMED)


if __name__ == "__main__":
    harness.main()
