"""Stands in for the desktop's service that shows notifications. It runs inside the session, and writes
each notification as a line of JSON: its number, the one that it replaces, its title and its text."""

import json

from gi.repository import Gio, GLib

NAME, PATH = "org.freedesktop.Notifications", "/org/freedesktop/Notifications"
DESCRIPTION = """<node><interface name="%s"><method name="Notify">
<arg direction="in" type="s"/><arg direction="in" type="u"/><arg direction="in" type="s"/>
<arg direction="in" type="s"/><arg direction="in" type="s"/><arg direction="in" type="as"/>
<arg direction="in" type="a{sv}"/><arg direction="in" type="i"/><arg direction="out" type="u"/>
</method></interface></node>""" % NAME
FIRST = 41

bus = Gio.bus_get_sync(Gio.BusType.SESSION)
shown = 0


def notify(_bus, _sender, _path, _interface, _method, arguments, invocation):
    global shown
    _, replaced, _, title, text = arguments.unpack()[:5]
    number = replaced or FIRST + shown
    shown += 1
    told = {"number": number, "replaces": replaced, "title": title, "text": text}
    print(json.dumps(told), flush=True)
    invocation.return_value(GLib.Variant("(u)", (number,)))


bus.register_object(PATH, Gio.DBusNodeInfo.new_for_xml(DESCRIPTION).interfaces[0], notify, None, None)
Gio.bus_own_name_on_connection(bus, NAME, Gio.BusNameOwnerFlags.NONE, lambda *_: print("ready", flush=True), None)
GLib.MainLoop().run()
