"""Rows on X11 with the window managers of MATE, Cinnamon and Plasma."""

from checks import ALL_SCREENS, PUT_ASIDE_ON_ONE_WORKSPACE, check
from checks import comes_back_after_the_desktop_was_shown
from desktop_session import eventually
from neighbours import DesktopWindow, hexadecimal
from row import FIRST_BACKGROUND
from run import run_named
from x11_row import X11Row


class Marco(X11Row):
    name = "marco-caja"
    needs = X11Row.needs + ("marco", "caja", "gsettings", "dbus-daemon")
    manager = ("marco", "--sm-disable", "--replace", "--no-composite")
    own_checks = PUT_ASIDE_ON_ONE_WORKSPACE

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
    own_checks = ()
    manager = ("marco", "--sm-disable", "--replace", "--composite")


def workspaces_of_boards(row):
    """As the window manager has noted them at each window of the program, in xprop's words."""
    windows = row.root_windows("_NET_CLIENT_LIST")
    boards = [each for each in windows if '"org.orvane.Orvane"' in row.window_property(each, "WM_CLASS")]
    return [row.window_property(each, "_NET_WM_DESKTOP").partition(" = ")[2] for each in boards]


EVERY_WORKSPACE = str(2**32 - 1)


@check(**ALL_SCREENS)
def is_noted_to_be_on_every_workspace(trial):
    """In the place of seeing it there."""
    noted = lambda: workspaces_of_boards(trial.row)
    expected = [EVERY_WORKSPACE] * len(trial.screens)
    eventually("each board is noted so", lambda: noted() == expected)


@check(displayMode="all", showOnAllSpaces=False)
def is_noted_to_be_on_one_workspace_when_so_set(trial):
    noted = lambda: workspaces_of_boards(trial.row)
    expected = ["0"] * len(trial.screens)
    eventually("each board is noted so", lambda: noted() == expected)


NEVER_DONE = "without its shell Muffin begins to switch workspaces, and never ends it"


class Muffin(X11Row):
    """Alone, without the shell of Cinnamon around it, but with the desktop of its file manager."""

    name = "muffin-nemo"
    needs = X11Row.needs + ("muffin", "nemo-desktop", "dbus-daemon")
    manager = ("muffin", "--replace", "--sm-disable")
    lacks = {"show_workspace": NEVER_DONE, "one_workspace_only": NEVER_DONE}
    own_checks = (is_noted_to_be_on_every_workspace, is_noted_to_be_on_one_workspace_when_so_set)

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


if __name__ == "__main__":
    run_named(KWin, Marco, MarcoComposited, Muffin)
