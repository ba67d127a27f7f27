"""The running program while outputs come and go and files change without pause: it ends well, has
lost nothing, and holds no more memory than before. Built with sanitizers, it reports nothing."""

import os
import shutil
import statistics
import time
import unittest

from agenda import CALENDARS, add_calendar, calendar, event, set_defaults
from desktop_session import eventually, program, run_tests
from sway_program_test import ON_THE_BOARD
from sway_session import SwayInWindows, SwaySession

SECONDS = float(os.environ.get("ORVANE_LONG_SECONDS") or os.environ.get("ORVANE_SOAK_SECONDS", "10"))
SUPPRESSIONS = os.path.join(os.path.dirname(__file__), os.pardir, "support", "lsan.supp")
# A buffer of one output that is kept from each round would come to more within a few rounds.
ALLOWED_GROWTH_MB = 8


def sanitizer_options():
    """Those of the environment. Freed memory that is held back would look like growth; third
    parties' leaks are listed."""
    held_back = "quarantine_size_mb=2:thread_local_quarantine_size_kb=64"
    listed = "suppressions=%s:print_suppressions=0" % os.path.abspath(SUPPRESSIONS)
    return {
        "ASAN_OPTIONS": ":".join(filter(None, (os.environ.get("ASAN_OPTIONS"), held_back))),
        "LSAN_OPTIONS": os.environ.get("LSAN_OPTIONS", listed),
    }


def held_mb(running):
    return held_by(running.process.pid)


def held_by(process):
    """What it holds that is not a file's, in MB: its heap, and the buffers that it shares."""
    with open("/proc/%d/status" % process, encoding="ascii") as file:
        fields = dict(line.split(":", 1) for line in file)
    return sum(int(fields[name].split()[0]) for name in ("RssAnon", "RssShmem")) / 1024


def complaints(running):
    """What it wrote, but for its own sentences on what is wrong with a file."""
    return [line for line in running.lines if not line.startswith("orvane: ")]


def first_picture(sway):
    """Of the output that has been there for longest; all but a WL-2 have a scale of 1."""
    return sway.picture(sway.outputs()[0])


def show_the_same(picture, another):
    """Read by another program, and perhaps in another minute, which the line below the date tells."""
    box = picture.differing_box(another)
    return box is None or (box[0] >= 36 and box[1] >= 155 and box[2] <= 394 and box[3] <= 190)


def wait_for_board(sway, bare):
    def look():
        picture = first_picture(sway)
        return None if picture.pixel(*ON_THE_BOARD) == bare else picture

    return eventually("the board stands on the first output", look)


def add_many(sway, turn):
    many = [event("Meeting %d" % number, 600 * number + turn) for number in range(1, 200)]
    sway.write(calendar(*many), *CALENDARS, "many", "events.ics")


