"""The rows on Mutter alone, whose layers of windows GNOME has, too; one with a monitor whose scale
is 2. It runs in a window of an Xvfb, so that what it composes can be seen, and its pointer and
keyboard are those of the Xvfb."""

import time

import checks
from desktop_session import eventually, program
from mutter_session import start_mutter
from neighbours import DesktopWindow
from picture import Picture
from private_bus import start_bus
from row import Screen
from run import run_named
from trial import require
from x11_row import TOOLS, X11Row

# The digits of the countdown, on both screens.
DIGITS = (1700, 90)
# More than the height of a window's title.
TITLE = 60
# What tells X11 clients of the scale in GNOME's sessions.
SETTINGS_DAEMON = "/usr/libexec/gsd-xsettings"
# The board's, in points, with the cards of these calendars; on a screen of 2560 points it is a
# little wider than on one of 1280.
LEAST_WIDTH, MOST_WIDTH = 800, 1000


def _is_alike(one, other):
    box = one.differing_box(other)
    return not box or (box[2] - box[0] <= DIGITS[0] and box[3] - box[1] <= DIGITS[1])


class Mutter(DesktopWindow, X11Row):
    name = "mutter"
    needs = TOOLS + ("mutter", "dbus-daemon", "Xwayland")
    manager = "mutter"
    scale = 1
    own_checks = (checks.sleeps_behind_a_window_that_fills_the_screen,)

    def set_monitors(self):
        """Those of the Xvfb are of no concern."""

    def begin(self):
        self.outer = self.environment["DISPLAY"]
        start_bus(self)
        monitors = {
            "MUTTER_DEBUG_NUM_DUMMY_MONITORS": str(len(self.monitors)),
            "MUTTER_DEBUG_DUMMY_MODE_SPECS": "%dx%d" % self.size,
            "MUTTER_DEBUG_DUMMY_MONITOR_SCALES": str(self.scale),
        }
        start_mutter(self, "mutter", "--nested", "--wayland", environment=monitors)
        eventually("Mutter manages the windows", self.manager_window)
        # Mutter draws a picture of its own that cannot be changed.
        self.begin_desktop()

    # Mutter lets windows come and go slowly, the more so where it paints without a graphics card:
    # what is asked next would be answered with what was before.
    def start_board(self):
        self._wait_for_rest()
        return super().start_board()

    def show_desktop(self, shown):
        super().show_desktop(shown)
        self._wait_for_rest()

    def _wait_for_rest(self):
        pictures = []

        def rests():
            time.sleep(0.4)
            pictures.append(self._all())
            last = pictures[-3:]
            return len(last) == 3 and all(_is_alike(last[0], each) for each in last[1:])

        eventually("Mutter has come to rest", rests)

    # ---- By way of the Xvfb

    def ask_outside(self, *command):
        return self.ask("env", "-u", "XAUTHORITY", "DISPLAY=" + self.outer, *command)

    def screens(self):
        return [Screen(name, *self.size, self.scale) for name in self._outputs()]

    def _outputs(self):
        told = self.ask("xrandr", "--listmonitors").decode()
        return [line.split()[-1] for line in told.splitlines()[1:]]

    def picture(self, screen):
        width, height = self.size
        self.move_to(self.screens()[0], width - 1, height - 1)
        return self._all().cropped(self.left_of(screen), 0, width, height)

    def _all(self):
        return Picture.from_ppm(self.ask_outside(program("tests", "x11_client"), "picture"))

    def press_key(self):
        self.ask_outside("xdotool", "key", "a")

    def open_window(self, title, screen):
        # What does not fit with its title is made as large as the monitor, and on one of Mutter's
        # choice.
        lower = Screen(screen.name, screen.width, screen.height - TITLE)
        return super().open_window(title, lower)

    def left_of(self, screen):
        return 0 if screen.name == self._outputs()[0] else self.size[0]

    def move_to(self, screen, x, y):
        self.ask_outside("xdotool", "mousemove", str(self.left_of(screen) + x), str(y))

    def click(self, screen, x, y, button=1):
        self.move_to(screen, x, y)
        self.ask_outside("xdotool", "click", str(button))
        # The click is taken, and what comes of it seen, a little later.
        time.sleep(0.2)
        self.wait_for_order()


@checks.check(**checks.ALL_SCREENS)
def is_as_large_in_points_as_elsewhere(trial):
    columns = [x for x, _ in trial.points[trial.main.name]]
    points = (max(columns) - min(columns)) / trial.main.scale
    require(LEAST_WIDTH < points < MOST_WIDTH, "the board is %d points wide" % points)


@checks.check("reaches_below", **checks.ALL_SCREENS)
def lets_clicks_through_and_comes_to_rest(trial):
    """So many pixels take Mutter long: the board may be seen to follow the desktop's window."""
    x, y = trial.on_the_board(trial.main)
    eventually("a click reaches what is below", lambda: trial.row.reaches_below(trial.main, x, y))
    trial.settle(trial.main, "after a click went through")


class Scaled(Mutter):
    """X11 clients are shown all pixels, and told of the scale."""

    name = "mutter-scaled"
    needs = Mutter.needs + (SETTINGS_DAEMON, "xrdb")
    monitors = ("DP-1",)
    size = (2560, 1440)
    scale = 2
    common_checks = (
        checks.stands_on_every_screen,
        checks.lies_over_the_background,
    )
    own_checks = (is_as_large_in_points_as_elsewhere, lets_clicks_through_and_comes_to_rest)

    def begin_desktop(self):
        self.start(SETTINGS_DAEMON)
        told = lambda: "Xft.dpi:\t192" in self.ask("xrdb", "-query").decode()
        eventually("the scale is told", told)
        super().begin_desktop()


if __name__ == "__main__":
    run_named(Mutter, Scaled)
