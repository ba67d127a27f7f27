"""The row on sway, whose second output has a scale of 1.5."""

import json
import time

from desktop_session import eventually
from row import FIRST_BACKGROUND, Row, Screen
from run import run_named
from sway_session import SwaySession


class Sway(SwaySession, Row):
    name = "sway"
    needs = ("sway", "swaymsg", "grim")
    lacks = {
        "press_key": "a headless sway has no keyboard",
        "show_desktop": "sway does not put windows aside",
        "one_workspace_only": "what lies on a layer is on every workspace",
    }
    places = {"HEADLESS-1": (0, 0), "HEADLESS-2": (1280, 0)}

    def __enter__(self):
        super().__enter__()
        self.neighbours = {}
        self.set_background(FIRST_BACKGROUND)
        return self

    def screens(self):
        make_and_model = ("headless", "headless")
        return [
            Screen("HEADLESS-1", 1280, 720, 1, *make_and_model),
            Screen("HEADLESS-2", 1920, 1080, 1.5, *make_and_model),
        ]

    def picture(self, screen):
        return super().picture(screen.name)

    def set_background(self, color):
        before, self.neighbours = self.neighbours, {}
        for name in self.places:
            self.neighbours[name] = self._neighbour("background", name, color)
        for neighbour in before.values():
            neighbour.end()

    def restart_shell(self):
        for neighbour in self.neighbours.values():
            neighbour.end()
        self.neighbours = {}
        self.set_background(FIRST_BACKGROUND)

    def open_window(self, title, screen):
        self.message("focus", "output", screen.name)
        return self.window(title)

    def click(self, screen, x, y):
        left, top = self.places[screen.name]
        super().click(left + int(x / screen.scale), top + int(y / screen.scale))

    def reaches_below(self, screen, x, y):
        background = self.neighbours[screen.name]
        before = background.lines.count("released")
        self.click(screen, x, y)
        limit = time.monotonic() + 3
        while background.lines.count("released") == before:
            if time.monotonic() > limit:
                return False
            time.sleep(0.05)
        return True

    def listed(self):
        found, left = [], [json.loads(self.ask("swaymsg", "-r", "-t", "get_tree"))]
        while left:
            node = left.pop()
            left += node["nodes"] + node["floating_nodes"]
            if node["type"] in ("con", "floating_con"):
                found.append("%s %s" % (node["name"], node.get("app_id")))
        return found

    def show_workspace(self, index):
        self.message("focus", "output", "HEADLESS-1")
        name = "1" if index == 0 else "elsewhere"
        self.message("workspace", name)
        eventually("workspace %s is shown" % name, lambda: self._is_shown(name))

    def _is_shown(self, name):
        told = json.loads(self.ask("swaymsg", "-r", "-t", "get_workspaces"))
        return any(each["name"] == name and each["visible"] for each in told)


if __name__ == "__main__":
    run_named(Sway)
