"""How the program is one in its session: on no bus at all, on one that does not answer in time, and
started by the bus itself."""

import contextlib
import signal
import unittest

from desktop_session import eventually, program, run_tests
from portal_session import APPLICATION, PortalSession
from sway_program_test import is_bare, wait_for_board
from sway_session import SwaySession

BUS = "org.freedesktop.DBus"
SERVICE = """[D-BUS Service]
Name=%s
Exec=%s
"""
PATIENCE = 60


def prepare(session):
    toolkit = {"GTK_A11Y": "none", "GSK_RENDERER": "cairo", "GSETTINGS_BACKEND": "memory"}
    session.environment.update(toolkit)
    session.background()
    eventually("the output is plain", lambda: is_bare(session, "HEADLESS-1"))


def shows_settings(session):
    return b"Orvane Settings" in session.ask("swaymsg", "-t", "get_tree")


class Instance(unittest.TestCase):
    def is_one_without_a_bus(self):
        with SwaySession(outputs=1) as sway:
            prepare(sway)
            first = sway.start(program("orvane"))
            wait_for_board(sway, "HEADLESS-1")
            self.start_again(sway, {"ORVANE_START": "login"})
            self.assertFalse(shows_settings(sway))
            self.start_again(sway, {})
            eventually("the first shows its settings", lambda: shows_settings(sway), PATIENCE)
            self.assertTrue(first.is_running())
            self.assertEqual(first.end(), 0)
            self.assertEqual(first.output, "")

    def is_one_where_the_bus_is_too_slow_for_the_second(self):
        with PortalSession() as session:
            prepare(session)
            first = session.start_program()
            wait_for_board(session, "HEADLESS-1")
            with self.stopped(session.bus):
                self.start_again(session, {})
            self.assert_shows_settings(session, first)

    def is_one_where_the_bus_was_too_slow_for_the_first(self):
        with PortalSession() as session:
            prepare(session)
            with self.stopped(session.bus):
                first = session.start(program("orvane"))
                wait_for_board(session, "HEADLESS-1")
            self.start_again(session, {"ORVANE_START": "login"})
            self.assertFalse(shows_settings(session))
            self.start_again(session, {})
            self.assert_shows_settings(session, first)

    @contextlib.contextmanager
    def stopped(self, running):
        running.process.send_signal(signal.SIGSTOP)
        try:
            yield
        finally:
            running.process.send_signal(signal.SIGCONT)

    def assert_shows_settings(self, session, first):
        eventually("the first shows its settings", lambda: shows_settings(session), PATIENCE)
        self.assertTrue(first.is_running())
        self.assertEqual(session.processes_called("orvane"), [first.process.pid])
        self.assertEqual(first.end(), 0)
        self.assertEqual(first.output, "")

    def start_again(self, session, environment):
        second = session.start(program("orvane"), environment=environment)
        self.assertEqual(second.process.wait(timeout=PATIENCE), 0)
        self.assertEqual(second.output, "")

    def is_started_by_the_bus_and_opens_nothing(self):
        with PortalSession() as session:
            self.offer(session)
            session.ask("gapplication", "launch", APPLICATION)
            wait_for_board(session, "HEADLESS-1")
            self.assertTrue(session.has_owner(APPLICATION))
            self.assertFalse(shows_settings(session))
            # Launched again by the desktop, it is asked for.
            session.ask("gapplication", "launch", APPLICATION)
            eventually("it shows its settings", lambda: shows_settings(session), PATIENCE)
            self.end(session)

    def is_started_by_the_bus_for_an_action(self):
        with PortalSession() as session:
            self.offer(session)
            session.action("toggle-focus")
            eventually("focus mode is on", lambda: session.focus_mode() is True, PATIENCE)
            wait_for_board(session, "HEADLESS-1")
            self.assertFalse(shows_settings(session))
            self.end(session)

    def offer(self, session):
        """As the package does, to a bus that knows where the display is."""
        prepare(session)
        path = session.within_reach(program("orvane"))
        session.write(SERVICE % (APPLICATION, path), "services", APPLICATION + ".service")
        display = "{'WAYLAND_DISPLAY': '%s'}" % session.environment["WAYLAND_DISPLAY"]
        for method, *arguments in (("UpdateActivationEnvironment", display), ("ReloadConfig",)):
            session.call(BUS, "/org/freedesktop/DBus", "%s.%s" % (BUS, method), *arguments)

    def end(self, session):
        session.action("quit")
        eventually("it is gone", lambda: not session.has_owner(APPLICATION))


if __name__ == "__main__":
    run_tests()
