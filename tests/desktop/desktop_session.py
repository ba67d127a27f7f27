"""What every headless desktop of the tests has in common: a scratch folder, an unprivileged user,
processes that are started together and never outlive the test."""

import glob
import os
import pwd
import shutil
import signal
import socket
import subprocess
import sys
import tempfile
import time
import unittest

# Where the build put the programs that are started.
BUILD = os.environ.get("ORVANE_BUILD", "build/debug")
# The programs under test may come from another build than the tests' own.
PROGRAMS = os.environ.get("ORVANE_PROGRAMS", BUILD)

# What a program looks for beside itself.
COMPANIONS = {"orvane": ["orvane-reader", "orvane-evolution.so", "orvane-settings"]}


NOON = 12


def zone_where_it_is_noon():
    """So that what comes within hours is today, and what comes in half a day is tomorrow, whatever
    the time is elsewhere."""
    return "Etc/GMT%+d" % (time.gmtime().tm_hour - NOON)


def own_display():
    """The name of an X display that is this process's alone. A server that looks for a free number
    by itself takes no lock on it, so that a Wayland compositor that starts beside it may give the
    same number to its Xwayland; those begin at the low ones. A process has a second one for a
    second session."""
    processes = 20000
    number = 100 + os.getpid() % processes
    while os.path.exists("/tmp/.X11-unix/X%d" % number):
        number += processes
    return ":%d" % number


def eventually(what, condition, seconds=20, pause=0.05):
    """Waits until the condition answers something true, which is returned. It is asked with that pause
    in between."""
    limit = time.monotonic() + seconds
    while True:
        answer = condition()
        if answer:
            return answer
        if time.monotonic() > limit:
            raise AssertionError("waited %s s in vain: %s" % (seconds, what))
        time.sleep(pause)


def listens(path):
    """Whether somebody answers at this socket; it is there a moment before they do."""
    with socket.socket(socket.AF_UNIX) as trying:
        return trying.connect_ex(path) == 0


def happens(condition, seconds=3):
    """Whether the condition is met within that time."""
    limit = time.monotonic() + seconds
    while not condition():
        if time.monotonic() > limit:
            return False
        time.sleep(0.05)
    return True


class Running:
    """A process of the session, with what it wrote so far."""

    def __init__(self, name, process, output_path):
        self.name = name
        self.process = process
        self._output_path = output_path

    @property
    def output(self):
        with open(self._output_path, encoding="utf-8", errors="replace") as file:
            return file.read()

    @property
    def lines(self):
        return self.output.splitlines()

    def is_running(self):
        return self.process.poll() is None

    def seconds_at_work(self):
        """The processor's time that all its threads have had so far."""
        with open("/proc/%d/stat" % self.process.pid, encoding="ascii") as file:
            fields = file.read().rpartition(")")[2].split()
        return (int(fields[11]) + int(fields[12])) / os.sysconf("SC_CLK_TCK")

    def end(self, how=signal.SIGTERM, seconds=20):
        """Asks it to end, and answers its exit status (negative: the signal that ended it)."""
        if self.is_running():
            self.process.send_signal(how)
        return self.process.wait(timeout=seconds)


