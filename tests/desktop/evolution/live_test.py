"""The program while the desktop's calendar service changes under it."""

import os
import statistics
import time
import unittest

from desktop_session import DesktopSession, eventually, run_tests
from published import Probe, options, titles
from service import Evolution

# What may pass until a change is published, typically.
SOON = float(os.environ.get("ORVANE_SOON", "2"))


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

    def changes_are_published_within_two_seconds(self):
        with DesktopSession() as session:
            evolution = Evolution(session)
            evolution.prepare("work", "Work")
            evolution.prepare("chores", "Chores", "tasks")
            evolution.run()
            probe = Probe(session)
            both = lambda agenda: "Work" in options(agenda) and "Chores" in options(agenda, "reminderListOptions")
            probe.when("both are listed", both)
            taken = []
            for of, uid, text, end in (
                ("events", "work", event, lambda: evolution.drop("work", "one")),
                ("reminders", "chores", task, lambda: evolution.change("chores", task("Done", more="STATUS:COMPLETED\n"))),
            ):
                shows = lambda *expected: lambda agenda: titles(agenda, of) == list(expected)
                taken += [
                    self.timed(probe, lambda: evolution.add(uid, text("First")), "it is added", shows("First")),
                    self.timed(probe, lambda: evolution.change(uid, text("Second")), "it is changed", shows("Second")),
                    self.timed(probe, end, "it is gone", shows()),
                ]
            print("seconds until published:", " ".join("%.2f" % seconds for seconds in taken))
            self.assertLess(statistics.median(taken), SOON)
            self.assertEqual(probe.said(), [])

    def a_burst_is_published_once_or_twice(self):
        with DesktopSession() as session:
            evolution = Evolution(session)
            evolution.prepare("work", "Work")
            evolution.run()
            probe = Probe(session)
            probe.when("it is listed", lambda agenda: "Work" in options(agenda))
            text = "BEGIN:VCALENDAR\n%sEND:VCALENDAR\n" % "".join(
                event("Event %d" % number, "uid%d" % number) for number in range(200))
            evolution.receive("work", text)
            probe.when("all are there", lambda agenda: len(agenda["events"]) == 200)
            counts = [len(agenda["events"]) for _, agenda in probe.publications()]
            self.assertLessEqual(len(set(counts) - {0}), 3, counts)

    def calendars_come_and_go_and_change_their_names(self):
        with DesktopSession() as session:
            evolution = Evolution(session)
            evolution.run()
            probe = Probe(session)
            probe.when("there are the service's own", lambda agenda: "Personal" in options(agenda))
            evolution.create("work", "Work")
            evolution.add("work", event("Review"))
            has = lambda title: lambda agenda: title in options(agenda)
            shows = lambda agenda: "Review" in titles(agenda)
            probe.when("it came", lambda agenda: has("Work")(agenda) and shows(agenda))
            before = probe.agenda["events"][0]
            evolution.alter("work", title="Office")
            renamed = lambda agenda: [item["calendarTitle"] for item in agenda["events"]] == ["Office"]
            after = probe.when("it is renamed", lambda agenda: has("Office")(agenda) and renamed(agenda))[1]
            self.assertEqual(after["events"][0]["id"], before["id"])
            self.assertEqual(after["events"][0]["calendarIdentifier"], before["calendarIdentifier"])
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
        with DesktopSession() as session:
            evolution = Evolution(session)
            evolution.prepare("work", "Work")
            evolution.run()
            probe = Probe(session)
            probe.when("it is listed", lambda agenda: "Work" in options(agenda))
            self.assertEqual(probe.running.end(), 0)
            helpers = lambda: [line for line in session.processes() if "orvane" in line.split()[0]]
            eventually("its helpers ended too", lambda: helpers() == [])
            self.assertEqual(probe.said(), [])


if __name__ == "__main__":
    run_tests()
