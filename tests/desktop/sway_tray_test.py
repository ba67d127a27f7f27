"""The status item in waybar's tray, under a real sway."""

import json
import os
import unittest

from desktop_session import eventually, program, run_tests
from sway_session import SwaySession

WATCHER = "org.kde.StatusNotifierWatcher"
HEIGHT = 40
BAR = {"layer": "top", "position": "top", "height": HEIGHT, "modules-left": ["tray"], "tray": {"icon-size": 24}}
STYLE = "* { border: none; } window#waybar { background: #204060; }"


def keep(picture, name):
    """For whoever wants to look at it."""
    folder = os.environ.get("ORVANE_PICTURES")
    if folder:
        picture.save_png(os.path.join(folder, name + ".png"))


class Tray(unittest.TestCase):
    def begin(self, sway):
        bus = sway.start("dbus-daemon", "--session", "--nofork", "--print-address=1")

        def address():
            return next((line for line in bus.lines if line.startswith("unix:")), None)

        sway.environment["DBUS_SESSION_BUS_ADDRESS"] = eventually("the bus tells its address", address)
        sway.environment["GSETTINGS_BACKEND"] = "memory"
        sway.write(json.dumps(BAR), "bar.json")
        sway.write(STYLE, "bar.css")
        return self.start_bar(sway)

    def start_bar(self, sway):
        bar = sway.start("waybar", "-c", sway.path("bar.json"), "-s", sway.path("bar.css"))
        eventually("the tray watches for items", lambda: self.has_owner(sway, WATCHER))
        eventually("the bar is drawn", lambda: sway.picture().pixel(1200, 20) == (0x20, 0x40, 0x60))
        return bar

    def has_owner(self, sway, name):
        bus = "org.freedesktop.DBus"
        command = ["gdbus", "call", "--session", "--dest", bus, "--object-path", "/org/freedesktop/DBus"]
        return sway.ask(*command, "--method", bus + ".NameHasOwner", name).strip() == b"(true,)"

    def bar_picture(self, sway):
        return sway.picture().cropped(0, 0, 1280, HEIGHT)

    def item(self, sway, bare):
        box = eventually("the item is seen", lambda: self.bar_picture(sway).differing_box(bare))
        keep(self.bar_picture(sway), "waybar-item")
        self.assertLess(box[2] - box[0], 60)

    def shows_the_item_until_the_program_ends(self):
        with SwaySession(outputs=1) as sway:
            self.begin(sway)
            bare = self.bar_picture(sway)
            running = sway.start(program("orvane"))
            self.item(sway, bare)
            self.assertEqual(running.end(), 0)
            self.assertEqual(running.output, "")
            eventually("the item is gone", lambda: self.bar_picture(sway).differing_box(bare) is None)

    def gets_the_item_again_when_it_is_restarted(self):
        with SwaySession(outputs=1) as sway:
            bar = self.begin(sway)
            bare = self.bar_picture(sway)
            running = sway.start(program("orvane"))
            self.item(sway, bare)
            bar.end()
            eventually("nobody watches", lambda: not self.has_owner(sway, WATCHER))
            self.start_bar(sway)
            self.item(sway, bare)
            self.assertEqual(running.end(), 0)


if __name__ == "__main__":
    run_tests()
