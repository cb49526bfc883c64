"""Starts the real program and drives it as its user does: looks in the accessibility tree, and
presses keys and mouse buttons. Needs a session bus, and an X display with a window manager or, for
stories without a mouse, a Wayland compositor that takes keys from others.

Nothing here sleeps for a fixed time in the hope that something has happened: each step waits, up
to a deadline, for what it wants to see.
"""

import contextlib
import datetime
import os
import pathlib
import re
import shutil
import signal
import subprocess
import sys
import tempfile
import time
import unittest

import gi

gi.require_version("Atspi", "2.0")
from gi.repository import Atspi, Gio, GLib

import tree

TITLE = "TULO Time Tracker"
STORE = ".local/share/dk.tulo.TimeTracker"
# How long a change may take to be on disk; what is older survives anything.
STORED_WITHIN = 0.1
# How long anything else may take on a machine that is busy with other things, too.
DEADLINE = 30
IS_WAYLAND = "WAYLAND_DISPLAY" in os.environ

# How Qt writes messages here, and those of its platform plugins and of its accessibility bridge.
# What they say depends on the machine and on the version of Qt, and is none of the program's.
MESSAGES = "[%{category}] %{message} [end]"
LIBRARIES = re.compile(r"\[qt\.(?:qpa|accessibility)(?:\.[\w.]+)?\] .*? \[end\]\n", re.DOTALL)

# By number, as some names differ between versions of the library.
ROLES = {
    "alert": {Atspi.Role.ALERT, Atspi.Role.DIALOG},
    "button": {43, 129},  # one that opens a menu has a role of its own from Qt 6.8 on
    "field": {Atspi.Role.TEXT, Atspi.Role.ENTRY},
    "list item": {Atspi.Role.LIST_ITEM},
    "menu item": {Atspi.Role.MENU_ITEM, Atspi.Role.CHECK_MENU_ITEM},
    "panel": {Atspi.Role.PANEL},
    "radio button": {Atspi.Role.RADIO_BUTTON},
    "text": {Atspi.Role.LABEL},
    "window": {Atspi.Role.FRAME},
}
ROLES = {role: {int(number) for number in numbers} for role, numbers in ROLES.items()}

WEEKDAYS = ["mandag", "tirsdag", "onsdag", "torsdag", "fredag", "lørdag", "søndag"]
MONTHS = ["januar", "februar", "marts", "april", "maj", "juni", "juli", "august", "september",
          "oktober", "november", "december"]


def danish_date(days_from_today=0):
    """The day as the header writes it, "mandag 3. marts 2025"."""
    day = datetime.date.today() + datetime.timedelta(days_from_today)
    return f"{WEEKDAYS[day.weekday()]} {day.day}. {MONTHS[day.month - 1]} {day.year}"


def seconds(clock):
    """The seconds of a clock text, "01:02:03"."""
    hours, minutes, rest = map(int, clock.split(":"))
    return hours * 3600 + minutes * 60 + rest


def wait_until(condition, what, deadline=DEADLINE):
    """Asks until the answer is true, and returns it. What vanishes while it is read isn't there."""
    end = time.monotonic() + deadline
    while True:
        with contextlib.suppress(GLib.Error):
            answer = condition()
            if answer:
                return answer
        if time.monotonic() > end:
            raise AssertionError(f"Not within {deadline} s: {what}")
        time.sleep(0.02)


def own_words(output):
    """What the program itself has said. What libraries have said goes to the test's own output."""
    for message in LIBRARIES.findall(output):
        print(f"Not the program's: {message}", end="", file=sys.stderr)
    return LIBRARIES.sub("", output)


def xdotool(*arguments):
    subprocess.run(["xdotool", *map(str, arguments)], check=True)


def answer(*arguments):
    """What xdotool says, or None if it fails: there may be no such window just now."""
    run = subprocess.run(["xdotool", *map(str, arguments)], capture_output=True, text=True,
                         check=False)
    return run.stdout.strip() if run.returncode == 0 else None


def active_window():
    """The X11 id of the window that the window manager takes for the active one, or None."""
    return answer("getactivewindow")


