"""The settings window on a headless Xfce, operated by the names of its controls as a screen reader
knows them. What comes of it is read from the stored settings and seen on the board."""

import os
import subprocess
import unittest

from desktop_session import eventually, run_tests
from settings_session import TITLE, SettingsSession
from xfce_session import XfceSession

DISPLAY_TOGGLES = {
    "Show on every Space": "showOnAllSpaces",
    "Hide desktop icons in Focus mode": "hideDesktopIconsInFocus",
    "Focus mode": "focusMode",
    "Launch at login": "launchAtLogin",
}
SMART_TOGGLES = {
    "Calendar events can drive Next Up": "countdownIncludesEvents",
    "Reminders with due dates can drive Next Up": "countdownIncludesReminders",
    "Allow all-day events to drive Next Up": "countdownIncludesAllDayEvents",
    "Use urgency colors as deadlines approach": "urgencyTinting",
}
CONTROLS = {
    "page tab": ["Sources", "Display", "Smart Next", "Style"],
    "list": ["Calendars", "Reminder Lists"],
    "check box": ["Home", "Work", "Errands", *DISPLAY_TOGGLES, *SMART_TOGGLES],
    "combo box": ["Dashboard display", "Selected display", "Theme"],
    "text": ["Ignored words"],
    "slider": ["Glass strength"],
    "image": ["Preview"],
    "push button": ["All", "Dashboard display", "Selected display", "Theme", "Primary color", "Done",
                    "Minimize", "Close"],
}
# Those that are chosen, and what the toolkit says of pickers without a choice.
CHOICES = {"Main Display", "Automatic", "Vivid Blue", "(None)"}
TEXTS = [
    "Orvane",
    "Ambient ETA wallpaper powered by Apple Calendar and Reminders.",
    "Calendars",
    "Reminder Lists",
    "Ignored words",
    "If an event or reminder title contains one of these words, it appears in the list but does not "
    "become the main countdown.",
    "Preview",
    "Calendar and Reminder data stays local on this Mac.",
]
# Within the board's first card, beside its texts and the window.
ON_CARD = (330, 60)
# Within the window, which stands in the middle of the screen, below its lowest control.
ON_WINDOW = (800, 750)
PORTAL = os.path.join(os.path.dirname(os.path.abspath(__file__)), "settings_portal.py")


class Session(SettingsSession, XfceSession):
    """Xfce with the board on it, and its settings open."""

    def __enter__(self):
        super().__enter__()
        self.start_accessible()
        self.give_calendars("Home", "Work")
        self.give_lists("Errands")
        self.start_board()
        return self

    def start_board(self):
        self.board = self.start_program()
        self.open_settings()
        eventually("the calendars are offered", lambda: self.accessible.look("Work", "check box"))

    def open_settings(self):
        super().open_settings()
        eventually("keys go to it", self.has_keys)

    def has_keys(self):
        try:
            return self.ask("xdotool", "getwindowfocus", "getwindowname").decode().strip() == TITLE
        except AssertionError:
            return False

    def card(self):
        return self.picture().pixel(*ON_CARD)

    def brightness(self):
        return sum(self.card())


class Names(unittest.TestCase):
    def are_those_of_the_controls_and_no_others(self):
        with Session() as xfce:
            for role, names in CONTROLS.items():
                eventually(role, lambda role=role, names=names: self._names(xfce, role) == set(names))
            # What stands in for lists goes a moment after they have come.
            most = set(TEXTS).union(CHOICES, *CONTROLS.values())
            eventually("the texts", lambda: set(TEXTS) <= self._names(xfce, "label") <= most)

    @staticmethod
    def _names(xfce, role):
        return set(xfce.accessible.names(role))

    def are_reached_in_order_by_the_keyboard(self):
        with Session() as xfce:
            self._walk(xfce, "Sources", ["Home", "Errands"])
            xfce.go_to_row("Home")
            xfce.press("space")
            eventually("All can be pressed", lambda: xfce.is_enabled("All", "push button", "Calendars"))
            self._walk(xfce, "Sources", ["All", "Home", "Errands"])
            toggles = ["Show on every Space", "Launch at login", "Focus mode"]
            toggles.append("Hide desktop icons in Focus mode")
            self._walk(xfce, "Display", ["Dashboard display", *toggles])
            xfce.pick("Dashboard display", 2)
            eventually("it can be chosen", lambda: xfce.is_enabled("Selected display", "push button"))
            self._walk(xfce, "Display", ["Dashboard display", "Selected display", *toggles])
            self._walk(xfce, "Smart Next", [*SMART_TOGGLES, "Ignored words"])
            self._walk(xfce, "Style", ["Theme", "Primary color", "Glass strength"])
            xfce.choose_tab("Sources")
            for name in ("Work", "Home", "Errands"):
                xfce.go_to_row(name)

    @staticmethod
    def _walk(xfce, tab, names):
        """One Tab each, from the tab through its controls and back."""
        xfce.choose_tab(tab)
        xfce.go_to(tab, "page tab")
        for name in (*names, "Done", tab):
            xfce.press("Tab")
            eventually(name, lambda name=name: (xfce.accessible.focused() or {}).get("name") == name)

    def are_stepped_through_tab_by_tab(self):
        with Session() as xfce:
            tabs = CONTROLS["page tab"]
            for next_, before in (("ctrl+Tab", "ctrl+shift+Tab"), ("ctrl+Next", "ctrl+Prior")):
                for key, order in ((next_, tabs[1:]), (before, tabs[-2::-1])):
                    for tab in order:
                        xfce.press(key)
                        eventually(tab, lambda tab=tab: "pressed" in xfce.states(tab, "page tab"))
            xfce.press("ctrl+w")
            eventually("it is closed", lambda: not xfce.is_open())

    def have_letters(self):
        with Session() as xfce:
            for letter, tab in {"d": "Display", "n": "Smart Next", "t": "Style", "s": "Sources"}.items():
                xfce.press("alt+" + letter)
                eventually(tab, lambda tab=tab: "pressed" in xfce.states(tab, "page tab"))
            xfce.press("alt+o")
            eventually("it is closed", lambda: not xfce.is_open())


