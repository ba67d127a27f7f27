"""What is particular about KWin: its scales, its order of outputs, outputs that show the same, and
the blur behind glass; and the program on outputs that change."""

import os
import re
import time
import unittest
from collections import Counter

from agenda import add_calendars, set_defaults
from at_rest import grows_not, sleeps
from desktop_session import eventually, own_display, program, run_tests
from kwin_session import BACKGROUND, WINDOW, KWinSession
from protocol_trace import ProtocolTrace
from sway_probe_test import DIGITS, PANEL, PANEL_BOX, shown_time

SIZE = (1920, 1080)
SCALES = (1, 1.25, 1.5, 2)
# What the program shows as long as there are no calendars: two columns of glass.
ON_THE_GLASS = (300, 60)
# How wide the stripes of a striped background are.
STRIPE = 8


def rounded(length, scale):
    return int(length * scale + 0.5)


def shows_panel(picture, scale):
    """Of its own colours alone: edges that are not on pixels would have mixed ones."""
    left, top, right, bottom = (rounded(edge, scale) for edge in PANEL_BOX)
    mixed = [
        (x, y)
        for x in range(left, right)
        for y in (top, bottom - 1)
        if picture.pixel(x, y) != PANEL
    ]
    outside = [(x, y) for x in range(left - 1, right + 1) for y in (top - 1, bottom)]
    outside += [(x, y) for y in range(top - 1, bottom + 1) for x in (left - 1, right)]
    return not mixed and all(picture.pixel(*place) == BACKGROUND for place in outside)


def digit_edges_are_sharp(picture, scale):
    """From left to right through the digits there is the panel's blue or a digit's grey."""
    y = rounded(100, scale)
    seen = [picture.pixel(x, y) for x in range(rounded(DIGITS[0], scale), rounded(DIGITS[-1], scale))]
    return all(color == PANEL or len(set(color)) == 1 for color in seen)


class Scales(unittest.TestCase):
    def begin(self, kwin):
        kwin.background()
        probe = kwin.start(program("tests", "wayland_probe"), environment={"WAYLAND_DEBUG": "client"})
        return probe

    def see(self, kwin, scale):
        def look():
            picture = kwin.picture()
            return picture if shows_panel(picture, scale) else None

        picture = eventually("the board is sharp at scale %s" % scale, look)
        self.assertTrue(digit_edges_are_sharp(picture, scale))
        self.assertIsNotNone(shown_time(picture, scale))

    def assert_buffer_fits(self, probe, scale):
        buffers = re.findall(r"create_buffer\(new id \S+, \d+, (\d+), (\d+),", probe.output)
        views = re.findall(r"set_destination\((\d+), (\d+)\)", probe.output)
        width, height = (int(it) for it in views[-1])
        self.assertEqual((width, height), (360, 120))
        expected = (str(rounded(width, scale)), str(rounded(height, scale)))
        self.assertEqual(buffers[-1], expected)

    def draw_one_pixel_for_each_of_the_output(self):
        for scale in SCALES:
            with self.subTest(scale=scale), KWinSession(scale=scale, size=SIZE) as kwin:
                probe = self.begin(kwin)
                self.see(kwin, scale)
                self.assert_buffer_fits(probe, scale)

    def are_followed_while_running(self):
        with KWinSession(size=SIZE) as kwin:
            probe = self.begin(kwin)
            for scale in (*SCALES, 1):
                kwin.configure("output.Virtual-0.scale.%s" % scale)
                self.see(kwin, scale)
                self.assert_buffer_fits(probe, scale)


