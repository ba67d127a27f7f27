"""The program as a part of Xfce: its key, its one instance, its actions, its status item, and the
desktop's icons."""

import time
import unittest

import unwatched
from desktop_session import eventually, program, run_tests
from picture import keep
from xfce_session import NAME, WATCHER, XfceSession

HOT_KEY = "super+shift+z"
# By which keys the entries of the menu are reached when it opens.
SETTINGS, REFRESH, QUIT = ("Down", "Return"), ("Down", "Down", "Return"), ("Up", "Return")
# In the middle of the screen, below the board.
IN_THE_SETTINGS = (800, 600)


class HotKey(unittest.TestCase):
    def toggles_focus_mode(self):
        with XfceSession() as xfce:
            running = xfce.start_program()
            xfce.press(HOT_KEY)
            eventually("focus mode is on", lambda: xfce.focus_mode() is True)
            xfce.press(HOT_KEY)
            eventually("focus mode is off", lambda: xfce.focus_mode() is False)
            xfce.press("Num_Lock")
            xfce.press(HOT_KEY)
            eventually("focus mode is on under NumLock", lambda: xfce.focus_mode() is True)
            xfce.press("Caps_Lock")
            xfce.press(HOT_KEY)
            eventually("focus mode is off under both locks", lambda: xfce.focus_mode() is False)
            self.assertEqual(running.end(), 0)
            self.assertEqual(running.output, "")


class Instance(unittest.TestCase):
    def is_one_and_activated_by_a_second_start(self):
        with XfceSession() as xfce:
            first = xfce.start_program()
            # What the settings are shown by goes to the desktop's notifications.
            monitor = xfce.start("dbus-monitor", "--session", "member=Activate")
            eventually("calls are watched", lambda: "NameAcquired" in monitor.output or monitor.lines)
            second = xfce.start(program("orvane"))
            self.assertEqual(second.process.wait(timeout=10), 0)
            self.assertEqual(second.output, "")
            eventually("the first is activated", lambda: "member=Activate" in monitor.output)
            self.assertTrue(first.is_running())
            self.assertEqual(len(xfce.titled("Orvane")), 1)
            self.assertEqual(first.end(), 0)

    def is_left_alone_by_a_second_start_with_the_session(self):
        with XfceSession() as xfce:
            first = xfce.start_program()
            monitor = xfce.start("dbus-monitor", "--session", "interface=org.freedesktop.Application")
            eventually("calls are watched", lambda: "NameAcquired" in monitor.output or monitor.lines)
            second = xfce.start(program("orvane"), environment={"ORVANE_START": "login"})
            self.assertEqual(second.process.wait(timeout=10), 0)
            self.assertEqual(second.output, "")
            # What it had asked for would have been seen before this.
            xfce.action("refresh-now")
            eventually("a call is seen", lambda: "member=ActivateAction" in monitor.output)
            self.assertEqual(monitor.output.count("member=Activate"), 1)
            self.assertEqual(first.end(), 0)


class Actions(unittest.TestCase):
    def do_what_they_are_called(self):
        with XfceSession() as xfce:
            # The settings window's toolkit has a word to say where there is no such bus.
            xfce.environment["GTK_A11Y"] = "none"
            running = xfce.start_program()
            xfce.action("toggle-focus")
            eventually("focus mode is on", lambda: xfce.focus_mode() is True)
            xfce.action("toggle-focus")
            eventually("focus mode is off", lambda: xfce.focus_mode() is False)
            xfce.action("refresh-now")
            xfce.action("settings")
            self.assertTrue(running.is_running())
            xfce.action("quit")
            self.assertEqual(running.process.wait(timeout=10), 0)
            self.assertFalse(xfce.has_owner(NAME))
            self.assertEqual(running.output, "")


class Icons(unittest.TestCase):
    def are_hidden_while_focus_mode_is_on(self):
        self._hide_and_show(None)

    def keep_the_style_of_the_user(self):
        self._hide_and_show("1")

    def _hide_and_show(self, style):
        kept = "xfce-icons-%s-%%s" % (style or "unset")
        with XfceSession() as xfce:
            xfce.set_icon_style("0")
            xfce.start_desktop()
            bare = xfce.resting_picture()
            xfce.set_icon_style(style)
            if style is None:
                eventually("the icons are there", lambda: xfce.picture() != bare)
            shown = xfce.resting_picture()
            xfce.set_defaults(hideDesktopIconsInFocus=True)
            running = xfce.start_program()
            xfce.action("toggle-focus")
            eventually("the icons are off", lambda: xfce.icon_style() == "0")
            # The board may stand over them, so what is behind is looked at when it has gone.
            self.assertEqual(running.end(), 0)
            self.assertEqual(xfce.icon_style(), "0")
            keep(shown, kept % "1-shown")
            # Where the icons were is the picture of the desktop.
            eventually("nothing but the desktop is seen", lambda: xfce.picture() == bare)
            hidden = xfce.resting_picture()
            self.assertEqual(hidden.differing_box(bare), None)
            keep(hidden, kept % "2-hidden")
            running = xfce.start_program()
            xfce.action("toggle-focus")
            eventually("the style is the user's", lambda: xfce.icon_style() == style)
            self.assertEqual(running.end(), 0)
            again = xfce.resting_picture()
            keep(again, kept % "3-shown-again")
            self.assertEqual(again.differing_box(shown), None)


