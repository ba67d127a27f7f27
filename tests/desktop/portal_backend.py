"""A desktop's part of the portal for global shortcuts, which the real portal hands its calls to.

portal_backend.py grant|refuse

It writes a line for whatever it is asked, and does on the bus, as NAME at /control, what a user
would: `Activate` presses the key, `End` ends the session as a desktop does that was started anew."""

import sys

import gi

gi.require_version("Gio", "2.0")
from gi.repository import Gio, GLib  # noqa: E402

NAME = "org.freedesktop.impl.portal.desktop.standin"
PATH = "/org/freedesktop/portal/desktop"
SHORTCUTS = "org.freedesktop.impl.portal.GlobalShortcuts"
SESSION = "org.freedesktop.impl.portal.Session"

DESCRIPTION = """
<node>
  <interface name="org.freedesktop.impl.portal.GlobalShortcuts">
    <method name="CreateSession">
      <arg type="o" direction="in"/><arg type="o" direction="in"/>
      <arg type="s" direction="in"/><arg type="a{sv}" direction="in"/>
      <arg type="u" direction="out"/><arg type="a{sv}" direction="out"/>
    </method>
    <method name="BindShortcuts">
      <arg type="o" direction="in"/><arg type="o" direction="in"/>
      <arg type="a(sa{sv})" direction="in"/><arg type="s" direction="in"/>
      <arg type="a{sv}" direction="in"/>
      <arg type="u" direction="out"/><arg type="a{sv}" direction="out"/>
    </method>
    <signal name="Activated">
      <arg type="o"/><arg type="s"/><arg type="t"/><arg type="a{sv}"/>
    </signal>
    <property name="version" type="u" access="read"/>
  </interface>
  <interface name="org.freedesktop.impl.portal.Session">
    <method name="Close"/>
    <signal name="Closed"/>
    <property name="version" type="u" access="read"/>
  </interface>
  <interface name="org.orvane.Standin">
    <method name="Activate"/>
    <method name="End"/>
  </interface>
</node>"""


class Backend:
    def __init__(self, grants):
        self.grants = grants
        self.interfaces = {it.name: it for it in Gio.DBusNodeInfo.new_for_xml(DESCRIPTION).interfaces}
        self.session = None
        self.exported = None
        self.bus = Gio.bus_get_sync(Gio.BusType.SESSION, None)
        self._export(PATH, SHORTCUTS)
        self._export("/control", "org.orvane.Standin")
        Gio.bus_own_name_on_connection(self.bus, NAME, 0, lambda *_: say("ready"), None)

    def _export(self, path, interface):
        property_of = lambda *_: GLib.Variant("u", 1)
        return self.bus.register_object(path, self.interfaces[interface], self._call, property_of, None)

    def _call(self, _bus, _sender, path, _interface, method, arguments, invocation):
        answer = getattr(self, "_on_" + method)(path, *arguments.unpack())
        invocation.return_value(answer)

    def _on_CreateSession(self, _path, _request, session, application, _options):
        say("CreateSession %s %r" % (session, application))
        self._forget()
        self.session = session
        self.exported = self._export(session, SESSION)
        return GLib.Variant("(ua{sv})", (0, {}))

    def _on_BindShortcuts(self, _path, _request, session, shortcuts, parent, _options):
        say("BindShortcuts %s %r %r" % (session, shortcuts, parent))
        if not self.grants:
            return GLib.Variant("(ua{sv})", (1, {}))
        told = [(name, {"trigger_description": GLib.Variant("s", "Key")}) for name, _ in shortcuts]
        return GLib.Variant("(ua{sv})", (0, {"shortcuts": GLib.Variant("a(sa{sv})", told)}))

    def _on_Close(self, path):
        say("Close %s" % path)
        self._forget()

    def _on_Activate(self, _path):
        arguments = GLib.Variant("(osta{sv})", (self.session, "toggle-focus", 1, {}))
        self.bus.emit_signal(None, PATH, SHORTCUTS, "Activated", arguments)

    def _on_End(self, _path):
        self.bus.emit_signal(None, self.session, SESSION, "Closed", None)
        self._forget()

    def _forget(self):
        if self.exported:
            self.bus.unregister_object(self.exported)
        self.exported = None


def say(line):
    print(line, flush=True)


if __name__ == "__main__":
    backend = Backend(sys.argv[1] == "grant")
    GLib.MainLoop().run()
