"""running.py TULO_HOURS TULO_TIME_TRACKER: what the month's hours say while the program runs, does
not run, ends meanwhile or is another version. Needs a session bus of its own.
"""

import contextlib
import datetime
import json
import os
import pathlib
import shutil
import signal
import sqlite3
import subprocess
import sys
import tempfile
import time
import unittest

from gi.repository import Gio, GLib

import reckoning

NAME, PATH = "dk.tulo.TimeTracker", "/dk/tulo/TimeTracker"
STANDIN = pathlib.Path(__file__).parent / "standin.py"
DEADLINE = 60
MONTH = ("--month", "2026-11")


def wait_until(condition, what):
    end = time.monotonic() + DEADLINE
    while not condition():
        if time.monotonic() > end:
            raise AssertionError(f"Not within {DEADLINE} s: {what}")
        time.sleep(0.01)


def has_owner():
    return Gio.bus_get_sync(Gio.BusType.SESSION).call_sync(
        "org.freedesktop.DBus", "/", "org.freedesktop.DBus", "NameHasOwner",
        GLib.Variant("(s)", (NAME,)), None, Gio.DBusCallFlags.NONE, -1).unpack()[0]


def tasks(first="2026-11-01", last="2026-11-30"):
    """What the program itself answers, once it can."""
    return Gio.bus_get_sync(Gio.BusType.SESSION).call_sync(
        NAME, PATH, "dk.tulo.TimeTracker1", "Tasks", GLib.Variant("(ss)", (first, last)), None,
        Gio.DBusCallFlags.NO_AUTO_START, DEADLINE * 1000).unpack()[0]


