"""The display servers that the contenders run on: one of each kind, headless, with nothing else."""

import os
import sys

# Last, since the tests have modules of the same names.
sys.path.append(os.path.join(os.path.dirname(os.path.abspath(__file__)), "..", "..", "tests", "desktop"))

from desktop_session import DesktopSession, eventually  # noqa: E402

# A headless output wakes at every refresh, even with nothing to draw; five times a second keeps that
# from drowning what is to be measured.
SWAY = """
xwayland disable
output HEADLESS-1 mode --custom 1920x1080@5Hz scale %s
"""


class Display(DesktopSession):
    """Use as a context manager. `server` is the server's process."""

    server = None

    def __enter__(self):
        self.begin()
        return self

    def run(self, command):
        return self.start(*command)


class X11(Display):
    def __init__(self, screens=1, scale=1):
        super().__init__()
        self._screens = screens
        self._scale = scale

    def begin(self):
        size = "%dx1080x24" % (1920 * self._screens)
        self.server = self.start("Xvfb", "-displayfd", "1", "-screen", "0", size, "-nolisten", "tcp",
                                 "-noreset")
        number = eventually("Xvfb tells its number", self._number)
        self.environment["DISPLAY"] = ":" + number
        for index in range(self._screens):
            place = "1920/480x1080/270+%d+0" % (1920 * index)
            self.ask("xrandr", "--setmonitor", "M%d" % index, place, "none" if index else "screen")
        if self._scale != 1:
            self.write("Xft.dpi: %d\n" % (96 * self._scale), "resources")
            self.ask("xrdb", "-merge", self.path("resources"))


    def _number(self):
        return next((line for line in self.server.lines if line.isdigit()), None)


class Sway(Display):
    def __init__(self, screens=1, scale=1):
        super().__init__()
        self._screens = screens
        self._scale = scale

    def begin(self):
        self.write(SWAY.replace("HEADLESS-1", "*") % self._scale, "sway.conf")
        environment = {
            "WLR_BACKENDS": "headless",
            "WLR_HEADLESS_OUTPUTS": str(self._screens),
            "WLR_LIBINPUT_NO_DEVICES": "1",
            "WLR_RENDERER": "pixman",
        }
        self.server = self.start("sway", "-c", self.path("sway.conf"), environment=environment)
        named = eventually("sway has a display", self._displays)
        self.environment["WAYLAND_DISPLAY"] = named[0]

    def _displays(self):
        return [name for name in os.listdir(self.folder)
                if name.startswith("wayland-") and not name.endswith(".lock")]


DISPLAYS = {"x11": X11, "sway": Sway}
