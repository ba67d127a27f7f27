"""Rows for the desktop's own icons: in focus mode they are hidden, afterwards everything is as the
user had it, on the screen and in the desktop's settings. The board stands on the second screen, so
that the first shows the icons alone; pictures of it are kept in ORVANE_DESKTOPS."""

import json
import os
import signal
import sys
import time

import run
from desktop_session import eventually
from gnome_shell_rows import GnomeShell
from kwin_rows import Plasma
from row import FIRST_BACKGROUND
from trial import require, throughout

NAME = "org.orvane.Orvane"
# Icons that the user has put somewhere, as Plasma keeps it.
PLACES = {"1280x720": [2, 6, "first", 0, 0, "second", 4, 3, "third", 2, 2]}
ARRANGE = """
var desktop = desktops()[0];
desktop.currentConfigGroup = ["General"];
desktop.writeConfig("sortMode", -1);
desktop.writeConfig("positions", [%s]);
desktop.reloadConfig();
"""
# What lies in the desktop's own folder stays on the first screen.
SHOW_ON_SECOND = """
desktops().forEach(function (desktop) {
  if (desktop.screen !== 1) return;
  desktop.currentConfigGroup = ["General"];
  desktop.writeConfig("url", %s);
  desktop.reloadConfig();
});
"""
TELL = """
print(JSON.stringify(desktops().map(function (desktop) {
  desktop.currentConfigGroup = ["General"];
  return desktop.configKeys.map(function (key) {
    // Places are written down with the files in no order.
    var value = String(desktop.readConfig(key)).replace(/[^\\w:/.,-]/g, "");
    return [key, value.split(",").sort()];
  });
})));
"""


class IconRow:
    """What a row of this file adds to its desktop."""

    shell_can_restart = True

    def choice(self):
        """All that the desktop's settings say about its icons, to be compared."""
        raise NotImplementedError

    def arrange(self):
        """What the user has chosen before the program ever ran."""

    def action(self, name):
        self.ask("gapplication", "action", NAME, name)

    def begin_board(self, **settings):
        defaults = {"displayMode": "selected", "hideDesktopIconsInFocus": True}
        defaults["selectedDisplayID"] = self.screens()[-1].identifier
        self.prepare(**{**defaults, **settings})
        return self.run_board()

    def run_board(self):
        running = self.start_board()
        eventually("it takes orders", lambda: NAME in self.bus_names())
        return running

    def bus_names(self):
        target = ("--dest", "org.freedesktop.DBus", "--object-path", "/org/freedesktop/DBus")
        method = "org.freedesktop.DBus.ListNames"
        return self.ask("gdbus", "call", "--session", *target, "--method", method).decode()

    def resting_picture(self):
        """Of the main screen, once it has been the same for a while."""
        seen = []

        def rests():
            picture = self.picture(self.screens()[0])
            if seen and seen[-1] != picture:
                seen.clear()
            seen.append(picture)
            time.sleep(0.2)
            return len(seen) >= 6

        eventually("the main screen rests", rests, 60)
        return seen[-1]


class PlasmaIcons(IconRow, Plasma):
    name = "icons-plasma"
    needs = (*Plasma.needs, "gapplication", "gdbus")

    def __init__(self):
        super().__init__()
        self.environment["XDG_CURRENT_DESKTOP"] = "KDE"

    def arrange(self):
        place = lambda it: "desktop:/%s.txt" % it if it in ("first", "second", "third") else str(it)
        places = {size: [place(it) for it in all] for size, all in PLACES.items()}
        self.script(ARRANGE % json.dumps(json.dumps(places)))
        self.restart_shell()

    def choice(self):
        return self.script(TELL)


class PlasmaNewScreen(PlasmaIcons):
    """With one screen only, until the other is there for the first time."""

    name = "icons-plasma-new-screen"
    desktops = 1

    def begin(self):
        self.configure("output.Virtual-1.disable")
        super().begin()

    def screens(self):
        return super().screens()[: self.desktops]

    def plug_in(self):
        self.configure("output.Virtual-1.enable")
        self.desktops = 2
        eventually("it has a desktop", lambda: self.script("print(desktops().length)") == "2", 60)
        self.set_background(FIRST_BACKGROUND)
        self.write("text", "Elsewhere", "fourth.txt")
        self.script(SHOW_ON_SECOND % json.dumps("file://" + self.path("Elsewhere")))

    def remembered(self):
        """How many desktops' states are written down."""
        try:
            with open(self.path(".local", "state", "orvane", "desktop-icons"), encoding="utf-8") as file:
                return file.read().count('"id"')
        except FileNotFoundError:
            return 0


class GnomeIcons(IconRow, GnomeShell):
    name = "icons-gnome-shell"
    needs = (*GnomeShell.needs, "gapplication")
    # Nothing of it can without a change of the very settings that are looked at.
    shell_can_restart = False

    def choice(self):
        """The user's own values: a key that is not set is not in the file."""
        with open(self.path(".config", "glib-2.0", "settings", "keyfile"), encoding="utf-8") as file:
            return sorted(line for line in file.read().splitlines() if "-extensions=" in line)


