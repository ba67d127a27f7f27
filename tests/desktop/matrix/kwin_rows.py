"""The rows on KWin: alone, where a client draws the desktop's background, and with Plasma's shell,
whose desktop shows the files of a folder. The second output has a scale of 1.25."""

from checks import ALL_SCREENS, check, comes_back_after_the_desktop_was_shown
from desktop_session import eventually, happens
from kwin_session import KWinSession, hexadecimal
from neighbours import Layers
from row import FIRST_BACKGROUND, WINDOW, Row, Screen
from run import run_named

KEY_ESCAPE = 1
KEY_A = 30
ACTIVITIES = "/usr/lib/x86_64-linux-gnu/libexec/kactivitymanagerd"
SET_COLOR = """
desktops().forEach(function (desktop) {
  desktop.wallpaperPlugin = "org.kde.color";
  desktop.currentConfigGroup = ["Wallpaper", "org.kde.color", "General"];
  desktop.writeConfig("Color", "#%s");
});
"""


@check(**ALL_SCREENS)
def leaves_icons_usable(trial):
    """The second icon of the desktop's folder lies partly behind the board."""
    x, y = 168, 60
    plain = trial.row.picture(trial.main).cropped(x - 45, y - 50, 90, 30)
    trial.row.click(trial.main, x, y)
    looks = lambda: trial.row.picture(trial.main).cropped(x - 45, y - 50, 90, 30)
    eventually("the icon that was clicked is marked", lambda: looks() != plain)
    trial.row.click(trial.main, *trial.beside_the_board(trial.main))
    eventually("another click takes the mark away", lambda: looks() == plain)
    trial.see(trial.main, "after its icons were used")


class KWinRow(KWinSession, Row):
    needs = ("kwin_wayland", "kscreen-doctor", "dbus-daemon")
    lacks = {"one_workspace_only": "what lies on a layer is on every desktop"}
    # In points: where an output begins.
    places = {"Virtual-0": 0, "Virtual-1": 1280}

    def __init__(self):
        super().__init__(outputs=2)

    def __enter__(self):
        super().__enter__()
        try:
            self.configure("output.Virtual-1.scale.1.25")
            self.begin()
            return self
        except BaseException as error:
            self.__exit__(type(error), error, None)
            raise

    def begin(self):
        """Starts what draws the desktop."""

    def screens(self):
        return [Screen("Virtual-0", 1280, 720), Screen("Virtual-1", 1280, 720, 1.25)]

    def picture(self, screen="Virtual-0"):
        return super().picture(getattr(screen, "name", screen))

    def _points(self, screen, x, y):
        return (self.places[screen.name] + int(x / screen.scale), int(y / screen.scale))

    def open_window(self, title, screen):
        # KWin puts a new window on the output that the pointer is on.
        self.point(*self._points(screen, screen.width - 5, screen.height // 2))
        window = self.neighbour("maximized", title, WINDOW)
        eventually("the window has the focus", lambda: "focused" in window.lines)
        return window

    def press_key(self):
        self.press(KEY_A)

    def click(self, screen, x, y):
        self.click_at(*self._points(screen, x, y))

    def listed(self):
        """What neither taskbar, pager nor switcher leave out."""
        omits = ("skipTaskbar", "skipPager", "skipSwitcher")
        shown = [it for it in self.windows() if not all(it[each] for each in omits)]
        return ["%s %s" % (it["caption"], it["resourceClass"]) for it in shown]

    def show_workspace(self, index):
        desktops = ("org.kde.KWin", "/VirtualDesktopManager")
        if self._count_of_desktops() < 2:
            interface = "org.kde.KWin.VirtualDesktopManager"
            self.call(*desktops, interface, "createDesktop", "(us)", 1, "elsewhere")
            eventually("there are two desktops", lambda: self._count_of_desktops() == 2)
        number = index + 1
        self.call("org.kde.KWin", "/KWin", "org.kde.KWin", "setCurrentDesktop", "(i)", number)
        current = lambda: self.call("org.kde.KWin", "/KWin", "org.kde.KWin", "currentDesktop")
        eventually("desktop %d is shown" % number, lambda: current() == (number,))

    def _count_of_desktops(self):
        asked = ("org.freedesktop.DBus.Properties", "Get", "(ss)")
        interface = "org.kde.KWin.VirtualDesktopManager"
        (count,) = self.call("org.kde.KWin", "/VirtualDesktopManager", *asked, interface, "count")
        return count


class Alone(Layers, KWinRow):
    name = "kwin"
    lacks = {
        **KWinRow.lacks,
        "show_desktop": "KWin shows no desktop where no window is one",
    }

    def begin(self):
        self.set_background(FIRST_BACKGROUND)


class Plasma(KWinRow):
    name = "kwin-plasma"
    needs = (*KWinRow.needs, "plasmashell", ACTIVITIES)
    lacks = {
        **KWinRow.lacks,
        "show_desktop": "KWin before Plasma 6.3 puts the board aside with the windows",
    }
    own_checks = (comes_back_after_the_desktop_was_shown, leaves_icons_usable)
    desktops = 2

    def begin(self):
        for name in ("first", "second", "third"):
            self.write("text", "Desktop", name + ".txt")
        self.start(ACTIVITIES, environment={"QT_QPA_PLATFORM": "offscreen"})
        eventually("there are activities", lambda: self.has_name("org.kde.ActivityManager"))
        self._start_shell()
        self.script("panels().forEach(function (panel) { panel.remove(); })")
        self.set_background(FIRST_BACKGROUND)
        self._wait_for_desktops(FIRST_BACKGROUND)

    def _start_shell(self):
        environment = {"QT_QUICK_BACKEND": "software", "XDG_CURRENT_DESKTOP": "KDE"}
        self.shell = self.start("plasmashell", "--no-respawn", environment=environment)
        eventually("Plasma's shell is there", lambda: self.has_name("org.kde.plasmashell"), 60)
        count = lambda: self.script("print(desktops().length)")
        eventually("it has its desktops", lambda: count() == str(self.desktops), 60)

    def _wait_for_desktops(self, color):
        places = [(screen, screen.width - 20, screen.height - 20) for screen in self.screens()]
        for screen, x, y in places:
            look = lambda it=screen, at=(x, y): self.picture(it).pixel(*at) == color
            eventually("%s shows its desktop" % screen.name, look, 40)

    def script(self, text):
        shell = ("org.kde.plasmashell", "/PlasmaShell", "org.kde.PlasmaShell")
        (printed,) = self.call(*shell, "evaluateScript", "(s)", text)
        return printed.strip()

    def set_background(self, color):
        self.script(SET_COLOR % hexadecimal(color))

    def restart_shell(self):
        self.shell.end()
        eventually("the shell is gone", lambda: not self.has_name("org.kde.plasmashell"))
        self._start_shell()
        self._wait_for_desktops(FIRST_BACKGROUND)

    def reaches_below(self, screen, x, y):
        """The desktop's menu opens at the second button."""
        before = self.picture(screen)
        is_open = lambda: self._is_menu_open(before, self.picture(screen))
        self.click_at(*self._points(screen, x, y), "right")
        if not happens(is_open, 5):
            return False
        self.press(KEY_ESCAPE)
        eventually("the menu is gone", lambda: not is_open())
        return True

    @staticmethod
    def _is_menu_open(before, now):
        box = now.differing_box(before)
        # Far more than what changes on the board in a second.
        return box is not None and box[2] - box[0] > 100 and box[3] - box[1] > 200


if __name__ == "__main__":
    run_named(Alone, Plasma)
