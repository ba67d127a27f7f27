"""The program of the settings window beside the one that draws the board, on a headless Xfce: how it
comes, goes, dies and comes again."""

import json
import os
import signal
import time
import unittest

from desktop_session import eventually, run_tests
from xfce_session import XfceSession

TITLE = "^Orvane Settings$"
PROGRAM = "orvane-settings"


class Session(XfceSession):
    """Xfce with the board on it, and nobody who reads the screen aloud."""

    def __init__(self):
        super().__init__()
        self.environment["GTK_A11Y"] = "none"

    def __enter__(self):
        super().__enter__()
        self.board = self.start_program()
        return self

    def is_open(self):
        try:
            return bool(self.ask("xdotool", "search", "--onlyvisible", "--name", TITLE))
        except AssertionError:
            return False

    def open(self):
        """Answers how long it took until the window was there, in seconds."""
        begin = time.monotonic()
        self.action("settings")
        eventually("the settings window is open", self.is_open, 60)
        return time.monotonic() - begin

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

    def window_processes(self):
        """Children of the board that show a window, zombies included."""
        path = "/proc/%d/task/%d/children" % (self.board.process.pid, self.board.process.pid)
        with open(path, encoding="ascii") as file:
            children = [int(child) for child in file.read().split()]
        return [child for child in children if self._name(child).startswith(PROGRAM[:15])]

    def window_process(self):
        return eventually("one program shows the window", self.window_processes)[0]

    @staticmethod
    def _name(process):
        try:
            with open("/proc/%d/comm" % process, encoding="utf-8") as file:
                return file.read().strip()
        except OSError:
            return ""

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
            for round_ in range(100):
                xfce.change_glass_strength("Page_Up" if round_ % 2 == 0 else "Page_Down")
                xfce.close()
                xfce.open()
            self.assertEqual(xfce.window_processes(), [first])
            xfce.close()
            self.assertEqual(xfce.board.end(), 0)
            self.assertEqual(xfce.board.output, "")


class Speed(unittest.TestCase):
    """The best of some tries, since others may be at work on this machine."""

    def is_there_soon_and_again_at_once(self):
        with Session() as xfce:
            first, again = [], []
            for _ in range(5):
                first.append(xfce.open())
                xfce.close()
                again.append(xfce.open())
                os.kill(xfce.window_process(), signal.SIGKILL)
                eventually("it is gone", lambda: not xfce.is_open() and not xfce.window_processes())
            print("first %s" % " ".join("%.3f" % took for took in first))
            print("again %s" % " ".join("%.3f" % took for took in again))
            self.assertLess(min(first), 0.4)
            self.assertLess(min(again), 0.15)


if __name__ == "__main__":
    run_tests()
