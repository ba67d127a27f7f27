"""Runs one row: `run.run_row(RowClass)`. It prints a line for each check and, last, one of

    PASSED row
    FAILED row: the checks that failed
    MISSING row: the programs that are not installed

and leaves a screenshot in the folder that ORVANE_DESKTOPS names."""

import os
import sys
import traceback

import checks
from trial import Trial


class Report:
    """`on_failure` is called after each with a number for it."""

    def __init__(self, on_failure=lambda number: None):
        self._on_failure = on_failure
        self.failed = []
        self.passed = 0

    def ok(self, title):
        self.passed += 1
        print("  ok    %s" % title, flush=True)

    def not_here(self, title, reason):
        print("  n/a   %s (%s)" % (title, reason), flush=True)

    def fail(self, title, error):
        self.failed.append(title)
        print("  FAIL  %s: %s" % (title, error), flush=True)
        if not isinstance(error, AssertionError):
            traceback.print_exception(type(error), error, error.__traceback__, limit=-3, file=sys.stdout)

    def attempt(self, title, function, *arguments):
        try:
            function(*arguments)
        except Exception as error:  # whatever goes wrong, the other checks are still of interest
            self.fail(title, error)
            self._on_failure(len(self.failed))
            return False
        self.ok(title)
        return True


def lacking(row, function):
    """Why the row's desktop cannot be tried for it; None when it can."""
    return next((row.lacks[use] for use in function.uses if use in row.lacks), None)


def settings_of(trial, function):
    settings = dict(function.settings)
    if settings.get("displayMode") == "selected":
        settings["selectedDisplayID"] = trial.screens[-1].identifier
    return settings


def try_checks(row, report, keep_picture=lambda trial: None):
    """All that the row has in common with others, and what it has of its own."""
    trial = Trial(row)
    current = None
    for function in (row.common_checks or checks.COMMON) + tuple(row.own_checks):
        reason = lacking(row, function)
        if reason:
            report.not_here(function.title, reason)
            continue
        wanted = settings_of(trial, function)
        if trial.running and wanted != current:
            _finish(trial, report, current)
        if not trial.running:
            current = wanted
            if not report.attempt("starts", _begin, trial, wanted, function):
                trial.running = None
                continue
        passed = report.attempt(function.title, function, trial)
        if passed and function is checks.stands_on_every_screen:
            keep_picture(trial)
        # After a failure the next check begins anew, lest one fault shows many times.
        if not passed and trial.running:
            trial.running.end()
            trial.running = None
    if trial.running:
        _finish(trial, report, current)


def _begin(trial, settings, function):
    trial.begin(settings)
    on_all = function.settings.get("displayMode") == "all"
    if on_all and function not in checks.LOOK_ON_ALL_SCREENS:
        checks.stands_on_every_screen(trial)


def _finish(trial, report, settings):
    label = ", ".join("%s %s" % item for item in settings.items() if item[0] != "selectedDisplayID")
    report.attempt("leaves nothing behind (%s)" % label, checks.leaves_nothing, trial)
    if trial.running:
        trial.running.end()
        trial.running = None


def keep_picture(row, suffix=""):
    """Of all screens, side by side, in the folder that ORVANE_DESKTOPS names."""
    folder = os.environ.get("ORVANE_DESKTOPS")
    if not folder:
        return
    os.makedirs(folder, exist_ok=True)
    whole = None
    for screen in row.screens():
        picture = row.picture(screen)
        whole = whole.beside(picture) if whole else picture
    whole.save_png(os.path.join(folder, row.name + suffix + ".png"))


def _keep_failure(row, number):
    try:
        keep_picture(row, "-failure-%d" % number)
    except Exception as error:  # the desktop may be gone; the failure is told all the same
        print("  no picture of it: %s" % error, flush=True)


def _try_all(row, report):
    try_checks(row, report, lambda trial: keep_picture(row))


def run_row(row_class, trying=_try_all):
    """`trying` takes the row and a Report."""
    name = row_class.name
    missing = row_class.missing()
    if missing:
        print("MISSING %s: %s" % (name, ", ".join(missing)), flush=True)
        sys.exit(1)
    report = Report()
    try:
        with row_class() as row:
            report = Report(lambda number: _keep_failure(row, number))
            trying(row, report)
            if report.failed:
                row.tell()
    except Exception as error:
        report.fail("the desktop starts and ends", error)
    if report.failed or not report.passed:
        print("FAILED %s: %s" % (name, "; ".join(report.failed) or "nothing was tried"), flush=True)
        sys.exit(1)
    print("PASSED %s" % name, flush=True)


def run_named(*row_classes, **how):
    """For a file with several rows: the one that the command line names."""
    known = {each.name: each for each in row_classes}
    if len(sys.argv) != 2 or sys.argv[1] not in known:
        sys.exit("name one of: " + ", ".join(known))
    run_row(known[sys.argv[1]], **how)
