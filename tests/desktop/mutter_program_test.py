"""The program itself on a Mutter without any display of its own: several monitors, and an Xwayland
that is there only when it is asked for."""

import os
import re
import shutil
import signal
import time
import unittest

import agenda
from desktop_session import DesktopSession, eventually, program, run_tests
from mutter_session import start_mutter
from private_bus import start_bus


class MutterSession(DesktopSession):
    def __init__(self, monitors, environment=None):
        super().__init__()
        self.monitors = monitors
        self.more = environment or (lambda session: {})

    def __enter__(self):
        try:
            self.bus = start_bus(self)
            self.start_mutter()
            return self
        except BaseException as error:
            self.__exit__(type(error), error, None)
            raise

    def start_mutter(self):
        command = ["mutter", "--headless", "--wayland"]
        for monitor in self.monitors:
            command += ["--virtual-monitor", monitor]
        self.mutter = start_mutter(self, *command, environment=self.more(self))

    def start_board(self):
        agenda.add_calendars(self)
        agenda.set_defaults(self, displayMode="all")
        return self.start(program("orvane"))

    def set_scale(self, scale):
        """Of the first monitor, as GNOME's settings do, for the time of the session."""
        state = eventually("Mutter tells its monitors", lambda: self._ask_mutter("GetCurrentState"))
        serial = re.match(r"\(uint32 (\d+)", state)[1]
        monitor, mode = re.search(r"\[\(\('([^']+)'.*?\[\('([^']+)'", state).groups()
        logical = "[(0, 0, %s, uint32 0, true, [('%s', '%s', @a{sv} {})])]" % (scale, monitor, mode)
        if self._ask_mutter("ApplyMonitorsConfig", serial, "1", logical, "{}") is None:
            raise AssertionError("Mutter refuses the scale %s" % scale)

    def _ask_mutter(self, method, *arguments):
        name, path = "org.gnome.Mutter.DisplayConfig", "/org/gnome/Mutter/DisplayConfig"
        call = ("gdbus", "call", "--session", "--dest", name, "--object-path", path, "--method")
        try:
            return self.ask(*call, "%s.%s" % (name, method), *arguments).decode()
        except AssertionError:
            return None

    def has_xwayland(self):
        return any("Xwayland" in line.split()[0] for line in self.processes() if line)

    def about(self, window):
        try:
            return self.ask("xwininfo", "-id", window, "-all").decode()
        except AssertionError:
            return ""  # it went away after it was listed

    def boards(self):
        """The corners of the windows that Mutter manages for the program and shows."""
        try:
            listed = self.ask("xprop", "-root", "_NET_CLIENT_LIST").decode()
        except AssertionError:
            return []  # its Xwayland is about to go, or to come
        found = []
        for window in re.findall(r"0x[0-9a-f]+", listed):
            told = self.about(window)
            if '"Orvane"' in told and "IsViewable" in told:
                corner = re.search(r"upper-left X: +(-?\d+)\s+Absolute upper-left Y: +(-?\d+)", told)
                found.append((int(corner.group(1)), int(corner.group(2)), told))
        return sorted(found)


def as_started_by_systemd(session):
    library = session.path("user_unit.so")
    shutil.copyfile(program("tests", "user_unit.so"), library)
    os.chmod(library, 0o755)
    return {"LD_PRELOAD": library}


def scaling_by_itself(session):
    """Mutter then shows X11 clients a screen in points and scales what they draw."""
    settings = "[org/gnome/mutter]\nexperimental-features=['scale-monitor-framebuffer']\n"
    session.write(settings, ".config", "glib-2.0", "settings", "keyfile")
    return {"GSETTINGS_BACKEND": "keyfile"}


