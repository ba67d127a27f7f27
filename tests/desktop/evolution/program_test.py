"""The program itself under a real sway, with the calendars of the desktop's service."""

import math
import signal
import time
import unittest

from agenda import add_calendar
from desktop_session import eventually, is_sanitized, program, run_tests
from failures_test import calendar, many, review, stop_in_a_question
from live_test import event
from protocol_trace import ProtocolTrace
from published import ATTEMPTS, NO_BUS, SOON, UNDELAYED, Promptness
from service import FACTORY, REGISTRY, BusTraffic, Evolution
from sway_session import SwaySession
from sway_soak_test import held_mb, sanitizer_options

NAME_SPACE = "org.orvane.Orvane"
# Of them the library makes thirty MB, and the program holds fifteen in the end. Sanitizers take long to
# make anything, add to it, and keep what was freed for a while.
MEETINGS, MOST_HELD = 2000, 28
SANITIZED_MEETINGS, SANITIZED_MOST_HELD = 300, 280


def meetings(count):
    """A calendar of weekly meetings, some of them each day, to which many are invited."""
    guests = "".join("ATTENDEE;CN=Guest %d;PARTSTAT=ACCEPTED:mailto:guest%d@example.org\n" % (guest, guest)
                     for guest in range(20))
    return calendar(*("BEGIN:VEVENT\nUID:meeting%d\nDTSTAMP:20200101T000000Z\nSUMMARY:Meeting %d\n"
                      "DTSTART:202001%02dT%02d%02d00Z\nDURATION:PT30M\nRRULE:FREQ=WEEKLY\n%sEND:VEVENT\n"
                      % (number, number, 1 + number % 28, number % 24, number % 60, guests)
                      for number in range(count)))


def stop(evolution):
    """All of the service, so that it takes questions and answers none."""
    for name in (REGISTRY, FACTORY):
        evolution.signal(name, signal.SIGSTOP)


def go_on(evolution):
    for name in (REGISTRY, FACTORY):
        evolution.signal(name, signal.SIGCONT)


