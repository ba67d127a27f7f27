"""The program when the desktop's calendar service dies, hangs, goes and comes, or never was."""

import contextlib
import os
import signal
import time
import unittest

from desktop_session import DesktopSession, eventually, happens, run_tests
from live_test import event
from published import NO_BUS, UNDELAYED, Probe, options, titles
from service import FACTORY, REGISTRY, BusTraffic, Evolution, calendar_service

MANY = 10000
MODULE, LIBRARY = "orvane-evolution", "libecal"


def calendar(*components):
    return "BEGIN:VCALENDAR\nVERSION:2.0\nPRODID:-//Example//Planner//EN\n%sEND:VCALENDAR\n" % "".join(components)


def many():
    """A calendar with two events today or tomorrow, and thousands of older ones."""
    past = ["BEGIN:VEVENT\nUID:past%d\nDTSTAMP:20200101T000000Z\nSUMMARY:Past %d\n"
            "DTSTART:20%02d%02d%02dT100000Z\nDURATION:PT1H\nEND:VEVENT\n"
            % (number, number, 10 + number % 15, 1 + number % 12, 1 + number % 28) for number in range(MANY - 2)]
    return calendar(*past, event("Near", "near"), event("Far", "far", 26 * 3600))


def always(probe, since, condition):
    """Whether the condition held in every publication after that moment."""
    return all(condition(agenda) for at, agenda in probe.publications() if at > since)


def shows(*expected):
    return lambda agenda: sorted(titles(agenda)) == sorted(expected)


def use_folder(session, title="Of the folder"):
    session.write(calendar(event(title, "folder")), "folders", "one", "item.ics")
    return ("--folders", session.path("folders"))


def review():
    return calendar(event("Review"))


def stop_in_a_question(evolution, traffic, uid):
    """Stops the factory when it was asked what the calendar holds and has not answered. The titles of
    what was added for that are returned."""
    added = []
    pid = evolution.pid(FACTORY)
    for number in range(10):
        told, asked = traffic.signals("ObjectsAdded"), len(traffic.calls("GetObjectList"))
        added.append("Added %d" % number)
        evolution.add(uid, event(added[-1], "added%d" % number, 7200))
        # The program asks when it has been quiet for a moment.
        traffic.promptly("the service tells of it", lambda: traffic.signals("ObjectsAdded") > told)
        os.kill(pid, signal.SIGSTOP)
        waiting = lambda: [call for call in traffic.calls("GetObjectList")[asked:] if not traffic.is_answered(call)]
        if happens(waiting, 5):
            return added
        os.kill(pid, signal.SIGCONT)
    raise AssertionError("it answered each time before it was stopped")


