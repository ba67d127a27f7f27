"""The installed program, from wherever it was installed to, on real desktops, and the parts beside it.
Nothing but what is installed is used of the build."""

import os
import sys
import time
import unittest

sys.path.insert(0, os.path.join(os.path.dirname(os.path.abspath(__file__)), "..", "desktop"))

import xfce_shell_test  # noqa: E402
from agenda import add_calendar  # noqa: E402
from desktop_session import DesktopSession, eventually, program, run_tests  # noqa: E402
from kwin_session import KWinSession  # noqa: E402
from mutter_program_test import MutterSession  # noqa: E402
from picture import Picture  # noqa: E402
from sway_session import SwaySession  # noqa: E402
from xfce_session import XfceSession  # noqa: E402

# Beside the folder of the programs.
PARTS = ("..", "libexec", "orvane")
# Loads a module and finds its entry, as the program does.
LOAD = "import ctypes, os, sys; ctypes.CDLL(sys.argv[1], os.RTLD_NOW).orvaneEvolution"
NOTHING = (0, 0, 0)


def unless_empty(picture):
    return None if picture.count(NOTHING) == picture.width * picture.height else picture


class Sway(SwaySession):
    def __init__(self):
        super().__init__(outputs=1)

    def board(self):
        """A picture with the board on it; None while there is none."""
        return unless_empty(self.picture())


class KWin(KWinSession):
    def plug_in_input(self):
        """Nobody points or types."""

    def board(self):
        return unless_empty(self.picture())


class X11Window:
    """Of programs that speak to an X server: the board's window, wherever it is shown."""

    def board(self):
        try:
            (window,) = self.ask("xdotool", "search", "--onlyvisible", "--class", "org.orvane.Orvane").split()
            return Picture.from_ppm(self.ask("import", "-window", window, "-depth", "8", "ppm:-"))
        except (AssertionError, ValueError):
            return None


class Xfwm4(X11Window, XfceSession):
    def picture(self):
        """Taken by a program that is not of the build."""
        return Picture.from_ppm(self.ask("import", "-window", "root", "-depth", "8", "ppm:-"))


class Mutter(X11Window, MutterSession):
    def __init__(self):
        super().__init__(["1280x720"])


class Installed(unittest.TestCase):
    def shows_a_countdown_on_sway(self):
        self.shows_a_countdown(Sway())

    def shows_a_countdown_on_kwin(self):
        self.shows_a_countdown(KWin())

    def shows_a_countdown_on_xfwm4(self):
        self.shows_a_countdown(Xfwm4())

    def shows_a_countdown_on_mutter(self):
        self.shows_a_countdown(Mutter())

    def shows_a_countdown(self, desktop):
        with desktop as session:
            add_calendar(session)
            running = session.start(program("orvane"))
            eventually("the board stands", session.board, 40)

            # Only what the reader found makes the board tick.
            def ticks():
                before = session.board()
                time.sleep(1.2)
                after = session.board()
                return before is not None and after is not None and not before == after

            eventually("the countdown runs", ticks, 40)
            self.assertEqual(running.end(), 0)
            self.assertEqual(running.output, "")


class StatusItem(xfce_shell_test.StatusItem):
    session = Xfwm4


class Parts(unittest.TestCase):
    """Without a display and without a bus."""

    def part(self, name):
        return os.path.realpath(os.path.join(os.path.dirname(program("orvane")), *PARTS, name))

    def module_of_the_accounts_is_loaded(self):
        with DesktopSession() as session:
            session.ask("/usr/bin/python3", "-c", LOAD, self.part("orvane-evolution.so"))

    def settings_window_says_who_starts_it(self):
        with DesktopSession() as session:
            window = session.start(self.part("orvane-settings"))
            self.assertGreater(window.process.wait(timeout=20), 0)
            said = "orvane-settings: it is started by orvane, which shows its settings by it.\n"
            self.assertEqual(window.output, said)


if __name__ == "__main__":
    run_tests()
