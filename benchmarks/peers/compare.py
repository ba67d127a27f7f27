#!/usr/bin/env python3
"""compare.py PROGRAM [--rounds N] [--seconds N] [--growth | --accounts]: what the program costs beside
what a user would otherwise run, measured side by side in one run. Prints Markdown.

Each round measures every contender once, after the same server with nothing on it; the figures are
the medians of the rounds. Nothing else should run meanwhile.
"""

import argparse
import os
import statistics
import subprocess
import sys
import time

from accounts import accounts
from contenders import CONTENDERS
from costs import Window, memory
from displays import DISPLAYS

SETTLING = 25  # seconds until a contender has come to rest
FIRST_FRAME = os.path.join(os.path.dirname(os.path.abspath(__file__)), "..", "..", "scripts", "first-frame")


def measured(pid, server, seconds):
    client, display = Window(pid), Window(server)
    time.sleep(seconds)
    costs = client.costs()
    costs["server"] = display.costs()["processor"]
    costs.update(memory(pid))
    return costs


def idle(server, seconds):
    window = Window(server)
    time.sleep(seconds)
    return window.costs()["processor"]


def trial(display, start, program, seconds, prepare=lambda session: None, **options):
    """One contender on one fresh server."""
    with DISPLAYS[display](**options) as session:
        prepare(session)
        time.sleep(2)
        server = session.server.process.pid
        nothing = idle(server, seconds / 2)
        running = session.run(start(session, program))
        time.sleep(SETTLING)
        costs = measured(running.process.pid, server, seconds)
        costs["server"] = max(costs["server"] - nothing, 0)
        costs["total"] = costs["processor"] + costs["children"] + costs["server"]
        if not running.is_running():
            raise SystemExit("compare.py: %s has ended: %s" % (running.name, running.output))
        return costs


def drawing(display, start, program, prepare=lambda session: None, **options):
    """Milliseconds from exec to the first drawing, and from the wall clock's second to what is drawn
    in it: medians of the runs, and of the seconds."""
    with DISPLAYS[display](**options) as session:
        prepare(session)
        command = start(session, program)
        command[0] = session.within_reach(command[0])
        words = " ".join("'%s'" % word for word in command)
        session.write("#!/bin/sh\nexec %s\n" % words, "start")
        os.chmod(session.path("start"), 0o755)
        with open(FIRST_FRAME, encoding="utf-8") as file:
            session.write(file.read(), "first-frame.py")

        def asked(*words):
            told = session.ask("/usr/bin/python3", session.path("first-frame.py"), *words).decode()
            return float(told.split("median ")[1].split()[0])

        return {"frame": asked(session.path("start"), "7"),
                "late": asked("--late", session.path("start"), "8")}


def medians(rounds):
    return {key: statistics.median(one[key] for one in rounds) for key in rounds[0]}


COLUMNS = [
    ("client ms/s", "processor", "%.2f"), ("children ms/s", "children", "%.2f"), ("server ms/s", "server", "%.2f"),
    ("together", "total", "%.2f"), ("wake-ups/s", "wakeups", "%.1f"), ("private dirty MB", "Private_Dirty", "%.1f"),
    ("anonymous MB", "Anonymous", "%.1f"), ("PSS MB", "Pss", "%.1f"), ("RSS MB", "Rss", "%.1f"),
    ("first frame ms", "frame", "%.0f"), ("after the second ms", "late", "%.1f"),
]


def table(rows):
    """Markdown of what each name costs; `beside` comes after `together` where the rows have it."""
    columns = list(COLUMNS)
    if all("beside" in costs for _, costs in rows):
        columns.insert(4, ("beside Orvane", "beside", "%.1f"))
    print("| | %s |" % " | ".join(title for title, _, _ in columns))
    print("|" + "---|" * (1 + len(columns)))
    for name, costs in rows:
        print("| %s | %s |" % (name, " | ".join(form % costs[key] for _, key, form in columns)))


