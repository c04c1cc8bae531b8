"""Traces the system calls of quillmark-cli and of its reader processes: fonts, PDFs and folders are
only read, nothing is written but what was asked for, and nobody is connected to.

Usage: trace.py PROGRAM SAMPLES
PROGRAM is quillmark-cli, SAMPLES the program that writes sample fonts and documents. The exit code is
1 when something was done that must not be, and 77 when nothing can be traced here.
"""

import ctypes
import errno
import json
import os
import shutil
import subprocess
import sys
import tempfile
from pathlib import Path

from system_calls import traced, violations

NO_TRACE = 77


def can_filter_calls():
    """Whether reader processes can be kept from the calls that libraries make to write."""
    set_filter, mode = 22, 2  # prctl's PR_SET_SECCOMP and SECCOMP_MODE_FILTER
    libc = ctypes.CDLL(None, use_errno=True)
    # Asked for a filter at no address, a kernel that knows filters complains of the address.
    return libc.prctl(set_filter, mode, None, 0, 0) != 0 and ctypes.get_errno() == errno.EFAULT


class World:
    """A home with notes, fonts and documents, and a folder for what is asked for."""

    def __init__(self, folder, samples):
        self.folder = Path(folder).resolve()
        self.samples = self.folder / "samples"
        self.home = self.folder / "home"
        self.data = self.home / ".local/share/Quillmark"
        self.canary = self.folder / "canary"
        self.caches = self.folder / "caches"
        self.out = self.folder / "out"
        for path in (self.samples, self.data, self.canary, self.out):
            path.mkdir(parents=True)
        subprocess.run([samples, self.samples], check=True)
        # Names that only fonts of the system can show.
        shutil.copytree(self.samples / "Fonts", self.samples / "字体")
        (self.canary / "precious.pdf").write_text("precious")
        (self.data / "notes.json").write_text(json.dumps({"notes": {
            "Cedar-Regular": self.note(str(self.canary / "precious.pdf")),
            "Acme-Regular": self.note("../../../../../canary/precious.pdf"),
        }}))
        self.settings = self.folder / "fonts.conf"
        self.settings.write_text(
            '<?xml version="1.0"?><!DOCTYPE fontconfig SYSTEM "urn:fontconfig:fonts.dtd">'
            f"<fontconfig><dir>{self.samples}</dir><dir>/usr/share/fonts/truetype</dir>"
            f"<cachedir>{self.caches}</cachedir></fontconfig>")
        self.environment = {
            "PATH": "/usr/bin:/bin", "LC_ALL": "C.UTF-8", "TZ": "UTC",
            "HOME": str(self.home), "FONTCONFIG_FILE": str(self.settings),
            # Nothing can look for leaks while it is traced.
            "ASAN_OPTIONS": "detect_leaks=0",
        }

    @staticmethod
    def note(attachment):
        return {"boughtFrom": "A shop", "license": "web", "url": "https://example.org", "text": "",
                "updated": "2026-01-01T00:00:00Z", "attachment": attachment,
                "attachmentName": "receipt.pdf"}

    def state(self):
        """All that is there but what was asked for and fontconfig's caches."""
        return {str(path): (path.stat().st_mode, path.stat().st_mtime_ns, path.is_file() and
                            path.read_bytes())
                for path in sorted(self.folder.rglob("*"))
                if not path.is_relative_to(self.out) and not path.is_relative_to(self.caches)}


class Trace:
    def __init__(self, program, world):
        self.program = program
        self.world = world
        self.failures = 0
        self.calls = 0
        self.runs = 0

    def fail(self, title, what):
        self.failures += 1
        print(f"  FOUND: {title}: {what}")

    def run(self, *arguments, codes=(0,), may_change=(), reads=()):
        """Runs the program; it may change no more than some folders, and its reader processes have
        to have opened some files."""
        world, title = self.world, " ".join(map(str, arguments))
        before = world.state()
        calls, process = traced([self.program, *map(str, arguments)], cwd=world.folder,
                                env=world.environment)
        self.calls += len(calls)
        self.runs += 1
        if process.returncode not in codes:
            self.fail(title, f"exit code {process.returncode}: {process.stderr.decode()}")
        for call in violations(calls, may_change, [world.canary])[:5]:
            self.fail(title, call)
        first = calls[0].process
        opened = {path for call in calls if call.opens and call.process != first
                  for path in call.paths()}
        for path in reads:
            if str(path) not in opened:
                self.fail(title, f"{path} was not seen to be read by a process of its own")
        if world.state() != before:
            self.fail(title, "something has changed")
        return calls


