"""A system bus of the test's own with a stand-in for logind on it, which tells of the session's seat
and of its lock."""

import os

from desktop_session import eventually, listens

HERE = os.path.dirname(os.path.abspath(__file__))
LOGIND = "/org/freedesktop/login1"
# The number of the only session that there is, and of the console that it is on.
OURS, ANOTHER = "2", "3"


class Seat:
    """The environment of whatever the session starts from here on names the bus."""

    def __init__(self, session):
        self._session = session
        path = session.path("system-bus")
        session.start("dbus-daemon", "--session", "--nofork", "--address=unix:path=" + path)
        eventually("there is a system bus", lambda: os.path.exists(path) and listens(path))
        session.environment["DBUS_SYSTEM_BUS_ADDRESS"] = "unix:path=" + path
        script = session.within_reach(os.path.join(HERE, "login_service.py"))
        self._logind = session.start("/usr/bin/python3", "-B", script)
        eventually("there is a stand-in for logind", lambda: "ready" in self._logind.lines)

    def is_followed(self):
        """Whether somebody asked it whether the session is locked."""
        return "read" in self._logind.lines

    def say_locked(self, is_locked):
        """As lock screens do."""
        self._call("/session/_32", "Session.SetLockedHint", "true" if is_locked else "false")

    def ask_to_lock(self):
        """As who wants the lock screen."""
        self._call("/session/_32", "Session.Lock")

    def ask_to_unlock(self):
        self._call("/session/_32", "Session.Unlock")

    def switch_to(self, console):
        self._call("/seat/seat0", "Seat.SwitchTo", console)

    def _call(self, path, method, *arguments):
        target = ("--dest", "org.freedesktop.login1", "--object-path", LOGIND + path)
        method = "org.freedesktop.login1." + method
        self._session.ask("gdbus", "call", "--system", *target, "--method", method, *arguments)
