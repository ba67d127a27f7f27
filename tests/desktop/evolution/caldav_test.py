"""Calendars on a real CalDAV server, as the desktop's calendar service brings them to the program."""

import time
import unittest

from caldav import PASSWORD, USER, CalendarServer, SilentServer, source_keys
from cases import NOW, ZONE, calendar, component, morning
from desktop_session import DesktopSession, eventually, happens, run_tests
from published import NO_BUS, PATIENCE, UNDELAYED, Probe, differences, options, titles
from service import BusTraffic, Evolution

# Those who ask a user for a password, or whether a server is to be trusted.
PROMPTERS = ("org.gnome.keyring", "org.gnome.evolution.dataserver.UserPrompter")
AT = ("--now", str(NOW), "--timezone", ZONE)


def event(uid, title, *blocks):
    names = [title] + ["%s (changed %d)" % (title, number) for number in range(1, len(blocks))]
    return calendar(*[component("VEVENT", name, block, uid) for name, block in zip(names, blocks)])


def task(uid, title, block):
    return calendar(component("VTODO", title, block, uid))


WORK = {
    "berlin": event("berlin", "Stand-up", morning("20260302") + "RRULE:FREQ=WEEKLY;BYDAY=MO,TU,WE,TH,FR",
                    "RECURRENCE-ID;TZID=Europe/Berlin:20260326T090000\n"
                    "DTSTART;TZID=Europe/Berlin:20260326T153000\nDURATION:PT30M",
                    "RECURRENCE-ID;TZID=Europe/Berlin:20260327T090000\nSTATUS:CANCELLED\n" + morning("20260327")),
    "york": event("york", "Call with New York",
                  "DTSTART;TZID=America/New_York:20260302T113000\nDURATION:PT45M\nRRULE:FREQ=DAILY\n"
                  "EXDATE;TZID=America/New_York:20260328T113000",
                  "RECURRENCE-ID;TZID=America/New_York:20260330T113000\n"
                  "DTSTART;TZID=America/New_York:20260331T090000\nDURATION:PT1H"),
    "tokyo": event("tokyo", "Call with Tokyo",
                   "DTSTART;TZID=Asia/Tokyo:20260303T170000\nDURATION:PT1H\nRRULE:FREQ=WEEKLY;BYDAY=TU,FR",
                   "RECURRENCE-ID;TZID=Asia/Tokyo:20260327T170000\nSTATUS:CANCELLED\n"
                   "DTSTART;TZID=Asia/Tokyo:20260327T170000"),
    "fair": event("fair", "Fair", "DTSTART;VALUE=DATE:20260327\nDTEND;VALUE=DATE:20260330"),
    "market": event("market", "Market", "DTSTART;VALUE=DATE:20260304\nRRULE:FREQ=WEEKLY",
                    "RECURRENCE-ID;VALUE=DATE:20260325\nDTSTART;VALUE=DATE:20260326"),
}
CHORES = {
    "report": task("report", "Report", "DUE;TZID=Europe/Berlin:20260326T170000\nPRIORITY:1"),
    "tax": task("tax", "Taxes", "DUE;VALUE=DATE:20260331"),
    "paint": task("paint", "Paint the fence", "PRIORITY:9"),
    "done": task("done", "Water the plants", "DUE:20260326T100000Z\nSTATUS:COMPLETED\nPERCENT-COMPLETE:100"),
}
TITLES = ["Work", "Chores"]


def serve(session):
    server = CalendarServer(session)
    for name, title, kind, items in (("work", "Work", "calendar", WORK), ("chores", "Chores", "tasks", CHORES)):
        server.make(name, title, kind)
        for item, text in items.items():
            server.put(name, item, text)
    return server


def sign_up(evolution, port, *names):
    """Calendars of an account; "chores" is a task list."""
    for name in names:
        keys = source_keys(port, name)
        kind = "tasks" if name == "chores" else "calendar"
        evolution.create(name, name.capitalize(), kind, backend="caldav", parent="caldav-stub", keys=keys)


def sign_in(evolution, name, password=PASSWORD):
    # Who signs in before the service asks for it is not heard.
    asks = lambda: evolution.client.call("connection", uid=name) == "awaiting-credentials"
    # After a refusal it now and then does not ask before it has something to do again.
    if not happens(asks, 5):
        evolution.refresh(name)
    eventually("%s asks for a sign-in" % name, asks, PATIENCE)
    evolution.client.call("authenticate", uid=name, user=USER, password=password)


def of_folders(session):
    for folder, title, items in (("work", "Work", WORK), ("chores", "Chores", CHORES)):
        for item, text in items.items():
            session.write(text, "folders", folder, item + ".ics")
        session.write(title, "folders", folder, "displayname")
    probe = Probe(session, *AT, "--folders", session.path("folders"), environment=NO_BUS)
    agenda = probe.settled()
    probe.running.end()
    return agenda


