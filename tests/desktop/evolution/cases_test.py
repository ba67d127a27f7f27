"""A hundred calendars in folders and in the desktop's calendar service: the same agenda."""

import json
import unittest
from types import MappingProxyType

from cases import CASES, NOW, ZONE, component, event, morning, series, task
from desktop_session import DesktopSession, eventually, run_tests
from published import NO_BUS, PATIENCE, Probe, compared, differences, options, titles
from service import Evolution

AT = ("--now", str(NOW), "--timezone", ZONE)
NAMES = [case.name for case in CASES]
MARK = morning("20260326")

# What the service makes of some, in words that mean the same to anybody. Where it knows a zone of that
# name, it has no other for anybody.
SERVED = {
    "a known zone of other rules": event(
        "a known zone of other rules", "DTSTART;TZID=Europe/Lisbon:20260326T090000\nDURATION:PT1H"),
}
# An import ends a series where "this and all that follow" begins; what follows is one occurrence.
IMPORTED = {
    **SERVED,
    "this and all that follow": series(
        "this and all that follow", morning("20260302") + "RRULE:FREQ=DAILY;UNTIL=20260326T080000Z",
        "RECURRENCE-ID;TZID=Europe/Berlin:20260327T090000\nDTSTART;TZID=Europe/Berlin:20260327T110000\nDURATION:PT2H"),
    "this and all that follow, since long ago": series(
        "this and all that follow, since long ago", morning("20250302") + "RRULE:FREQ=DAILY;UNTIL=20250309T080000Z"),
}

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


def of_folders(session, otherwise=MappingProxyType({})):
    """Of all the cases, but for those that are otherwise."""
    cases = [otherwise.get(case.name, case) for case in CASES]
    probe = Probe(session, *AT, *place_in_folders(session, cases), environment=NO_BUS)
    agenda = probe.settled()
    probe.running.end()
    return agenda


def marked(agenda):
    return "Mark" in titles(agenda)


def not_both(one, other, agenda):
    """What is not there as each of the two has it: name → (one's, other's, found)."""
    ones, others, found = (compared(each, NAMES) for each in (one, other, agenda))
    order = lambda item: json.dumps(item, sort_keys=True)
    is_both = lambda name: found[name] == sorted(ones[name] + others[name], key=order)
    return {name: (ones[name], others[name], found[name]) for name in NAMES if not is_both(name)}


class Cases(unittest.TestCase):
    def assert_differ(self, probe, names, compare):
        """Waits until exactly these differ; says how they do where others do too."""
        found = lambda: compare(probe.agenda)
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

    def expected(self, session, otherwise):
        """What folders show where each of the cases is as the service has it; those of them that are
        otherwise are so in what is published."""
        original, served = of_folders(session), of_folders(session, otherwise)
        self.assertEqual(set(differences(original, served, NAMES)), set(otherwise))
        return served

    def are_the_same_agenda_from_either(self):
        with DesktopSession() as session:
            evolution = Evolution(session)
            expected = self.expected(session, SERVED)
            place_in_service(evolution, CASES)
            evolution.run()
            probe = Probe(session, *AT)
            compare = lambda agenda: differences(expected, agenda, NAMES)
            self.assert_differ(probe, set(), compare)
            # And it stays so when they are read again for another's sake.
            evolution.create("mark", "Marks")
            evolution.add("mark", "\n".join(component("VEVENT", "Mark", MARK)))
            agenda = probe.when("there is one more", marked)[1]
            self.assertEqual(compare(agenda), {})
            self.assertEqual(probe.said(), [])

    def are_told_apart_where_one_is_deliberately_different(self):
        with DesktopSession() as session:
            evolution = Evolution(session)
            expected = of_folders(session, SERVED)
            place_in_service(evolution, [ALTERED.get(case.name, case) for case in CASES])
            evolution.run()
            compare = lambda agenda: differences(expected, agenda, NAMES)
            self.assert_differ(Probe(session, *AT), set(ALTERED) | {"the next deadline"}, compare)

    def are_the_same_when_they_were_imported(self):
        with DesktopSession() as session:
            evolution = Evolution(session)
            expected = self.expected(session, IMPORTED)
            evolution.run()
            for number, case in enumerate(CASES):
                evolution.create("case%d" % number, case.name, case.kind)
                evolution.receive("case%d" % number, case.text)
            self.assert_differ(Probe(session, *AT), set(), lambda agenda: differences(expected, agenda, NAMES))

    def are_listed_with_the_folders_and_have_identifiers_of_their_own(self):
        with DesktopSession() as session:
            evolution = Evolution(session)
            served = of_folders(session, SERVED)
            expected = of_folders(session)
            place_in_service(evolution, CASES)
            evolution.run()
            runs = []
            for _ in range(2):
                probe = Probe(session, *AT, "--folders", session.path("folders"))
                self.assert_differ(probe, set(), lambda agenda: not_both(expected, served, agenda))
                agenda = probe.agenda
                probe.running.end()
                # Sorted together, a folder's stands beside the account's of the same title.
                for offered in ("calendarOptions", "reminderListOptions"):
                    listed = [title for title in options(agenda, offered) if title in NAMES]
                    self.assertEqual(listed[::2], listed[1::2])
                found = [item["id"] for item in agenda["events"] + agenda["reminders"]]
                self.assertEqual(len(set(found)), len(found))
                runs.append(set(found))
            self.assertEqual(*runs)


if __name__ == "__main__":
    run_tests()