class Death(unittest.TestCase):
    @contextlib.contextmanager
    def begun(self, activatable):
        with calendar_service(() if activatable else (REGISTRY, FACTORY), work=review()) as (session, evolution):
            if activatable:
                evolution.make_activatable()
            probe = Probe(session, *use_folder(session))
            probe.when("both are shown", shows("Of the folder", "Review"))
            self.assertTrue(probe.has_loaded(MODULE) and probe.has_loaded(LIBRARY))
            yield session, evolution, probe

    def survives(self, evolution, probe, *added):
        """What was shown stays, and changes are seen again."""
        evolution.client.call("forget")
        evolution.add("work", event("Afterwards", "two"))
        probe.when("changes are seen again", shows("Afterwards", "Of the folder", "Review", *added))

    def of_the_factory_is_survived_when_the_bus_starts_it(self):
        with self.begun(activatable=True) as (_, evolution, probe):
            killed = time.monotonic()
            evolution.kill(FACTORY)
            self.survives(evolution, probe)
            self.assertTrue(always(probe, killed, lambda agenda: "Review" in titles(agenda)))
            self.assertEqual(probe.said(), [])

    def of_the_factory_is_survived_when_it_is_started_again(self):
        with self.begun(activatable=False) as (session, evolution, probe):
            killed = time.monotonic()
            evolution.kill(FACTORY)
            # The folders go on without it.
            use_folder(session, "Changed")
            probe.when("the folder's change is shown", shows("Changed", "Review"))
            use_folder(session)
            evolution.run(FACTORY)
            self.survives(evolution, probe)
            self.assertTrue(always(probe, killed, lambda agenda: "Review" in titles(agenda)))
            self.assertEqual(probe.said(), [])

    def of_the_whole_service_is_survived(self):
        with self.begun(activatable=False) as (session, evolution, probe):
            killed = time.monotonic()
            evolution.kill(FACTORY)
            evolution.kill(REGISTRY)
            use_folder(session, "Changed")
            probe.when("the folder's change is shown", shows("Changed", "Review"))
            use_folder(session)
            evolution.run()
            evolution.restart_client()
            self.survives(evolution, probe)
            self.assertTrue(always(probe, killed, lambda agenda: "Review" in titles(agenda)))
            self.assertEqual(probe.said(), [])

    def while_a_calendar_is_opened_is_survived(self):
        with calendar_service(work=review()) as (session, evolution):
            evolution.signal(FACTORY, signal.SIGSTOP)
            probe = Probe(session, *use_folder(session))
            probe.when("the folder is shown", shows("Of the folder"))
            evolution.kill(FACTORY)
            evolution.run(FACTORY)
            probe.when("both are shown", shows("Of the folder", "Review"))
            self.assertEqual(probe.said(), [])

    def in_the_middle_of_a_question_is_survived(self):
        with self.begun(activatable=False) as (_, evolution, probe):
            added = stop_in_a_question(evolution, BusTraffic(evolution), "work")
            killed = time.monotonic()
            evolution.kill(FACTORY)
            evolution.run(FACTORY)
            self.survives(evolution, probe, *added)
            self.assertTrue(always(probe, killed, lambda agenda: "Review" in titles(agenda)))
            self.assertEqual(probe.said(), [])

    def at_any_moment_is_survived(self):
        with calendar_service((), many=many()) as (session, evolution):
            evolution.make_activatable()
            probe = Probe(session, *use_folder(session))
            # So many take it half a second; it is killed at the beginning, and then later and later.
            for delay in (0, 0.05, 0.1, 0.2, 0.4):
                eventually("the factory was started", lambda: evolution.pid(FACTORY))
                time.sleep(delay)
                evolution.kill(FACTORY)
                evolution.client.call("start", name=FACTORY)
            probe.when("everything is shown in the end", shows("Far", "Near", "Of the folder"))
            # The same while it is read again because of a change.
            for delay in (0, 0.1, 0.2):
                evolution.client.call("forget")
                evolution.add("many", event("Lost, perhaps", "lost%d" % (delay * 10), 240 * 3600))
                time.sleep(delay)
                evolution.kill(FACTORY)
                evolution.client.call("start", name=FACTORY)
            evolution.client.call("forget")
            evolution.add("many", event("Last", "last"))
            probe.when("the last change is shown", shows("Far", "Last", "Near", "Of the folder"))
            self.assertEqual(probe.said(), [])

    def of_the_bus_leaves_the_folders(self):
        with self.begun(activatable=False) as (session, evolution, probe):
            os.kill(evolution.bus.process.pid, signal.SIGKILL)
            use_folder(session, "Changed")
            probe.when("the folder's change is shown", lambda agenda: "Changed" in titles(agenda))
            self.assertEqual(probe.running.end(), 0)


class Silence(unittest.TestCase):
    @contextlib.contextmanager
    def of(self, program):
        """It hangs before anything is asked of it, and the folder is shown without waiting for it."""
        with calendar_service(work=review()) as (session, evolution):
            evolution.signal(program, signal.SIGSTOP)
            probe = Probe(session, *use_folder(session))
            shown = probe.when("the folder is shown", shows("Of the folder"))[0]
            self.assertLess(shown - probe.started, UNDELAYED)
            yield session, evolution, probe
            self.assertEqual(probe.said(), [])

    def of_the_factory_does_not_hold_up_the_folders(self):
        with self.of(FACTORY) as (session, evolution, probe):
            evolution.signal(FACTORY, signal.SIGCONT)
            probe.when("both are shown", shows("Of the folder", "Review"))
            evolution.signal(FACTORY, signal.SIGSTOP)
            begun = time.monotonic()
            use_folder(session, "Changed")
            shown = probe.when("the folder's change is shown", shows("Changed", "Review"))[0]
            self.assertLess(shown - begun, UNDELAYED)
            evolution.signal(FACTORY, signal.SIGCONT)
            self.assertEqual(probe.running.end(), 0)

    def of_the_registry_does_not_hold_up_the_folders(self):
        with self.of(REGISTRY) as (_, evolution, probe):
            evolution.signal(REGISTRY, signal.SIGCONT)
            probe.when("both are shown", shows("Of the folder", "Review"))

    def of_the_factory_does_not_hold_up_the_end(self):
        with self.of(FACTORY) as (_, _, probe):
            begun = time.monotonic()
            self.assertEqual(probe.running.end(), 0)
            self.assertLess(time.monotonic() - begun, 10)


    def of_the_bus_does_not_hold_up_the_folders(self):
        with calendar_service(work=review()) as (session, evolution):
            probe = Probe(session, *use_folder(session))
            probe.when("both are shown", shows("Of the folder", "Review"))
            os.kill(evolution.bus.process.pid, signal.SIGSTOP)
            begun = time.monotonic()
            use_folder(session, "Changed")
            shown = probe.when("the folder's change is shown", shows("Changed", "Review"))[0]
            self.assertLess(shown - begun, UNDELAYED)
            # Nor those who start meanwhile.
            self.assertEqual(probe.running.end(), 0)
            probe = Probe(session, *use_folder(session))
            shown = probe.when("the folder is shown", shows("Of the folder"))[0]
            self.assertLess(shown - probe.started, UNDELAYED)
            self.assertEqual((probe.running.end(), probe.said()), (0, []))


