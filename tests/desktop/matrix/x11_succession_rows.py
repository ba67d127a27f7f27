"""A row in which one X11 window manager comes after the other."""

import signal

from checks import ALL_SCREENS, check, stands_on_every_screen
from desktop_session import eventually
from run import run_named
from trial import require
from x11_row import X11Row
from x11_rows import I3_CONFIGURATION

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
    run_named(Replaced)
