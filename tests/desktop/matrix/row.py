"""What a row of the matrix says about its desktop, for the checks that all rows have in common.

A row is a class that mixes Row with a DesktopSession: entering it starts the desktop, leaving it
ends what was started. It overrides what its desktop does in a way of its own; what its desktop
cannot do at all is named in `lacks`, with the reason, which is printed instead of a verdict.
"""

import shutil
from dataclasses import dataclass

import agenda
from desktop_session import program

# Plain colours, so that every pixel tells what covers what.
FIRST_BACKGROUND = (0x88, 0x44, 0x22)
SECOND_BACKGROUND = (0x22, 0x55, 0x99)
WINDOW = (0x22, 0x88, 0x44)


@dataclass
class Screen:
    """A screen as its own picture shows it: sizes in pixels of that picture."""

    name: str
    width: int
    height: int
    scale: float = 1
    make: str = ""
    model: str = ""

    @property
    def identifier(self):
        return str(agenda.screen_number(self.name, self.make, self.model))


class Row:
    # As ctest and the screenshots know it.
    name = ""
    # Programs (names in PATH, or absolute paths of files) without which the row is MISSING.
    needs = ()
    # {name of an operation below: why this desktop does not have it}. Two are no operations:
    # "second_screen", and "one_workspace_only", the setting that keeps the board on one workspace.
    lacks = {}
    # Instead of the checks that rows have in common, where it is about something else.
    common_checks = None
    # Checks of its own: functions that take the Trial, after those that all rows have.
    own_checks = ()

    @classmethod
    def missing(cls):
        return [each for each in cls.needs if not shutil.which(each)]

    # ---- The program

    def prepare(self, **settings):
        agenda.set_defaults(self, **settings)
        agenda.add_calendars(self)

    def start_board(self):
        """Answers the running program."""
        return self.start(program("orvane"))

    def traces(self):
        """What is left of the program: its processes, its windows."""
        lines = self.processes()
        return [line for line in lines if line and "orvane" in line.split()[0].rsplit("/", 1)[-1]]

    # ---- What there is to see

    def screens(self):
        """The screens, the main one first."""
        raise NotImplementedError

    def picture(self, screen):
        """A Picture of the whole screen, pointers left out."""
        raise NotImplementedError

    def set_background(self, color):
        """Makes the desktop's background, by its own means, one plain colour on all screens. It
        begins with FIRST_BACKGROUND."""
        raise NotImplementedError

    # ---- What the user does

    def open_window(self, title, screen):
        """An ordinary window of the colour WINDOW, as large as the screen as far as the desktop
        lets it, with the keyboard's focus. Answers something with `lines`, in which "key" appears
        for each key that it gets, and `end()`."""
        raise NotImplementedError

    def press_key(self):
        """One ordinary key, to whoever has the focus."""
        raise NotImplementedError

    def reaches_below(self, screen, x, y):
        """Clicks at a place of the screen's picture, and answers whether what is below the board
        took it: an icon, the desktop's menu, a background. Leaves things as they were."""
        raise NotImplementedError

    def click(self, screen, x, y):
        """The first button, pressed and released."""
        raise NotImplementedError

    def listed(self):
        """The titles that taskbar, pager or window switcher offer."""
        raise NotImplementedError

    def show_workspace(self, index):
        """From 0; waits until it is shown."""
        raise NotImplementedError

    def show_desktop(self, shown):
        """Puts ordinary windows aside, or brings them back."""
        raise NotImplementedError

    def restart_shell(self):
        """Ends and starts again what draws the desktop, and waits until it does so."""
        raise NotImplementedError
