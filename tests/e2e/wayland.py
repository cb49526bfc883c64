"""The program in a Wayland session: keys and accessibility tree, no mouse."""

import contextlib
import json
import subprocess

import harness
from dayprogram import UNNAMED
from gi.repository import Atspi
from harness import TITLE, danish_date, has_state, press, seconds, wait_until
from heardprogram import HeardProgram
from menubar import CLOCK, PANEL

FIRST = "Møde på Ærø"
SECOND = "Kørsel til Ålborg"


def compositor(*command):
    """What the compositor answers."""
    answer = subprocess.run(["swaymsg", "--raw", *command], check=True, stdout=subprocess.PIPE)
    return json.loads(answer.stdout)


def windows(node=None):
    node = compositor("-t", "get_tree") if node is None else node
    if node.get("pid") and node["type"] in ("con", "floating_con"):
        yield node
    for child in node["nodes"] + node["floating_nodes"]:
        yield from windows(child)


def has_keyboard(title):
    return any(window["focused"] and window["name"].startswith(title) for window in windows())


def give_keyboard(title):
    """To the window whose title begins like that, as the user of the desktop does."""
    compositor(f'[title="^{title}"]', "focus")
    wait_until(lambda: has_keyboard(title), f'the window "{title}" has the keyboard')


class Wayland(harness.Story):
    program = HeardProgram

    @contextlib.contextmanager
    def running(self):
        """The program from the time on when its clock window is there, too."""
        with self.program(self) as program:
            program.see_window()
            self.see_clock_window(program)
            give_keyboard(TITLE)
            program.see_window()
            yield program

    def shouldKeepADaysWork(self):
        with self.running() as program:
            self.time_two_tasks(program)
            self.look_at_other_days(program)
            self.use_the_panel_by_keys(program)
            self.raise_the_window(program)
            self.close_the_window_and_open_it_again(program)
            first, second = (program.clock(name)[0] for name in (FIRST, SECOND))
            # It has run for a moment while the panel was used.
            self.assertGreaterEqual(first, 5400)
            program.quit()
            program.ends_well()

        with self.running() as program:
            program.see_running(SECOND)
            program.see_stopped(FIRST)
            self.assertEqual(program.clock(FIRST)[0], first)
            self.assertGreaterEqual(program.clock(SECOND)[0], second)
            self.quit_from_the_panel(program)

    def shouldLoseNoKeyToTheClockWindow(self):
        with self.program(self) as program:
            program.see_window()
            self.see_clock_window(program)
            press("ctrl+Return")
            program.row(UNNAMED)
            wait_until(lambda: has_keyboard(TITLE), "the main window has the keyboard again")
            program.rename(UNNAMED, FIRST)

            # Once more, when nothing is typed.
            self.see_clock_window(program)
            press("Down", "space")
            program.see_running(FIRST)
            program.quit()
            program.ends_well()

    def see_clock_window(self, program):
        """New windows get the keyboard here, and keep it until something is typed."""
        program.see_window_called(CLOCK)
        wait_until(lambda: has_keyboard(CLOCK), "the clock window has the keyboard")

    def time_two_tasks(self, program):
        press("ctrl+Return")
        program.row(UNNAMED)
        program.rename(UNNAMED, FIRST)
        program.set_clock(FIRST, "1:30")
        program.press_button(f"Start {FIRST}")
        program.see_running(FIRST)

        program.press_button("Ny opgave")
        program.rename(UNNAMED, SECOND)
        press("Down", "Down", "space")
        program.see_selected(SECOND)
        program.see_running(SECOND)
        program.see_stopped(FIRST)
        program.wait_for_clock(SECOND, 1)
        program.set_clock(FIRST, "1:30")

    def look_at_other_days(self, program):
        press("Left")
        program.see("text", danish_date(-1))
        press("ctrl+t")
        program.see("text", danish_date())
        program.row(FIRST)

    def open_panel(self, program):
        give_keyboard(CLOCK)
        clock = program.see_window_called(CLOCK)
        wait_until(lambda: has_state(clock, Atspi.StateType.ACTIVE), "the clock window is active")
        press("Return")
        panel = program.see_window_called(PANEL)
        wait_until(lambda: has_state(panel, Atspi.StateType.ACTIVE), "the panel is active")

    def use_the_panel_by_keys(self, program):
        self.open_panel(program)
        press("Down", "Return")
        program.see_in_main(f"Sæt på pause: {FIRST}")
        program.see_in_main(f"Start {SECOND}")
        press("Down", "Return")
        program.see_in_main(f"Sæt på pause: {SECOND}")
        press("Escape")
        program.see_no_window_called(PANEL)
        clock = program.see_window_called(CLOCK)
        wait_until(lambda: seconds(program.all("text", within=clock)[0].get_name()) >= 2,
                   "the clock window counts up")

    def raise_the_window(self, program):
        compositor("workspace", "2")
        wait_until(lambda: not has_keyboard(TITLE), "another workspace is shown")
        self.assertEqual(self.run_again(), (0, ""))
        wait_until(lambda: has_keyboard(TITLE), "the main window has the keyboard")
        program.see_window()
        self.assertEqual([window["visible"] for window in windows() if window["name"] == TITLE],
                         [True])

    def close_the_window_and_open_it_again(self, program):
        give_keyboard(TITLE)
        compositor(f'[title="^{TITLE}$"]', "kill")
        program.see_no_window_called(TITLE)
        self.open_panel(program)
        program.press_in_panel("Åbn Time Tracker")
        program.see_window()
        program.see_in_main(f"Sæt på pause: {SECOND}")
        program.see_no_window_called(PANEL)

    def quit_from_the_panel(self, program):
        self.open_panel(program)
        press("Up", "Return")
        program.ends_well()


if __name__ == "__main__":
    harness.main()
