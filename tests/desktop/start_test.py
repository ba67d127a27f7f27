"""The program where it cannot start, and where it is not meant to."""

import os
import socket
import subprocess
import unittest

from desktop_session import DesktopSession, own_display, program, run_tests

NOWHERE = "orvane: there is no desktop to show the dashboard on: neither WAYLAND_DISPLAY nor DISPLAY is set\n"
X11_SOCKETS = "/tmp/.X11-unix"
# It waits ten seconds for each of two displays.
PATIENCE = 90


class Start(unittest.TestCase):
    def setUp(self):
        self.session = self.enterContext(DesktopSession())

    def run_program(self, *arguments, **environment):
        """Answers its exit status, what it told, and what it complained about."""
        running = self.session.start(
            program("orvane"), *arguments, environment=environment, stdout=subprocess.PIPE
        )
        told = running.process.stdout.read().decode()
        return running.process.wait(timeout=PATIENCE), told, running.output

    def without_a_desktop_ends_in_one_line(self):
        self.assertEqual(self.run_program(), (1, "", NOWHERE))
        # Named by nothing is not named.
        self.assertEqual(self.run_program(WAYLAND_DISPLAY="", DISPLAY=""), (1, "", NOWHERE))

    def where_no_display_is_served_ends_in_one_line(self):
        display = own_display()
        expected = (
            "orvane: There is no Wayland compositor: No such file or directory. "
            "The X display %s cannot be opened.\n" % display
        )
        self.assertEqual(self.run_program(WAYLAND_DISPLAY="wayland-7", DISPLAY=display), (1, "", expected))

    def where_no_display_answers_ends_in_one_line(self):
        self.listen_silently(self.session.path("wayland-7"))
        display = own_display()
        os.makedirs(X11_SOCKETS, mode=0o1777, exist_ok=True)
        self.listen_silently(os.path.join(X11_SOCKETS, "X" + display[1:]))
        expected = "orvane: The Wayland compositor does not answer. The X display does not answer.\n"
        self.assertEqual(self.run_program(WAYLAND_DISPLAY="wayland-7", DISPLAY=display), (1, "", expected))

    def listen_silently(self, path):
        listening = self.enterContext(socket.socket(socket.AF_UNIX))
        listening.bind(path)
        self.addCleanup(os.remove, path)
        os.chmod(path, 0o777)
        listening.listen()

    def with_a_question_answers_it(self):
        status, told, complaints = self.run_program("--version")
        self.assertEqual((status, complaints), (0, ""))
        self.assertRegex(told, r"^orvane \d+\.\d+\.\d+\n$")
        status, told, complaints = self.run_program("--help")
        self.assertEqual((status, complaints), (0, ""))
        self.assertTrue(told.startswith("Usage: orvane [--help | --version]\n"), told)

    def with_any_other_argument_ends_in_one_line(self):
        for arguments, refused in (
            (("--now",), "--now"),
            (("-h",), "-h"),
            (("",), ""),
            (("a\nb",), "a?b"),
            (("--version", "x"), "x"),
        ):
            with self.subTest(arguments=arguments):
                complaint = "orvane: unknown argument '%s'; only --help and --version are known\n" % refused
                self.assertEqual(self.run_program(*arguments), (2, "", complaint))


if __name__ == "__main__":
    run_tests()
