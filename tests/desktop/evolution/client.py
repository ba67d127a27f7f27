#!/usr/bin/python3 -B
"""Speaks to the desktop's calendar service through its own library. Reads one request a line and
writes one answer a line, until the input ends."""

import json
import sys

import gi

gi.require_version("ECal", "2.0")
gi.require_version("EDataServer", "1.2")
gi.require_version("ICalGLib", "3.0")
from gi.repository import ECal, EDataServer, Gio, GLib, ICalGLib  # noqa: E402

# Not to be waited for: a local calendar never tells that it is connected.
AT_ONCE = 0xFFFFFFFF
PATIENCE = 20 * GLib.USEC_PER_SEC
KINDS = {
    "calendar": (EDataServer.SOURCE_EXTENSION_CALENDAR, ECal.ClientSourceType.EVENTS),
    "tasks": (EDataServer.SOURCE_EXTENSION_TASK_LIST, ECal.ClientSourceType.TASKS),
}


def patiently(attempt, failure):
    """Tries until it succeeds, for a while: each program learns by itself of what was created."""
    limit = GLib.get_monotonic_time() + PATIENCE
    while True:
        try:
            return attempt()
        except failure:
            if GLib.get_monotonic_time() > limit:
                raise
        # What the service tells meanwhile is taken in; an attempt follows whatever it told.
        GLib.timeout_add(5, lambda: GLib.SOURCE_REMOVE)
        GLib.MainContext.default().iteration(True)


class Desk:
    def __init__(self):
        self._registry = None
        self._clients = {}

    # The bus.

    def _ask_bus(self, method, arguments):
        bus = Gio.bus_get_sync(Gio.BusType.SESSION, None)
        place = ("org.freedesktop.DBus", "/org/freedesktop/DBus", "org.freedesktop.DBus")
        done = bus.call_sync(*place, method, arguments, None, Gio.DBusCallFlags.NONE, -1, None)
        return done.unpack()[0]

    def pid(self, name):
        try:
            return self._ask_bus("GetConnectionUnixProcessID", GLib.Variant("(s)", (name,)))
        except GLib.Error:
            return None

    def activatable_names(self):
        return self._ask_bus("ListActivatableNames", None)

    def start(self, name):
        """As anybody's call would; the bus must know how."""
        self._ask_bus("StartServiceByName", GLib.Variant("(su)", (name, 0)))

    # Calendars and task lists.

    @property
    def registry(self):
        if self._registry is None:
            self._registry = EDataServer.SourceRegistry.new_sync(None)
        return self._registry

    def create(self, uid, title, kind, backend="local", parent="local-stub", enabled=True, keys=None):
        """`keys`: further settings, as [group, name, value]."""
        file = GLib.KeyFile()
        extension = KINDS[kind][0]
        for group, name, value in [
            ["Data Source", "DisplayName", title],
            ["Data Source", "Enabled", "true" if enabled else "false"],
            ["Data Source", "Parent", parent],
            [extension, "BackendName", backend],
            [extension, "Selected", "true"],
            *(keys or []),
        ]:
            file.set_string(group, name, value)
        bus = Gio.bus_get_sync(Gio.BusType.SESSION, None)
        bus.call_sync(
            "org.gnome.evolution.dataserver.Sources5",
            "/org/gnome/evolution/dataserver/SourceManager",
            "org.gnome.evolution.dataserver.SourceManager",
            "CreateSources",
            GLib.Variant("(a{ss})", ({uid: file.to_data()[0]},)),
            None,
            Gio.DBusCallFlags.NONE,
            -1,
            None,
        )
        self._source(uid)

    def _source(self, uid):
        def look():
            source = self.registry.ref_source(uid)
            if source is None:
                raise LookupError("there is no source " + uid)
            return source

        return patiently(look, LookupError)

    def _extension(self, source):
        for extension, _ in KINDS.values():
            if source.has_extension(extension):
                return source.get_extension(extension)
        raise LookupError("neither a calendar nor a task list")

    def sources(self):
        """The titles of the calendars and task lists by their identifiers."""
        return {
            source.get_uid(): source.get_display_name()
            for extension, _ in KINDS.values()
            for source in self.registry.list_sources(extension)
        }

    def alter(self, uid, title=None, enabled=None, selected=None):
        source = self._source(uid)
        if title is not None:
            source.set_display_name(title)
        if enabled is not None:
            source.set_enabled(enabled)
        if selected is not None:
            self._extension(source).set_selected(selected)
        source.write_sync(None)

    def remove(self, uid):
        self._source(uid).remove_sync(None)
        self._clients.pop(uid, None)

    def connection(self, uid):
        """The state of the connection to the account behind it, by name."""
        return self._source(uid).get_connection_status().value_nick

    def authenticate(self, uid, user, password):
        credentials = EDataServer.NamedParameters.new()
        credentials.set(EDataServer.SOURCE_CREDENTIAL_USERNAME, user)
        credentials.set(EDataServer.SOURCE_CREDENTIAL_PASSWORD, password)
        self._source(uid).invoke_authenticate_sync(credentials, None)

    # What they hold.

    def _client(self, uid):
        if uid not in self._clients:
            self._clients[uid] = patiently(lambda: self._connect(uid), GLib.Error)
        return self._clients[uid]

    def _connect(self, uid):
        source = self._source(uid)
        kind = next(kind for name, kind in KINDS.values() if source.has_extension(name))
        return ECal.Client.connect_sync(source, kind, AT_ONCE, None)

    def forget(self):
        """As after the end of the service: connections are made anew."""
        self._clients = {}

    def add(self, uid, text):
        component = ICalGLib.Component.new_from_string(text)
        return self._client(uid).create_object_sync(component, ECal.OperationFlags.NONE, None)[1]

    def receive(self, uid, text):
        calendar = ICalGLib.Component.new_from_string(text)
        self._client(uid).receive_objects_sync(calendar, ECal.OperationFlags.NONE, None)

    def change(self, uid, text):
        component = ICalGLib.Component.new_from_string(text)
        self._client(uid).modify_object_sync(
            component, ECal.ObjModType.ALL, ECal.OperationFlags.NONE, None
        )

    def drop(self, uid, item, occurrence=None):
        kind = ECal.ObjModType.THIS if occurrence else ECal.ObjModType.ALL
        self._client(uid).remove_object_sync(item, occurrence, kind, ECal.OperationFlags.NONE, None)

    def components(self, uid):
        found = self._client(uid).get_object_list_sync("#t", None)[1]
        return [component.as_ical_string() for component in found]

    def refresh(self, uid):
        self._client(uid).refresh_sync(None)


def answer(desk, request):
    try:
        return {"value": getattr(desk, request["do"])(**request["with"])}
    except (GLib.Error, LookupError) as error:
        return {"error": str(error)}


def main():
    desk = Desk()
    for line in sys.stdin:
        print(json.dumps(answer(desk, json.loads(line))), flush=True)
        while GLib.MainContext.default().iteration(False):
            pass


main()