class Running(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        folder = tempfile.TemporaryDirectory()
        cls.addClassCleanup(folder.cleanup)
        cls.made = pathlib.Path(folder.name) / "made"
        store = reckoning.empty_store(cls.made)
        reckoning.fill(store)
        with sqlite3.connect(store) as database:
            day = datetime.date(2026, 11, 3)
            # A NUL, what is no UTF-8, and half a surrogate pair.
            for text in ("610062", "61FF62", "61EDA08062"):
                reckoning.insert(database, day, "odd", "odd", 900)
                database.execute(f"UPDATE Task SET name = CAST(x'{text}' AS TEXT), projectCode = "
                                 f"CAST(x'{text}' AS TEXT) WHERE name = 'odd'")
        database.close()

    def setUp(self):
        folder = tempfile.TemporaryDirectory()
        self.addCleanup(folder.cleanup)
        self.folder = pathlib.Path(folder.name) / "data"
        shutil.copytree(self.made, self.folder)
        self.store = self.folder / "dk.tulo.TimeTracker/store.sqlite"

    def environment(self, folder=None):
        return reckoning.environment(
            folder or self.folder,
            DBUS_SESSION_BUS_ADDRESS=os.environ["DBUS_SESSION_BUS_ADDRESS"])

    def hours(self, *arguments, folder=None):
        return subprocess.run([reckoning.HOURS, *arguments], stdin=subprocess.DEVNULL,
                              capture_output=True, env=self.environment(folder), timeout=DEADLINE)

    def answer(self, *arguments, folder=None):
        done = self.hours(*arguments, folder=folder)
        self.assertEqual((done.returncode, done.stderr), (0, b""), arguments)
        return done.stdout

    @contextlib.contextmanager
    def process(self, command):
        process = subprocess.Popen(command, env=self.environment(), stdin=subprocess.DEVNULL,
                                   stdout=subprocess.PIPE, text=True)
        try:
            yield process
        finally:
            process.send_signal(signal.SIGCONT)
            process.kill()
            process.communicate()
            wait_until(lambda: not has_owner(), "the name is free")

    @contextlib.contextmanager
    def running(self):
        """The program, from its first answer on."""
        with self.process([reckoning.PROGRAM]) as process:
            wait_until(has_owner, "the program has its name")
            with contextlib.suppress(GLib.Error):
                tasks()
            yield process

    @contextlib.contextmanager
    def standin(self, *kind):
        with self.process([sys.executable, "-B", STANDIN, self.store, *kind]) as process:
            self.assertEqual(process.stdout.readline(), "ready\n")
            yield process

    @contextlib.contextmanager
    def holder(self):
        """Another process that holds the store."""
        script = ("import sqlite3, sys; d = sqlite3.connect(sys.argv[1]);"
                  "d.execute('PRAGMA locking_mode = EXCLUSIVE'); d.execute('BEGIN EXCLUSIVE');"
                  "print(flush=True); sys.stdin.read()")
        with subprocess.Popen([sys.executable, "-c", script, self.store], stdin=subprocess.PIPE,
                              stdout=subprocess.PIPE) as process:
            process.stdout.readline()
            yield
            process.communicate()

    def answers(self):
        """For many combinations of options."""
        for form in reckoning.FORMATS:
            for keys in ("code", "day", "task", "code,day", "day,code,task"):
                for period in (MONTH, ("--month", "2026-10"), ("--week", "2025-W13"),
                               ("--from", "0001-01-01", "--to", "9999-12-31"),
                               ("--from", "2030-01-01", "--to", "2030-01-01")):
                    arguments = (*period, "--by", keys, "--format", form)
                    yield arguments, self.answer(*arguments)

    def shouldSayTheSameWhetherTheProgramRunsOrNot(self):
        without = dict(self.answers())
        self.assertIn("a\ufffdb".encode(), without[*MONTH, "--by", "day,code,task", "--format",
                                                   "json"])
        with self.running():
            running = dict(self.answers())
        self.assertEqual(running, without)

    def shouldSayTheSameOfMoreThanOneAnswerHolds(self):
        with sqlite3.connect(self.store) as database:
            for number in range(400):
                day = datetime.date(2026, 1, 1) + datetime.timedelta(number % 100)
                reckoning.insert(database, day, f"{number} " + 60_000 * "ø", None, number)
        database.close()
        arguments = ("--from", "2026-01-01", "--to", "2026-12-31", "--by", "task", "--format",
                     "json")
        without = self.answer(*arguments)
        with self.running():
            with self.assertRaises(GLib.Error) as caught:
                tasks("2026-01-01", "2026-12-31")
            self.assertEqual(Gio.DBusError.get_remote_error(caught.exception),
                             "dk.tulo.TimeTracker1.Error.TooLarge")
            self.assertEqual(self.answer(*arguments), without)

    def shouldCountARunningTaskUpToNow(self):
        today = datetime.date.today()
        begin = time.time() - 1000
        with sqlite3.connect(self.store) as database:
            reckoning.insert(database, today, "løber", None, 5, started=begin)
        database.close()
        def seconds():
            rows = json.loads(self.answer("--from", today.isoformat(), "--to", today.isoformat(),
                                          "--by", "task", "--format", "json"))["rows"]
            return next(row["seconds"] for row in rows if row["name"] == "løber")
        with self.running():
            least = int(5 + time.time() - begin)
            found = seconds()
            self.assertTrue(least <= found <= 5 + time.time() - begin, (least, found))

    def shouldNotDisturbTheProgram(self):
        with self.running() as program:
            before = self.store.read_bytes()
            self.answer(*MONTH)
            self.assertEqual(self.store.read_bytes(), before)
            program.terminate()
            self.assertEqual(program.wait(DEADLINE), 0)
        with contextlib.closing(sqlite3.connect(self.store)) as database:
            self.assertEqual(database.execute("PRAGMA integrity_check").fetchone(), ("ok",))

    def shouldReadTheStoreIfTheProgramEndsMeanwhile(self):
        without = self.answer(*MONTH)
        with self.running() as program:
            program.send_signal(signal.SIGSTOP)
            hours = subprocess.Popen([reckoning.HOURS, *MONTH], stdout=subprocess.PIPE,
                                     stderr=subprocess.PIPE, env=self.environment())
            program.send_signal(signal.SIGKILL)
            output, errors = hours.communicate(timeout=DEADLINE)
            program.wait(DEADLINE)
            self.assertEqual((hours.returncode, output, errors), (0, without, b""))

    def shouldReadTheStoreIfTheProgramEndsInsteadOfAnAnswer(self):
        without = self.answer(*MONTH)
        with self.standin("ending") as program:
            self.assertEqual(self.answer(*MONTH), without)
            self.assertEqual(program.stdout.read(), "called 2026-11-01 2026-11-30\n")

    def shouldBeginAgainWithTheProgramThatReplacesAnother(self):
        without = self.answer(*MONTH)
        with self.standin("replaced", reckoning.PROGRAM) as program:
            self.assertEqual(self.answer(*MONTH), without)
            wait_until(has_owner, "the other program has its name")
            tasks()
            self.assertEqual(self.answer(*MONTH), without)
            program.terminate()
            self.assertEqual(program.wait(DEADLINE), 0)

    def shouldForgetThePartsOfAProgramThatEndsBetweenThem(self):
        arguments = ("--from", "2026-10-01", "--to", "2026-11-30")
        without = self.answer(*arguments)
        with self.standin("breaking") as program:
            self.assertEqual(self.answer(*arguments), without)
            self.assertGreater(program.stdout.read().count("called"), 2)

    def shouldAskAgainIfTasksChangeBetweenTwoParts(self):
        with self.standin("changing") as program:
            found = json.loads(self.answer("--from", "2026-11-01", "--to", "2026-12-31",
                                           "--format", "json"))
            program.terminate()
            calls = program.stdout.read().splitlines()
        whole = "called 2026-11-01 2026-12-31"
        self.assertEqual((calls[0], calls.count(whole)), (whole, 2))
        again = calls[calls.index(whole, 1):]
        self.assertEqual(calls, again * 2)
        # Each part that lies in one month is answered with an hour.
        parts = [call for call in again if call[7:14] == call[18:25]]
        self.assertEqual(found["total"]["seconds"], 3600 * len(parts))

    def shouldRefuseAnOlderVersion(self):
        with self.standin("older"):
            done = self.hours(*MONTH)
        self.assertEqual((done.returncode, done.stdout), (1, b""))
        self.assertEqual(done.stderr.decode(),
                         "TULO Time Tracker is running, but is of an older version, which cannot be "
                         "asked for its tasks. Quit it and try again.\n")

    def shouldSayWhatTheProgramSays(self):
        with self.standin("failing"):
            done = self.hours(*MONTH)
        self.assertEqual((done.returncode, done.stdout, done.stderr.decode()),
                         (1, b"", "Diskæn is broken.\n"))

    def shouldNameTheTaskWhoseTimeCannotBeAddedUpInTheSameWords(self):
        with sqlite3.connect(self.store) as database:
            # The one whose time the program shows all the time is the first that runs.
            reckoning.insert(database, datetime.date(2026, 11, 1), "a", None, 0, started=time.time())
            reckoning.insert(database, datetime.date(2026, 11, 2), "stor", None, 2**63 - 1,
                             started=0.0)
        database.close()
        without = self.hours(*MONTH)
        self.assertEqual(without.returncode, 1)
        self.assertIn(b'task "stor" of 2026-11-02', without.stderr)
        with self.running() as program:
            running = self.hours(*MONTH)
            self.assertIsNone(program.poll())
        self.assertEqual((running.returncode, running.stdout, running.stderr),
                         (1, without.stdout, without.stderr))

    def shouldNotAskWhoDoesNotHoldTheStore(self):
        without = self.answer(*MONTH)
        with self.standin("stranger") as stranger:
            self.assertEqual(self.answer(*MONTH), without)
            with self.holder():
                done = self.hours(*MONTH)
                self.assertEqual((done.returncode, done.stdout), (1, b""))
                self.assertIn("is in use by another process", done.stderr.decode())
            stranger.terminate()
            self.assertEqual(stranger.stdout.read(), "")

    def shouldReadAnotherStoreThanTheProgramsItself(self):
        other = self.folder.parent / "other"
        shutil.copytree(self.made, other)
        with sqlite3.connect(other / "dk.tulo.TimeTracker/store.sqlite") as database:
            database.execute("DELETE FROM Task")
        database.close()
        with self.running():
            self.assertIn("0,00", self.answer(*MONTH, folder=other).decode())
            self.assertNotEqual(self.answer(*MONTH, folder=other), self.answer(*MONTH))


if __name__ == "__main__":
    reckoning.HOURS, reckoning.PROGRAM = sys.argv[1:]
    loader = unittest.TestLoader()
    loader.testMethodPrefix = "should"
    unittest.main(argv=sys.argv[:1], testLoader=loader)
