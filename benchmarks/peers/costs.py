"""What processes cost, as the kernel accounts for it."""

import os
import time

TICKS = os.sysconf("SC_CLK_TCK")


def threads(pid):
    """Thread → nanoseconds on a processor and voluntary switches, which are its wake-ups."""
    found = {}
    for thread in os.listdir("/proc/%d/task" % pid):
        folder = "/proc/%d/task/%s/" % (pid, thread)
        try:
            with open(folder + "schedstat", encoding="ascii") as file:
                nanoseconds = int(file.read().split()[0])
            with open(folder + "status", encoding="ascii") as file:
                switches = next(int(line.split()[1]) for line in file if line.startswith("voluntary"))
        except FileNotFoundError:  # it has ended meanwhile
            continue
        found[thread] = (nanoseconds, switches)
    return found


def ended_children(pid):
    """Seconds on a processor of the children that have ended."""
    with open("/proc/%d/stat" % pid, encoding="utf-8", errors="replace") as file:
        fields = file.read().rpartition(")")[2].split()
    return (int(fields[13]) + int(fields[14])) / TICKS


def memory(pid):
    """In MB."""
    found = {}
    with open("/proc/%d/smaps_rollup" % pid, encoding="ascii") as file:
        for line in file:
            name, _, rest = line.partition(":")
            if rest.endswith(" kB\n"):
                found[name] = int(rest.split()[0]) / 1024
    return found


class Window:
    """From here on until `costs()`: what the process takes each second of it."""

    def __init__(self, pid):
        self._pid = pid
        self._begin = time.monotonic()
        self._threads = threads(pid)
        self._children = ended_children(pid)

    def costs(self):
        seconds = time.monotonic() - self._begin
        now = threads(self._pid)
        none = (0, 0)
        busy = sum(now[one][0] - self._threads.get(one, none)[0] for one in now)
        woken = sum(now[one][1] - self._threads.get(one, none)[1] for one in now)
        children = ended_children(self._pid) - self._children
        return {
            "processor": busy / 1e6 / seconds,  # ms each second
            "children": children * 1e3 / seconds,
            "wakeups": woken / seconds,
        }
