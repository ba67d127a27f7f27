"""A headless sway that a test can look at, click on, and plug outputs into."""

import json
import os
import signal

from desktop_session import DesktopSession, eventually, program
from picture import Picture

CONFIGURATION = """
default_border none
default_floating_border none
focus_follows_mouse no
xwayland disable
"""

# The first at scale 1, the second at 1.5: the same 1280 × 720 points side by side.
HEADLESS_OUTPUTS = """
output HEADLESS-1 resolution 1280x720 position 0 0
output HEADLESS-2 resolution 1920x1080 position 1280 0 scale 1.5
"""

# Outputs of a sway that runs in windows of another one are 1280 × 720 pixels each.
OUTER = """
output HEADLESS-1 resolution 2000x1500
for_window [title=".*"] floating enable
"""
WINDOW_OUTPUTS = """
output WL-1 position 0 0
output WL-2 position 1280 0 scale 2
"""

BACKGROUND = (0x88, 0x44, 0x22)
WINDOW = (0x22, 0x88, 0x44)


def hexadecimal(color):
    return "%02x%02x%02x" % color


class SwaySession(DesktopSession):
    """`trace` makes sway write every message of the protocol to its output."""

    def __init__(self, outputs=2, trace=False):
        super().__init__()
        self._count_of_outputs = outputs
        self._trace = trace
        self.sway = None

    def __enter__(self):
        try:
            self._begin()
            return self
        except BaseException as error:
            self.__exit__(type(error), error, None)
            raise

    def _begin(self):
        self._start_sway("headless", HEADLESS_OUTPUTS, self._count_of_outputs)

    def _start_sway(self, backend, configuration, outputs):
        known = self._displays()
        path = self.path("%s.conf" % backend)
        with open(path, "w", encoding="utf-8") as file:
            file.write(CONFIGURATION + configuration)
        environment = {
            "WLR_BACKENDS": backend,
            "WLR_HEADLESS_OUTPUTS": str(outputs),
            "WLR_WL_OUTPUTS": str(outputs),
            "WLR_LIBINPUT_NO_DEVICES": "1",
            "WLR_RENDERER": "pixman",
        }
        if self._trace:
            environment["WAYLAND_DEBUG"] = "server"
        self.sway = self.start("sway", "-c", path, environment=environment)
        self.environment["SWAYSOCK"] = eventually("sway listens", self._socket)
        (self.environment["WAYLAND_DISPLAY"],) = eventually(
            "sway has a display", lambda: self._displays() - known
        )
        eventually("sway has its outputs", lambda: self._has_outputs(outputs))

    def _has_outputs(self, count):
        try:
            return len(self.outputs()) == count
        except AssertionError:
            # The sockets have their names a moment before sway listens to them.
            return False

    def restart(self):
        """Kills sway and starts it anew; what connected to it finds it under the same name."""
        self.kill_sway()
        self.resume_sway()

    def kill_sway(self):
        self.sway.end(signal.SIGKILL)

    def resume_sway(self):
        display = self.environment["WAYLAND_DISPLAY"]
        # It is left behind, and is no sign of a new one.
        os.remove(self.path(display))
        self._begin()
        assert self.environment["WAYLAND_DISPLAY"] == display

    def _socket(self):
        ending = ".%d.sock" % self.sway.process.pid
        names = [name for name in os.listdir(self.folder) if name.endswith(ending)]
        return self.path(names[0]) if names else None

    def _displays(self):
        names = [name for name in os.listdir(self.folder) if name.startswith("wayland-")]
        return {name for name in names if not name.endswith(".lock")}

    def message(self, *words):
        return self.ask("swaymsg", "--", *words)

    def outputs(self):
        """The names of the outputs that are on."""
        told = json.loads(self.ask("swaymsg", "-r", "-t", "get_outputs"))
        return [output["name"] for output in told if output["active"]]

    def picture(self, output="HEADLESS-1"):
        return Picture.from_ppm(self.ask("grim", "-t", "ppm", "-o", output, "-"))

    def part(self, x, y, width, height):
        """Of the layout of all outputs."""
        place = "%d,%d %dx%d" % (x, y, width, height)
        return Picture.from_ppm(self.ask("grim", "-t", "ppm", "-g", place, "-"))

    def background(self, output="HEADLESS-1", color=BACKGROUND):
        """A neighbour that fills the output below the board and tells what clicks it gets."""
        return self._neighbour("background", output, color)

    def window(self, title="window"):
        """An ordinary window, which sway makes as large as the output that has the focus."""
        return self._neighbour("window", title, WINDOW)

    def _neighbour(self, kind, name, color):
        neighbour = self.start(program("tests", "sway_client"), kind, name, hexadecimal(color))
        eventually("the %s is ready" % kind, lambda: "ready" in neighbour.lines)
        return neighbour

    def click(self, x, y, button="button1"):
        """Somewhere in the layout of all outputs. All in one go: a button that is held for long means
        something else to a menu."""
        steps = ("set %d %d" % (x, y), "press " + button, "release " + button)
        self.message("; ".join("seat - cursor " + step for step in steps))


class SwayInWindows(SwaySession):
    """A sway whose outputs, WL-1 and so on, are windows of another one and can be closed like them,
    which is what it takes to unplug one: the outputs of a headless sway are there for good."""

    def _begin(self):
        self._start_sway("headless", OUTER, 1)
        self._outer_socket = self.environment["SWAYSOCK"]
        self._start_sway("wayland", WINDOW_OUTPUTS, self._count_of_outputs)

    def unplug(self, output):
        command = '[title="wlroots - %s"] kill' % output
        self.ask("swaymsg", "-s", self._outer_socket, "--", command)
        eventually("%s is gone" % output, lambda: output not in self.outputs())

    def plug_in(self):
        """Answers the name of a new output."""
        before = self.outputs()
        self.message("create_output")
        return eventually(
            "there is one more output",
            lambda: next((name for name in self.outputs() if name not in before), None),
        )
