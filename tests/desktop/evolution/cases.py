"""A hundred calendars and task lists, each with a thing of its own, around the last week of March
2026, in the middle of which the clocks of Berlin go forward."""

from collections import namedtuple

# What the wall clock shows: Wednesday, 2026-03-25, eight o'clock in Berlin.
NOW = 1774422000
ZONE = "Europe/Berlin"

# `kind` is "calendar" or "tasks"; `text` a whole iCalendar object.
Case = namedtuple("Case", "name kind text")


def lines_of(block):
    return [line.strip() for line in block.strip().splitlines()]


def component(kind, title, block, uid="item"):
    lines = ["BEGIN:" + kind, "UID:" + uid, "DTSTAMP:20260101T000000Z"]
    if title is not None:
        lines.append("SUMMARY:" + title)
    return lines + lines_of(block) + ["END:" + kind]


def calendar(*parts):
    lines = ["BEGIN:VCALENDAR", "VERSION:2.0", "PRODID:-//Example//Planner//EN"]
    for part in parts:
        lines += part if isinstance(part, list) else lines_of(part)
    return "\r\n".join([*lines, "END:VCALENDAR", ""])


def event(name, block, title="Meeting"):
    return Case(name, "calendar", calendar(component("VEVENT", title, block)))


def series(name, *blocks):
    """One event with its overrides, which are named by their numbers."""
    titles = ["Meeting"] + ["Override %d" % number for number in range(1, len(blocks))]
    parts = [component("VEVENT", title, block) for title, block in zip(titles, blocks)]
    return Case(name, "calendar", calendar(*parts))


def events(name, *blocks):
    parts = [component("VEVENT", "Event %d" % number, block, "item%d" % number)
             for number, block in enumerate(blocks, 1)]
    return Case(name, "calendar", calendar(*parts))


def zoned(name, zone, block):
    return Case(name, "calendar", calendar(zone, component("VEVENT", "Meeting", block)))


def task(name, block, title="Errand"):
    return Case(name, "tasks", calendar(component("VTODO", title, block)))


def task_series(name, *blocks):
    titles = ["Errand"] + ["Override %d" % number for number in range(1, len(blocks))]
    parts = [component("VTODO", title, block) for title, block in zip(titles, blocks)]
    return Case(name, "tasks", calendar(*parts))


MORNING = "DTSTART;TZID=Europe/Berlin:%sT090000\nDTEND;TZID=Europe/Berlin:%sT100000\n"


def morning(day):
    return MORNING % (day, day)


def at_nine(name, rule):
    """Repeats from Monday, the 2nd of March."""
    return event(name, morning("20260302") + rule)


KATHMANDU = """
BEGIN:VTIMEZONE
TZID:Kathmandu by hand
BEGIN:STANDARD
DTSTART:19860101T000000
TZOFFSETFROM:+0530
TZOFFSETTO:+0545
END:STANDARD
END:VTIMEZONE
"""
SUMMER = """
BEGIN:VTIMEZONE
TZID:%s
BEGIN:STANDARD
DTSTART:19701025T030000
RRULE:FREQ=YEARLY;BYMONTH=10;BYDAY=-1SU
TZOFFSETFROM:+0200
TZOFFSETTO:+0100
END:STANDARD
BEGIN:DAYLIGHT
DTSTART:19700329T020000
RRULE:FREQ=YEARLY;BYMONTH=3;BYDAY=-1SU
TZOFFSETFROM:+0100
TZOFFSETTO:+0200
END:DAYLIGHT
END:VTIMEZONE
"""
# Under the name of a known zone, and with other offsets than the known one has.
CHANGED = """
BEGIN:VTIMEZONE
TZID:Europe/Lisbon
BEGIN:STANDARD
DTSTART:19700101T000000
TZOFFSETFROM:+0400
TZOFFSETTO:+0400
END:STANDARD
END:VTIMEZONE
"""