class Outputs(unittest.TestCase):
    def begin(self, kwin, environment=None, **settings):
        for output in ("Virtual-0", "Virtual-1"):
            kwin.background(output)
        set_defaults(kwin, **settings)
        return kwin.start(program("orvane"), environment=environment)

    def see(self, kwin, output, seen=True):
        def look():
            picture = kwin.picture(output)
            return picture if (picture.pixel(*ON_THE_GLASS) != BACKGROUND) == seen else None

        what = "the board is on %s" if seen else "there is no board on %s"
        return eventually(what % output, look)

    def are_in_the_order_of_kwin(self):
        with KWinSession(outputs=2) as kwin:
            running = self.begin(kwin, displayMode="main")
            self.see(kwin, "Virtual-0")
            self.see(kwin, "Virtual-1", False)
            kwin.configure("output.Virtual-1.priority.1")
            self.see(kwin, "Virtual-1")
            self.see(kwin, "Virtual-0", False)
            self.assertEqual(running.end(), 0)
            self.assertEqual(running.output, "")

    def that_show_the_same_have_one_board(self):
        with KWinSession(outputs=2) as kwin:
            running = self.begin(kwin, displayMode="all")
            once = self.see(kwin, "Virtual-0").pixel(*ON_THE_GLASS)
            self.see(kwin, "Virtual-1")
            kwin.configure("output.Virtual-1.position.0,0")
            for output in ("Virtual-0", "Virtual-1"):
                look = lambda name=output: kwin.picture(name).pixel(*ON_THE_GLASS) == once
                eventually("the glass of %s is not doubled" % output, look, 40)
            kwin.configure("output.Virtual-1.position.1280,0")
            self.see(kwin, "Virtual-0")
            self.see(kwin, "Virtual-1")
            self.assertEqual(running.end(), 0)

    def come_go_and_turn(self):
        with KWinSession(outputs=2) as kwin:
            running = self.begin(kwin, displayMode="all")
            self.see(kwin, "Virtual-1")
            kwin.configure("output.Virtual-1.disable")
            self.see(kwin, "Virtual-0")
            kwin.configure("output.Virtual-1.enable")
            kwin.background("Virtual-1")
            self.see(kwin, "Virtual-1")
            kwin.configure("output.Virtual-1.rotation.right")

            def is_portrait():
                picture = kwin.picture("Virtual-1")
                upright = (picture.width, picture.height) == (720, 1280)
                return upright and picture.pixel(*ON_THE_GLASS) not in (BACKGROUND, (0, 0, 0))

            eventually("the board stands on a portrait screen", is_portrait)
            self.assertEqual(running.end(), 0)
            self.assertEqual(running.output, "")

    def have_nothing_drawn_for_them_while_they_are_off(self):
        with KWinSession(outputs=2) as kwin:
            add_calendars(kwin)
            running = self.begin(kwin, {"WAYLAND_DEBUG": "client"}, displayMode="all")
            self.see(kwin, "Virtual-1")
            drawn = lambda: self.surfaces_drawn(running)
            eventually("both are drawn", lambda: drawn() == 2, 60)
            kwin.configure("output.Virtual-1.disable")
            eventually("one is drawn", lambda: drawn() == 1, 60)
            self.assertEqual(drawn(), 1)
            kwin.configure("output.Virtual-1.enable")
            eventually("both are drawn again", lambda: drawn() == 2, 60)
            self.see(kwin, "Virtual-1")
            self.assertEqual(running.end(), 0)

    @staticmethod
    def surfaces_drawn(running):
        """How many get a picture while one of them gets three."""
        before = len(running.output)
        drawn = lambda: re.findall(r"(wl_surface@\d+)\.attach", running.output[before:])
        eventually("something is drawn", lambda: max(Counter(drawn()).values(), default=0) >= 3, 60)
        return len(set(drawn()))


class OutOfSight(unittest.TestCase):
    """Behind a window that fills the output and lets nothing through: nothing is drawn, and the
    program sleeps. What is seen again is right at once."""

    def behind_windows_that_are_drawn_in_every_frame_or_never(self):
        with KWinSession() as kwin:
            add_calendars(kwin)
            kwin.background()
            watched = {"WAYLAND_DEBUG": "client"}
            running = kwin.start(kwin.slim(program("orvane")), environment=watched)
            eventually("it is drawn", lambda: len(self.frames(running)) > 3, 60)
            for kind in ("film", "maximized"):
                self.rests_behind(kwin, running, kind)
            self.assertEqual(running.end(), 0)

    def rests_behind(self, kwin, running, kind):
        drawn = lambda: len(self.frames(running))
        window = kwin.neighbour(kind, "cover", WINDOW)
        covered = lambda: kwin.picture().count(WINDOW) == 1280 * 720
        eventually("the window covers all", covered)
        eventually("it is drawn no more", lambda: grows_not(drawn), 60)
        eventually("it sleeps", lambda: sleeps(running), 60)
        self.assertTrue(covered())
        before, asked = drawn(), time.time()
        window.end()
        eventually("it is drawn again", lambda: drawn() > before)
        self.assertLess(self.frames(running)[before].time - asked, 1)
        eventually("it goes on", lambda: drawn() > before + 3)

    @staticmethod
    def frames(running):
        """Of all surfaces that the board ever had, as the program itself sent them."""
        lines = (line.replace(" -> ", "") for line in running.lines)
        return sum(ProtocolTrace(lines, "org.orvane.Orvane").surfaces, [])


