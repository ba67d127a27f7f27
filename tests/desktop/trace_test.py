"""A day of the program's life in a minute, under the eyes of strace: no internet socket is asked for,
by it or what it starts, and nothing is written but to its own folders. The hours pass as they do for a
traveller, from zone to zone and across a midnight, with something done in each; the clock itself and
all that goes by it take their own time."""

import glob
import os
import time
import unittest

from agenda import CALENDARS, calendar, event, set_defaults
from desktop_session import eventually, program, run_tests
from journey import Journey
from portal_session import PortalSession
from trace_rules import CALLS, Rules
from xfce_session import XfceSession

# From eleven hours behind to fourteen ahead; the signs are those of the zones' names.
HOURS = ["Etc/GMT%+d" % -hours for hours in range(-11, 15)]
STEP = 1.5
# For the settings window: a session that has no more than this one.
WINDOW = {"GTK_A11Y": "none", "GSK_RENDERER": "cairo"}
# Where the board says which day it is, at 1280 × 720.
DATE = (40, 50, 340, 100)

# Below the home of a session, where its runtime folder is, too.
OWN_FOLDERS = ((".config", "orvane"), (".local", "state", "orvane"), ("orvane",))

# A program that does what the board's must not.
INTRUDER = """
import os, socket
socket.socket(socket.AF_INET, socket.SOCK_DGRAM).close()
with open("outside", "w") as file:
    file.write("text")
os.rename("outside", "elsewhere")
"""


def add_calendar(session, name):
    """With something to count down to in every hour of two days."""
    hours = [event("%s %d" % (name, hour), 3600 * hour) for hour in range(1, 49)]
    session.write(calendar(*hours), *CALENDARS, name, "events.ics")


class Trace:
    """Programs of a session that are watched, those that they start included."""

    def __init__(self, session, journey):
        self.session = session
        self._journey = journey
        self._count = 0
        self.prefix = session.path("trace")

    def start(self, *command, environment=None):
        self._count += 1
        output = "%s-%d" % (self.prefix, self._count)
        watched = ("strace", "-ff", "-y", "--seccomp-bpf", "-e", "trace=" + CALLS, "-o", output)
        command = (*watched, "env", "-u", "TZ", self.session.within_reach(command[0]), *command[1:])
        # What looks for leaks at the end cannot do so under another's eyes.
        options = ":".join(filter(None, (os.environ.get("ASAN_OPTIONS"), "detect_leaks=0")))
        environment = {**(environment or {}), "ASAN_OPTIONS": options}
        return self.session.start(*command, environment=environment, around=self._journey.around)

    def lines(self):
        found = []
        for path in sorted(glob.glob(self.prefix + "-*")):
            with open(path, encoding="utf-8", errors="replace") as file:
                found += file.read().splitlines()
        return found

    def violations(self):
        home = self.session.folder
        own = [os.path.join(home, *parts) for parts in OWN_FOLDERS]
        return Rules(own).violations(self.lines())


class Day(unittest.TestCase):
    def leaves_no_trace_on_wayland(self):
        with PortalSession() as session:
            session.background()
            session.start_backend("grant")
            session.start_portal()
            set_defaults(session, displayMode="all")
            self.spend(session)

    def leaves_no_trace_on_x11(self):
        with XfceSession() as session:
            session.start_desktop()
            session.start_panel()
            session.set_defaults(displayMode="all", hideDesktopIconsInFocus=True)
            self.spend(session)
            remembered = [line for line in self.trace.lines() if "state/orvane/desktop-icons" in line]
            self.assertTrue(any("O_CREAT" in line or "rename" in line for line in remembered))

    def spend(self, session):
        journey = Journey(session, HOURS[0])
        self.trace = Trace(session, journey)
        add_calendar(session, "day")
        running = self.trace.start(program("orvane"), environment=WINDOW)
        eventually("it is there", lambda: session.has_owner("org.orvane.Orvane"), 60)
        day = eventually("the board says the day", lambda: self.date(session))
        for hour, zone in enumerate(HOURS):
            journey.go_to(zone)
            self.do_something(session, hour)
            self.assertTrue(running.is_running(), running.output)
            time.sleep(STEP)
        eventually("another day has come", lambda: self.is_another(self.date(session), day), 60)
        session.action("quit")
        self.assertEqual(running.process.wait(timeout=60), 0)
        self.assertEqual(running.output, "")
        self.check()

    def check(self):
        lines = self.trace.lines()
        found = self.trace.violations()
        self.assertEqual(found, [], "\n".join(found))
        # That it was looked at: it has spoken to the desktop, saved its settings, read calendars.
        self.assertTrue(any(line.startswith("socket(AF_UNIX") for line in lines))
        self.assertTrue(any(".config/orvane/" in line and "O_CREAT" in line for line in lines))
        self.assertTrue(any(line.startswith("execve") and "orvane-reader" in line for line in lines))
        for hour in (2, 10, 22):
            read = "/hour-%d/events.ics" % hour
            self.assertTrue(any(read in line and "O_RDONLY" in line for line in lines), read)

    @staticmethod
    def date(session):
        """The part of the picture that says which day it is; None while nothing says it."""
        left, top, width, height = DATE
        picture = session.picture().cropped(left, top, width, height)
        return picture if picture.count((255, 255, 255)) > 100 else None

    @staticmethod
    def is_another(date, day):
        return date is not None and date != day

    def do_something(self, session, hour):
        if hour % 4 == 1:
            session.action("toggle-focus")
        elif hour % 4 == 2:
            add_calendar(session, "hour-%d" % hour)
        elif hour % 4 == 3:
            session.action("refresh-now")
        else:
            second = self.trace.start(program("orvane"), environment=WINDOW)
            self.assertEqual(second.process.wait(timeout=60), 0, second.output)


class Watching(unittest.TestCase):
    def finds_what_another_program_does(self):
        with XfceSession() as session:
            trace = Trace(session, Journey(session, HOURS[0]))
            session.write(INTRUDER, "intruder.py")
            intruder = trace.start("/usr/bin/python3", "-B", session.path("intruder.py"))
            self.assertEqual(intruder.process.wait(timeout=60), 0, intruder.output)
            found = "\n".join(trace.violations())
            self.assertIn("socket(AF_INET, SOCK_DGRAM", found)
            self.assertRegex(found, 'openat.*"outside", O_WRONLY')
            self.assertRegex(found, 'rename.*"outside"')


if __name__ == "__main__":
    run_tests()
