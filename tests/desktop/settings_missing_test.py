"""The board where its settings window cannot be shown, because the window's toolkit is not installed."""

import json
import os
import shutil
import unittest

import agenda
from desktop_session import COMPANIONS, eventually, program, run_tests
from settings_board import DIGITS
from xfce_session import NAME, XfceSession

SERVICE = os.path.join(os.path.dirname(os.path.abspath(__file__)), "notification_service.py")
TOOLKIT, NOBODY_HAS = b"libgtk-4.so.1\0", b"libgtk-4.none\0"
SENTENCE = "The settings window needs GTK 4, which is not installed."


class Session(XfceSession):
    """Its programs are copies, of which the window's asks for a toolkit that no machine has."""

    def __init__(self):
        super().__init__()
        self.environment["GTK_A11Y"] = "none"
        self.make_folder("bin")
        for name in ["orvane", *COMPANIONS["orvane"]]:
            if os.path.exists(self._built(name)):
                self.install(name)
        with open(self._built("orvane-settings"), "rb") as file:
            content = file.read()
        assert TOOLKIT in content
        with open(self.path("bin", "orvane-settings"), "wb") as file:
            file.write(content.replace(TOOLKIT, NOBODY_HAS))

    @staticmethod
    def _built(name):
        return os.path.join(os.path.dirname(program("orvane")), name)

    def install(self, name):
        unfinished = self.path("bin", "unfinished")
        shutil.copyfile(self._built(name), unfinished)
        os.chmod(unfinished, 0o755)
        os.rename(unfinished, self.path("bin", name))

    def start_program(self):
        running = self.start(self.path("bin", "orvane"))
        eventually("it has its name", lambda: self.has_owner(NAME))
        eventually("its board stands", lambda: self.windows(NAME))
        return running

    def start_notifications(self):
        with open(SERVICE, encoding="utf-8") as file:
            service = self.start("/usr/bin/python3", "-B", "-c", file.read())
        eventually("notifications are shown", lambda: "ready" in service.lines)
        return service

    def expect_ticks(self):
        """More than once, so that it is not the agenda that has come."""
        for _ in range(3):
            digits = self.picture().cropped(*DIGITS)
            eventually("the board ticks", lambda digits=digits: self.picture().cropped(*DIGITS) != digits)

    def has_settings(self):
        try:
            return bool(self.ask("xdotool", "search", "--onlyvisible", "--name", "^Orvane Settings$"))
        except AssertionError:
            return False


def notifications(service):
    return [json.loads(line) for line in service.lines if line.startswith("{")]


class Toolkit(unittest.TestCase):
    def that_is_missing_is_told_and_the_board_goes_on(self):
        with Session() as xfce:
            agenda.add_calendar(xfce)
            service = xfce.start_notifications()
            board = xfce.start_program()
            xfce.action("settings")
            first = eventually("it is told", lambda: notifications(service))[0]
            self.assertEqual((first["title"], first["text"]), ("Orvane Settings", SENTENCE))
            self.assertEqual(first["replaces"], 0)
            xfce.expect_ticks()
            xfce.action("settings")
            second = eventually("it is told again", lambda: notifications(service)[1:])[0]
            self.assertEqual((second["text"], second["replaces"]), (SENTENCE, first["number"]))
            xfce.action("toggle-focus")
            eventually("the board goes on", lambda: xfce.focus_mode() is True)
            self.assertFalse(xfce.has_settings())
            # Installed later, it is found without starting the board anew.
            xfce.install("orvane-settings")
            xfce.action("settings")
            eventually("the settings window is there", xfce.has_settings, 60)
            self.assertEqual(len(notifications(service)), 2)
            self.assertEqual(board.end(), 0)

    def that_is_missing_is_told_on_the_terminal_where_nobody_shows_notifications(self):
        with Session() as xfce:
            agenda.add_calendar(xfce)
            board = xfce.start_program()
            xfce.action("settings")
            eventually("it is told", lambda: "orvane: " + SENTENCE in board.lines)
            xfce.expect_ticks()
            self.assertEqual(board.end(), 0)


if __name__ == "__main__":
    run_tests()
