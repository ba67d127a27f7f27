"""A headless Xfce: its window manager, and where wanted its desktop and panel, on a bus and an X
server of their own."""

import json
import re

from desktop_session import DesktopSession, eventually, own_display, program
from picture import Picture
from private_bus import start_bus

NAME = "org.orvane.Orvane"
WATCHER = "org.kde.StatusNotifierWatcher"
PANEL_HEIGHT = 40
PANEL = """<?xml version="1.0" encoding="UTF-8"?>
<channel name="xfce4-panel" version="1.0">
  <property name="configver" type="int" value="2"/>
  <property name="panels" type="array">
    <value type="int" value="1"/>
    <property name="panel-1" type="empty">
      <property name="position" type="string" value="p=6;x=0;y=0"/>
      <property name="length" type="uint" value="100"/>
      <property name="size" type="uint" value="%d"/>
      <property name="position-locked" type="bool" value="true"/>
      <property name="plugin-ids" type="array"><value type="int" value="1"/></property>
    </property>
  </property>
  <property name="plugins" type="empty">
    <property name="plugin-1" type="string" value="systray"/>
  </property>
</channel>
""" % PANEL_HEIGHT


class XfceSession(DesktopSession):
    SCREEN = "1600x900x24"
    SERVICES = ("org.xfce.Xfconf",)

    def __init__(self):
        super().__init__()
        self.environment.update(
            {
                "GDK_BACKEND": "x11",
                "GIO_USE_VFS": "local",
                "GSETTINGS_BACKEND": "memory",
                "NO_AT_BRIDGE": "1",
                "XDG_CURRENT_DESKTOP": "XFCE",
            }
        )

    def __enter__(self):
        try:
            self._start_server()
            start_bus(self, *self.SERVICES)
            self.start_manager()
            return self
        except BaseException as error:
            self.__exit__(type(error), error, None)
            raise

    def _start_server(self):
        told = ("-displayfd", "1", "-nolisten", "tcp", "-noreset")
        server = self.start("Xvfb", own_display(), "-screen", "0", self.SCREEN, *told)

        def number():
            return next((line for line in server.lines if re.fullmatch(r"\d+", line)), None)

        self.environment["DISPLAY"] = ":" + eventually("Xvfb tells its number", number)

    def start_manager(self):
        """Starts xfwm4, in the place of one that is there."""
        before = self._root_property("_NET_SUPPORTING_WM_CHECK")
        self.start("xfwm4", "--compositor=on", "--replace")

        def manages():
            now = self._root_property("_NET_SUPPORTING_WM_CHECK")
            return "0x" in now and now != before

        eventually("xfwm4 manages", manages)

    def _root_property(self, name):
        return self.ask("xprop", "-root", name).decode(errors="replace")

    # ---- The program

    def start_program(self):
        running = self.start(program("orvane"))
        eventually("it has its name", lambda: self.has_owner(NAME))
        eventually("its board stands", lambda: self.windows(NAME))
        return running

    def windows(self, resource_class):
        """Those that can be seen."""
        try:
            return self.ask("xdotool", "search", "--onlyvisible", "--class", resource_class).split()
        except AssertionError:
            return []

    def titled(self, title):
        """Windows with that title that can be seen."""
        try:
            return self.ask("xdotool", "search", "--onlyvisible", "--name", "^%s$" % title).split()
        except AssertionError:
            return []

    def focus_mode(self):
        """As the settings keep it; None before they were saved."""
        try:
            with open(self.path(".config", "orvane", "defaults.json"), encoding="utf-8") as file:
                return json.load(file).get("DashboardSettings.focusMode")
        except FileNotFoundError:
            return None

    def set_defaults(self, **values):
        named = {"DashboardSettings.%s" % key: value for key, value in values.items()}
        self.write(json.dumps(named), ".config", "orvane", "defaults.json")

    def press(self, *keys):
        self.ask("xdotool", "key", *keys)

    # ---- The bus

    def call(self, name, path, method, *arguments):
        command = ["gdbus", "call", "--session", "--dest", name, "--object-path", path]
        return self.ask(*command, "--method", method, *arguments).decode().strip()

    def has_owner(self, name):
        bus = "org.freedesktop.DBus"
        return self.call(bus, "/org/freedesktop/DBus", bus + ".NameHasOwner", name) == "(true,)"

    def action(self, name):
        self.ask("gapplication", "action", NAME, name)

    # ---- Desktop and panel

    def picture(self):
        return Picture.from_ppm(self.ask(program("tests", "x11_client"), "picture"))

    def resting_picture(self, looks=6):
        """A picture that was the same for some looks in a row."""
        seen = []

        def rests():
            picture = self.picture()
            if seen and seen[-1] != picture:
                seen.clear()
            seen.append(picture)
            return len(seen) >= looks

        eventually("the screen rests", rests, 40)
        return seen[-1]

    def start_panel(self):
        """A panel at the top with nothing but the status area; answers when that is there."""
        self.write(PANEL, ".config", "xfce4", "xfconf", "xfce-perchannel-xml", "xfce4-panel.xml")
        panel = self.start("xfce4-panel", "--disable-wm-check")
        eventually("the panel watches for items", lambda: self.has_owner(WATCHER))
        return panel

    def status_items(self):
        """What the panel's watcher knows."""
        if not self.has_owner(WATCHER):
            return ""
        get = "org.freedesktop.DBus.Properties.Get"
        return self.call(WATCHER, "/StatusNotifierWatcher", get, WATCHER, "RegisteredStatusNotifierItems")

    def panel_picture(self):
        return self.picture().cropped(0, 0, 1600, PANEL_HEIGHT)

    def start_desktop(self):
        desktop = self.start("xfdesktop")
        eventually("the desktop has its picture", lambda: self.picture().pixel(1500, 850) != (0, 0, 0))
        return desktop

    def set_icon_style(self, style):
        """The user's choice; None takes it away."""
        command = ("xfconf-query", "-c", "xfce4-desktop", "-p", "/desktop-icons/style")
        self.ask(*command, *(("-n", "-t", "int", "-s", style) if style else ("-r",)))

    def icon_style(self):
        """The user's choice as a text, or None where there is none."""
        try:
            return self.ask("xfconf-query", "-c", "xfce4-desktop", "-p", "/desktop-icons/style").decode().strip()
        except AssertionError:
            return None
