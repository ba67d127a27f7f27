"""The running program that is asked to end: it does so within a second, and what was changed just
before is saved. ORVANE_END_SECONDS allows it more, where it is slowed down on purpose. Where the disk
hangs, it says what may be lost and ends all the same."""

import os
import signal
import statistics
import time
import unittest

from agenda import add_calendars, set_defaults
from desktop_session import BUILD, eventually, program, run_tests
from portal_session import APPLICATION, PortalSession

LIMIT = float(os.environ.get("ORVANE_END_SECONDS", "1"))
OBJECT = "/org/orvane/Orvane"
PATIENCE = 60
DISK = os.path.join(os.path.abspath(BUILD), "tests", "hanging_disk.so")
TOO_LATE = (
    "orvane: A disk or a server does not answer; the program ends without waiting for it any longer, "
    "and what was changed last may not be saved.\n"
)


def order(session, action):
    """As `session.action`, but answered: the program has heard it by then."""
    method = "org.freedesktop.Application.ActivateAction"
    session.call(APPLICATION, OBJECT, method, action, "[]", "{}")


class End(unittest.TestCase):
    def after_a_termination_is_quick_and_saves(self):
        self.end_by(lambda session, running: running.process.send_signal(signal.SIGTERM))

    def after_an_interrupt_is_quick_and_saves(self):
        self.end_by(lambda session, running: running.process.send_signal(signal.SIGINT))

    def after_a_call_is_quick_and_saves(self):
        self.end_by(lambda session, running: order(session, "quit"))

    def end_by(self, ask):
        with PortalSession() as session:
            session.background()
            session.start_backend("grant")
            session.start_portal()
            add_calendars(session)
            set_defaults(session, displayMode="all", focusMode=False)
            taken = [self.end_once(session, ask, focus) for focus in (True, False, True)]
            # One of the times may fall into a moment in which the machine has other things to do.
            self.assertLess(statistics.median(taken), LIMIT, taken)

    def end_once(self, session, ask, focus):
        """In the middle of its life: a board is shown, the calendars are read. Answers the seconds."""
        bare = session.picture()
        running = session.start_program()
        eventually("its board stands", lambda: session.picture() != bare, PATIENCE)
        order(session, "toggle-focus")
        asked = time.monotonic()
        ask(session, running)
        self.assertEqual(running.process.wait(timeout=PATIENCE), 0, running.output)
        seconds = time.monotonic() - asked
        self.assertEqual(running.output, "")
        self.assertIs(session.focus_mode(), focus)
        eventually("its board is gone", lambda: session.picture() == bare)
        return seconds


class EndOnAHangingDisk(unittest.TestCase):
    def comes_all_the_same(self):
        with PortalSession() as session:
            session.background()
            set_defaults(session, displayMode="all", focusMode=False)
            bare = session.picture()
            running = self.start_on_disk(session)
            eventually("it has its name", lambda: session.has_owner(APPLICATION), PATIENCE)
            eventually("its board stands", lambda: session.picture() != bare, PATIENCE)
            session.write("", "hanging")
            order(session, "toggle-focus")
            eventually("the settings are being written", lambda: self.unfinished(session), PATIENCE)
            # They change more often meanwhile than there are threads that could wait for the disk.
            limit = time.monotonic() + 2
            while time.monotonic() < limit:
                order(session, "toggle-focus")
            # The board goes on, and reads calendars; before it has any, it rests.
            eventually("it rests", lambda: session.picture() == session.picture())
            board = session.picture()
            add_calendars(session)
            eventually("they are shown", lambda: session.picture() != board, PATIENCE)
            self.assertEqual(running.end(seconds=PATIENCE), 0)
            self.assertEqual(running.output, TOO_LATE)
            self.assertIs(session.focus_mode(), False)

    def start_on_disk(self, session):
        environment = {"ORVANE_HANGING_DISK": session.path("hanging")}
        preload = "LD_PRELOAD=" + session.within_reach(DISK)
        return session.start(
            "env", preload, session.within_reach(program("orvane")), environment=environment
        )

    def unfinished(self, session):
        names = os.listdir(session.path(".config", "orvane"))
        return any(name.startswith("defaults.json.") for name in names)


if __name__ == "__main__":
    run_tests()
