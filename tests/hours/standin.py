"""standin.py STORE KIND [PROGRAM]: has the program's name on the session bus and, but for the kind "stranger",
holds the store, as the program does. Says "ready" and, for each call of Tasks, "called FROM TO".
Kinds:

older       knows no interface
stranger    answers, but does not hold the store
ending      ends at the first call
replaced    becomes PROGRAM at the first call
breaking    answers in parts, and ends before the last of them
changing    answers in parts, between which tasks change the first time
silent      never answers
failing     answers with an error
"""

import fcntl
import os
import sys

from gi.repository import Gio, GLib

STORE, KIND, *PROGRAM = sys.argv[1:]
NAME, PATH, INTERFACE = "dk.tulo.TimeTracker", "/dk/tulo/TimeTracker", "dk.tulo.TimeTracker1"
XML = f"""<node><interface name="{INTERFACE}">
<property name="Changes" type="t" access="read"/>
<method name="Tasks"><arg type="s" direction="in"/><arg type="s" direction="in"/>
<arg type="a(sbssx)" direction="out"/></method></interface></node>"""
# SQLite's locks, of which these keep others from reading.
FIRST_LOCK, LOCKS = 0x40000002, 510


def say(word):
    print(word, flush=True)


class Tasks:
    def __init__(self):
        self.parts = 0
        self.asked_for_changes = 0

    def call(self, connection, sender, path, interface, method, arguments, invocation):
        first, last = arguments.unpack()
        say(f"called {first} {last}")
        if KIND == "ending":
            os._exit(0)
        if KIND == "replaced":
            os.execv(PROGRAM[0], PROGRAM)
        if KIND == "silent":
            return
        if KIND == "failing":
            invocation.return_dbus_error(f"{INTERFACE}.Error.Unreadable", "Diskæn is broken.")
            return
        if KIND in ("breaking", "changing") and first[:7] != last[:7]:
            invocation.return_dbus_error(f"{INTERFACE}.Error.TooLarge", "Too large.")
            return
        self.parts += 1
        if KIND == "breaking" and self.parts == 2:
            os._exit(0)
        invocation.return_value(GLib.Variant("(a(sbssx))", ([(first, True, "X", "a", 3600)],)))

    def changes(self, *_):
        self.asked_for_changes += 1
        return GLib.Variant("t", min(self.asked_for_changes, 2))


if KIND != "stranger":
    file = open(STORE, "r+b")
    fcntl.lockf(file, fcntl.LOCK_EX | fcntl.LOCK_NB, LOCKS, FIRST_LOCK)
bus = Gio.bus_get_sync(Gio.BusType.SESSION)
if KIND != "older":
    tasks = Tasks()
    bus.register_object(PATH, Gio.DBusNodeInfo.new_for_xml(XML).interfaces[0], tasks.call,
                        tasks.changes, None)
Gio.bus_own_name_on_connection(bus, NAME, Gio.BusNameOwnerFlags.DO_NOT_QUEUE,
                               lambda *_: say("ready"), lambda *_: os._exit(1))
GLib.MainLoop().run()
