"""What the program publishes, as the agenda probe tells it, and how two agendas are compared."""

import json
import os
import time

from desktop_session import eventually, program

# Long, since everything may be busy.
PATIENCE = 150

# What may pass until a change is published, typically; and a sign that nothing waited for another's
# silence, since the program has 20 seconds of patience with it.
SOON = float(os.environ.get("ORVANE_SOON", "2"))
UNDELAYED = min(5 * SOON, 15)

# For a program that is to know of no service.
NO_BUS = {"DBUS_SESSION_BUS_ADDRESS": "unix:path=/dev/null/none"}


class Probe:
    """A running program with a store of its own; `options` are those of the agenda probe."""

    def __init__(self, session, *options, environment=None):
        companions = [session.within_reach(program(name)) for name in ("orvane-reader", "orvane-evolution.so")]
        command = [program("tests", "agenda_probe"), *companions, *options]
        self.started = time.monotonic()
        self.running = session.start(*command, environment=environment)

    def publications(self):
        """All so far: (seconds on the monotonic clock, agenda)."""
        whole = [line for line in self.running.output.split("\n")[:-1] if line.startswith('{"at"')]
        return [(told["at"], told["agenda"]) for told in map(json.loads, whole)]

    def said(self):
        """What it wrote beside its publications."""
        return [line for line in self.running.lines if not line.startswith('{"at"')]

    def has_loaded(self, name):
        """Whether a library or module of that name is in its memory."""
        with open("/proc/%d/maps" % self.running.process.pid, encoding="utf-8") as maps:
            return any(name in line for line in maps)

    @property
    def agenda(self):
        """The latest."""
        told = self.publications()
        return told[-1][1] if told else None

    def when(self, what, condition, seconds=PATIENCE):
        """Waits for an agenda that the condition is true of; answers when it was published, and it."""

        def look():
            assert self.running.is_running(), self.running.output[-2000:]
            told = self.publications()
            return told[-1] if told and condition(told[-1][1]) else None

        return eventually(what, look, seconds)

    def settled(self):
        """The agenda when the first refresh is over."""
        is_over = lambda agenda: not agenda["isRefreshing"] and agenda["calendarAuthorizationState"] != "unknown"
        return self.when("the first refresh is over", is_over)[1]


def titles(agenda, of="events"):
    return [item["title"] for item in agenda[of]]


def options(agenda, of="calendarOptions"):
    return [option["title"] for option in agenda[of]]


def without(item, *fields):
    return {name: value for name, value in item.items() if name not in fields}


def compared(agenda, calendars):
    """What two agendas with these calendars must agree on: by calendar everything that is published
    of it, but for identifiers."""
    kept = {title: [] for title in calendars}
    for kind, fields in (
        ("events", ("id", "calendarIdentifier", "calendarTitle")),
        ("reminders", ("id", "calendarIdentifier", "calendarTitle")),
    ):
        for item in agenda[kind]:
            kept.setdefault(item["calendarTitle"], []).append({"kind": kind, **without(item, *fields)})
    for kind in ("calendarOptions", "reminderListOptions"):
        for option in agenda[kind]:
            kept.setdefault(option["title"], []).append({"kind": kind, **without(option, "id", "title")})
    order = lambda item: json.dumps(item, sort_keys=True)
    return {title: sorted(items, key=order) for title, items in kept.items()}


def beside(agenda, calendars):
    """What is published beside the calendars: in which order their items come, what is counted down to,
    and what may be read. Which of two of one moment is first follows from identifiers, so it is left
    out."""
    of_these = lambda kind: [item for item in agenda[kind] if item["calendarTitle"] in calendars]
    return {
        "the order of events": [(item["isAllDay"], item["startDate"]) for item in of_these("events")],
        "the order of reminders": [
            (item["dueDate"], None if item["dueDate"] else item["priority"]) for item in of_these("reminders")],
        "the next deadline": agenda["nextDeadline"] and without(agenda["nextDeadline"], "id", "subtitle"),
        "access": [agenda[kind + "AuthorizationState"] for kind in ("calendar", "reminder")],
    }


def differences(one, other, calendars):
    """Those of the calendars of which two agendas tell different things, and what else they tell
    differently: title or name → (one's, other's)."""
    ones, others = compared(one, calendars), compared(other, calendars)
    alike = [title for title in calendars if ones.get(title) == others.get(title)]
    ones.update(beside(one, alike))
    others.update(beside(other, alike))
    return {what: (ones.get(what), others.get(what)) for what in [*calendars, *beside(one, [])]
            if ones.get(what) != others.get(what)}