class Xwayland(unittest.TestCase):
    def is_started_when_the_program_asks_for_it(self):
        with MutterSession(["1600x900"], as_started_by_systemd) as session:
            self.assertFalse(session.has_xwayland())
            running = session.start_board()
            eventually("Xwayland runs", session.has_xwayland)
            ((_, _, told),) = eventually("the board is shown", session.boards)
            for expected in ("Desktop", "Below", "Sticky", "Skip Taskbar", "Skip Pager"):
                self.assertIn(expected, told)
            self.assertIn("Client accepts input or input focus: No", told)
            self.assertEqual((running.end(), running.output), (0, ""))

    def shows_a_board_on_every_monitor(self):
        with MutterSession(["1600x900", "1280x720", "2560x1440"]) as session:
            running = session.start_board()

            def all_three():
                found = session.boards()
                return found if len(found) == 3 else None

            left = [x for x, _, _ in eventually("three boards are shown", all_three)]
            for x, begin, width in zip(left, (0, 1600, 2880), (1600, 1280, 2560)):
                self.assertTrue(begin <= x < begin + width, left)
            self.assertEqual((running.end(), running.output), (0, ""))
            eventually("nothing is left", lambda: not session.boards())

    def is_drawn_at_the_scale_that_the_session_sets(self):
        """GNOME's settings daemon tells X11 clients by the resolution of their texts."""
        with MutterSession(["2560x1440"]) as session:
            running = session.start_board()
            once = eventually("the board is as wide as it gets", lambda: self.settled(session))
            session.write("Xft.dpi: 192\n", "resources")
            session.ask("xrdb", "-nocpp", "-merge", session.path("resources"))
            # The screen has half as many points then, of which the board takes a little fewer.
            eventually("it is larger", lambda: 1.6 * once < self.width(session) < 2.1 * once)
            self.assertEqual((running.end(), running.output), (0, ""))

    def is_drawn_in_points_where_mutter_scales_by_itself(self):
        with MutterSession(["2560x1440"], scaling_by_itself) as session:
            running = session.start_board()
            once = eventually("the board is as wide as it gets", lambda: self.settled(session))
            for scale in (2.0, 1.25, 1.0):
                session.set_scale(scale)
                size = (int(2560 / scale), int(1440 / scale))
                stands = lambda: self.screen(session) == size and self.stands_within(session, size, once)
                eventually("the board stands on a screen of %d × %d" % size, stands, 40)
            self.assertEqual((running.end(), running.output), (0, ""))

    def that_is_killed_is_started_again_for_the_board(self):
        with MutterSession(["1600x900"], as_started_by_systemd) as session:
            running = session.start_board()
            eventually("the board is shown", session.boards)
            for _ in range(3):
                (killed,) = session.processes_called("Xwayland")
                os.kill(killed, signal.SIGKILL)
                eventually("another one runs", lambda: self.another(session, killed), 60)
                ((_, _, told),) = eventually("the board is shown again", session.boards, 60)
                self.assertIn("Below", told)
            self.assertTrue(session.mutter.is_running())
            self.assertEqual((running.end(), running.output), (0, ""))

    @staticmethod
    def another(session, killed):
        return [each for each in session.processes_called("Xwayland") if each != killed]

    @staticmethod
    def screen(session):
        told = session.ask("xwininfo", "-root").decode()
        return tuple(int(re.search(r"%s: (\d+)" % edge, told)[1]) for edge in ("Width", "Height"))

    @staticmethod
    def stands_within(session, size, width):
        """The only board, with all of its cards: as wide as before, but for the width of its margins."""
        found = session.boards()
        if len(found) != 1:
            return False
        left, top, told = found[0]
        wide, high = (int(re.search(r"%s: (\d+)" % edge, told)[1]) for edge in ("Width", "Height"))
        fits = left >= 0 and top >= 0 and left + wide <= size[0] and top + high <= size[1]
        return fits and abs(wide - width) < 100

    @staticmethod
    def width(session):
        told = [told for _, _, told in session.boards()]
        return int(re.search(r"Width: (\d+)", told[0])[1]) if told else 0

    def settled(self, session):
        """The calendars' cards make the board wider once they are read."""
        before = self.width(session)
        time.sleep(2)
        return before if self.width(session) == before > 500 else None


if __name__ == "__main__":
    run_tests()
