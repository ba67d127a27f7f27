"""The focus key by way of the real desktop portal, under sway, which has nothing of the kind
itself."""

import os
import unittest

from desktop_session import eventually, run_tests
from portal_session import PORTAL_NAME, PortalSession
from private_bus import offer

SHORTCUT = "[('toggle-focus', {'description': 'Focus mode', 'preferred_trigger': 'LOGO+SHIFT+z'})]"


def lines_of(backend, method):
    return [line for line in backend.lines if line.startswith(method + " ")]


class Portal(unittest.TestCase):
    def begin(self, session, manner="grant"):
        backend = session.start_backend(manner)
        session.start_portal()
        running = session.start_program()
        self.bound(backend, 1)
        return backend, running

    def bound(self, backend, times):
        bound = lambda: len(lines_of(backend, "BindShortcuts")) == times
        eventually("the key is asked for %d times" % times, bound)

    def end(self, running):
        self.assertEqual(running.end(), 0)
        self.assertEqual(running.output, "")

    def hands_the_key_on(self):
        with PortalSession() as session:
            backend, running = self.begin(session)
            (asked,) = lines_of(backend, "BindShortcuts")
            self.assertIn(SHORTCUT, asked)
            self.assertIn("/orvane ", asked)
            session.press_until(True)
            session.press_until(False)
            self.end(running)
            eventually("the session is closed", lambda: lines_of(backend, "Close"))

    def is_started_when_the_program_asks_for_it(self):
        with PortalSession() as session:
            offer(session, PORTAL_NAME)
            session.call("org.freedesktop.DBus", "/", "org.freedesktop.DBus.ReloadConfig")
            backend = session.start_backend("grant")
            self.assertFalse(session.has_owner(PORTAL_NAME))
            running = session.start_program()
            self.bound(backend, 1)
            session.press_until(True)
            self.end(running)

    def may_refuse_the_key(self):
        with PortalSession() as session:
            backend, running = self.begin(session, "refuse")
            # Whoever wants it may still do it by the action.
            session.action("toggle-focus")
            eventually("focus mode is on", lambda: session.focus_mode() is True)
            self.assertEqual(len(lines_of(backend, "BindShortcuts")), 1)
            self.end(running)

    def may_have_nothing_behind_it(self):
        with PortalSession() as session:
            os.makedirs(session.path("portals"))
            session.start_portal()
            running = session.start_program()
            session.action("toggle-focus")
            eventually("focus mode is on", lambda: session.focus_mode() is True)
            self.end(running)

    def may_be_started_anew(self):
        with PortalSession() as session:
            backend = session.start_backend("grant")
            portal = session.start_portal()
            running = session.start_program()
            self.bound(backend, 1)
            session.press_until(True)
            portal.end()
            eventually("the portal is gone", lambda: not session.has_owner(PORTAL_NAME))
            session.start_portal()
            self.bound(backend, 2)
            session.press_until(False)
            self.end(running)

    def may_end_the_session(self):
        with PortalSession() as session:
            backend, running = self.begin(session)
            session.press_until(True)
            session.control("End")
            self.bound(backend, 2)
            session.press_until(False)
            self.end(running)


if __name__ == "__main__":
    run_tests()
