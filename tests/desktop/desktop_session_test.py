"""What every desktop test starts its programs with."""

import os
import shutil
import tempfile
import unittest

from desktop_session import DesktopSession, run_tests


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


if __name__ == "__main__":
    run_tests()
