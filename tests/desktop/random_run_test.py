"""A random run on each kind of display server; see random_run.py."""

import os
import shutil
import signal
import time
import unittest

import sway_soak_test as soak
from agenda import CALENDARS, add_calendar, set_defaults
from desktop_session import eventually, run_tests
from portal_session import PortalSession
from random_run import PATIENCE, RandomRun
from sway_program_test import ON_THE_BOARD
from sway_session import BACKGROUND
from sway_tray_test import Tray
from xfce_session import XfceSession

LONG_LIFE = 12
OUTPUT_CHANGES = (
    "scale 2",
    "scale 1",
    "transform 90",
    "transform normal",
    "resolution 800x600",
    "resolution 1280x720",
)


class Calendars:
    """What a program that fetches calendars does to the folders."""

    def change_calendars(self):
        kinds = (soak.add_many, soak.add_nonsense, soak.change_one, self._remove_one)
        self.random.choice(kinds)(self.session, self.random.randint(0, 99))

    def _remove_one(self, session, _turn):
        folder = session.path(*CALENDARS)
        shutil.rmtree(os.path.join(folder, self.random.choice(sorted(os.listdir(folder)))))
        os.makedirs(os.path.join(folder, "work"), exist_ok=True)

    def kill_reader(self):
        """As the system does when memory is short; the calendars are read all the same."""
        for process in self._children("orvane-reader"):
            os.kill(process, signal.SIGKILL)
        self.session.action("refresh-now")

    def _children(self, name):
        with open("/proc/{0}/task/{0}/children".format(self.running.process.pid)) as file:
            children = [int(each) for each in file.read().split()]
        return [child for child in children if name in self._command_of(child)]

    @staticmethod
    def _command_of(process):
        try:
            with open("/proc/%d/cmdline" % process, encoding="utf-8", errors="replace") as file:
                return file.read()
        except OSError:
            return ""


class WaylandRun(Calendars, RandomRun):
    last_end = float("-inf")

    def begin(self):
        if self.running is None:
            self._furnish()
        super().begin()
        self.wait_for_board()

    def _furnish(self):
        session = self.session
        set_defaults(session, displayMode="all")
        add_calendar(session)
        session.background()
        self.backend = session.start_backend("grant")
        self.portal = session.start_portal()
        self.tray = Tray()
        self.tray.write_bar(session)
        self.bar = self.tray.start_bar(session)

    def wait_for_board(self):
        place = lambda: self.session.picture().pixel(*ON_THE_BOARD)
        eventually("the board is there", lambda: place() != BACKGROUND, PATIENCE)

    def actions(self):
        return (
            (self.toggle_by_action, 3),
            (self.toggle_by_key, 3),
            (self.toggle_quickly, 1),
            (self.refresh, 2),
            (self.second_start, 1),
            (self.change_calendars, 4),
            (self.kill_reader, 1),
            (self.choose_refresh, 1),
            (self.close_windows, 1),
            (self.change_output, 2),
            (self.restart_tray, 1),
            (self.restart_portal, 1),
            (self.end_portal_session, 1),
            (self.restart_compositor, 1),
            (self.run_again, 0.5),
        )

    def toggle_by_key(self):
        # Until the portal has granted the key a press is nobody's.
        key_works = lambda: self._presses_in_vain() or self.session.focus_mode() is (not self.focus)
        eventually("the key is heard", key_works, PATIENCE)
        self.toggled()

    def _presses_in_vain(self):
        bound = [line for line in self.backend.lines if line.startswith("BindShortcuts")]
        if not bound:
            return False
        self.session.control("Activate")
        try:
            changed = lambda: self.session.focus_mode() is (not self.focus)
            # A press that is heard after all would undo the next one.
            return eventually("the key is heard", changed, 10)
        except AssertionError:
            return False

    def choose_refresh(self):
        """As the tray's menu does it."""
        item = "org.kde.StatusNotifierItem-%d-1" % self.running.process.pid
        event = ("2", "clicked", "<0>", "0")
        self.session.call(item, "/MenuBar", "com.canonical.dbusmenu.Event", *event)

    def close_windows(self):
        try:
            self.session.message('[title="Orvane Settings"]', "kill")
        except AssertionError as nothing:
            self.test.assertIn("No matching node", str(nothing))

    def change_output(self):
        self.session.message("output", "HEADLESS-1", *self.random.choice(OUTPUT_CHANGES).split())

    def restart_tray(self):
        self.bar.end(signal.SIGKILL)
        self.bar = self.tray.start_bar(self.session)

    def restart_portal(self):
        self.portal.end()
        gone = lambda: not self.session.has_owner("org.freedesktop.portal.Desktop")
        eventually("the portal is gone", gone, PATIENCE)
        self.portal = self.session.start_portal()

    def end_portal_session(self):
        # A desktop that ends all that it grants would be let go.
        is_bound = self.backend.lines[-1].startswith("BindShortcuts")
        if is_bound and time.monotonic() - self.last_end > LONG_LIFE:
            self.last_end = time.monotonic()
            self.session.control("End")

    def restart_compositor(self):
        self.session.restart()
        self.session.background()
        self.bar.process.wait(timeout=PATIENCE)
        self.bar = self.tray.start_bar(self.session)
        self.wait_for_board()


