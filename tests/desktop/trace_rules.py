"""What the system calls of a program, as strace -ff -y writes them, say about it: whom it speaks to
and where it writes. An attempt counts, whether it succeeded or not."""

import os
import re

CALLS = (
    "socket,bind,execve,open,openat,openat2,creat,mkdir,mkdirat,rmdir,unlink,unlinkat,rename,renameat,"
    "renameat2,link,linkat,symlink,symlinkat,mknod,mknodat,truncate,chmod,fchmodat,chown,lchown,"
    "fchownat,utime,utimes,futimesat,utimensat,setxattr,lsetxattr"
)
OPENING = {"open", "openat", "openat2"}
WRITING = re.compile(r"O_(WRONLY|RDWR|CREAT|TRUNC|APPEND|TMPFILE)")
# These name what they only read before what they make.
MAKING_THE_LAST = {"link", "linkat", "symlink", "symlinkat"}
CALL = re.compile(r"^(\w+)\((.*)$")
PATH = re.compile(r'(?:(?:AT_FDCWD|\d+)<([^>]*)>, )?"((?:[^"\\]|\\.)*)"')


class Rules:
    """`folders` are those that the program may write to; it may make the folders above them, too."""

    def __init__(self, folders):
        self.folders = [os.path.normpath(folder) for folder in folders]

    def violations(self, lines):
        return [line for line in lines if self._is_violation(line)]

    def _is_violation(self, line):
        call = CALL.match(line)
        if not call:
            return False
        name, arguments = call.groups()
        if name == "socket":
            return not arguments.startswith(("AF_UNIX", "AF_LOCAL"))
        return any(not self._may_write(name, path) for path in written(name, arguments))

    def _may_write(self, name, path):
        if path == "/dev/null":
            return True
        if any(path == folder or path.startswith(folder + "/") for folder in self.folders):
            return True
        above = any(folder.startswith(path + "/") for folder in self.folders)
        return above and name in ("mkdir", "mkdirat")


def written(name, arguments):
    """The paths that a call would change."""
    if name in ("execve", "socket", "connect"):
        return []
    if name == "bind":
        return re.findall(r'sun_path="([^"]*)"', arguments)
    if name in OPENING and not WRITING.search(arguments):
        return []
    paths = [os.path.normpath(os.path.join(at, path)) for at, path in PATH.findall(arguments)]
    return paths[-1:] if name in MAKING_THE_LAST else paths
