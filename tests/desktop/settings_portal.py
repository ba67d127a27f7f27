"""Stands in for the desktop's settings portal. It runs inside the session; each line that it is given
is the colour scheme from then on: 0 none, 1 dark, 2 light. Three numbers from 0 to 1 are the accent,
three that are no such numbers stand for none. It begins with dark, and a red accent."""

import sys

from gi.repository import Gio, GLib

NAME, PATH = "org.freedesktop.portal.Desktop", "/org/freedesktop/portal/desktop"
INTERFACE, SPACE = "org.freedesktop.portal.Settings", "org.freedesktop.appearance"
DESCRIPTION = """<node><interface name="%s">
<method name="Read"><arg direction="in" type="s"/><arg direction="in" type="s"/>
<arg direction="out" type="v"/></method>
<signal name="SettingChanged"><arg type="s"/><arg type="s"/><arg type="v"/></signal>
</interface></node>""" % INTERFACE

settings = {
    "color-scheme": GLib.Variant("u", 1),
    "accent-color": GLib.Variant("(ddd)", (0.8, 0.1, 0.1)),
}
bus = Gio.bus_get_sync(Gio.BusType.SESSION)
loop = GLib.MainLoop()


def read(_bus, _sender, _path, _interface, _method, arguments, invocation):
    space, key = arguments.unpack()
    if space == SPACE and key in settings:
        value = GLib.Variant("v", settings[key])
        return invocation.return_value(GLib.Variant("(v)", (value,)))
    return invocation.return_dbus_error("org.freedesktop.portal.Error.NotFound", "no such setting")


def told(*_):
    line = sys.stdin.readline()
    if not line:
        loop.quit()
        return False
    numbers = line.split()
    if len(numbers) == 1:
        key, value = "color-scheme", GLib.Variant("u", int(line))
    else:
        key, value = "accent-color", GLib.Variant("(ddd)", tuple(map(float, numbers)))
    settings[key] = value
    changed = GLib.Variant("(ssv)", (SPACE, key, value))
    bus.emit_signal(None, PATH, INTERFACE, "SettingChanged", changed)
    return True


bus.register_object(PATH, Gio.DBusNodeInfo.new_for_xml(DESCRIPTION).interfaces[0], read, None, None)
Gio.bus_own_name_on_connection(bus, NAME, Gio.BusNameOwnerFlags.NONE, lambda *_: print("ready", flush=True), None)
GLib.io_add_watch(GLib.IOChannel.unix_new(0), GLib.PRIORITY_DEFAULT, GLib.IOCondition.IN, told)
loop.run()
