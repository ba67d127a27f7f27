"""The desktop's calendar service: a private session bus with the real registry of accounts and the
real calendar factory, and a client of theirs that creates, changes and removes what they hold."""

import contextlib
import json
import os
import select
import signal
import subprocess
import time

from desktop_session import DesktopSession, eventually, listens

REGISTRY = "org.gnome.evolution.dataserver.Sources5"
FACTORY = "org.gnome.evolution.dataserver.Calendar8"
PROGRAMS = {
    REGISTRY: "/usr/libexec/evolution-source-registry",
    FACTORY: "/usr/libexec/evolution-calendar-factory",
}
# Without being told, it ends ten seconds after its last client, for the bus to start it again.
TO_STAY = {FACTORY: ["--keep-running"]}
# Long, since services that start on a busy machine take their time.
START = 60

# The limits are those of a desktop's bus.
BUS = """<!DOCTYPE busconfig PUBLIC "-//freedesktop//DTD D-Bus Bus Configuration 1.0//EN"
 "http://www.freedesktop.org/standards/dbus/1.0/busconfig.dtd">
<busconfig>
  <type>session</type>
  <listen>unix:path=%(bus)s</listen>
  <auth>EXTERNAL</auth>
  <servicedir>%(services)s</servicedir>
  <policy context="default">
    <allow send_destination="*" eavesdrop="true"/>
    <allow eavesdrop="true"/>
    <allow own="*"/>
  </policy>
  <limit name="max_match_rules_per_connection">50000</limit>
  <limit name="max_replies_per_connection">50000</limit>
</busconfig>
"""

# Nothing outside of the session: no settings, keys, proxies or networks of the machine's.
ENVIRONMENT = {
    "GSETTINGS_BACKEND": "memory",
    "GIO_USE_VFS": "local",
    "GIO_USE_NETWORK_MONITOR": "base",
    "GIO_USE_PROXY_RESOLVER": "dummy",
    "DBUS_SYSTEM_BUS_ADDRESS": "unix:path=/dev/null/none",
    "NO_AT_BRIDGE": "1",
}

SOURCE = """[Data Source]
DisplayName=%(title)s
Enabled=true
Parent=local-stub

[%(extension)s]
BackendName=local
Selected=true
"""
EXTENSIONS = {"calendar": "Calendar", "tasks": "Task List"}
STORED_AS = {"calendar": ("calendar", "calendar.ics"), "tasks": ("tasks", "tasks.ics")}


class Evolution:
    """On the session's own bus, which it starts; nothing of the service runs yet. The session must
    be left before this is forgotten."""

    def __init__(self, session):
        self.session = session
        self.bus = None
        self.running = {}
        self._client = None
        self._start_bus()

    def _start_bus(self):
        session = self.session
        session.make_folder("services")
        paths = {"bus": session.path("session-bus"), "services": session.path("services")}
        session.write(BUS % paths, "bus.conf")
        command = ["dbus-daemon", "--nofork", "--config-file=" + session.path("bus.conf")]
        self.bus = session.start(*command)
        eventually("there is a bus", lambda: listens(paths["bus"]))
        session.environment.update(ENVIRONMENT)
        session.environment["DBUS_SESSION_BUS_ADDRESS"] = "unix:path=" + paths["bus"]

    # The service.

    def make_activatable(self):
        """The bus starts the service for those who ask for it, from now on."""
        for name, path in PROGRAMS.items():
            text = "[D-BUS Service]\nName=%s\nExec=%s\n" % (name, path)
            self.session.write(text, "services", name + ".service")
        eventually("it can be started", lambda: FACTORY in self.client.call("activatable_names"))

    def run(self, *names):
        """Starts the service, or only those of its programs that are named."""
        for name in names or (REGISTRY, FACTORY):
            self.running[name] = self.session.start(PROGRAMS[name], *TO_STAY.get(name, []))
        for name in names or (REGISTRY, FACTORY):
            eventually("%s is there" % name, lambda each=name: self.client.call("pid", name=each), START)

    def signal(self, name, how):
        """To the program that has the name, however it was started."""
        os.kill(self.pid(name), how)

    def pid(self, name):
        return self.client.call("pid", name=name)

    def kill(self, name=FACTORY):
        pid = self.pid(name)
        os.kill(pid, signal.SIGKILL)
        eventually("%s is gone" % name, lambda: self.pid(name) != pid)

    # What it holds before it runs.

    def prepare(self, uid, title, kind="calendar", text=None):
        """A local calendar or task list as it lies in the user's folders; nothing may run yet that
        knows of it. `text` is an iCalendar object."""
        settings = SOURCE % {"title": title, "extension": EXTENSIONS[kind]}
        self.session.write(settings, ".config", "evolution", "sources", uid + ".source")
        if text is not None:
            folder, name = STORED_AS[kind]
            self.session.write(text, ".local", "share", "evolution", folder, uid, name)

    # What it holds while it runs.

    @property
    def client(self):
        if self._client is None:
            self._client = Client(self.session)
        return self._client

    def restart_client(self):
        """It has none of the service's state then."""
        self._client = None

    def create(self, uid, title, kind="calendar", **more):
        self.client.call("create", uid=uid, title=title, kind=kind, **more)

    def alter(self, uid, **properties):
        """Properties: title, enabled, selected."""
        self.client.call("alter", uid=uid, **properties)

    def remove(self, uid):
        self.client.call("remove", uid=uid)

    def add(self, uid, component):
        """Answers the identifier of the new item."""
        return self.client.call("add", uid=uid, text=component)

    def receive(self, uid, text):
        """An iCalendar object with its zones and overrides, as from a message or an import."""
        self.client.call("receive", uid=uid, text=text)

    def change(self, uid, component):
        self.client.call("change", uid=uid, text=component)

    def drop(self, uid, item, occurrence=None):
        self.client.call("drop", uid=uid, item=item, occurrence=occurrence)

    def components(self, uid):
        return self.client.call("components", uid=uid)

    def refresh(self, uid):
        self.client.call("refresh", uid=uid)


