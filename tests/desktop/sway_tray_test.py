"""The status item in waybar's tray, under a real sway."""

import json
import re
import unittest

import unwatched
from desktop_session import eventually, program, run_tests
from picture import keep
from private_bus import start_bus
from sway_session import SwaySession

WATCHER = "org.kde.StatusNotifierWatcher"
HEIGHT = 40
BAR = {"layer": "top", "position": "top", "height": HEIGHT, "modules-left": ["tray"], "tray": {"icon-size": 24}}
WHITE = (255, 255, 255)
BESIDE_THE_BOARD = 25
# Where the entries are, as shares of the menu's height: two, a line, and the last.
SETTINGS, REFRESH, QUIT = 0.2, 0.5, 0.82
CHOSEN = "interface=com.canonical.dbusmenu"
SETTINGS_NOTICE = "interface=org.freedesktop.Notifications"
TOKEN = "of-the-tray"
PATIENCE = 60
STYLE = "* { border: none; } window#waybar { background: #204060; }"


class Tray(unittest.TestCase):
    def begin(self, sway):
        # With it comes a pointer, whose clicks the menu waits for.
        sway.background()
        start_bus(sway)
        sway.environment.update({"GSETTINGS_BACKEND": "memory", "GTK_A11Y": "none"})
        self.write_bar(sway)
        return self.start_bar(sway)

    def write_bar(self, sway):
        sway.write(json.dumps(BAR), "bar.json")
        sway.write(STYLE, "bar.css")

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
        return (box[0] + box[2]) // 2, (box[1] + box[3]) // 2

    def open_menu(self, sway, place):
        """Answers (left, top, right, bottom) of the open menu."""
        self.assertIsNone(self.menu(sway))
        sway.click(*place)
        opened = eventually("the menu opens", lambda: self.menu(sway))
        # Its border comes a little before its texts.
        return eventually("the menu stays", lambda: self.menu(sway) == opened and opened)

    def menu(self, sway):
        """It is white, and to the left of the board nothing else is; None while there is none."""
        picture = sway.picture()
        rows = [y for y in range(HEIGHT, 300) if picture.pixel(BESIDE_THE_BOARD, y) == WHITE]
        if not rows:
            return None
        places = [x for x in range(400) if picture.pixel(x, rows[0]) == WHITE]
        return places[0], HEIGHT, places[-1] + 1, rows[-1] + 1

    def choose(self, sway, place, share):
        """The entry at that share of the menu's height."""
        left, _, right, bottom = self.open_menu(sway, place)
        keep(sway.picture(), "waybar-menu")
        top = place[1]
        sway.click((left + right) // 2, round(top + share * (bottom - top)))
        eventually("the menu is closed", lambda: self.menu(sway) is None)

    def opens_its_menu_whose_entries_do_what_they_say(self):
        with SwaySession(outputs=1) as sway:
            self.begin(sway)
            bare = self.bar_picture(sway)
            running = sway.start(program("orvane"))
            place = self.item(sway, bare)
            told = sway.start("dbus-monitor", "--session", CHOSEN, SETTINGS_NOTICE)
            eventually("calls are watched", lambda: told.lines)
            self.choose(sway, place, SETTINGS)
            eventually("the settings open", lambda: self.settings_are_shown(sway, told))
            self.assertEqual(told.output.count("clicked"), 1)
            self.choose(sway, place, REFRESH)
            eventually("a refresh is asked for", lambda: told.output.count("clicked") == 2)
            self.assertTrue(running.is_running())
            self.choose(sway, place, QUIT)
            self.assertEqual(running.process.wait(timeout=20), 0)
            self.assertEqual(running.output, "")
            eventually("the item is gone", lambda: self.bar_picture(sway).differing_box(bare) is None)

    def hands_the_settings_what_lets_them_take_the_focus(self):
        """As hosts do that know how; waybar does not, so it is done in its place."""
        with SwaySession(outputs=1) as sway:
            self.begin(sway)
            bare = self.bar_picture(sway)
            running = sway.start(program("orvane"), environment={"WAYLAND_DEBUG": "client"})
            self.item(sway, bare)
            item = "org.kde.StatusNotifierItem-%d-1" % running.process.pid
            call = ("gdbus", "call", "--session", "--dest", item, "--object-path")
            provide = "org.kde.StatusNotifierItem.ProvideXdgActivationToken"
            sway.ask(*call, "/StatusNotifierItem", "--method", provide, TOKEN)
            clicked = ("com.canonical.dbusmenu.Event", "1", "clicked", "<0>", "0")
            sway.ask(*call, "/MenuBar", "--method", *clicked)
            activated = re.compile(r"xdg_activation_v1@\d+\.activate\(\"%s\"" % TOKEN)
            eventually("the window uses it", lambda: activated.search(running.output), PATIENCE)
            self.assertEqual(running.end(), 0)

    def settings_are_shown(self, sway, told):
        """As a window, or by a notification where there is no window to show."""
        return "member=Notify" in told.output or b"Orvane Settings" in sway.ask("swaymsg", "-t", "get_tree")

    def has_an_entry_that_reads_the_calendars_at_once(self):
        with SwaySession(outputs=1) as sway:
            self.begin(sway)
            bare = self.bar_picture(sway)
            board = unwatched.Board(sway)
            running = unwatched.start(sway)
            board.wait_until_empty(running)
            board.change_unnoticed(self)
            place = self.item(sway, bare)
            self.choose(sway, place, REFRESH)
            board.wait_for_change()
            self.choose(sway, place, QUIT)
            self.assertEqual(running.process.wait(timeout=20), 0)
            self.assertEqual(running.lines, unwatched.NOTICES)

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
