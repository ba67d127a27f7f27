"""Stands in for logind, on the system bus that the session names: one user with one graphical session
on console 2, which is found by that user alone, as where a service of the user's runs the programs;
KWin asks for the one that is meant, whatever its name."""

from gi.repository import Gio, GLib

NAME, ROOT = "org.freedesktop.login1", "/org/freedesktop/login1"
SESSION, CONSOLE = ROOT + "/session/_32", 2
PROPERTIES = "org.freedesktop.DBus.Properties"
DESCRIPTION = """<node>
<interface name="org.freedesktop.login1.Manager">
  <method name="GetSession"><arg direction="in" type="s"/><arg direction="out" type="o"/></method>
  <method name="GetSessionByPID"><arg direction="in" type="u"/><arg direction="out" type="o"/></method>
</interface>
<interface name="org.freedesktop.login1.User">
  <property name="Display" type="(so)" access="read"/>
</interface>
<interface name="org.freedesktop.login1.Seat">
  <method name="SwitchTo"><arg direction="in" type="u"/></method>
</interface>
<interface name="org.freedesktop.login1.Session">
  <method name="Lock"/>
  <method name="Unlock"/>
  <method name="SetLockedHint"><arg direction="in" type="b"/></method>
  <signal name="Lock"/>
  <signal name="Unlock"/>
  <property name="Type" type="s" access="read"/>
  <property name="Display" type="s" access="read"/>
  <property name="Active" type="b" access="read"/>
  <property name="LockedHint" type="b" access="read"/>
</interface>
</node>"""
PLACES = {
    "Manager": ROOT,
    "User": ROOT + "/user/self",
    "Seat": ROOT + "/seat/seat0",
    "Session": SESSION,
}

bus = Gio.bus_get_sync(Gio.BusType.SYSTEM)
user = {"Display": GLib.Variant("(so)", ("2", SESSION))}
session = {
    "Type": GLib.Variant("s", "x11"),
    "Display": GLib.Variant("s", ""),
    "Active": GLib.Variant("b", True),
    "LockedHint": GLib.Variant("b", False),
}


def become(name, value):
    session[name] = GLib.Variant("b", value)
    changed = GLib.Variant("(sa{sv}as)", (NAME + ".Session", {name: session[name]}, []))
    bus.emit_signal(None, SESSION, PROPERTIES, "PropertiesChanged", changed)


def called(_bus, _sender, _path, _interface, method, arguments, invocation):
    given = arguments.unpack()
    if method == "GetSessionByPID" or (method == "GetSession" and given != ("auto",)):
        invocation.return_dbus_error(NAME + ".NoSessionForPID", "No session")
        return
    if method == "GetSession":
        invocation.return_value(GLib.Variant("(o)", (SESSION,)))
        return
    if method in ("Lock", "Unlock"):
        bus.emit_signal(None, SESSION, NAME + ".Session", method, None)
    elif method == "SetLockedHint":
        become("LockedHint", *given)
    else:
        become("Active", given == (CONSOLE,))
    invocation.return_value(None)


def read(_bus, _sender, _path, interface, name):
    # The last of them, which whoever follows the session asks for with all others.
    if name == "LockedHint":
        print("read", flush=True)
    return (user if interface.endswith("User") else session)[name]


for interface in Gio.DBusNodeInfo.new_for_xml(DESCRIPTION).interfaces:
    place = PLACES[interface.name.rsplit(".", 1)[1]]
    bus.register_object(place, interface, called, read, None)
Gio.bus_own_name_on_connection(bus, NAME, Gio.BusNameOwnerFlags.NONE, lambda *_: print("ready", flush=True), None)
GLib.MainLoop().run()
