"""The program while the desktop's calendar service changes under it."""

import time
import unittest

from desktop_session import eventually, run_tests
from published import ATTEMPTS, SOON, Probe, Promptness, options, titles
from service import BusTraffic, calendar_service


def stamp(seconds):
    return time.strftime("%Y%m%dT%H%M%SZ", time.gmtime(time.time() + seconds))


def event(title, uid="one", starts_in=3600):
    return "BEGIN:VEVENT\nUID:%s\nDTSTAMP:20260101T000000Z\nSUMMARY:%s\nDTSTART:%s\nDURATION:PT1H\nEND:VEVENT\n" % (
        uid, title, stamp(starts_in))


def task(title, uid="one", more=""):
    return "BEGIN:VTODO\nUID:%s\nDTSTAMP:20260101T000000Z\nSUMMARY:%s\nDUE:%s\n%sEND:VTODO\n" % (
        uid, title, stamp(7200), more)


class Live(unittest.TestCase):
    def timed(self, probe, change, what, condition):
        """The seconds from the change to the agenda that has it."""
        begun = time.monotonic()
        change()
        return probe.when(what, condition)[0] - begun

    def try_out(self, evolution, probe, of, uid, text, promptness):
        """Each kind of change. It ends as it began."""
        shows = lambda *expected: lambda agenda: titles(agenda, of) == list(expected)

        def take(kind, change, *expected):
            act = lambda: self.timed(probe, change, "it is " + kind, shows(*expected))
            promptness.take(of + " " + kind, act)

        take("added", lambda: evolution.add(uid, text("First")), "First")
        take("changed", lambda: evolution.change(uid, text("Second")), "Second")
        if of == "reminders":
            take("completed", lambda: evolution.change(uid, text("Done", more="STATUS:COMPLETED\n")))
            take("opened again", lambda: evolution.change(uid, text("Again")), "Again")
        take("removed", lambda: evolution.drop(uid, "one"))

    def changes_are_published_within_two_seconds(self):
        with calendar_service(lists=["chores"], work=None, chores=None) as (session, evolution):
            probe = Probe(session)
            both = lambda agenda: "Work" in options(agenda) and "Chores" in options(agenda, "reminderListOptions")
            probe.when("both are listed", both)
            # Opened by the test already, so that this is no part of what is measured.
            for uid in ("work", "chores"):
                evolution.components(uid)
            promptness = Promptness(session)
            for _ in range(ATTEMPTS):
                for of, uid, text in (("events", "work", event), ("reminders", "chores", task)):
                    self.try_out(evolution, probe, of, uid, text, promptness)
                if max(promptness.best().values()) < SOON:
                    break
            print("seconds until published:\n%s" % promptness)
            self.assertEqual(len(promptness.taken), 8)
            self.assertEqual(promptness.late(), {}, "later than %g seconds" % SOON)
            self.assertEqual(probe.said(), [])

    def changes_are_asked_for_before_the_views_tell_of_them(self):
        with calendar_service(work=None) as (session, evolution):
            probe = Probe(session)
            probe.when("it is listed", lambda agenda: "Work" in options(agenda))
            traffic = BusTraffic(evolution)
            found = []
            for number in range(ATTEMPTS):
                passed = lambda: traffic.in_order("GetObjectList", "ObjectsAdded")
                before = len(passed())
                evolution.add("work", event("Added", "added%d" % number))
                told = lambda: "ObjectsAdded" in passed()[before:] and passed()[-1] == "GetObjectList"
                eventually("views tell and it is asked for", told, 60)
                found.append(passed()[before:])
                if found[-1][0] == "GetObjectList":
                    break
            self.assertIn("GetObjectList", [each[0] for each in found], found)

    def a_burst_is_published_in_a_few_steps_at_most(self):
        with calendar_service(work=None) as (session, evolution):
            probe = Probe(session)
            probe.when("it is listed", lambda agenda: "Work" in options(agenda))
            text = "BEGIN:VCALENDAR\n%sEND:VCALENDAR\n" % "".join(
                event("Event %d" % number, "uid%d" % number) for number in range(200))
            evolution.receive("work", text)
            probe.when("all are there", lambda agenda: len(agenda["events"]) == 200)
            counts = [len(agenda["events"]) for _, agenda in probe.publications()]
            self.assertLessEqual(len(set(counts) - {0}), 3, counts)

    def calendars_come_and_go_and_change_their_names(self):
        self.come_and_go("calendar", "calendarOptions", "events", event("Review"))

    def lists_come_and_go_and_change_their_names(self):
        self.come_and_go("tasks", "reminderListOptions", "reminders", task("Review"))

    def come_and_go(self, kind, offered, of, item):
        with calendar_service() as (session, evolution):
            probe = Probe(session)
            probe.when("there are the service's own", lambda agenda: "Personal" in options(agenda, offered))
            evolution.create("work", "Work", kind)
            evolution.add("work", item)
            has = lambda title: lambda agenda: title in options(agenda, offered)
            shows = lambda agenda: "Review" in titles(agenda, of)
            probe.when("it came", lambda agenda: has("Work")(agenda) and shows(agenda))
            before = probe.agenda[of][0]
            evolution.alter("work", title="Office")
            renamed = lambda agenda: [item["calendarTitle"] for item in agenda[of]] == ["Office"]
            after = probe.when("it is renamed", lambda agenda: has("Office")(agenda) and renamed(agenda))[1]
            self.assertEqual(after[of][0]["id"], before["id"])
            self.assertEqual(after[of][0]["calendarIdentifier"], before["calendarIdentifier"])
            gone = lambda agenda: not has("Office")(agenda) and not shows(agenda)
            back = lambda agenda: has("Office")(agenda) and shows(agenda)
            for property in ("enabled", "selected"):
                evolution.alter("work", **{property: False})
                probe.when("it is switched off", gone)
                evolution.alter("work", **{property: True})
                probe.when("it is switched on", back)
            evolution.remove("work")
            probe.when("it went", gone)
            self.assertTrue(probe.running.is_running())
            self.assertEqual(probe.said(), [])

    def the_end_leaves_nothing(self):
        with calendar_service(work=None) as (session, _):
            probe = Probe(session)
            probe.when("it is listed", lambda agenda: "Work" in options(agenda))
            self.assertEqual(probe.running.end(), 0)
            helpers = lambda: [line for line in session.processes() if "orvane" in line.split()[0]]
            eventually("its helpers ended too", lambda: helpers() == [])
            self.assertEqual(probe.said(), [])


if __name__ == "__main__":
    run_tests()