class XfceRun(Calendars, RandomRun):
    def begin(self):
        if self.running is None:
            self._furnish()
        super().begin()
        eventually("the board is there", lambda: self.session.windows("org.orvane.Orvane"), PATIENCE)

    def _furnish(self):
        self.session.set_defaults(displayMode="all", hideDesktopIconsInFocus=True)
        add_calendar(self.session)
        self.desktop = self.session.start_desktop()
        self.panel = self.session.start_panel()

    def end(self):
        super().end()
        # Quitting leaves the icons as focus mode has them.
        eventually("the icons are as they should be", self._icons_are_right, PATIENCE)

    def _icons_are_right(self):
        return self.session.icon_style() == ("0" if self.focus else None)

    def actions(self):
        return (
            (self.toggle_by_action, 3),
            (self.toggle_by_key, 3),
            (self.toggle_quickly, 1),
            (self.refresh, 2),
            (self.second_start, 1),
            (self.change_calendars, 4),
            (self.kill_reader, 1),
            (self.close_windows, 1),
            (self.change_layout, 1),
            (self.restart_panel, 1),
            (self.restart_desktop, 1),
            (self.restart_manager, 1),
            (self.run_again, 0.5),
        )

    def toggle_by_key(self):
        # While the mapping changes a press may be nobody's.
        changed = lambda: self.session.focus_mode() is (not self.focus)

        def is_heard():
            self.session.press("super+shift+z")
            try:
                return eventually("the key is heard", changed, 3)
            except AssertionError:
                return False

        eventually("the key is heard", is_heard, PATIENCE)
        self.toggled()

    def toggled(self):
        super().toggled()
        eventually("the icons are as they should be", self._icons_are_right, PATIENCE)

    def close_windows(self):
        for window in self.session.windows("orvane-settings"):
            self.session.ask("xdotool", "windowclose", window)

    def change_layout(self):
        self.session.ask("setxkbmap", "-layout", self.random.choice(("us", "us,ru", "us,de")))

    def restart_panel(self):
        self.panel.end(signal.SIGKILL)
        gone = lambda: not self.session.has_owner("org.kde.StatusNotifierWatcher")
        eventually("the panel is gone", gone, PATIENCE)
        self.panel = self.session.start_panel()

    def restart_desktop(self):
        self.desktop.end(signal.SIGKILL)
        self.desktop = self.session.start_desktop()

    def restart_manager(self):
        self.session.start_manager()


class Random(unittest.TestCase):
    def runs_end_well_on_wayland(self):
        with PortalSession() as session:
            WaylandRun(self, session).go_on()

    def runs_end_well_on_x11(self):
        with XfceSession() as session:
            XfceRun(self, session).go_on()


if __name__ == "__main__":
    run_tests()