class Calendars(unittest.TestCase):
    def may_hold_ten_thousand_events(self):
        with calendar_service(many=many(), work=review()) as (session, evolution):
            probe = Probe(session)
            shown = probe.when("all are shown", shows("Far", "Near", "Review"))[0]
            self.assertLess(shown - probe.started, UNDELAYED)
            begun = time.monotonic()
            evolution.add("many", event("One more", "more"))
            taken = probe.when("one more is shown", shows("Far", "Near", "One more", "Review"))[0] - begun
            self.assertLess(taken, UNDELAYED)
            self.assertEqual(probe.said(), [])

    def may_go_while_they_are_opened(self):
        with calendar_service(many=many(), work=review()) as (session, evolution):
            evolution.signal(FACTORY, signal.SIGSTOP)
            probe = Probe(session)
            listed = lambda agenda: "Many" in options(agenda) and "Near" not in titles(agenda)
            probe.when("it is listed and nothing of it is shown", listed)
            evolution.remove("many")
            probe.when("it is gone", lambda agenda: "Many" not in options(agenda))
            evolution.signal(FACTORY, signal.SIGCONT)
            self.leaves_its_neighbour(evolution, probe)

    def may_go_while_they_are_read(self):
        with calendar_service(many=many(), work=review()) as (session, evolution):
            probe = Probe(session)
            probe.when("all are shown", shows("Far", "Near", "Review"))
            stop_in_a_question(evolution, BusTraffic(evolution), "many")
            evolution.remove("many")
            probe.when("it is gone", lambda agenda: "Many" not in options(agenda) and shows("Review")(agenda))
            evolution.signal(FACTORY, signal.SIGCONT)
            self.leaves_its_neighbour(evolution, probe)

    def leaves_its_neighbour(self, evolution, probe):
        probe.when("what stays is shown", shows("Review"))
        evolution.add("work", event("Afterwards", "two"))
        agenda = probe.when("changes are seen", shows("Afterwards", "Review"))[1]
        self.assertNotIn("Many", options(agenda))
        self.assertEqual(probe.said(), [])


class Absence(unittest.TestCase):
    def settles(self, session, **more):
        """The seconds until the folder is shown, and the probe."""
        probe = Probe(session, *use_folder(session), **more)
        shown = probe.when("the folder is shown", shows("Of the folder"))[0]
        return shown - probe.started, probe

    def of_the_service_costs_nothing(self):
        with DesktopSession() as session:
            Evolution(session)
            alone, with_bus = [], []
            for _ in range(3):
                for times, more in ((alone, {"environment": NO_BUS}), (with_bus, {})):
                    taken, probe = self.settles(session, **more)
                    times.append(taken)
                    self.assertEqual(probe.agenda["calendarAuthorizationState"], "authorized")
                    self.assertEqual(probe.agenda["reminderAuthorizationState"], "authorized")
                    self.assertEqual((probe.running.end(), probe.said()), (0, []))
            print("without a bus:", alone, "without the service:", with_bus)
            self.assertLess(min(with_bus), min(alone) + 0.5)

    def of_the_service_loads_nothing(self):
        with DesktopSession() as session:
            Evolution(session)
            _, probe = self.settles(session)
            # Long after it was found out that there is none.
            use_folder(session, "Changed")
            probe.when("the folder's change is shown", shows("Changed"))
            self.assertFalse(probe.has_loaded(MODULE) or probe.has_loaded(LIBRARY))

    def of_the_service_is_no_matter_when_it_comes_later(self):
        with calendar_service((), work=review()) as (session, evolution):
            _, probe = self.settles(session)
            evolution.run()
            probe.when("both are shown", shows("Of the folder", "Review"))
            self.assertEqual(probe.said(), [])

    def of_the_factory_is_no_matter_when_it_comes_later(self):
        with calendar_service((REGISTRY,), work=review()) as (session, evolution):
            _, probe = self.settles(session)
            evolution.run(FACTORY)
            probe.when("both are shown", shows("Of the folder", "Review"))
            self.assertEqual(probe.said(), [])

    def ends_when_the_service_is_installed(self):
        with calendar_service((), work=review()) as (session, evolution):
            _, probe = self.settles(session)
            evolution.make_activatable()
            # Whoever needs it first starts it, such as the desktop's own calendar.
            evolution.components("work")
            probe.when("both are shown", shows("Of the folder", "Review"))
            self.assertEqual(probe.said(), [])


if __name__ == "__main__":
    run_tests()