class Sources(unittest.TestCase):
    def are_chosen_and_all_again(self):
        with Session() as xfce:
            self.assertFalse(xfce.is_enabled("All", "push button", "Calendars"))
            xfce.go_to_row("Work")
            xfce.press("space")
            chosen = eventually("Work is chosen", lambda: xfce.setting("selectedCalendarIDs"))
            self.assertEqual(len(chosen), 1)
            xfce.go_to_row("Home")
            xfce.press("space")
            eventually("both are chosen", lambda: len(xfce.setting("selectedCalendarIDs")) == 2)
            xfce.press("space")
            xfce.expect("selectedCalendarIDs", chosen)
            xfce.accessible.act("All", "push button", "Calendars")
            xfce.expect("selectedCalendarIDs", [])
            eventually("none is on", lambda: not xfce.is_on("Work"))
            eventually("All is disabled", lambda: not xfce.is_enabled("All", "push button", "Calendars"))
            xfce.go_to_row("Errands")
            xfce.press("space")
            eventually("a list is chosen", lambda: xfce.setting("selectedReminderListIDs"))
            xfce.accessible.act("All", "push button", "Reminder Lists")
            xfce.expect("selectedReminderListIDs", [])

    def are_chosen_by_screen_readers(self):
        with Session() as xfce:
            xfce.toggle("Work")
            chosen = eventually("Work is chosen", lambda: xfce.setting("selectedCalendarIDs"))
            eventually("it is on", lambda: xfce.is_on("Work"))
            xfce.toggle("Home")
            eventually("both are chosen", lambda: len(xfce.setting("selectedCalendarIDs")) == 2)
            xfce.toggle("Home")
            xfce.expect("selectedCalendarIDs", chosen)
            xfce.toggle("Errands")
            eventually("a list is chosen", lambda: xfce.setting("selectedReminderListIDs"))

    def come_and_go(self):
        with Session() as xfce:
            xfce.go_to_row("Work")
            xfce.give_calendars("Added")
            eventually("it is offered", lambda: xfce.accessible.look("Added", "check box"))
            # The row that has the focus stays where it is.
            self.assertTrue(xfce.has_focus("check box", "Work"))
            for name in ("Home", "Work", "Added"):
                os.remove(xfce.path(".local", "share", "orvane", "calendars", name, "item.ics"))
                os.rmdir(xfce.path(".local", "share", "orvane", "calendars", name))
            eventually("there is no calendar", lambda: not xfce.accessible.look("Work", "check box"))


