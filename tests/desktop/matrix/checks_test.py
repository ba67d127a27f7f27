"""Every check passes a board without faults and fails one that has the fault it is there for."""

import unittest
from unittest import mock

import checks
import run
from desktop_session import run_tests
from paper_desktop import PaperDesktop

MEANT_FOR = {
    "is not shown": {"starts", "stands on the main screen alone", "stands on every screen"}
    | {"stands on the selected screen alone", "stands on one workspace alone when so set"},
    "ignores the chosen screen": {"stands on the main screen alone", "stands on the selected screen alone"},
    "knows the main screen only": {"stands on the selected screen alone", "stands on every screen"},
    "covers everything": {"lies over the background"},
    "lies over windows": {"is covered by an ordinary window"},
    "takes the focus": {"takes neither focus nor keys"},
    "takes clicks": {"lets clicks through"},
    "goes when clicked": {"stays in place after the desktop was clicked"},
    "is listed": {"is not offered among the windows"},
    "has one workspace": {"stands on every workspace"},
    "stays on all workspaces": {"stands on one workspace alone when so set"},
    "goes when the desktop is shown": {"stays when the desktop is shown"},
    "goes with the background": {"follows another background"},
    "keeps the old background": {"follows another background"},
    "goes with the desktop": {"stays in place after the desktop was restarted"},
    "leaves a window": {"leaves nothing behind (displayMode main)"},
    "leaves a process": {"leaves nothing behind (displayMode main)"},
    "ends badly": {"leaves nothing behind (displayMode main)"},
    "complains": {"leaves nothing behind (displayMode main)"},
    "dies": {"leaves nothing behind (displayMode main)"},
}


class PaperTime:
    """Waiting takes no time, and is over after so many looks."""

    def __init__(self):
        self.now = 0.0

    def monotonic(self):
        return self.now

    def sleep(self, seconds):
        # Limits of many seconds are reached within a few looks: paper changes at once or never.
        self.now += max(seconds, 5)


def failures(faults, lacks=None, own_checks=()):
    report = run.Report()
    desktop = PaperDesktop(faults)
    desktop.own_checks = own_checks
    desktop.lacks = lacks or {}
    paper = PaperTime()
    with mock.patch("desktop_session.time", paper), mock.patch("trial.time", paper):
        with mock.patch("builtins.print"):
            run.try_checks(desktop, report)
    return report


class Checks(unittest.TestCase):
    def pass_a_board_without_faults(self):
        report = failures(())
        self.assertEqual(report.failed, [])
        self.assertGreaterEqual(report.passed, len(checks.COMMON))

    def fail_each_fault_that_they_are_there_for(self):
        for fault, titles in MEANT_FOR.items():
            with self.subTest(fault):
                failed = set(failures({fault}).failed)
                self.assertLessEqual(titles, failed)

    def fail_for_every_title_somewhere(self):
        titles = set().union(*MEANT_FOR.values())
        for each in checks.COMMON:
            self.assertIn(each.title, titles)

    def are_tried_again_with_the_board_on_one_workspace(self):
        again = checks.ON_ONE_WORKSPACE
        self.assertEqual(failures((), own_checks=again).failed, [])
        failed = failures({"takes clicks"}, own_checks=again).failed
        self.assertIn("lets clicks through on one workspace", failed)
        self.assertNotIn("is covered by an ordinary window on one workspace", failed)

    def are_not_made_where_the_desktop_lacks_what_they_take(self):
        report = failures({"is listed"}, {"listed": "nothing lists windows"})
        self.assertEqual(report.failed, [])


class Rows(unittest.TestCase):
    def without_their_programs_are_missing_and_fail(self):
        class Absent(PaperDesktop):
            name = "absent"
            needs = ("sh", "no-such-program-anywhere")

        with mock.patch("builtins.print") as printed, self.assertRaises(SystemExit) as ended:
            run.run_row(Absent)
        self.assertNotEqual(ended.exception.code, 0)
        printed.assert_called_once_with("MISSING absent: no-such-program-anywhere", flush=True)

    def whose_desktop_does_not_start_fail(self):
        class Broken(PaperDesktop):
            name = "broken"

            def __enter__(self):
                raise AssertionError("no display")

            def __exit__(self, *_):
                pass

        with mock.patch("builtins.print") as printed, self.assertRaises(SystemExit) as ended:
            run.run_row(Broken)
        self.assertNotEqual(ended.exception.code, 0)
        self.assertIn("FAILED broken", printed.call_args.args[0])


if __name__ == "__main__":
    run_tests()
