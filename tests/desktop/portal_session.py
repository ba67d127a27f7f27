"""A headless sway with a bus that starts nothing by itself but what it is told to, where the real
desktop portal hands shortcuts to a stand-in for what a desktop does behind it."""

import json
import os

from desktop_session import eventually, program
from portal_backend import NAME as BACKEND
from private_bus import start_bus
from sway_session import SwaySession

APPLICATION = "org.orvane.Orvane"
PORTAL = "/usr/libexec/xdg-desktop-portal"
PORTAL_NAME = "org.freedesktop.portal.Desktop"
PERMISSIONS = "org.freedesktop.impl.portal.PermissionStore"

BACKEND_FILE = """[portal]
DBusName=%s
Interfaces=org.freedesktop.impl.portal.GlobalShortcuts;
UseIn=standin
""" % BACKEND


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
        if "DBUS_SESSION_BUS_ADDRESS" not in self.environment:  # it outlives compositors
            self.bus = start_bus(self, PERMISSIONS)
        super()._begin()

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
        eventually("it is there", lambda: self.has_owner(APPLICATION))
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

    def action(self, name):
        self.ask("gapplication", "action", APPLICATION, name)

    def press_until(self, wanted):
        self.control("Activate")
        eventually("focus mode is %s" % wanted, lambda: self.focus_mode() is wanted)
