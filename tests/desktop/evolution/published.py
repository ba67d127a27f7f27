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
# A loaded machine is late sometimes; the program may not be late each time.
ATTEMPTS = 3

# For a program that is to know of no service.
NO_BUS = {"DBUS_SESSION_BUS_ADDRESS": "unix:path=/dev/null/none"}


def waited_for_machine(session):
    """For how many seconds the session's processes have been ready to run and had no processor, or
    their host had none for the whole machine, or anybody waited for a disk or memory. It only grows
    while the same processes run. None where the system does not count it."""
    try:
        seconds = sum(int(text.split()[1]) for text in session.of_each_thread("schedstat")) / 1e9
        for of in ("io", "memory"):
            with open("/proc/pressure/" + of, encoding="ascii") as file:
                seconds += int(file.readline().rsplit("total=", 1)[1]) / 1e6
        with open("/proc/stat", encoding="ascii") as file:
            seconds += int(file.readline().split()[8]) / os.sysconf("SC_CLK_TCK")
    except OSError:
        return None
    return seconds


class Promptness:
    """How long things took, each of them several times over, on a machine that may be busy: none may
    take longer than SOON and what was waited for the machine meanwhile, and each must take less than
    SOON at least once."""

    def __init__(self, session):
        self._session = session
        self.taken = {}

    def take(self, what, act):
        """`act` answers the seconds that it took."""
        before = waited_for_machine(self._session)
        seconds = act()
        after = waited_for_machine(self._session)
        waited = None if None in (before, after) else max(after - before, 0)
        self.taken.setdefault(what, []).append((seconds, waited))

    def best(self):
        return {what: min(seconds for seconds, _ in times) for what, times in self.taken.items()}

    def late(self):
        """Those that were, with all their times."""
        is_late = lambda seconds, waited: waited is not None and seconds - waited >= SOON
        late = {what: times for what, times in self.taken.items() if any(is_late(*each) for each in times)}
        late.update({what: self.taken[what] for what, seconds in self.best().items() if seconds >= SOON})
        return late

    def __str__(self):
        told = lambda waited: "" if waited is None else " (%.2f of them for the machine)" % waited
        each = lambda times: ", ".join("%.2f%s" % (seconds, told(waited)) for seconds, waited in times)
        return "".join("%s: %s\n" % (what, each(times)) for what, times in self.taken.items())


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