SINGLE = [
    event("in UTC", "DTSTART:20260326T090000Z\nDTEND:20260326T100000Z"),
    event("in a zone", morning("20260326")),
    event("in two zones", "DTSTART;TZID=America/New_York:20260326T090000\nDTEND;TZID=Europe/London:20260326T140000"),
    event("floating", "DTSTART:20260326T090000\nDTEND:20260326T100000"),
    event("all day", "DTSTART;VALUE=DATE:20260327\nDTEND;VALUE=DATE:20260328"),
    event("all day without an end", "DTSTART;VALUE=DATE:20260327"),
    event("three days", "DTSTART;VALUE=DATE:20260327\nDTEND;VALUE=DATE:20260330"),
    event("all day by its duration", "DTSTART;VALUE=DATE:20260327\nDURATION:P2D"),
    event("without an end", "DTSTART:20260326T090000Z"),
    event("an hour and a half", "DTSTART:20260326T090000Z\nDURATION:PT1H30M"),
    event("a week", "DTSTART:20260326T090000Z\nDURATION:P1W"),
    event("a day across the change of clocks", "DTSTART;TZID=Europe/Berlin:20260328T120000\nDURATION:P1D"),
    event("24 hours across the change of clocks", "DTSTART;TZID=Europe/Berlin:20260328T120000\nDURATION:PT24H"),
    event("in the hour that is skipped", "DTSTART;TZID=Europe/Berlin:20260329T023000\nDURATION:PT30M"),
    event("across midnight", "DTSTART;TZID=Europe/Berlin:20260326T233000\nDTEND;TZID=Europe/Berlin:20260327T003000"),
    event("over already today", "DTSTART;TZID=Europe/Berlin:20260325T060000\nDURATION:PT1H"),
    event("since yesterday", "DTSTART;TZID=Europe/Berlin:20260324T233000\nDURATION:PT24H"),
    event("before the week", morning("20260323")),
    event("after the week", morning("20260402")),
    event("all day today", "DTSTART;VALUE=DATE:20260325"),
    event("ends before it begins", "DTSTART:20260326T090000Z\nDTEND:20260326T080000Z"),
    event("a negative duration", "DTSTART:20260326T090000Z\nDURATION:-PT1H"),
    event("cancelled", morning("20260326") + "STATUS:CANCELLED"),
    event("tentative", morning("20260326") + "STATUS:TENTATIVE"),
    event("transparent and private", morning("20260326") + "TRANSP:TRANSPARENT\nCLASS:PRIVATE"),
    event("with an alarm", morning("20260326") + """
          BEGIN:VALARM
          ACTION:DISPLAY
          DESCRIPTION:Soon
          TRIGGER:-PT15M
          END:VALARM"""),
    event("with guests", morning("20260326") + """
          ORGANIZER;CN=Ana:mailto:ana@example.org
          ATTENDEE;PARTSTAT=DECLINED;CN=Ben:mailto:ben@example.org"""),
    events("two of them", morning("20260326"), morning("20260327")),
]

TEXTS = [
    event("without a title", morning("20260326"), title=None),
    event("with an empty title", morning("20260326"), title=""),
    event("with a blank title", morning("20260326"), title="   "),
    event("with escapes", morning("20260326"), title=r"Line\none\, two\; three \\ four"),
    event("with a folded title", morning("20260326"), title="A long title that is\r\n  folded twice\r\n , at odd places"),
    event("in many scripts", morning("20260326"), title="Καλημέρα 会議 اجتماع पुस्तक Øre"),
    event("with a picture", morning("20260326"), title="Moonrise \U0001f319 \U0001f468\u200d\U0001f469\u200d\U0001f467"),
    event("with combining marks", morning("20260326"), title="Cafe\u0301 man\u0303ana"),
    event("with marks of direction", morning("20260326"), title="\u202eright to left\u202c and \u200fback"),
    event("with a very long title", morning("20260326"), title="Very long " * 200),
    event("with parameters", morning("20260326") + "SUMMARY;LANGUAGE=en;X-ODD=\"a;b:c\":Quoted", title=None),
    event("with unknown properties", morning("20260326") + "X-APPLE-TRAVEL-ADVISORY-BEHAVIOR:AUTOMATIC\nX-EMPTY:"),
    event("with colons in its title", morning("20260326"), title="Re: 10:30: it goes on"),
    event("with a description", morning("20260326") + "DESCRIPTION:SUMMARY:Not the title\\nEND:VEVENT\nLOCATION:Here"),
]

