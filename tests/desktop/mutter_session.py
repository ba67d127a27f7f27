"""What the sessions on Mutter have in common: its bus, its Wayland display and its Xwayland."""

import os
import re
import signal

from desktop_session import eventually, own_display

# Long, since a shell that starts on a busy machine takes its time.
START = 90


def start_mutter(session, *command, environment=None):
    """Starts Mutter, or a shell that is one, and answers it when both of its displays can be had,
    which the environment names from here on."""
    name = "wayland-orvane"
    running = session.start(*command, "--wayland-display", name, environment=environment)
    number = lambda: re.search(r"public X11 display (:\d+)", running.output)
    session.environment["DISPLAY"] = eventually("Mutter has a display", number, START).group(1)
    session.environment["XAUTHORITY"] = eventually("there is a key to it", lambda: _key(session))
    session.environment["WAYLAND_DISPLAY"] = name
    return running


class LastingNames:
    """Names for a Mutter's display, and for the key to it, that stay when another Mutter comes in its
    place, whatever number that finds free."""

    def __init__(self, session):
        self._session = session
        self.display = own_display()
        self._socket = "/tmp/.X11-unix/X" + self.display[1:]
        self._key = session.path("key")

    def __enter__(self):
        self.renew()
        return self

    def __exit__(self, *_):
        self.withdraw()

    def withdraw(self):
        """Before the number may be another server's."""
        if os.path.lexists(self._socket):
            os.remove(self._socket)

    def renew(self):
        """They are those of the session's Mutter of now."""
        environment = self._session.environment
        _link(self._socket, "/tmp/.X11-unix/X" + environment["DISPLAY"][1:])
        _link(self._key, environment["XAUTHORITY"])

    @property
    def environment(self):
        return {"DISPLAY": self.display, "XAUTHORITY": self._key}


def kill_mutter(session, running):
    """With its Xwayland, which is of no use without it."""
    running.end(signal.SIGKILL)
    eventually("its Xwayland is gone", lambda: not session.processes_called("Xwayland"))
    os.remove(session.environment["XAUTHORITY"])


def _link(name, target):
    if os.path.lexists(name):
        os.remove(name)
    os.symlink(target, name)


def _key(session):
    names = [each for each in os.listdir(session.folder) if each.startswith(".mutter-Xwaylandauth")]
    return session.path(names[0]) if names else None
