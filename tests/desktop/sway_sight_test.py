"""The program on outputs of every kind under a real sway, and on outputs where nobody can see it."""

import json
import time
import unittest

from agenda import add_calendar, set_defaults
from at_rest import grows_not, sleeps
from desktop_session import eventually, program, run_tests
from journey import Journey
from protocol_trace import ProtocolTrace
from sway_program_test import ON_THE_BOARD, wait_for_board
from sway_session import BACKGROUND, SwaySession

NAME_SPACE = "org.orvane.Orvane"
MAIN = "HEADLESS-1"


def begin(session, **settings):
    """Answers the program, with its board and its calendars on the main output."""
    add_calendar(session)
    set_defaults(session, **settings)
    session.background()
    running = session.start(program("orvane"))
    wait_for_board(session, MAIN)
    return running


class OutOfSight(unittest.TestCase):
    """Nothing is drawn, and no buffer is touched; what is seen again is right at once."""

    def frames(self, sway):
        """Of all surfaces that the board ever had."""
        return sum(ProtocolTrace(sway.sway.lines, NAME_SPACE).surfaces, [])

    def assert_rests_until(self, sway, running, shown_again):
        eventually("it is drawn no more", lambda: grows_not(lambda: len(self.frames(sway))), 40)
        eventually("it sleeps", lambda: sleeps(running), 60)
        before = len(self.frames(sway))
        asked = time.time()
        shown_again()
        late = lambda: self.frames(sway)[before:]
        first = eventually("it is drawn again", late)[0]
        # That is before the next second's beat, at times, and never waits for the one after it.
        self.assertLess(first.time - asked, 1)
        eventually("it goes on", lambda: len(late()) > 3)

    def behind_a_window_that_fills_the_output(self):
        with SwaySession(outputs=1, trace=True) as sway:
            running = begin(sway)
            sway.window()
            sway.message("fullscreen", "enable")
            self.assert_rests_until(sway, running, lambda: sway.message("fullscreen", "disable"))
            self.assertEqual(running.output, "")

    def behind_the_lock_screen(self):
        with SwaySession(outputs=1, trace=True) as sway:
            running = begin(sway)
            lock = sway.start("swaylock", "--color", "202020")
            x, y = ON_THE_BOARD
            hidden = lambda: sway.picture().pixel(x, y) == (0x20, 0x20, 0x20)
            eventually("it is locked", hidden)
            self.assert_rests_until(sway, running, lock.end)
            self.assertEqual(running.output, "")


class Modes(unittest.TestCase):
    """The board comes through each, and stands as before when it is over."""

    def come_through(self, change, back, check):
        with SwaySession(outputs=1) as sway:
            running = begin(sway)
            sway.message("output", MAIN, *change.split())
            check(sway, running)
            sway.message("output", MAIN, *back.split())
            eventually("the output is as before", lambda: self.is_answered(sway, 1280, 720), 60)
            wait_for_board(sway, MAIN)
            self.assertEqual(running.output, "")
            self.assertEqual(running.end(), 0)

    @staticmethod
    def size(sway):
        picture = sway.picture(MAIN)
        return (picture.width, picture.height)

    def that_stand_upright(self):
        def check(sway, _):
            eventually("it is upright", lambda: self.size(sway) == (720, 1280))
            wait_for_board(sway, MAIN)

        self.come_through("transform 90", "transform normal", check)

    def of_one_pixel(self):
        def check(sway, running):
            eventually("it is tiny", lambda: self.size(sway) == (1, 1))
            # Some beats of it.
            time.sleep(2.5)
            self.assertTrue(running.is_running())

        self.come_through("mode --custom 1x1", "mode --custom 1280x720", check)

    def of_sixteen_thousand_pixels(self):
        def check(sway, _):
            x, y = ON_THE_BOARD
            # Sway takes long over so many, and answers nobody meanwhile.
            eventually("the mode is set", lambda: self.is_answered(sway, 15360, 8640), 60)
            corner = lambda: sway.part(0, 0, 600, 300).pixel(x, y)
            eventually("the board stands in its corner", lambda: corner() != BACKGROUND, 40)
            elsewhere = sway.part(15000, 8300, 300, 300)
            self.assertEqual(elsewhere.count(elsewhere.pixel(0, 0)), 300 * 300)

        self.come_through("mode --custom 15360x8640", "mode --custom 1280x720", check)

    @staticmethod
    def is_answered(sway, width, height):
        try:
            (told,) = json.loads(sway.ask("swaymsg", "-r", "-t", "get_outputs"))
        except AssertionError:
            return False
        return told["rect"]["width"] == width and told["rect"]["height"] == height


class Zone(unittest.TestCase):
    # Where the board says which day it is.
    DATE = (40, 50, 340, 100)
    # More than a day apart.
    LAST, FIRST = "Etc/GMT+11", "Etc/GMT-14"

    def date(self, sway):
        return sway.picture(MAIN).cropped(*self.DATE)

    def that_is_another_one_shows_its_day_at_once(self):
        with SwaySession(outputs=1) as sway:
            add_calendar(sway)
            sway.background()
            journey = Journey(sway, self.LAST)
            command = ("env", "-u", "TZ", sway.within_reach(program("orvane")))
            running = sway.start(*command, around=journey.around)
            wait_for_board(sway, MAIN)
            there = eventually("the board says the day", lambda: self.settled(sway), 60)
            for zone in (self.FIRST, self.LAST) * 2:
                journey.go_to(zone)
                is_back = zone == self.LAST
                shows = lambda: (self.date(sway) == there) == is_back
                eventually("the board says the day of %s" % zone, shows)
            self.assertEqual((running.end(), running.output), (0, ""))

    def settled(self, sway):
        """The same for some seconds: it is no countdown that is looked at."""
        before = self.date(sway)
        time.sleep(2.5)
        now = self.date(sway)
        return now if now == before and now.count((255, 255, 255)) > 100 else None


class Scales(unittest.TestCase):
    def between_one_and_two_are_drawn_as_two(self):
        """Which is what this sway announces for them."""
        with SwaySession(outputs=1, trace=True) as sway:
            # So large that the board is no narrower where the output has fewer points.
            sway.message("output", MAIN, "resolution", "2560x1440")
            eventually("the output is large", lambda: sway.picture(MAIN).width == 2560)
            begin(sway)
            before = eventually("there is a picture", lambda: self.last_buffer(sway))
            sway.message("output", MAIN, "scale", "1.25")
            # The calendars may make the board taller meanwhile, but not wider.
            is_twice_as_wide = lambda: self.last_buffer(sway)[0] == 2 * before[0]
            eventually("it is drawn at scale 2", is_twice_as_wide)
            x, y = (int(1.25 * at) for at in ON_THE_BOARD)
            self.assertNotEqual(sway.picture(MAIN).pixel(x, y), BACKGROUND)

    @staticmethod
    def last_buffer(sway):
        """None where there is none yet."""
        surfaces = ProtocolTrace(sway.sway.lines, NAME_SPACE).surfaces
        return surfaces[-1][-1].buffer if surfaces and surfaces[-1] else None


if __name__ == "__main__":
    run_tests()
