"""The whole program as it is heard: through its accessibility tree and what that tells of changes,
with the tree's actions, and keys only for text and to find one's way. No mouse.
"""

import desktop
import harness
import tree
from dayprogram import UNNAMED
from gi.repository import Atspi, GLib
from harness import (danish_date, has_state, is_checked, is_selected, is_showing, press, role_of,
                     seconds, wait_until)
from heardprogram import HeardProgram
from menubar import CLOCK, PANEL

EMPTY = "Ingen opgaver for denne dag"
FIRST = "Møde på Ærø"
SECOND = "Kørsel til Ålborg"
TEMPLATE = "Dagligt møde"
CODE = "kode-7"
CODE_NAME = "Ørsted"

FOCUSED = "object:state-changed:focused"
SHOWING = "object:state-changed:showing"
NAME = "object:property-change:accessible-name"
# What else may be told of something while nothing but time passes.
OTHERS = ("object:text-changed", "object:state-changed", "object:children-changed", "window",
          "object:property-change:accessible-description",
          "object:property-change:accessible-value")


class Listener:
    """What assistive technology is told by the program as long as the block runs."""

    def __init__(self, program, *kinds):
        self.heard = []
        self._program = program
        self._kinds = kinds
        self._listener = Atspi.EventListener.new(self._hear)

    def __enter__(self):
        for kind in self._kinds:
            self._listener.register(kind)
        tree.await_registration(self._program.root())
        return self

    def __exit__(self, *_):
        for kind in self._kinds:
            self._listener.deregister(kind)

    def _hear(self, event):
        try:
            self.heard.append((event.type, role_of(event.source), event.source.get_name(),
                               event.detail1))
        except GLib.Error:
            pass  # It is gone by now.

    def listen(self):
        context = GLib.MainContext.default()
        while context.pending():
            context.iteration(False)
        return self.heard

    def wait_for(self, kind, role, name, detail=1):
        try:
            wait_until(lambda: (kind, role, name, detail) in self.listen(), "")
        except AssertionError:
            raise AssertionError(
                f'{kind} of {role} "{name}" is not told, but {self.heard}') from None
        self.heard.clear()


