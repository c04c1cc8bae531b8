"""Traces the system calls of the window and of its reader processes while it is used: notes are typed,
a receipt is attached, a folder is scanned, a document is checked, and a list is exported. Nothing is
changed but the application's own folders, what was asked for, and fontconfig's caches; nobody outside
of this computer is connected to.

Usage: with-desktop.sh /usr/bin/python3 trace_window.py PROGRAM DRAG_SOURCE
The exit code is 1 when something was done that must not be, and 77 when nothing can be traced here.
"""

import contextlib
import os
import shutil
import sys
from pathlib import Path

sys.path.insert(0, str(Path(__file__).resolve().parent.parent / "desktop"))

import flows_files  # noqa: E402
import flows_list  # noqa: E402
from desktop import App, wait_for  # noqa: E402
from system_calls import TRACED, read_calls, violations  # noqa: E402
from window import Check  # noqa: E402
from world import World  # noqa: E402

FLOWS = [
    flows_list.the_first_start_lists_the_installed_fonts_and_writes_nothing,
    flows_list.notes_are_saved_as_they_are_typed_and_never_mixed,
    flows_list.receipts_are_attached_replaced_opened_and_removed,
    flows_files.dropped_documents_are_checked_whatever_the_case_of_their_suffix,
    flows_files.a_csv_is_written_with_the_notes_and_revealed,
]


class TracedWorld(World):
    """Where the application is started with strace, as its child would be without."""

    def __init__(self, program):
        super().__init__(program)
        self.traces = self.runtime / "traces"
        self.traces.mkdir()
        os.environ["ASAN_OPTIONS"] = "detect_leaks=0"  # nothing can look for them meanwhile

    def start(self, *arguments, env=None, ready=True):
        return App("strace", "-D", "-ff", "-q", "-y", "-s", "65536", "-e", f"trace={TRACED}", "-e",
                   "signal=none", "-o", self.traces / "trace", self.program, *arguments, env=env,
                   ready=ready)

    def calls(self):
        """After all processes have ended, and strace with them."""
        wait_for("the end of the traces", lambda: not self.is_traced())
        return read_calls(self.traces)

    def is_traced(self):
        for arguments in Path("/proc").glob("[0-9]*/cmdline"):
            with contextlib.suppress(OSError):
                if os.fsencode(self.traces) in arguments.read_bytes():
                    return True
        return False

    def is_ours(self, call):
        """Whether it makes a folder around the application's own, or one that is there; or is about
        the lock and the socket by which a second start finds the first one, the file in which Qt's
        panels for files keep their size, or the export that is asked for."""
        makes_way = call.call == "mkdir" and (call.result.startswith("-1 EEXIST") or any(
            path in map(str, own.parents) for path in call.paths()
            for own in (self.data, self.settings)))
        settings = self.settings.parent.parent
        makes_nameless = call.paths() == [str(settings)] and "O_TMPFILE" in call.arguments
        return makes_way or makes_nameless or all(
            path.startswith((f"{self.runtime}/quillmark-", f"{settings}/QtProject.conf",
                             f"{settings}/#", "/proc/self/fd/",
                             f"{self.outside}/audit.csv", f"{self.outside}/.quillmark-"))
            for path in call.paths())


def main(program, drag_source):
    if shutil.which("strace") is None or os.system("strace -qq -o /dev/null true") != 0:
        print("trace: this system lets nothing be traced")
        return 77
    world = TracedWorld(program)
    used = Check(world, drag_source)
    used.start()
    for flow in FLOWS:
        used.begin()
        flow(used)
    assert used.app.quit() == 0, "the exit code"
    calls = world.calls()
    found = [call for call in violations(calls, may_change=[
        world.data,
        world.settings.parent,
        world.fonts / "cache",  # fontconfig's
        world.opened_file,  # what stands for the program that a receipt is opened with writes it
    ]) if not world.is_ours(call)]
    for call in found[:40]:
        print(f"  FOUND: {call}")
    # Otherwise the trace would have missed what it is about.
    opened = {path for call in calls if call.opens for path in call.paths()}
    for path in [world.data / "notes.json", *world.fonts.glob("*.ttf")]:
        if str(path) not in opened:
            found.append(path)
            print(f"  FOUND: {path} was not seen to be opened")
    print(f"trace of the window: {len({call.process for call in calls})} processes and threads, "
          f"{len(calls)} system calls, {len(found)} findings")
    return 1 if found else 0


if __name__ == "__main__":
    if len(sys.argv) != 3:
        sys.exit(__doc__)
    sys.exit(main(*sys.argv[1:]))
