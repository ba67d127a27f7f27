"""One day's agenda, as every contender shows it: ten events and five reminders."""

import time

EVENTS = (
    "Stand-up of the platform team",
    "Review of the release notes",
    "Call with the supplier",
    "Design session: storage",
    "Lunch with Amira",
    "Budget draft, first pass",
    "One-to-one",
    "Grant application due",
    "Dentist",
    "Pick up the parcel",
)
REMINDERS = (
    "Renew the passport",
    "Send the signed contract",
    "Order printer paper",
    "Book the train tickets",
    "Water the plants",
)


def start_of(index):
    """The events lie half an hour apart from the next full hour on."""
    begin = (int(time.time()) // 3600 + 1) * 3600
    return begin + index * 1800


def lines():
    clock = [time.strftime("%H:%M", time.localtime(start_of(index))) for index in range(len(EVENTS))]
    events = ["%s  %s" % pair for pair in zip(clock, EVENTS)]
    return events + ["○  " + reminder for reminder in REMINDERS]


def calendar():
    """The same as iCalendar text."""
    items = []
    for index, title in enumerate(EVENTS):
        start = time.strftime("%Y%m%dT%H%M%SZ", time.gmtime(start_of(index)))
        items += ["BEGIN:VEVENT", "UID:event-%d" % index, "DTSTAMP:20260101T000000Z"]
        items += ["DTSTART:" + start, "DURATION:PT20M", "SUMMARY:" + title, "END:VEVENT"]
    for index, title in enumerate(REMINDERS):
        items += ["BEGIN:VTODO", "UID:task-%d" % index, "DTSTAMP:20260101T000000Z"]
        items += ["SUMMARY:" + title, "END:VTODO"]
    return "\r\n".join(["BEGIN:VCALENDAR", "VERSION:2.0", *items, "END:VCALENDAR", ""])
