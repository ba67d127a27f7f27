"""The row on Wayfire, whose second output has a scale of 1.5. Wayfire wants a graphics card; a
stand-in is preloaded into it, so that it starts without one."""

import os

from desktop_session import BUILD, DesktopSession, eventually, program
from neighbours import HeadlessOutputs, Layers, hexadecimal
from picture import Picture
from row import FIRST_BACKGROUND, WINDOW, Row
from run import run_named

# The keys are typed by a keyboard that has only those it types, of which the first has the number
# of the escape key.
CONFIGURATION = """
[core]
plugins = vswitch wm-actions
xwayland = false
vwidth = 2
vheight = 1
[vswitch]
binding_right = <super> KEY_ESC
binding_left = <alt> KEY_ESC
duration = 0
[wm-actions]
toggle_showdesktop = <ctrl> KEY_ESC
[output:HEADLESS-1]
mode = 1280x720
position = 0,0
[output:HEADLESS-2]
mode = 1920x1080
position = 1280,0
scale = 1.5
"""
LAYOUT = ("2560", "720")
CARD = os.path.join(os.path.abspath(BUILD), "tests", "software_gpu.so")


class Wayfire(HeadlessOutputs, Layers, DesktopSession, Row):
    name = "wayfire"
    needs = ("wayfire", "grim", "wtype", CARD)
    lacks = {
        "one_workspace_only": "what lies on a layer is on every workspace",
    }
    places = {"HEADLESS-1": 0, "HEADLESS-2": 1280}

    def __enter__(self):
        try:
            self._start_wayfire()
            self.workspace = 0
            self.set_background(FIRST_BACKGROUND)
            # Above a background the pointer is hidden.
            self._point("move", 600, 600)
            return self
        except BaseException as error:
            self.__exit__(type(error), error, None)
            raise

    def _start_wayfire(self):
        self.write(CONFIGURATION, "wayfire.ini")
        environment = {
            "WLR_BACKENDS": "headless",
            "WLR_HEADLESS_OUTPUTS": str(len(self.places)),
            "WLR_LIBINPUT_NO_DEVICES": "1",
            "WLR_RENDERER_ALLOW_SOFTWARE": "1",
            "LIBGL_ALWAYS_SOFTWARE": "1",
        }
        card = "LD_PRELOAD=" + self.within_reach(CARD)
        command = ("env", card, "wayfire", "-c", self.path("wayfire.ini"))
        self.start(*command, environment=environment)
        self.environment["WAYLAND_DISPLAY"] = eventually("there is a display", self._display, 60)
        eventually("it answers", self._answers, 60)

    def _display(self):
        names = [name for name in os.listdir(self.folder) if name.startswith("wayland-")]
        return next((name for name in names if not name.endswith(".lock")), None)

    def _answers(self):
        try:
            return all(self.picture(screen) for screen in self.screens())
        except AssertionError:
            return False

    # ---- Seeing

    def picture(self, screen):
        return Picture.from_ppm(self.ask("grim", "-t", "ppm", "-o", screen.name, "-"))

    def listed(self):
        """What panels are told."""
        return self.ask(program("tests", "wlr_windows")).decode().splitlines()

    # ---- Doing

    def background(self, output, color):
        return self._neighbour("background", output, color)

    def _neighbour(self, kind, name, color):
        client = program("tests", "sway_client")
        neighbour = self.start(client, kind, name, hexadecimal(color))
        eventually("the %s is ready" % kind, lambda: "ready" in neighbour.lines)
        return neighbour

    def open_window(self, title, screen):
        # It comes up on the output that was last clicked.
        self.click(screen, screen.width - 5, screen.height - 5)
        window = self._neighbour("maximized", title, WINDOW)
        x, y = screen.width - 5, screen.height - 5
        eventually("the window is seen", lambda: self.picture(screen).pixel(x, y) == WINDOW)
        return window

    def press_key(self):
        # The keyboard is plugged in for it, which windows notice only after a moment.
        self.ask("wtype", "-s", "500", "a")

    def _press_with(self, modifier):
        self.ask("wtype", "-M", modifier, "-k", "Return", "-m", modifier)

    def _point(self, verb, x, y):
        self.ask(program("tests", "wlr_input"), verb, str(x), str(y), *LAYOUT)

    def click(self, screen, x, y):
        self._point("click", self.places[screen.name] + int(x / screen.scale), int(y / screen.scale))

    def show_workspace(self, index):
        if index == self.workspace:
            return
        # A window of the workspace that is left tells when it is.
        main = self.screens()[0]
        window = self.open_window("left behind", main)
        self._press_with("logo" if index > self.workspace else "alt")
        self.workspace = index
        x, y = main.width - 5, main.height - 5
        eventually("another workspace is shown", lambda: self.picture(main).pixel(x, y) != WINDOW)
        window.end()

    def show_desktop(self, shown):
        self._press_with("ctrl")


if __name__ == "__main__":
    run_named(Wayfire)
