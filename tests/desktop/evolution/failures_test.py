"""The program when the desktop's calendar service dies, hangs, goes and comes, or never was."""

import os
import signal
import time
import unittest

from desktop_session import DesktopSession, eventually, run_tests
from live_test import event
from published import NO_BUS, Probe, options, titles
from service import FACTORY, REGISTRY, Evolution

MANY = 10000


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


class Death(unittest.TestCase):
    def begin(self, session, activatable):
        evolution = Evolution(session)
        evolution.prepare("work", "Work", text=calendar(event("Review")))
        if activatable:
            evolution.make_activatable()
        else:
            evolution.run()
        probe = Probe(session, *use_folder(session))
        probe.when("both are shown", shows("Of the folder", "Review"))
        return evolution, probe

    def survives(self, evolution, probe):
        """What was shown stays, and changes are seen again."""
        evolution.client.call("forget")
        evolution.add("work", event("Afterwards", "two"))
        probe.when("changes are seen again", shows("Afterwards", "Of the folder", "Review"))

    def of_the_factory_is_survived_when_the_bus_starts_it(self):
        with DesktopSession() as session:
            evolution, probe = self.begin(session, activatable=True)
            killed = time.monotonic()
            evolution.kill(FACTORY)
            self.survives(evolution, probe)
            self.assertTrue(always(probe, killed, lambda agenda: "Review" in titles(agenda)))
            self.assertEqual(probe.said(), [])

    def of_the_factory_is_survived_when_it_is_started_again(self):
        with DesktopSession() as session:
            evolution, probe = self.begin(session, activatable=False)
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
        with DesktopSession() as session:
            evolution, probe = self.begin(session, activatable=False)
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

    def in_the_middle_of_a_question_is_survived(self):
        with DesktopSession() as session:
            evolution = Evolution(session)
            evolution.prepare("work", "Work", text=calendar(event("Review")))
            evolution.run()
            # It takes the question and never gets to the answer.
            evolution.signal(FACTORY, signal.SIGSTOP)
            probe = Probe(session, *use_folder(session))
            probe.when("the folder is shown", shows("Of the folder"))
            evolution.kill(FACTORY)
            evolution.run(FACTORY)
            probe.when("both are shown", shows("Of the folder", "Review"))
            self.assertEqual(probe.said(), [])

    def at_any_moment_is_survived(self):
        with DesktopSession() as session:
            evolution = Evolution(session)
            evolution.prepare("many", "Many", text=many())
            evolution.make_activatable()
            probe = Probe(session, *use_folder(session))
            # So many take it half a second; it is killed at the beginning, and then later and later.
            interrupted = 0
            for delay in (0, 0.05, 0.1, 0.2, 0.4):
                eventually("the factory was started", lambda: evolution.pid(FACTORY))
                time.sleep(delay)
                evolution.kill(FACTORY)
                interrupted += probe.agenda is None or "Near" not in titles(probe.agenda)
                evolution.client.call("start", name=FACTORY)
            self.assertGreater(interrupted, 0)
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
        with DesktopSession() as session:
            evolution, probe = self.begin(session, activatable=False)
            os.kill(evolution.bus.process.pid, signal.SIGKILL)
            use_folder(session, "Changed")
            probe.when("the folder's change is shown", lambda agenda: "Changed" in titles(agenda))
            self.assertEqual(probe.running.end(), 0)


