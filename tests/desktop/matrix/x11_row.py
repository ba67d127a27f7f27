"""Rows on X11: an Xvfb of two monitors side by side, and what is done there with the tools that
every X11 desktop has. A row adds its window manager and its desktop."""

import os
import re
import shutil

from desktop_session import DesktopSession, eventually, happens, own_display, program
from neighbours import hexadecimal
from picture import Picture
from row import FIRST_BACKGROUND, WINDOW, Row, Screen

TOOLS = ("Xvfb", "xprop", "xwininfo", "xdotool", "xrandr", "hsetroot")


BUS = """<busconfig>
  <type>session</type>
  <listen>unix:tmpdir=/tmp</listen>
  <auth>EXTERNAL</auth>
  <servicedir>%s</servicedir>
  <policy context="default">
    <allow send_destination="*" eavesdrop="true"/>
    <allow eavesdrop="true"/>
    <allow own="*"/>
  </policy>
</busconfig>
"""


class X11Row(DesktopSession, Row):
    needs = TOOLS
    # None where there is none.
    manager = None
    # Side by side; more than one are of the tests' own making, over the server's only output.
    monitors = ("DP-1", "DP-2")
    size = (1280, 720)

    def __enter__(self):
        try:
            self._start_server()
            self.set_root_picture(FIRST_BACKGROUND)
            self.begin()
            return self
        except BaseException as error:
            self.__exit__(type(error), error, None)
            raise

    def begin(self):
        """Starts the window manager and the desktop."""

    def _start_server(self):
        width, height = self.size
        whole = "%dx%dx24" % (len(self.monitors) * width, height)
        screen = ("-screen", "0", whole)
        told = ("-displayfd", "1", "-nolisten", "tcp", "-noreset")
        self.start_display("Xvfb", own_display(), *screen, *told)
        self.set_monitors()

    def start_display(self, *command):
        self.server = self.start(*command)
        number = eventually("the display has a number", self._display_number)
        self.environment["DISPLAY"] = ":" + number
        self.environment["GDK_BACKEND"] = "x11"
        self.environment["GIO_USE_VFS"] = "local"
        self.environment["GSETTINGS_BACKEND"] = "keyfile"
        self.environment["NO_AT_BRIDGE"] = "1"

    def _display_number(self):
        return next((line for line in self.server.lines if re.fullmatch(r"\d+", line)), None)

    def set_monitors(self):
        width, height = self.size
        for screen in self.screens() if len(self.monitors) > 1 else ():
            left = self.left_of(screen)
            place = "%d/%dx%d/%d+%d+0" % (width, width // 4, height, height // 4, left)
            output = "none" if left else "screen"
            self.ask("xrandr", "--setmonitor", screen.name, place, output)

    def left_of(self, screen):
        return self.monitors.index(screen.name) * self.size[0]

    def start_bus(self, *services):
        """A bus that starts these services and no others, whatever else is installed."""
        os.mkdir(self.path("services"))
        for service in services:
            shutil.copy("/usr/share/dbus-1/services/%s.service" % service, self.path("services"))
        self.write(BUS % self.path("services"), "bus.conf")
        configuration = "--config-file=" + self.path("bus.conf")
        bus = self.start("dbus-daemon", configuration, "--nofork", "--print-address=1")
        address = eventually("the bus tells its address", lambda: bus.lines and bus.lines[0])
        self.environment["DBUS_SESSION_BUS_ADDRESS"] = address

    def start_manager(self, *command, environment=None):
        """Starts a window manager, maybe in the place of another, and waits until it manages."""
        before = self.manager_window()
        running = self.start(*command, environment=environment)

        def manages():
            now = self.manager_window()
            return now is not None and now != before

        eventually("%s manages the windows" % command[0], manages)
        return running

    def manager_window(self):
        found = self.root_number("_NET_SUPPORTING_WM_CHECK")
        if found is None:
            return None
        try:
            named = self.ask("xprop", "-id", hex(found), "_NET_SUPPORTING_WM_CHECK").decode()
        except AssertionError:
            return None
        return found if ("%#x" % found) in named else None

    def root_property(self, name):
        return self.ask("xprop", "-root", name).decode(errors="replace").partition("\n")[0]

    def root_number(self, name):
        found = re.search(r"(?:= |# )(0x[0-9a-f]+|\d+)", self.root_property(name))
        return int(found.group(1), 0) if found else None

    def root_windows(self, name):
        return re.findall(r"0x[0-9a-f]+", self.root_property(name))

    def window_property(self, window, name):
        """As xprop prints it; empty for a window that has gone."""
        try:
            return self.ask("xprop", "-id", window, name).decode(errors="replace").strip()
        except AssertionError:
            return ""

    # ---- Seeing

    def screens(self):
        return [Screen(name, *self.size) for name in self.monitors]

    def whole_picture(self):
        return Picture.from_ppm(self.ask(program("tests", "x11_client"), "picture"))

    def picture(self, screen):
        left = self.left_of(screen)
        return self.whole_picture().cropped(left, 0, screen.width, screen.height)

    def set_background(self, color):
        self.set_root_picture(color)

    def set_root_picture(self, color):
        self.ask("hsetroot", "-solid", "#" + hexadecimal(color))

    # ---- Doing

    def open_window(self, title, screen):
        return self._open("window", title, screen)

    def fill_screen(self, title, screen):
        """A window like another, but one that asks for the whole screen."""
        return self._open("fullscreen", title, screen)

    def _open(self, kind, title, screen):
        left = self.left_of(screen)
        client = program("tests", "x11_client")
        place = (str(left), "0", str(screen.width), str(screen.height))
        window = self.start(client, kind, title, hexadecimal(WINDOW), *place)
        eventually("the window is there", lambda: "ready" in window.lines)
        self.focus(window, title)
        return window

    def focus(self, window, title):
        if self.manager is None:
            (found,) = self.ask("xdotool", "search", "--name", "^%s$" % title).split()
            self.ask("xdotool", "windowfocus", found.decode())
        eventually("the window has the focus", lambda: "focused" in window.lines)

    def press_key(self):
        self.ask("xdotool", "key", "a")

    def move_to(self, screen, x, y):
        left = self.left_of(screen)
        self.ask("xdotool", "mousemove", str(left + x), str(y))

    def click(self, screen, x, y, button=1):
        self.move_to(screen, x, y)
        self.ask("xdotool", "click", str(button))

    def reaches_below(self, screen, x, y):
        """The desktop's menu opens at the third button."""
        before = self.popups()
        self.click(screen, x, y, 3)
        if not happens(lambda: self.popups() - before):
            return False
        self.close_menu()
        eventually("the menu is gone", lambda: not self.popups() - before)
        return True

    def watch_root(self):
        """Where nothing else is below the board, and nobody opens a menu there."""
        self.watcher = self.start(program("tests", "x11_client"), "root")
        eventually("clicks on the root are watched", lambda: "ready" in self.watcher.lines)

    def reaches_root(self, screen, x, y):
        before = self.watcher.lines.count("pressed")
        self.click(screen, x, y)
        return happens(lambda: self.watcher.lines.count("pressed") > before)

    def close_menu(self):
        self.ask("xdotool", "key", "Escape")

    def popups(self):
        """The windows that are shown at the top, whoever manages them, and can be seen."""
        return {window for window in self.top_levels() if self._can_be_seen(self.about(window))}

    @staticmethod
    def _can_be_seen(told):
        sizes = [int(each) for each in re.findall(r"(?:Width|Height): (\d+)", told)]
        return "IsViewable" in told and len(sizes) == 2 and min(sizes) > 20

    def tree(self):
        """All windows as xwininfo tells them, which it fails to do when one goes meanwhile."""
        try:
            return self.ask("xwininfo", "-root", "-tree").decode(errors="replace")
        except AssertionError:
            return ""

    def top_levels(self):
        return re.findall(r"^ {5}(0x[0-9a-f]+)", self.tree(), re.MULTILINE)

    def about(self, window):
        try:
            return self.ask("xwininfo", "-id", window).decode(errors="replace")
        except AssertionError:
            return ""

    def listed(self):
        """As taskbars, pagers and switchers do: what the manager lists, without what says that it
        is not to be, and without desktops and docks."""
        titles = []
        for window in self.root_windows("_NET_CLIENT_LIST"):
            state = self.window_property(window, "_NET_WM_STATE")
            kind = self.window_property(window, "_NET_WM_WINDOW_TYPE")
            if "SKIP_TASKBAR" in state and "SKIP_PAGER" in state:
                continue
            if "TYPE_DESKTOP" in kind or "TYPE_DOCK" in kind:
                continue
            titles.append(self.window_property(window, "WM_NAME").partition("= ")[2].strip('"'))
        return titles

    def show_workspace(self, index):
        self.ask("xdotool", "set_desktop", str(index))
        self.wait_for_workspace(index)

    def wait_for_workspace(self, index):
        current = lambda: self.root_number("_NET_CURRENT_DESKTOP")
        eventually("workspace %d is shown" % index, lambda: current() == index)

    def show_desktop(self, shown):
        """With the message that panels send for it."""
        self.ask(program("tests", "x11_client"), "show-desktop", "1" if shown else "0")
        showing = lambda: self.root_number("_NET_SHOWING_DESKTOP")
        eventually("the desktop is shown" if shown else "it is as before", lambda: showing() == shown)

    def traces(self):
        tree = eventually("the windows are told", self.tree)
        return super().traces() + [line for line in tree.splitlines() if "org.orvane" in line]