def add_nonsense(sway, turn):
    whole = calendar(event("Broken", 3600 + turn))
    sway.write(whole[: len(whole) // 2], *CALENDARS, "work", "broken.ics")


def move_away(sway, turn):
    os.rename(sway.path(*CALENDARS, "many"), sway.path(*CALENDARS, "moved"))


def remove(sway, turn):
    shutil.rmtree(sway.path(*CALENDARS, "moved"))


def change_one(sway, turn):
    add_calendar(sway, "other-%d" % (turn % 2))


CHANGES = (add_many, move_away, add_nonsense, remove, change_one)


class Soak(unittest.TestCase):
    def changes_for_long_leave_the_board_and_the_memory_as_they_were(self):
        with SwayInWindows(outputs=1) as sway:
            running = self.begin(sway)
            held = self.change_everything(sway, running)
            self.assert_does_not_grow(held)
            board = self.calm_board(sway)
            self.assertEqual(running.end(), 0, running.output)
            self.assertEqual(complaints(running), [])
            self.assert_is_what_a_new_program_shows(sway, board)

    def begin(self, sway):
        (output,) = sway.outputs()
        self.bare = sway.picture(output).pixel(*ON_THE_BOARD)
        set_defaults(sway, displayMode="all")
        add_calendar(sway)
        running = sway.start(program("orvane"), environment=sanitizer_options())
        wait_for_board(sway, self.bare)
        return running

    def change_everything(self, sway, running):
        """Answers what the program held after each turn."""
        held = []
        limit = time.monotonic() + SECONDS
        while time.monotonic() < limit or len(held) < 2 * len(CHANGES):
            turn = len(held)
            added = sway.plug_in()
            CHANGES[turn % len(CHANGES)](sway, turn)
            wait_for_board(sway, self.bare)
            for output in sway.outputs() if turn % 3 == 2 else (added,):
                sway.unplug(output)
            if not sway.outputs():
                sway.plug_in()
            wait_for_board(sway, self.bare)
            self.assertTrue(running.is_running())
            held.append(held_mb(running))
        return held

    def assert_does_not_grow(self, held):
        """Caches fill for a while; afterwards it is as much at the end as in the middle."""
        third = len(held) // 3
        middle, end = (statistics.median(part) for part in (held[third : 2 * third], held[-third:]))
        self.assertLess(end - middle, ALLOWED_GROWTH_MB, held)

    def calm_board(self, sway):
        """One on which no countdown runs, so that two pictures of it can be compared."""
        shutil.rmtree(sway.path(*CALENDARS))
        sway.write(calendar(event("Under way", starts_in=-3600, hours=3)), *CALENDARS, "now", "events.ics")
        return eventually("the board is calm", lambda: self.picture_that_stays(sway), 40)

    def picture_that_stays(self, sway):
        before = wait_for_board(sway, self.bare)
        time.sleep(2.5)
        return before if wait_for_board(sway, self.bare).differing_box(before) is None else None

    def assert_is_what_a_new_program_shows(self, sway, board):
        eventually("the board is gone", lambda: first_picture(sway).pixel(*ON_THE_BOARD) == self.bare)
        sway.start(program("orvane"), environment=sanitizer_options())
        eventually("a new program shows the same", lambda: show_the_same(first_picture(sway), board))


# What can happen to an output that stays plugged in, and in the end, that nothing happened.
STORM = (
    "scale 2",
    "transform 90",
    "resolution 800x600",
    "disable",
    "position 4000 100",
    "enable",
    "scale 1.25",
    "resolution 3840x2160",
    "disable",
    "enable",
)
CALM = "enable resolution 1280x720 transform normal scale 1"
STORM_CHANGES = 200


class Storm(unittest.TestCase):
    def of_output_changes_leaves_the_boards_where_they_were(self):
        with SwaySession(outputs=2) as sway:
            places = {"HEADLESS-1": "0 0", "HEADLESS-2": "1280 0"}
            self.calm(sway, places)
            bare = sway.picture().pixel(*ON_THE_BOARD)
            set_defaults(sway, displayMode="all")
            add_calendar(sway)
            running = sway.start(program("orvane"), environment=sanitizer_options())
            self.wait_for_boards(sway, places, bare)
            for change in range(STORM_CHANGES):
                output = "HEADLESS-%d" % (1 + change % 2)
                sway.message("output", output, *STORM[change // 2 % len(STORM)].split())
                self.assertTrue(running.is_running(), running.output)
            self.calm(sway, places)
            self.wait_for_boards(sway, places, bare)
            self.assertEqual(running.end(), 0, running.output)
            self.assertEqual(running.output, "")
            for output in places:
                eventually("%s is bare" % output, lambda name=output: self.pixel(sway, name) == bare)

    def calm(self, sway, places):
        for output, place in places.items():
            sway.message("output", output, *CALM.split(), "position", *place.split())
        eventually("both are on", lambda: sorted(sway.outputs()) == sorted(places))

    def wait_for_boards(self, sway, places, bare):
        for output in places:
            eventually("it stands on %s" % output, lambda name=output: self.pixel(sway, name) != bare)

    @staticmethod
    def pixel(sway, output):
        return sway.picture(output).pixel(*ON_THE_BOARD)


if __name__ == "__main__":
    run_tests()
