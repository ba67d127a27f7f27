"""A system's configuration of the tests' own, in which the time zone changes under a program."""

import os
import shutil

# What is run so sees a copy of the system's configuration, and nobody else does.
WITH_OWN_CONFIGURATION = 'mount --bind "$1" /etc && shift && exec "$@"'


class Journey:
    """The zone of the programs that are started `around` it. It is the system's, so that they must
    not have one of their own in TZ."""

    def __init__(self, session, zone):
        self.configuration = session.path("etc")
        shutil.copytree("/etc", self.configuration, symlinks=True, ignore=_unreadable)
        self.go_to(zone)

    def go_to(self, zone):
        unfinished = os.path.join(self.configuration, "unfinished")
        os.symlink("/usr/share/zoneinfo/" + zone, unfinished)
        os.rename(unfinished, os.path.join(self.configuration, "localtime"))

    def around(self, command):
        """The command, as whoever may do so runs it there."""
        own = ["unshare", "-m"] if os.geteuid() == 0 else ["unshare", "-r", "-m"]
        return [*own, "sh", "-c", WITH_OWN_CONFIGURATION, "sh", self.configuration, *command]


def _unreadable(folder, names):
    return [name for name in names if not os.access(os.path.join(folder, name), os.R_OK)]