RULES = [
    at_nine("daily", "RRULE:FREQ=DAILY"),
    at_nine("every third day", "RRULE:FREQ=DAILY;INTERVAL=3"),
    at_nine("daily so often", "RRULE:FREQ=DAILY;COUNT=26"),
    at_nine("daily until an instant", "RRULE:FREQ=DAILY;UNTIL=20260327T080000Z"),
    at_nine("daily until a day", "RRULE:FREQ=DAILY;UNTIL=20260327"),
    at_nine("weekly", "RRULE:FREQ=WEEKLY"),
    at_nine("weekdays", "RRULE:FREQ=WEEKLY;BYDAY=MO,TU,WE,TH,FR"),
    at_nine("every second week from Sunday", "RRULE:FREQ=WEEKLY;INTERVAL=2;WKST=SU;BYDAY=SU,TU"),
    at_nine("every second week from Monday", "RRULE:FREQ=WEEKLY;INTERVAL=2;WKST=MO;BYDAY=SU,TU"),
    at_nine("monthly by its day", "RRULE:FREQ=MONTHLY;BYMONTHDAY=27"),
    at_nine("monthly on the last day", "RRULE:FREQ=MONTHLY;BYMONTHDAY=-1"),
    at_nine("monthly on the last Friday", "RRULE:FREQ=MONTHLY;BYDAY=-1FR"),
    at_nine("monthly on the fourth Thursday", "RRULE:FREQ=MONTHLY;BYDAY=4TH"),
    at_nine("monthly on the last working day", "RRULE:FREQ=MONTHLY;BYDAY=MO,TU,WE,TH,FR;BYSETPOS=-1"),
    event("yearly", morning("20200328") + "RRULE:FREQ=YEARLY"),
    event("yearly by month and day", morning("20200328") + "RRULE:FREQ=YEARLY;BYMONTH=3;BYDAY=-1SU"),
    event("yearly by the day of the year", morning("20200101") + "RRULE:FREQ=YEARLY;BYYEARDAY=86"),
    event("yearly by the week", morning("20200101") + "RRULE:FREQ=YEARLY;BYWEEKNO=13;BYDAY=TH"),
    event("on a leap day", morning("20240229") + "RRULE:FREQ=YEARLY"),
    at_nine("every six hours", "RRULE:FREQ=HOURLY;INTERVAL=6"),
    at_nine("twice a day", "RRULE:FREQ=DAILY;BYHOUR=9,17"),
    at_nine("every ten minutes of an hour", "RRULE:FREQ=DAILY;BYHOUR=10;BYMINUTE=0,10,20"),
    event("all day weekly", "DTSTART;VALUE=DATE:20260306\nRRULE:FREQ=WEEKLY"),
    event("floating and daily", "DTSTART:20260302T070000\nDURATION:PT1H\nRRULE:FREQ=DAILY"),
    event("daily in another zone", "DTSTART;TZID=America/New_York:20260302T203000\nDURATION:PT1H\nRRULE:FREQ=DAILY"),
    event("daily in UTC", "DTSTART:20260302T090000Z\nDURATION:PT1H\nRRULE:FREQ=DAILY"),
    event("daily in the hour that is skipped", "DTSTART;TZID=Europe/Berlin:20260302T023000\nDURATION:PT1H\nRRULE:FREQ=DAILY"),
    at_nine("never again", "RRULE:FREQ=YEARLY;BYMONTH=2;BYMONTHDAY=30"),
    at_nine("two rules", "RRULE:FREQ=WEEKLY;BYDAY=TH\nRRULE:FREQ=WEEKLY;BYDAY=SA"),
    at_nine("over before the week", "RRULE:FREQ=DAILY;COUNT=5"),
]

DATES = [
    at_nine("one more date", "RDATE;TZID=Europe/Berlin:20260326T110000"),
    at_nine("more dates in a line", "RDATE;TZID=Europe/Berlin:20260326T110000,20260327T120000"),
    at_nine("a period", "RDATE;VALUE=PERIOD:20260326T110000Z/PT3H"),
    event("one more day", "DTSTART;VALUE=DATE:20260302\nRDATE;VALUE=DATE:20260328,20260330"),
    at_nine("without a date", "RRULE:FREQ=DAILY\nEXDATE;TZID=Europe/Berlin:20260326T090000"),
    at_nine("without dates in a line", "RRULE:FREQ=DAILY\nEXDATE:20260326T080000Z,20260327T080000Z"),
    at_nine("without a date of another zone", "RRULE:FREQ=DAILY\nEXDATE;TZID=America/New_York:20260326T040000"),
    event("without a day", "DTSTART;VALUE=DATE:20260302\nRRULE:FREQ=DAILY\nEXDATE;VALUE=DATE:20260327"),
    at_nine("without a date that is added", "RDATE:20260326T100000Z\nEXDATE:20260326T100000Z\nRRULE:FREQ=WEEKLY"),
]

