"""The row on KWin's own lock screen. It is locked and unlocked as by logind; of what lies behind the
lock screen KWin lets nobody take a picture."""

import re
import time

from desktop_session import eventually, program
from kwin_rows import KWinRow
from kwin_session import KWinSession
from row import FIRST_BACKGROUND
from run import keep_picture, run_named
from seat import Seat
from trial import require

GREETER = "/usr/lib/x86_64-linux-gnu/libexec/kscreenlocker_greet"
SCREEN_SAVER = "org.freedesktop.ScreenSaver"
# What the program says to the compositor when it draws.
DRAWING = re.compile(r"-> wl_surface@\d+\.(?:attach|damage\w*|commit)\(")
# In seconds. It wakes up for nothing but what is to be drawn, and that there is nothing.
MOST_AT_WORK = 0.5


class KWinLock(KWinRow):
    name = "kwin-lock"
    needs = (*KWinRow.needs, GREETER, "gdbus")

    def __init__(self):
        KWinSession.__init__(self, outputs=2, locks=True)

    def _start_bus(self):
        super()._start_bus()
        self.seat = Seat(self)

    def begin(self):
        for screen in self.screens():
            self.background(screen.name, FIRST_BACKGROUND)

    def is_locked(self):
        return self.call(SCREEN_SAVER, "/ScreenSaver", SCREEN_SAVER, "GetActive") == (True,)

    def shows_greeter(self):
        return self.is_locked() and self.processes_called("kscreenlocker_greet")

    def shows_board(self, screen):
        picture = self.picture(screen)
        return picture.width * picture.height - picture.count(FIRST_BACKGROUND) > 20000


class Board:
    def __init__(self, row):
        self._row = row
        slim = row.slim(program("orvane"))
        self.running = row.start(slim, environment={"WAYLAND_DEBUG": "client"})

    def requests(self):
        return len(DRAWING.findall(self.running.output))

    def rests(self):
        """Whether nothing is drawn for some seconds, though it counts them."""
        before = self.requests()
        time.sleep(3.2)
        return self.requests() == before

    def wait_until_seen(self):
        for screen in self._row.screens():
            eventually("it is on %s" % screen.name, lambda it=screen: self._row.shows_board(it), 60)
        self.wait_until_it_counts()

    def wait_until_it_counts(self):
        before = self.requests()
        eventually("it counts the seconds", lambda: self.requests() > before + 12, 60)


def lock_and_unlock(row, board):
    row.seat.ask_to_lock()
    eventually("KWin is locked", row.shows_greeter, 60)
    eventually("nothing is drawn", board.rests, 60)
    worked, before = board.running.seconds_at_work(), board.requests()
    time.sleep(5)
    require(board.requests() == before, "it is drawn behind the lock screen")
    worked = board.running.seconds_at_work() - worked
    require(worked < MOST_AT_WORK, "behind the lock screen it works for %s s" % worked)
    row.seat.ask_to_unlock()
    eventually("KWin is unlocked", lambda: not row.is_locked(), 60)
    eventually("it is drawn again", lambda: board.requests() > before)
    board.wait_until_seen()


def try_lock(row, report):
    row.prepare(displayMode="all")
    board = Board(row)
    report.attempt("the board is seen", board.wait_until_seen)
    for time_of in ("once", "twice"):
        report.attempt("nothing is drawn while locked, %s" % time_of, lock_and_unlock, row, board)
    keep_picture(row)
    report.attempt("ends well", lambda: require(board.running.end() == 0, "it does not"))


if __name__ == "__main__":
    run_named(KWinLock, trying=try_lock)
