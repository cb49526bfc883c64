"""The program without a mouse: what a click would do, assistive technology does."""

import warnings

from menubar import MenuBarProgram
from sidecolumn import SideColumnProgram


def actions(node):
    """The names of what can be done to it."""
    with warnings.catch_warnings():
        # The method that this one is deprecated for has the name of another one here.
        warnings.simplefilter("ignore", DeprecationWarning)
        return [node.get_action_name(index) for index in range(node.get_n_actions())]


class HeardProgram(SideColumnProgram, MenuBarProgram):
    """Knows its way around both faces of the program, through the accessibility tree alone."""

    def click(self, node):
        """Performs the press action of something."""
        names = actions(node)
        self.case.assertIn("Press", names, f'"{node.get_name()}" cannot be pressed')
        node.do_action(names.index("Press"))
