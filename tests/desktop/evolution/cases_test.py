"""A hundred calendars in folders and in the desktop's calendar service: the same agenda."""

import unittest

from cases import CASES, NOW, ZONE, component, event, morning, task
from desktop_session import DesktopSession, eventually, run_tests
from published import NO_BUS, PATIENCE, Probe, compared, differences, options, titles
from service import Evolution

AT = ("--now", str(NOW), "--timezone", ZONE)
NAMES = [case.name for case in CASES]
MARK = morning("20260326")

# What the service itself does: where it knows a zone of that name, it has no other for anybody.
OTHERWISE = {"a known zone of other rules"}
# And what it makes of an import: it ends a series where "this and all that follow" begins.
IMPORTED_OTHERWISE = OTHERWISE | {"this and all that follow", "this and all that follow, since long ago"}

# Of each field that is published, another value; the one that is not cancelled is the next deadline.
ALTERED = {
    "in UTC": event("in UTC", "DTSTART:20260326T090000Z\nDTEND:20260326T100000Z", title="Another"),
    "in a zone": event("in a zone", "DTSTART:20260326T080001Z\nDTEND:20260326T090000Z"),
    "all day": event("all day", "DTSTART;VALUE=DATE:20260327\nDTEND;VALUE=DATE:20260329"),
    "floating": event("floating", "DTSTART;VALUE=DATE:20260326"),
    "daily": event("daily", morning("20260302") + "RRULE:FREQ=DAILY;COUNT=29"),
    "cancelled": event("cancelled", "DTSTART:20260325T073000Z\nDURATION:PT15M"),
    "due at an instant": task("due at an instant", "DUE:20260326T150001Z"),
    "due some day": task("due some day", "PRIORITY:6"),
    "done by its status": task("done by its status", "DUE:20260326T150000Z\nSTATUS:NEEDS-ACTION"),
}


def place_in_folders(session, cases):
    for number, case in enumerate(cases):
        session.write(case.text, "folders", str(number), "item.ics")
        session.write(case.name, "folders", str(number), "displayname")
    return ("--folders", session.path("folders"))


def place_in_service(evolution, cases):
    for number, case in enumerate(cases):
        evolution.prepare("case%d" % number, case.name, case.kind, case.text)


def of_folders(session):
    probe = Probe(session, *AT, *place_in_folders(session, CASES), environment=NO_BUS)
    agenda = probe.settled()
    probe.running.end()
    return agenda


def marked(agenda):
    return "Mark" in titles(agenda)


def not_twice(expected, agenda):
    """What is not there as it is expected, and once more: name → (once, found)."""
    once, found = compared(expected, NAMES), compared(agenda, NAMES)
    is_twice = lambda name: found[name][::2] == found[name][1::2] == once[name]
    return {name: (once[name], found[name]) for name in NAMES if not is_twice(name)}


class Cases(unittest.TestCase):
    def assert_differ(self, probe, expected, names, compare=lambda one, other: differences(one, other, NAMES)):
        """Waits until exactly these differ; says how they do where others do too."""
        found = lambda: compare(expected, probe.agenda or expected)
        try:
            eventually("only these differ", lambda: probe.agenda and set(found()) == names, PATIENCE)
        except AssertionError:
            told = found()
            self.assertEqual(set(told), names, {name: told[name] for name in list(told)[:5]})
            raise

    def are_a_hundred_that_differ_from_one_another(self):
        self.assertGreaterEqual(len(CASES), 100)
        self.assertEqual(len(set(NAMES)), len(CASES))
        self.assertEqual(len({case.text for case in CASES}), len(CASES))

    def are_the_same_agenda_from_either(self):
        with DesktopSession() as session:
            evolution = Evolution(session)
            expected = of_folders(session)
            place_in_service(evolution, CASES)
            evolution.run()
            probe = Probe(session, *AT)
            self.assert_differ(probe, expected, OTHERWISE)
            # And it stays so when they are read again for another's sake.
            evolution.create("mark", "Marks")
            evolution.add("mark", "\n".join(component("VEVENT", "Mark", MARK)))
            agenda = probe.when("there is one more", marked)[1]
            self.assertEqual(set(differences(expected, agenda, NAMES)), OTHERWISE)
            self.assertEqual(probe.said(), [])

    def are_told_apart_where_one_is_deliberately_different(self):
        with DesktopSession() as session:
            evolution = Evolution(session)
            expected = of_folders(session)
            place_in_service(evolution, [ALTERED.get(case.name, case) for case in CASES])
            evolution.run()
            self.assert_differ(Probe(session, *AT), expected, OTHERWISE | set(ALTERED) | {"the next deadline"})

    def are_the_same_when_they_were_imported(self):
        with DesktopSession() as session:
            evolution = Evolution(session)
            expected = of_folders(session)
            evolution.run()
            for number, case in enumerate(CASES):
                evolution.create("case%d" % number, case.name, case.kind)
                evolution.receive("case%d" % number, case.text)
            self.assert_differ(Probe(session, *AT), expected, IMPORTED_OTHERWISE)

    def are_listed_with_the_folders_and_have_identifiers_of_their_own(self):
        with DesktopSession() as session:
            evolution = Evolution(session)
            expected = of_folders(session)
            place_in_service(evolution, CASES)
            evolution.run()
            runs = []
            for _ in range(2):
                probe = Probe(session, *AT, "--folders", session.path("folders"))
                self.assert_differ(probe, expected, OTHERWISE, not_twice)
                agenda = probe.agenda
                probe.running.end()
                # Sorted together, a folder's stands beside the account's of the same title.
                for offered in ("calendarOptions", "reminderListOptions"):
                    listed = [title for title in options(agenda, offered) if title in NAMES]
                    self.assertEqual(listed[::2], listed[1::2])
                items = agenda["events"] + agenda["reminders"]
                found = [item["id"] for item in items if item["calendarTitle"] not in OTHERWISE]
                self.assertEqual(len(set(found)), len(found))
                runs.append(set(found))
            self.assertEqual(*runs)


if __name__ == "__main__":
    run_tests()
