"""The panel at the item of a bar, under a compositor that places it; keys, and no mouse."""

import subprocess
import tempfile

import desktop
import harness
from dayprogram import UNNAMED
from gi.repository import Atspi
from harness import TITLE, has_state, press, take_picture, wait_until
from heardprogram import HeardProgram
from menubar import PANEL
from wayland import compositor, give_keyboard, has_keyboard, windows

# The virtual output's, and the panel's.
WIDTH, HEIGHT = 1280, 800
PANEL_WIDTH = 240


def room():
    """What the bar leaves free: x, y, width, height."""
    place = compositor("-t", "get_workspaces")[0]["rect"]
    return tuple(place[name] for name in ("x", "y", "width", "height"))


def titles():
    return [window["name"] for window in windows()]


class Picture:
    """Of all outputs, as they are now."""

    def __init__(self):
        self.file = tempfile.NamedTemporaryFile(suffix=".png")
        take_picture(self.file.name)

    def change(self):
        """Where the screen is another one now: x, y, width, height; None if nowhere."""
        now = Picture()
        told = subprocess.run(
            ["convert", self.file.name, now.file.name, "-compose", "difference", "-composite",
             "-threshold", "0", "-trim", "-format", "%X %Y %w %h", "info:"],
            capture_output=True, text=True, check=False).stdout.split()
        place = tuple(map(int, told))
        return place if len(place) == 4 and place[0] >= 0 else None


class PanelStory(harness.Story):
    program = HeardProgram

    def see_panel(self, program):
        panel = program.see_window_called(PANEL)
        wait_until(lambda: has_state(panel, Atspi.StateType.ACTIVE), "the panel has the keyboard")
        return panel

    def open_panel(self, program, x, y):
        desktop.activate_item(x, y)
        return self.see_panel(program)

    def see_item(self):
        wait_until(lambda: desktop.item_label() is not None, "the bar has the item")

    def see_at(self, place, before):
        """Waits until the only thing that has changed on the screen is what stands there."""
        seen = []

        def is_there():
            seen[:] = [before.change()]
            return seen == [place]
        try:
            wait_until(is_there, "the panel stands there")
        except AssertionError:
            self.fail(f"The panel stands at {seen[0]} and not at {place}")

    def run_a_task(self, program):
        """For a second, so that the main window has come to rest."""
        press("ctrl+Return")
        program.press_button(f"Start {UNNAMED}", program.row(UNNAMED))
        program.wait_for_clock(UNNAMED, 1)

    def close_main_window(self, program):
        """So that nothing but the panel changes what is on the screen."""
        compositor(f'[title="^{TITLE}$"]', "kill")
        program.see_no_window_called(TITLE)
        wait_until(lambda: titles() == [], "there is no window")