class Program(unittest.TestCase):
    def frames(self, sway):
        (frames,) = ProtocolTrace(sway.sway.lines, NAME_SPACE).surfaces or [[]]
        return frames

    def wait_for_rest(self, sway):
        """Nothing to count down to is nothing to draw."""
        resting = lambda: self.frames(sway) and time.time() - self.frames(sway)[-1].time > 3
        eventually("it is at rest", resting, 60)

    def drawn_since(self, sway, moment):
        return [frame for frame in self.frames(sway) if frame.time > moment]

    def draws_its_first_frame_while_the_service_hangs(self):
        with SwaySession(outputs=1, trace=True) as sway:
            evolution = Evolution(sway)
            evolution.prepare("work", "Work", text=review())
            evolution.run()
            stop(evolution)
            begun = time.time()
            running = sway.start(program("orvane"))
            first = eventually("it is drawn", lambda: self.frames(sway), 60)[0]
            self.assertLess(first.time - begun, UNDELAYED)
            self.wait_for_rest(sway)
            answered = time.time()
            go_on(evolution)
            ticking = lambda: len(self.drawn_since(sway, answered)) > 2
            eventually("the countdown is drawn", ticking, 60)
            self.assertEqual((running.end(), running.output), (0, ""))

    def first_frame(self, sway, environment=None):
        """The seconds from the program's start to its first picture."""
        surfaces = lambda: ProtocolTrace(sway.sway.lines, NAME_SPACE).surfaces
        before = len(surfaces())
        begun = time.time()
        running = sway.start(program("orvane"), environment=environment)
        drawn = lambda: surfaces()[before:] and surfaces()[-1]
        first = eventually("it is drawn", drawn, 60)[0]
        self.assertEqual((running.end(), running.output), (0, ""))
        return first.time - begun

    def draws_its_first_frame_as_soon_as_without_a_bus(self):
        with SwaySession(outputs=1, trace=True) as sway:
            evolution = Evolution(sway)
            taken = {"no bus": [], "no service": [], "a service that hangs": []}
            for _ in range(ATTEMPTS):
                taken["no bus"].append(self.first_frame(sway, NO_BUS))
                taken["no service"].append(self.first_frame(sway))
            evolution.prepare("work", "Work", text=review())
            evolution.run()
            stop(evolution)
            for _ in range(ATTEMPTS):
                taken["no bus"].append(self.first_frame(sway, NO_BUS))
                taken["a service that hangs"].append(self.first_frame(sway))
            go_on(evolution)
            print("seconds until the first frame:", taken)
            # Half of what the first answers of a service are waited for.
            limit = min(taken["no bus"]) + SOON / 4
            self.assertEqual({what: times for what, times in taken.items() if min(times) > limit}, {})

    def skipped(self, sway, begun, length=6):
        """The whole seconds after that moment in which nothing was drawn."""
        first = math.ceil(begun)
        eventually("it ticks", lambda: self.drawn_since(sway, first + length), 90)
        drawn = {int(frame.time) for frame in self.frames(sway)}
        return [second for second in range(first, first + length) if second not in drawn]

    def assert_beats(self, sway, disturb):
        """A loaded machine skips a second sometimes; the program may not do so each time."""
        skipped = []
        for _ in range(ATTEMPTS):
            skipped.append(self.skipped(sway, disturb()))
            if not skipped[-1]:
                return
        self.fail("seconds were skipped each time: %s" % skipped)

    def wait_for_ticks(self, sway, count=3):
        begun = time.time()
        eventually("it ticks", lambda: len({int(f.time) for f in self.drawn_since(sway, begun)}) > count, 90)

    def keeps_its_beat_while_the_service_hangs(self):
        with SwaySession(outputs=1, trace=True) as sway:
            evolution = Evolution(sway)
            evolution.prepare("work", "Work", text=review())
            evolution.run()
            traffic = BusTraffic(evolution)
            running = sway.start(program("orvane"))
            eventually("it was asked", lambda: traffic.calls("GetObjectList"), 60)
            self.wait_for_ticks(sway)

            def hang():
                # After an attempt before.
                go_on(evolution)
                stop_in_a_question(evolution, traffic, "work")
                evolution.signal(REGISTRY, signal.SIGSTOP)
                return time.time()

            self.assert_beats(sway, hang)
            go_on(evolution)
            self.assertEqual((running.end(), running.output), (0, ""))

    def keeps_its_beat_while_it_starts_beside_a_service_that_hangs(self):
        with SwaySession(outputs=1, trace=True) as sway:
            evolution = Evolution(sway)
            evolution.prepare("work", "Work", text=review())
            evolution.run()
            stop(evolution)
            add_calendar(sway)
            running = sway.start(program("orvane"))
            self.wait_for_ticks(sway)
            self.assert_beats(sway, time.time)
            go_on(evolution)
            self.assertEqual((running.end(), running.output), (0, ""))

    def keeps_its_beat_while_a_change_is_read(self):
        with SwaySession(outputs=1, trace=True) as sway:
            evolution = Evolution(sway)
            evolution.prepare("many", "Many", text=many())
            evolution.run()
            running = sway.start(program("orvane"))
            self.wait_for_ticks(sway)
            added = []

            def change():
                begun = time.time()
                added.append("added%d" % len(added))
                evolution.add("many", event("Added", added[-1], 7200))
                return begun

            self.assert_beats(sway, change)
            self.assertEqual((running.end(), running.output), (0, ""))

    def gives_the_memory_back_that_reading_many_took(self):
        sanitized = is_sanitized("orvane")
        with SwaySession(outputs=1, trace=True) as sway:
            evolution = Evolution(sway)
            evolution.prepare("work", "Work", text=meetings(SANITIZED_MEETINGS if sanitized else MEETINGS))
            evolution.run()
            running = sway.start(program("orvane"), environment=sanitizer_options())
            # There is something to count down to: all have been read.
            self.wait_for_ticks(sway)
            most = SANITIZED_MOST_HELD if sanitized else MOST_HELD
            eventually("the memory is given back", lambda: held_mb(running) < most, 60)
            self.assertEqual((running.end(), running.output), (0, ""))

    def seconds_until_drawn(self, sway, evolution):
        begun = time.time()
        evolution.add("work", event("Review"))
        first = eventually("it is drawn", lambda: self.drawn_since(sway, begun), 60)[0]
        self.assertGreater(first.changed_pixels, 20000)
        return first.time - begun

    def shows_a_new_event_of_an_account_within_two_seconds(self):
        with SwaySession(outputs=1, trace=True) as sway:
            evolution = Evolution(sway)
            evolution.prepare("work", "Work")
            evolution.make_activatable()
            # It runs already, so that its start is no part of what is measured.
            evolution.components("work")
            running = sway.start(program("orvane"))
            promptness = Promptness(sway)
            for _ in range(ATTEMPTS):
                self.wait_for_rest(sway)
                promptness.take("an event of an account", lambda: self.seconds_until_drawn(sway, evolution))
                self.wait_for_ticks(sway)
                evolution.drop("work", "one")
                if max(promptness.best().values()) < SOON:
                    break
            print("seconds until drawn:\n%s" % promptness)
            self.assertEqual(promptness.late(), {}, "later than %g seconds" % SOON)
            self.assertEqual((running.end(), running.output), (0, ""))


if __name__ == "__main__":
    run_tests()
