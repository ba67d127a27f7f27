"""What the sessions on Mutter have in common: its bus, its Wayland display and its Xwayland."""

import os
import re

from desktop_session import eventually

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


def _key(session):
    names = [each for each in os.listdir(session.folder) if each.startswith(".mutter-Xwaylandauth")]
    return session.path(names[0]) if names else None
