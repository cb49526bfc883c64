"""The side column in use: the calendar, templates and project codes, and what of it stays."""

import harness
from dayprogram import DayProgram
from harness import danish_date, has_state, press, wait_until, write, xdotool
from gi.repository import Atspi

TEMPLATE = "Dagligt møde"
CODE = "kode-7"
NAME = "Ørsted"


class SideColumnProgram(DayProgram):
    """Knows its way around the side column, too."""

    def row(self, name):
        """The task of that name, which a template may bear, too."""
        def task():
            rows = [row for row in self.all("list item", name)
                    if self.all("button", f"Slet {name}", within=row)]
            return rows[0] if len(rows) == 1 else None
        return wait_until(task, f'there is one task "{name}"')

    def type_into(self, name, text):
        field = self.see("field", name)
        wait_until(lambda: has_state(field, Atspi.StateType.FOCUSED), f'"{name}" has the keyboard')
        write(text)

    def choose_code(self, now, entry):
        self.press_button(f"Projektkode: {now}")
        self.click(self.see("menu item", entry))
        self.see_none("menu item", entry)


class SideColumn(harness.Story):
    program = SideColumnProgram

    def shouldKeepTheCodeOfATaskWhenTheCodeIsDeleted(self):
        with self.running() as program:
            program.see("text", "Ingen skabeloner")
            program.see("text", "Ingen projektkoder")

            program.press_button("Ny skabelon")
            program.type_into("Navn", f"  {TEMPLATE} ")
            press("Return")
            program.see("button", TEMPLATE)
            program.see_none("text", "Ingen skabeloner")

            program.press_button("Ny projektkode")
            program.type_into("Kode", CODE)
            press("Return")  # does nothing here
            press("Tab")
            program.type_into("Navn (valgfrit)", NAME)
            press("Return")
            program.see("text", CODE)
            program.see("text", NAME)

            program.press_button(TEMPLATE)
            program.row(TEMPLATE)
            program.see_stopped(TEMPLATE)
            program.choose_code("Ingen", f"{CODE} – {NAME}")
            program.see("button", f"Projektkode: {CODE}")

            xdotool("mousemove", *self.middle(program.see("text", NAME)))
            program.press_button(f"Slet projektkode {CODE}")
            program.see("text", "Ingen projektkoder")
            program.see("button", f"Projektkode: {CODE}")
            program.kill()

        with self.running() as program:
            program.row(TEMPLATE)
            program.see("button", f"Projektkode: {CODE}")
            program.see("text", "Ingen projektkoder")
            program.press_button(f"Projektkode: {CODE}")
            program.see("menu item", "Ingen")
            press("Escape")
            program.see_none("menu item", "Ingen")
            program.see("button", TEMPLATE)
            program.quit()
            program.ends_well()

    def shouldShowTheDayThatIsPickedInTheCalendar(self):
        with self.running() as program:
            program.press_button(danish_date(1) if self.is_same_month(1) else danish_date(-1))
            program.see("text", danish_date(1) if self.is_same_month(1) else danish_date(-1))
            press("ctrl+t")
            program.see("text", danish_date())
            program.quit()
            program.ends_well()

    @staticmethod
    def is_same_month(days):
        return danish_date(days).split(" ")[2] == danish_date().split(" ")[2]

    @staticmethod
    def middle(node):
        x, y, width, height = node.get_extents()
        return x + width // 2, y + height // 2


if __name__ == "__main__":
    harness.main()
