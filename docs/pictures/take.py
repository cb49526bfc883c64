"""take.py PROGRAM FAILURES: uses the program as its user would, and takes the README's pictures."""

import contextlib
import os
import pathlib
import subprocess
import sys

sys.path.insert(0, str(pathlib.Path(__file__).parents[2] / "tests" / "e2e"))

import desktop
import harness
from appearance import DARK, LIGHT, Portal, ground
from harness import TITLE, press, wait_until, xdotool
from menubar import MenuBarProgram
from sidecolumn import SideColumnProgram

FOLDER = pathlib.Path(__file__).parent
# Sharp on today's displays.
SCALE = 2
SIZE = (760, 530)
SCREEN = (1600, 1200)
DESKTOP_COLOUR = "#5b7f8c"
BAR_HEIGHT = 28
# As high as it is on the screen.
desktop.BAR_HEIGHT = BAR_HEIGHT * SCALE

CODES = [("ADM", "Administration"), ("HAVN", "Havneportal"), ("TILBUD", "")]
TEMPLATES = ["Morgenmøde", "E-mail", "Kørsel"]
# Name, time, entry in the menu of codes.
TASKS = [
    ("Morgenmøde", "0:24:10", "ADM – Administration"),
    ("Kravliste", "1:48:32", "HAVN – Havneportal"),
    ("Tilbud på drift", "0:41:05", "TILBUD"),
    ("Fejl i formular", "1:12:40", "HAVN – Havneportal"),
]
RUNNING = "Fejl i formular"

MATE_PANEL = f"""
[org/mate/panel/general]
toplevel-id-list=['top']
object-id-list=['tray']
[org/mate/panel/toplevels/top]
expand=true
orientation='top'
size={BAR_HEIGHT}
[org/mate/panel/objects/tray]
object-type='applet'
applet-iid='NotificationAreaAppletFactory::NotificationArea'
toplevel-id='top'
position=0
panel-right-stick=true
"""


class PictureProgram(SideColumnProgram, MenuBarProgram):
    """Knows its way around all of it."""

    def fill(self):
        for code, name in CODES:
            self.press_button("Ny projektkode")
            self.type_into("Kode", code)
            press("Tab")
            self.type_into("Navn (valgfrit)", name)
            press("Return")
            self.see("text", code)
        for template in TEMPLATES:
            self.press_button("Ny skabelon")
            self.type_into("Navn", template)
            press("Return")
            self.see("button", template)
        for task, clock, code in TASKS:
            if task in TEMPLATES:
                self.press_button(task)
                self.row(task)
            else:
                self.make_task(task)
            self.set_clock(task, clock)
            self.press_button("Projektkode: Ingen", self.row(task))
            self.click(self.see("menu item", code))
            self.see_none("menu item", code)
        self.press_button(f"Start {RUNNING}")
        self.see_running(RUNNING)


class Pictures(harness.Story):
    program = PictureProgram
    scale = 1

    def environment(self):
        return super().environment() | {"QT_SCALE_FACTOR": str(self.scale)}

    def shouldBeTaken(self):
        with self.running() as program:
            program.fill()
            program.quit()
            program.ends_well()

        # The accessibility tree gives places in logical pixels; from here on only keys are needed.
        self.scale = SCALE
        for scheme, name in ((LIGHT, "light"), (DARK, "dark")):
            portal = Portal(scheme)
            with self.running() as program:
                [window] = program.visible_windows()
                xdotool("windowsize", "--sync", window, *(side * SCALE for side in SIZE))
                wait_until(lambda: (ground(program) < 80) == (scheme == DARK),
                           "the colours are there")
                program.see_running(RUNNING)
                self.move_pointer_away()
                self.take(name, ["import", "-silent", "-window", window, "png:-"])
                program.quit()
                program.ends_well()
            portal.close()

        with self.mate_panel(), self.running() as program:
            program.close_window()
            program.see_no_window_called(TITLE)
            desktop.click_item()
            program.see_window_called("I dag")
            self.move_pointer_away()
            self.take("panel", ["import", "-silent", "-window", "root",
                                "-gravity", "NorthEast", "-crop", "840x680+0+0", "+repage",
                                "png:-"])
            program.quit()
            program.ends_well()

    @contextlib.contextmanager
    def mate_panel(self):
        settings = self.home / ".config" / "glib-2.0" / "settings"
        settings.mkdir(parents=True)
        (settings / "keyfile").write_text(MATE_PANEL, encoding="utf-8")
        # As MATE has it.
        gtk = self.home / ".config" / "gtk-3.0"
        gtk.mkdir()
        (gtk / "settings.ini").write_text("[Settings]\ngtk-button-images=1\n", encoding="utf-8")
        subprocess.run(["xsetroot", "-solid", DESKTOP_COLOUR], check=True)
        environment = {
            "HOME": str(self.home), "XDG_CONFIG_HOME": f"{self.home}/.config",
            "GSETTINGS_BACKEND": "keyfile", "GDK_SCALE": str(SCALE), "NO_AT_BRIDGE": "1"}
        # What is in the bar is started by the bus.
        subprocess.run(["dbus-update-activation-environment",
                        *(f"{name}={value}" for name, value in environment.items())], check=True)
        panel = subprocess.Popen(["mate-panel"], env=os.environ | environment,
                                 stdin=subprocess.DEVNULL, stdout=subprocess.DEVNULL,
                                 stderr=subprocess.DEVNULL)
        try:
            wait_until(desktop.has_watcher, "the bar is there", 60)
            yield
        finally:
            panel.terminate()
            panel.wait()

    @staticmethod
    def move_pointer_away():
        xdotool("mousemove", "--sync", 0, SCREEN[1] - 1)

    @staticmethod
    def take(name, command):
        picture = subprocess.run(command, check=True, stdout=subprocess.PIPE).stdout
        subprocess.run(["convert", "png:-", "-strip", "-dither", "None", "-colors", "255",
                        "-define", "png:compression-level=9", f"PNG8:{FOLDER / name}.png"],
                       check=True, input=picture)


if __name__ == "__main__":
    harness.main()
