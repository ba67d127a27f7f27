"""The program of the settings window beside the one that draws the board, on a headless Xfce: how it
comes, goes, dies and comes again."""

import json
import os
import signal
import statistics
import time
import unittest

from accessible import Accessible
from desktop_session import eventually, program, run_tests
from settings_session import window_processes
from sway_soak_test import held_by, sanitizer_options
from xfce_session import XfceSession

TITLE = "^Orvane Settings$"
ROUNDS = 100
# A form or a picture of the preview that is kept from each round would come to more.
ALLOWED_GROWTH_MB = 6
ALLOWED_DESCRIPTORS = 4


class Session(XfceSession):
    """Xfce with the board on it, and nobody who reads the screen aloud."""

    def __init__(self):
        super().__init__()
        self.environment.update(sanitizer_options(), GTK_A11Y="none")

    def __enter__(self):
        super().__enter__()
        self.board = self.start_program()
        return self

    def is_open(self):
        try:
            return bool(self.ask("xdotool", "search", "--onlyvisible", "--name", TITLE))
        except AssertionError:
            return False

    def open(self, pause=0.05):
        """Answers how long it took until the window was there, in seconds; it is looked for with that
        pause in between."""
        begin = time.monotonic()
        self.action("settings")
        eventually("the settings window is open", self.is_open, 60, pause)
        return time.monotonic() - begin

    def running(self):
        return list(self._running)

    def has_focus(self):
        try:
            return self.ask("xdotool", "getactivewindow", "getwindowname") == b"Orvane Settings\n"
        except AssertionError:
            return False

    def close(self):
        def escaped():
            self.press("Escape")
            return not self.is_open()

        eventually("the settings window is closed", escaped)

    def holdings(self):
        """What the board and the window's program hold: memory in MB, and how many descriptors."""
        processes = (self.board.process.pid, self.window_process())
        return [(held_by(each), len(os.listdir("/proc/%d/fd" % each))) for each in processes]

    def window_processes(self):
        return window_processes(self.board.process.pid)

    def window_process(self):
        return eventually("one program shows the window", self.window_processes)[0]

    def toolkits_in_board(self):
        with open("/proc/%d/maps" % self.board.process.pid, encoding="utf-8") as file:
            return [line for line in file if "gtk" in line or "gdk" in line]

    def glass_strength(self):
        try:
            with open(self.path(".config", "orvane", "defaults.json"), encoding="utf-8") as file:
                return json.load(file).get("DashboardSettings.glassOpacity")
        except FileNotFoundError:
            return None

    def go_to_glass_strength(self):
        """From control to control of a window that was just opened for the first time, until one
        takes the key as that slider does."""
        eventually("the settings window has the focus", self.has_focus)
        self.press(*["ctrl+Page_Down"] * 3)
        before = self.glass_strength()

        def moved():
            self.press("Tab", "Page_Down")
            time.sleep(0.5)
            return self.glass_strength() != before

        eventually("the slider was moved", moved)

    def change_glass_strength(self, key):
        eventually("the settings window has the focus", self.has_focus)
        before = self.glass_strength()
        self.press(key)
        eventually("the glass strength is another", lambda: self.glass_strength() != before)


class ReadAloudSession(Session):
    """With the bus of accessibility, and somebody on it."""

    # Within the window, which stands in the middle of the screen: on its button "Done", beside the text.
    ON_DONE = ("1075", "724", "3584e4")

    def __init__(self):
        super().__init__()
        del self.environment["GTK_A11Y"]

    def __enter__(self):
        super().__enter__()
        self.accessible = Accessible(self)
        self.accessible.tree()
        return self

    def open_and_drawn(self):
        """How long it took until the window was there, and until it showed what is in it."""
        awaiting = self.start(program("tests", "x11_client"), "await", *self.ON_DONE)
        eventually("it is looked for", lambda: "ready" in awaiting.lines)
        begin = time.monotonic()
        there = self.open(pause=0.005)
        eventually("its content is drawn", lambda: not awaiting.is_running(), 60)
        return there, float(awaiting.lines[-1]) - begin


