"""The rows on X11."""

import json
import os
import signal

from checks import ALL_SCREENS, check
from checks import comes_back_after_the_desktop_was_shown, stands_on_every_screen
from desktop_session import eventually, happens, own_display
from neighbours import DesktopWindow, hexadecimal
from picture import Picture
from row import FIRST_BACKGROUND
from run import run_named
from sway_session import SwaySession
from trial import require
from x11_row import X11Row

NO_WORKSPACES = "no window manager, no workspaces"
ROOT_PICTURE = "nothing but the root window's picture is below the board"


class Alone(X11Row):
    name = "xvfb"
    lacks = {
        "show_workspace": NO_WORKSPACES,
        "one_workspace_only": NO_WORKSPACES,
        "show_desktop": "no window manager shows the desktop",
        "listed": "no window manager lists windows",
        "restart_shell": ROOT_PICTURE,
    }

    def begin(self):
        self.watch_root()

    def reaches_below(self, screen, x, y):
        return self.reaches_root(screen, x, y)


class Xfce(X11Row):
    name = "xfwm4-xfdesktop"
    needs = X11Row.needs + ("xfwm4", "xfdesktop", "xfconf-query", "dbus-daemon")
    manager = ("xfwm4", "--replace", "--compositor=off")
    # Xfce looks at outputs, of which an Xvfb has one.
    monitors = ("screen",)
    lacks = {"second_screen": "Xfce knows the outputs of the server, of which Xvfb has one"}

    def begin(self):
        self.start_bus("org.xfce.Xfconf")
        self.start_manager(*self.manager)
        # Icons are in the desktop's window and not in the root picture: without compositing, the
        # board cannot show them below itself.
        self._set("/desktop-icons/style", "-t", "int", "-s", "0")
        self.set_background(FIRST_BACKGROUND)
        self.start_desktop()

    def start_desktop(self):
        self.shell = self.start("xfdesktop")
        eventually("xfdesktop stands", self._stands)

    def _stands(self):
        if '"Desktop": ("xfdesktop"' not in self.tree():
            return False
        shown = [self.picture(screen).pixel(1150, 650) for screen in self.screens()]
        return set(shown) == {FIRST_BACKGROUND}

    def restart_shell(self):
        self.shell.end()
        self.start_desktop()

    def set_background(self, color):
        parts = [str(round(part / 255, 6)) for part in color] + ["1"]
        typed = [word for part in parts for word in ("-t", "double", "-s", part)]
        for monitor in self.monitors:
            # What is set for the first workspace serves all.
            backdrop = "/backdrop/screen0/monitor%s/workspace0/" % monitor
            for style in ("color-style", "image-style"):
                self._set(backdrop + style, "-t", "int", "-s", "0")
            self._set(backdrop + "rgba1", *typed)

    def _set(self, name, *typed):
        self.ask("xfconf-query", "-c", "xfce4-desktop", "-p", name, "-n", *typed)


class XfceComposited(Xfce):
    name = "xfwm4-xfdesktop-composited"
    manager = ("xfwm4", "--replace", "--compositor=on")


SIDE_BY_SIDE = """
output HEADLESS-1 resolution 1280x720 position 0 0
output HEADLESS-2 resolution 1280x720 position 1280 0
"""


class XfceOnTwoScreens(XfceComposited, SwaySession):
    """Its server is an Xwayland that is the whole of a headless sway: it has an output for each of
    sway's."""

    name = "xfwm4-xfdesktop-two-screens"
    needs = tuple(name for name in XfceComposited.needs if name != "Xvfb") + ("sway", "Xwayland")
    monitors = ("XWAYLAND0", "XWAYLAND1")
    lacks = {}

    def _start_server(self):
        self._start_sway("headless", SIDE_BY_SIDE, len(self.monitors))
        self.start_display("Xwayland", own_display(), "-displayfd", "1", "-noreset", "-shm")
        # The program is not to know of it.
        for name in ("WAYLAND_DISPLAY", "SWAYSOCK"):
            del self.environment[name]


class Openbox(X11Row):
    name = "openbox"
    needs = X11Row.needs + ("openbox",)
    manager = ("openbox", "--sm-disable")
    lacks = {"restart_shell": ROOT_PICTURE}

    def begin(self):
        self.start_manager(*self.manager)


