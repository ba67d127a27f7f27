"""What may be read of the desktop's calendar service, when some of it or all of it is refused."""

import contextlib
import unittest

from caldav_test import AT, event, morning, serve, sign_in, sign_up
from desktop_session import DesktopSession, eventually, run_tests
from failures_test import calendar, use_folder
from live_test import task
from published import Probe, options, titles
from service import Evolution

# What the service has by itself.
ITS_OWN = ("system-calendar", "system-task-list", "birthdays")


def access(agenda):
    """To events and to reminders: "authorized" or "denied"."""
    states = [agenda[kind + "AuthorizationState"] for kind in ("calendar", "reminder")]
    return tuple(next(iter(state)) if isinstance(state, dict) else state for state in states)


def is_known(*expected):
    return lambda agenda: access(agenda) == expected


@contextlib.contextmanager
def bare_service(**texts):
    """A session and the service in it with these calendars and none of its own."""
    with DesktopSession() as session:
        evolution = Evolution(session)
        for uid, text in texts.items():
            evolution.prepare(uid, uid.capitalize(), text=text)
        evolution.run()
        for uid in ITS_OWN:
            evolution.alter(uid, enabled=False)
        yield session, evolution


class Access(unittest.TestCase):
    def to_no_calendars_at_all_is_not_refused(self):
        with bare_service() as (session, evolution):
            probe = Probe(session, *AT)
            agenda = probe.settled()
            self.assertEqual(access(agenda), ("authorized", "authorized"))
            self.assertEqual((options(agenda), options(agenda, "reminderListOptions")), ([], []))
            # Nor is it once the service was certainly asked.
            evolution.create("work", "Work")
            probe.when("it came", lambda agenda: options(agenda) == ["Work"])
            evolution.remove("work")
            probe.when("it went", lambda agenda: options(agenda) == [])
            self.assertEqual({access(agenda) for _, agenda in probe.publications()
                              if not agenda["isRefreshing"]} - {("unknown", "unknown")},
                             {("authorized", "authorized")})
            self.assertEqual(probe.said(), [])

    def is_denied_to_a_kind_as_long_as_nothing_of_it_can_be_read(self):
        with bare_service() as (session, evolution):
            server = serve(session)
            sign_up(evolution, server.port, "work", "chores")
            probe = Probe(session, *AT)
            probe.when("both are refused", is_known("denied", "denied"))
            sign_in(evolution, "chores")
            shown = lambda agenda: access(agenda) == ("denied", "authorized") and len(agenda["reminders"]) == 3
            agenda = probe.when("the tasks can be read", shown)[1]
            self.assertEqual(titles(agenda), [])
            sign_in(evolution, "work")
            both = lambda agenda: access(agenda) == ("authorized", "authorized") and len(agenda["events"]) == 13
            probe.when("both can be read", both)
            self.assertEqual(probe.said(), [])

    def is_given_where_one_of_a_kind_can_be_read(self):
        with bare_service(home=event("dinner", "Dinner", morning("20260326"))) as (session, evolution):
            server = serve(session)
            sign_up(evolution, server.port, "work", "chores")
            probe = Probe(session, *AT)
            known = lambda agenda: access(agenda) == ("authorized", "denied") and titles(agenda) == ["Dinner"]
            agenda = probe.when("the neighbour is shown and no list is", known)[1]
            self.assertEqual(options(agenda), ["Home", "Work"])
            # The kind is denied as soon as the one is gone.
            evolution.remove("home")
            probe.when("nothing can be read", is_known("denied", "denied"))
            self.assertEqual(probe.said(), [])

    def is_given_where_a_folder_can_be_read(self):
        with bare_service() as (session, evolution):
            server = serve(session)
            session.write(calendar(task("Of the folder")), "folders", "two", "item.ics")
            sign_up(evolution, server.port, "work", "chores")
            probe = Probe(session, *use_folder(session))
            # Both are listed beside the folders', so both were met.
            listed = lambda agenda: "Work" in options(agenda) and "Chores" in options(agenda, "reminderListOptions")
            agenda = probe.when("all are listed", listed)[1]
            self.assertEqual(access(agenda), ("authorized", "authorized"))
            sign_in(evolution, "work", "wrong")
            eventually("the server refuses it", lambda: "Failed login" in server.running.output, 60)
            use_folder(session, "Changed")
            agenda = probe.when("a change is shown", lambda agenda: titles(agenda) == ["Changed"])[1]
            self.assertEqual(access(agenda), ("authorized", "authorized"))
            self.assertEqual(titles(agenda, "reminders"), ["Of the folder"])
            self.assertEqual(probe.said(), [])


if __name__ == "__main__":
    run_tests()
