"""The row on the whole GNOME Shell with its desktop icons. It runs without a display of its own;
what it shows, and what a user does, goes through its interfaces on the bus."""

import json
import os
import time

from checks import ALL_SCREENS, check, sleeps_behind_a_window_that_fills_the_screen
from checks import stands_on_every_screen
from desktop_session import eventually, program
from mutter_session import LastingNames, kill_mutter, start_mutter
from neighbours import hexadecimal
from picture import Picture
from row import FIRST_BACKGROUND, Screen
from run import run_named
from trial import require
from x11_row import X11Row

ICONS = "ding@rastersoft.com"
ICONS_FOLDER = "/usr/share/gnome-shell/extensions/" + ICONS

SETTINGS = """
[org/gnome/shell]
enabled-extensions=['%s']
welcome-dialog-last-shown-version='99'
[org/gnome/shell/extensions/ding]
keep-arranged=true
arrangeorder='NAME'
[org/gnome/desktop/interface]
enable-animations=false
[org/gnome/desktop/notifications]
show-banners=false
[org/gnome/desktop/background]
picture-options='none'
color-shading-type='solid'
[org/gnome/desktop/wm/preferences]
num-workspaces=3
[org/gnome/mutter]
dynamic-workspaces=false
"""

# Kept in the shell from its beginning: a pointer and a keyboard, and without what would be taken for
# traces of the board: the clock's minutes, and the button of the overview, which looks otherwise once
# the overview was there.
PREPARATION = """
const seat = imports.gi.Clutter.get_default_backend().get_default_seat();
const kinds = imports.gi.Clutter.InputDeviceType;
globalThis.testPointer = seat.create_virtual_device(kinds.POINTER_DEVICE);
globalThis.testKeyboard = seat.create_virtual_device(kinds.KEYBOARD_DEVICE);
Main.panel.statusArea.dateMenu.hide();
Main.panel.statusArea.activities.hide();
Main.overview.hide();
"""

PANEL_AND_TITLE = 100
# Where the first icon is: left, top and how large.
HOME_ICON = (40, 40, 52)
KEY_A, KEY_ESCAPE = 0x61, 0xFF1B


def start_bus(session, kind="session"):
    """A bus with all services that are installed, named by the environment from here on: the shell
    and its icons start many of them."""
    path = session.path("%s-bus" % kind)
    # The configuration of a session serves for both: it lets everybody own and call everything.
    session.start("dbus-daemon", "--session", "--nofork", "--address=unix:path=" + path)
    eventually("there is a %s bus" % kind, lambda: os.path.exists(path))
    session.environment["DBUS_%s_BUS_ADDRESS" % kind.upper()] = "unix:path=" + path


