"""The desktops whose icons are hidden by GSettings, with the store that they really have: what the
program sets is in it when the program has ended."""

import os
import re
import signal
import time
import unittest

from desktop_session import eventually, run_tests
from end_test import LIMIT
from xfce_session import XfceSession

STORE = "ca.desrt.dconf"
KEY = ("org.mate.background", "show-desktop-icons")
CALL = "org.freedesktop.Application.ActivateAction"


class MateSession(XfceSession):
    """MATE, as far as its settings go."""

    SERVICES = (*XfceSession.SERVICES, STORE)

    def __init__(self):
        super().__init__()
        self.environment.update({"XDG_CURRENT_DESKTOP": "MATE", "GSETTINGS_BACKEND": "dconf"})

    def shows_icons(self):
        """As the file of the store says."""
        return self.ask("gsettings", "get", *KEY).decode().strip() == "true"

    def is_chosen(self):
        """Whether the user's file says anything about it."""
        try:
            with open(self.path(".config", "dconf", "user"), "rb") as file:
                return KEY[1].encode() in file.read()
        except FileNotFoundError:
            return False

    def order(self, action):
        """Answered when the program has heard it."""
        self.call("org.orvane.Orvane", "/org/orvane/Orvane", CALL, action, "[]", "{}")

    def store_process(self):
        bus = "org.freedesktop.DBus"
        path = "/org/freedesktop/DBus"
        told = self.call(bus, path, bus + ".GetConnectionUnixProcessID", STORE)
        return int(re.fullmatch(r"\(uint32 (\d+),\)", told).group(1))

    def remembers(self):
        return os.path.exists(self.path(".local", "state", "orvane", "desktop-icons"))


class Store(unittest.TestCase):
    def has_what_was_set_when_the_program_ends(self):
        with MateSession() as mate:
            mate.set_defaults(hideDesktopIconsInFocus=True)
            for how in (signal.SIGTERM, signal.SIGINT):
                self.assertFalse(mate.is_chosen())
                running = mate.start_program()
                mate.order("toggle-focus")
                self.assertEqual(running.end(how), 0)
                self.assertFalse(mate.shows_icons())
                self.assertTrue(mate.remembers())
                running = mate.start_program()
                mate.order("toggle-focus")
                mate.order("quit")
                self.assertEqual(running.process.wait(timeout=20), 0)
                self.assertTrue(mate.shows_icons())
                self.assertFalse(mate.remembers())
                self.assertEqual(running.output, "")

    def that_hangs_holds_up_nobody(self):
        with MateSession() as mate:
            mate.set_defaults(hideDesktopIconsInFocus=True)
            running = mate.start_program()
            mate.order("toggle-focus")
            eventually("the icons are hidden", lambda: not mate.shows_icons())
            store = mate.store_process()
            os.kill(store, signal.SIGSTOP)
            self.addCleanup(self.resume, store)
            mate.order("toggle-focus")
            asked = time.monotonic()
            self.assertEqual(running.end(), 0)
            self.assertLess(time.monotonic() - asked, LIMIT)
            self.assertEqual(running.output, "")
            self.assertFalse(mate.shows_icons())
            # It was told all the same; what it was like before is kept until that is known.
            self.assertTrue(mate.remembers())
            os.kill(store, signal.SIGCONT)
            eventually("the icons are shown", mate.shows_icons)
            running = mate.start_program()
            eventually("nothing is remembered", lambda: not mate.remembers())
            self.assertEqual(running.end(), 0)
            self.assertTrue(mate.shows_icons())

    @staticmethod
    def resume(process):
        try:
            os.kill(process, signal.SIGCONT)
        except ProcessLookupError:
            pass


if __name__ == "__main__":
    run_tests()
