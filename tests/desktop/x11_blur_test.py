"""What KWin reads on X11 of where to blur. Its announcement is made by the test, so that any
compositing manager will do."""

import re
import unittest

from desktop_session import eventually, run_tests
from x11_row import X11Row

REGION = "_KDE_NET_WM_BLUR_BEHIND_REGION"
WHITE = (255, 255, 255)


class Composited(X11Row):
    manager = "xfwm4"

    def begin(self):
        self.start_bus()
        self.start_manager("xfwm4", "--compositor=on")

    def board(self):
        tree = self.ask("xwininfo", "-root", "-tree").decode(errors="replace")
        found = re.search(r"(0x[0-9a-f]+) \"Orvane\"", tree)
        return found.group(1) if found else None

    def announce(self):
        self.ask("xprop", "-root", "-f", REGION, "8c", "-set", REGION, "0")

    def withdraw(self):
        self.ask("xprop", "-root", "-remove", REGION)

    def region(self):
        told = self.window_property(self.board(), REGION)
        return [int(number) for number in re.findall(r"\d+", told.partition("=")[2])]


class Blur(unittest.TestCase):
    def is_asked_for_as_long_as_it_is_offered(self):
        with Composited() as session:
            session.prepare(displayMode="main")
            session.announce()
            running = session.start_board()
            eventually("there is a board", session.board, 40)
            numbers = eventually("a blur is asked for", session.region, 40)
            self.assertEqual(len(numbers) % 4, 0)
            # Four cards with rounded corners, each more than a rectangle.
            self.assertGreater(len(numbers) // 4, 4 * 3)
            session.withdraw()
            eventually("no blur is asked for any more", lambda: not session.region(), 40)
            session.announce()
            eventually("it is asked for again", session.region, 40)
            self.assertEqual(running.end(), 0)
            self.assertEqual(running.output, "")

    def is_not_asked_for_where_there_is_no_glass(self):
        with Composited() as session:
            session.prepare(displayMode="main", glassOpacity=0)
            session.announce()
            session.start_board()
            eventually("there is a board", session.board, 40)
            screen = session.screens()[0]
            eventually("it is drawn", lambda: session.picture(screen).count(WHITE), 40)
            self.assertEqual(session.region(), [])


if __name__ == "__main__":
    run_tests()
