"""A user's calendars and settings, small and the same on every desktop."""

import json
import time

CALENDARS = (".local", "share", "orvane", "calendars")


def calendar(*items):
    lines = ["BEGIN:VCALENDAR", "VERSION:2.0", "PRODID:-//Example//Planner//EN", *items, "END:VCALENDAR", ""]
    return "\r\n".join(lines)


def event(title, starts_in, hours=1):
    start = time.strftime("%Y%m%dT%H%M%SZ", time.gmtime(time.time() + starts_in))
    return "\r\n".join(
        ["BEGIN:VEVENT", "UID:%s@example.org" % title, "DTSTAMP:20260101T000000Z", "SUMMARY:" + title]
        + ["DTSTART:" + start, "DURATION:PT%dH" % hours, "END:VEVENT"]
    )


def task(title, due_in):
    due = time.strftime("%Y%m%dT%H%M%SZ", time.gmtime(time.time() + due_in))
    return "\r\n".join(
        ["BEGIN:VTODO", "UID:%s@example.org" % title, "DTSTAMP:20260101T000000Z", "SUMMARY:" + title]
        + ["DUE:" + due, "END:VTODO"]
    )


def add_calendar(session, name="work"):
    """With an event to count down to, so that the board ticks."""
    session.write(calendar(event("Review", starts_in=3 * 3600)), *CALENDARS, name, "events.ics")


def add_calendars(session):
    """Something to count down to, so that the board ticks, and something for each of its lists."""
    day = 24 * 3600
    work = calendar(event("Review of the plans", 3 * 3600), event("Workshop", day), event("Trip", 2 * day))
    session.write(work, *CALENDARS, "work", "events.ics")
    home = calendar(task("Water the plants", 2 * 3600), task("Return the books", 2 * day))
    session.write(home, *CALENDARS, "home", "tasks.ics")


def set_defaults(session, **values):
    named = {"DashboardSettings.%s" % key: value for key, value in values.items()}
    session.write(json.dumps(named), ".config", "orvane", "defaults.json")


def screen_number(connector, make="", model=""):
    """The hash that the program documents: FNV-1a of the three texts, 31 bits of it."""
    value = 2166136261
    for byte in b"".join(text.encode() + b"\0" for text in (connector, make, model)):
        value = (value ^ byte) * 16777619 % 2**32
    return max(value & 0x7FFFFFFF, 1)
