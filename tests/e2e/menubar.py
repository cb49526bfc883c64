"""The item in the desktop's bar, on desktops with and without a place for it."""

import subprocess

import desktop
import harness
from dayprogram import UNNAMED, DayProgram
from gi.repository import Atspi
from harness import TITLE, press, seconds, wait_until

TASK = "Møde på Ærø"
PANEL = "I dag"
CLOCK = "Ur"


class MenuBarProgram(DayProgram):
    """Knows its windows apart: the same task has a button in each of them."""

    def window(self, title):
        root = self.root()
        windows = [] if root is None else root.get_children()
        return next((window for window in windows
                     if window.get_name() == title and harness.is_showing(window)), None)

    def see_window_called(self, title):
        return wait_until(lambda: self.window(title), f'the window "{title}" is there')

    def see_no_window_called(self, title):
        wait_until(lambda: self.window(title) is None, f'the window "{title}" is not there')

    def make_task(self, name):
        self.press_button("Ny opgave")
        self.row(UNNAMED)
        self.rename(UNNAMED, name)

    def press_in_panel(self, name):
        panel = self.see_window_called(PANEL)
        self.see_active(f"^{PANEL}$")
        self.press_button(name, panel)

    def see_in_main(self, name):
        self.see("button", name, self.see_window_called(TITLE))

    def activate(self, pattern):
        """Gives the keyboard to the window whose title bar matches."""
        def is_activated():
            command = ["xdotool", "windowactivate", "--sync", *self.visible_windows(pattern)]
            return subprocess.run(command, check=False).returncode == 0
        wait_until(is_activated, f'the window "{pattern}" is active')

    def come_back(self):
        """Opens the main window from the panel. The panel that is opened next would be closed by it,
        if it got the keyboard only then.
        """
        self.press_in_panel("Åbn Time Tracker")
        self.see_in_main(f"Sæt på pause: {TASK}")
        self.see_window()
        self.see_no_window_called(PANEL)
        self.wait_for_clock(TASK, self.clock(TASK)[0] + 1)

    def close_main_window(self):
        self.activate(f"^{TITLE}$")
        self.close_window()
        self.see_no_window_called(TITLE)


class MenuBar(harness.Story):
    program = MenuBarProgram

    def shouldTimeTasksFromAStatusNotifierPanel(self):
        with desktop.status_notifier_host():
            with self.running() as program:
                wait_until(lambda: desktop.item_label() == "", "the item has no label")
                program.make_task(TASK)
                self.time_from_panel(program)
                wait_until(lambda: desktop.item_seconds() >= 2, "the label counts up")

                # The item's second click closes the panel.
                desktop.click_item()
                program.see_window_called(PANEL)
                desktop.click_item()
                program.see_no_window_called(PANEL)

                self.leave_and_come_back(program)
                self.stop_and_start_while_closed(program)
                self.stop_from_panel_and_quit(program)

    def shouldTimeTasksFromAnXEmbedTray(self):
        with desktop.xembed_tray():
            with self.running() as program:
                program.make_task(TASK)
                self.time_from_panel(program)
                self.leave_and_come_back(program)

                # The keyboard is the panel's as soon as it is open.
                desktop.click_item()
                panel = program.see_window_called(PANEL)
                wait_until(lambda: harness.has_state(panel, Atspi.StateType.ACTIVE),
                           "the panel is active")
                press("Down", "Return")
                program.see_in_main(f"Start {TASK}")
                press("Tab", "Tab", "space")
                program.ends_well()

    def shouldShowTheClockInAWindowUntilThereIsAPanel(self):
        with self.running() as program:
            program.make_task(TASK)
            clock = program.see_window_called(CLOCK)
            # It does not take the keyboard from whom the user writes to.
            program.see_window()
            program.press_button("Vis dagens opgaver", clock)
            program.press_in_panel(f"Start {TASK}")
            program.see_in_main(f"Sæt på pause: {TASK}")
            wait_until(lambda: seconds(program.all("text", within=clock)[0].get_name()) >= 1,
                       "the clock window counts up")

            with desktop.status_notifier_host():
                program.see_no_window_called(CLOCK)
                wait_until(lambda: desktop.item_seconds() >= 1, "the item has the clock")
            program.see_window_called(CLOCK)

            # The last window that leads to the program ends it.
            program.close_main_window()
            program.see_window_called(CLOCK)
            program.activate(f"^{CLOCK}")
            program.close_window()
            program.ends_well()

        with self.running() as program:
            program.see_in_main(f"Sæt på pause: {TASK}")

    def time_from_panel(self, program):
        desktop.click_item()
        program.press_in_panel(f"Start {TASK}")
        program.see_in_main(f"Sæt på pause: {TASK}")
        press("Escape")
        program.see_no_window_called(PANEL)

    def leave_and_come_back(self, program):
        program.close_main_window()
        desktop.click_item()
        program.come_back()

    def stop_and_start_while_closed(self, program):
        program.close_main_window()
        desktop.click_item()
        program.press_in_panel(f"Sæt på pause: {TASK}")
        program.press_in_panel(f"Start {TASK}")
        program.come_back()

    def stop_from_panel_and_quit(self, program):
        desktop.click_item()
        program.press_in_panel(f"Sæt på pause: {TASK}")
        program.see_in_main(f"Start {TASK}")
        program.press_in_panel("Afslut")
        program.ends_well()


if __name__ == "__main__":
    harness.main()
