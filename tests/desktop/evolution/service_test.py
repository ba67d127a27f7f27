"""The calendar service as the other tests use it, before anything of the program is involved."""

import unittest

from desktop_session import DesktopSession, eventually, run_tests
from service import FACTORY, REGISTRY, Evolution

LUNCH = """BEGIN:VEVENT
UID:lunch
DTSTAMP:20260101T000000Z
DTSTART:20260325T110000Z
SUMMARY:Lunch
END:VEVENT
"""
REPORT = """BEGIN:VTODO
UID:report
DTSTAMP:20260101T000000Z
SUMMARY:Report
END:VTODO
"""


def calendar(*components):
    return "BEGIN:VCALENDAR\nVERSION:2.0\nPRODID:-//Example//Planner//EN\n%sEND:VCALENDAR\n" % "".join(components)


class Service(unittest.TestCase):
    def tells_what_was_created_changed_and_removed(self):
        with DesktopSession() as session:
            evolution = Evolution(session)
            evolution.run()
            evolution.create("work", "Work")
            self.assertEqual(evolution.add("work", LUNCH), "lunch")
            self.assertIn("SUMMARY:Lunch", evolution.components("work")[0])
            evolution.change("work", LUNCH.replace("Lunch", "Dinner"))
            self.assertIn("SUMMARY:Dinner", evolution.components("work")[0])
            evolution.drop("work", "lunch")
            self.assertEqual(evolution.components("work"), [])

    def has_the_calendars_that_lay_in_its_folders(self):
        with DesktopSession() as session:
            evolution = Evolution(session)
            evolution.prepare("home", "Home", text=calendar(LUNCH))
            evolution.prepare("chores", "Chores", "tasks", calendar(REPORT))
            evolution.run()
            self.assertIn("SUMMARY:Lunch", evolution.components("home")[0])
            self.assertIn("SUMMARY:Report", evolution.components("chores")[0])
            sources = evolution.client.call("sources")
            self.assertEqual((sources["home"], sources["chores"]), ("Home", "Chores"))

    def renames_and_removes_calendars(self):
        with DesktopSession() as session:
            evolution = Evolution(session)
            evolution.run()
            evolution.create("work", "Work")
            evolution.alter("work", title="Office", enabled=False)
            sources = lambda: evolution.client.call("sources")
            eventually("it is renamed", lambda: sources()["work"] == "Office")
            evolution.remove("work")
            eventually("it is gone", lambda: "work" not in sources())

    def is_started_by_the_bus_and_comes_back_when_it_was_killed(self):
        with DesktopSession() as session:
            evolution = Evolution(session)
            self.assertEqual((evolution.pid(REGISTRY), evolution.pid(FACTORY)), (None, None))
            evolution.make_activatable()
            evolution.create("work", "Work")
            evolution.add("work", LUNCH)
            evolution.kill()
            evolution.client.call("forget")
            self.assertEqual(len(evolution.components("work")), 1)

    def ends_with_its_session(self):
        with DesktopSession() as session:
            evolution = Evolution(session)
            evolution.make_activatable()
            evolution.create("work", "Work")
            evolution.add("work", LUNCH)
            self.assertEqual(len([line for line in session.processes() if "/evolution-" in line]), 2)
        eventually("all ended", lambda: session.processes() == [])


if __name__ == "__main__":
    run_tests()
