"""A desktop on paper: a row without any programs, whose board has exactly the faults that it is
given. The checks are tried on it, since a check that cannot fail says nothing."""

from picture import Picture
from row import FIRST_BACKGROUND, WINDOW, Row, Screen

BOARD = (20, 20, 180, 150)  # left, top, right, bottom


class PaperProgram:
    def __init__(self, desktop):
        self.desktop = desktop
        self.output = "orvane: a complaint\n" if "complains" in desktop.faults else ""

    def is_running(self):
        return "dies" not in self.desktop.faults

    def end(self):
        self.desktop.program = None
        self.desktop.left_over = bool(self.desktop.faults & {"leaves a window", "leaves a process"})
        return 3 if "ends badly" in self.desktop.faults else 0


class PaperWindow:
    def __init__(self, desktop, title, screen):
        self.desktop = desktop
        self.title = title
        self.screen = screen
        self.lines = []

    def end(self):
        self.desktop.window = None
        self.desktop.desktop_is_shown = False


class PaperDesktop(Row):
    name = "paper"

    def __init__(self, faults=()):
        self.faults = set(faults)
        self.settings = {}
        self.program = None
        self.left_over = False
        self.window = None
        self.color = FIRST_BACKGROUND
        self.workspace = 0
        self.desktop_is_shown = False
        self.focus_is_taken = False
        self.events = set()

    def prepare(self, **settings):
        self.settings = settings

    def start_board(self):
        self.program = PaperProgram(self)
        self.left_over = False
        self.events = set()
        self.focus_is_taken = "takes the focus" in self.faults
        return self.program

    def traces(self):
        return ["a process"] if self.left_over and "leaves a process" in self.faults else []

    def screens(self):
        return [Screen("ONE", 320, 240), Screen("TWO", 320, 240)]

    # ---- What stands where

    def _chosen(self, screen):
        mode = self.settings["displayMode"]
        if "ignores the chosen screen" in self.faults:
            mode = "all"
        if "knows the main screen only" in self.faults:
            mode = "main"
        if mode == "selected":
            return screen.identifier == self.settings["selectedDisplayID"]
        return mode == "all" or screen.name == "ONE"

    def _has_board(self, screen):
        if self.program is None:
            return self.left_over and "leaves a window" in self.faults and screen.name == "ONE"
        if not self._chosen(screen) or "is not shown" in self.faults:
            return False
        gone = {"clicked": "goes when clicked", "shown": "goes when the desktop is shown"}
        gone.update(background="goes with the background", restart="goes with the desktop")
        if any(gone[event] in self.faults for event in self.events):
            return False
        if self.workspace == 0 or "stays on all workspaces" in self.faults:
            return True
        return self.settings.get("showOnAllSpaces", True) and "has one workspace" not in self.faults

    def picture(self, screen):
        data = bytearray(bytes(self.color) * (screen.width * screen.height))
        layers = []
        if self._has_board(screen):
            area = (0, 0, 320, 240) if "covers everything" in self.faults else BOARD
            layers.append((area, self._board_color(screen)))
        if self.window and self.window.screen.name == screen.name and not self.desktop_is_shown:
            at = len(layers) if "lies over windows" not in self.faults else 0
            layers.insert(at, ((0, 0, 320, 240), WINDOW))
        for (left, top, right, bottom), color in layers:
            for y in range(top, bottom):
                start = 3 * (y * screen.width + left)
                data[start : start + 3 * (right - left)] = bytes(color) * (right - left)
        return Picture(screen.width, screen.height, bytes(data))

    def _board_color(self, screen):
        below = FIRST_BACKGROUND if "keeps the old background" in self.faults else self.color
        return tuple((part + 255) // 2 for part in below)

    # ---- What happens

    def set_background(self, color):
        if color != self.color:
            self.events.add("background")
        self.color = color

    def open_window(self, title, screen):
        self.window = PaperWindow(self, title, screen)
        return self.window

    def press_key(self):
        if self.window and not self.focus_is_taken:
            self.window.lines.append("key")

    def reaches_below(self, screen, x, y):
        return "takes clicks" not in self.faults

    def click(self, screen, x, y):
        self.events.add("clicked")

    def listed(self):
        titles = [self.window.title] if self.window else []
        return titles + (["Orvane"] if "is listed" in self.faults else [])

    def show_workspace(self, index):
        self.workspace = index

    def show_desktop(self, shown):
        self.events.add("shown")
        self.desktop_is_shown = shown

    def restart_shell(self):
        self.events.add("restart")
