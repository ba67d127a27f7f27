"""The focus key by way of the real desktop portal, which hands it to a stand-in for what a desktop
does behind it; under sway, which has nothing of the kind itself."""

import json
import os
import shutil
import unittest

from desktop_session import eventually, program, run_tests
from portal_backend import NAME as BACKEND
from sway_session import SwaySession

PORTAL = "/usr/libexec/xdg-desktop-portal"
PORTAL_NAME = "org.freedesktop.portal.Desktop"
SERVICES = "/usr/share/dbus-1/services"
PERMISSIONS = "org.freedesktop.impl.portal.PermissionStore"

BUS = """<busconfig>
  <type>session</type>
  <listen>unix:path=%s</listen>
  <servicedir>%s</servicedir>
  <policy context="default">
    <allow own="*"/>
    <allow send_destination="*"/>
    <allow receive_sender="*"/>
  </policy>
</busconfig>
"""

BACKEND_FILE = """[portal]
DBusName=%s
Interfaces=org.freedesktop.impl.portal.GlobalShortcuts;
UseIn=standin
""" % BACKEND

SHORTCUT = "[('toggle-focus', {'description': 'Focus mode', 'preferred_trigger': 'LOGO+SHIFT+z'})]"


class PortalSession(SwaySession):
    def __init__(self):
        super().__init__(outputs=1)
        self.environment.update(
            {
                "XDG_DESKTOP_PORTAL_DIR": self.path("portals"),
                "XDG_CURRENT_DESKTOP": "standin",
                "GSETTINGS_BACKEND": "memory",
                "GIO_USE_VFS": "local",
            }
        )

    def _begin(self):
        self.start_bus(PERMISSIONS)
        super()._begin()

    def start_bus(self, *services):
        os.makedirs(self.path("services"))
        for service in services:
            shutil.copy(os.path.join(SERVICES, service + ".service"), self.path("services"))
        self.write(BUS % (self.path("bus"), self.path("services")), "bus.conf")
        self.start("dbus-daemon", "--nofork", "--config-file=" + self.path("bus.conf"))
        eventually("there is a bus", lambda: os.path.exists(self.path("bus")))
        self.environment["DBUS_SESSION_BUS_ADDRESS"] = "unix:path=" + self.path("bus")

    def start_backend(self, manner):
        self.write(BACKEND_FILE, "portals", "standin.portal")
        script = os.path.join(os.path.dirname(os.path.abspath(__file__)), "portal_backend.py")
        # The tests' own folder may be out of the unprivileged user's reach.
        with open(script, encoding="utf-8") as file:
            self.write(file.read(), "portal_backend.py")
        backend = self.start("/usr/bin/python3", "-B", self.path("portal_backend.py"), manner)
        eventually("the backend is there", lambda: "ready" in backend.lines)
        return backend

    def start_portal(self):
        # Its helper for shared files is none of ours, and is not waited for.
        portal = self.start(PORTAL, "--verbose")
        eventually("there is a portal", lambda: self.has_owner(PORTAL_NAME))
        return portal

    def start_program(self):
        running = self.start(program("orvane"))
        eventually("it is there", lambda: self.has_owner("org.orvane.Orvane"))
        return running

    def call(self, name, path, method, *arguments):
        command = ("gdbus", "call", "--session", "--dest", name, "--object-path", path)
        return self.ask(*command, "--method", method, *arguments).decode().strip()

    def has_owner(self, name):
        bus = "org.freedesktop.DBus"
        return self.call(bus, "/org/freedesktop/DBus", bus + ".NameHasOwner", name) == "(true,)"

    def control(self, what):
        self.call(BACKEND, "/control", "org.orvane.Standin." + what)

    def focus_mode(self):
        """As the settings keep it; None before they were saved."""
        try:
            with open(self.path(".config", "orvane", "defaults.json"), encoding="utf-8") as file:
                return json.load(file).get("DashboardSettings.focusMode")
        except FileNotFoundError:
            return None

    def press_until(self, wanted):
        self.control("Activate")
        eventually("focus mode is %s" % wanted, lambda: self.focus_mode() is wanted)


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
            shutil.copy(os.path.join(SERVICES, PORTAL_NAME + ".service"), session.path("services"))
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
            session.ask("gapplication", "action", "org.orvane.Orvane", "toggle-focus")
            eventually("focus mode is on", lambda: session.focus_mode() is True)
            self.assertEqual(len(lines_of(backend, "BindShortcuts")), 1)
            self.end(running)

    def may_have_nothing_behind_it(self):
        with PortalSession() as session:
            os.makedirs(session.path("portals"))
            session.start_portal()
            running = session.start_program()
            session.ask("gapplication", "action", "org.orvane.Orvane", "toggle-focus")
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
