"""The settings window under a real sway: the same controls, as Wayland shows them."""

import json
import unittest

from desktop_session import eventually, program, run_tests
from private_bus import start_bus
from settings_session import TITLE, SettingsSession
from sway_session import SwaySession

NAME = "org.orvane.Orvane"
# Within the board's first card, beside its texts and the window.
ON_CARD = (230, 60)


class Session(SettingsSession, SwaySession):
    """sway with the board on it, and its settings open."""

    def __init__(self):
        super().__init__(outputs=1)

    def __enter__(self):
        super().__enter__()
        start_bus(self)
        self.environment.update({"GSETTINGS_BACKEND": "memory", "GIO_USE_VFS": "local"})
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

    def card(self):
        return self.picture().pixel(*ON_CARD)

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