class Display(unittest.TestCase):
    def is_chosen(self):
        with Session() as xfce:
            xfce.choose_tab("Display")
            self.assertFalse(xfce.is_enabled("Selected display", "combo box"))
            xfce.pick("Dashboard display", 2)
            xfce.expect("displayMode", "selected")
            eventually("it can be chosen", lambda: xfce.is_enabled("Selected display", "combo box"))
            xfce.pick("Selected display", 1)
            chosen = eventually("one is chosen", lambda: xfce.setting("selectedDisplayID"))
            self.assertTrue(chosen)
            xfce.pick("Selected display", 0)
            xfce.expect("selectedDisplayID", "")
            xfce.pick("Dashboard display", 1)
            xfce.expect("displayMode", "all")
            eventually("it cannot", lambda: not xfce.is_enabled("Selected display", "combo box"))

    def toggles_are_stored(self):
        with Session() as xfce:
            xfce.choose_tab("Display")
            for name, key in DISPLAY_TOGGLES.items():
                was = xfce.is_on(name)
                xfce.toggle(name)
                xfce.expect(key, not was)
                eventually(name, lambda name=name, was=was: xfce.is_on(name) != was)
            icons = "Hide desktop icons in Focus mode"
            eventually("icons are settled", lambda: not xfce.is_enabled(icons, "check box"))
            entry = xfce.path(".config", "autostart", "org.orvane.Orvane.desktop")
            eventually("it starts at login", lambda: os.path.exists(entry))
            xfce.toggle("Launch at login")
            xfce.expect("launchAtLogin", False)

    def shows_what_was_changed_elsewhere(self):
        with Session() as xfce:
            xfce.choose_tab("Smart Next")
            xfce.go_to("Ignored words")
            xfce.press("End", "comma", "space", "x", "y")
            for is_on in (True, False, True):
                xfce.action("toggle-focus")
                eventually("focus mode", lambda is_on=is_on: xfce.is_on("Focus mode") == is_on)
                xfce.press("z")
            self.assertTrue(xfce.has_focus("text", "Ignored words"))
            xfce.expect("ignoredWordsText", "lunch, birthday, holiday, xyzzz")

    def springs_back_where_login_items_cannot_be_written(self):
        with Session() as xfce:
            # A file stands where the folder should be, which stops even the superuser.
            xfce.write("", ".config", "autostart")
            xfce.choose_tab("Display")
            xfce.toggle("Launch at login")
            # What was done later has come about, so that this has failed.
            xfce.toggle("Focus mode")
            xfce.expect("focusMode", True)
            eventually("it is off", lambda: not xfce.is_on("Launch at login"))
            self.assertIn(xfce.setting("launchAtLogin"), (None, False))


class SmartNext(unittest.TestCase):
    def toggles_are_stored(self):
        with Session() as xfce:
            xfce.choose_tab("Smart Next")
            for name, key in SMART_TOGGLES.items():
                was = xfce.is_on(name)
                xfce.toggle(name)
                xfce.expect(key, not was)

    def words_are_stored_as_they_are_typed(self):
        with Session() as xfce:
            xfce.choose_tab("Smart Next")
            xfce.accessible.set_text("Ignored words", "Mittagessen, 昼食")
            xfce.expect("ignoredWordsText", "Mittagessen, 昼食")
            xfce.go_to("Ignored words")
            xfce.press("ctrl+a", "t", "e", "a")
            xfce.expect("ignoredWordsText", "tea")


class Style(unittest.TestCase):
    def is_seen_on_the_board(self):
        with Session() as xfce:
            xfce.choose_tab("Style")
            vivid = xfce.card()
            xfce.pick("Theme", 2)
            xfce.expect("themeMode", "light")
            eventually("the board is light", lambda: xfce.brightness() > sum(vivid) + 150)
            xfce.pick("Theme", 1)
            xfce.expect("themeMode", "dark")
            eventually("the board is dark", lambda: xfce.brightness() < sum(vivid))
            xfce.pick("Theme", 0)
            xfce.expect("themeMode", "vividBlue")
            eventually("the board is blue", lambda: xfce.card() == vivid)

    def strength_is_seen_on_the_board(self):
        with Session() as xfce:
            xfce.choose_tab("Style")
            xfce.accessible.set_value("Glass strength", 0.95)
            xfce.expect("glassOpacity", 0.95)
            strong = eventually("the board is drawn", xfce.card)
            xfce.go_to("Glass strength")
            xfce.press("Home")
            xfce.expect("glassOpacity", 0.45)
            # There is nothing but black behind the glass.
            eventually("less is seen of the glass", lambda: xfce.brightness() < sum(strong))

    def color_is_seen_on_the_board(self):
        with Session() as xfce:
            xfce.choose_tab("Style")
            blue = xfce.card()
            xfce.accessible.act("Primary color", "push button")
            eventually("the palette is there", lambda: xfce.has_focus("radio button"))
            xfce.accessible.act("Red", "radio button")
            xfce.expect("primaryColorHex", "#E01B24")
            eventually("the board is redder", lambda: xfce.card()[0] > blue[0] + 30)


class Looks(unittest.TestCase):
    def are_those_that_the_desktop_prefers(self):
        with XfceSession() as xfce:
            with open(PORTAL, encoding="utf-8") as file:
                command = ("/usr/bin/python3", "-B", "-c", file.read())
            portal = xfce.start(*command, stdin=subprocess.PIPE)
            eventually("the portal is there", lambda: "ready" in portal.lines)
            xfce.start_program()
            xfce.action("settings")
            eventually("it is dark", lambda: 20 < self._brightness(xfce) < 300)
            for scheme, limits in ((2, (600, 765)), (1, (20, 300))):
                portal.process.stdin.write(b"%d\n" % scheme)
                portal.process.stdin.flush()
                eventually("it is another", lambda limits=limits: limits[0] < self._brightness(xfce) < limits[1])

    @staticmethod
    def _brightness(xfce):
        return sum(xfce.picture().pixel(*ON_WINDOW))


if __name__ == "__main__":
    run_tests()
