"""What a user and a desktop do to the running program, in an order that nobody thought of, for as
long as is wished. What is expected of it is little and always: it goes on running, it holds focus
mode as it was told last, it complains about nothing, and it ends well when asked to.

ORVANE_LONG_SECONDS, or else ORVANE_SOAK_SECONDS, says how long; ORVANE_SEED repeats a run."""

import os
import random
import re
import time

from desktop_session import eventually, program
from sway_soak_test import complaints, sanitizer_options

# Of the toolkit, in a session that has less than it looks for, and when it loses its display.
WARNING = re.compile(r"\([\w.-]+:(\d+)\): G[a-z]+-WARNING \*\*")
EXPECTED = ("Gdk-Message: ", "orvane-settings: there is no display")

SECONDS = float(os.environ.get("ORVANE_LONG_SECONDS") or os.environ.get("ORVANE_SOAK_SECONDS", "10"))
# Sanitizers, and a machine that has other things to do.
PATIENCE = 60


class RandomRun:
    """A subclass names its actions: functions of itself, with a weight for each."""

    def __init__(self, test, session):
        self.test = test
        self.session = session
        self.focus = False
        self.running = None
        self.seed = int(os.environ.get("ORVANE_SEED") or time.time_ns() % 1_000_000_000)
        self.random = random.Random(self.seed)
        self.done = []

    def go_on(self):
        """Begins, does what comes up until the time is over, and ends."""
        print("seed %d" % self.seed, flush=True)
        self.begin()
        try:
            self._do_things()
            self.end()
        except BaseException:
            print("seed %d, after: %s" % (self.seed, ", ".join(self.done[-20:])), flush=True)
            raise
        print("%d actions, seed %d" % (len(self.done), self.seed), flush=True)

    def _do_things(self):
        actions, weights = zip(*self.actions())
        limit = time.monotonic() + SECONDS
        while time.monotonic() < limit:
            (action,) = self.random.choices(actions, weights)
            self.done.append(action.__name__)
            action()
            self.check()
            # Sometimes what comes next meets what is still under way, and sometimes it does not.
            time.sleep(self.random.choice((0, 0, 0.05, 0.5)))

    def begin(self):
        environment = {**sanitizer_options(), "GTK_A11Y": "none", "GSK_RENDERER": "cairo"}
        self.running = self.session.start(program("orvane"), environment=environment)
        self.wait_until_there()

    def wait_until_there(self):
        name = "org.orvane.Orvane"
        eventually("it has its name", lambda: self.session.has_owner(name), PATIENCE)

    def check(self):
        self.test.assertTrue(self.running.is_running(), self.running.output)
        self.test.assertEqual(self.complaints(), [])

    def end(self):
        self.test.assertEqual(self.running.end(seconds=PATIENCE), 0, self.running.output)
        self.test.assertEqual(self.complaints(), [])

    def complaints(self):
        """Those of the program, and errors of the settings window's."""
        said = []
        for line in complaints(self.running):
            warning = WARNING.match(line)
            is_the_windows = warning and int(warning.group(1)) != self.running.process.pid
            if line and not is_the_windows and not line.startswith(EXPECTED):
                said.append(line)
        return said

    # ---- What every session can do

    def second_start(self):
        second = self.session.start(program("orvane"), environment=sanitizer_options())
        self.test.assertEqual(second.process.wait(timeout=PATIENCE), 0, second.output)
        self.test.assertEqual(second.output, "")

    def refresh(self):
        self.session.action("refresh-now")

    def toggle_by_action(self):
        self.session.action("toggle-focus")
        self.toggled()

    def toggled(self):
        self.focus = not self.focus
        as_told = lambda: self.session.focus_mode() is self.focus
        eventually("focus mode is %s" % self.focus, as_told, PATIENCE)

    def toggle_quickly(self):
        for _ in range(2 * self.random.randint(1, 4)):
            self.session.action("toggle-focus")
        # What it was before, and what it is on the way, look alike.
        eventually("focus mode is as before", self._focus_rests, PATIENCE)

    def _focus_rests(self):
        for _ in range(10):
            if self.session.focus_mode() not in (self.focus, None):
                return False
            time.sleep(0.1)
        return True

    def run_again(self):
        """Ends the program and starts it, which finds all as it was."""
        self.end()
        self.begin()
