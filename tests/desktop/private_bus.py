"""A session bus that starts the services that it is told to and no others, whatever else is
installed."""

import os
import shutil

from desktop_session import eventually, listens

SERVICES = "/usr/share/dbus-1/services"

BUS = """<busconfig>
  <type>session</type>
  <listen>unix:path=%s</listen>
  <servicedir>%s</servicedir>
  <policy context="default">
    <allow own="*"/>
    <allow send_destination="*" eavesdrop="true"/>
    <allow receive_sender="*"/>
    <allow eavesdrop="true"/>
  </policy>
</busconfig>
"""


def start_bus(session, *services):
    """Answers its process; the session's environment names it from here on."""
    os.makedirs(session.path("services"))
    for service in services:
        offer(session, service)
    session.write(BUS % (session.path("bus"), session.path("services")), "bus.conf")
    bus = session.start("dbus-daemon", "--nofork", "--config-file=" + session.path("bus.conf"))
    eventually("there is a bus", lambda: listens(session.path("bus")))
    session.environment["DBUS_SESSION_BUS_ADDRESS"] = "unix:path=" + session.path("bus")
    return bus


def offer(session, service):
    """One more; the bus finds it when it reads its configuration."""
    shutil.copy(os.path.join(SERVICES, service + ".service"), session.path("services"))