def press(*keys):
    """Presses keys one after the other, "ctrl+Return"."""
    if not IS_WAYLAND:
        xdotool("key", *keys)
        return
    arguments = []
    for key in keys:
        *modifiers, last = key.split("+")
        for modifier in modifiers:
            arguments += ["-M", modifier]
        arguments += ["-k", last]
        for modifier in modifiers:
            arguments += ["-m", modifier]
    subprocess.run(["wtype", *arguments], check=True)


def listen_to_keys():
    """Waits until the X11 window manager hears its keys: the first one that xdotool presses makes
    another keyboard the current one, for which it grabs them anew, and what is pressed meanwhile is
    lost.
    """
    for key, desktop in (("F2", "1"), ("F1", "0")):
        def is_shown():
            press(f"super+{key}")
            return answer("get_desktop") == desktop
        wait_until(is_shown, f"Super+{key} shows its desktop")


def write(text):
    """Types a text."""
    if IS_WAYLAND:
        subprocess.run(["wtype", text], check=True)
    else:
        xdotool("type", text)


def take_picture(file):
    """Of the whole screen."""
    command = ["grim"] if IS_WAYLAND else ["import", "-silent", "-window", "root"]
    subprocess.run([*command, file], check=False)


def role_of(node):
    """The role as it is called here, or as the library calls it."""
    number = int(node.get_role())
    return next((role for role, numbers in ROLES.items() if number in numbers),
                node.get_role_name())


def has_state(node, state):
    return node.has_state(state)


def is_selected(node):
    return has_state(node, Atspi.StateType.SELECTED)


def is_showing(node):
    return has_state(node, Atspi.StateType.SHOWING)


def is_checked(node):
    return has_state(node, Atspi.StateType.CHECKED)


