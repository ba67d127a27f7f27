"""The board of wayland_probe under a real sway: where it stands, what it lets through, how often it
is drawn, and what is left of it."""

import signal
import statistics
import time
import unittest

from desktop_session import eventually, program, run_tests
from protocol_trace import ProtocolTrace
from sway_session import BACKGROUND, WINDOW, SwayInWindows, SwaySession

NAME_SPACE = "org.orvane.Orvane"
PANEL = (26, 77, 230)
# In points: the panel, and where the digits of HH:MM:SS begin.
PANEL_BOX = (60, 40, 420, 160)
DIGITS = (100, 130, 185, 215, 270, 300)
BLACK = (0, 0, 0)


def probe(session, *arguments):
    return session.start(program("tests", "wayland_probe"), *arguments)


def panel_box(scale=1):
    return tuple(int(edge * scale) for edge in PANEL_BOX)


def shows_board(picture, scale=1):
    left, top, right, bottom = panel_box(scale)
    inside = ((left, top), (right - 1, top), (left, bottom - 1), (right - 1, bottom - 1))
    return all(picture.pixel(x, y) == PANEL for x, y in inside)


def shown_time(picture, scale=1):
    """The seconds of the day that the digits say, or None where they are no digits."""
    values = []
    for left in DIGITS:
        red, green, blue = picture.pixel(int((left + 15) * scale), int(100 * scale))
        if not red == green == blue or (red - 20) % 20 or not 0 <= (red - 20) // 20 <= 9:
            return None
        values.append((red - 20) // 20)
    hours, minutes, seconds = (10 * values[i] + values[i + 1] for i in (0, 2, 4))
    return 3600 * hours + 60 * minutes + seconds


def seconds_of_day():
    return int(time.time()) % 86400


def assert_shows_now(test, session, output="HEADLESS-1", scale=1):
    """The digits are those of a second in which the picture was being taken, or of the one before,
    which may still have been on its way to the screen."""
    earliest = seconds_of_day() - 1
    picture = session.picture(output)
    test.assertIn(shown_time(picture, scale), range(earliest, seconds_of_day() + 1))


def wait_for_board(session, output="HEADLESS-1", scale=1):
    def look():
        picture = session.picture(output)
        return picture if shows_board(picture, scale) else None

    return eventually("the board stands on %s" % output, look)


class Standing(unittest.TestCase):
    def on_the_main_screen_alone(self):
        with SwaySession() as sway:
            main, other = sway.picture("HEADLESS-1"), sway.picture("HEADLESS-2")
            probe(sway)
            self.assertEqual(wait_for_board(sway).differing_box(main), panel_box())
            self.assertEqual(sway.picture("HEADLESS-2"), other)

    def on_every_screen(self):
        with SwaySession() as sway:
            bare = {name: sway.picture(name) for name in ("HEADLESS-1", "HEADLESS-2")}
            probe(sway, "--everywhere")
            for name, scale in (("HEADLESS-1", 1), ("HEADLESS-2", 1.5)):
                self.assertEqual(
                    wait_for_board(sway, name, scale).differing_box(bare[name]), panel_box(scale)
                )

    def moves_with_the_main_screen(self):
        with SwaySession() as sway:
            probe(sway)
            wait_for_board(sway)
            bare = sway.picture("HEADLESS-2")
            sway.message("output HEADLESS-1 position 4000 0, output HEADLESS-2 position 0 0")
            wait_for_board(sway, "HEADLESS-2", 1.5)
            eventually("the first is bare", lambda: sway.picture("HEADLESS-1").count(PANEL) == 0)
            self.assertEqual(bare.count(PANEL), 0)

    def follows_a_changed_scale(self):
        with SwaySession(outputs=1) as sway:
            probe(sway)
            wait_for_board(sway)
            sway.message("output HEADLESS-1 scale 2")
            picture = wait_for_board(sway, scale=2)
            self.assertGreater(picture.count(PANEL, *panel_box(2)), 100000)
            self.assertIsNotNone(shown_time(picture, 2))

    def covers_only_what_is_drawn(self):
        with SwaySession(trace=True) as sway:
            probe(sway, "--everywhere")
            wait_for_board(sway)
            wait_for_board(sway, "HEADLESS-2", 1.5)
            surfaces = ProtocolTrace(sway.sway.lines, NAME_SPACE).surfaces
            self.assertEqual(len(surfaces), 2)
            buffers = {frame.buffer for frames in surfaces for frame in frames}
            # sway announces a scale of 1.5 as 2.
            self.assertEqual(buffers, {(360, 120), (720, 240)})


class Neighbours(unittest.TestCase):
    """What lies below and above the board. Each claim is also tried on a board that breaks it."""

    def presses_below(self, *arguments):
        with SwaySession(outputs=1) as sway:
            background = sway.background()
            probe(sway, *arguments)
            wait_for_board(sway)
            sway.click(600, 400)
            eventually("a click beside the board arrives", lambda: "released" in background.lines)
            self.assertEqual(background.lines.count("pressed"), 1)
            sway.click(240, 100)
            # Another button, by which it is known that all that came before it has arrived.
            sway.click(600, 400, "button3")
            later = lambda: "released, another button" in background.lines
            eventually("the later click beside the board arrives", later)
            return background.lines.count("pressed") - 1

    def clicks_go_through(self):
        self.assertEqual(self.presses_below(), 1)

    def clicks_do_not_go_through_a_board_that_takes_them(self):
        self.assertEqual(self.presses_below("--takes-clicks"), 0)

    def panel_pixels_under_a_window(self, *arguments):
        with SwaySession(outputs=1) as sway:
            probe(sway, *arguments)
            wait_for_board(sway)
            sway.window()

            def look():
                picture = sway.picture()
                return picture if picture.pixel(1000, 600) == WINDOW else None

            return eventually("the window stands there", look).count(PANEL)

    def windows_cover_it(self):
        self.assertEqual(self.panel_pixels_under_a_window(), 0)

    def windows_do_not_cover_a_raised_board(self):
        self.assertGreater(self.panel_pixels_under_a_window("--raised"), 30000)

    def stands_above_the_background(self):
        with SwaySession(outputs=1) as sway:
            probe(sway)
            wait_for_board(sway)
            sway.background()

            def look():
                picture = sway.picture()
                return picture if picture.pixel(1000, 600) == BACKGROUND else None

            self.assertTrue(shows_board(eventually("the background is there", look)))


class Outputs(unittest.TestCase):
    @staticmethod
    def scale(output):
        return 2 if output == "WL-2" else 1

    def come_and_go_beside_the_board(self):
        with SwayInWindows(outputs=1) as sway:
            running = probe(sway, "--everywhere")
            wait_for_board(sway, "WL-1")
            for _ in range(3):
                added = sway.plug_in()
                wait_for_board(sway, added, self.scale(added))
                sway.unplug(added)
                self.assertTrue(shows_board(sway.picture("WL-1")))
            self.assertTrue(running.is_running())
            self.assertEqual(running.output, "")

    def take_the_board_along(self):
        with SwayInWindows() as sway:
            running = probe(sway)
            wait_for_board(sway, "WL-1")
            sway.unplug("WL-1")
            wait_for_board(sway, "WL-2", 2)
            self.assertTrue(running.is_running())

    def none_for_a_while(self):
        with SwayInWindows(outputs=1) as sway:
            running = probe(sway)
            wait_for_board(sway, "WL-1")
            sway.unplug("WL-1")
            added = sway.plug_in()
            wait_for_board(sway, added, self.scale(added))
            self.assertTrue(running.is_running())
            self.assertEqual(running.end(), 0)


class End(unittest.TestCase):
    def leaves_nothing(self):
        with SwaySession() as sway:
            names = ("HEADLESS-1", "HEADLESS-2")
            bare = [sway.picture(name) for name in names]
            running = probe(sway, "--everywhere")
            wait_for_board(sway)
            wait_for_board(sway, "HEADLESS-2", 1.5)
            self.assertEqual(running.end(), 0)
            self.assertEqual([sway.picture(name) for name in names], bare)
            self.assertEqual(running.output, "")

    def lost_compositor_is_told_in_one_sentence(self):
        with SwaySession(outputs=1) as sway:
            running = probe(sway)
            wait_for_board(sway)
            sway.sway.end(signal.SIGKILL)
            self.assertEqual(running.process.wait(timeout=20), 3)
            self.assertEqual(
                running.output, "wayland_probe: The connection to the Wayland compositor is lost.\n"
            )

    def no_compositor_is_told_in_one_sentence(self):
        with SwaySession(outputs=1) as sway:
            sway.environment["WAYLAND_DISPLAY"] = "none"
            running = probe(sway)
            self.assertEqual(running.process.wait(timeout=20), 4)
            self.assertRegex(running.output, r"^wayland_probe: There is no Wayland compositor: .+\n$")


class Seconds(unittest.TestCase):
    LENGTH = 8

    def frames(self, sway):
        return ProtocolTrace(sway.sway.lines, NAME_SPACE).surfaces

    def ticking(self, sway, *arguments):
        """The frames of each surface after the first one, once LENGTH seconds have been drawn."""
        probe(sway, *arguments)

        def drawn():
            surfaces = self.frames(sway)
            return surfaces if surfaces and min(map(len, surfaces)) > self.LENGTH + 1 else None

        surfaces = eventually("%d seconds are drawn" % self.LENGTH, drawn, self.LENGTH + 25)
        return [frames[1:] for frames in surfaces]

    def never_skip_nor_repeat(self):
        with SwaySession(trace=True) as sway:
            surfaces = self.ticking(sway, "--everywhere")
            self.assertEqual(len(surfaces), 2)
            for frames in surfaces:
                seconds = [int(frame.time) for frame in frames]
                self.assertEqual(seconds, list(range(seconds[0], seconds[0] + len(seconds))))

    def are_drawn_on_the_second(self):
        with SwaySession(trace=True) as sway:
            late = [frame.time % 1 for frame in self.ticking(sway, "--everywhere")[0]]
            # The machine may be busy, but not mostly.
            self.assertLess(statistics.median(late), 0.03)

    def change_only_their_digits(self):
        with SwaySession(trace=True) as sway:
            one, two = self.ticking(sway, "--everywhere")
            # A digit is 30 × 60 points, and a pixel more at each side for its soft edges.
            for frames, scale in ((one, 1), (two, 2)):
                digit = (30 * scale + 4) * (60 * scale + 4)
                self.assertLessEqual(max(frame.changed_pixels for frame in frames), 6 * digit)
                areas = [frame.changed_pixels for frame in frames]
                self.assertLessEqual(statistics.median(areas), digit)
                self.assertGreater(min(areas), 0)

    def agree_with_the_clock(self):
        with SwaySession() as sway:
            probe(sway, "--everywhere")
            wait_for_board(sway)
            wait_for_board(sway, "HEADLESS-2", 1.5)
            for _ in range(10):
                assert_shows_now(self, sway)
                assert_shows_now(self, sway, "HEADLESS-2", 1.5)

    def are_not_drawn_while_nothing_is_shown(self):
        with SwaySession(outputs=1, trace=True) as sway:
            self.ticking(sway)
            drawn_before = len(self.frames(sway)[0])
            sway.sway.process.send_signal(signal.SIGSTOP)
            try:
                time.sleep(4)
            finally:
                sway.sway.process.send_signal(signal.SIGCONT)
            woken = time.time()

            def later():
                frames = self.frames(sway)[0][drawn_before:]
                return frames if frames and frames[-1].time > woken + 2 else None

            frames = eventually("it is drawn again", later)
            # One picture waited to be shown; the next shows what is true by then, at once.
            at_once = [frame for frame in frames if frame.time < woken + 0.5]
            self.assertIn(len(at_once), (1, 2, 3))
            assert_shows_now(self, sway)


class Changes(unittest.TestCase):
    """A change that the probe announces, as a change of the settings would be."""

    def change(self, running):
        running.process.send_signal(signal.SIGUSR1)
        return time.time()

    def surfaces(self, sway):
        return ProtocolTrace(sway.sway.lines, NAME_SPACE).surfaces

    def are_shown_at_once(self):
        with SwaySession(outputs=1, trace=True) as sway:
            running = probe(sway)
            wait_for_board(sway)
            # Right after a tick, so that waiting for the next one would be noticed.
            eventually("a second has begun", lambda: 0.1 < time.time() % 1 < 0.2)
            changed = self.change(running)

            def wide():
                frames = [frame for frames in self.surfaces(sway) for frame in frames]
                return [frame for frame in frames if frame.buffer == (900, 120)]

            self.assertLess(eventually("it is drawn wide", wide)[0].time - changed, 0.5)
            self.assertEqual(sway.picture().pixel(959, 159), PANEL)
            assert_shows_now(self, sway)

    def to_nothing_take_the_surface_away_and_back(self):
        with SwaySession(outputs=1, trace=True) as sway:
            bare = sway.picture()
            running = probe(sway)
            wait_for_board(sway)
            self.change(running)
            eventually("it is wide", lambda: sway.picture().pixel(959, 159) == PANEL)
            self.change(running)
            eventually("nothing is left", lambda: sway.picture() == bare)
            self.change(running)
            picture = wait_for_board(sway)
            self.assertEqual(picture.differing_box(bare), panel_box())
            self.assertEqual(len(self.surfaces(sway)), 2)


if __name__ == "__main__":
    run_tests()
