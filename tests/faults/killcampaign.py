"""Kills the real program at random moments of random work, and looks at what is on the disk.

Whatever was done more than a tenth of a second before has to be there, once, and in its order; a
running task has to run from the same instant. What is younger may be there. The time in which the
program was ready to work, but other processes had the processors, does not count.

TIMETRACKER_KILLS says how often (a dozen times if it does not), TIMETRACKER_SEED which work.
"""

import copy
import math
import os
import pathlib
import random
import shutil
import signal
import sqlite3
import sys
import tempfile
import time
from contextlib import closing, contextmanager
from dataclasses import dataclass, field

sys.path.insert(0, str(pathlib.Path(__file__).parent.parent / "e2e"))

import harness
from dayprogram import UNNAMED
from gi.repository import GLib
from harness import STORE, STORED_WITHIN, press, wait_until, xdotool
from sidecolumn import SideColumnProgram

KILLS = int(os.environ.get("TIMETRACKER_KILLS", "12"))
SEED = int(os.environ.get("TIMETRACKER_SEED", "20261121"))
MOST_TASKS = 4  # All of them in sight.
MOST_ENTRIES = 2
LONGEST_RUN = 4.0


@dataclass
class Task:
    """What is known of a task; of numbers, between which two they lie."""
    name: str = ""
    seconds: tuple = (0, 0)
    start: tuple = None
    code: str = None

    def stop(self, earliest, latest):
        if self.start is None:
            return
        run = (max(0, math.floor(earliest - self.start[1])), math.floor(latest - self.start[0]))
        self.seconds = (self.seconds[0] + run[0], self.seconds[1] + run[1])
        self.start = None

    def is_like(self, other):
        return ((self.name, self.code) == (other.name, other.code)
                and self.seconds[0] <= other.seconds[0] <= self.seconds[1]
                and (self.start is None) == (other.start is None)
                and (self.start is None or self.start[0] <= other.start[0] <= self.start[1]))


@dataclass
class State:
    """What is in the store, in its order."""
    tasks: list = field(default_factory=list)
    templates: list = field(default_factory=list)
    codes: list = field(default_factory=list)

    def task(self, name):
        return next(task for task in self.tasks if task.name == name)

    def is_like(self, other):
        return (len(self.tasks) == len(other.tasks)
                and all(a.is_like(b) for a, b in zip(self.tasks, other.tasks))
                and self.templates == other.templates and self.codes == other.codes)


@dataclass
class Change:
    """What one key or click does to the store, and between which moments it was done."""
    what: str
    apply: callable
    sent: float
    seen: float = math.inf
    # What the program had waited for a processor until then, in seconds.
    queued: float = 0


