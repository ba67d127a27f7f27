"""Lists of the settings window that are long, and names that are not like most."""

import os
import signal
import statistics
import unittest

from desktop_session import eventually, is_sanitized, run_tests
from settings_session import EVENT, TITLE
from settings_window_test import Session

COUNT = 500
# As many turns of so many pages are timed, of which the one in the middle counts.
TURNS = 5
PAGES = 8
TICKS_PER_SECOND = os.sysconf("SC_CLK_TCK")
# Of the processor's time for a page, in seconds. A key that is held down asks for one every 40 ms, and
# measured are 14 to 18 ms; what else runs on the machine empties the caches. Sanitizers take thrice as
# much.
LIMIT = 0.06
SANITIZED = 3
# How much longer than with two calendars the program may take to open, as a factor and in seconds. Only
# what can be seen is made.
OPENING_FACTOR = 3
OPENING_MORE = 0.5
LOOKS = 8
ODD_NAMES = {
    "long": "Product launches, reviews and everything else that the whole company has to know of",
    "emoji": "Family \U0001F468\u200D\U0001F469\u200D\U0001F467 & friends",
    "right to left": "\u05dc\u05d5\u05d7 \u05e9\u05e0\u05d4",
}
# By the names that they have instead: the calendar's folder and what stands in it as a name.
NAMELESS = {"empty": ("empty", ""), "blank": ("blank", " \t\n"), "Calendar": (" ", "")}


def state_of(process):
    """Whether it waits for something to do, and the processor's time in seconds of all of its threads
    so far."""
    with open("/proc/%d/stat" % process, encoding="ascii") as file:
        fields = file.read().rpartition(")")[2].split()
    return fields[0] == "S", (int(fields[11]) + int(fields[12])) / TICKS_PER_SECOND


def time_at_rest(process):
    """Of the processor, once the process has waited for a while; on a busy machine it may have
    something to do and not get to it."""
    seen = []

    def rests():
        seen.append(state_of(process))
        last = seen[-LOOKS:]
        return len(last) == LOOKS and all(waits for waits, _ in last) and last[0] == last[-1]

    eventually("it rests", rests, 60, 0.1)
    return seen[-1][1]


class LongSession(Session):
    def give_named(self, folder, name):
        """A calendar that has nothing in it that lasts."""
        path = (".local", "share", "orvane", "calendars", folder)
        self.write(name, *path, "displayname")
        self.write(EVENT.replace("RRULE:FREQ=DAILY\r\n", "") % (folder, folder), *path, "item.ics")


    def offer_many(self):
        for number in range(1, COUNT + 1):
            self.give_named("%03d" % number, "Year %03d" % number)
        eventually("they are offered", lambda: self.accessible.look("Year 001", "check box"), 60)

    def time_to_open(self, row):
        """Of the processor, for a program that starts and shows the row; the least of some. Nobody
        asks it for its controls meanwhile."""
        took = []
        for _ in range(3):
            os.kill(self.window_process(), signal.SIGKILL)
            eventually("it is gone", lambda: not self.is_on_screen() and not self.window_process())
            self.action("settings")
            eventually("it is on the screen", self.is_on_screen, 60)
            took.append(time_at_rest(self.window_process()))
            eventually("the row is there", lambda: self.accessible.look(row, "check box"), 60)
        return min(took)

    def is_on_screen(self):
        try:
            return bool(self.ask("xdotool", "search", "--onlyvisible", "--name", TITLE))
        except AssertionError:
            return False


class Lists(unittest.TestCase):
    def of_five_hundred_open_as_soon_as_those_of_two(self):
        with LongSession() as xfce:
            few = xfce.time_to_open("Work")
            xfce.offer_many()
            many = xfce.time_to_open("Year 001")
            print("%.2f s of processor time with two, %.2f s with %d" % (few, many, COUNT))
            self.assertLess(many, OPENING_FACTOR * few + OPENING_MORE)

    def of_five_hundred_scroll_smoothly(self):
        with LongSession() as xfce:
            xfce.offer_many()
            xfce.go_to_row("Home")
            took = [self._turn(xfce) for _ in range(TURNS)]
            print("ms of processor time a page:", *("%.1f" % (seconds * 1000) for seconds in took))
            self.assertLess(statistics.median(took), LIMIT * (SANITIZED if is_sanitized("orvane-settings") else 1))
            xfce.press("End")
            eventually("the end", lambda: self._number(xfce) == COUNT)
            xfce.press("space")
            eventually("it is chosen", lambda: xfce.setting("selectedCalendarIDs"))
            self.assertEqual(len(xfce.setting("selectedCalendarIDs")), 1)
            self.assertEqual(xfce.board.output, "")

    def _turn(self, xfce):
        """The processor's time for a page, of some that are turned one after the other. Nobody asks
        the program for its controls meanwhile."""
        window, first = xfce.window_process(), self._number(xfce)
        before = time_at_rest(window)
        xfce.ask("xdotool", "key", "--delay", "60", *["Page_Down"] * PAGES)
        took = time_at_rest(window) - before
        eventually("they are paged through", lambda: self._number(xfce) > first + PAGES)
        return took / PAGES

    @staticmethod
    def _number(xfce):
        """That of the calendar that has the focus, or 0."""
        name = (xfce.accessible.focused() or {}).get("name") or ""
        return int(name.rpartition(" ")[2]) if name.startswith("Year ") else 0

    def have_odd_names(self):
        with LongSession() as xfce:
            for folder, name in ODD_NAMES.items():
                xfce.give_named(folder, name)
            for name in ODD_NAMES.values():
                eventually(repr(name), lambda name=name: xfce.accessible.look(name, "check box"))

    def call_what_is_nameless_by_another_name(self):
        with LongSession() as xfce:
            for folder, name in NAMELESS.values():
                xfce.give_named(folder, name)
            for name in NAMELESS:
                eventually(repr(name), lambda name=name: xfce.accessible.look(name, "check box"))
            self.assertNotIn("", map(str.strip, xfce.accessible.names("check box")))
            for count, name in enumerate(NAMELESS, 1):
                xfce.go_to_row(name)
                xfce.press("space")
                eventually("it is chosen", lambda count=count: self._chosen(xfce) == count)

    @staticmethod
    def _chosen(xfce):
        return len(xfce.setting("selectedCalendarIDs") or [])


if __name__ == "__main__":
    run_tests()
