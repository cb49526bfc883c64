"""reckoning.py TULO_HOURS TULO_TIME_TRACKER: compares what the month's hours say with a reckoning
that shares nothing with them but the store's file, for every combination of options; and looks at
what else they promise: that they change nothing, how they end, and what they say.
"""

import csv
import datetime
import io
import itertools
import json
import math
import os
import pathlib
import pty
import random
import re
import shutil
import sqlite3
import subprocess
import sys
import tempfile
import unicodedata
import unittest
import zoneinfo

APPLICATION = 0x54554C4F
VERSION = 10000
KEYS = ("code", "day", "task")
FORMATS = ("table", "csv", "json")
TITLES = {"code": "Projektkode", "day": "Dag", "task": "Opgave"}
MEMBERS = {"code": "projectCode", "day": "day", "task": "name"}
ZONE = "Europe/Copenhagen"

ODD_NAMES = [
    "", " ", "a;b", 'say "hi"', '"', "a,b", "a\tb", "\tb", "a\nb", "a\r\nb", "a\rb", "=1+1", "+1",
    "-1", "@SUM(A1:A9)", "'=1", "I alt", "Uden projektkode", "Unavngivet opgave", "æøå ÆØÅ",
    "日本語の仕事", "e\u0301t", "😀 smil", "\u2028", "\x1b[31mrød", "\u202eomvendt", "a\u0000b"[:1],
    "x" * 10_000, "ø" * 10_000, "\\", "\\n", "</script>", "null", "  to  mellemrum  ", "%s%n", "$(id)",
]


def exact_quarters(seconds):
    """Billable quarters, from the rule in words: a begun quarter counts after five minutes of it."""
    if seconds <= 0:
        return 0
    whole, rest = divmod(seconds, 15 * 60)
    return whole + (1 if rest > 5 * 60 else 0)


def two_decimals(hours):
    return f"{hours:.2f}"


class Reckoned:
    """Sums of tasks, by hand."""

    def __init__(self):
        self.seconds = 0
        self.hours = 0.0
        self.quarters = 0

    def add(self, seconds):
        self.seconds += seconds
        # In the order in which the window adds them up; a sum of floats depends on it.
        self.hours += seconds / 3600
        self.quarters += exact_quarters(seconds)

    def texts(self):
        return two_decimals(self.hours), two_decimals(self.quarters / 4)

    def danish(self):
        return tuple(text.replace(".", ",") for text in self.texts())


def start_of(day, zone):
    """The first moment of a day, in seconds since 1970; midnight is never skipped or twice here."""
    return datetime.datetime(day.year, day.month, day.day,
                             tzinfo=zoneinfo.ZoneInfo(zone)).timestamp()


def reckon(store, first, last, keys, zone=ZONE):
    """The rows by their keys' values, and the total."""
    begin, end = start_of(first, zone), start_of(last + datetime.timedelta(1), zone)
    rows, total = {}, Reckoned()
    with sqlite3.connect(f"file:{store}?mode=ro&immutable=1", uri=True) as database:
        tasks = [(datetime.datetime.fromtimestamp(date, zoneinfo.ZoneInfo(zone)).date(), rowid,
                  code, name, seconds)
                 for rowid, date, code, name, seconds in database.execute(
                     "SELECT rowid, date, projectCode, name, accumulatedSeconds FROM Task")
                 if begin <= date < end]
    database.close()
    for day, _, code, name, seconds in sorted(tasks, key=lambda task: task[:2]):
        values = {"day": day.isoformat(), "code": code, "task": name}
        rows.setdefault(tuple(values[key] for key in keys), Reckoned()).add(seconds)
        total.add(seconds)
    return rows, total


def words(key, value):
    """What people read for a key's value."""
    if key == "code" and value is None:
        return "Uden projektkode"
    if key == "task" and value == "":
        return "Unavngivet opgave"
    return value


def harmless(text):
    return "'" + text if text[:1] in tuple("=+-@\t") else text