class OpenboxPicom(Openbox):
    name = "openbox-picom"
    needs = Openbox.needs + ("picom",)

    def begin(self):
        super().begin()
        self.start_picom()

    def start_picom(self):
        self.start("picom", "--backend", "xrender", "--config", "/dev/null")


class OpenboxPcmanfm(Openbox):
    name = "openbox-pcmanfm"
    needs = Openbox.needs + ("pcmanfm", "dbus-daemon")
    lacks = {}

    def begin(self):
        self.start_bus()
        super().begin()
        self.start_desktop()
        self.set_background(FIRST_BACKGROUND)

    def start_desktop(self):
        # What is set by a command later is meant for the first monitor alone.
        color = hexadecimal(FIRST_BACKGROUND)
        items = "[*]\nwallpaper_mode=color\ndesktop_bg=#%s\ndesktop_shadow=#%s\n" % (color, color)
        for monitor in range(2):
            place = ("pcmanfm", "default", "desktop-items-%d.conf" % monitor)
            if not os.path.exists(self.path(".config", *place)):
                self.write(items, ".config", *place)
        self.shell = self.start("pcmanfm", "--desktop")
        eventually("pcmanfm stands", self._stands)

    def _stands(self):
        """With a window on each monitor, as the manager lists them; it has others that nobody
        sees."""
        shown = [self.about(window) for window in self.root_windows("_NET_CLIENT_LIST")]
        shown = [told for told in shown if '"pcmanfm"' in told and "IsViewable" in told]
        return len(shown) == len(self.monitors)

    def restart_shell(self):
        self.shell.end()
        self.start_desktop()

    def set_background(self, color):
        path = self.path("wallpaper-%s.png" % hexadecimal(color))
        Picture(64, 64, bytes(color) * (64 * 64)).save_png(path)
        self.ask("pcmanfm", "--set-wallpaper=" + path, "--wallpaper-mode=stretch")


I3_CONFIGURATION = """# i3 config file (v4)
font pango:sans 8
focus_follows_mouse no
default_border none
default_floating_border none
"""


class I3(X11Row):
    name = "i3"
    needs = X11Row.needs + ("i3", "i3-msg")
    manager = ("i3",)
    lacks = {
        "restart_shell": ROOT_PICTURE,
        "show_desktop": "i3 does not put windows aside",
        "one_workspace_only": "what i3 does not tile belongs to no workspace",
    }

    def begin(self):
        self.write(I3_CONFIGURATION, "i3.conf")
        self.start_manager("i3", "-c", self.path("i3.conf"))

    def message(self, *words):
        return self.ask("i3-msg", "-s", self._socket(), *words)

    def _socket(self):
        return self.root_property("I3_SOCKET_PATH").partition("= ")[2].strip('"')

    def reaches_below(self, screen, x, y):
        """A click on the root window makes i3 turn to the workspace there."""
        self.message("focus", "output", "DP-2")
        self.click(screen, x, y)
        return happens(lambda: self._focused_output() == screen.name)

    def _focused_output(self):
        told = json.loads(self.message("-t", "get_workspaces"))
        return next((each["output"] for each in told if each["focused"]), None)

    def open_window(self, title, screen):
        self.message("focus", "output", screen.name)
        return super().open_window(title, screen)

    def show_workspace(self, index):
        self.message("focus", "output", "DP-1")
        self.message("workspace", "1" if index == 0 else "elsewhere")


class Marco(X11Row):
    name = "marco-caja"
    needs = X11Row.needs + ("marco", "caja", "gsettings", "dbus-daemon")
    manager = ("marco", "--sm-disable", "--replace", "--no-composite")

    def begin(self):
        self.start_bus()
        self.start_manager(*self.manager)
        self.set_background(FIRST_BACKGROUND)
        self.start_desktop()

    def start_desktop(self):
        self.shell = self.start("caja", "--no-default-window", "--force-desktop", "--sm-disable")
        eventually("caja stands", self._stands)

    def _stands(self):
        if '("desktop_window" "Caja")' not in self.tree():
            return False
        return self.picture(self.screens()[0]).pixel(1150, 650) == FIRST_BACKGROUND

    def restart_shell(self):
        self.shell.end()
        self.start_desktop()

    def set_background(self, color):
        for key, value in (
            ("picture-filename", "''"),
            ("color-shading-type", "'solid'"),
            ("primary-color", "'#%s'" % hexadecimal(color)),
        ):
            self.ask("gsettings", "set", "org.mate.background", key, value)


