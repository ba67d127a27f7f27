"""A headless KWin that a test can look at, click on, and rearrange the outputs of."""

import json
import os
import shutil
import signal
import subprocess

import gi

gi.require_version("Gio", "2.0")
from gi.repository import Gio, GLib  # noqa: E402

from desktop_session import COMPANIONS, DesktopSession, eventually, listens, program
from picture import Picture

DISPLAY = "kwin-0"
BACKGROUND = (0x88, 0x44, 0x22)
WINDOW = (0x22, 0x88, 0x44)

# Nothing moves on its own, and the lock screen stays away.
SETTINGS = {
    "kdeglobals": "[KDE]\nAnimationDurationFactor=0\n",
    "kscreenlockerrc": "[Daemon]\nAutolock=false\nLockOnResume=false\n",
    "kwinrc": "[Plugins]\nblurEnabled=%s\nslidingpopupsEnabled=false\n",
}

# The test itself may be another user than the session's. Nothing is started on demand.
BUS = """<busconfig>
  <type>session</type>
  <listen>unix:path=%s</listen>
  <policy context="default">
    <allow user="*"/>
    <allow own="*"/>
    <allow send_destination="*"/>
    <allow receive_sender="*"/>
  </policy>
</busconfig>
"""

TELL_WINDOWS = """
var told = workspace.clientList().map(function (window) {
  var it = {};
  ["caption", "resourceClass", "skipTaskbar", "skipPager", "skipSwitcher", "desktopWindow",
   "active"].forEach(function (name) { it[name] = window[name]; });
  return it;
});
print("MARK" + JSON.stringify(told));
"""
QUIET = {"WAYLAND_DEBUG": ""}


def hexadecimal(color):
    return "%02x%02x%02x" % color


