"""The settings window under a real sway: the same controls, as Wayland shows them."""

import json
import os
import unittest

from at_rest import at_rest
from desktop_session import eventually, program, run_tests
from private_bus import start_bus
from settings_session import TITLE, SettingsSession
from sway_session import SwaySession

NAME = "org.orvane.Orvane"
# Within the board's first card, beside its texts and the window.
ON_CARD = (230, 60)
NO_BOARD = (0, 0, 0)
SMART_TOGGLES = {
    "Calendar events can drive Next Up": "countdownIncludesEvents",
    "Reminders with due dates can drive Next Up": "countdownIncludesReminders",
    "Allow all-day events to drive Next Up": "countdownIncludesAllDayEvents",
    "Use urgency colors as deadlines approach": "urgencyTinting",
}
# What is seen on the tab of these toggles.
TEXTS = {*SMART_TOGGLES, "Orvane", "Sources", "Display", "Smart Next", "Style", "Ignored words", "Done"}
TOP_OF_PREVIEW = 120


class Session(SettingsSession, SwaySession):
    """sway with the board on it, and its settings open."""

    GSETTINGS_BACKEND = "memory"

    def __init__(self, outputs=1):
        super().__init__(outputs=outputs)

    def __enter__(self):
        super().__enter__()
        start_bus(self)
        self.environment.update({"GSETTINGS_BACKEND": self.GSETTINGS_BACKEND, "GIO_USE_VFS": "local"})
        self.background(color=(0, 0, 0))
        # No window is active where there is no keyboard, which stays as long as this one sleeps.
        self.start("wtype", "-s", "3600000")
        self.start_accessible()
        self.give_calendars("Home", "Work")
        self.start_board()
        return self

    def start_board(self):
        self.board = self.start(program("orvane"))
        eventually("the board is drawn", lambda: sum(self.card()) > 0)
        self.open_settings()
        eventually("the calendars are offered", lambda: self.accessible.look("Work", "check box"))

    def card(self, output="HEADLESS-1", scale=1):
        return self.picture(output).pixel(*(int(scale * at) for at in ON_CARD))

    def has_board(self, output, scale=1):
        return self.card(output, scale) != NO_BOARD

    def action(self, name):
        self.ask("gapplication", "action", NAME, name)

    def press(self, *keys):
        arguments = [argument for key in keys for argument in ("-k", key)]
        self.ask("wtype", *arguments)

    def settings_node(self):
        """The window as sway has it."""
        nodes = [json.loads(self.ask("swaymsg", "-r", "-t", "get_tree"))]
        while nodes:
            node = nodes.pop()
            if node.get("name") == TITLE:
                return node
            nodes += node["nodes"] + node["floating_nodes"]
        return None


class TextsSession(Session):
    """Where the desktop's settings can be changed."""

    GSETTINGS_BACKEND = "keyfile"

    def set_texts(self, factor):
        self.ask("gsettings", "set", "org.gnome.desktop.interface", "text-scaling-factor", str(factor))

    def texts(self):
        """The places of those that are seen."""
        return {name: place for name, place in self.accessible.places("label") if name in TEXTS}

    def top_of_preview(self):
        x, y, width, _ = self.accessible.place("Preview", "image")
        window = self.settings_node()["rect"]
        return self.part(window["x"] + x, window["y"] + y, width, TOP_OF_PREVIEW)


class Texts(unittest.TestCase):
    def grow_with_those_of_the_desktop(self):
        with TextsSession() as sway:
            sway.choose_tab("Style")
            preview = at_rest("the preview", sway.top_of_preview)
            sway.choose_tab("Smart Next")
            sway.go_to("Ignored words")
            usual = at_rest("the form", sway.texts)
            sway.set_texts(1.5)
            eventually("texts are others", lambda: sway.texts() != usual)
            larger = at_rest("the form", sway.texts)
            for name in TEXTS:
                self.assertGreater(larger[name][3], usual[name][3], name)
            # What the Tab key selected is what the key replaces.
            self.assertTrue(sway.has_focus("text", "Ignored words"))
            sway.press("x")
            sway.expect("ignoredWordsText", "x")
            self.assertEqual(sway.texts(), larger)
            # The board's own texts are none of the toolkit's.
            sway.choose_tab("Style")
            eventually("the preview is as it was", lambda: sway.top_of_preview() == preview)
            self.assertEqual(sway.board.end(), 0)
            eventually("its window is gone", lambda: not sway.is_open())
            sway.start_board()
            sway.choose_tab("Smart Next")
            eventually("it begins as it was", lambda: sway.texts() == larger)
            self.assertEqual(sway.board.output, "")


