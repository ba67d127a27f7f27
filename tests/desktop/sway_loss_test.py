"""The program whose compositor is killed: it waits for another one, and knows when none will come."""

import os
import select
import signal
import socket
import time
import unittest

from agenda import add_calendar, set_defaults
from desktop_session import eventually, program, run_tests
from end_test import LIMIT
from private_bus import start_bus
from sway_program_test import ON_THE_BOARD, is_bare, of_all_threads, wait_for_board
from sway_session import BACKGROUND, SwaySession
from sway_soak_test import complaints, held_mb, sanitizer_options

LOST = "orvane: The connection to the Wayland compositor is lost"
# A window, its buffers and a connection that are kept after a loss would come to more.
ALLOWED_GROWTH_MB = 6


def begin(sway):
    running = sway.start(program("orvane"), environment=sanitizer_options())
    stand(sway)
    return running


def stand(sway, output="HEADLESS-1"):
    """A picture of the board, over a plain background."""
    sway.background(output)
    eventually("the board is drawn over it", lambda: beside_the_board(sway, output) == BACKGROUND)
    return wait_for_board(sway, output)


def beside_the_board(sway, output):
    return sway.picture(output).pixel(1270, 710)


def waited_for_processor(running):
    """For how many seconds its threads could have run and had no processor; 0 once it has ended."""
    try:
        return of_all_threads(running, "schedstat", lambda text: int(text.split()[1])) / 1e9
    except (OSError, IndexError):
        return 0


def open_files(running):
    return sorted(os.listdir("/proc/%d/fd" % running.process.pid), key=int)


class Loss(unittest.TestCase):
    def is_survived_with_the_agenda_of_the_time(self):
        with SwaySession(outputs=1) as sway:
            running = begin(sway)
            # An empty agenda shows no countdown, so that the board stands still.
            empty = stand(sway)
            sway.kill_sway()
            add_calendar(sway)
            time.sleep(3)  # the agenda is refreshed while there is nobody to show it to
            sway.resume_sway()
            full = stand(sway)
            self.assertIsNotNone(full.differing_box(empty))
            eventually("it ticks", lambda: sway.picture().differing_box(full) is not None)
            self.assertEqual(running.output, "")
            self.assertEqual(running.end(), 0)
            eventually("it is gone", lambda: is_bare(sway, "HEADLESS-1"))

    def is_survived_while_it_stands_on_another_screen(self):
        with SwaySession(outputs=2) as sway:
            set_defaults(sway, displayMode="all")
            running = begin(sway)
            sway._count_of_outputs = 1
            sway.restart()
            stand(sway)
            self.assertEqual(sway.outputs(), ["HEADLESS-1"])
            self.assertEqual(running.output, "")
            self.assertEqual(running.end(), 0)

    def is_survived_twenty_times_in_a_row(self):
        with SwaySession(outputs=1) as sway:
            add_calendar(sway)
            running = begin(sway)
            files, held = [], []
            for _ in range(20):
                sway.restart()
                stand(sway)
                self.assertTrue(running.is_running())
                files.append(open_files(running))
                held.append(held_mb(running))
            # One more may be open for a moment, for whatever is read just then.
            most = max(map(len, files[:5]))
            eventually("no more files are open: %s" % files, lambda: len(open_files(running)) <= most)
            self.assertLess(held[-1] - held[4], ALLOWED_GROWTH_MB, held)
            self.assertEqual(running.output, "")
            self.assertEqual(running.end(), 0, running.output)
            self.assertEqual(complaints(running), [])

    def ends_with_the_session(self):
        with SwaySession(outputs=1) as sway:
            daemon = start_bus(sway)
            running = begin(sway)
            sway.kill_sway()
            # Attempts are far apart by then, and the session is over between two of them.
            time.sleep(4.2)
            daemon.end(signal.SIGKILL)
            ended = time.monotonic()
            self.assertEqual(running.process.wait(timeout=20), 0)
            self.assertLess(time.monotonic() - ended, LIMIT)
            self.assertEqual(running.output, LOST + ", and the session has ended.\n")

    def ends_after_a_minute(self):
        with SwaySession(outputs=1) as sway:
            running = begin(sway)
            sway.kill_sway()
            lost, before = time.monotonic(), waited_for_processor(running)
            waited = before
            while running.is_running():
                waited = waited_for_processor(running) or waited
                time.sleep(0.05)
            took = time.monotonic() - lost
            self.assertEqual(running.process.returncode, 0)
            self.assertGreater(took, 59)
            # As it knows the time: a machine that lets it wait is no fault of its own.
            self.assertLess(took - (waited - before), 60 + LIMIT)
            sentence = LOST + ", and no desktop has come back within 60 seconds.\n"
            self.assertEqual(running.output, sentence)

    def ends_at_once_when_asked_to(self):
        for how in (signal.SIGTERM, signal.SIGINT):
            with self.subTest(how=how), SwaySession(outputs=1) as sway:
                running = begin(sway)
                sway.kill_sway()
                time.sleep(1)
                self.assert_ends_at_once(running, how)

    def ends_at_once_when_asked_to_while_a_compositor_is_silent(self):
        with SwaySession(outputs=1) as sway, socket.socket(socket.AF_UNIX) as silent:
            running = begin(sway)
            sway.kill_sway()
            self.listen_in_the_place_of(sway, silent)
            # Its first words are kept for whoever takes the call, which nobody does.
            eventually("the program waits for an answer", lambda: self.is_called(silent))
            self.assert_ends_at_once(running, signal.SIGTERM)

    def assert_ends_at_once(self, running, how):
        asked = time.monotonic()
        self.assertEqual(running.end(how), 0)
        self.assertLess(time.monotonic() - asked, LIMIT)
        self.assertEqual(running.output, "")

    @staticmethod
    def listen_in_the_place_of(sway, silent):
        path = sway.path(sway.environment["WAYLAND_DISPLAY"])
        os.remove(path)
        silent.bind(path)
        os.chmod(path, 0o777)
        silent.listen()

    @staticmethod
    def is_called(silent):
        return bool(select.select([silent], [], [], 0)[0])


if __name__ == "__main__":
    run_tests()
