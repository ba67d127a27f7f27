"""The row on sway, whose second output has a scale of 1.5."""

import json

from desktop_session import eventually
from neighbours import HeadlessOutputs, Layers
from row import FIRST_BACKGROUND, Row
from run import run_named
from sway_session import SwaySession


class Sway(HeadlessOutputs, Layers, SwaySession, Row):
    name = "sway"
    needs = ("sway", "swaymsg", "grim", "wtype")
    lacks = {
        "show_desktop": "sway does not put windows aside",
        "one_workspace_only": "what lies on a layer is on every workspace",
    }
    places = {"HEADLESS-1": (0, 0), "HEADLESS-2": (1280, 0)}

    def __enter__(self):
        super().__enter__()
        self.set_background(FIRST_BACKGROUND)
        return self

    def picture(self, screen):
        return super().picture(screen.name)

    def open_window(self, title, screen):
        self.message("focus", "output", screen.name)
        return self.window(title)

    def press_key(self):
        # The keyboard is plugged in for it, which windows notice only after a moment.
        self.ask("wtype", "-s", "500", "a")

    def click(self, screen, x, y):
        left, top = self.places[screen.name]
        super().click(left + int(x / screen.scale), top + int(y / screen.scale))

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
