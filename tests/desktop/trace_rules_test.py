"""What the rules for traces of system calls find, and what they let pass."""

import unittest

from desktop_session import run_tests
from trace_rules import Rules

RULES = Rules(["/home/a/.config/orvane", "/home/a/.local/state/orvane"])

FINE = """
socket(AF_UNIX, SOCK_STREAM|SOCK_CLOEXEC, 0) = 11<socket:[1]>
connect(11<socket:[1]>, {sa_family=AF_UNIX, sun_path="/run/bus"}, 110) = 0
execve("/usr/bin/orvane", ["orvane"], 0x7ffe /* 20 vars */) = 0
openat(AT_FDCWD</home/a>, "/etc/localtime", O_RDONLY|O_CLOEXEC) = 3</etc/localtime>
openat(AT_FDCWD</home/a>, "/dev/null", O_WRONLY) = 2</dev/null>
openat(AT_FDCWD</home/a>, ".config/orvane/defaults.json", O_WRONLY|O_CREAT, 0600) = 3</home/a/.config/orvane/defaults.json>
openat(7</home/a/.config/orvane>, "new", O_WRONLY|O_CREAT|O_EXCL, 0600) = 3</home/a/.config/orvane/new>
rename("/home/a/.config/orvane/new", "/home/a/.config/orvane/defaults.json") = 0
mkdir("/home/a/.local", 0700) = -1 EEXIST (File exists)
mkdir("/home/a/.local/state/orvane", 0700) = 0
unlink("/home/a/.local/state/orvane/desktop-icons") = 0
bind(4<socket:[2]>, {sa_family=AF_UNIX, sun_path=@"abstract"}, 12) = 0
link("/etc/passwd", "/home/a/.config/orvane/copy") = 0
--- SIGCHLD {si_signo=SIGCHLD, si_code=CLD_EXITED} ---
+++ exited with 0 +++
""".strip().splitlines()

WRONG = """
socket(AF_INET, SOCK_DGRAM|SOCK_CLOEXEC, IPPROTO_IP) = 11<socket:[1]>
socket(AF_INET6, SOCK_STREAM, IPPROTO_TCP) = -1 EAFNOSUPPORT (Address family not supported by protocol)
socket(AF_NETLINK, SOCK_RAW|SOCK_CLOEXEC, NETLINK_ROUTE) = 11<socket:[1]>
openat(AT_FDCWD</home/a>, ".cache/file", O_WRONLY|O_CREAT, 0600) = 3</home/a/.cache/file>
openat(AT_FDCWD</home/a>, "/etc/passwd", O_RDWR) = -1 EACCES (Permission denied)
open("/home/a/.config/orvane/../other", O_WRONLY|O_CREAT, 0600) = 3</home/a/.config/other>
openat(7</home/a/.config/orvane-other>, "new", O_WRONLY|O_CREAT, 0600) = 3</home/a/.config/orvane-other/new>
openat(7</tmp>, ".", O_RDWR|O_TMPFILE, 0600) = 3</tmp/#1 (deleted)>
openat(AT_FDCWD</>, "/dev/shm/segment", O_RDWR|O_CREAT, 0600) = 3</dev/shm/segment>
creat("/home/a/file", 0600) = 3</home/a/file>
rename("/home/a/.config/orvane/new", "/home/a/new") = 0
renameat2(7</home/a>, "x", 8</home/a/.config/orvane>, "x", RENAME_NOREPLACE) = 0
mkdir("/home/a/.cache", 0700) = 0
unlink("/home/a/.config/other") = 0
truncate("/home/a/file", 0) = 0
symlink("/home/a/.config/orvane/x", "/home/a/x") = 0
linkat(AT_FDCWD</home/a>, ".config/orvane/x", AT_FDCWD</home/a>, "y", 0) = 0
rmdir("/home/a/.local") = 0
bind(4<socket:[2]>, {sa_family=AF_UNIX, sun_path="/tmp/socket"}, 110) = 0
chmod("/home/a/\\"quoted\\"", 0777) = 0
""".strip().splitlines()


class TraceRules(unittest.TestCase):
    def let_pass_what_is_the_programs_own(self):
        self.assertEqual(RULES.violations(FINE), [])

    def find_everything_else(self):
        self.assertEqual(RULES.violations(WRONG), WRONG)


if __name__ == "__main__":
    run_tests()