@contextlib.contextmanager
def calendar_service(run=(REGISTRY, FACTORY), lists=(), **texts):
    """A session and the service in it, which holds calendars by these identifiers; `lists` are the
    identifiers of task lists. `run` says which of its programs run."""
    with DesktopSession() as session:
        evolution = Evolution(session)
        for uid, text in texts.items():
            evolution.prepare(uid, uid.capitalize(), "tasks" if uid in lists else "calendar", text)
        if run:
            evolution.run(*run)
        yield session, evolution


class BusTraffic:
    """What passes on the session's bus from now on, whoever says it to whom."""

    def __init__(self, evolution):
        session = evolution.session
        self._running = session.start("dbus-monitor", "--session", "--profile")
        # Our own questions are heard: then everything is.
        asks = lambda: evolution.pid(REGISTRY) or True
        eventually("the bus is listened to", lambda: asks() and self.calls("GetConnectionUnixProcessID"))

    def _lines(self):
        return [line.split("\t") for line in self._running.output.split("\n")[:-1] if "\t" in line]

    def calls(self, member):
        """(sender, serial) of each call of a method, in their order."""
        return [(line[3], line[2]) for line in self._lines() if line[0] == "mc" and line[-1] == member]

    def in_order(self, *members):
        """Which of these calls and signals passed, in their order."""
        return [line[-1] for line in self._lines() if line[0] in ("mc", "sig") and line[-1] in members]

    def signals(self, member):
        return len([line for line in self._lines() if line[0] == "sig" and line[-1] == member])

    def is_answered(self, call):
        """Whether it was, with a value or an error."""
        sender, serial = call
        return any(line[0] in ("mr", "err") and sender in line and line[-1] == serial for line in self._lines())

    def to(self, name):
        """What was sent to whoever bears a name that begins so."""
        return [line for line in self._lines() if line[0] == "mc" and line[4].startswith(name)]

    @staticmethod
    def promptly(what, condition):
        """Waits for what is to be acted upon within milliseconds."""
        limit = time.monotonic() + START
        while not condition():
            if time.monotonic() > limit:
                raise AssertionError("waited in vain: " + what)
            time.sleep(0.002)


class Client:
    """A process of the session's user that does as it is told, one line a time."""

    def __init__(self, session):
        path = os.path.join(os.path.dirname(os.path.abspath(__file__)), "client.py")
        pipes = {"stdin": subprocess.PIPE, "stdout": subprocess.PIPE}
        self._process = session.start(session.within_reach(path), **pipes).process

    def call(self, action, **arguments):
        """Answers what the action answers; fails as it fails."""
        request = json.dumps({"do": action, "with": arguments})
        self._process.stdin.write(request.encode() + b"\n")
        self._process.stdin.flush()
        if not select.select([self._process.stdout], [], [], START)[0]:
            raise AssertionError("%s is not answered" % request[:200])
        answer = json.loads(self._process.stdout.readline() or '{"error": "the client ended"}')
        if "error" in answer:
            raise AssertionError("%s: %s" % (request[:200], answer["error"]))
        return answer["value"]
