"""The program on an X server whose session is locked, or not the one that its seat shows."""

import os
import time
import unittest

from desktop_session import eventually, listens, run_tests
from x11_row import X11Row

HERE = os.path.dirname(os.path.abspath(__file__))
LOGIND = "/org/freedesktop/login1"
OUR_CONSOLE, ANOTHER = "2", "3"


class OnASeat(X11Row):
    """Nothing but the server tells what can be seen: it has no window manager and no screen saver."""

    monitors = ("screen",)

    def begin(self):
        path = self.path("system-bus")
        self.start("dbus-daemon", "--session", "--nofork", "--address=unix:path=" + path)
        eventually("there is a system bus", lambda: os.path.exists(path) and listens(path))
        self.environment["DBUS_SYSTEM_BUS_ADDRESS"] = "unix:path=" + path
        script = self.within_reach(os.path.join(HERE, "login_service.py"))
        self.logind = self.start("/usr/bin/python3", "-B", script)
        eventually("there is a stand-in for logind", lambda: "ready" in self.logind.lines)

    def call(self, path, method, argument):
        target = ("--dest", "org.freedesktop.login1", "--object-path", LOGIND + path)
        method = "org.freedesktop.login1." + method
        self.ask("gdbus", "call", "--system", *target, "--method", method, argument)

    def lock(self, is_locked):
        self.call("/session/_32", "Session.SetLockedHint", "true" if is_locked else "false")

    def switch_to(self, console):
        self.call("/seat/seat0", "Seat.SwitchTo", console)

    def rests(self):
        """Whether the board says the same for some seconds, though it counts them."""
        before = self.whole_picture()
        time.sleep(2.5)
        return not self.whole_picture().differing_box(before)


class OutOfSight(unittest.TestCase):
    def come_through(self, hide, show):
        with OnASeat() as session:
            session.prepare(displayMode="main")
            running = session.start_board()
            eventually("it counts", lambda: not session.rests(), 60)
            eventually("it follows the session", lambda: "read" in session.logind.lines, 60)
            for _ in range(2):
                hide(session)
                eventually("it is drawn no more", session.rests, 60)
                hidden = session.whole_picture()
                show(session)
                changed = lambda: session.whole_picture().differing_box(hidden)
                eventually("it is drawn again", changed)
                self.assertFalse(session.rests())
            self.assertEqual((running.end(), running.output), (0, ""))

    def while_it_is_locked(self):
        self.come_through(lambda session: session.lock(True), lambda session: session.lock(False))

    def while_another_console_is_shown(self):
        self.come_through(
            lambda session: session.switch_to(ANOTHER), lambda session: session.switch_to(OUR_CONSOLE)
        )


if __name__ == "__main__":
    run_tests()