class Program:
    """One run of the program. As a context it leaves pictures behind when what is in it fails, and
    never leaves the program running.
    """

    def __init__(self, case):
        self.case = case
        self.errors = tempfile.TemporaryFile("w+", encoding="utf-8")
        self.process = subprocess.Popen(
            [*case.command, case.executable], env=case.environment(), stdin=subprocess.DEVNULL,
            stdout=self.errors, stderr=self.errors)

    def __enter__(self):
        return self

    def __exit__(self, kind, error, trace):
        try:
            if kind is not None:
                self._leave_evidence()
        finally:
            if self.process.poll() is None:
                self.process.kill()
                self.process.wait()
            self.errors.close()

    # Looking

    def root(self):
        """The program in the accessibility tree, or None before it is there."""
        self.case.assertIsNone(self.process.poll(), "The program has ended")
        context = GLib.MainContext.default()
        while context.pending():
            context.iteration(False)
        for application in tree.applications():
            with contextlib.suppress(GLib.Error):
                if application.get_process_id() == self.process.pid:
                    return application
        return None

    def all(self, role, name=None, within=None, description=None):
        """What is shown now and has the role, and the name and description if they are given."""
        root = within or self.root()
        if root is None:
            return []

        def is_wanted(node):
            return (node.get_role() in ROLES[role]
                    and name in (None, node.get_name())
                    and description in (None, node.get_description())
                    and is_showing(node))
        nodes = tree.walk(root)
        return [node for node, wanted in zip(nodes, tree.ask(is_wanted, nodes)) if wanted]

    def see(self, role, name=None, within=None, description=None):
        """Waits until exactly one such thing is shown, and returns it."""
        def one():
            found = self.all(role, name, within, description)
            return found[0] if len(found) == 1 else None
        return wait_until(one, f'there is one {role} "{name or description}"')

    def see_none(self, role, name):
        wait_until(lambda: self.root() is not None and not self.all(role, name),
                   f'there is no {role} "{name}"')

    def see_window(self):
        """Waits until the main window is there and has the keyboard."""
        def window():
            root = self.root()
            return root is not None and any(
                node.get_name() == TITLE and has_state(node, Atspi.StateType.ACTIVE)
                for node in root.get_children())
        wait_until(window, "the window is active")

    def visible_windows(self, pattern=f"^{TITLE}$"):
        """The X11 ids of its visible windows with such a title. An earlier program's window, which
        may not be gone yet, is none of them.
        """
        while True:
            run = subprocess.run(
                ["xdotool", "search", "--all", "--onlyvisible", "--pid", str(self.process.pid),
                 "--name", pattern], capture_output=True, text=True, check=False)
            # A window that vanishes in the middle of its search makes xdotool fail.
            if "X Error" not in run.stderr:
                return run.stdout.split()

    def see_active(self, pattern=""):
        """Waits until the X11 window manager takes such a window for the active one, and returns its
        id: what is pressed while the keyboard is handed over may be lost.
        """
        def active():
            window = active_window()
            return window if window in self.visible_windows(pattern) else None
        return None if IS_WAYLAND else wait_until(active, f'the window "{pattern}" is active')

    def shown_places(self):
        """Where the X server shows the program's windows: x, y, width, height."""
        places = []
        for window in self.visible_windows(""):
            told = subprocess.run(["xwininfo", "-id", window], capture_output=True, text=True,
                                  check=False).stdout
            numbers = [re.search(rf"{what}:\s+(-?\d+)", told)
                       for what in ("Absolute upper-left X", "Absolute upper-left Y", "Width", "Height")]
            if all(numbers):
                places.append(tuple(int(number[1]) for number in numbers))
        return places

    def is_under_pointer(self):
        """Whether the topmost window there is one of the program's, with what a window manager has
        put around it.
        """
        told = subprocess.run(["xdotool", "getmouselocation", "--shell"], capture_output=True,
                              text=True, check=False).stdout
        topmost = re.search(r"^WINDOW=(\d+)$", told, re.MULTILINE)
        # One that vanishes meanwhile makes xdotool fail.
        if topmost is None:
            return False
        parts = subprocess.run(["xwininfo", "-tree", "-id", topmost[1]], capture_output=True,
                               text=True, check=False).stdout
        return any(f"{int(window):#x} " in parts for window in self.visible_windows(""))

    # Acting

    def click(self, node):
        """Clicks the middle of something once it stands still, its window is shown where the program
        has asked for it to be, and nothing covers it: until then, the click would go elsewhere.
        """
        def still():
            place, window = node.get_extents(), node.get_window().get_extents()
            if tuple(window) not in self.shown_places():
                return None
            return place if place == node.get_extents() and place[2] > 0 and place[3] > 0 else None
        x, y, width, height = wait_until(still, f'"{node.get_name()}" stands still')
        xdotool("mousemove", x + width // 2, y + height // 2)
        wait_until(self.is_under_pointer, f'nothing covers "{node.get_name()}"')
        xdotool("click", 1)

    def press_button(self, name, within=None):
        self.click(self.see("button", name, within))

    def fill_in(self, name, text):
        """Replaces the text of a field that has been opened, and presses Return."""
        field = self.see("field", name)
        wait_until(lambda: has_state(field, Atspi.StateType.FOCUSED), f'"{name}" has the keyboard')
        press("ctrl+a")
        write(text)
        press("Return")
        self.see_none("field", name)

    # Ending

    def wait_for_end(self):
        try:
            return self.process.wait(DEADLINE)
        except subprocess.TimeoutExpired:
            raise AssertionError(f"The program did not end within {DEADLINE} s") from None

    def ends_well(self):
        """Waits for the end: status 0, and not a word said in the whole run."""
        self.case.assertEqual(self.wait_for_end(), 0)
        self.case.assertEqual(own_words(self.output()), "")

    def close_window(self):
        """Asks the window manager to close the active window, as its close button does."""
        press("alt+F4")

    def kill(self):
        """Ends the program with no chance to save, once the last change may be relied upon."""
        begin = time.monotonic() - self.queued()
        wait_until(lambda: time.monotonic() - self.queued() > begin + STORED_WITHIN,
                   "the last change may be relied upon")
        self.case.assertEqual(own_words(self.output()), "")
        self.process.send_signal(signal.SIGKILL)
        self.case.assertEqual(self.wait_for_end(), -signal.SIGKILL)

    def quit(self):
        """Asks the program to end, as its desktop file's action does."""
        Gio.bus_get_sync(Gio.BusType.SESSION).call_sync(
            "dk.tulo.TimeTracker", "/dk/tulo/TimeTracker", "org.freedesktop.Application",
            "ActivateAction", GLib.Variant("(sava{sv})", ("quit", [], {})), None,
            Gio.DBusCallFlags.NO_AUTO_START, -1)

    def queued(self):
        """The seconds that the program was ready to work, but other processes had the processors;
        0 where the kernel does not count them.
        """
        with contextlib.suppress(OSError):
            counts = pathlib.Path(f"/proc/{self.process.pid}/schedstat").read_text("ascii")
            return int(counts.split()[1]) / 1e9
        return 0.0

    def terminate(self):
        self.process.send_signal(signal.SIGTERM)

    def output(self):
        self.errors.seek(0)
        return self.errors.read()

    # When it fails

    def _leave_evidence(self):
        folder = self.case.evidence
        folder.mkdir(parents=True, exist_ok=True)
        name = folder / self.case.id().rpartition(".")[2]
        take_picture(f"{name}.png")
        with open(f"{name}.txt", "w", encoding="utf-8") as file:
            file.write(f"Ended with: {self.process.poll()}\nWritten by the program:\n"
                       f"{self.output()}\nAccessibility tree:\n")
            with contextlib.suppress(GLib.Error, AssertionError):
                if root := self.root():
                    self._dump(root, file)
        print(f"See {name}.png and {name}.txt", file=sys.stderr)

    def _dump(self, node, file, depth=0):
        states = [state.value_nick for state in node.get_states()]
        place = node.get_extents() if tree.NAMES + "Component" in node.get_interfaces() else ""
        file.write(f'{"  " * depth}{node.get_role_name()} "{node.get_name()}" '
                   f'"{node.get_description()}" {place} {" ".join(states)}\n')
        for child in node.get_children():
            self._dump(child, file, depth + 1)


class Story(unittest.TestCase):
    """A test case in a home directory of its own; its methods are named shouldDoThis."""

    executable = None
    evidence = None
    # What starts the program, by becoming it.
    command = []
    program = Program

    def setUp(self):
        self.home = pathlib.Path(tempfile.mkdtemp(prefix="home-"))
        self.addCleanup(shutil.rmtree, self.home)

    @contextlib.contextmanager
    def running(self):
        """The program from its window's appearance on."""
        with self.program(self) as program:
            program.see_window()
            yield program

    def run_again(self, **environment):
        """Starts another process of the program, with these variables instead of the story's or,
        if they are None, without them; returns its status and what it said.
        """
        variables = self.environment() | environment
        run = subprocess.run(
            [self.executable], stdin=subprocess.DEVNULL, stdout=subprocess.PIPE,
            stderr=subprocess.STDOUT, text=True, timeout=2 * DEADLINE,
            env={name: value for name, value in variables.items() if value is not None})
        return run.returncode, own_words(run.stdout)

    def environment(self):
        kept = ("PATH", "DISPLAY", "WAYLAND_DISPLAY", "DBUS_SESSION_BUS_ADDRESS",
                "XDG_RUNTIME_DIR", "XDG_SESSION_TYPE", "SWAYSOCK", "TZ", "ASAN_OPTIONS",
                "UBSAN_OPTIONS")
        return {name: os.environ[name] for name in kept if name in os.environ} | {
            "HOME": str(self.home), "LC_ALL": "C.UTF-8", "QT_LINUX_ACCESSIBILITY_ALWAYS_ON": "1",
            "QT_MESSAGE_PATTERN": MESSAGES}


def main():
    """Runs the stories of the calling script: SCRIPT PROGRAM EVIDENCE_FOLDER [unittest's own]."""
    Story.executable, Story.evidence = sys.argv[1], pathlib.Path(sys.argv[2])
    shutil.rmtree(Story.evidence, ignore_errors=True)

    # Noon, more or less, wherever this runs: no day ends in the middle of a story.
    hours_to_noon = 12 - datetime.datetime.now(datetime.timezone.utc).hour
    os.environ["TZ"] = f"Etc/GMT{-hours_to_noon:+d}"
    time.tzset()
    if not IS_WAYLAND:
        # So that xdotool need not invent keys for the Danish letters.
        subprocess.run(["setxkbmap", "dk"], check=True)
        listen_to_keys()

    # For what is told of changes. Its own patience is less than a second.
    Atspi.init()
    Atspi.set_timeout(DEADLINE * 1000, DEADLINE * 1000)
    Atspi.get_desktop(0).set_cache_mask(Atspi.Cache.NONE)
    loader = unittest.TestLoader()
    loader.testMethodPrefix = "should"
    unittest.main(module="__main__", argv=[sys.argv[0], *sys.argv[3:]], testLoader=loader,
                  verbosity=2)