DAILY = morning("20260302") + "RRULE:FREQ=DAILY"
OVERRIDES = [
    series("moved by an hour", DAILY, "RECURRENCE-ID;TZID=Europe/Berlin:20260326T090000\n"
           "DTSTART;TZID=Europe/Berlin:20260326T100000\nDURATION:PT2H"),
    series("moved to another day", DAILY, "RECURRENCE-ID;TZID=Europe/Berlin:20260326T090000\n" + morning("20260328")),
    series("moved out of the week", DAILY, "RECURRENCE-ID;TZID=Europe/Berlin:20260326T090000\n" + morning("20260415")),
    series("moved out of the year", DAILY, "RECURRENCE-ID;TZID=Europe/Berlin:20260326T090000\n" + morning("20280415")),
    series("moved into the week", DAILY, "RECURRENCE-ID;TZID=Europe/Berlin:20260310T090000\n"
           "DTSTART;TZID=Europe/Berlin:20260327T140000\nDURATION:PT1H"),
    series("named in UTC", DAILY, "RECURRENCE-ID:20260326T080000Z\n"
           "DTSTART:20260326T120000Z\nDURATION:PT1H"),
    series("one is cancelled", DAILY, "RECURRENCE-ID;TZID=Europe/Berlin:20260326T090000\nSTATUS:CANCELLED\n" + morning("20260326")),
    series("two are changed", DAILY, "RECURRENCE-ID;TZID=Europe/Berlin:20260326T090000\n" + morning("20260326"),
           "RECURRENCE-ID;TZID=Europe/Berlin:20260330T090000\n"
           "DTSTART;TZID=Europe/Berlin:20260330T070000\nDURATION:PT15M"),
    series("an all-day one is moved", "DTSTART;VALUE=DATE:20260304\nRRULE:FREQ=WEEKLY",
           "RECURRENCE-ID;VALUE=DATE:20260325\nDTSTART;VALUE=DATE:20260326\nDTEND;VALUE=DATE:20260328"),
    series("one becomes all-day", DAILY, "RECURRENCE-ID;TZID=Europe/Berlin:20260327T090000\nDTSTART;VALUE=DATE:20260327"),
    series("this and all that follow", DAILY, "RECURRENCE-ID;RANGE=THISANDFUTURE;TZID=Europe/Berlin:20260327T090000\n"
           "DTSTART;TZID=Europe/Berlin:20260327T110000\nDURATION:PT2H"),
    series("this and all that follow, since long ago", morning("20250302") + "RRULE:FREQ=DAILY",
           "RECURRENCE-ID;RANGE=THISANDFUTURE;TZID=Europe/Berlin:20250310T090000\n"
           "DTSTART;TZID=Europe/Berlin:20250310T110000\nDURATION:PT2H"),
    series("this and all that follow are cancelled", DAILY,
           "RECURRENCE-ID;RANGE=THISANDFUTURE;TZID=Europe/Berlin:20260328T090000\nSTATUS:CANCELLED\n" + morning("20260328")),
    series("the series is cancelled", DAILY + "\nSTATUS:CANCELLED"),
    Case("an invitation to one of a series", "calendar", calendar(component(
        "VEVENT", "Meeting", "RECURRENCE-ID:20260326T080000Z\n" + morning("20260326")))),
]

