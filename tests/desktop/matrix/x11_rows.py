"""Rows on X11: nothing but the server, Xfce, Openbox and i3."""

import json
import os

from checks import ON_ONE_WORKSPACE
from desktop_session import eventually, happens, own_display
from neighbours import hexadecimal
from picture import Picture
from row import FIRST_BACKGROUND
from run import run_named
from sway_session import SwaySession
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
    own_checks = ON_ONE_WORKSPACE

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
    own_checks = ()
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
    own_checks = ON_ONE_WORKSPACE

    def begin(self):
        self.start_manager(*self.manager)


class OpenboxPicom(Openbox):
    name = "openbox-picom"
    own_checks = ()
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
    own_checks = ()

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


if __name__ == "__main__":
    run_named(Alone, Xfce, XfceComposited, XfceOnTwoScreens, Openbox, OpenboxPicom, OpenboxPcmanfm, I3)
