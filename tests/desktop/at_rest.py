"""What tells from the outside that the program does nothing, as it shall while nobody sees it."""

import re
import time


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
