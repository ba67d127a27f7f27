"""Looks at the programs of a session as a screen reader does, and operates them. It runs inside the
session, as its user; takes requests as lines of JSON and answers in the same way."""

import json
import sys

from gi.repository import Gio, GLib

LIMIT = 20000  # milliseconds for an answer
ROOT = "/org/a11y/atspi/accessible/root"
PREFIX = "org.a11y.atspi."

# Of the protocol's numbers those that are used here.
ROLES = {
    7: "check box", 11: "combo box", 23: "frame", 27: "image", 29: "label", 31: "list", 32: "list item",
    37: "page tab", 38: "page tab list", 43: "push button", 44: "radio button", 51: "slider", 61: "text",
    62: "toggle button",
}
STATES = {1: "active", 4: "checked", 11: "focusable", 12: "focused", 20: "pressed", 24: "sensitive"}


def bus_of_accessibility():
    session = Gio.bus_get_sync(Gio.BusType.SESSION)
    launcher = ("org.a11y.Bus", "/org/a11y/bus", "org.a11y.Bus", "GetAddress")
    address = session.call_sync(*launcher, None, None, 0, LIMIT, None).unpack()[0]
    flags = Gio.DBusConnectionFlags
    how = flags.AUTHENTICATION_CLIENT | flags.MESSAGE_BUS_CONNECTION
    return Gio.DBusConnection.new_for_address_sync(address, how, None, None)


BUS = bus_of_accessibility()


def call(name, path, interface, method, arguments=None):
    return BUS.call_sync(name, path, interface, method, arguments, None, 0, LIMIT, None).unpack()


def children(name, path):
    return call(name, path, PREFIX + "Accessible", "GetChildren")[0]


class Known:
    """What a program tells of one of its accessible objects."""

    def __init__(self, item):
        (self.program, self.path), _, self.parent = item[:3]
        self.children = item[4]
        self.interfaces = item[5]
        self.name, self.role, self.description = item[6], ROLES.get(item[7], str(item[7])), item[8]
        bits = item[9][0] | item[9][1] << 32
        self.states = sorted(state for bit, state in STATES.items() if bits >> bit & 1)

    def fits(self, request):
        wanted = ((request.get("role"), self.role), (request.get("name"), self.name),
                  (request.get("description"), self.description))
        return all(value in (None, own) for value, own in wanted)

    def value(self):
        return self.property("Value", "CurrentValue") if PREFIX + "Value" in self.interfaces else None

    def property(self, interface, name):
        get = ("org.freedesktop.DBus.Properties", "Get")
        return call(self.program, self.path, *get, GLib.Variant("(ss)", (PREFIX + interface, name)))[0]

    def can_act(self):
        if PREFIX + "Action" not in self.interfaces:
            return False
        return bool(call(self.program, self.path, PREFIX + "Action", "GetActions")[0])

    def told(self):
        return {"role": self.role, "name": self.name, "description": self.description,
                "value": self.value(), "states": self.states}


def items_of(program):
    return [Known(item) for item in call(program, "/org/a11y/atspi/cache", PREFIX + "Cache", "GetItems")[0]]


def everything_of(program):
    """A program knows of an object only after somebody asked its parent for it."""
    asked = set()
    while True:
        items = items_of(program)
        there = {}
        for item in items:
            there[item.parent[1]] = there.get(item.parent[1], 0) + 1
        new = [item for item in items if item.children > there.get(item.path, 0) and item.path not in asked]
        if not new:
            return items
        for item in new:
            asked.add(item.path)
            children(program, item.path)


def everything():
    items = []
    for program, path in children(PREFIX + "Registry", ROOT):
        children(program, path)
        items += everything_of(program)
    return items


def found(request, is_fit=lambda item: True):
    for item in everything():
        if item.fits(request) and is_fit(item):
            return item
    raise LookupError("there is no %s" % request)


def tree(_):
    return [{"role": item.role, "name": item.name} for item in everything()]


def look(request):
    """Of a control and what it consists of, which may bear its name too, what has the focus tells."""
    fitting = [item for item in everything() if item.fits(request)]
    if not fitting:
        raise LookupError("there is no %s" % request)
    return max(fitting, key=lambda item: "focusable" in item.states).told()


def focused(_):
    having = [item for item in everything() if "focused" in item.states]
    return having[-1].told() if having else None


def act(request):
    """The first action of a control is what a click would do."""
    item = found(request, Known.can_act)
    return call(item.program, item.path, PREFIX + "Action", "DoAction", GLib.Variant("(i)", (0,)))[0]


def place_of(item):
    """Left, top, width and height within its window."""
    within_window = GLib.Variant("(u)", (1,))
    return call(item.program, item.path, PREFIX + "Component", "GetExtents", within_window)[0]


def place(request):
    return place_of(found(request))


def places(request):
    return [[item.name, *place_of(item)] for item in everything() if item.fits(request)]


def set_value(request):
    item = found(request)
    value = GLib.Variant("(ssv)", (PREFIX + "Value", "CurrentValue", GLib.Variant("d", request["value"])))
    call(item.program, item.path, "org.freedesktop.DBus.Properties", "Set", value)
    return True


def set_text(request):
    item = found(request)
    text = GLib.Variant("(s)", (request["text"],))
    return call(item.program, item.path, PREFIX + "EditableText", "SetTextContents", text)[0]


def text(request):
    item = found(request, lambda item: PREFIX + "Text" in item.interfaces)
    count = item.property("Text", "CharacterCount")
    return call(item.program, item.path, PREFIX + "Text", "GetText", GLib.Variant("(ii)", (0, count)))[0]


KNOWN = (tree, look, focused, act, place, places, set_value, set_text, text)
REQUESTS = {each.__name__: each for each in KNOWN}


def answer(request):
    # Programs come and go meanwhile.
    try:
        return {"answer": REQUESTS[request.pop("do")](request)}
    except (LookupError, GLib.Error) as error:
        return {"error": "%s: %s" % (type(error).__name__, error)}


for line in sys.stdin:
    print(json.dumps(answer(json.loads(line))), flush=True)
