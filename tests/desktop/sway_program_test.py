"""The program itself under a real sway, with calendars of its user."""

import os
import statistics
import time
import unittest

from agenda import add_calendar, screen_number, set_defaults
from at_rest import sleeps
from desktop_session import eventually, program, run_tests
from protocol_trace import ProtocolTrace
from sway_session import BACKGROUND, WINDOW, SwayInWindows, SwaySession

NAME_SPACE = "org.orvane.Orvane"
# Inside the left column's upper card, at 1280 × 720 points.
ON_THE_BOARD = (150, 100)
BESIDE_THE_BOARD = (1150, 650)


def wait_for_board(session, output, scale=1):
    """A picture with the board; the output has a neighbour's plain background."""
    x, y = (int(value * scale) for value in ON_THE_BOARD)

    def look():
        picture = session.picture(output)
        return None if picture.pixel(x, y) == BACKGROUND else picture

    return eventually("the board stands on %s" % output, look)


def of_all_threads(running, file, read):
    """The sum of what `read` finds in that file of each thread."""
    folder = "/proc/%d/task" % running.process.pid
    total = 0
    for thread in os.listdir(folder):
        with open(os.path.join(folder, thread, file), encoding="ascii") as text:
            total += read(text.read())
    return total


def each_second(count, seconds):
    """By how much it grows each second while that time passes."""
    before, started = count(), time.monotonic()
    time.sleep(seconds)
    return (count() - before) / (time.monotonic() - started)


def busy_share(running, seconds):
    """The part of a processor that the program takes while that time passes."""
    return each_second(
        lambda: of_all_threads(running, "schedstat", lambda text: int(text.split()[0])) / 1e9, seconds
    )


def wake_ups(running, seconds):
    """How often each second a thread of the program gave its processor away to wait."""

    def switches(status):
        return next(int(line.split()[1]) for line in status.splitlines() if line.startswith("voluntary"))

    return each_second(lambda: of_all_threads(running, "status", switches), seconds)


def is_bare(session, output):
    picture = session.picture(output)
    return picture.count(BACKGROUND) == picture.width * picture.height


def begin(session, outputs=("HEADLESS-1", "HEADLESS-2")):
    """Backgrounds on all outputs, none of them with the board; answers the running program."""
    neighbours = [session.background(output) for output in outputs]
    for output in outputs:
        eventually("%s is plain" % output, lambda name=output: is_bare(session, name))
    running = session.start(program("orvane"))
    running.neighbours = neighbours
    return running


class Program(unittest.TestCase):
    def assert_outside_of_board_is_bare(self, picture, scale):
        # What is left and right of the columns, above and below them, is the neighbour's.
        right = int(1060 * scale)
        outside = picture.count(BACKGROUND, left=right)
        self.assertEqual(outside, (picture.width - right) * picture.height)
        self.assertEqual(picture.count(BACKGROUND, bottom=int(20 * scale)), picture.width * int(20 * scale))

    def stands_on_the_main_screen(self):
        with SwaySession() as sway:
            add_calendar(sway)
            begin(sway)
            picture = wait_for_board(sway, "HEADLESS-1")
            self.assert_outside_of_board_is_bare(picture, 1)
            self.assertTrue(is_bare(sway, "HEADLESS-2"))

    def stands_on_every_screen(self):
        with SwaySession() as sway:
            add_calendar(sway)
            set_defaults(sway, displayMode="all")
            begin(sway)
            self.assert_outside_of_board_is_bare(wait_for_board(sway, "HEADLESS-1"), 1)
            self.assert_outside_of_board_is_bare(wait_for_board(sway, "HEADLESS-2", 1.5), 1.5)

    def stands_on_the_selected_screen(self):
        with SwaySession() as sway:
            number = str(screen_number("HEADLESS-2", "headless", "headless"))
            set_defaults(sway, displayMode="selected", selectedDisplayID=number)
            begin(sway)
            wait_for_board(sway, "HEADLESS-2", 1.5)
            self.assertTrue(is_bare(sway, "HEADLESS-1"))

    def sleeps_while_there_are_no_screens_and_comes_back(self):
        with SwayInWindows(outputs=1) as sway:
            add_calendar(sway)
            running = begin(sway, ["WL-1"])
            wait_for_board(sway, "WL-1")
            sway.unplug("WL-1")
            self.assertEqual(sway.outputs(), [])
            eventually("the program sleeps", lambda: sleeps(running), 60)
            added = sway.plug_in()
            sway.background(added)
            board = wait_for_board(sway, added)
            eventually("it ticks", lambda: sway.picture(added).differing_box(board) is not None)
            self.assertEqual(running.output, "")
            self.assertEqual(running.end(), 0)

    def stands_on_the_main_screen_while_the_selected_one_is_away(self):
        with SwayInWindows() as sway:
            number = str(screen_number("WL-2", "wayland", "wayland"))
            set_defaults(sway, displayMode="selected", selectedDisplayID=number)
            running = begin(sway, ("WL-1", "WL-2"))
            wait_for_board(sway, "WL-2", 2)
            self.assertTrue(is_bare(sway, "WL-1"))
            sway.unplug("WL-2")
            wait_for_board(sway, "WL-1")
            self.assertEqual(running.output, "")
            self.assertEqual(running.end(), 0)

    def clicks_go_through(self):
        with SwaySession(outputs=1) as sway:
            running = begin(sway, ("HEADLESS-1",))
            wait_for_board(sway, "HEADLESS-1")
            sway.click(*ON_THE_BOARD)
            background = running.neighbours[0]
            eventually("the click arrives below", lambda: "released" in background.lines)
            self.assertIn("pressed", background.lines)

    def windows_cover_it(self):
        with SwaySession(outputs=1) as sway:
            begin(sway, ("HEADLESS-1",))
            wait_for_board(sway, "HEADLESS-1")
            sway.window()
            all_pixels = 1280 * 720
            eventually("the window covers all", lambda: sway.picture().count(WINDOW) == all_pixels)

    def leaves_nothing(self):
        with SwaySession() as sway:
            add_calendar(sway)
            set_defaults(sway, displayMode="all")
            running = begin(sway)
            wait_for_board(sway, "HEADLESS-1")
            wait_for_board(sway, "HEADLESS-2", 1.5)
            self.assertEqual(running.end(), 0)
            self.assertEqual(running.output, "")
            self.assertTrue(is_bare(sway, "HEADLESS-1"))
            self.assertTrue(is_bare(sway, "HEADLESS-2"))
            names = [os.path.basename(line.split()[0]) for line in sway.processes() if line]
            self.assertIn("sway", names)
            self.assertEqual([name for name in names if name.startswith("orvane")], [])