def in_one_line(text):
    return "".join(" " if unicodedata.category(letter) in ("Cc", "Zl", "Zp")
                   or unicodedata.bidirectional(letter) in
                   ("LRE", "LRO", "RLE", "RLO", "PDF", "LRI", "RLI", "FSI", "PDI")
                   else letter for letter in text)


def width(text):
    return sum(0 if unicodedata.combining(letter) or unicodedata.category(letter) in ("Mn", "Cf")
               else 2 if unicodedata.east_asian_width(letter) in "WF" else 1 for letter in text)


def months(first, last):
    """Months as the option takes them."""
    for number in range(first[0] * 12 + first[1] - 1, last[0] * 12 + last[1]):
        yield f"{number // 12:04}-{number % 12 + 1:02}"


def month_days(text):
    year, month = map(int, text.split("-"))
    first = datetime.date(year, month, 1)
    return first, (first + datetime.timedelta(31)).replace(day=1) - datetime.timedelta(1)


def week_days(text):
    year, week = int(text[:4]), int(text[6:])
    return datetime.date.fromisocalendar(year, week, 1), datetime.date.fromisocalendar(year, week, 7)


def empty_store(folder):
    """A store without tasks, as the program itself makes it."""
    path = folder / "dk.tulo.TimeTracker/store.sqlite"
    run = subprocess.Popen([PROGRAM], env=environment(folder), stderr=subprocess.PIPE)
    try:
        # The store has its name only when it is whole, and its reserve only when it is open.
        while not pathlib.Path(f"{path}-reserve").exists():
            if run.poll() is not None:
                raise AssertionError(run.stderr.read())
    finally:
        run.terminate()
        run.communicate()
    shutil.rmtree(path.parent / "backups", ignore_errors=True)
    return path


def environment(folder, **more):
    kept = {name: value for name, value in os.environ.items()
            if name not in ("DBUS_SESSION_BUS_ADDRESS", "NO_COLOR")}
    return kept | {"XDG_DATA_HOME": str(folder), "TZ": ZONE, "TERM": "xterm",
                   "XDG_RUNTIME_DIR": str(folder.parent),
                   "DBUS_SESSION_BUS_ADDRESS": "unix:path=/nowhere"} | more


def insert(database, day, name, code, seconds, started=None, zone=ZONE):
    database.execute(
        "INSERT INTO Task (id, name, date, accumulatedSeconds, lastStartTime, sortOrder, createdAt,"
        " projectCode) VALUES (randomblob(16), ?, ?, ?, ?, 0, 0, ?)",
        (name, start_of(day, zone), seconds, started, code))


def fill(path, seed=20261122):
    """Four years of tasks, those of a day inserted in any order."""
    generator = random.Random(seed)
    codes = [None, "", "4711", "0042", "R&D", "=cmd", "æ", "Ø;1", "日本"]
    with sqlite3.connect(path) as database:
        for _ in range(1200):
            day = datetime.date(2024, 12, 1) + datetime.timedelta(generator.randrange(760))
            seconds = generator.choice([generator.randrange(40_000), 18 * generator.randrange(999),
                                        60 * generator.randrange(600), 0])
            name = generator.choice(ODD_NAMES + [f"Opgave {i}" for i in range(30)])
            insert(database, day, name, generator.choice(codes), seconds)
        # On days on which the clock changes, and on those beside them.
        for day in ("2025-03-29", "2025-03-30", "2025-03-31", "2025-10-25", "2025-10-26",
                    "2025-10-27", "2026-03-29", "2026-10-25", "2026-11-01", "2026-11-30"):
            insert(database, datetime.date.fromisoformat(day), "skift", "4711", 4242)
        # After the clock was set back.
        insert(database, datetime.date(2026, 7, 1), "negativ", None, -4000)
    database.close()


