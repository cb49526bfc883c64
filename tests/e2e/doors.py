"""What others can reach of the program: its objects on the session bus, and nothing else."""

import pathlib
import re
import xml.etree.ElementTree

import desktop
import harness
from gi.repository import Gio, GLib
from menubar import MenuBarProgram

TASK = "Møde på Ærø"
# One of each type that a message can have.
WRONG = ["()", "('x',)", "(int32 -1,)", "(uint32 4294967295,)", "(1.5, true)", "(<<'deep'>>,)",
         "(@a{sv} {},)", "(@as [], @ai [])", "(objectpath '/', signature 'a{sv}')",
         "([byte 0xff, 0x00], 'x', 'x', 'x', 'x')", "(@a(iiay) [], handle 0)"]


class Bus:
    """The objects of one process on the session bus."""

    def __init__(self, process):
        self.bus = Gio.bus_get_sync(Gio.BusType.SESSION)
        names = self.call("org.freedesktop.DBus", "/", "org.freedesktop.DBus", "ListNames")[0]
        self.name, = (name for name in names if name.startswith(":") and self.call(
            "org.freedesktop.DBus", "/", "org.freedesktop.DBus", "GetConnectionUnixProcessID",
            GLib.Variant("(s)", (name,)))[0] == process)

    def call(self, name, path, interface, method, arguments=None):
        return self.bus.call_sync(name, path, interface, method, arguments, None,
                                  Gio.DBusCallFlags.NO_AUTO_START, harness.DEADLINE * 1000,
                                  None).unpack()

    def methods(self, path="/"):
        """Path, interface, name and types of each method below a path."""
        answer = self.call(self.name, path, "org.freedesktop.DBus.Introspectable", "Introspect")
        node = xml.etree.ElementTree.fromstring(answer[0])
        for interface in node.findall("interface"):
            for method in interface.findall("method"):
                types = "".join(argument.get("type") for argument in method.findall("arg")
                                if argument.get("direction", "in") == "in")
                yield path, interface.get("name"), method.get("name"), f"({types})"
        for child in node.findall("node"):
            yield from self.methods(f"{path.rstrip('/')}/{child.get('name')}")

    def send(self, path, interface, method, arguments):
        """Calls without waiting for an answer."""
        self.bus.call(self.name, path, interface, method, arguments, None,
                      Gio.DBusCallFlags.NO_AUTO_START, -1, None, None)

    def wait_until_all_is_answered(self):
        self.call(self.name, "/", "org.freedesktop.DBus.Peer", "Ping")


class Doors(harness.Story):
    program = MenuBarProgram

    def environment(self):
        # From Qt 6.8 on, Qt tells of each call with wrong types.
        return super().environment() | {"QT_LOGGING_RULES": "qt.dbus.integration.warning=false"}

    def shouldLoseNothingToAFloodOfWrongCalls(self):
        wrong = [GLib.Variant.parse(None, text) for text in WRONG]
        with desktop.status_notifier_host():
            with self.running() as program:
                program.make_task(TASK)
                program.press_button(f"Start {TASK}")
                program.see_running(TASK)
                bus = Bus(program.process.pid)
                methods = list(bus.methods())
                self.assertIn("org.freedesktop.Application",
                              {interface for _, interface, _, _ in methods})
                self.assertIn(("/dk/tulo/TimeTracker", "dk.tulo.TimeTracker1", "Tasks", "(ss)"),
                              methods)
                self.assertIn("org.kde.StatusNotifierItem",
                              {interface for _, interface, _, _ in methods})
                for _ in range(20):
                    for path, interface, method, types in methods:
                        for arguments in wrong:
                            if arguments.get_type_string() != types:
                                bus.send(path, interface, method, arguments)
                    bus.send("/", "no.such.Interface", "Method", None)
                    bus.send("/no/such/path", "org.freedesktop.Application", "Activate", None)
                bus.wait_until_all_is_answered()
                program.rename(TASK, "Efter floden")
                program.see_running("Efter floden")
                program.kill()
            with self.running() as program:
                program.see_running("Efter floden")
                program.quit()
                program.ends_well()

    def shouldListenNowhere(self):
        with desktop.status_notifier_host():
            with self.running() as program:
                program.make_task(TASK)
                process = pathlib.Path("/proc", str(program.process.pid))
                own = {match[1] for file in (process / "fd").iterdir()
                       if (match := re.match(r"socket:\[(\d+)\]", self.target(file)))}
                self.assertTrue(own)
                self.assertEqual(list(self.listening(process / "net", own)), [])
                program.quit()
                program.ends_well()

    @staticmethod
    def target(file):
        try:
            return str(file.readlink())
        except FileNotFoundError:
            return ""

    @staticmethod
    def listening(net, own):
        """The sockets of a process that others can connect or send to."""
        for protocol in ("tcp", "tcp6", "udp", "udp6", "udplite", "udplite6", "raw", "raw6"):
            file = net / protocol
            for line in file.read_text().splitlines()[1:] if file.exists() else []:
                if line.split()[9] in own:
                    yield f"{protocol} {line}"
        for line in (net / "unix").read_text().splitlines()[1:]:
            _, _, _, flags, kind, _, inode, *path = line.split()
            accepts = int(flags, 16) & 0x10000
            is_bound_datagram = kind == "0002" and path
            if inode in own and (accepts or is_bound_datagram):
                yield f"unix {line}"


if __name__ == "__main__":
    harness.main()
