"""The rows on X11."""

import time

from desktop_session import eventually, program
from run import run_named
from x11_row import X11Row


class Alone(X11Row):
    name = "xvfb"
    lacks = {
        "show_workspace": "no window manager, no workspaces",
        "one_workspace_only": "no window manager, no workspaces",
        "show_desktop": "no window manager shows the desktop",
        "listed": "no window manager lists windows",
        "restart_shell": "nothing draws the desktop",
    }

    def begin(self):
        self.watcher = self.start(program("tests", "x11_client"), "root")
        eventually("clicks on the root are watched", lambda: "ready" in self.watcher.lines)

    def reaches_below(self, screen, x, y):
        before = self.watcher.lines.count("pressed")
        self.click(screen, x, y)
        limit = time.monotonic() + 3
        while self.watcher.lines.count("pressed") == before:
            if time.monotonic() > limit:
                return False
            time.sleep(0.05)
        return True


if __name__ == "__main__":
    run_named(Alone)