class DesktopSession:
    """Use as a context manager: on the way out, everything that was started is ended."""

    def __init__(self):
        self.folder = tempfile.mkdtemp(prefix="orvane-desktop-")
        self._running = []
        self._count = 0
        # Whoever ends the test by force ends with it what the test started, as far as the system
        # sees to that.
        self._as_user = ["setpriv", "--pdeathsig", "KILL"]
        self._owner = None
        if os.geteuid() == 0:
            nobody = pwd.getpwnam("nobody")
            self._owner = (nobody.pw_uid, nobody.pw_gid)
            os.chown(self.folder, *self._owner)
            # Display servers refuse to run as root, and so should the program be tried.
            self._as_user += ["--reuid", str(nobody.pw_uid), "--regid", str(nobody.pw_gid)]
            self._as_user += ["--clear-groups"]
        self.environment = self._plain_environment()
        # Asked to end, the test goes the way out of its `with`, too.
        signal.signal(signal.SIGTERM, lambda *_: sys.exit(128 + signal.SIGTERM))

    def _plain_environment(self):
        kept = {key: os.environ[key] for key in ("PATH", "LANG") if key in os.environ}
        kept.update({key: value for key, value in os.environ.items() if key.endswith("SAN_OPTIONS")})
        kept.update({"HOME": self.folder, "XDG_RUNTIME_DIR": self.folder, "TZ": zone_where_it_is_noon()})
        return kept

    def __enter__(self):
        return self

    def __exit__(self, kind, error, trace):
        if error is not None:
            self.tell()
        for running in reversed(self._running):
            self._kill(running)
        shutil.rmtree(self.folder, ignore_errors=True)

    def tell(self):
        for running in self._running:
            print("---- %s, exit status %s" % (running.name, running.process.poll()))
            print(running.output[-4000:])

    @staticmethod
    def _kill(running):
        # Each leads a process group of its own, so its children go with it.
        for how, seconds in ((signal.SIGTERM, 5), (signal.SIGKILL, 5)):
            try:
                os.killpg(running.process.pid, how)
            except ProcessLookupError:
                pass
            try:
                running.process.wait(timeout=seconds)
                break
            except subprocess.TimeoutExpired:
                continue
        try:
            os.killpg(running.process.pid, signal.SIGKILL)
        except ProcessLookupError:
            pass
        for pipe in (running.process.stdin, running.process.stdout):
            if pipe is not None:
                pipe.close()

    def path(self, *parts):
        return os.path.join(self.folder, *parts)

    def write(self, text, *parts):
        """A file of the user's, at once whole under its name."""
        self.make_folder(*parts[:-1])
        unfinished = self.path("unfinished")
        with open(unfinished, "w", encoding="utf-8", newline="") as file:
            file.write(text)
        self._give(unfinished)
        os.rename(unfinished, self.path(*parts))

    def make_folder(self, *parts):
        folder = self.folder
        for part in parts:
            folder = os.path.join(folder, part)
            if not os.path.isdir(folder):
                os.mkdir(folder)
                self._give(folder)
        return folder

    def _give(self, path):
        if self._owner:
            os.chown(path, *self._owner)

    def processes(self):
        """The command lines of all processes that have this session's folder as their home."""
        return [command for _, command in self._processes()]

    def processes_called(self, name):
        """The numbers of those of them that run this program."""
        called = lambda command: os.path.basename(command.split()[0]) == name
        return [number for number, command in self._processes() if command and called(command)]

    def _processes(self):
        home = ("HOME=%s" % self.folder).encode()
        found = []
        for entry in os.listdir("/proc"):
            try:
                with open("/proc/%s/environ" % entry, "rb") as file:
                    if not entry.isdigit() or home not in file.read().split(b"\0"):
                        continue
                with open("/proc/%s/cmdline" % entry, "rb") as file:
                    command = file.read().replace(b"\0", b" ").decode(errors="replace").strip()
                found.append((int(entry), command))
            except OSError:
                continue
        return found

    def of_each_thread(self, name):
        """What that file of /proc says of each thread of each of them."""
        told = []
        for number, _ in self._processes():
            for path in glob.glob("/proc/%d/task/*/%s" % (number, name)):
                try:
                    with open(path, encoding="ascii") as file:
                        told.append(file.read())
                except (FileNotFoundError, ProcessLookupError):
                    continue  # It ended just now.
        return told

    def start(self, *command, environment=None, stdin=subprocess.DEVNULL, stdout=None, around=list):
        """Starts a program of the system, or of the build when it is named by `program()`. What it
        writes is kept, unless its standard output goes elsewhere. `around` makes the command one
        that runs it elsewhere, before it becomes the user's."""
        command = (self.within_reach(command[0]),) + command[1:]
        self._count += 1
        output_path = self.path("output-%d" % self._count)
        with open(output_path, "wb") as output:
            process = subprocess.Popen(
                around(self._as_user + list(command)),
                stdin=stdin,
                stdout=stdout or output,
                stderr=output,
                env={**self.environment, **(environment or {})},
                cwd=self.folder,
                start_new_session=True,
            )
        running = Running(os.path.basename(command[0]), process, output_path)
        self._running.append(running)
        return running

    def within_reach(self, path):
        """The program itself, or where only root can get at it, a copy for the unprivileged user."""
        if not self._owner or not os.path.isabs(path) or self._can_run(path):
            return path
        folder = self.path("programs")
        os.makedirs(folder, exist_ok=True)
        name = os.path.basename(path)
        for each in [name] + COMPANIONS.get(name, []):
            original, copy = os.path.join(os.path.dirname(path), each), os.path.join(folder, each)
            if os.path.exists(original) and not os.path.exists(copy):
                shutil.copyfile(original, copy)
                os.chmod(copy, 0o755)
        return os.path.join(folder, name)

    def _can_run(self, path):
        return subprocess.run(self._as_user + ["test", "-x", path], check=False).returncode == 0

    def ask(self, *command):
        """Runs a command to its end and answers what it wrote."""
        command = (self.within_reach(command[0]),) + command[1:]
        done = subprocess.run(
            self._as_user + list(command),
            stdin=subprocess.DEVNULL,
            capture_output=True,
            env=self.environment,
            cwd=self.folder,
            timeout=30,
            check=False,
        )
        if done.returncode != 0:
            raise AssertionError("%s: %s%s" % (" ".join(command), done.stdout, done.stderr))
        return done.stdout


def program(*parts):
    """A program that the build made; those of the tests lie in a folder `tests`."""
    path = os.path.join(os.path.abspath(BUILD if parts[0] == "tests" else PROGRAMS), *parts)
    if not os.access(path, os.X_OK):
        raise AssertionError("%s was not built" % path)
    return path


def is_sanitized(*parts):
    """Whether such a program was built with AddressSanitizer, of which it then has a function."""
    with open(program(*parts), "rb") as file:
        return b"__asan_init" in file.read()


def run_tests():
    """Runs the tests that the command line names; naming none is a failure, too."""
    done = unittest.main(module="__main__", exit=False).result
    sys.exit(0 if done.wasSuccessful() and done.testsRun > 0 else 1)
