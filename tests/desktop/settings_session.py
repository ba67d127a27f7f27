"""A desktop with the board on it and its settings window, which is operated as by somebody who does
not see it, and whose effects are looked for outside of it."""

import json
import time

from accessible import Accessible
from desktop_session import eventually

TITLE = "Orvane Settings"
EVENT = """BEGIN:VCALENDAR\r
VERSION:2.0\r
PRODID:-//Orvane//Test//EN\r
BEGIN:VEVENT\r
UID:%s\r
DTSTAMP:20260101T000000Z\r
DTSTART:20260101T100000Z\r
DTEND:20260101T110000Z\r
RRULE:FREQ=DAILY\r
SUMMARY:%s\r
END:VEVENT\r
END:VCALENDAR\r
"""
TASK = """BEGIN:VCALENDAR\r
VERSION:2.0\r
PRODID:-//Orvane//Test//EN\r
BEGIN:VTODO\r
UID:%s\r
DTSTAMP:20260101T000000Z\r
SUMMARY:%s\r
END:VTODO\r
END:VCALENDAR\r
"""
FAR = 60  # more steps than there are controls
PATIENCE_WITH_KEYS = 3  # seconds; at the end of a list nothing comes of a key
PROGRAM = "orvane-settings"


def name_of(process):
    try:
        with open("/proc/%d/comm" % process, encoding="utf-8") as file:
            return file.read().strip()
    except OSError:
        return ""


def window_processes(board):
    """Children of a board's process that show a window, zombies included."""
    with open("/proc/%d/task/%d/children" % (board, board), encoding="ascii") as file:
        children = [int(child) for child in file.read().split()]
    return [child for child in children if name_of(child).startswith(PROGRAM[:15])]


class SettingsSession:
    """What is added to the session of a desktop."""

    def start_accessible(self):
        self.accessible = Accessible(self)

    def give_calendars(self, *names):
        self._give_items(EVENT, "Event of %s", names)

    def give_lists(self, *names):
        self._give_items(TASK, "Task of %s", names)

    def _give_items(self, text, title, names):
        for name in names:
            item = text % (name.lower(), title % name)
            self.write(item, ".local", "share", "orvane", "calendars", name, "item.ics")

    def open_settings(self):
        self.action("settings")
        eventually("the settings window is there", self.is_open, 60)

    def is_open(self):
        return self.accessible.look(TITLE, "frame") is not None

    def window_process(self):
        """The one that shows the window; None while there is none."""
        return next(iter(window_processes(self.board.process.pid)), None)

    def setting(self, key):
        """As it is stored; None where it is not."""
        try:
            with open(self.path(".config", "orvane", "defaults.json"), encoding="utf-8") as file:
                return json.load(file).get("DashboardSettings.%s" % key)
        except FileNotFoundError:
            return None

    def expect(self, key, value):
        eventually("%s is %r" % (key, value), lambda: self.setting(key) == value)

    # ---- Controls, by their names

    def choose_tab(self, name):
        """Acting takes a beat, after which nobody sees anything of a tab that was chosen before."""
        if "pressed" in self.states(name, "page tab"):
            return
        self.accessible.act(name, "page tab")
        eventually("the tab is chosen", lambda: "pressed" in self.states(name, "page tab"))

    def go_to(self, name, role=None, description=None):
        """With the Tab key, until it has the focus."""
        wanted = {"name": name, "role": role, "description": description}
        focused = self.accessible.focused() or {}
        for _ in range(FAR):
            if all(value in (None, focused.get(key)) for key, value in wanted.items()):
                return
            focused = self._moved_by("Tab")
        raise AssertionError("the focus never came to %s" % name)

    def go_to_row(self, name):
        """In whichever list it is: to the list with the Tab key, and from row to row by arrows."""
        focused = self.accessible.focused() or {}
        for _ in range(FAR):
            if focused.get("role") == "check box" and self._go_along(name):
                return
            focused = self._moved_by("Tab")
        raise AssertionError("the focus never came to the row %s" % name)

    def _go_along(self, name):
        self._moved_by("Home")
        for _ in range(FAR):
            before = self.accessible.focused() or {}
            if before.get("name") == name or self._moved_by("Down") == before:
                return before.get("name") == name
        return False

    def _moved_by(self, key):
        """What has the focus a moment after the key; it may be the same."""
        before = self.accessible.focused() or {}
        self.press(key)
        limit = time.monotonic() + PATIENCE_WITH_KEYS
        while time.monotonic() < limit:
            focused = self.accessible.focused() or {}
            if focused != before:
                return focused
        return before

    def pick(self, name, position):
        """Of the choices of a picker the one at the position, from 0."""
        self.accessible.act(name, "push button")
        eventually("the choices are there", lambda: self.has_focus("list item"))
        self.press("Home", *["Down"] * position, "Return")
        eventually("the choices are gone", lambda: not self.has_focus("list item"))

    def has_focus(self, role, name=None):
        focused = self.accessible.focused() or {}
        return focused.get("role") == role and name in (None, focused.get("name"))

    def toggle(self, name):
        self.accessible.act(name, "check box")

    def states(self, name, role, description=None):
        known = self.accessible.look(name, role, description)
        return known["states"] if known else []

    def is_on(self, name):
        return "checked" in self.states(name, "check box")

    def is_enabled(self, name, role, description=None):
        return "sensitive" in self.states(name, role, description)