class LayerShell(PanelStory):
    def stand_at(self, bar, y):
        """Opens the panel at the middle of the bar and in its corner, and uses it by keys."""
        with desktop.wayland_bar(bar), self.running() as program:
            self.see_item()
            press("ctrl+Return")
            program.row(UNNAMED)
            self.close_main_window(program)
            left, top, width, height = room()
            self.assertEqual((left, width), (0, WIDTH))
            self.assertLess(height, HEIGHT)
            before = Picture()

            panel = self.open_panel(program, 600, y)
            panel_height = panel.get_extents()[3]
            edge = top if bar == "top" else top + height - panel_height
            self.see_at((600 - PANEL_WIDTH // 2, edge, PANEL_WIDTH, panel_height), before)
            self.assertEqual(titles(), [])

            press("Escape")
            program.see_no_window_called(PANEL)
            self.open_panel(program, WIDTH - 10, y)
            self.see_at((WIDTH - PANEL_WIDTH, edge, PANEL_WIDTH, panel_height), before)

            press("Down", "Return")
            program.see("button", "Sæt på pause: Unavngivet", program.see_window_called(PANEL))
            press("Up", "Return")
            program.ends_well()

    def shouldHangFromABarAtTheTop(self):
        self.stand_at("top", 5)

    def shouldStandOnABarAtTheBottom(self):
        self.stand_at("bottom", HEIGHT - 5)

    def shouldCloseWithASecondClickAndWhenAnotherWindowIsWanted(self):
        with desktop.wayland_bar("bottom"), self.running() as program:
            self.see_item()
            self.run_a_task(program)
            self.open_panel(program, 600, HEIGHT - 5)
            desktop.activate_item(600, HEIGHT - 5)
            program.see_no_window_called(PANEL)
            wait_until(lambda: has_keyboard(TITLE), "the main window has the keyboard again")

            self.open_panel(program, 600, HEIGHT - 5)
            give_keyboard(TITLE)
            program.see_no_window_called(PANEL)
            program.see_window()
            program.quit()
            program.ends_well()

    def shouldStandOnTheBarAlsoWhenItGrows(self):
        with desktop.wayland_bar("bottom"), self.running() as program:
            self.see_item()
            self.run_a_task(program)
            _, top, _, height = room()
            panel = self.open_panel(program, 600, HEIGHT - 5)
            small = panel.get_extents()[3]

            # A press by assistive technology takes the keyboard from no window.
            for _ in range(3):
                program.press_button("Ny opgave")
            wait_until(lambda: panel.get_extents()[3] > small, "the panel has grown")
            self.close_main_window(program)
            full = self.see_panel(program).get_extents()[3]
            open_still = Picture()
            press("Escape")
            program.see_no_window_called(PANEL)
            self.see_at((600 - PANEL_WIDTH // 2, top + height - full, PANEL_WIDTH, full),
                        open_still)
            program.quit()
            program.ends_well()

    def shouldCloseWithItsOutput(self):
        compositor("create_output")
        second = wait_until(
            lambda: next((output["name"] for output in compositor("-t", "get_outputs")
                          if output["rect"]["x"] == WIDTH), None), "there is a second output")
        with desktop.wayland_bar("bottom"), self.running() as program:
            self.see_item()
            self.run_a_task(program)
            self.close_main_window(program)
            before = Picture()
            self.open_panel(program, WIDTH + 600, 5)
            wait_until(lambda: (before.change() or (0,))[0] > WIDTH, "the panel stands there")
            compositor("output", second, "unplug")
            program.see_no_window_called(PANEL)

            # A click that comes at once would be the one that has closed it.
            closed_at = desktop.item_seconds()
            wait_until(lambda: desktop.item_seconds() > closed_at, "a second has gone")
            # After a focused surface has gone with its output, Sway gives the keyboard to nobody at times.
            desktop.activate_item(600, HEIGHT - 5)
            program.see_window_called(PANEL)
            desktop.activate_item(600, HEIGHT - 5)
            program.see_no_window_called(PANEL)
            program.quit()
            program.ends_well()


class Plasma(PanelStory):
    """Its bars float, and count physical pixels."""

    def environment(self):
        return super().environment() | {"KDE_SESSION_VERSION": "6"}

    def shouldKeepClearOfABarThatFloatsAtThePhysicalPlaceThatItReports(self):
        self.addCleanup(compositor, "output", "*", "scale", "1")
        compositor("output", "*", "scale", "2")
        with desktop.wayland_bar("top"), self.running() as program:
            self.see_item()
            press("ctrl+Return")
            program.row(UNNAMED)
            self.close_main_window(program)
            _, top, width, _ = room()
            self.assertEqual(width, WIDTH // 2)
            before = Picture()

            # As logical pixels, these would lead to the bar, too.
            panel = self.open_panel(program, 600, 10)
            panel_height = panel.get_extents()[3]
            self.see_at((600 - PANEL_WIDTH, (top + 8) * 2, PANEL_WIDTH * 2, panel_height * 2),
                        before)

            press("Escape")
            program.see_no_window_called(PANEL)
            program.quit()
            program.ends_well()


if __name__ == "__main__":
    harness.main()
