"""What is changed in the settings window, every control of every tab, is there again after a restart of
the program: in the stored settings, and in the window."""

import json
import unittest

from desktop_session import eventually, run_tests
from settings_window_test import DISPLAY_TOGGLES, SMART_TOGGLES, Session

ROWS = ("Home", "Work", "Errands")
PICKED = ("Dashboard display", "Selected display")
WORDS = "tea, 昼食"
STRENGTH = 0.5
EXPECTED = {
    "displayMode": "selected",
    "ignoredWordsText": WORDS,
    "themeMode": "light",
    "primaryColorHex": "#E01B24",
    "glassOpacity": STRENGTH,
}


def switch(xfce, toggles):
    for name, key in toggles.items():
        was = xfce.is_on(name)
        xfce.toggle(name)
        xfce.expect(key, not was)
        eventually(name, lambda name=name, was=was: xfce.is_on(name) != was)


def change_everything(xfce):
    for name, key in (("Work", "selectedCalendarIDs"), ("Errands", "selectedReminderListIDs")):
        xfce.go_to_row(name)
        xfce.press("space")
        eventually("%s is chosen" % name, lambda key=key: xfce.setting(key))
    xfce.choose_tab("Display")
    xfce.pick("Dashboard display", 2)
    eventually("it can be chosen", lambda: xfce.is_enabled("Selected display", "combo box"))
    xfce.pick("Selected display", 1)
    eventually("it is chosen", lambda: xfce.setting("selectedDisplayID"))
    # Icons before the focus mode that settles them.
    switch(xfce, DISPLAY_TOGGLES)
    xfce.choose_tab("Smart Next")
    switch(xfce, SMART_TOGGLES)
    xfce.accessible.set_text("Ignored words", WORDS)
    xfce.choose_tab("Style")
    xfce.pick("Theme", 2)
    xfce.accessible.act("Primary color", "push button")
    eventually("the palette is there", lambda: xfce.has_focus("radio button"))
    xfce.accessible.act("Red", "radio button")
    xfce.press("Escape")
    eventually("the palette is gone", lambda: not xfce.has_focus("radio button"))
    xfce.accessible.set_value("Glass strength", STRENGTH)
    for key, value in EXPECTED.items():
        xfce.expect(key, value)


def stored(xfce):
    with open(xfce.path(".config", "orvane", "defaults.json"), encoding="utf-8") as file:
        return json.load(file)


def shown(xfce):
    """What each control says, by its name."""
    for name in ROWS:
        eventually("%s is offered" % name, lambda name=name: xfce.accessible.look(name, "check box"))
    says = {name: xfce.is_on(name) for name in ROWS}
    xfce.choose_tab("Display")
    says.update({name: described(xfce, name) for name in PICKED})
    says.update({name: xfce.is_on(name) for name in DISPLAY_TOGGLES})
    xfce.choose_tab("Smart Next")
    says.update({name: xfce.is_on(name) for name in SMART_TOGGLES})
    says["Ignored words"] = xfce.accessible.text("Ignored words")
    xfce.choose_tab("Style")
    says.update({name: described(xfce, name) for name in ("Theme", "Primary color")})
    says["Glass strength"] = xfce.accessible.look("Glass strength", "slider")["value"]
    xfce.choose_tab("Sources")
    return says


def described(xfce, name):
    return xfce.accessible.look(name, "push button")["description"]


class Restart(unittest.TestCase):
    def keeps_every_setting(self):
        with Session() as xfce:
            before = shown(xfce)
            change_everything(xfce)
            xfce.choose_tab("Sources")
            changed, kept = shown(xfce), stored(xfce)
            # Home is left alone, so that a list in which everything is chosen is not taken for one
            # that was kept.
            self.assertEqual({name for name in before if before[name] == changed[name]}, {"Home"})
            self.assertEqual(xfce.board.end(), 0)
            eventually("its window is gone", lambda: not xfce.is_open())
            self.assertEqual(stored(xfce), kept)
            xfce.start_board()
            self.assertEqual(shown(xfce), changed)
            self.assertEqual(stored(xfce), kept)
            self.assertEqual(xfce.board.output, "")


if __name__ == "__main__":
    run_tests()