class Account(unittest.TestCase):
    def shows_what_folders_would_and_what_changes_on_the_server(self):
        with DesktopSession() as session:
            evolution = Evolution(session)
            expected = of_folders(session)
            self.assertEqual((len(expected["events"]), len(expected["reminders"])), (13, 3))
            server = serve(session)
            evolution.run()
            sign_up(evolution, server.port, "work", "chores")
            probe = Probe(session, *AT)
            both = lambda agenda: "Work" in options(agenda) and "Chores" in options(agenda, "reminderListOptions")
            probe.when("both are listed", both)
            for name in ("work", "chores"):
                sign_in(evolution, name)
            same = lambda agenda: differences(expected, agenda, TITLES) == {}
            probe.when("they show what folders would", same)

            moved = "DTSTART;VALUE=DATE:20260328\nDTEND;VALUE=DATE:20260331"
            server.put("work", "fair", event("fair", "Fair later", moved))
            server.delete("work", "market")
            server.put("work", "new", event("new", "New", morning("20260330")))
            evolution.refresh("work")
            changed = lambda agenda: {"Fair later", "New"} <= set(titles(agenda))
            gone = lambda agenda: not {"Fair", "Market", "Market (changed 1)"} & set(titles(agenda))
            probe.when("the change arrives", lambda agenda: changed(agenda) and gone(agenda))

            server.put("chores", "report", task("report", "Report", "STATUS:COMPLETED"))
            evolution.refresh("chores")
            probe.when("it is done", lambda agenda: titles(agenda, "reminders") == ["Taxes", "Paint the fence"])
            self.assertEqual(probe.said(), [])

    def with_a_wrong_password_leaves_its_neighbours_in_place(self):
        with DesktopSession() as session:
            evolution = Evolution(session)
            server = serve(session)
            evolution.prepare("home", "Home", text=event("dinner", "Dinner", morning("20260326")))
            evolution.run()
            traffic = BusTraffic(evolution)
            sign_up(evolution, server.port, "work", "chores")
            probe = Probe(session, *AT)
            probe.when("the neighbour is shown", lambda agenda: titles(agenda) == ["Dinner"])
            sign_in(evolution, "work", "wrong")
            refused = lambda: "Failed login" in server.running.output
            eventually("the server refuses it", refused)
            sign_in(evolution, "chores")
            tasks = lambda agenda: len(agenda["reminders"]) == 3
            agenda = probe.when("the account's other list is shown", tasks)[1]
            self.assertEqual(titles(agenda), ["Dinner"])
            self.assertEqual(agenda["calendarAuthorizationState"], "authorized")
            sign_in(evolution, "work")
            probe.when("it is shown once it may be", lambda agenda: "Stand-up" in titles(agenda))
            # Nobody but this test has tried a password, and nobody was asked for one.
            self.assertEqual(len(traffic.calls("InvokeAuthenticate")), 3)
            self.assertEqual(traffic.calls("Prompt"), [])
            self.assertEqual([traffic.to(name) for name in PROMPTERS], [[] for _ in PROMPTERS])
            self.assertEqual(probe.said(), [])

    def that_never_answers_does_not_hold_up_the_others(self):
        with DesktopSession() as session, SilentServer() as silent:
            evolution = Evolution(session)
            evolution.prepare("home", "Home", text=event("dinner", "Dinner", morning("20260326")))
            evolution.run()
            sign_up(evolution, silent.port, "work", "chores", "other")
            probe = Probe(session, *AT)
            shown = probe.when("the neighbour is shown", lambda agenda: "Dinner" in titles(agenda))[0]
            self.assertLess(shown - probe.started, UNDELAYED)
            eventually("the server is asked", lambda: silent.connections)
            begun = time.monotonic()
            evolution.change("home", "\n".join(component("VEVENT", "Supper", morning("20260326"), "dinner")))
            taken = probe.when("a change is shown", lambda agenda: titles(agenda) == ["Supper"])[0] - begun
            self.assertLess(taken, UNDELAYED)
            self.assertEqual(probe.agenda["calendarAuthorizationState"], "authorized")
            # And nothing waits for it in the end.
            begun = time.monotonic()
            self.assertEqual(probe.running.end(), 0)
            self.assertLess(time.monotonic() - begun, 10)
            self.assertEqual(probe.said(), [])

    def whose_server_is_gone_shows_what_it_had(self):
        with DesktopSession() as session:
            evolution = Evolution(session)
            server = serve(session)
            evolution.run()
            sign_up(evolution, server.port, "work")
            probe = Probe(session, *AT)
            probe.when("it is listed", lambda agenda: "Work" in options(agenda))
            sign_in(evolution, "work")
            probe.when("it is shown", lambda agenda: len(agenda["events"]) == 13)
            server.running.end()
            probe.running.end()
            probe = Probe(session, *AT)
            probe.when("it is shown as it was", lambda agenda: len(agenda["events"]) == 13)


if __name__ == "__main__":
    run_tests()
