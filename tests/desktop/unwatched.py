"""The program where nobody tells it of changed files, as on a file system of the network: what it
shows of them by then, it has been made to read."""

import os
import time

from agenda import CALENDARS, calendar, event
from desktop_session import eventually, happens, program

# No file is watched, and the program says so.
FAULT = "inotify_init1:error=EMFILE"
NOTICES = [
    "orvane: cannot watch the time zone for changes; looking once a minute",
    "orvane: the system has no file watches left; calendar folders are looked at every 45 seconds instead",
]
# Where the board lists events, beside where it tells of its last refresh.
LIST = (500, 45, 400, 400)
ON_THE_LIST = (100, 55)


def start(session):
    """The program, with an agenda that is empty."""
    session.make_folder(*CALENDARS, "work")
    watched = ("strace", "-f", "--seccomp-bpf", "-e", "trace=inotify_init1", "-e", "inject=" + FAULT)
    # What looks for leaks at the end cannot do so under another's eyes.
    options = ":".join(filter(None, (os.environ.get("ASAN_OPTIONS"), "detect_leaks=0")))
    environment = {"ASAN_OPTIONS": options}
    path = session.within_reach(program("orvane"))
    return session.start(*watched, "-o", "/dev/null", path, environment=environment)


class Board:
    """Its list of events. Made before the program is started, of what its desktop looks like."""

    def __init__(self, session):
        self._session = session
        self._bare = self.look()
        self._empty = None

    def look(self):
        return self._session.picture().cropped(*LIST)

    def _stands(self, picture):
        return picture.pixel(*ON_THE_LIST) != self._bare.pixel(*ON_THE_LIST)

    def wait_until_empty(self, running):
        """Until it has looked for calendars, found none, and nothing has changed for a while."""
        eventually("it has looked for calendars", lambda: running.lines == NOTICES, 60)
        self._empty, since = self.look(), time.monotonic()

        def rests():
            nonlocal since
            picture = self.look()
            if picture != self._empty or not self._stands(picture):
                self._empty, since = picture, time.monotonic()
            return time.monotonic() - since > 2

        eventually("an empty board stands", rests, 60)

    def tells_something(self):
        picture = self.look()
        return self._stands(picture) and picture.differing_box(self._empty) is not None

    def change_unnoticed(self, test):
        self._session.write(calendar(event("Review", starts_in=3 * 3600)), *CALENDARS, "work", "events.ics")
        test.assertFalse(happens(self.tells_something), "the change was noticed without a refresh")

    def wait_for_change(self):
        # Well before it would look by itself.
        eventually("the change is shown", self.tells_something)
