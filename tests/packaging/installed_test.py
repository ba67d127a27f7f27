"""The installed program, from wherever it was installed to, under a real sway."""

import os
import sys
import time
import unittest

sys.path.insert(0, os.path.join(os.path.dirname(os.path.abspath(__file__)), "..", "desktop"))

from desktop_session import eventually, program, run_tests  # noqa: E402
from agenda import add_calendar  # noqa: E402
from sway_session import SwaySession  # noqa: E402

NOTHING = (0, 0, 0)


def board(session):
    """A picture of the output; it is black but for the board."""
    picture = session.picture("HEADLESS-1")
    return None if picture.count(NOTHING) == picture.width * picture.height else picture


class Installed(unittest.TestCase):
    def shows_a_countdown_from_the_users_calendars(self):
        with SwaySession(outputs=1) as sway:
            add_calendar(sway)
            running = sway.start(program("orvane"))
            eventually("the board stands", lambda: board(sway))

            # Only what the reader found makes the board tick.
            def ticks():
                before = board(sway)
                time.sleep(1.2)
                return before != board(sway)

            eventually("the countdown runs", ticks)
            self.assertEqual(running.end(), 0)
            self.assertEqual(running.output, "")


if __name__ == "__main__":
    run_tests()
