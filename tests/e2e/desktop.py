"""The desktop around the program: real trays, started and ended by the stories, and what can be
seen of the item in them.
"""

import atexit
import contextlib
import functools
import os
import pathlib
import shutil
import subprocess
import tempfile

from gi.repository import Gio, GLib

from harness import DEADLINE, seconds, wait_until, xdotool

# The bars stand at the top edge and are this high.
BAR_HEIGHT = 28
ICON_COLOUR = "#27a4a8"

XFCE_PANEL = f"""<?xml version="1.0" encoding="UTF-8"?>
<channel name="xfce4-panel" version="1.0">
  <property name="configver" type="int" value="2"/>
  <property name="panels" type="array">
    <value type="int" value="1"/>
    <property name="panel-1" type="empty">
      <property name="position" type="string" value="p=6;x=0;y=0"/>
      <property name="position-locked" type="bool" value="true"/>
      <property name="length" type="uint" value="100"/>
      <property name="size" type="uint" value="{BAR_HEIGHT}"/>
      <property name="plugin-ids" type="array">
        <value type="int" value="1"/>
        <value type="int" value="2"/>
      </property>
    </property>
  </property>
  <property name="plugins" type="empty">
    <property name="plugin-1" type="string" value="separator">
      <property name="expand" type="bool" value="true"/>
    </property>
    <property name="plugin-2" type="string" value="systray"/>
  </property>
</channel>
"""


@functools.cache
def _environment():
    """Of the desktop's processes, those that the bus starts too: a home of their own. One for all,
    as the daemon of their settings outlives them.
    """
    home = tempfile.mkdtemp(prefix="desktop-")
    atexit.register(shutil.rmtree, home, ignore_errors=True)
    settings = pathlib.Path(home, ".config/xfce4/xfconf/xfce-perchannel-xml")
    settings.mkdir(parents=True)
    (settings / "xfce4-panel.xml").write_text(XFCE_PANEL, encoding="utf-8")
    environment = {"HOME": home, "XDG_CONFIG_HOME": f"{home}/.config", "NO_AT_BRIDGE": "1"}
    _call("org.freedesktop.DBus", "/org/freedesktop/DBus", "org.freedesktop.DBus",
          "UpdateActivationEnvironment", GLib.Variant("(a{ss})", (environment,)), "()")
    return os.environ | environment


@contextlib.contextmanager
def _running(*command):
    """A process of the desktop's, ended with the block."""
    process = subprocess.Popen(command, stdin=subprocess.DEVNULL, stdout=subprocess.DEVNULL,
                               stderr=subprocess.DEVNULL, env=_environment())
    try:
        yield
    finally:
        process.terminate()
        process.wait()


@contextlib.contextmanager
def status_notifier_host():
    """A desktop's bar that shows status notifier items."""
    with _running("xfce4-panel", "--disable-wm-check"):
        wait_until(has_watcher, "the bar is there", 60)
        yield


@contextlib.contextmanager
def wayland_bar(name):
    """One of the bars of the Wayland session, "top" or "bottom"; it shows status notifier items."""
    with _running("swaybar", "-b", name):
        wait_until(has_watcher, "the bar is there", 60)
        yield
    wait_until(lambda: not has_watcher(), "the bar is gone")


@contextlib.contextmanager
def xembed_tray():
    """A tray of the old kind."""
    with _running("trayer", "--edge", "top", "--align", "right", "--width", "20", "--height",
                  str(BAR_HEIGHT), "--heighttype", "pixel", "--SetPartialStrut", "true"):
        yield


def _call(service, path, interface, method, arguments, answer):
    bus = Gio.bus_get_sync(Gio.BusType.SESSION)
    return bus.call_sync(service, path, interface, method, arguments, GLib.VariantType(answer),
                         Gio.DBusCallFlags.NO_AUTO_START, DEADLINE * 1000, None).unpack()


def _property(service, path, interface, name):
    return _call(service, path, "org.freedesktop.DBus.Properties", "Get",
                 GLib.Variant("(ss)", (interface, name)), "(v)")[0]


def has_watcher():
    return _call("org.freedesktop.DBus", "/", "org.freedesktop.DBus", "NameHasOwner",
                 GLib.Variant("(s)", ("org.kde.StatusNotifierWatcher",)), "(b)")[0]


def _items():
    """The bus names of all that the bar shows."""
    items = _property("org.kde.StatusNotifierWatcher", "/StatusNotifierWatcher",
                      "org.kde.StatusNotifierWatcher", "RegisteredStatusNotifierItems")
    return [item.partition("/")[0] for item in items]


def item_label():
    """The text beside the one item's icon, for bars that show it; None without an item."""
    items = _items()
    if len(items) != 1:
        return None
    return _property(items[0], "/StatusNotifierItem", "org.kde.StatusNotifierItem",
                     "XAyatanaLabel")


def activate_item(x=0, y=0):
    """What a bar does whose user clicks the item there, or presses it by keyboard."""
    _call(_items()[0], "/StatusNotifierItem", "org.kde.StatusNotifierItem", "Activate",
          GLib.Variant("(ii)", (x, y)), "()")


def item_seconds():
    """What the item's clock shows; -1 without one."""
    label = item_label()
    return seconds(label) if label else -1


def _find_icon():
    """The middle of what has the icon's colour within the bar at the top edge, or None."""
    picture = subprocess.run(["import", "-silent", "-window", "root", "png:-"], check=True,
                             capture_output=True).stdout
    found = subprocess.run(
        ["convert", "png:-", "-crop", f"x{BAR_HEIGHT}+0+0", "+repage", "-fuzz", "3%",
         "-fill", "black", "+opaque", ICON_COLOUR, "-fill", "white", "-opaque", ICON_COLOUR,
         "-threshold", "1%", "-trim", "-format", "%w %h %X %Y", "info:"],
        input=picture, capture_output=True, check=False).stdout.split()
    if len(found) != 4:
        return None
    width, height, x, y = map(int, found)
    return (x + width // 2, y + height // 2) if 6 <= width <= BAR_HEIGHT and x >= 0 else None


def click_item():
    """Clicks the item's icon in the bar, once it stands still."""
    def still():
        place = _find_icon()
        return place if place is not None and place == _find_icon() else None
    x, y = wait_until(still, "the item's icon is in the bar")
    xdotool("mousemove", x, y, "click", 1)
