"""What a program does to files and whom it connects to, as strace tells it."""

import os
import re
import subprocess
import tempfile
from pathlib import Path

# Calls that change a folder or a file by name or by descriptor, besides those that open.
CHANGING = """chmod chown creat fallocate fchmod fchmodat fchown fchownat fremovexattr fsetxattr
    ftruncate futimesat lchown link linkat lremovexattr lsetxattr mkdir mkdirat mknod mknodat
    removexattr rename renameat renameat2 rmdir setxattr symlink symlinkat truncate unlink unlinkat
    utime utimensat utimes""".split()
OPENING = "open openat openat2".split()
WRITING = re.compile(r"O_(WRONLY|RDWR|CREAT|TRUNC|APPEND|TMPFILE)")
TRACED = ",".join(OPENING + CHANGING + ["execve", "%network"])

# A process that is killed as it enters a call leaves question marks in place of the call's name: the
# kernel did nothing of what it wanted.
LINE = re.compile(r"^(?P<call>\w+|\?+)\((?P<arguments>.*)\)\s+=\s(?P<result>.*)$")
# A name, the folder that it starts from, or a descriptor with its path.
NAME = re.compile(r'"((?:[^"\\]|\\.)*)"')
FOLDER = re.compile(r"(?:AT_FDCWD|\d+)<((?:[^>\\]|\\.)*)>")


def unescaped(text):
    """A path as strace prints it, all bytes that are no ASCII as octal numbers."""
    return os.fsdecode(text.encode("latin-1").decode("unicode_escape").encode("latin-1"))


class Call:
    """One system call of one process."""

    def __init__(self, process, call, arguments, result):
        self.process = process
        self.call = call
        self.arguments = arguments
        self.result = result

    def __str__(self):
        return f"{self.call}({self.arguments}) = {self.result}"

    @property
    def is_refused(self):
        """By the limits that a reader process has given itself."""
        return self.result.startswith("-1 EPERM")

    @property
    def opens(self):
        return self.call in OPENING

    @property
    def changes(self):
        if self.opens:
            return bool(WRITING.search(NAME.sub("", self.arguments)))
        return self.call in CHANGING

    def paths(self):
        """All that the call names, absolute."""
        start, paths = "", []
        for match in re.finditer(f"{FOLDER.pattern}|{NAME.pattern}", self.arguments):
            if match.group(1) is not None:
                start = unescaped(match.group(1))
                if not NAME.search(self.arguments):
                    paths.append(start)
            else:
                paths.append(os.path.normpath(os.path.join(start, unescaped(match.group(2)))))
        return paths

    def connects(self):
        """To something that is not on this computer, or could be elsewhere."""
        if self.call in ("socket", "socketpair"):
            return not self.arguments.startswith("AF_UNIX")
        return re.search(r"sa_family=AF_(?!UNIX)", self.arguments) is not None


def traced(command, **options):
    """All calls of the command and of the processes that it starts, and what it returned."""
    with tempfile.TemporaryDirectory() as folder:
        process = subprocess.run(
            ["strace", "-ff", "-qq", "-y", "-s", "65536", "-e", f"trace={TRACED}",
             "-e", "signal=none", "-o", f"{folder}/trace", *command],
            stdin=subprocess.DEVNULL, stdout=subprocess.PIPE, stderr=subprocess.PIPE,
            timeout=600, **options)
        return read_calls(folder), process


def read_calls(folder):
    """The calls in the files that strace has written, a file for each process."""
    calls = []
    for file in sorted(Path(folder).glob("trace.*"), key=lambda file: int(file.suffix[1:])):
        for line in file.read_text(encoding="latin-1").splitlines():
            match = LINE.match(line)
            if match:
                calls.append(Call(file.suffix, *match.group("call", "arguments", "result")))
            elif not line.startswith("+++"):
                # A process that was killed leaves a call without an end.
                cut = re.match(r"^(\w+|\?+)\((.*)$", line)
                if cut is None:
                    raise ValueError(f"strace says what is not understood: {line}")
                calls.append(Call(file.suffix, cut.group(1), cut.group(2), "?"))
    return calls


def is_below(path, folders):
    return any(path == folder or path.startswith(f"{folder}/") for folder in map(str, folders))


def violations(calls, may_change=(), must_not_name=()):
    """The calls that change something outside of some folders, connect to anything that is not on
    this computer, or so much as name what is below some folders."""
    found = []
    for call in calls:
        paths = call.paths()
        harmless = call.is_refused or all(
            path == "/dev/null" or path.startswith(("/memfd:", "/proc/self/fd/"))
            or is_below(path, may_change) for path in paths)
        if call.changes and not (paths and harmless):
            found.append(call)
        elif call.connects() and not call.is_refused:
            found.append(call)
        elif any(is_below(path, must_not_name) for path in paths):
            found.append(call)
    return found
