"""The program on monitors of an X server that are renamed, mirrored, stand upright, are tiny or
huge, or are none for a while."""

import re
import time
import unittest

from agenda import screen_number
from desktop_session import eventually, program, run_tests
from row import FIRST_BACKGROUND
from sway_soak_test import held_by
from x11_row import X11Row

FEWEST_PIXELS = 2000
# In seconds of the processor's time, while nobody sees the board.
MOST_AT_WORK = 0.75
# By sanitizers, too; without them it is a tenth of it.
MOST_HELD_MB = 400
ON_A_CARD = (300, 60)
# The one that has the server's only output.
FIRST = "DP-1"
LEFT, RIGHT = (0, 0, 1280, 720), (1280, 0, 1280, 720)
WITHIN_LEFT = (640, 300, 640, 420)
UPRIGHT = (0, 0, 720, 1280)


class TwoMonitors(X11Row):
    """On a root window that is high enough for one that stands upright."""

    size = (1280, 1280)

    def set_monitors(self):
        self.plug_in(FIRST, LEFT)
        self.plug_in("DP-2", RIGHT)

    def plug_in(self, name, place):
        left, top, width, height = place
        geometry = "%d/%dx%d/%d+%d+%d" % (width, 300, height, 200, left, top)
        self.ask("xrandr", "--setmonitor", name, geometry, "screen" if name == FIRST else "none")

    def unplug(self, name):
        self.ask("xrandr", "--delmonitor", name)

    def change(self, name, place):
        self.unplug(name)
        self.plug_in(name, place)

    def drawn_pixels(self, place):
        left, top, width, height = place
        part = self.whole_picture().cropped(left, top, width, height)
        return width * height - part.count(FIRST_BACKGROUND)

    def stands_at(self, *places):
        """Whether there is a board at each of these places, and nothing anywhere else."""
        drawn = [self.drawn_pixels(place) for place in places]
        everywhere = self.drawn_pixels((0, 0, 2560, 1280))
        return min(drawn) >= FEWEST_PIXELS and everywhere == sum(drawn)


class OneMonitor(X11Row):
    monitors = ("screen",)

    def turn_off(self):
        self.ask("xrandr", "--fb", "%dx%d" % self.size, "--output", *self.monitors, "--off")

    def turn_on(self):
        self.ask("xrandr", "--output", *self.monitors, "--mode", "%dx%d" % self.size)

    def count(self):
        return int(self.ask("xrandr", "--listmonitors").split()[1])

    def drawn_pixels(self):
        return self.size[0] * self.size[1] - self.whole_picture().count(FIRST_BACKGROUND)


class Unpainted(X11Row):
    """Nobody paints its root window, which stays black."""

    monitors = ("screen",)

    def __init__(self, *size):
        super().__init__()
        self.size = size

    def set_root_picture(self, color):
        """It would be as large as the screen."""


