"""What tells from the outside that nothing changes, and that the program does nothing, as it shall
while nobody sees it."""

import re
import time

from desktop_session import eventually


def at_rest(what, look, looks=5, seconds=20):
    """What is seen once it was the same for so many looks in a row."""
    seen = []

    def rests():
        now = look()
        if seen and seen[-1] != now:
            seen.clear()
        seen.append(now)
        return len(seen) >= looks

    eventually("%s rests" % what, rests, seconds)
    return seen[-1]


def grows_not(count, seconds=3.2):
    """Whether there are no more of them when so many seconds, each with its beat, have passed."""
    before = count()
    time.sleep(seconds)
    return count() == before


def sleeps(running):
    """Whether the program does nothing at all for some seconds, but for what the session's other
    programs ask of it."""
    with open("/proc/%d/status" % running.process.pid, encoding="ascii") as file:
        woken = lambda text: int(re.search(r"^voluntary_ctxt_switches:\s+(\d+)", text, re.M)[1])
        before = woken(file.read())
        time.sleep(4.2)
        file.seek(0)
        return woken(file.read()) - before < 2