# ---- What is tried


def are_hidden_and_shown_again(row, shown, choice):
    running = row.begin_board()
    _keep(row, "1-shown", row.resting_picture())
    row.action("toggle-focus")
    _become_hidden(row, shown)
    hidden = row.resting_picture()
    _keep(row, "2-hidden", hidden)
    _shows_background(hidden, shown)
    row.action("toggle-focus")
    _become_as_before(row, shown, choice)
    _keep(row, "3-shown-again", row.resting_picture())
    _end(running)


def stay_hidden_when_the_program_ends(row, shown, choice):
    running = row.begin_board()
    row.action("toggle-focus")
    _become_hidden(row, shown)
    _end(running)
    throughout("the icons stay hidden", lambda: _are_hidden(row, shown), 2)
    if row.shell_can_restart:
        row.restart_shell()
        require(row.resting_picture() != shown, "the shell that came back shows them")
    running = row.run_board()
    throughout("a run in focus mode leaves them hidden", lambda: _are_hidden(row, shown), 2)
    row.action("toggle-focus")
    _become_as_before(row, shown, choice)
    _end(running)


def are_given_back_after_a_crash(row, shown, choice):
    running = row.begin_board()
    row.action("toggle-focus")
    _become_hidden(row, shown)
    running.end(signal.SIGKILL)
    running = row.begin_board(focusMode=False)
    _become_as_before(row, shown, choice)
    _end(running)


def are_left_alone_where_it_is_not_wanted(row, shown, choice):
    running = row.begin_board(hideDesktopIconsInFocus=False)
    row.action("toggle-focus")
    throughout("the icons stay", lambda: not _are_hidden(row, shown), 2)
    require(row.choice() == choice, "the desktop's settings are others")
    _end(running)


CHECKS = (
    are_hidden_and_shown_again,
    stay_hidden_when_the_program_ends,
    are_given_back_after_a_crash,
    are_left_alone_where_it_is_not_wanted,
)


def _are_hidden(row, shown):
    return row.picture(row.screens()[0]) != shown


def _become_hidden(row, shown):
    eventually("the icons are hidden", lambda: _are_hidden(row, shown), 30)
    require(row.resting_picture() != shown, "they came back by themselves")


def _shows_background(hidden, shown):
    """Where the icons were, and nothing else."""
    left, top, right, bottom = hidden.differing_box(shown)
    plain = hidden.count(FIRST_BACKGROUND, left, top, right, bottom)
    require(plain == (right - left) * (bottom - top), "something else than the background is there")


def _become_as_before(row, shown, choice):
    eventually("the icons are as they were", lambda: not _are_hidden(row, shown), 60)
    require(row.resting_picture() == shown, "they did not stay so")
    now = row.choice()
    require(now == choice, "the desktop's settings were %s and are %s" % (choice, now))
    state = row.path(".local", "state", "orvane", "desktop-icons")
    eventually("nothing is remembered any more", lambda: not os.path.exists(state))


def _end(running):
    require(running.end() == 0, "exit status %s: %s" % (running.process.returncode, running.output))
    require(not running.output, "it wrote: " + running.output)


def _keep(row, name, picture):
    folder = os.environ.get("ORVANE_DESKTOPS")
    if folder:
        os.makedirs(folder, exist_ok=True)
        picture.save_png(os.path.join(folder, "%s-%s.png" % (row.name, name)))


def _of_a_new_screen_are_hidden_too(row):
    running = row.begin_board()
    row.action("toggle-focus")
    eventually("the icons of the first are hidden", lambda: row.remembered() == 1)
    row.plug_in()
    new = row.screens()[-1]
    pixels = new.width * new.height
    plain = lambda: row.picture(new).count(FIRST_BACKGROUND) == pixels
    eventually("that of the second is remembered", lambda: row.remembered() == 2, 60)
    eventually("nothing but its background is seen", plain, 60)
    _keep(row, "1-hidden", row.picture(new))
    row.action("toggle-focus")
    eventually("its icons are there", lambda: not plain(), 60)
    _keep(row, "2-shown", row.picture(new))
    _end(running)


def try_new_screen(row, report):
    report.attempt("icons of a new screen are hidden too", _of_a_new_screen_are_hidden_too, row)


def try_icons(row, report):
    row.arrange()
    shown, choice = row.resting_picture(), row.choice()
    for check in CHECKS:
        if not report.attempt(check.__name__.replace("_", " "), check, row, shown, choice):
            return  # what it left behind would be found by all that follow


if __name__ == "__main__":
    if sys.argv[1:] == [PlasmaNewScreen.name]:
        run.run_named(PlasmaNewScreen, trying=try_new_screen)
    else:
        run.run_named(PlasmaIcons, GnomeIcons, trying=try_icons)