def compare(program, rounds, seconds):
    results = {(display, name): [] for display, all_of in CONTENDERS.items() for name in all_of}
    for number in range(rounds):
        for display, name in results:
            print("round %d: %s, %s" % (number + 1, display, name), file=sys.stderr)
            results[display, name].append(trial(display, CONTENDERS[display][name], program, seconds))
    rows = []
    for (display, name), all_rounds in results.items():
        costs = medians(all_rounds)
        # Of each round, since what disturbs a round disturbs all who run in it.
        pairs = zip(all_rounds, results[display, "Orvane"])
        costs["beside"] = statistics.median(one["total"] / ours["total"] for one, ours in pairs)
        costs.update(drawing(display, CONTENDERS[display][name], program))
        rows.append(("%s on %s" % (name, display), costs))
    table(rows)


def items(count):
    """A calendar of that many past events, a file for each hundred, beside today's agenda."""

    def prepare(session):
        for number in range(count // 100):
            lines = ["BEGIN:VCALENDAR", "VERSION:2.0"]
            for index in range(100):
                day = time.strftime("%Y%m%d", time.gmtime(time.time() - 86400 * (30 + (number + index) % 900)))
                lines += ["BEGIN:VEVENT", "UID:past-%d-%d" % (number, index), "DTSTAMP:20260101T000000Z",
                          "DTSTART:%sT100000Z" % day, "DURATION:PT1H", "SUMMARY:Past %d" % index, "END:VEVENT"]
            session.write("\r\n".join([*lines, "END:VCALENDAR", ""]),
                          ".local", "share", "orvane", "calendars", "past", "%d.ics" % number)

    return prepare


def thirty_years(session):
    rule = ["BEGIN:VCALENDAR", "VERSION:2.0", "BEGIN:VEVENT", "UID:old", "DTSTAMP:19960101T000000Z",
            "DTSTART:19961121T083000Z", "DURATION:PT15M", "RRULE:FREQ=DAILY", "SUMMARY:Every day", "END:VEVENT",
            "END:VCALENDAR", ""]
    session.write("\r\n".join(rule), ".local", "share", "orvane", "calendars", "old", "old.ics")


def everywhere(session):
    session.write('{"DashboardSettings.displayMode": "all"}', ".config", "orvane", "defaults.json")


def growth(program, rounds, seconds):
    cases = [("%d screens" % count, dict(screens=count, prepare=everywhere)) for count in range(1, 7)]
    cases += [("scale %s" % scale, dict(scale=scale)) for scale in (1, 2, 3)]
    cases += [("%d past items" % count, dict(prepare=items(count))) for count in (1000, 10000, 100000)]
    cases += [("a daily rule since 1996", dict(prepare=thirty_years))]
    results = {(display, name): [] for display in DISPLAYS for name, _ in cases}
    for number in range(rounds):
        for display, name in results:
            print("round %d: growth: %s on %s" % (number + 1, name, display), file=sys.stderr)
            trying = trial(display, CONTENDERS[display]["Orvane"], program, seconds, **dict(cases)[name])
            results[display, name].append(trying)
    rows = []
    for (display, name), all_rounds in results.items():
        drawn = drawing(display, CONTENDERS[display]["Orvane"], program, **dict(cases)[name])
        rows.append(("%s on %s" % (name, display), {**medians(all_rounds), **drawn}))
    table(rows)


def main():
    parser = argparse.ArgumentParser(description=__doc__)
    parser.add_argument("program")
    parser.add_argument("--rounds", type=int, default=3)
    parser.add_argument("--seconds", type=float, default=20)
    parser.add_argument("--growth", action="store_true")
    parser.add_argument("--accounts", action="store_true")
    wanted = parser.parse_args()
    program = os.path.abspath(wanted.program)
    print("%s, %d processors, %s" % (time.strftime("%Y-%m-%d"), os.cpu_count(),
                                     subprocess.check_output(["uname", "-sr"]).decode().strip()))
    print()
    if wanted.growth:
        growth(program, wanted.rounds, wanted.seconds)
    elif wanted.accounts:
        accounts(program, wanted.rounds, wanted.seconds)
    else:
        compare(program, wanted.rounds, wanted.seconds)


if __name__ == "__main__":
    main()
