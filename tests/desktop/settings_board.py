"""A headless Xfce with the board in the upper left and its settings window beside it, so that both are
seen at once."""

import time

import agenda
from at_rest import at_rest
from desktop_session import eventually, zone_where_it_is_noon
from settings_session import TITLE, SettingsSession
from xfce_session import XfceSession

# (left, top, width, height) on the screen.
TITLE_OF_NEXT_UP = (80, 355, 380, 70)
DIGITS = (80, 285, 340, 65)
# Within the board's cards, beside their texts.
ON_DATE = (330, 60)
ON_EVENTS = (700, 60)
# Within the second row of events; with one row, between its card and the next.
ON_SECOND_EVENT = (700, 176)
BESIDE_THE_BOARD = (800, 260)
HOUR = 3600


class BoardSession(SettingsSession, XfceSession):
    """The items are (calendar, what is in it)."""

    def __init__(self, *items):
        super().__init__()
        self._items = items

    def __enter__(self):
        super().__enter__()
        self.start_accessible()
        for name, item in self._items:
            self.write(agenda.calendar(item), *agenda.CALENDARS, name, "item.ics")
        self.start_board()
        return self

    def start_board(self):
        self.board = self.start_program()
        self.open_settings()
        for name, _ in self._items:
            eventually("%s is offered" % name, lambda name=name: self.accessible.look(name, "check box"))
        left = self.window_place()[0]
        self.ask("xdotool", "windowmove", self.settings_window(), *map(str, BESIDE_THE_BOARD))
        eventually("the window is beside the board", lambda: self.window_place()[0] > left)

    def end_board(self):
        status = self.board.end()
        eventually("its window is gone", lambda: not self.is_open())
        return status

    # ---- The window

    def settings_window(self):
        return self.ask("xdotool", "search", "--onlyvisible", "--name", TITLE).decode().split()[0]

    def window_place(self):
        """(left, top, width, height) without its shadow."""
        window = self.settings_window()
        told = self.ask("xdotool", "getwindowgeometry", "--shell", window).decode()
        known = dict(line.split("=") for line in told.split())
        left, top, width, height = (int(known[key]) for key in ("X", "Y", "WIDTH", "HEIGHT"))
        shadow = self.ask("xprop", "-id", window, "_GTK_FRAME_EXTENTS").decode().split("=")[1]
        before, after, above, below = (int(side) for side in shadow.split(","))
        return (left + before, top + above, width - before - after, height - above - below)

    def window_picture(self):
        return self.picture().cropped(*self.window_place())

    # ---- The board

    def part(self, place):
        return self.picture().cropped(*place)

    def lists_two_events(self):
        return self.picture().pixel(*ON_SECOND_EVENT) != (0, 0, 0)

    def colors(self):
        picture = self.picture()
        return [picture.pixel(*place) for place in (ON_DATE, ON_EVENTS)]

    def resting_colors(self):
        return at_rest("each card", self.colors, looks=7)

    def title(self):
        """What the board counts down to."""
        return self.part(TITLE_OF_NEXT_UP)

    def title_other_than(self, *known):
        return eventually("it counts down to something else", lambda: self._settled(known))

    def title_again(self, known):
        eventually("it counts down to that again", lambda: self.title() == known)

    def _settled(self, known):
        title = self.title()
        return title if title not in known and self.title() == title else None


def event(calendar, title, hours):
    return (calendar, agenda.event(title, hours * HOUR))


def task(name, title, hours):
    return (name, agenda.task(title, hours * HOUR))


def tomorrow(calendar, title):
    """All day."""
    zone = -int(zone_where_it_is_noon()[len("Etc/GMT") :]) * HOUR
    day = time.strftime("%Y%m%d", time.gmtime(time.time() + zone + 24 * HOUR))
    lines = ["BEGIN:VEVENT", "UID:%s@example.org" % title, "DTSTAMP:20260101T000000Z", "SUMMARY:" + title]
    return (calendar, "\r\n".join(lines + ["DTSTART;VALUE=DATE:" + day, "END:VEVENT"]))
