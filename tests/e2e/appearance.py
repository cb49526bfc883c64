"""The window as the desktop wants it: its colours, also when they change, and its icon."""

import subprocess

import harness
from dayprogram import DayProgram
from harness import wait_until

from gi.repository import Gio, GLib

SERVICE = "org.freedesktop.portal.Desktop"
PATH = "/org/freedesktop/portal/desktop"
SETTINGS = "org.freedesktop.portal.Settings"
INTERFACE = f"""
<node><interface name="{SETTINGS}">
  <method name="Read">
    <arg type="s" direction="in"/><arg type="s" direction="in"/><arg type="v" direction="out"/>
  </method>
  <signal name="SettingChanged"><arg type="s"/><arg type="s"/><arg type="v"/></signal>
</interface></node>"""
COLOR_SCHEME = ("org.freedesktop.appearance", "color-scheme")
DARK, LIGHT = 1, 2
PLASMA_SCHEME = ("org.kde.kdeglobals.General", "ColorScheme")


class Portal:
    """The desktop's settings portal. It answers while somebody waits for the program."""

    def __init__(self, scheme):
        self.scheme = scheme
        self.bus = Gio.bus_get_sync(Gio.BusType.SESSION)
        self.object = self.bus.register_object(
            PATH, Gio.DBusNodeInfo.new_for_xml(INTERFACE).interfaces[0], self._call)
        self.name = Gio.bus_own_name_on_connection(self.bus, SERVICE, 0)

    def _call(self, _bus, _sender, _path, _interface, _method, arguments, invocation):
        if arguments.unpack() != COLOR_SCHEME:
            invocation.return_dbus_error("org.freedesktop.portal.Error.NotFound", "")
            return
        answer = GLib.Variant("v", GLib.Variant("u", self.scheme))
        invocation.return_value(GLib.Variant.new_tuple(GLib.Variant("v", answer)))

    def set(self, scheme):
        self.scheme = scheme
        self.tell(COLOR_SCHEME, GLib.Variant("u", scheme))

    def tell(self, setting, value):
        self.bus.emit_signal(None, PATH, SETTINGS, "SettingChanged",
                             GLib.Variant("(ssv)", (*setting, value)))

    def close(self):
        Gio.bus_unown_name(self.name)
        self.bus.unregister_object(self.object)


def ground(program):
    """How light the empty day is, 0 to 255."""
    [window] = program.visible_windows()
    pixel = subprocess.run(["import", "-silent", "-window", window, "-crop", "1x1+40+300",
                            "-depth", "8", "gray:-"], check=True, stdout=subprocess.PIPE).stdout
    return pixel[0]


class Appearance(harness.Story):
    program = DayProgram

    def shouldFollowThePortalWhileItRuns(self):
        portal = Portal(DARK)
        self.addCleanup(portal.close)
        with self.program(self) as program:
            program.see_window()
            for scheme in (DARK, LIGHT, DARK):
                if scheme != portal.scheme:
                    portal.set(scheme)
                wait_until(lambda: (program.root() is not None
                                    and (ground(program) < 80) == (scheme == DARK)),
                           f"the window has the appearance {scheme}")

    def shouldBeLightWithoutAPortal(self):
        with self.program(self) as program:
            program.see_window()
            program.see("button", "Ny opgave")
            self.assertGreater(ground(program), 200)

    def shouldHaveItsIconOnTheWindow(self):
        with self.program(self) as program:
            program.see_window()
            [window] = program.visible_windows()
            icon = subprocess.run(["xprop", "-notype", "-id", window, "_NET_WM_ICON"],
                                  check=True, stdout=subprocess.PIPE, text=True).stdout
            for side in (16, 32, 64):
                self.assertIn(f"Icon ({side} x {side}):", icon)


class Plasma(harness.Story):
    """Qt has Plasma's colours from its settings, and reads them anew when the portal names a scheme."""

    program = DayProgram

    def environment(self):
        return super().environment() | {
            "XDG_CURRENT_DESKTOP": "KDE", "KDE_FULL_SESSION": "true", "KDE_SESSION_VERSION": "5"}

    def choose_colours(self, window, text):
        """Each is red, green and blue."""
        settings = self.home / ".config/kdeglobals"
        settings.parent.mkdir(exist_ok=True)
        settings.write_text("".join(
            f"[Colors:{part}]\nBackgroundNormal={window}\nForegroundNormal={text}\n"
            for part in ("Button", "Selection", "Tooltip", "View", "Window")))

    def choose_dark(self, portal):
        self.choose_colours("42,46,50", "252,252,252")
        portal.set(DARK)
        portal.tell(PLASMA_SCHEME, GLib.Variant("s", "BreezeDark"))

    def choose_light(self, portal):
        """The portal does not name this scheme, which is the one that is there from the start."""
        self.choose_colours("239,240,241", "35,38,41")
        portal.set(LIGHT)

    def shouldBecomeDarkInPlasmasColoursAndLightAgain(self):
        portal = Portal(LIGHT)
        self.addCleanup(portal.close)
        self.choose_colours("239,240,241", "35,38,41")
        with self.running() as program:
            program.see("button", "Ny opgave")
            wait_until(lambda: ground(program) == 240, "the window is light")
            for _ in range(2):
                self.choose_dark(portal)
                wait_until(lambda: ground(program) in range(42, 51), "it has Plasma's dark")
                self.choose_light(portal)
                wait_until(lambda: ground(program) > 200, "it is light again")


if __name__ == "__main__":
    harness.main()