class KWinSession(DesktopSession):
    """A message bus of its own and KWin on it, painting with OpenGL in software. Outputs of the
    given size, in pixels, stand side by side: Virtual-0, Virtual-1 and so on."""

    def __init__(self, outputs=1, scale=1, size=(1280, 720), blur=False, locks=False):
        super().__init__()
        self._arguments = ["--virtual", "--socket", DISPLAY]
        if not locks:
            self._arguments.append("--no-lockscreen")
        self._arguments += ["--width", str(size[0]), "--height", str(size[1])]
        self._arguments += ["--scale", str(scale), "--output-count", str(outputs)]
        self._blur = blur
        self._asked = 0
        self.kwin = None
        self.bus = None

    def __enter__(self):
        try:
            self._begin()
            return self
        except BaseException as error:
            self.__exit__(type(error), error, None)
            raise

    def __exit__(self, kind, error, trace):
        if self.bus:
            self.bus.close_sync(None)
        super().__exit__(kind, error, trace)

    def _begin(self):
        for name, text in SETTINGS.items():
            self.write(text % str(self._blur).lower() if "%s" in text else text, ".config", name)
        self._start_bus()
        self.environment["WAYLAND_DISPLAY"] = DISPLAY
        self.environment["QT_QPA_PLATFORM"] = "wayland"
        self.start_kwin()
        self.plug_in_input()

    def _start_bus(self):
        address = "unix:path=%s" % self.path("bus")
        self.write(BUS % self.path("bus"), "bus.conf")
        self.start("dbus-daemon", "--nofork", "--config-file=%s" % self.path("bus.conf"))
        eventually("there is a message bus", lambda: listens(self.path("bus")))
        self.environment["DBUS_SESSION_BUS_ADDRESS"] = address
        flags = Gio.DBusConnectionFlags
        self.bus = Gio.DBusConnection.new_for_address_sync(
            address, flags.AUTHENTICATION_CLIENT | flags.MESSAGE_BUS_CONNECTION, None, None
        )

    def start_kwin(self):
        # The installed one has file capabilities, which many containers do not let it have.
        copy = self.path("kwin_wayland")
        if not os.path.exists(copy):
            shutil.copyfile(shutil.which("kwin_wayland"), copy)
            os.chmod(copy, 0o755)
        environment = {
            "KWIN_COMPOSE": "O2",
            "LIBGL_ALWAYS_SOFTWARE": "1",
            "KWIN_WAYLAND_NO_PERMISSION_CHECKS": "1",
            "KWIN_SCREENSHOT_NO_PERMISSION_CHECKS": "1",
            "QT_LOGGING_RULES": "js.info=true;js.debug=true;kwin_scripting.debug=true",
            "QT_QPA_PLATFORM": "",
            "WAYLAND_DISPLAY": "",
        }
        self.kwin = self.start(copy, *self._arguments, environment=environment)
        eventually("KWin answers", lambda: self.has_name("org.kde.KWin"), 40)
        self.picture()

    def kill_kwin(self):
        """What starts anew later is found under the same name."""
        self.kwin.end(signal.SIGKILL)
        eventually("its name is given up", lambda: not self.has_name("org.kde.KWin"))

    def slim(self, path):
        """The program without what debuggers want. KWin reads the whole of a client's program before
        it answers it."""
        path = self.within_reach(path)
        folder, name = self.path("slim"), os.path.basename(path)
        os.makedirs(folder, exist_ok=True)
        for each in COMPANIONS[name]:
            os.symlink(os.path.join(os.path.dirname(path), each), os.path.join(folder, each))
        slim = os.path.join(folder, name)
        subprocess.run(["strip", "-g", "-o", slim, path], check=True)
        os.chmod(slim, 0o755)
        return slim

    # ---- The bus

    def has_name(self, name):
        (answer,) = self.call("org.freedesktop.DBus", "/", "org.freedesktop.DBus", "NameHasOwner", "(s)", name)
        return answer

    def call(self, name, path, interface, method, signature="()", *arguments):
        values = GLib.Variant(signature, arguments)
        answer = self.bus.call_sync(name, path, interface, method, values, None, 0, 20000, None)
        return answer.unpack()

    # ---- The screen

    def picture(self, output="Virtual-0"):
        """All pixels of an output, as they are scanned out. While outputs change there is none."""
        return eventually("KWin takes a picture", lambda: self._picture(output), 40)

    def _picture(self, output):
        reading, writing = os.pipe()
        with os.fdopen(reading, "rb") as pixels:
            try:
                told = self._capture(output, writing)
            except GLib.Error:
                return None
            content = pixels.read(told["height"] * told["stride"])
        return Picture.from_bgrx(told["width"], told["height"], told["stride"], content)

    def _capture(self, output, pipe):
        options = {"native-resolution": GLib.Variant("b", True)}
        descriptors = Gio.UnixFDList.new_from_array([pipe])  # which closes it in the end
        values = GLib.Variant("(sa{sv}h)", (output, options, 0))
        answer, _ = self.bus.call_with_unix_fd_list_sync(
            "org.kde.KWin",
            "/org/kde/KWin/ScreenShot2",
            "org.kde.KWin.ScreenShot2",
            "CaptureScreen",
            values,
            None,
            0,
            20000,
            descriptors,
            None,
        )
        return answer.unpack()[0]

    def keep(self, name):
        """A screenshot in the folder that ORVANE_PICTURES names, where there is one."""
        folder = os.environ.get("ORVANE_PICTURES")
        if folder:
            self.picture().save_png(os.path.join(folder, name + ".png"))

    def configure(self, *changes):
        """As kscreen-doctor takes them: "output.Virtual-0.scale.1.5"."""
        self.ask("kscreen-doctor", *changes)

    # ---- Windows

    def windows(self):
        """What KWin's scripts can tell of each window that it manages."""
        self._asked += 1
        mark = "asked %d" % self._asked
        path = "asked-%d.js" % self._asked
        self.write(TELL_WINDOWS.replace("MARK", mark), path)
        scripting = ("org.kde.KWin", "/Scripting", "org.kde.kwin.Scripting")
        (number,) = self.call(*scripting, "loadScript", "(s)", self.path(path))
        self.call("org.kde.KWin", "/%d" % number, "org.kde.kwin.Script", "run")
        told = eventually("KWin tells its windows", lambda: self._line_with(mark))
        return json.loads(told.partition(mark)[2])

    def _line_with(self, mark):
        return next((line for line in self.kwin.lines if mark in line), None)

    def show_desktop(self, shown=True):
        self.call("org.kde.KWin", "/KWin", "org.kde.KWin", "showDesktop", "(b)", shown)

    # ---- Neighbours

    def background(self, output="Virtual-0", color=BACKGROUND):
        return self.neighbour("background", output, color)

    def neighbour(self, kind, name, color):
        client = program("tests", "sway_client")
        neighbour = self.start(client, kind, name, hexadecimal(color), environment=QUIET)
        eventually("the %s is ready" % kind, lambda: "ready" in neighbour.lines)
        return neighbour

    # ---- The user, in points of the layout of all outputs

    def plug_in_input(self):
        hold = self.start(program("tests", "kwin_input"), "hold")
        eventually("there are pointer and keyboard", lambda: "ready" in hold.lines)

    def point(self, x, y):
        self.ask(program("tests", "kwin_input"), "move", str(x), str(y))

    def click_at(self, x, y, *button):
        self.ask(program("tests", "kwin_input"), "click", str(x), str(y), *button)

    def press(self, code):
        self.ask(program("tests", "kwin_input"), "key", str(code))
