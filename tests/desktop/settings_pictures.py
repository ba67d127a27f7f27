"""Takes the pictures of the settings window that the documentation shows: the real program on a
headless desktop, with the example calendars, with none, and with calendars that may not be read.

settings_pictures.py FOLDER DEMO_CALENDARS, where the second is the script that writes the examples."""

import os
import subprocess
import sys
import tempfile

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
# So that the same picture is the same file.
UNDATED = ["-strip", "-define", "png:exclude-chunks=date,time"]


class Session(SettingsSession, XfceSession):
    SCREEN = "2400x1500x24"

    def __init__(self, scale, is_dark):
        super().__init__()
        self.environment["GDK_SCALE"] = str(scale)
        self.write(LOOK % is_dark, ".config", "gtk-4.0", "settings.ini")

    def begin(self):
        self.start_accessible()
        self.start_program()
        self.open_settings()

    def window_picture(self):
        """Without its shadow."""
        window = self.ask("xdotool", "search", "--onlyvisible", "--name", TITLE).decode().split()[0]
        told = self.ask("xdotool", "getwindowgeometry", "--shell", window).decode()
        known = dict(line.split("=") for line in told.split())
        left, top, width, height = (int(known[key]) for key in ("X", "Y", "WIDTH", "HEIGHT"))
        shadow = self.ask("xprop", "-id", window, "_GTK_FRAME_EXTENTS").decode().split("=")[1]
        before, after, above, below = (int(side) for side in shadow.split(","))
        place = (left + before, top + above, width - before - after, height - above - below)
        looks = []

        def rests():
            looks.append(self.picture().cropped(*place))
            return len(looks) > 4 and looks[-1] == looks[-4]

        eventually("the window rests", rests, 60)
        return looks[-1]


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


def take(folder, name, scale, is_dark, prepare, demo_calendars):
    """A picture for each tab; answers where they are."""
    paths = []
    with Session(scale, is_dark) as session:
        prepare(session, demo_calendars)
        session.begin()
        if prepare is full:
            eventually("calendars are offered", lambda: session.accessible.look("Work", "check box"))
        for tab in TABS:
            session.choose_tab(tab)
            paths.append(os.path.join(folder, "%s-%d.png" % (name, len(paths))))
            cut_out(session.window_picture(), scale, paths[-1])
    return paths


def put_together(paths, columns, gap, path):
    layout = ["-tile", "%dx" % columns, "-geometry", "+%d+%d" % (gap, gap), "-background", "none"]
    smallest = ["-strip", "-define", "png:compression-level=9", "-define", "png:compression-filter=5"]
    subprocess.run(["montage", *paths, *layout, *smallest, path], check=True)


def in_few_colors(path):
    few = ["+dither", "-colors", "256", "-strip", "-define", "png:compression-level=9"]
    subprocess.run(["convert", path, *few, "PNG8:" + path], check=True)


def is_same(path, other):
    with open(path, "rb") as file, open(other, "rb") as other_file:
        return file.read() == other_file.read()


def of_the_full(folder, work, scale, ending, demo_calendars):
    for is_dark, look in ((False, "light"), (True, "dark")):
        tabs = take(work, "full", scale, is_dark, full, demo_calendars)
        put_together(tabs, 2, 10 * scale, os.path.join(folder, "settings-%s%s.png" % (look, ending)))


def without_sources(folder, work, scale, ending, demo_calendars):
    """Light beside dark. No calendars and denied ones look the same, of which one picture is enough."""
    looks = []
    for is_dark in (False, True):
        name = "%%s-%d" % is_dark
        tabs = take(work, name % "empty", scale, is_dark, empty, demo_calendars)
        others = take(work, name % "denied", scale, is_dark, denied, demo_calendars)
        # The last shows what time it is.
        if not all(map(is_same, tabs[:-1], others[:-1])):
            raise AssertionError("denied calendars look different")
        looks.append(tabs)
    pairs = [tab for both in zip(*looks) for tab in both]
    path = os.path.join(folder, "settings-no-sources%s.png" % ending)
    put_together(pairs, 2, 10 * scale, path)
    in_few_colors(path)


def main(folder, demo_calendars):
    with tempfile.TemporaryDirectory() as work:
        for scale, ending in ((1, ""), (2, "-2x")):
            of_the_full(folder, work, scale, ending, demo_calendars)
            without_sources(folder, work, scale, ending, demo_calendars)


if __name__ == "__main__":
    main(*sys.argv[1:])
