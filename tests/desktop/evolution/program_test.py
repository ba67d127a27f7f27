"""The program itself under a real sway, with the calendars of the desktop's service."""

import signal
import time
import unittest

from desktop_session import eventually, program, run_tests
from failures_test import review
from live_test import ATTEMPTS, event
from protocol_trace import ProtocolTrace
from published import SOON, UNDELAYED
from service import FACTORY, REGISTRY, Evolution
from sway_session import SwaySession

NAME_SPACE = "org.orvane.Orvane"


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
            for name in (REGISTRY, FACTORY):
                evolution.signal(name, signal.SIGSTOP)
            begun = time.time()
            running = sway.start(program("orvane"))
            first = eventually("it is drawn", lambda: self.frames(sway), 60)[0]
            self.assertLess(first.time - begun, UNDELAYED)
            self.wait_for_rest(sway)
            answered = time.time()
            for name in (REGISTRY, FACTORY):
                evolution.signal(name, signal.SIGCONT)
            ticking = lambda: len(self.drawn_since(sway, answered)) > 2
            eventually("the countdown is drawn", ticking, 60)
            self.assertEqual((running.end(), running.output), (0, ""))

    def shows_a_new_event_of_an_account_within_two_seconds(self):
        with SwaySession(outputs=1, trace=True) as sway:
            evolution = Evolution(sway)
            evolution.prepare("work", "Work")
            evolution.make_activatable()
            # It runs already, so that its start is no part of what is measured.
            evolution.components("work")
            running = sway.start(program("orvane"))
            taken = []
            while len(taken) < ATTEMPTS and (not taken or min(taken) >= SOON):
                self.wait_for_rest(sway)
                begun = time.time()
                evolution.add("work", event("Review"))

                def ticking():
                    drawn = self.drawn_since(sway, begun)
                    return drawn if len(drawn) > 2 else None

                first = eventually("the countdown is drawn", ticking, 40)[0]
                self.assertGreater(first.changed_pixels, 20000)
                taken.append(first.time - begun)
                evolution.drop("work", "one")
            print("seconds until it was drawn:", taken)
            self.assertLess(min(taken), SOON)
            self.assertEqual((running.end(), running.output), (0, ""))


if __name__ == "__main__":
    run_tests()
