"""The program whose Mutter is killed, with the Xwayland that belongs to it: it waits for another one,
and knows when none will come."""

import os
import re
import signal
import stat
import time
import unittest

from agenda import add_calendar
from desktop_session import eventually, program, run_tests
from end_test import LIMIT
from mutter_program_test import MutterSession
from mutter_session import LastingNames, kill_mutter

LOST = "orvane: The connection to the X server is lost"
# In seconds. An attempt to be let in takes some milliseconds.
MOST_AT_WORK = 0.75


class Loss(unittest.TestCase):
    def is_survived_with_the_agenda_of_the_time(self):
        with MutterSession(["1600x900"]) as session, LastingNames(session) as names:
            running = session.start(program("orvane"), environment=names.environment)
            empty = eventually("the board is shown", lambda: self.settled(session), 60)
            self.replace(session, names, ["1600x900"], lambda: add_calendar(session))
            eventually("it shows an event", lambda: self.height(session) > empty, 60)
            self.assert_stands(session)
            self.assertEqual((running.end(), running.output), (0, ""))
            eventually("nothing is left", lambda: not session.boards())

    def is_survived_while_the_next_one_has_no_monitor(self):
        with MutterSession(["1600x900"]) as session, LastingNames(session) as names:
            running = session.start(program("orvane"), environment=names.environment)
            eventually("the board is shown", session.boards)
            before = connections(running)
            self.replace(session, names, [])
            eventually("the program is let in", lambda: connections(running) == before, 60)
            worked = running.seconds_at_work()
            # Some beats.
            time.sleep(2.5)
            self.assertEqual(session.boards(), [])
            self.assertLess(running.seconds_at_work() - worked, MOST_AT_WORK)
            self.replace(session, names, ["1280x720"])
            eventually("the board is shown again", session.boards, 60)
            self.assert_stands(session)
            self.assertEqual((running.end(), running.output), (0, ""))

    def replace(self, session, names, monitors, change=lambda: None):
        """Mutter, by another one that has these; nobody can be shown what changes meanwhile."""
        names.withdraw()
        kill_mutter(session, session.mutter)
        change()
        time.sleep(1)
        session.monitors = monitors
        session.start_mutter()
        names.renew()

    def assert_stands(self, session):
        ((left, top, told),) = session.boards()
        self.assertTrue(0 <= left < 1600 and 0 <= top < 900, (left, top))
        for expected in ("Desktop", "Below", "Sticky", "Skip Taskbar", "Skip Pager"):
            self.assertIn(expected, told)

    def ends_with_the_session(self):
        with MutterSession(["1600x900"]) as session:
            running = session.start_board()
            eventually("the board is shown", session.boards)
            kill_mutter(session, session.mutter)
            worked = running.seconds_at_work()
            # Attempts are far apart by then, and the session is over between two of them.
            time.sleep(4.2)
            self.assertTrue(running.is_running())
            self.assertLess(running.seconds_at_work() - worked, MOST_AT_WORK)
            session.bus.end(signal.SIGKILL)
            ended = time.monotonic()
            self.assertEqual(running.process.wait(timeout=20), 0)
            self.assertLess(time.monotonic() - ended, LIMIT)
            self.assertEqual(running.output, LOST + ", and the session has ended.\n")

    @staticmethod
    def height(session):
        told = [told for _, _, told in session.boards()]
        return int(re.search(r"Height: (\d+)", told[0])[1]) if len(told) == 1 else 0

    def settled(self, session):
        """Once its calendars are read, it has the same height for a while."""
        before = self.height(session)
        time.sleep(2)
        return before if self.height(session) == before > 0 else None


def connections(running):
    folder = "/proc/%d/fd" % running.process.pid
    return sum(is_socket(os.path.join(folder, number)) for number in os.listdir(folder))


def is_socket(path):
    try:
        return stat.S_ISSOCK(os.stat(path).st_mode)
    except FileNotFoundError:
        return False  # it was closed after it was listed


if __name__ == "__main__":
    run_tests()
