"""Takes the pictures of the settings window that the documentation shows: the real program on a
headless desktop, with the example calendars, with none, and with calendars that may not be read.

settings_pictures.py FOLDER DEMO_CALENDARS, where the second is the script that writes the examples."""

import os
import subprocess
import sys
import tempfile

from at_rest import at_rest
from desktop_session import eventually
from settings_session import TITLE, SettingsSession
from xfce_session import XfceSession

TABS = ["Sources", "Display", "Smart Next", "Style"]
LOOK = """[Settings]
gtk-font-name=Inter 10
gtk-xft-antialias=1
gtk-xft-hinting=1
gtk-xft-hintstyle=hintslight
gtk-enable-animations=0
gtk-application-prefer-dark-theme=%d
"""
CORNER = 10
# The board's lists of events and reminders, with their cards, on the screen.
LISTS = (460, 0, 640, 420)
ON_LISTS = (700, 100)
LOOKS = 6
TRIES = 3
# So that the same picture is the same file.
UNDATED = ["-strip", "-define", "png:exclude-chunks=date,time"]


class Session(SettingsSession, XfceSession):
    SCREEN = "2400x1500x24"

    def __init__(self, scale, is_dark):
        super().__init__()
        self.environment["GDK_SCALE"] = str(scale)
        self.write(LOOK % is_dark, ".config", "gtk-4.0", "settings.ini")

    def begin(self, unlike=None):
        """Answers what the board's lists say, once that is not what they are known to say elsewhere."""
        self.start_accessible()
        self.start_program()
        lists = self._lists_unlike(unlike)
        self.open_settings()
        return lists

    def _lists_unlike(self, known):
        seen = []

        def rest():
            picture = self.picture()
            lists = picture.cropped(*LISTS)
            is_other = picture.pixel(*ON_LISTS) != (0, 0, 0) and (known is None or lists != known)
            if not is_other or (seen and seen[-1] != lists):
                seen.clear()
            if is_other:
                seen.append(lists)
            return len(seen) >= LOOKS

        eventually("the board's lists say something else", rest, 60)
        return seen[-1]

    def window_picture(self):
        """Without its shadow."""
        window = self.ask("xdotool", "search", "--onlyvisible", "--name", TITLE).decode().split()[0]
        told = self.ask("xdotool", "getwindowgeometry", "--shell", window).decode()
        known = dict(line.split("=") for line in told.split())
        left, top, width, height = (int(known[key]) for key in ("X", "Y", "WIDTH", "HEIGHT"))
        shadow = self.ask("xprop", "-id", window, "_GTK_FRAME_EXTENTS").decode().split("=")[1]
        before, after, above, below = (int(side) for side in shadow.split(","))
        place = (left + before, top + above, width - before - after, height - above - below)
        return at_rest("the window", lambda: self.picture().cropped(*place), seconds=60)


def full(session, demo_calendars):
    calendars = session.path(".local", "share", "orvane", "calendars")
    os.makedirs(calendars)
    subprocess.run([demo_calendars, calendars], check=True)


def empty(_session, _demo_calendars):
    pass


def denied(session, _demo_calendars):
    session.give_calendars("Work")
    session.give_lists("Errands")
    for name in ("Work", "Errands"):
        os.chmod(session.path(".local", "share", "orvane", "calendars", name), 0)


def cut_out(picture, scale, path):
    """With the window's round upper corners."""
    picture.save_png(path)
    radius = CORNER * scale
    shape = "roundrectangle 0,0 %d,%d %d,%d" % (picture.width - 1, picture.height + radius, radius, radius)
    mask = ["(", "+clone", "-alpha", "transparent", "-fill", "white", "-draw", shape, ")"]
    subprocess.run(["convert", path, "-alpha", "set", *mask, "-compose", "DstIn", "-composite", *UNDATED, path],
                   check=True)


def take(folder, name, scale, is_dark, prepare, demo_calendars, unlike=None):
    """A picture for each tab; answers where they are, and what the board's lists said meanwhile."""
    paths = []
    with Session(scale, is_dark) as session:
        prepare(session, demo_calendars)
        lists = session.begin(unlike)
        if prepare is full:
            eventually("calendars are offered", lambda: session.accessible.look("Work", "check box"))
        for tab in TABS:
            session.choose_tab(tab)
            paths.append(os.path.join(folder, "%s-%d.png" % (name, len(paths))))
            cut_out(session.window_picture(), scale, paths[-1])
    return paths, lists


def put_together(paths, columns, gap, path):
    layout = ["-tile", "%dx" % columns, "-geometry", "+%d+%d" % (gap, gap), "-background", "none"]
    smallest = ["-strip", "-define", "png:compression-level=9", "-define", "png:compression-filter=5"]
    subprocess.run(["montage", *paths, *layout, *smallest, path], check=True)


def is_same(path, other):
    with open(path, "rb") as file, open(other, "rb") as other_file:
        return file.read() == other_file.read()


def of_the_full(folder, work, scale, ending, demo_calendars):
    for is_dark, look in ((False, "light"), (True, "dark")):
        tabs, _ = take(work, "full", scale, is_dark, full, demo_calendars)
        put_together(tabs, 2, 10 * scale, os.path.join(folder, "settings-%s%s.png" % (look, ending)))


def empty_and_denied(work, scale, is_dark, demo_calendars):
    """The tabs, which look the same with no calendars and with denied ones. The board tells the two
    apart, and says of the latter that they are denied."""
    # The preview names the next full hour but two, which may be another one meanwhile.
    for _ in range(TRIES):
        tabs, lists = take(work, "empty-%d" % is_dark, scale, is_dark, empty, demo_calendars)
        others, _ = take(work, "denied-%d" % is_dark, scale, is_dark, denied, demo_calendars, unlike=lists)
        if all(map(is_same, tabs, others)):
            return others
    raise AssertionError("denied calendars look different")


def without_sources(folder, work, scale, ending, demo_calendars):
    """Light beside dark."""
    looks = [empty_and_denied(work, scale, is_dark, demo_calendars) for is_dark in (False, True)]
    pairs = [tab for both in zip(*looks) for tab in both]
    path = os.path.join(folder, "settings-no-sources%s.png" % ending)
    put_together(pairs, 2, 10 * scale, path)


def main(folder, demo_calendars):
    with tempfile.TemporaryDirectory() as work:
        for scale, ending in ((1, ""), (2, "-2x")):
            of_the_full(folder, work, scale, ending, demo_calendars)
            without_sources(folder, work, scale, ending, demo_calendars)


if __name__ == "__main__":
    main(*sys.argv[1:])