class Silence(unittest.TestCase):
    def of_the_factory_does_not_hold_up_the_folders(self):
        with DesktopSession() as session:
            evolution = Evolution(session)
            evolution.prepare("work", "Work", text=calendar(event("Review")))
            evolution.run()
            evolution.signal(FACTORY, signal.SIGSTOP)
            probe = Probe(session, *use_folder(session))
            shown = probe.when("the folder is shown", shows("Of the folder"))[0]
            print("seconds until the folder was shown: %.2f" % (shown - probe.started))
            evolution.signal(FACTORY, signal.SIGCONT)
            probe.when("both are shown", shows("Of the folder", "Review"))
            evolution.signal(FACTORY, signal.SIGSTOP)
            use_folder(session, "Changed")
            probe.when("the folder's change is shown", shows("Changed", "Review"))
            evolution.signal(FACTORY, signal.SIGCONT)
            self.assertEqual(probe.running.end(), 0)
            self.assertEqual(probe.said(), [])

    def of_the_registry_does_not_hold_up_the_folders(self):
        with DesktopSession() as session:
            evolution = Evolution(session)
            evolution.prepare("work", "Work", text=calendar(event("Review")))
            evolution.run()
            evolution.signal(REGISTRY, signal.SIGSTOP)
            probe = Probe(session, *use_folder(session))
            probe.when("the folder is shown", shows("Of the folder"))
            evolution.signal(REGISTRY, signal.SIGCONT)
            probe.when("both are shown", shows("Of the folder", "Review"))
            self.assertEqual(probe.said(), [])

    def of_the_factory_does_not_hold_up_the_end(self):
        with DesktopSession() as session:
            evolution = Evolution(session)
            evolution.prepare("work", "Work", text=calendar(event("Review")))
            evolution.run()
            evolution.signal(FACTORY, signal.SIGSTOP)
            probe = Probe(session, *use_folder(session))
            probe.when("the folder is shown", shows("Of the folder"))
            begun = time.monotonic()
            self.assertEqual(probe.running.end(), 0)
            self.assertLess(time.monotonic() - begun, 10)
            self.assertEqual(probe.said(), [])


class Calendars(unittest.TestCase):
    def may_hold_ten_thousand_events(self):
        with DesktopSession() as session:
            evolution = Evolution(session)
            evolution.prepare("many", "Many", text=many())
            evolution.prepare("work", "Work", text=calendar(event("Review")))
            evolution.run()
            probe = Probe(session)
            shown = probe.when("all are shown", shows("Far", "Near", "Review"))[0]
            print("seconds until all were shown: %.2f" % (shown - probe.started))
            begun = time.monotonic()
            evolution.add("many", event("One more", "more"))
            taken = probe.when("one more is shown", shows("Far", "Near", "One more", "Review"))[0] - begun
            print("seconds until one more was shown: %.2f" % taken)
            self.assertEqual(probe.said(), [])

    def may_go_while_they_are_read(self):
        with DesktopSession() as session:
            evolution = Evolution(session)
            for number in range(3):
                evolution.prepare("many%d" % number, "Many %d" % number, text=many())
            evolution.prepare("work", "Work", text=calendar(event("Review")))
            evolution.run()
            probe = Probe(session)
            for number in range(3):
                evolution.remove("many%d" % number)
                time.sleep(0.1)
            probe.when("what stays is shown", lambda agenda: shows("Review")(agenda) and "Many 0" not in options(agenda))
            evolution.add("work", event("Afterwards", "two"))
            probe.when("changes are seen", shows("Afterwards", "Review"))
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

    def of_the_service_is_no_matter_when_it_comes_later(self):
        with DesktopSession() as session:
            evolution = Evolution(session)
            evolution.prepare("work", "Work", text=calendar(event("Review")))
            _, probe = self.settles(session)
            evolution.run()
            probe.when("both are shown", shows("Of the folder", "Review"))
            self.assertEqual(probe.said(), [])

    def of_the_factory_is_no_matter_when_it_comes_later(self):
        with DesktopSession() as session:
            evolution = Evolution(session)
            evolution.prepare("work", "Work", text=calendar(event("Review")))
            evolution.run(REGISTRY)
            _, probe = self.settles(session)
            evolution.run(FACTORY)
            probe.when("both are shown", shows("Of the folder", "Review"))
            self.assertEqual(probe.said(), [])

    def ends_when_the_service_is_installed(self):
        with DesktopSession() as session:
            evolution = Evolution(session)
            evolution.prepare("work", "Work", text=calendar(event("Review")))
            _, probe = self.settles(session)
            evolution.make_activatable()
            # Whoever needs it first starts it, such as the desktop's own calendar.
            evolution.components("work")
            probe.when("both are shown", shows("Of the folder", "Review"))
            self.assertEqual(probe.said(), [])


if __name__ == "__main__":
    run_tests()