class KillCampaign(harness.Story):
    program = SideColumnProgram

    def shouldLoseNothingThatIsOlderThanATenthOfASecond(self):
        print(f"Seed {SEED}", flush=True)
        self.random = random.Random(SEED)
        self.state = State()
        self.names = self.stuck = 0
        changes = old = young = young_there = running = 0
        for kill in range(1, KILLS + 1):
            self.work_until_killed()
            found = self.look_at_the_store()
            there = self.changes_there(found)
            must = self.old_changes()
            changes += len(self.changes)
            old += must
            young += len(self.changes) - must
            young_there += there - must
            running += any(task.start for task in found.tasks)
            self.state = found
            if kill % 20 == 0 or kill == KILLS:
                print(f"{kill} kills, {running} of them with a task running; {changes} changes: "
                      f"{old} older than {STORED_WITHIN} s, 0 of them lost; {young} younger, "
                      f"{young_there} of them there; {self.stuck} times nothing came of a click",
                      flush=True)
        self.assertLessEqual(self.stuck, 1 + KILLS // 50)

    # Working

    def work_until_killed(self):
        self.changes, self.now = [], copy.deepcopy(self.state)
        self.kills_after = None
        self.killed_at = None
        with self.program(self) as program:
            self.queued = program.queued
            signal.signal(signal.SIGALRM, lambda *_: self.kill(program))
            try:
                way = self.random.random()
                if way < 0.1:  # while it starts
                    self.kill_within(0.6)
                program.see_window()
                # Whatever was pressed when the last one was killed.
                xdotool("keyup", "ctrl", "keyup", "alt", "mouseup", 1)
                if way < 0.4:  # at any moment
                    self.kill_within(LONGEST_RUN)
                else:  # shortly after a change
                    self.kills_after = self.random.randrange(1, 8)
                while self.killed_at is None:
                    self.do_something(program)
            except (AssertionError, GLib.Error):
                # Nothing comes of anything once it is killed.
                if self.killed_at is None:
                    self.give_up(program)
            finally:
                signal.setitimer(signal.ITIMER_REAL, 0)
            self.assertEqual(program.wait_for_end(), -signal.SIGKILL)
            self.assertEqual(harness.own_words(program.output()), "")
        # What was done between the kill and the next look at the program was done to nobody.
        self.changes = [change for change in self.changes if change.sent <= self.killed_at]

    def give_up(self, program):
        """A click or key that nothing came of in all that time. What it was meant to change may
        have been changed or not, which is as good a moment to be killed at as any.
        """
        signal.setitimer(signal.ITIMER_REAL, 0)
        self.stuck += 1
        self.kill(program)

    def kill(self, program):
        if self.killed_at is not None:
            return
        self.killed_at = time.time()
        self.killed_queued = self.queued()
        program.process.kill()

    def kill_within(self, longest):
        signal.setitimer(signal.ITIMER_REAL, self.random.uniform(0.001, longest))

    @contextmanager
    def change(self, what, apply):
        """Within it the one key or click that makes the change is given, and its result seen."""
        if self.kills_after == len(self.changes) + 1:
            self.kill_within(0.4)
        change = Change(what, apply, time.time())
        self.changes.append(change)
        yield
        change.seen = time.time()
        change.queued = self.queued()
        self.now = self.states(change.seen)[-1]

    def do_something(self, program):
        tasks = [task for task in self.now.tasks if task.name]
        unused = [name for name in self.now.templates
                  if all(task.name != name for task in tasks)]
        choices = []
        if any(not task.name for task in self.now.tasks):
            choices = [(1, self.rename, "")]
        else:
            if len(tasks) < MOST_TASKS:
                choices.append((3, self.create))
                choices += [(2, self.use_template, name) for name in unused]
            if len(self.now.templates) < MOST_ENTRIES:
                choices.append((1, self.add_template))
            if len(self.now.codes) < MOST_ENTRIES:
                choices.append((1, self.add_code))
            for task in tasks:
                choices += [(2, self.toggle, task.name), (1, self.rename, task.name),
                            (1, self.edit_time, task.name),
                            (0.3 * len(tasks), self.delete, task.name)]
                choices += [(0.5, self.choose_code, task.name, code) for code in self.now.codes
                            if code != task.code]
            choices += [(0.3, self.delete_template, name) for name in self.now.templates]
            choices += [(0.3, self.delete_code, code) for code in self.now.codes]
        _, action, *arguments = self.random.choices(
            choices, weights=[choice[0] for choice in choices])[0]
        action(program, *arguments)

    def new_name(self, kind):
        self.names += 1
        return f"{kind}{self.names}"

    def create(self, program):
        with self.change("create", lambda state, *_: state.tasks.append(Task())):
            press("ctrl+Return")
            program.row(UNNAMED)

    def rename(self, program, name):
        new = self.new_name("o")

        def apply(state, *_):
            state.task(name).name = new
        program.press_button("Rediger navn", program.row(name or UNNAMED))
        self.type_over(program, "Opgavenavn", new)
        with self.change(f"rename {name} to {new}", apply):
            press("Return")
            program.row(new)

    def edit_time(self, program, name):
        minutes = self.random.randrange(1, 600)

        def stop(state, *moments):
            state.task(name).stop(*moments)

        def set_time(state, *_):
            state.task(name).seconds = (minutes * 60, minutes * 60)
        with self.change(f"stop {name} by a click on its time", stop):
            program.click(program.clock(name)[1])
            program.see("field", "Tid")
        self.type_over(program, "Tid", str(minutes))
        with self.change(f"set the time of {name} to {minutes} min", set_time):
            press("Return")
            program.see_none("field", "Tid")

    def type_over(self, program, name, text):
        program.see("field", name)
        program.type_into(name, "")
        xdotool("key", "ctrl+a", "type", text)

    def toggle(self, program, name):
        if self.now.task(name).start:
            def stop(state, *moments):
                state.task(name).stop(*moments)
            with self.change(f"stop {name}", stop):
                program.press_button(f"Sæt på pause: {name}")
                program.see_stopped(name)
            return

        def start(state, *moments):
            for task in state.tasks:
                task.stop(*moments)
            state.task(name).start = moments
        with self.change(f"start {name}", start):
            program.press_button(f"Start {name}")
            program.see_running(name)

    def delete(self, program, name):
        def stop(state, *moments):
            state.task(name).stop(*moments)

        def delete(state, *_):
            state.tasks.remove(state.task(name))
        program.press_button(f"Slet {name}")
        alert = program.see("alert", "Slet opgave")
        # Stopped and saved first, and then deleted.
        with self.change(f"stop {name} to delete it", stop), \
                self.change(f"delete {name}", delete):
            program.press_button("Slet", within=alert)
            program.see_none("button", f"Slet {name}")
        program.see_none("alert", "Slet opgave")

    def choose_code(self, program, name, code):
        def choose(state, *_):
            state.task(name).code = code
        row = program.row(name)
        program.press_button(f"Projektkode: {self.now.task(name).code or 'Ingen'}", row)
        entry = program.see("menu item", code)
        with self.change(f"choose {code} for {name}", choose):
            program.click(entry)
            program.see("button", f"Projektkode: {code}", within=row)
        program.see_none("menu item", code)

    def add_template(self, program):
        name = self.new_name("t")
        program.press_button("Ny skabelon")
        program.type_into("Navn", name)
        with self.change(f"add template {name}", lambda state, *_: state.templates.append(name)):
            press("Return")
            program.see("button", name)

    def use_template(self, program, name):
        with self.change(f"use template {name}",
                         lambda state, *_: state.tasks.append(Task(name))):
            program.press_button(name)
            program.row(name)

    def delete_template(self, program, name):
        self.point_at(program.see("button", name))
        with self.change(f"delete template {name}",
                         lambda state, *_: state.templates.remove(name)):
            program.press_button(f"Slet skabelon {name}")
            program.see_none("button", name)

    def add_code(self, program):
        code = self.new_name("k")
        program.press_button("Ny projektkode")
        program.type_into("Kode", code)
        with self.change(f"add code {code}", lambda state, *_: state.codes.append(code)):
            program.press_button("Tilføj projektkode")
            program.see("text", code)

    def delete_code(self, program, code):
        self.point_at(program.see("text", code))
        with self.change(f"delete code {code}", lambda state, *_: state.codes.remove(code)):
            program.press_button(f"Slet projektkode {code}")
            program.see_none("text", code)

    @staticmethod
    def point_at(node):
        x, y, width, height = node.get_extents()
        xdotool("mousemove", x + width // 2, y + height // 2)

    # Looking

    def look_at_the_store(self):
        """What is in a copy of the store, so that the program finds its log as it left it."""
        if not (self.home / STORE / "store.sqlite").exists():
            return State()
        with tempfile.TemporaryDirectory() as folder:
            for file in (self.home / STORE).iterdir():
                shutil.copy(file, folder)
            with closing(sqlite3.connect(f"{folder}/store.sqlite")) as store:
                self.assertEqual(store.execute("PRAGMA integrity_check").fetchall(), [("ok",)])
                for table in ("Task", "TaskTemplate", "ProjectCode"):
                    twice = store.execute(
                        f"SELECT id FROM {table} GROUP BY id HAVING COUNT(*) > 1").fetchall()
                    self.assertEqual(twice, [], f"{table} has records twice")
                return State(
                    [Task(name, (seconds, seconds), start and (start, start), code)
                     for name, seconds, start, code in store.execute(
                         "SELECT name, accumulatedSeconds, lastStartTime, projectCode "
                         "FROM Task ORDER BY rowid")],
                    [name for name, in store.execute("SELECT name FROM TaskTemplate ORDER BY rowid")],
                    [code for code, in store.execute("SELECT code FROM ProjectCode ORDER BY rowid")])

    def old_changes(self):
        """How many of the changes were old enough when the program was killed."""
        def age(change):
            return self.killed_at - change.seen - (self.killed_queued - change.queued)
        return sum(age(change) >= STORED_WITHIN for change in self.changes)

    def states(self, now):
        """What was in the store at first, and after each change."""
        states = [self.state]
        for change in self.changes:
            state = copy.deepcopy(states[-1])
            change.apply(state, change.sent, min(change.seen, now))
            states.append(state)
        return states

    def changes_there(self, found):
        """How many of the changes, from the first on, are in what was found."""
        states = self.states(self.killed_at)
        for there in range(len(self.changes), self.old_changes() - 1, -1):
            if states[there].is_like(found):
                return there
        lines = [f"{self.killed_at - change.sent:.3f} to {self.killed_at - change.seen:.3f} s "
                 f"before the end: {change.what}" for change in self.changes]
        raise self.failureException(
            "The store holds\n" + str(found) + "\nThe last time it held\n" + str(self.state) +
            "\nSince then\n" + "\n".join(lines))


if __name__ == "__main__":
    harness.main()