class GnomeShell(X11Row):
    name = "gnome-shell"
    needs = (
        "gnome-shell",
        "Xwayland",
        "dbus-daemon",
        "dbus-update-activation-environment",
        "gdbus",
        "gsettings",
        "nautilus",
        "convert",
        "xprop",
        "xdotool",
    )
    manager = "gnome-shell"

    @classmethod
    def missing(cls):
        files = (ICONS_FOLDER, "/usr/lib/python3/dist-packages/dbusmock")
        return super().missing() + [each for each in files if not os.path.exists(each)]

    def _start_server(self):
        self.environment.update(
            {
                "XDG_CURRENT_DESKTOP": "GNOME",
                "GSETTINGS_BACKEND": "keyfile",
                "NO_AT_BRIDGE": "1",
            }
        )
        self.write(SETTINGS % ICONS, ".config", "glib-2.0", "settings", "keyfile")
        for name in ("notes.txt", "plan.txt"):
            self.write("A file on the desktop.\n", "Desktop", name)
        start_bus(self, "system")
        self.start("/usr/bin/python3", "-m", "dbusmock", "--system", "--template", "logind")
        eventually("there is a stand-in for logind", self._has_logind)
        start_bus(self)

    def _has_logind(self):
        address = self.environment["DBUS_SYSTEM_BUS_ADDRESS"]
        names = "org.freedesktop.DBus.ListNames"
        target = ("--dest", "org.freedesktop.DBus", "--object-path", "/org/freedesktop/DBus")
        return b"login1" in self.ask("gdbus", "call", "--address", address, *target, "--method", names)

    def begin(self):
        self.set_background(FIRST_BACKGROUND)
        self.start_shell()
        eventually("the icons are there, and stay", self._shows_icons_for_long, 60)

    def start_shell(self):
        width, height = self.size
        monitor = ("--virtual-monitor", "%dx%d" % (width, height))
        shell = ("gnome-shell", "--headless", "--wayland", "--unsafe-mode", *monitor, *monitor)
        self.shell = start_mutter(self, *shell)
        # Programs that the bus starts are to find the display, the file manager above all.
        displays = ("WAYLAND_DISPLAY", "DISPLAY", "XAUTHORITY")
        named = ["%s=%s" % (name, self.environment[name]) for name in displays]
        self.ask("dbus-update-activation-environment", *named)
        eventually("the shell answers", self._is_ready, 60)
        self.evaluate(PREPARATION)
        self._wait_for_icons()

    def _is_ready(self):
        try:
            return self.evaluate("Main.layoutManager._startingUp") is False
        except AssertionError:
            return False

    # What the shell shows may be a little behind: no picture is to have the one before.
    def start_board(self):
        boards = "it.title === 'Orvane'"
        eventually("no board is left", lambda: not self._windows(boards, "it.title"))
        time.sleep(1)
        return super().start_board()

    # ---- Through the shell

    def evaluate(self, script):
        """What the script comes to, within the shell."""
        told = self._call("org.gnome.Shell", "/org/gnome/Shell", "org.gnome.Shell.Eval", script)
        done, answer = told.split(", ", 1)
        if done != "(true":
            raise AssertionError("the shell says %s to %s" % (answer, script))
        text = answer.rstrip(")\n")[1:-1].replace("\\\\", "\\").replace("\\'", "'")
        return json.loads(text) if text else None

    def _call(self, name, path, method, *arguments):
        target = ("--session", "--dest", name, "--object-path", path, "--method", method)
        return self.ask("gdbus", "call", *target, "--", *arguments).decode()

    def _windows(self, condition, answer):
        """Of all windows, also those that the icons' extension keeps out of the shell's lists."""
        actors = "[...global.window_group.get_children(), ...global.top_window_group.get_children()]"
        windows = actors + ".map(it => it.meta_window).filter(it => it)"
        return self.evaluate("%s.filter(it => %s).map(it => %s)" % (windows, condition, answer))

    def _wait_for_icons(self):
        count = len(self.screens())
        shown = lambda: len(self._windows("it.get_wm_class() === 'gjs'", "it.get_id()")) >= count
        eventually("there are windows for the icons", shown, 60)

    def _shows_icons_for_long(self):
        """They are painted one after another, and later than their windows."""
        first = self._icons()
        time.sleep(2)
        return first == self._icons() and first.pixel(HOME_ICON[2], HOME_ICON[2]) != FIRST_BACKGROUND

    def _icons(self):
        """A part of the screen on which all of them are, from the first one on."""
        left, top, size = HOME_ICON
        first = self.screens()[0]
        return self.picture(first).cropped(left - size // 2, top - size // 2, 3 * size, 12 * size)

    # ---- Seeing

    def screens(self):
        return [Screen("XWAYLAND0", *self.size), Screen("XWAYLAND1", *self.size)]

    def picture(self, screen):
        path = self.path("shell.png")
        place = (str(self.left_of(screen)), "0", str(screen.width), str(screen.height))
        service = ("org.gnome.Shell.Screenshot", "/org/gnome/Shell/Screenshot")
        told = self._call(*service, service[0] + ".ScreenshotArea", *place, "false", path)
        require("true" in told, "no picture: " + told)
        return Picture.from_ppm(self.ask("convert", path, "-depth", "8", "ppm:-"))

    def set_root_picture(self, color):
        """The shell shows none of the root window's."""

    def set_background(self, color):
        key = ("org.gnome.desktop.background", "primary-color")
        self.ask("gsettings", "set", *key, "#" + hexadecimal(color))

    # ---- Doing

    def open_window(self, title, screen):
        # What does not fit with its title and the shell's panel is made as large as what is left,
        # on a monitor of the shell's choice.
        lower = Screen(screen.name, screen.width, screen.height - PANEL_AND_TITLE)
        return super().open_window(title, lower)

    def left_of(self, screen):
        return 0 if screen.name == "XWAYLAND0" else self.size[0]

    def _move_to(self, screen, x, y):
        move = "testPointer.notify_absolute_motion(imports.gi.GLib.get_monotonic_time(), %d, %d)"
        self.evaluate(move % (self.left_of(screen) + x, y))

    def click(self, screen, x, y, button=1):
        self._move_to(screen, x, y)
        for state in (1, 0):
            press = "testPointer.notify_button(imports.gi.GLib.get_monotonic_time(), %d, %d)"
            self.evaluate(press % (button, state))

    def _press(self, key):
        for state in (1, 0):
            press = "testKeyboard.notify_keyval(imports.gi.GLib.get_monotonic_time(), %d, %d)"
            self.evaluate(press % (key, state))

    def press_key(self):
        self._press(KEY_A)

    def close_menu(self):
        self._press(KEY_ESCAPE)

    def popups(self):
        kinds = "[imports.gi.Meta.WindowType.DROPDOWN_MENU, imports.gi.Meta.WindowType.POPUP_MENU]"
        return set(self._windows(kinds + ".includes(it.get_window_type())", "it.get_id()"))

    def listed(self):
        """What the window switcher has, what the dash has, and what the overview shows."""
        tabs = "global.display.get_tab_list(imports.gi.Meta.TabList.NORMAL_ALL, null)"
        running = "imports.gi.Shell.AppSystem.get_default().get_running()"
        applications = running + ".flatMap(app => app.get_windows().filter(it => !it.skip_taskbar))"
        return self.evaluate("[...%s, ...%s].map(it => it.title)" % (tabs, applications))

    def restart_shell(self):
        """The part that draws the desktop; the rest of the shell is the display server itself."""
        self.evaluate("Main.extensionManager.disableExtension('%s')" % ICONS)
        eventually("the icons are gone", lambda: not self._has_icons())
        self.evaluate("Main.extensionManager.enableExtension('%s')" % ICONS)
        self._wait_for_icons()

    def _has_icons(self):
        return any("ding.js" in line for line in self.processes())


def _overview_titles(row):
    previews = "Main.overview._overview.controls._workspacesDisplay._workspacesViews"
    previews += ".flatMap(view => view._workspaces || []).flatMap(it => it._windows)"
    previews += ".map(it => it.metaWindow.title)"
    return row.evaluate(previews)


def is_not_among_the_windows_of_the_overview(trial):
    row = trial.row
    with trial.with_window(trial.main, "offered"):
        row.evaluate("Main.overview.show()")
        try:
            eventually("a window is offered", lambda: "offered" in _overview_titles(row))
            require("Orvane" not in _overview_titles(row), "the board is offered")
        finally:
            row.evaluate("Main.overview.hide()")
        eventually("the overview is gone", lambda: not row.evaluate("Main.overview.visible"))
    trial.see(trial.main, "after the overview")


def leaves_icons_to_be_seen_and_chosen(trial):
    """The file manager's own icon, the first, lies over a card's corner."""
    trial.find_board(trial.main)
    place = trial.row.picture(trial.main)
    left, top, size = HOME_ICON
    seen = place.differing_box(trial.bare[trial.main.name])
    require(seen[0] < left + size, "no card is near the icon: %s" % (seen,))
    plain = place.cropped(left, top, size, size)
    icons = trial.bare[trial.main.name].cropped(left, top, size, size)
    require(plain.pixel(size // 2, size // 2) == icons.pixel(size // 2, size // 2), "icon covered")
    trial.row.click(trial.main, left + size // 2, top + size // 2)
    chosen = lambda: trial.row.picture(trial.main).cropped(left, top, size, size) != plain
    eventually("the icon is chosen", chosen)
    trial.row.click(trial.main, *trial.beside_the_board(trial.main))
    eventually("the icon is as before", lambda: not chosen())
    trial.see(trial.main, "after an icon was chosen")


is_not_among_the_windows_of_the_overview.uses = ("open_window",)
is_not_among_the_windows_of_the_overview.settings = {"displayMode": "all"}
is_not_among_the_windows_of_the_overview.title = "is not among the windows of the overview"
leaves_icons_to_be_seen_and_chosen.uses = ("click",)
leaves_icons_to_be_seen_and_chosen.settings = {"displayMode": "all"}
leaves_icons_to_be_seen_and_chosen.title = "leaves icons to be seen and chosen"
GnomeShell.own_checks = (
    leaves_icons_to_be_seen_and_chosen,
    is_not_among_the_windows_of_the_overview,
    sleeps_behind_a_window_that_fills_the_screen,
)


class GnomeShellKilled(GnomeShell):
    """The whole shell is killed, with its Xwayland, and another one started."""

    name = "gnome-shell-killed"
    common_checks = (stands_on_every_screen,)

    def start_shell(self):
        super().start_shell()
        self.names = LastingNames(self)
        self.names.renew()

    def start_board(self):
        return self.start(program("orvane"), environment=self.names.environment)

    def replace_shell(self):
        """The program is let in by then, or at its next attempt."""
        self.names.withdraw()
        kill_mutter(self, self.shell)
        self.start_shell()

    def __exit__(self, *error):
        if hasattr(self, "names"):
            self.names.withdraw()
        super().__exit__(*error)


@check(**ALL_SCREENS)
def stands_on_the_next_shell(trial):
    trial.row.replace_shell()
    for screen in trial.screens:
        trial.settle(screen, "after the shell was killed")
    require(trial.running.output == "", "it says " + trial.running.output)


GnomeShellKilled.own_checks = (stands_on_the_next_shell,)


if __name__ == "__main__":
    run_named(GnomeShell, GnomeShellKilled)