class Settings(unittest.TestCase):
    def float_in_the_size_of_their_form(self):
        with Session() as sway:
            node = eventually("sway has the window", sway.settings_node)
            self.assertEqual(node["app_id"], NAME)
            self.assertEqual(node["type"], "floating_con")
            self.assertTrue(node["focused"])
            size = node["geometry"]
            self.assertEqual((size["width"], size["height"]), (760, 620))

    def are_changed_and_kept(self):
        with Session() as sway:
            sway.go_to_row("Work")
            sway.press("space")
            eventually("Work is chosen", lambda: sway.setting("selectedCalendarIDs"))
            sway.choose_tab("Display")
            sway.toggle("Focus mode")
            sway.expect("focusMode", True)
            sway.choose_tab("Smart Next")
            sway.go_to("Ignored words")
            sway.press("End", "x")
            sway.expect("ignoredWordsText", "lunch, birthday, holidayx")
            sway.choose_tab("Style")
            blue = sway.card()
            sway.pick("Theme", 2)
            sway.expect("themeMode", "light")
            eventually("the board is light", lambda: sum(sway.card()) > sum(blue) + 150)
            sway.accessible.set_value("Glass strength", 0.5)
            sway.expect("glassOpacity", 0.5)
            self.assertEqual(sway.board.end(), 0)
            eventually("its window is gone", lambda: not sway.is_open())
            sway.start_board()
            self.assertTrue(sway.is_on("Work"))
            self.assertFalse(sway.is_on("Home"))
            self.assertTrue(sway.is_on("Focus mode"))
            self.assertEqual(sway.accessible.look("Theme", "push button")["description"], "Light Glass")

    def choose_sources_and_all_again(self):
        with Session() as sway:
            self.assertFalse(sway.is_enabled("All", "push button", "Calendars"))
            for name in ("Work", "Home"):
                sway.go_to_row(name)
                sway.press("space")
            eventually("both are chosen", lambda: len(sway.setting("selectedCalendarIDs") or []) == 2)
            sway.accessible.act("All", "push button", "Calendars")
            sway.expect("selectedCalendarIDs", [])
            eventually("All is disabled", lambda: not sway.is_enabled("All", "push button", "Calendars"))

    def choose_the_displays(self):
        with Session(outputs=2) as sway:
            sway.background("HEADLESS-2", NO_BOARD)
            first, second = ("HEADLESS-1", 1), ("HEADLESS-2", 1.5)
            sway.choose_tab("Display")
            self.assertFalse(sway.is_enabled("Selected display", "combo box"))
            self.assertFalse(sway.has_board(*second))
            sway.pick("Dashboard display", 1)
            sway.expect("displayMode", "all")
            eventually("the board is on both", lambda: sway.has_board(*first) and sway.has_board(*second))
            sway.pick("Dashboard display", 2)
            sway.expect("displayMode", "selected")
            eventually("one can be chosen", lambda: sway.is_enabled("Selected display", "combo box"))
            eventually("it is on the main one", lambda: not sway.has_board(*second))
            seen = []
            for position in (1, 2):
                sway.pick("Selected display", position)
                eventually("it is chosen", lambda: sway.setting("selectedDisplayID") not in (None, "", *seen))
                seen.append(sway.setting("selectedDisplayID"))
                eventually("it is on that one", lambda: sway.has_board(*first) != sway.has_board(*second))
            eventually("it is on the second", lambda: not sway.has_board(*first) and sway.has_board(*second))
            sway.pick("Dashboard display", 0)
            sway.expect("displayMode", "main")
            eventually("it is on the first", lambda: sway.has_board(*first) and not sway.has_board(*second))

    def switch_what_there_is_to_switch(self):
        with Session() as sway:
            sway.choose_tab("Display")
            for name, key in {
                "Show on every Space": "showOnAllSpaces",
                "Hide desktop icons in Focus mode": "hideDesktopIconsInFocus",
                "Launch at login": "launchAtLogin",
            }.items():
                self._switch(sway, name, key)
            entry = sway.path(".config", "autostart", "org.orvane.Orvane.desktop")
            eventually("it starts at login", lambda: os.path.exists(entry))
            sway.choose_tab("Smart Next")
            for name, key in SMART_TOGGLES.items():
                self._switch(sway, name, key)

    def _switch(self, sway, name, key):
        was = sway.is_on(name)
        sway.toggle(name)
        sway.expect(key, not was)
        eventually(name, lambda: sway.is_on(name) != was)

    def choose_the_color(self):
        with Session() as sway:
            sway.choose_tab("Style")
            blue = sway.card()
            sway.accessible.act("Primary color", "push button")
            eventually("the palette is there", lambda: sway.has_focus("radio button"))
            sway.accessible.act("Red", "radio button")
            sway.expect("primaryColorHex", "#E01B24")
            eventually("the board is redder", lambda: sway.card()[0] > blue[0] + 30)

    def close_and_open_as_they_were(self):
        with Session() as sway:
            sway.choose_tab("Smart Next")
            sway.press("Return")
            eventually("it is closed", lambda: not sway.is_open() and not sway.settings_node())
            sway.open_settings()
            self.assertIn("pressed", sway.states("Smart Next", "page tab"))
            self.assertEqual(sway.board.output, "")


if __name__ == "__main__":
    run_tests()