class StatusItem(unittest.TestCase):
    session = XfceSession

    def _item(self, xfce, bare):
        """The middle of the place that the item takes in the panel."""
        eventually("the panel knows the item", lambda: "StatusNotifierItem" in xfce.status_items())
        box = eventually("the item is seen", lambda: xfce.panel_picture().differing_box(bare))
        left, top, right, bottom = box
        self.assertLess(right - left, 60)
        keep(xfce.panel_picture(), "xfce4-panel-item")
        return (left + right) // 2, (top + bottom) // 2

    def _resting_panel(self, xfce):
        xfce.resting_picture()
        return xfce.panel_picture()

    def _choose(self, xfce, item, *keys):
        """Opens the item's menu by a click, and goes through it by keys."""
        x, y = (str(value) for value in item)
        before = xfce.windows("wrapper-2.0")
        xfce.ask("xdotool", "mousemove", x, y, "click", "1")
        eventually("the menu opens", lambda: len(xfce.windows("wrapper-2.0")) > len(before))
        eventually("the menu is drawn", lambda: xfce.picture().pixel(int(x) + 8, 60) != (0, 0, 0))
        keep(xfce.picture(), "xfce4-panel-menu")
        for key in keys:
            xfce.press(key)

    def opens_its_menu(self):
        with self.session() as xfce:
            xfce.start_panel()
            bare = self._resting_panel(xfce)
            running = xfce.start_program()
            item = self._item(xfce, bare)
            monitor = xfce.start("dbus-monitor", "--session", "interface=com.canonical.dbusmenu")
            eventually("calls are watched", lambda: monitor.lines)
            self._choose(xfce, item, *REFRESH)
            eventually("the item is chosen", lambda: "clicked" in monitor.output)
            self.assertTrue(running.is_running())
            self._choose(xfce, item, *QUIT)
            self.assertEqual(running.process.wait(timeout=20), 0)
            self.assertEqual(running.output, "")
            eventually("the item is gone", lambda: xfce.panel_picture().differing_box(bare) is None)

    def has_an_entry_that_reads_the_calendars_at_once(self):
        with self.session() as xfce:
            xfce.start_panel()
            bare = self._resting_panel(xfce)
            board = unwatched.Board(xfce)
            running = unwatched.start(xfce)
            board.wait_until_empty(running)
            board.change_unnoticed(self)
            item = self._item(xfce, bare)
            menus = xfce.windows("wrapper-2.0")
            self._choose(xfce, item, *REFRESH)
            eventually("the menu is closed", lambda: xfce.windows("wrapper-2.0") == menus)
            board.wait_for_change()
            self._choose(xfce, item, *QUIT)
            self.assertEqual(running.process.wait(timeout=20), 0)
            self.assertEqual(running.lines, unwatched.NOTICES)

    def has_an_entry_that_opens_the_settings(self):
        with self.session() as xfce:
            xfce.environment.update({"GTK_A11Y": "none", "GSK_RENDERER": "cairo"})
            xfce.start_panel()
            bare = self._resting_panel(xfce)
            running = xfce.start_program()
            item = self._item(xfce, bare)
            self.assertEqual(xfce.titled("Orvane Settings"), [])
            plain = xfce.picture().pixel(*IN_THE_SETTINGS)
            self._choose(xfce, item, *SETTINGS)
            eventually("the settings open", lambda: xfce.titled("Orvane Settings"), 60)
            eventually("they are drawn", lambda: xfce.picture().pixel(*IN_THE_SETTINGS) != plain, 60)
            keep(xfce.picture(), "xfce4-panel-settings")
            self.assertEqual(len(xfce.titled("Orvane Settings")), 1)
            self.assertEqual(running.end(), 0)
            eventually("the settings go with it", lambda: not xfce.titled("Orvane Settings"))
            self.assertEqual(running.output, "")

    def comes_back_with_the_panel(self):
        with self.session() as xfce:
            panel = xfce.start_panel()
            bare = self._resting_panel(xfce)
            running = xfce.start_program()
            self._item(xfce, bare)
            panel.end()
            eventually("nobody watches", lambda: not xfce.has_owner(WATCHER))
            xfce.start_panel()
            self._item(xfce, bare)
            self.assertEqual(running.end(), 0)
            eventually("the item is gone", lambda: xfce.panel_picture().differing_box(bare) is None)

    def asks_nobody_while_nobody_watches(self):
        with self.session() as xfce:
            monitor = xfce.start("dbus-monitor", "--session", "type=method_call")
            eventually("calls are watched", lambda: monitor.lines)
            running = xfce.start_program()
            eventually("the watcher is looked for", lambda: WATCHER in monitor.output)
            asked = monitor.output.count(WATCHER)
            # Longer than it waits with a watcher that refuses.
            end = time.monotonic() + 5
            eventually("some seconds pass", lambda: time.monotonic() > end)
            self.assertEqual(monitor.output.count(WATCHER), asked)
            self.assertEqual(running.end(), 0)
            self.assertEqual(running.output, "")


if __name__ == "__main__":
    run_tests()
