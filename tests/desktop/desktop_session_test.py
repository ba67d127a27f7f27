"""What every desktop test starts its programs with."""

import os
import shutil
import signal
import subprocess
import sys
import tempfile
import unittest

from desktop_session import DesktopSession, eventually, run_tests

# What ties a program to the life of the test is done last before it is run; only once it runs can
# it be said to be tied.
SESSION_THAT_WAITS = """
from desktop_session import DesktopSession, eventually
with DesktopSession() as session:
    started = session.start("sleep", "1000").process.pid
    eventually("it runs", lambda: started in session.processes_called("sleep"))
    print(session.folder, started, flush=True)
    input()
"""


def is_alive(number):
    try:
        with open("/proc/%s/stat" % number, encoding="ascii") as file:
            return file.read().rpartition(")")[2].split()[0] != "Z"
    except FileNotFoundError:
        return False


class Session(unittest.TestCase):
    def starts_programs_that_only_their_owner_can_reach(self):
        closed = tempfile.mkdtemp(prefix="orvane-closed-")
        self.addCleanup(shutil.rmtree, closed)
        for name, script in (
            ("orvane", '#!/bin/sh\nexec "$(dirname "$0")/orvane-reader" "$@"\n'),
            ("orvane-reader", '#!/bin/sh\necho "read $1 as $(id -u)"\n'),
        ):
            with open(os.path.join(closed, name), "w", encoding="utf-8") as file:
                file.write(script)
            os.chmod(os.path.join(closed, name), 0o700)
        with DesktopSession() as session:
            for _ in range(2):
                running = session.start(os.path.join(closed, "orvane"), "this")
                self.assertEqual(running.process.wait(timeout=20), 0, running.output)
                self.assertRegex(running.output, r"^read this as [1-9]\d*$")

    def starts_reachable_programs_where_they_are(self):
        with DesktopSession() as session:
            running = session.start("/bin/sh", "-c", "echo $0")
            self.assertEqual(running.process.wait(timeout=20), 0, running.output)
            self.assertEqual(running.output, "/bin/sh\n")
            self.assertFalse(os.path.exists(session.path("programs")))

    def leaves_nothing_when_it_is_asked_to_end(self):
        folder = self.end_one_that_waits(signal.SIGTERM)
        self.assertFalse(os.path.exists(folder))

    def leaves_no_process_when_it_is_killed(self):
        folder = self.end_one_that_waits(signal.SIGKILL)
        self.addCleanup(shutil.rmtree, folder)

    def end_one_that_waits(self, how):
        test = subprocess.Popen(
            [sys.executable, "-B", "-c", SESSION_THAT_WAITS],
            stdin=subprocess.PIPE,
            stdout=subprocess.PIPE,
            env={**os.environ, "PYTHONPATH": os.path.dirname(os.path.abspath(__file__))},
            text=True,
        )
        with test:
            folder, started = test.stdout.readline().split()
            self.assertTrue(is_alive(started))
            test.send_signal(how)
            test.wait(timeout=20)
        eventually("what it started is gone", lambda: not is_alive(started))
        return folder


if __name__ == "__main__":
    run_tests()
