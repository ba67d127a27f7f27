"""What the desktop's calendar accounts cost: the program alone, with nothing to load, and with the
real service behind it. The service's own processes are not counted: others use them, too."""

import os
import statistics
import sys
import time

import agenda
from costs import Window, memory
from displays import DISPLAYS

sys.path.insert(0, os.path.join(os.path.dirname(os.path.abspath(__file__)), "..", "..", "tests", "desktop", "evolution"))

from service import Evolution  # noqa: E402

SETTLING = 25  # seconds until everything has been read and the start's memory given back


def past(count):
    lines = ["BEGIN:VCALENDAR", "VERSION:2.0"]
    for index in range(count):
        day = time.strftime("%Y%m%d", time.gmtime(time.time() - 86400 * (30 + index % 900)))
        lines += ["BEGIN:VEVENT", "UID:past-%d" % index, "DTSTAMP:20260101T000000Z",
                  "DTSTART:%sT100000Z" % day, "DURATION:PT1H", "SUMMARY:Past %d" % index, "END:VEVENT"]
    return "\r\n".join([*lines, "END:VCALENDAR", ""])


def split(text):
    """The events and the tasks of the agenda, each as an object of their own."""
    head, tail = "BEGIN:VCALENDAR\r\nVERSION:2.0\r\n", "END:VCALENDAR\r\n"
    begin = text.index("BEGIN:VTODO")
    return text[:begin] + tail, head + text[begin:]


def in_a_folder(session):
    session.write(agenda.calendar(), ".local", "share", "orvane", "calendars", "day", "day.ics")


def with_bus(session):
    in_a_folder(session)
    Evolution(session)


def with_service(count=0):
    def prepare(session):
        evolution = Evolution(session)
        events, tasks = split(agenda.calendar())
        evolution.prepare("day", "Day", text=events)
        evolution.prepare("list", "List", "tasks", tasks)
        if count:
            evolution.prepare("past", "Past", text=past(count))
        evolution.run()

    return prepare


CASES = [
    ("no session bus", in_a_folder),
    ("a bus without the service", with_bus),
    ("the service, 10 events and 5 tasks", with_service()),
    ("the same and 10,000 past events", with_service(10000)),
]


def trial(program, prepare, seconds):
    with DISPLAYS["sway"]() as session:
        prepare(session)
        time.sleep(2)
        running = session.run([program])
        time.sleep(SETTLING)
        window = Window(running.process.pid)
        time.sleep(seconds)
        costs = window.costs()
        costs.update(memory(running.process.pid))
        costs["threads"] = len(os.listdir("/proc/%d/task" % running.process.pid))
        if not running.is_running():
            raise SystemExit("accounts.py: the program has ended: " + running.output)
        return costs


def accounts(program, rounds, seconds):
    results = {name: [] for name, _ in CASES}
    for number in range(rounds):
        for name, prepare in CASES:
            print("round %d: %s" % (number + 1, name), file=sys.stderr)
            results[name].append(trial(program, prepare, seconds))
    print("| | client ms/s | wake-ups/s | threads | private dirty MB | anonymous MB | PSS MB | RSS MB |")
    print("|---|---|---|---|---|---|---|---|")
    for name, all_rounds in results.items():
        costs = {key: statistics.median(one[key] for one in all_rounds) for key in all_rounds[0]}
        print("| %s | %.2f | %.1f | %d | %.1f | %.1f | %.1f | %.1f |" % (
            name, costs["processor"], costs["wakeups"], costs["threads"], costs["Private_Dirty"],
            costs["Anonymous"], costs["Pss"], costs["Rss"]))