def check_the_trace(world):
    """What must not be is seen when it is done; otherwise all that follows says nothing."""
    deeds = f"""
import os, socket
os.close(os.open({str(world.samples / "mine")!r}, os.O_WRONLY | os.O_CREAT))
os.chmod({str(world.samples / "mine")!r}, 0o600)
folder = os.open({str(world.samples)!r}, os.O_RDONLY)
os.rename("mine", "yours", src_dir_fd=folder, dst_dir_fd=folder)
if os.fork() == 0:
    os.unlink({str(world.samples / "yours")!r})
    os._exit(0)
os.wait()
open({str(world.canary / "precious.pdf")!r}).close()
for family in (socket.AF_INET, socket.AF_INET6):
    try:
        with socket.socket(family, socket.SOCK_DGRAM) as one:
            one.connect(("localhost", 9))
    except OSError:
        pass
"""
    calls, _ = traced([sys.executable, "-S", "-E", "-B", "-c", deeds], env=world.environment)
    seen = [call.call for call in violations(calls, [world.out], [world.canary])]
    wanted = ["openat", "chmod", "rename", "openat", "socket", "unlink"]
    missing = [call for call in wanted
               if not any(other.startswith(call) or (call == "chmod" and "chmod" in other)
                          for other in seen)]
    return f"the trace does not see: {missing} (but {seen})" if missing else None


def main(program, samples):
    if shutil.which("strace") is None or subprocess.run(
            ["strace", "-qq", "-o", "/dev/null", "true"], check=False).returncode != 0:
        print("trace: this system lets nothing be traced")
        return NO_TRACE
    if not can_filter_calls():
        print("trace: this system has no filters of system calls")
        return NO_TRACE
    with tempfile.TemporaryDirectory() as folder:
        world = World(folder, os.path.abspath(samples))
        trace = Trace(os.path.abspath(program), world)
        fonts, document = world.samples / "Fonts", world.samples / "document.pdf"
        cedar = fonts / "cedar.ttf"
        blind = check_the_trace(world)
        if blind:
            trace.fail("the trace", blind)

        trace.run("installed", reads=[cedar])
        trace.run("scan", fonts, world.folder / "gone", codes=(3,), reads=[cedar])
        trace.run("check", document, "--fonts", fonts, reads=[cedar, document])
        trace.run("check", "--fail-on", "unknown", document, codes=(0, 1),
                  reads=[document])
        trace.run("show", "DejaVuSans")
        trace.run("notes")
        trace.run("notes", "--format", "json")
        trace.run("explain")
        for suffix in ("json", "jsonl", "csv", "txt"):
            trace.run("scan", fonts, "-o", world.out / f"list.{suffix}",
                      *(["--format", "text"] if suffix == "txt" else []), may_change=[world.out],
                      reads=[cedar])
        trace.run("scan", fonts, "-o", world.out / "report.pdf", may_change=[world.out],
                  reads=[cedar])
        trace.run("check", document, "-o", world.out / "document.pdf", may_change=[world.out],
                  reads=[document])
        if world.caches.exists():
            trace.fail("fontconfig", "its caches were written though only reading was asked for")
        # To show what the report's own face cannot, fontconfig lists the fonts of the system, and
        # keeps that list in its own caches, as in every program that shows text.
        calls = trace.run("scan", world.samples / "字体", "-o", world.out / "other.pdf",
                          may_change=[world.out, world.caches])
        if not any("quillmark-scripts" in path for call in calls for path in call.paths()):
            trace.fail("scripts", "the module for other scripts was not used")
        print(f"trace: {trace.runs} runs of the command-line tool, {trace.calls} system calls, "
              f"{trace.failures} findings")
        return 1 if trace.failures else 0


if __name__ == "__main__":
    if len(sys.argv) != 3:
        sys.exit(__doc__)
    sys.exit(main(*sys.argv[1:]))