class Loss(unittest.TestCase):
    """KWin is killed and started again; the board waits for it."""

    def begin(self, kwin, **environment):
        kwin.background()
        running = kwin.start(kwin.slim(program("orvane")), environment=environment)
        self.see_board(kwin)
        return running

    def see_board(self, kwin):
        seen = lambda: kwin.picture().pixel(*ON_THE_GLASS) not in (BACKGROUND, (0, 0, 0))
        eventually("the board is seen", seen, 60)

    def return_to(self, kwin):
        kwin.start_kwin()
        kwin.background()
        self.see_board(kwin)

    def is_survived(self):
        with KWinSession() as kwin:
            running = self.begin(kwin)
            for _ in range(2):
                kwin.kill_kwin()
                self.return_to(kwin)
            self.assertEqual(running.output, "")
            self.assertEqual(running.end(), 0)

    def for_a_while_does_not_move_the_board_to_an_x_server(self):
        """Which stands all along, as an Xwayland may that comes back before its compositor."""
        with KWinSession() as kwin:
            display = own_display()
            kwin.start("Xvfb", display, "-nolisten", "tcp", "-noreset")
            socket = "/tmp/.X11-unix/X" + display[1:]
            eventually("there is an X server", lambda: os.path.exists(socket))
            running = self.begin(kwin, DISPLAY=display)
            kwin.kill_kwin()
            # The first attempts are over by then, and others are to come.
            time.sleep(5)
            self.return_to(kwin)
            self.assertEqual(running.output, "")
            self.assertEqual(running.end(), 0)


class Blur(unittest.TestCase):
    # Where the left column's upper card is free of text, and beside all cards.
    WITHIN = (80, 47, 380, 55)
    BESIDE = (1000, 500, 1200, 510)

    def picture_of_glass(self, kwin, **settings):
        kwin.neighbour("stripes", "Virtual-0", BACKGROUND)
        set_defaults(kwin, **settings)
        before = kwin.picture()
        running = kwin.start(program("orvane"))
        eventually("the board is there", lambda: kwin.picture().differing_box(before), 40)
        return running

    def softens_what_lies_behind_the_glass_alone(self):
        with KWinSession(blur=True) as kwin:
            self.picture_of_glass(kwin, glassOpacity=0.4)
            bare = kwin.picture().contrast(self.BESIDE, STRIPE)
            self.assertGreater(bare, 200)
            soft = lambda: kwin.picture().contrast(self.WITHIN, STRIPE) < bare / 4
            eventually("the stripes behind the glass are blurred", soft, 40)
            self.assertEqual(kwin.picture().contrast(self.BESIDE, STRIPE), bare)
            kwin.keep("kwin-blur")

    def is_off_where_there_is_no_glass(self):
        with KWinSession(blur=True) as kwin:
            self.picture_of_glass(kwin, glassOpacity=0)
            bare = kwin.picture().contrast(self.BESIDE, STRIPE)
            self.assertGreater(kwin.picture().contrast(self.WITHIN, STRIPE), 0.9 * bare)

    def is_off_where_kwin_does_not_blur(self):
        with KWinSession() as kwin:
            running = self.picture_of_glass(kwin, glassOpacity=0.4)
            bare = kwin.picture().contrast(self.BESIDE, STRIPE)
            self.assertGreater(kwin.picture().contrast(self.WITHIN, STRIPE), bare / 3)
            self.assertEqual(running.end(), 0)
            self.assertEqual(running.output, "")


if __name__ == "__main__":
    run_tests()
