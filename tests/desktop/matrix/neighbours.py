"""Desktops that are nothing but neighbours of the board, which tell of the clicks that they get."""

from desktop_session import eventually, happens, program
from row import FIRST_BACKGROUND, Screen


def hexadecimal(color):
    return "%02x%02x%02x" % color


def reports_release(neighbour, click):
    before = neighbour.lines.count("released")
    click()
    return happens(lambda: neighbour.lines.count("released") > before)


class HeadlessOutputs:
    """Two outputs side by side, of which the second has a scale of 1.5."""

    def screens(self):
        make_and_model = ("headless", "headless")
        return [
            Screen("HEADLESS-1", 1280, 720, 1, *make_and_model),
            Screen("HEADLESS-2", 1920, 1080, 1.5, *make_and_model),
        ]


class Layers:
    """On Wayland: a surface on the background layer of each output. For a row with `places`, whose
    keys name the outputs, and with `background(name, color)`, which starts a neighbour."""

    neighbours = {}

    def set_background(self, color):
        before, self.neighbours = self.neighbours, {}
        for name in self.places:
            self.neighbours[name] = self.background(name, color)
        for neighbour in before.values():
            neighbour.end()

    def restart_shell(self):
        for neighbour in self.neighbours.values():
            neighbour.end()
        self.neighbours = {}
        self.set_background(FIRST_BACKGROUND)

    def reaches_below(self, screen, x, y):
        background = self.neighbours[screen.name]
        return reports_release(background, lambda: self.click(screen, x, y))


class DesktopWindow:
    """On X11: a window that says it is the desktop, as file managers do, over all screens."""

    desktop = None

    def begin_desktop(self):
        self._show_desktop_window(FIRST_BACKGROUND)

    def _show_desktop_window(self, color):
        before = self.desktop
        width, height = self.size
        place = ("0", "0", str(len(self.screens()) * width), str(height))
        client = program("tests", "x11_client")
        self.desktop = self.start(client, "desktop", "desktop", hexadecimal(color), *place)
        eventually("the desktop is there", lambda: "ready" in self.desktop.lines)
        if before:
            before.end()
        self.wait_for_order()

    def wait_for_order(self):
        """Where a new desktop is put above what was there, the board has to follow."""

        def is_in_order():
            windows = self.root_windows("_NET_CLIENT_LIST_STACKING")
            titles = [self.window_property(each, "WM_NAME") for each in windows]
            boards = [place for place, title in enumerate(titles) if "Orvane" in title]
            desktops = [place for place, title in enumerate(titles) if "desktop" in title]
            return not boards or len(desktops) == 1 and min(boards) > max(desktops)

        eventually("the board is above the desktop", is_in_order, 5)

    def set_background(self, color):
        if self.desktop:
            self._show_desktop_window(color)

    def restart_shell(self):
        self.desktop.end()
        self._show_desktop_window(FIRST_BACKGROUND)

    def reaches_below(self, screen, x, y):
        return reports_release(self.desktop, lambda: self.click(screen, x, y))
