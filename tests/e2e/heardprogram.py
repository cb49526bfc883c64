"""The program without a mouse: what a click would do, assistive technology does."""

from menubar import MenuBarProgram
from sidecolumn import SideColumnProgram


class HeardProgram(SideColumnProgram, MenuBarProgram):
    """Knows its way around both faces of the program, through the accessibility tree alone."""

    def click(self, node):
        """Performs the press action of something."""
        self.case.assertIn("Press", node.get_actions(), f'"{node.get_name()}" cannot be pressed')
        node.do_action("Press")