def snapshot(folder):
    """All that is in a folder: names, contents, times and rights."""
    return {str(file.relative_to(folder)):
            (file.lstat().st_mtime_ns, file.lstat().st_mode, file.lstat().st_ino,
             file.read_bytes() if file.is_file() else None)
            for file in [folder, *folder.rglob("*")]}


def run(folder, *arguments, **more):
    return subprocess.run([HOURS, *arguments], stdin=subprocess.DEVNULL, capture_output=True,
                          env=environment(folder, **more))


class Reckoning(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        folder = tempfile.TemporaryDirectory()
        cls.addClassCleanup(folder.cleanup)
        cls.base = pathlib.Path(folder.name)
        cls.folder = cls.base / "filled"
        cls.store = empty_store(cls.folder)
        cls.empty = cls.base / "empty"
        shutil.copytree(cls.folder, cls.empty)
        fill(cls.store)

    def answer(self, *arguments, folder=None, **more):
        done = run(folder or self.folder, *arguments, **more)
        self.assertEqual((done.returncode, done.stderr), (0, b""), arguments)
        return done.stdout.decode()

    def copy(self, name, source=None):
        folder = self.base / name
        shutil.copytree(source or self.folder, folder)
        return folder, folder / "dk.tulo.TimeTracker/store.sqlite"

    # Every combination

    def combinations(self):
        key_lists = [keys for count in (1, 2, 3) for keys in itertools.permutations(KEYS, count)]
        periods = [(("--month", month), month_days(month)) for month in
                   ("2024-11", "2024-12", "2025-02", "2025-03", "2025-10", "2026-03", "2026-10",
                    "2026-11", "2026-12")]
        periods += [(("--week", week), week_days(week)) for week in
                    ("2025-W01", "2025-W13", "2025-W43", "2026-W01", "2026-W47", "2026-W53")]
        periods += [(("--from", first, "--to", last), (datetime.date.fromisoformat(first),
                                                       datetime.date.fromisoformat(last)))
                    for first, last in (("2025-03-30", "2025-03-30"), ("2025-10-26", "2025-10-26"),
                                        ("2026-07-01", "2026-07-01"), ("2025-03-29", "2025-10-27"),
                                        ("0001-01-01", "9999-12-30"))]
        for keys in key_lists:
            for arguments, (first, last) in periods:
                reckoned = reckon(self.store, first, last, keys)
                yield keys, arguments, first, last, *reckoned

    def shouldSayWhatIsReckonedForEveryCombination(self):
        count = 0
        for keys, arguments, first, last, rows, total in self.combinations():
            by = ("--by", ",".join(keys))
            with self.subTest(keys=keys, period=arguments):
                self.compare_json(self.answer(*arguments, *by, "--format", "json"), keys, first,
                                  last, rows, total)
                self.compare_csv(self.answer(*arguments, *by, "--format", "csv"), keys, rows, total)
                table = self.answer(*arguments, *by, "--format", "table")
                self.compare_table(table, keys, rows, total)
                self.assertEqual(self.answer(*by, *arguments), table)
                count += 1
        self.assertEqual(count, 15 * 20)

    def compare_json(self, text, keys, first, last, rows, total):
        def members(sums):
            hours, billable = sums.texts()
            return {"seconds": str(sums.seconds), "hours": hours, "billableHours": billable}
        # Numbers as they are written.
        found = json.loads(text, parse_float=str, parse_int=str)
        self.assertEqual(set(found), {"from", "to", "rows", "total"})
        self.assertEqual((found["from"], found["to"]), (first.isoformat(), last.isoformat()))
        self.assertEqual(found["total"], members(total))
        expected = [dict(zip((MEMBERS[key] for key in keys), values)) | members(sums)
                    for values, sums in rows.items()]
        def order(row):
            return sorted(map(str, row.items()))
        self.assertEqual(sorted(found["rows"], key=order), sorted(expected, key=order))
        self.compare_order([tuple(row[MEMBERS[key]] for key in keys) for row in found["rows"]], keys)

    def compare_order(self, found, keys):
        """Days and what is missing; the order of letters is tested by itself."""
        def rank(key, value):
            return value if key == "day" else str(int(value in (None, "") and
                                                      (key != "code" or value is None)))
        ranks = []
        # Below a text, the next key begins anew; so groups have to be together, too.
        seen, previous = set(), None
        for values in found:
            if values[0] != previous:
                self.assertNotIn(values[0], seen)
                seen.add(values[0])
                previous = values[0]
                ranks.append(rank(keys[0], values[0]))
        self.assertEqual(ranks, sorted(ranks))

    def compare_csv(self, text, keys, rows, total):
        self.assertEqual(text[0], "\ufeff")
        found = list(csv.reader(io.StringIO(text[1:], newline=""), delimiter=";", strict=True))
        self.assertEqual(found[0], [*(TITLES[key] for key in keys), "Faktisk", "Fakturerbar"])
        expected = [[*(harmless(words(key, value)) for key, value in zip(keys, values)),
                     *sums.danish()] for values, sums in rows.items()]
        self.assertEqual(sorted(found[1:-1]), sorted(expected))
        self.assertEqual(found[-1], ["I alt", *[""] * (len(keys) - 1), *total.danish()])
        self.assertTrue(text.endswith("\r\n"))

    def compare_table(self, text, keys, rows, total):
        self.assertNotIn("\x1b", text)
        lines = text.splitlines()
        self.assertEqual(text.count("\n"), len(lines))
        cells = [[*(TITLES[key] for key in keys), "Faktisk", "Fakturerbar"],
                 *([*(in_one_line(words(key, value)) for key, value in zip(keys, values)),
                    *sums.danish()] for values, sums in rows.items()),
                 ["I alt", *[""] * (len(keys) - 1), *total.danish()]]
        widths = [max(map(width, column)) for column in zip(*cells)]
        expected = ["  ".join([*(cell + " " * (widths[i] - width(cell))
                                 for i, cell in enumerate(line[:-2])),
                               line[-2].rjust(widths[-2]), line[-1].rjust(widths[-1])])
                    for line in cells]
        self.assertEqual((lines[0], lines[-1]), (expected[0], expected[-1]))
        self.assertEqual(sorted(lines[1:-1]), sorted(expected[1:-1]))

    def shouldOrderCodesAsADanishDictionaryDoes(self):
        folder, store = self.copy("ordered", self.empty)
        ordered = ["10", "2", "Abe", "and", "Bil", "zone", "æble", "Ø", "øre", "ål", "Aalborg"]
        shuffled = ordered[:]
        random.Random(1).shuffle(shuffled)
        with sqlite3.connect(store) as database:
            insert(database, datetime.date(2026, 11, 2), "a", None, 1)
            for code in shuffled:
                insert(database, datetime.date(2026, 11, 2), code, code, 1)
            insert(database, datetime.date(2026, 11, 2), "", None, 1)
        database.close()
        for form in FORMATS:
            for locale in ("C", "C.UTF-8", ""):
                text = self.answer("--month", "2026-11", "--format", form, folder=folder,
                                   LC_ALL=locale)
                found = re.findall("|".join(map(re.escape, sorted(ordered, key=len, reverse=True))),
                                   "\n".join(line.split("  ")[0] if form == "table" else
                                             line.split(";")[0] if form == "csv" else
                                             "".join(re.findall(r'"projectCode": "(.*?)"', line))
                                             for line in text.splitlines()))
                self.assertEqual(found, ordered, form)

    # Days

    def shouldShowThisMonthWithoutAnOption(self):
        before = datetime.datetime.now(zoneinfo.ZoneInfo(ZONE)).date()
        found = json.loads(self.answer("--format", "json"))
        after = datetime.datetime.now(zoneinfo.ZoneInfo(ZONE)).date()
        self.assertIn((found["from"], found["to"]),
                      [tuple(day.isoformat() for day in month_days(f"{today:%Y-%m}"))
                       for today in (before, after)])

    def shouldFindDaysInTheUsersZone(self):
        folder, store = self.copy("zones", self.empty)
        zones = ("Pacific/Auckland", "America/Los_Angeles", "UTC", "Asia/Kolkata", ZONE)
        with sqlite3.connect(store) as database:
            for number, zone in enumerate(zones):
                insert(database, datetime.date(2026, 11, 15), zone, None, 3600 + number, zone=zone)
        database.close()
        for zone in zones:
            rows, total = reckon(store, datetime.date(2026, 11, 15), datetime.date(2026, 11, 15),
                                 ("task", "day"), zone)
            text = self.answer("--from", "2026-11-15", "--to", "2026-11-15", "--by", "task,day",
                               "--format", "csv", folder=folder, TZ=zone)
            self.compare_csv(text, ("task", "day"), rows, total)
            self.assertIn((zone, "2026-11-15"), rows)

    def shouldCountARunningTaskUpToNow(self):
        folder, store = self.copy("running", self.empty)
        today = datetime.datetime.now(zoneinfo.ZoneInfo(ZONE))
        with sqlite3.connect(store) as database:
            insert(database, today.date(), "a", None, 1000, started=today.timestamp() - 500)
        database.close()
        before = datetime.datetime.now().timestamp()
        found = json.loads(self.answer("--from", today.date().isoformat(), "--to",
                                       today.date().isoformat(), "--format", "json", folder=folder))
        after = datetime.datetime.now().timestamp()
        spent = found["total"]["seconds"] - 1500
        self.assertGreaterEqual(spent, math.floor(before - today.timestamp()))
        self.assertLessEqual(spent, math.ceil(after - today.timestamp()))

    def shouldGiveASumOfZeroForAPeriodWithoutTasks(self):
        for folder in (self.empty, self.base / "nowhere"):
            self.assertEqual(self.answer(folder=folder),
                             "Projektkode  Faktisk  Fakturerbar\n"
                             "I alt           0,00         0,00\n")
        self.assertFalse((self.base / "nowhere").exists())

    # Changing nothing

    def shouldChangeNothingOfAStore(self):
        folder, _ = self.copy("closed")
        before = snapshot(folder)
        for form in FORMATS:
            self.answer("--from", "0001-01-01", "--to", "9999-12-30", "--format", form,
                        folder=folder)
        self.assertEqual(snapshot(folder), before)

    def shouldReadTheLogOfAKillAndChangeNothing(self):
        folder, store = self.copy("killed")
        # Another process's connection, which is killed with changes in its log.
        script = ("import sqlite3, sys; d = sqlite3.connect(sys.argv[1]);"
                  "d.execute('PRAGMA locking_mode = EXCLUSIVE');"
                  "d.execute(\"UPDATE Task SET name = 'from the log'\"); d.commit();"
                  "print(flush=True); sys.stdin.read()")
        with subprocess.Popen([sys.executable, "-c", script, store], stdin=subprocess.PIPE,
                              stdout=subprocess.PIPE) as writer:
            writer.stdout.readline()
            writer.kill()
        self.assertGreater(pathlib.Path(f"{store}-wal").stat().st_size, 0)
        before = snapshot(folder)
        text = self.answer("--month", "2025-03", "--by", "task", folder=folder)
        self.assertEqual(snapshot(folder), before)
        self.assertEqual([line.split("  ")[0] for line in text.splitlines()],
                         ["Opgave", "from the log", "I alt"])

    # What is refused

    def refused(self, folder):
        """What both programs say, once it is certain that they say the same and change nothing."""
        before = snapshot(folder)
        done = run(folder)
        self.assertEqual((done.returncode, done.stdout), (1, b""))
        self.assertEqual(snapshot(folder), before)
        program = subprocess.run([PROGRAM], stdin=subprocess.DEVNULL, capture_output=True,
                                 env=environment(folder), timeout=60)
        self.assertEqual(program.returncode, 1)
        self.assertEqual("Could not create ModelContainer: " + done.stderr.decode(),
                         program.stderr.decode())
        return done.stderr.decode()

    def shouldRefuseWhatTheProgramRefusesInTheSameWords(self):
        def changed(statement):
            def change(store):
                database = sqlite3.connect(store)
                database.execute(statement)
                database.commit()
                database.close()
            return change

        def overwritten(content, place=0):
            def change(store):
                with open(store, "r+b") as file:
                    file.seek(place)
                    file.write(content)
            return change

        def emptied(store):
            os.truncate(store, 0)

        def shortened(store):
            os.truncate(store, 8192)

        def linked(store):
            os.link(store, f"{store}.other")

        def to_a_link(store):
            os.rename(store, f"{store}.other")
            os.symlink(f"{store}.other", store)

        def to_a_pipe(store):
            os.remove(store)
            os.mkfifo(store)

        def with_a_journal_pipe(store):
            os.mkfifo(f"{store}-journal")

        def without_its_store(store):
            os.rename(store, f"{store}-wal")

        def with_a_backup(store):
            backups = pathlib.Path(store).parent / "backups"
            backups.mkdir()
            database = sqlite3.connect(store)
            copy = sqlite3.connect(backups / "2026-11-20.sqlite")
            database.backup(copy)
            copy.execute("PRAGMA journal_mode = DELETE")
            copy.close()
            database.close()
            os.chmod(backups / "2026-11-20.sqlite", 0o600)
            emptied(store)

        def writable(store):
            os.chmod(store, 0o622)

        cases = {
            "another program's": (changed("PRAGMA application_id = 1"), "of another program"),
            "newer": (changed("PRAGMA user_version = 20000"), "newer version"),
            "older": (changed("PRAGMA user_version = 9999"), "schema version 0.99.99"),
            "a table more": (changed("CREATE TABLE More (x)"), "another schema"),
            "an index less": (changed("DROP INDEX TaskByDate"), '"TaskByDate" differs'),
            "no database": (overwritten(b"nothing"), "is not a store"),
            "damaged": (overwritten(b"\xff" * 4096, 8192), "is damaged"),
            "empty": (emptied, "is empty"),
            "shortened": (shortened, "is damaged"),
            "hard-linked": (linked, "hard-linked"),
            "a link": (to_a_link, "not a plain file"),
            "a pipe": (to_a_pipe, "not a plain file"),
            "a pipe as its journal": (with_a_journal_pipe, "not a plain file"),
            "a log alone": (without_its_store, "is missing, but its log"),
            "writable by others": (writable, "may have been changed by others"),
            "with a good backup": (with_a_backup, "The newest good backup is of 2026-11-20"),
        }
        for name, (change, sentence) in cases.items():
            with self.subTest(name):
                folder, store = self.copy(f"refused {name}", self.empty)
                change(store)
                self.assertIn(sentence, self.refused(folder))

    def shouldRefuseAStoreThatIsHeldAndCannotBeAsked(self):
        folder, store = self.copy("held")
        script = ("import sqlite3, sys; d = sqlite3.connect(sys.argv[1]);"
                  "d.execute('PRAGMA locking_mode = EXCLUSIVE'); d.execute('BEGIN IMMEDIATE');"
                  "d.commit(); print(flush=True); sys.stdin.read()")
        with subprocess.Popen([sys.executable, "-c", script, store], stdin=subprocess.PIPE,
                              stdout=subprocess.PIPE) as holder:
            holder.stdout.readline()
            self.assertIn("is in use by another process", self.refused(folder))
            holder.communicate()
        self.answer(folder=folder)

    def shouldNameTheTaskWhoseTimeCannotBeAddedUp(self):
        folder, store = self.copy("overflow", self.empty)
        with sqlite3.connect(store) as database:
            insert(database, datetime.date(2026, 11, 2), "stor", None, 2**63 - 1, started=0.0)
        database.close()
        done = run(folder, "--month", "2026-11")
        self.assertEqual((done.returncode, done.stdout), (1, b""))
        self.assertIn('The time of the task "stor" of 2026-11-02 cannot be added up',
                      done.stderr.decode())
        self.assertIn(f'the store "{store}"', done.stderr.decode())

    # Ends

    def shouldEndWithTwoAndTheUsageLineAfterWrongUse(self):
        for arguments in (["--by", "week"], ["--month"], ["x"], ["--week", "2026-W54"]):
            done = run(self.folder, *arguments)
            self.assertEqual((done.returncode, done.stdout), (2, b""))
            self.assertRegex(done.stderr.decode(), r"\Atulo-hours: .*\nBrug: tulo-hours .*\n\Z")

    def shouldHelp(self):
        text = self.answer("--help")
        self.assertTrue(text.startswith("Brug: tulo-hours "))
        self.assertEqual(self.answer("--help", LC_ALL="C"), text)

    def shouldEndWithOneIfItCannotBeWritten(self):
        with open("/dev/full", "wb") as full:
            done = subprocess.run([HOURS], stdout=full, stderr=subprocess.PIPE,
                                  env=environment(self.folder))
        self.assertEqual((done.returncode, done.stderr.decode()),
                         (1, "Timerne kunne ikke skrives: disken er fuld.\n"))

    def shouldEndWithOneIfNobodyReads(self):
        reading, writing = os.pipe()
        os.close(reading)
        done = subprocess.run([HOURS], stdout=writing, stderr=subprocess.PIPE,
                              env=environment(self.folder))
        os.close(writing)
        self.assertEqual((done.returncode, done.stderr), (1, b""))

    # Terminals

    def on_a_terminal(self, *arguments, columns=80, **more):
        terminal, program = pty.openpty()
        import fcntl, struct, termios
        fcntl.ioctl(program, termios.TIOCSWINSZ, struct.pack("HHHH", 24, columns, 0, 0))
        with subprocess.Popen([HOURS, *arguments], stdin=subprocess.DEVNULL, stdout=program,
                              env=environment(self.folder, **more)) as done:
            os.close(program)
            text = b""
            try:
                while piece := os.read(terminal, 65536):
                    text += piece
            except OSError:  # this is how a terminal ends
                pass
        os.close(terminal)
        self.assertEqual(done.returncode, 0)
        return text.decode().replace("\r\n", "\n")

    def shouldFitATerminalAndMakeHeadingAndSumBoldThere(self):
        arguments = ("--month", "2026-10", "--by", "code,task")
        for columns in (60, 80, 200):
            lines = self.on_a_terminal(*arguments, columns=columns).splitlines()
            for line in (lines[0], lines[-1]):
                self.assertTrue(line.startswith("\x1b[1m") and line.endswith("\x1b[0m"))
            plain = [re.sub("\x1b\\[[01]m", "", line) for line in lines]
            self.assertEqual({width(line) for line in plain}, {width(plain[0])})
            self.assertLessEqual(width(plain[0]), columns)
            self.assertEqual(len(lines), len(self.answer(*arguments).splitlines()))

    def shouldNotMakeAnythingBoldIfThatIsNotWanted(self):
        for more in ({"NO_COLOR": "1"}, {"TERM": "dumb"}):
            self.assertNotIn("\x1b", self.on_a_terminal("--month", "2026-10", **more))
        for form in ("csv", "json"):
            self.assertEqual(self.on_a_terminal("--month", "2024-11", "--format", form),
                             self.answer("--month", "2024-11", "--format", form))


if __name__ == "__main__":
    HOURS, PROGRAM = sys.argv[1:]
    loader = unittest.TestLoader()
    loader.testMethodPrefix = "should"
    unittest.main(argv=sys.argv[:1], testLoader=loader)
