"""The accessibility tree, asked about many things at once. The library that is usual for this asks
for one thing after the other, and a walk through the tree needs a thousand of them. Each waits for
its turn in three processes, which comes to seconds on a machine that is busy with other things.
"""

import concurrent.futures
import functools

from gi.repository import Atspi, Gio, GLib

# What the names of all interfaces begin with.
NAMES = "org.a11y.atspi."
# Threads and no callbacks: a signal's handler may raise an exception where answers are awaited.
_askers = concurrent.futures.ThreadPoolExecutor(32)


@functools.cache
def _bus():
    """The bus that accessibility has of its own."""
    session = Gio.bus_get_sync(Gio.BusType.SESSION)
    address, = session.call_sync("org.a11y.Bus", "/org/a11y/bus", "org.a11y.Bus", "GetAddress",
                                 None, None, Gio.DBusCallFlags.NONE, -1).unpack()
    return Gio.DBusConnection.new_for_address_sync(
        address, Gio.DBusConnectionFlags.AUTHENTICATION_CLIENT
        | Gio.DBusConnectionFlags.MESSAGE_BUS_CONNECTION, None, None)


class Node:
    """Something in the tree. Once it is gone, everything that is asked of it raises GLib.Error."""

    def __init__(self, owner, path):
        self._owner, self._path = owner, path

    def __eq__(self, other):
        return (self._owner, self._path) == (other._owner, other._path)

    def __hash__(self):
        return hash((self._owner, self._path))

    def _call(self, interface, method, signature="()", *arguments):
        return _bus().call_sync(self._owner, self._path, interface, method,
                                GLib.Variant(signature, arguments), None,
                                Gio.DBusCallFlags.NONE, -1).unpack()

    def _property(self, interface, name):
        return self._call("org.freedesktop.DBus.Properties", "Get", "(ss)", NAMES + interface,
                          name)[0]

    def get_process_id(self):
        return _bus().call_sync("org.freedesktop.DBus", "/", "org.freedesktop.DBus",
                                "GetConnectionUnixProcessID", GLib.Variant("(s)", (self._owner,)),
                                None, Gio.DBusCallFlags.NONE, -1).unpack()[0]

    def get_children(self):
        children, = self._call(NAMES + "Accessible", "GetChildren")
        return [Node(*child) for child in children if not child[1].endswith("/null")]

    def get_window(self):
        """What it is in and stands below the application: a window."""
        node, parent = self, Node(*self._property("Accessible", "Parent"))
        while parent.get_role() != Atspi.Role.APPLICATION:
            node, parent = parent, Node(*parent._property("Accessible", "Parent"))
        return node

    def get_name(self):
        return self._property("Accessible", "Name")

    def get_description(self):
        return self._property("Accessible", "Description")

    def get_role(self):
        return self._call(NAMES + "Accessible", "GetRole")[0]

    def get_role_name(self):
        return self._call(NAMES + "Accessible", "GetRoleName")[0]

    def get_interfaces(self):
        return self._call(NAMES + "Accessible", "GetInterfaces")[0]

    def has_state(self, state):
        words, = self._call(NAMES + "Accessible", "GetState")
        return bool(words[int(state) // 32] >> int(state) % 32 & 1)

    def get_states(self):
        return [state for state in map(Atspi.StateType, range(int(Atspi.StateType.LAST_DEFINED)))
                if self.has_state(state)]

    def get_extents(self):
        """Its place on the screen: x, y, width, height."""
        return self._call(NAMES + "Component", "GetExtents", "(u)", int(Atspi.CoordType.SCREEN))[0]

    def grab_focus(self):
        self._call(NAMES + "Component", "GrabFocus")

    def get_text(self):
        return self._call(NAMES + "Text", "GetText", "(ii)", 0, -1)[0]

    def get_actions(self):
        """The names of what can be done to it."""
        return [self._call(NAMES + "Action", "GetName", "(i)", action)[0]
                for action in range(self._property("Action", "NActions"))]

    def do_action(self, name):
        self._call(NAMES + "Action", "DoAction", "(i)", self.get_actions().index(name))


def applications():
    """What stands at the tree's top."""
    return Node("org.a11y.atspi.Registry", "/org/a11y/atspi/accessible/root").get_children()


def await_registration(application):
    """Returns when the application knows of all that is listened for. The registry tells it that
    somebody listens, and it asks back for what; until it has the answer, it tells of nothing. What
    the bus carries comes in order: each of the two steps is over when the same way was gone again.
    """
    for _ in range(2):
        _bus().call_sync(f"{NAMES}Registry", "/org/a11y/atspi/registry", f"{NAMES}Registry",
                         "GetRegisteredEvents", None, None, Gio.DBusCallFlags.NONE, -1)
        application.get_children()


def ask(question, nodes):
    """The answers of all the nodes, in their order."""
    return list(_askers.map(question, nodes))


def walk(node):
    """All of the tree from the node on, each one before what is in it."""
    children, level = {}, [node]
    while level:
        answers = ask(Node.get_children, level)
        children |= zip(level, answers)
        level = [child for answer in answers for child in answer]

    def below(parent):
        yield parent
        for child in children[parent]:
            yield from below(child)
    return list(below(node))