class Window(unittest.TestCase):
    def comes_and_goes_without_the_board(self):
        with Session() as xfce:
            self.assertEqual(xfce.window_processes(), [])
            xfce.open()
            first = xfce.window_process()
            self.assertEqual(xfce.toolkits_in_board(), [])
            xfce.close()
            xfce.open()
            self.assertEqual(xfce.window_processes(), [first])
            xfce.close()
            eventually("its program is gone", lambda: not xfce.window_processes(), 60)
            xfce.open()
            self.assertNotEqual(xfce.window_process(), first)
            self.assertEqual(xfce.toolkits_in_board(), [])
            self.assertEqual(xfce.board.end(), 0)
            eventually("it ends with the board", lambda: not xfce.is_open())
            self.assertEqual(xfce.board.output, "")

    def killed_it_is_opened_anew(self):
        with Session() as xfce:
            for killed in range(1, 4):
                xfce.open()
                os.kill(xfce.window_process(), signal.SIGKILL)
                eventually("it is gone", lambda: not xfce.is_open() and not xfce.window_processes())
                self.assertEqual(len(xfce.board.lines), killed)
            xfce.open()
            self.assertTrue(xfce.board.is_running())
            self.assertEqual(
                set(xfce.board.lines), {"orvane: The settings window ended unexpectedly (signal 9)."}
            )

    def ends_with_a_board_that_is_killed(self):
        with Session() as xfce:
            xfce.open()
            self.assertEqual(xfce.board.end(signal.SIGKILL), -signal.SIGKILL)
            eventually("it ends too", lambda: not xfce.is_open())

    def stopped_it_holds_up_nobody(self):
        with Session() as xfce:
            xfce.open()
            stuck = xfce.window_process()
            os.kill(stuck, signal.SIGSTOP)
            xfce.action("toggle-focus")
            eventually("the board goes on", lambda: xfce.focus_mode() is True)
            eventually("it is ended", lambda: stuck not in xfce.window_processes(), 60)
            self.assertEqual(
                xfce.board.lines, ["orvane: The settings window did not answer any more, and was ended."]
            )

    def opened_edited_and_closed_a_hundred_times(self):
        with Session() as xfce:
            xfce.open()
            first = xfce.window_process()
            xfce.go_to_glass_strength()
            held = []
            for round_ in range(ROUNDS):
                xfce.change_glass_strength("Page_Up" if round_ % 2 == 0 else "Page_Down")
                xfce.close()
                xfce.open()
                held.append(xfce.holdings())
            self.assertEqual(xfce.window_processes(), [first])
            for of_one in zip(*held):
                self.assert_do_not_grow(of_one)
            xfce.close()
            # It ends by itself first, so that what it finds out at its end is told, too.
            eventually("its program is gone", lambda: not xfce.window_processes(), 60)
            self.assertEqual(xfce.board.end(), 0)
            self.assertEqual(xfce.board.output, "")

    def assert_do_not_grow(self, held):
        """Caches fill for a while; afterwards it is as much at the end as in the middle."""
        third = len(held) // 3
        middle, end = (
            [statistics.median(part) for part in zip(*some)] for some in (held[third : 2 * third], held[-third:])
        )
        print("measured in the middle and at the end: %s, %s" % (middle, end))
        self.assertLess(end[0] - middle[0], ALLOWED_GROWTH_MB, held)
        self.assertLess(end[1] - middle[1], ALLOWED_DESCRIPTORS, held)


class Processor:
    """Who used this machine's processors since it was made: this test and all that it started, and
    others."""

    TICK = 1 / os.sysconf("SC_CLK_TCK")

    def __init__(self, session):
        self._session = session
        self._began = self._all(), self._own()

    def share_of_others(self):
        """Of all that the machine could have done; 0 where nothing else runs."""
        busy, possible = (now - then for now, then in zip(self._all(), self._began[0]))
        return max(0, busy - (self._own() - self._began[1])) / possible

    def _all(self):
        with open("/proc/stat", encoding="ascii") as file:
            user, nice, system, idle, waiting, *others = map(int, file.readline().split()[1:])
        busy = user + nice + system + sum(others[:3])
        return busy * self.TICK, (busy + idle + waiting) * self.TICK

    def _own(self):
        mine = os.times()
        ended = sum((mine.user, mine.system, mine.children_user, mine.children_system))
        pids = [running.process.pid for running in self._session.running()] + self._session.window_processes()
        return ended + sum(map(self.used_by, pids))

    @classmethod
    def used_by(cls, pid, with_children=True):
        """In seconds."""
        try:
            with open("/proc/%d/stat" % pid, encoding="utf-8", errors="replace") as file:
                fields = file.read().rpartition(")")[2].split()
        except OSError:
            return 0
        return sum(map(int, fields[11 : 15 if with_children else 13])) * cls.TICK


class Speed(unittest.TestCase):
    """What anybody waits for: of some tries the one in the middle. Where others are at work on this
    machine the best one counts, and may take as much longer as they leave less of the machine."""

    TRIES = 7
    QUIET = 0.05

    def is_there_soon_and_again_at_once(self):
        with Session() as xfce:
            first, again, work = [], [], []
            processor = Processor(xfce)
            for _ in range(self.TRIES):
                first.append(xfce.open(pause=0.005))
                work.append(Processor.used_by(xfce.window_process(), with_children=False))
                xfce.close()
                again.append(xfce.open(pause=0.005))
                # One that dies while it is wanted comes again by itself.
                xfce.close()
                os.kill(xfce.window_process(), signal.SIGKILL)
                eventually("it is gone", lambda: not xfce.is_open() and not xfce.window_processes())
            self._tell(first=first, again=again, work=work)
            counts, longer = self._rule(processor.share_of_others())
            self.assertLess(counts(first), 0.4 * longer)
            self.assertLess(counts(again), 0.15 * longer)
            # Whoever else is at work.
            self.assertLess(statistics.median(work), 0.4)

    def is_drawn_soon_where_it_is_read_aloud(self):
        with ReadAloudSession() as xfce:
            first, first_drawn, again, again_drawn = [], [], [], []
            processor = Processor(xfce)
            for _ in range(self.TRIES):
                for there, drawn in ((first, first_drawn), (again, again_drawn)):
                    for took, until in zip(xfce.open_and_drawn(), (there, drawn)):
                        until.append(took)
                    xfce.close()
                os.kill(xfce.window_process(), signal.SIGKILL)
                eventually("it is gone", lambda: not xfce.window_processes())
            self._tell(first=first, first_drawn=first_drawn, again=again, again_drawn=again_drawn)
            counts, longer = self._rule(processor.share_of_others())
            for took, limit in ((first, 0.4), (first_drawn, 0.4), (again, 0.15), (again_drawn, 0.15)):
                self.assertLess(counts(took), limit * longer)

    @staticmethod
    def _tell(**measured):
        for name, took in measured.items():
            print("%s %s" % (name, " ".join("%.3f" % seconds for seconds in took)))

    def _rule(self, others):
        """Which try counts, and how many times as long it may take."""
        is_quiet = others < self.QUIET
        counts, longer = (statistics.median, 1) if is_quiet else (min, 1 / max(0.1, 1 - others))
        print("others %.2f, so that the %s counts, and may take %.1f times as long"
              % (others, "median" if is_quiet else "best", longer))
        return counts, longer


if __name__ == "__main__":
    run_tests()