class MarcoComposited(Marco):
    name = "marco-caja-composited"
    manager = ("marco", "--sm-disable", "--replace", "--composite")


NEVER_DONE = "without its shell Muffin begins to switch workspaces, and never ends it"


class Muffin(X11Row):
    """Alone, without the shell of Cinnamon around it, but with the desktop of its file manager."""

    name = "muffin-nemo"
    needs = X11Row.needs + ("muffin", "nemo-desktop", "dbus-daemon")
    manager = ("muffin", "--replace", "--sm-disable")
    lacks = {"show_workspace": NEVER_DONE, "one_workspace_only": NEVER_DONE}

    def begin(self):
        self.start_bus()
        self.start_manager(*self.manager)
        self.start_desktop()

    def start_desktop(self):
        self.shell = self.start("nemo-desktop")
        eventually("nemo-desktop stands", self._stands)

    def _stands(self):
        return "nemo-desktop" in self.tree()

    def restart_shell(self):
        self.shell.end()
        self.start_desktop()


class KWin(DesktopWindow, X11Row):
    """Which paints neither the root window's picture nor anything of its own below windows."""

    name = "kwin-x11"
    needs = X11Row.needs + ("kwin_x11", "dbus-daemon")
    manager = ("kwin_x11", "--replace", "--no-kactivities")
    lacks = {"show_desktop": "KWin puts the board aside with the windows"}
    own_checks = (comes_back_after_the_desktop_was_shown,)

    def begin(self):
        self.start_bus()
        self.environment["LIBGL_ALWAYS_SOFTWARE"] = "1"
        self.start_manager(*self.manager)
        self.ask("xdotool", "set_num_desktops", "3")
        self.begin_desktop()


# Each takes the place of the one before. Their families of hints take turns, and so do those that
# compose and those that do not.
SUCCESSORS = (
    ("xfwm4", "--replace", "--compositor=on"),
    ("openbox", "--replace", "--sm-disable"),
    ("marco", "--sm-disable", "--replace", "--composite"),
    ("i3", "--replace", "-c", "i3.conf"),
    ("kwin_x11", "--replace", "--no-kactivities"),
    ("xfwm4", "--replace", "--compositor=off"),
    ("muffin", "--replace", "--sm-disable"),
    ("openbox", "--replace", "--sm-disable"),
)


@check(**ALL_SCREENS)
def stands_as_before_under_each_successor(trial):
    for command in SUCCESSORS:
        trial.row.start_manager(*command)
        name = command[0]
        trial.settle(trial.main, "under " + name)
        # Tilers put a new window where the last click was.
        trial.row.click(trial.main, *trial.beside_the_board(trial.main))
        with trial.with_window(trial.main):
            eventually("a window covers it under " + name, lambda: trial.is_covered(trial.main))
        trial.settle(trial.main, "after a window was closed under " + name)
        require(trial.running.is_running(), "it ended under " + name)


@check(**ALL_SCREENS)
def stands_as_before_without_any(trial):
    for running in trial.row.managers:
        running.end(signal.SIGKILL)
    eventually("no window is managed", lambda: trial.row.manager_window() is None)
    trial.settle(trial.main, "without a window manager")
    trial.row.start_manager("openbox", "--sm-disable")
    trial.settle(trial.main, "under one that came late")


class Replaced(X11Row):
    """Window managers that take each other's place while the program runs."""

    name = "managers-replaced"
    needs = X11Row.needs + tuple(command[0] for command in SUCCESSORS) + ("dbus-daemon",)
    manager = ("openbox", "--sm-disable")
    # Xfce looks at outputs, of which an Xvfb has one.
    monitors = ("screen",)
    common_checks = (stands_on_every_screen,)
    own_checks = (stands_as_before_under_each_successor, stands_as_before_without_any)

    def begin(self):
        self.start_bus("org.xfce.Xfconf")
        self.environment["LIBGL_ALWAYS_SOFTWARE"] = "1"
        self.write(I3_CONFIGURATION, "i3.conf")
        self.managers = []
        self.start_manager(*self.manager)

    def start_manager(self, *command, environment=None):
        self.managers.append(super().start_manager(*command, environment=environment))


if __name__ == "__main__":
    run_named(
        *(Alone, Xfce, XfceComposited, XfceOnTwoScreens, Openbox, OpenboxPicom, OpenboxPcmanfm),
        *(I3, KWin, Marco, MarcoComposited, Muffin, Replaced),
    )