class Monitors(unittest.TestCase):
    def begin(self, session, *places, **settings):
        session.prepare(**settings)
        running = session.start_board()
        self.see_board(session, *places)
        return running

    def see_board(self, session, *places):
        eventually("it stands there, and there alone", lambda: session.stands_at(*places), 60)

    def end(self, running):
        self.assertEqual((running.end(), running.output), (0, ""))

    def that_are_renamed_are_others(self):
        """The selected one is away while it has another name."""
        with TwoMonitors() as session:
            selected = {"displayMode": "selected", "selectedDisplayID": str(screen_number("DP-2"))}
            running = self.begin(session, RIGHT, **selected)
            for _ in range(2):
                session.unplug("DP-2")
                session.plug_in("HDMI-1", RIGHT)
                self.see_board(session, LEFT)
                session.unplug("HDMI-1")
                session.plug_in("DP-2", RIGHT)
                self.see_board(session, RIGHT)
            self.end(running)

    def that_are_renamed_keep_their_boards(self):
        with TwoMonitors() as session:
            running = self.begin(session, LEFT, RIGHT, displayMode="all")
            session.unplug("DP-2")
            session.plug_in("HDMI-1", RIGHT)
            self.see_board(session, LEFT, RIGHT)
            session.unplug("HDMI-1")
            self.see_board(session, LEFT)
            self.end(running)

    def that_show_the_same_have_one_board(self):
        """Also where they do not show all of it; else a board would stand on a board."""
        with TwoMonitors() as session:
            running = self.begin(session, LEFT, RIGHT, displayMode="all")
            boards = lambda: len(session.popups())
            for place in (WITHIN_LEFT, LEFT):
                session.change("DP-2", place)
                eventually("there is one board", lambda: boards() == 1)
                self.see_board(session, LEFT)
                session.change("DP-2", RIGHT)
                eventually("there are two boards", lambda: boards() == 2)
                self.see_board(session, LEFT, RIGHT)
            self.end(running)

    def that_stand_upright(self):
        with TwoMonitors() as session:
            running = self.begin(session, LEFT, displayMode="main")
            session.change(FIRST, UPRIGHT)
            self.see_board(session, UPRIGHT)
            session.change(FIRST, LEFT)
            self.see_board(session, LEFT)
            self.end(running)

    def that_are_none_for_a_while(self):
        """Nothing is drawn meanwhile, and at once what is right then."""
        with OneMonitor() as session:
            session.prepare(displayMode="all")
            running = session.start_board()
            eventually("it stands", lambda: session.drawn_pixels() >= FEWEST_PIXELS)
            eventually("it counts", lambda: not self.rests(session), 60)
            session.turn_off()
            self.assertEqual(session.count(), 0)
            worked = running.seconds_at_work()
            eventually("it is drawn no more", lambda: self.rests(session))
            self.assertLess(running.seconds_at_work() - worked, MOST_AT_WORK)
            hidden = session.whole_picture()
            session.turn_on()
            eventually("it is drawn again", lambda: session.whole_picture().differing_box(hidden))
            self.assertGreaterEqual(session.drawn_pixels(), FEWEST_PIXELS)
            self.assertFalse(self.rests(session))
            self.end(running)

    @staticmethod
    def rests(session):
        """Whether the board says the same for some seconds, though it counts them."""
        before = session.whole_picture()
        time.sleep(2.5)
        return not session.whole_picture().differing_box(before)

    def of_one_pixel(self):
        with TwoMonitors() as session:
            running = self.begin(session, LEFT, RIGHT, displayMode="all")
            session.change(FIRST, (0, 0, 1, 1))
            others = lambda: session.drawn_pixels((0, 1, 1280, 1279))
            eventually("nothing is left of its board", lambda: others() == 0)
            # Some beats of it.
            time.sleep(2.5)
            self.assertTrue(running.is_running())
            self.assertEqual(others(), 0)
            self.assertGreaterEqual(session.drawn_pixels(RIGHT), FEWEST_PIXELS)
            session.change(FIRST, LEFT)
            self.see_board(session, LEFT, RIGHT)
            self.end(running)


    def of_one_pixel_alone(self):
        with Unpainted(1, 1) as session:
            session.prepare(displayMode="all")
            running = session.start_board()
            eventually("it has asked for the screens", lambda: running.seconds_at_work() > 0)
            # Some beats of it.
            time.sleep(2.5)
            self.assertTrue(running.is_running())
            self.end(running)

    def of_sixteen_thousand_pixels(self):
        """A picture of the whole screen would take more than half a gigabyte."""
        with Unpainted(15360, 8640) as session:
            session.prepare(displayMode="all")
            running = session.start_board()
            client = program("tests", "x11_client")
            seen = session.start(client, "await", *map(str, ON_A_CARD), "000000")
            eventually("the board stands in its corner", lambda: "ready" in seen.lines, 60)
            (board,) = eventually("it has its window", session.popups)
            width, height = (int(it) for it in re.findall(r"(?:Width|Height): (\d+)", session.about(board)))
            self.assertLess(width, 2000)
            self.assertLess(height, 1500)
            self.assertLess(held_by(running.process.pid), MOST_HELD_MB)
            self.end(running)


if __name__ == "__main__":
    run_tests()