ZONES = [
    event("a Windows zone", "DTSTART;TZID=W. Europe Standard Time:20260326T090000\nDURATION:PT1H"),
    event("another Windows zone", "DTSTART;TZID=Pacific Standard Time:20260326T090000\nDURATION:PT1H"),
    event("a zone as Windows shows it", "DTSTART;TZID=\"(UTC+01:00) Amsterdam, Berlin, Bern, Rome\":20260330T090000\nDURATION:PT1H"),
    event("a zone at the end of a path", "DTSTART;TZID=/example.org/20260101/Asia/Tokyo:20260326T180000\nDURATION:PT1H"),
    event("a zone in other letters", "DTSTART;TZID=europe/london:20260326T090000\nDURATION:PT1H"),
    event("a zone that nobody knows", "DTSTART;TZID=Nowhere/Special:20260326T090000\nDURATION:PT1H"),
    event("a zone with half an hour", "DTSTART;TZID=Asia/Kolkata:20260326T090000\nDURATION:PT1H"),
    zoned("a zone of its own", KATHMANDU, "DTSTART;TZID=Kathmandu by hand:20260326T090000\nDURATION:PT1H"),
    zoned("a zone of its own with summer", SUMMER % "Own summer",
          "DTSTART;TZID=Own summer:20260302T090000\nDURATION:PT1H\nRRULE:FREQ=DAILY"),
    zoned("a Windows zone with its rules", SUMMER % "Romance Standard Time",
          "DTSTART;TZID=Romance Standard Time:20260302T090000\nDURATION:PT1H\nRRULE:FREQ=DAILY"),
    zoned("a known zone of other rules", CHANGED, "DTSTART;TZID=Europe/Lisbon:20260326T090000\nDURATION:PT1H"),
]

TASKS = [
    task("due at an instant", "DUE:20260326T150000Z"),
    task("due in a zone", "DUE;TZID=America/New_York:20260326T150000"),
    task("due wherever you are", "DUE:20260326T150000"),
    task("due on a day", "DUE;VALUE=DATE:20260327"),
    task("due some day", "PRIORITY:5"),
    task("overdue", "DUE:20240101T120000Z"),
    task("due next year", "DUE;VALUE=DATE:20270101"),
    task("start and duration", "DTSTART:20260326T150000Z\nDURATION:PT2H"),
    task("a start alone", "DTSTART:20260326T150000Z"),
    task("of high priority", "DUE:20260326T150000Z\nPRIORITY:1"),
    task("of low priority", "PRIORITY:9"),
    task("without a name", "DUE:20260326T150000Z", title=None),
    task("done by its status", "DUE:20260326T150000Z\nSTATUS:COMPLETED"),
    task("done by its date", "DUE:20260326T150000Z\nCOMPLETED:20260301T120000Z"),
    task("done by its percentage", "DUE:20260326T150000Z\nPERCENT-COMPLETE:100"),
    task("done altogether", "STATUS:COMPLETED\nPERCENT-COMPLETE:100\nCOMPLETED:20260301T120000Z"),
    task("called off", "DUE:20260326T150000Z\nSTATUS:CANCELLED"),
    task("begun", "DUE:20260326T150000Z\nSTATUS:IN-PROCESS\nPERCENT-COMPLETE:99"),
    task("to be done", "DUE:20260326T150000Z\nSTATUS:NEEDS-ACTION\nPERCENT-COMPLETE:0"),
    task("every week", "DTSTART;VALUE=DATE:20260301\nDUE;VALUE=DATE:20260302\nRRULE:FREQ=WEEKLY"),
    task_series("every week with the first done",
                "DTSTART;TZID=Europe/Berlin:20260302T090000\nDUE;TZID=Europe/Berlin:20260302T170000\nRRULE:FREQ=WEEKLY",
                "RECURRENCE-ID;TZID=Europe/Berlin:20260302T090000\nSTATUS:COMPLETED\n"
                "DTSTART;TZID=Europe/Berlin:20260302T090000\nDUE;TZID=Europe/Berlin:20260302T170000"),
    Case("a task in many scripts", "tasks", calendar(component("VTODO", "買い物 \U0001f6d2 Čaj", "DUE:20260326T150000Z"))),
    Case("three tasks", "tasks", calendar(
        component("VTODO", "Third", "PRIORITY:1", "c"), component("VTODO", "Second", "PRIORITY:9", "b"),
        component("VTODO", "First", "DUE;VALUE=DATE:20260330", "a"))),
]

CASES = SINGLE + TEXTS + RULES + DATES + OVERRIDES + ZONES + TASKS
