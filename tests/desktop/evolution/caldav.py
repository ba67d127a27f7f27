"""Servers for calendars on the loopback interface: one that keeps them, and some that fail."""

import base64
import socket
import threading
import urllib.error
import urllib.request

from desktop_session import eventually

USER = "ana"
PASSWORD = "correct horse"

CONFIGURATION = """[server]
hosts = 127.0.0.1:%(port)d
[auth]
type = htpasswd
htpasswd_filename = %(users)s
htpasswd_encryption = plain
delay = 0
[rights]
type = owner_only
[storage]
filesystem_folder = %(storage)s
[web]
type = none
"""

COLLECTION = """<?xml version="1.0" encoding="UTF-8"?>
<C:mkcalendar xmlns="DAV:" xmlns:C="urn:ietf:params:xml:ns:caldav"><set><prop>
<displayname>%(title)s</displayname>
<C:supported-calendar-component-set><C:comp name="%(component)s"/></C:supported-calendar-component-set>
</prop></set></C:mkcalendar>
"""
COMPONENTS = {"calendar": "VEVENT", "tasks": "VTODO"}


def free_port():
    with socket.socket() as listener:
        listener.bind(("127.0.0.1", 0))
        return listener.getsockname()[1]


class CalendarServer:
    """Radicale, with the calendars of one user."""

    def __init__(self, session):
        self.port = free_port()
        session.write("%s:%s\n" % (USER, PASSWORD), "server", "users")
        places = {"port": self.port, "users": session.path("server", "users")}
        places["storage"] = session.path("server", "storage")
        session.write(CONFIGURATION % places, "server", "config")
        command = ["/usr/bin/python3", "-B", "-m", "radicale", "--config", session.path("server", "config")]
        self.running = session.start(*command)
        eventually("the server answers", self._answers, 60)

    def _answers(self):
        assert self.running.is_running(), self.running.output
        try:
            self._ask("PROPFIND", "")
            return True
        except urllib.error.HTTPError:
            raise
        except OSError:
            return False

    def _ask(self, method, path, text=None, kind="text/calendar; charset=utf-8"):
        key = base64.b64encode(("%s:%s" % (USER, PASSWORD)).encode()).decode()
        request = urllib.request.Request(
            "http://127.0.0.1:%d/%s/%s" % (self.port, USER, path),
            data=text.encode() if text is not None else None,
            method=method,
            headers={"Authorization": "Basic " + key, "Content-Type": kind},
        )
        opener = urllib.request.build_opener(urllib.request.ProxyHandler({}))
        with opener.open(request, timeout=30) as answer:
            return answer.read().decode()

    def make(self, name, title, kind="calendar"):
        text = COLLECTION % {"title": title, "component": COMPONENTS[kind]}
        self._ask("MKCALENDAR", name + "/", text, "application/xml")

    def put(self, name, item, text):
        self._ask("PUT", "%s/%s.ics" % (name, item), text)

    def delete(self, name, item):
        self._ask("DELETE", "%s/%s.ics" % (name, item))


class SilentServer:
    """Accepts every connection and never says a word. Use as a context manager."""

    def __init__(self):
        self._listener = socket.create_server(("127.0.0.1", 0))
        self.port = self._listener.getsockname()[1]
        self.connections = []

    def __enter__(self):
        threading.Thread(target=self._accept, daemon=True).start()
        return self

    def _accept(self):
        while True:
            try:
                self.connections.append(self._listener.accept()[0])
            except OSError:
                return

    def __exit__(self, *_):
        # Wakes the thread that waits in accept().
        self._listener.shutdown(socket.SHUT_RDWR)
        self._listener.close()
        for connection in self.connections:
            connection.close()


def source_keys(port, name, user=USER):
    """What an account's calendar needs beside its title, for Evolution.create()."""
    return [
        ["Authentication", "Host", "127.0.0.1"],
        ["Authentication", "Port", str(port)],
        ["Authentication", "User", user],
        ["Authentication", "Method", "plain/password"],
        ["Authentication", "RememberPassword", "false"],
        ["Security", "Method", "none"],
        ["WebDAV Backend", "ResourcePath", "/%s/%s/" % (USER, name)],
        ["Offline", "StaySynchronized", "true"],
        ["Refresh", "Enabled", "false"],
    ]