class ProgramSeconds(unittest.TestCase):
    LENGTH = 8

    def frames(self, sway):
        return ProtocolTrace(sway.sway.lines, NAME_SPACE).surfaces

    def start_ticking(self, sway, **defaults):
        """Answers the instant from which on the board only ticks."""
        add_calendar(sway)
        set_defaults(sway, **defaults)
        sway.start(program("orvane"))
        eventually("it is drawn", lambda: any(self.frames(sway)))
        # By then the calendars have been read and shown.
        return time.time() + 3

    def ticks(self, sway, since):
        def drawn():
            surfaces = [[f for f in frames if f.time > since] for frames in self.frames(sway)]
            return surfaces if surfaces and min(map(len, surfaces)) > self.LENGTH else None

        return eventually("%d seconds are drawn" % self.LENGTH, drawn, self.LENGTH + 30)

    def never_skip_nor_repeat(self):
        with SwaySession(trace=True) as sway:
            surfaces = self.ticks(sway, self.start_ticking(sway, displayMode="all"))
            self.assertEqual(len(surfaces), 2)
            for frames in surfaces:
                seconds = [int(frame.time) for frame in frames]
                self.assertEqual(seconds, list(range(seconds[0], seconds[0] + len(seconds))))

    def are_drawn_on_the_second(self):
        with SwaySession(outputs=1, trace=True) as sway:
            (frames,) = self.ticks(sway, self.start_ticking(sway))
            self.assertLess(statistics.median(frame.time % 1 for frame in frames), 0.03)

    def are_slept_through(self):
        with SwaySession(outputs=1, trace=True) as sway:
            add_calendar(sway)
            running = sway.start(program("orvane"))
            eventually("it is drawn", lambda: any(self.frames(sway)))
            eventually("it is at rest", lambda: busy_share(running, seconds=3) < 0.1, 40)

    def wake_it_once_each(self):
        """Also with two boards, and again after a screen has changed."""
        with SwaySession(outputs=2) as sway:
            set_defaults(sway, displayMode="all")
            add_calendar(sway)
            running = sway.start(program("orvane"))
            eventually("it wakes once a second", lambda: wake_ups(running, 5) < 1.5, 90)
            sway.message("output", sway.outputs()[1], "scale", "2")
            eventually("it wakes once a second again", lambda: wake_ups(running, 5) < 1.5, 90)

    def change_a_few_thousand_pixels(self):
        with SwaySession(outputs=1, trace=True) as sway:
            (frames,) = self.ticks(sway, self.start_ticking(sway))
            areas = [frame.changed_pixels for frame in frames]
            self.assertLess(statistics.median(areas), 6000)
            # Six digits and a pill or two, when a minute turns; the buffer holds far more.
            self.assertLess(max(areas), 40000)
            width, height = frames[-1].buffer
            self.assertLess(width * height, 1280 * 720 // 2)

    def show_a_new_calendar_within_two(self):
        with SwaySession(outputs=1, trace=True) as sway:
            sway.start(program("orvane"))
            eventually("it is drawn", lambda: any(self.frames(sway)))
            # The first refresh is over when nothing has been drawn for a while.
            eventually("it is quiet", lambda: time.time() - self.frames(sway)[-1][-1].time > 3, 40)
            copied = time.time()
            add_calendar(sway)

            def ticking():
                frames = [frame for frame in self.frames(sway)[-1] if frame.time > copied]
                return frames if len(frames) > 2 else None

            first = eventually("the countdown is drawn", ticking)[0]
            self.assertGreater(first.changed_pixels, 20000)
            self.assertLess(first.time - copied, 2)


if __name__ == "__main__":
    run_tests()
