"""The program as the user of its main window sees it."""

import harness
from harness import is_selected, seconds, wait_until

UNNAMED = "Unavngivet opgave"


class DayProgram(harness.Program):
    """Knows its way around the day."""

    def row(self, name):
        return self.see("list item", name)

    def rename(self, old, new):
        self.press_button("Rediger navn", self.row(old))
        self.fill_in("Opgavenavn", new)
        self.row(new)

    def clock(self, name):
        """The seconds that a task's row shows, and the button that shows them."""
        button = self.see("button", within=self.row(name), description="Klik for at redigere tid")
        return seconds(button.get_name()), button

    def wait_for_clock(self, name, at_least):
        wait_until(lambda: self.clock(name)[0] >= at_least,
                   f'the clock of "{name}" shows {at_least} s')

    def set_clock(self, name, entry):
        self.click(self.clock(name)[1])
        self.fill_in("Tid", entry)

    def see_running(self, name):
        self.see("button", f"Sæt på pause: {name}")

    def see_stopped(self, name):
        self.see("button", f"Start {name}")

    def see_selected(self, name):
        wait_until(lambda: [row.get_name() for row in self.all("list item") if is_selected(row)]
                   == [name], f'"{name}" alone is selected')

    def see_hours(self, name, hours):
        self.see("text", hours, within=self.row(name))
