"""A second start brings the window of the one that runs forward, wherever it is, and ends."""

import contextlib
import ctypes
import signal
import subprocess
import tempfile
import uuid

import harness
from dayprogram import UNNAMED, DayProgram
from harness import active_window, answer, wait_until, xdotool


@contextlib.contextmanager
def another_window():
    """A window of another program, which covers everything and has the keyboard."""
    # One that is just going, of an earlier story, is not taken for it.
    title = f"Another {uuid.uuid4()}"
    process = subprocess.Popen(
        ["display", "-title", title, "-geometry", "+0+0", "-size", "1200x760", "xc:grey"],
        stdin=subprocess.DEVNULL)
    try:
        window = wait_until(lambda: answer("search", "--onlyvisible", "--name", title),
                            "the other window is there")
        xdotool("windowactivate", window)
        wait_until(lambda: active_window() == window, "the other window is active")
        yield
    finally:
        process.kill()
        process.wait()


class RootMessages:
    """What programs have told the desktop by messages to the root window since this began."""

    class Event(ctypes.Structure):
        _fields_ = [("type", ctypes.c_int), ("serial", ctypes.c_ulong),
                    ("send_event", ctypes.c_int), ("display", ctypes.c_void_p),
                    ("window", ctypes.c_ulong), ("message_type", ctypes.c_ulong),
                    ("format", ctypes.c_int), ("numbers", ctypes.c_long * 5),
                    ("rest", ctypes.c_long * 24)]

    ClientMessage = 33
    SubstructureNotify = 1 << 19
    PropertyChange = 1 << 22

    def __init__(self):
        self.x11 = x11 = ctypes.CDLL("libX11.so.6")
        x11.XOpenDisplay.restype = ctypes.c_void_p
        x11.XDefaultRootWindow.restype = ctypes.c_ulong
        x11.XInternAtom.restype = ctypes.c_ulong
        self.display = ctypes.c_void_p(x11.XOpenDisplay(None))
        root = ctypes.c_ulong(x11.XDefaultRootWindow(self.display))
        x11.XSelectInput(self.display, root,
                         ctypes.c_long(self.SubstructureNotify | self.PropertyChange))
        x11.XSync(self.display, 0)
        self.ended = b""
        self.activations = []

    def close(self):
        self.x11.XCloseDisplay(self.display)

    def atom(self, name):
        return self.x11.XInternAtom(self.display, name, 0)

    def read(self):
        """Takes up what has come: the texts about starts in a row, the times of activations."""
        event = self.Event()
        while self.x11.XPending(self.display):
            self.x11.XNextEvent(self.display, ctypes.byref(event))
            if event.type != self.ClientMessage:
                continue
            if event.message_type in (self.atom(b"_NET_STARTUP_INFO_BEGIN"),
                                      self.atom(b"_NET_STARTUP_INFO")):
                self.ended += ctypes.string_at(ctypes.addressof(event.numbers), 20)
            elif event.message_type == self.atom(b"_NET_ACTIVE_WINDOW"):
                self.activations.append(event.numbers[1])
        return self


class Instance(harness.Story):
    program = DayProgram

    def setUp(self):
        super().setUp()
        self.addCleanup(xdotool, "set_desktop", 0)

    def start_again(self, **environment):
        self.assertEqual(self.run_again(**environment), (0, ""))

    @contextlib.contextmanager
    def running_with_window(self):
        with self.running() as program:
            yield program, program.see_active(f"^{harness.TITLE}$")

    def shouldRaiseAWindowBehindAnother(self):
        with self.running_with_window() as (program, window), another_window():
            self.start_again()
            wait_until(lambda: active_window() == window, "the window is active")
            program.see_window()
            program.press_button("Ny opgave")
            program.row(UNNAMED)

    def shouldRaiseAMinimisedWindow(self):
        with self.running_with_window() as (program, window):
            xdotool("windowminimize", window)
            wait_until(lambda: not program.visible_windows(), "the window is minimised")
            self.start_again()
            wait_until(lambda: program.visible_windows() and active_window() == window,
                       "the window is active")
            program.see_window()

    def shouldRaiseAWindowOfAnotherDesktop(self):
        with self.running_with_window() as (program, window):
            xdotool("set_desktop", 1)
            wait_until(lambda: answer("get_desktop") == "1" and not program.visible_windows(),
                       "the other desktop is shown")
            with another_window():
                self.start_again()
                wait_until(lambda: active_window() == window, "the window is active")
                self.assertEqual(answer("get_desktop"), answer("get_desktop_for_window", window))
                program.see_window()

    @contextlib.contextmanager
    def root_messages(self):
        messages = RootMessages()
        try:
            yield messages
        finally:
            messages.close()

    def shouldEndTheStartThatTheDesktopShowsABusyPointerFor(self):
        with self.running_with_window() as (program, window), self.root_messages() as messages:
            self.start_again(DESKTOP_STARTUP_ID="launcher-1-a long name_TIME4711")
            end = b"remove: ID=launcher-1-a\\ long\\ name_TIME4711\0"
            wait_until(lambda: end in messages.read().ended, "the start has ended")
            wait_until(lambda: 4711 in messages.read().activations,
                       "the window is activated with the time of the click")

    def shouldActivateItsWindowWithATime(self):
        with self.running_with_window() as (program, window), self.root_messages() as messages:
            self.start_again()
            wait_until(lambda: messages.read().activations, "the window is activated")
            program.see_window()
            self.assertNotIn(0, messages.read().activations)

    def shouldOpenAWindowThatWasClosed(self):
        with self.running_with_window() as (program, window):
            program.press_button("Ny opgave")
            program.row(UNNAMED)
            program.close_window()
            wait_until(lambda: not program.visible_windows(), "the window is closed")
            with another_window():
                self.start_again()
                program.see_window()
                program.row(UNNAMED)

    def shouldBeRefusedByTheStoreWithoutABus(self):
        with self.running() as program:
            program.press_button("Ny opgave")
            program.row(UNNAMED)
            status, words = self.run_again(DBUS_SESSION_BUS_ADDRESS=None)
            self.assertEqual(status, 1)
            self.assertIn("store.sqlite\" is in use by another process", words)
            program.quit()
            program.ends_well()

    def shouldBeFoundFromAnotherHome(self):
        with self.running_with_window() as (program, window), another_window():
            with tempfile.TemporaryDirectory() as home:
                self.start_again(HOME=home)
            wait_until(lambda: active_window() == window, "the window is active")

    def shouldEndWellWhenTheDesktopAsksForIt(self):
        with self.running() as program:
            program.press_button("Ny opgave")
            program.row(UNNAMED)
            program.quit()
            program.ends_well()

        with self.running() as program:
            program.row(UNNAMED)

    def shouldSucceedOneThatWasKilled(self):
        with self.running() as program:
            program.kill()
        with self.running_with_window() as (program, window):
            self.start_again()

    def shouldSayThatTheFirstDoesNotAnswer(self):
        with self.running() as program:
            program.process.send_signal(signal.SIGSTOP)
            words = self.run_again()
            program.process.send_signal(signal.SIGCONT)
            self.assertEqual(
                words, (1, "TULO Time Tracker is running already, but does not answer\n"))
            program.see_window()


if __name__ == "__main__":
    harness.main()