class Heard(harness.Story):
    program = HeardProgram

    def shouldBeUsedThroughItsTreeAlone(self):
        with self.running() as program:
            self.begin_empty(program)
            self.time_two_tasks(program)
            self.give_a_code(program)
            self.use_the_switch(program)
            self.use_a_template(program)
            self.delete_the_code(program)
            self.look_at_other_days(program)
            self.delete_a_task(program)
            self.use_the_panel_and_quit(program)

        with self.running() as program:
            program.see_running(FIRST)
            program.see("button", f"Projektkode: {CODE}", program.row(FIRST))
            self.assertGreaterEqual(program.clock(FIRST)[0], 5400)
            program.quit()
            program.ends_well()

    def begin_empty(self, program):
        program.see("text", EMPTY)
        program.press_button("Ingen opgaver")
        program.press_button("Ny opgave")
        program.row(UNNAMED)
        program.see_none("text", EMPTY)
        program.see("button", "Start første opgave")

    def time_two_tasks(self, program):
        program.rename(UNNAMED, FIRST)
        program.press_button(f"Start {FIRST}")
        program.see_running(FIRST)
        program.see("button", "Sæt aktiv opgave på pause")
        program.wait_for_clock(FIRST, 1)
        program.press_button("Ny opgave")
        program.rename(UNNAMED, SECOND)
        program.press_button(f"Start {SECOND}")
        program.see_running(SECOND)
        program.see_stopped(FIRST)
        self.assertEqual(program.row(SECOND).get_description(), "Kører")
        self.assertEqual(program.row(FIRST).get_description(), "")

        program.click(program.row(FIRST))
        program.see_selected(FIRST)

        shown, button = program.clock(FIRST)
        program.click(button)
        field = program.see("field", "Tid")
        self.assertEqual(seconds(field.get_text()), shown)
        self.assertTrue(has_state(field, Atspi.StateType.EDITABLE))
        program.fill_in("Tid", "1:30")
        self.assertEqual(program.clock(FIRST)[0], 5400)

    def give_a_code(self, program):
        program.see("text", "Ingen projektkoder")
        program.press_button("Ny projektkode")
        program.press_button("Tilføj projektkode")  # does nothing yet
        program.type_into("Kode", CODE)
        program.see("field", "Navn (valgfrit)").grab_focus()
        program.type_into("Navn (valgfrit)", CODE_NAME)
        program.press_button("Tilføj projektkode")
        program.see("list item", f"{CODE} – {CODE_NAME}")

        program.press_button("Projektkode: Ingen", program.row(FIRST))
        self.assertTrue(is_checked(program.see("menu item", "Ingen")))
        program.click(program.see("menu item", f"{CODE} – {CODE_NAME}"))
        program.see_none("menu item", "Ingen")
        program.see("button", f"Projektkode: {CODE}", program.row(FIRST))

    def use_the_switch(self, program):
        program.set_clock(FIRST, "1:10")
        for name, hours in (("Faktisk", "1.17"), ("Fakturerbar", "1.25"), ("Faktisk", "1.17")):
            program.click(program.see("radio button", name))
            program.see_hours(FIRST, hours)
            self.assertEqual([half.get_name() for half in program.all("radio button")
                              if is_checked(half)], [name])
        program.set_clock(FIRST, "1:30")

    def use_a_template(self, program):
        program.press_button("Ny skabelon")
        program.type_into("Navn", TEMPLATE)
        program.press_button("Tilføj skabelon")
        program.press_button(TEMPLATE)
        program.row(TEMPLATE)
        program.press_button(f"Slet skabelon {TEMPLATE}")
        program.see("text", "Ingen skabeloner")
        program.press_button(f"Slet {TEMPLATE}")
        program.press_button("Slet", within=program.see("alert", "Slet opgave"))
        program.see_none("list item", TEMPLATE)

    def delete_the_code(self, program):
        program.press_button(f"Slet projektkode {CODE}")
        program.see("text", "Ingen projektkoder")
        program.see("button", f"Projektkode: {CODE}", program.row(FIRST))

    def look_at_other_days(self, program):
        today = danish_date()
        self.assertTrue(is_selected(program.see("button", today)))
        other = next(danish_date(days) for days in (1, -1)
                     if danish_date(days).split(" ")[2] == today.split(" ")[2])
        program.press_button(other)
        program.see("text", other)
        program.see("text", EMPTY)
        wait_until(lambda: is_selected(program.see("button", other)), "the other day is selected")
        self.assertFalse(is_selected(program.see("button", today)))
        program.press_button(today)
        program.row(FIRST)

        program.press_button("Forrige dag")
        program.see("text", danish_date(-1))
        program.press_button("Næste dag")
        program.see("text", today)

        program.press_button("Næste måned")
        program.see_none("button", today)
        program.press_button("Forrige måned")
        program.see("button", today)

    def delete_a_task(self, program):
        for answer in ("Annuller", "Slet"):
            program.press_button(f"Slet {SECOND}")
            program.press_button(answer, within=program.see("alert", "Slet opgave"))
            program.see_none("alert", "Slet opgave")
        program.see_none("list item", SECOND)
        program.row(FIRST)

    def use_the_panel_and_quit(self, program):
        clock = program.see_window_called(CLOCK)
        program.press_button("Vis dagens opgaver", clock)
        program.press_in_panel(f"Start {FIRST}")
        program.see_in_main(f"Sæt på pause: {FIRST}")
        press("Escape")
        program.see_no_window_called(PANEL)

        program.close_main_window()
        program.press_button("Vis dagens opgaver", clock)
        program.press_in_panel("Åbn Time Tracker")
        program.see_window()
        program.see_in_main(f"Sæt på pause: {FIRST}")
        program.press_button("Vis dagens opgaver", clock)
        program.press_in_panel("Afslut")
        program.ends_well()

    def shouldOpenThePanelWhenADesktopActivatesTheItem(self):
        with desktop.status_notifier_host(), self.running() as program:
            program.make_task(FIRST)
            wait_until(lambda: desktop.item_label() == "", "the item is there")
            with Listener(program, "window:activate", FOCUSED) as listener:
                desktop.activate_item()
                listener.wait_for("window:activate", "window", PANEL, 0)
                press("Down")
                listener.wait_for(FOCUSED, "button", f"Start {FIRST}")
            press("Return")
            program.see_in_main(f"Sæt på pause: {FIRST}")

    def shouldSayWhatTheKeysActUpon(self):
        with self.running() as program:
            program.make_task(FIRST)
            program.make_task(SECOND)
            with Listener(program, FOCUSED) as listener:
                press("Down")
                listener.wait_for(FOCUSED, "list item", FIRST)
                press("Down")
                listener.wait_for(FOCUSED, "list item", SECOND)
                press("Left")
                listener.wait_for(FOCUSED, "panel", danish_date(-1))
                press("ctrl+t")
                listener.wait_for(FOCUSED, "panel", danish_date())
                press("Right")
                listener.wait_for(FOCUSED, "panel", danish_date(1))
                press("Left")
                listener.wait_for(FOCUSED, "panel", danish_date())

                press("Tab")
                listener.wait_for(FOCUSED, "button", "Start første opgave")
                press("Escape")
                listener.wait_for(FOCUSED, "panel", danish_date())

    def shouldAnnounceItsAlert(self):
        with self.running() as program:
            program.make_task(FIRST)
            with Listener(program, SHOWING, FOCUSED) as listener:
                program.press_button(f"Slet {FIRST}")
                wait_until(lambda: (SHOWING, "alert", "Slet opgave", 1) in listener.listen(),
                           "the alert is told")
                # With the keyboard's way into it, its title and its text are spoken.
                listener.wait_for(FOCUSED, "button", "Annuller")
                alert = program.see("alert", "Slet opgave")
                program.see("text", f'Slet "{FIRST}"?', within=alert)
                press("Tab")
                listener.wait_for(FOCUSED, "button", "Slet")
                press("Escape")
                listener.wait_for(FOCUSED, "panel", danish_date())

    def shouldOpenTheCodeMenuAtTheChoice(self):
        with self.running() as program:
            program.make_task(FIRST)
            with Listener(program, FOCUSED) as listener:
                program.press_button("Projektkode: Ingen")
                listener.wait_for(FOCUSED, "menu item", "Ingen")

    def shouldBeSilentWhileAClockRuns(self):
        with self.running() as program:
            program.make_task(FIRST)
            program.press_button(f"Start {FIRST}")
            clock = program.see_window_called(CLOCK)
            program.clock(FIRST)[1].grab_focus()
            wait_until(lambda: has_state(program.clock(FIRST)[1], Atspi.StateType.FOCUSED),
                       "the time has the keyboard")

            def window_clock():
                return seconds(program.all("text", within=clock)[0].get_name())

            with Listener(program, NAME, *OTHERS) as listener:
                begin, held = window_clock(), program.clock(FIRST)[0]
                wait_until(lambda: listener.listen() is not None and window_clock() >= begin + 5,
                           "five seconds pass")
                heard, passed = list(listener.listen()), window_clock() - begin
            self.assertEqual(program.clock(FIRST)[0], held)
            # The day's total and the clock window's clock, both of them labels, and nothing else;
            # one more when hundredths of an hour change, in the row and in the total.
            self.assertEqual({event[:2] for event in heard}, {(NAME, "text")})
            self.assertLessEqual(len(heard), 2 * (passed + 1) + 2)

            # The button goes with the time again when the keyboard leaves it.
            press("Tab")
            program.wait_for_clock(FIRST, held + passed)

    def shouldNameAllThatItShows(self):
        with self.running() as program:
            self.check_names(program)
            program.make_task(FIRST)
            program.press_button("Ny skabelon")
            program.press_button("Ny projektkode")
            self.check_names(program)
            program.type_into("Kode", CODE)
            program.press_button("Tilføj projektkode")
            program.see("field", "Navn").grab_focus()
            program.type_into("Navn", TEMPLATE)
            program.press_button("Tilføj skabelon")
            self.check_names(program)

            program.press_button("Projektkode: Ingen")
            program.see("menu item", CODE)
            self.check_names(program)
            press("Escape")
            program.see_none("menu item", CODE)
            program.press_button("Rediger navn")
            program.press_button("00:00:00")
            program.see("field", "Tid")
            self.check_names(program)
            program.press_button(f"Slet {FIRST}")
            program.see("alert", "Slet opgave")
            self.check_names(program)
            press("Escape")
            program.press_button("Vis dagens opgaver", program.see_window_called(CLOCK))
            program.see_window_called(PANEL)
            self.check_names(program)

    def check_names(self, program):
        """All that is shown has a name and a role, and what is a control can be pressed."""
        nameless, dumb = [], []
        shown = [node for node in tree.walk(program.root()) if is_showing(node)]
        for node in shown:
            role = role_of(node)
            # Of Qt 6.8, a list's delegate is in the tree, too: readers pass over what only fills.
            if role == "filler" and node.get_children():
                continue
            if role in ("unknown", "invalid", "filler") or (not node.get_name()
                                                            and role != "separator"):
                nameless.append((role, node.get_name(), node.get_extents()))
            is_control = role in ("button", "radio button", "menu item")
            if is_control and "Press" not in node.get_actions():
                dumb.append((role, node.get_name()))
        self.assertGreater(len(shown), 50)
        self.assertEqual((nameless, dumb), ([], []))

    def shouldBeReadInOrderByTab(self):
        with self.running() as program:
            program.press_button("Ny skabelon")
            program.type_into("Navn", TEMPLATE)
            press("Return")
            program.press_button("Ny projektkode")
            program.type_into("Kode", CODE)
            program.press_button("Tilføj projektkode")
            program.make_task(FIRST)
            program.make_task(SECOND)

            order = ["Start første opgave", "Forrige dag", "Næste dag",
                     ("radio button", "Faktisk"), ("radio button", "Fakturerbar")]
            for name in (FIRST, SECOND):
                order += [f"Start {name}", "Projektkode: Ingen", "Rediger navn", "00:00:00",
                          f"Slet {name}"]
            order += ["Ny opgave", "Forrige måned", "Næste måned", danish_date(),
                      "Ny skabelon", TEMPLATE, f"Slet skabelon {TEMPLATE}",
                      "Ny projektkode", f"Slet projektkode {CODE}"]
            press("Escape")
            with Listener(program, FOCUSED) as listener:
                for step in [*order, order[0]]:
                    role, name = step if isinstance(step, tuple) else ("button", step)
                    press("Tab")
                    listener.wait_for(FOCUSED, role, name)


if __name__ == "__main__":
    harness.main()
