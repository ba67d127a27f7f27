"""The program on an X server whose session is locked, or not the one that its seat shows."""

import time
import unittest

from desktop_session import eventually, run_tests
from seat import ANOTHER, OURS, Seat
from x11_row import X11Row


class OnASeat(X11Row):
    """Nothing but the server tells what can be seen: it has no window manager and no screen saver."""

    monitors = ("screen",)

    def begin(self):
        self.seat = Seat(self)

    def rests(self):
        """Whether the board says the same for some seconds, though it counts them."""
        before = self.whole_picture()
        time.sleep(2.5)
        return not self.whole_picture().differing_box(before)


class OutOfSight(unittest.TestCase):
    def come_through(self, hide, show):
        with OnASeat() as session:
            session.prepare(displayMode="main")
            running = session.start_board()
            eventually("it counts", lambda: not session.rests(), 60)
            eventually("it follows the session", session.seat.is_followed, 60)
            for _ in range(2):
                hide(session)
                eventually("it is drawn no more", session.rests, 60)
                hidden = session.whole_picture()
                show(session)
                changed = lambda: session.whole_picture().differing_box(hidden)
                eventually("it is drawn again", changed)
                self.assertFalse(session.rests())
            self.assertEqual((running.end(), running.output), (0, ""))

    def while_it_is_locked(self):
        self.come_through(
            lambda session: session.seat.say_locked(True), lambda session: session.seat.say_locked(False)
        )

    def while_another_console_is_shown(self):
        self.come_through(
            lambda session: session.seat.switch_to(ANOTHER), lambda session: session.seat.switch_to(OURS)
        )


if __name__ == "__main__":
    run_tests()
