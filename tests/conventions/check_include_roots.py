#!/usr/bin/env python3
"""Proves that a folder of core/ or app/ can include the folders below it and no other.

usage: check_include_roots.py BUILD-FOLDER [--app]

--app is for a build that has the folders of app/ in it.

Takes the compiler's command line of one source of each folder, as the build wrote it down, puts a
source with a single include in its place, and compiles that. An allowed include has to succeed; a
forbidden one has to fail because the compiler does not find the header, and for no other reason.
"""

import json
import os
import shlex
import subprocess
import sys
import tempfile
from concurrent.futures import ThreadPoolExecutor
from pathlib import Path

import layout

# One header of each folder, and one of each place that core/ knows nothing of.
HEADERS = {
    "text": "text/Trim.h",
    "files": "files/DurableFile.h",
    "fontfile": "fontfile/SFNT.h",
    "assessment": "assessment/Assessment.h",
    "library": "library/FontLibrary.h",
    "pdf": "pdf/PDFFontScanner.h",
    "listing": "listing/RowFilter.h",
    "coding": "coding/JsonWriter.h",
    "notes": "notes/NotesBook.h",
    "export": "export/AuditExport.h",
    "cli": "cli/Options.h",
    "reader": "reader/Readers.h",
    "tests": "support/FontBytes.h",
    "model": "model/AppModel.h",
    "update": "update/Appcast.h",
    "ui": "ui/VerdictLook.h",
    "Qt": "QtCore/QString",
    "the project's root": "core/text/Trim.h",
}
MISSING = ("No such file or directory", "file not found")  # GCC's words, and Clang's


def command_for(build, folder):
    """The command line for one source of the library of this folder, without source and output."""
    for entry in json.loads((build / "compile_commands.json").read_text(encoding="utf-8")):
        if f"/quillmark_{folder}.dir/" in entry["command"]:
            words = shlex.split(entry["command"])
            kept, skip = [], False
            for word in words:
                if skip or word in ("-c", entry["file"]):
                    skip = False
                elif word == "-o":
                    skip = True
                elif os.path.basename(word) != "ccache":
                    kept.append(word)
            return kept, entry["directory"]
    sys.exit(f"no source of the library {folder} in {build}/compile_commands.json")


def compile_include(command, directory, header, folder):
    source = Path(folder) / "probe.cpp"
    source.write_text(f'#include "{header}"\n', encoding="utf-8")
    return subprocess.run([*command, "-fsyntax-only", str(source)], cwd=directory, text=True,
                          capture_output=True, check=False, env={**os.environ, "LC_ALL": "C"})


def check(command, directory, here, there, header):
    """None when the include behaves as layout.py says, else a sentence."""
    allowed = there == here or there in layout.LIBRARIES[here] or (
        there == "Qt" and here in layout.APP)
    with tempfile.TemporaryDirectory() as folder:
        result = compile_include(command, directory, header, folder)
    if allowed and result.returncode != 0:
        return f"{here} cannot include \"{header}\":\n{result.stderr}"
    if not allowed and result.returncode == 0:
        return f"{here} can include \"{header}\" of {there}"
    if not allowed and not (header in result.stderr
                            and any(words in result.stderr for words in MISSING)):
        return f"{here} fails to include \"{header}\" for another reason:\n{result.stderr}"
    return None


def main():
    if len(sys.argv) < 2 or sys.argv[2:] not in ([], ["--app"]):
        print(__doc__, file=sys.stderr)
        return 2
    folders = layout.LIBRARIES if sys.argv[2:] else layout.CORE
    build = Path(sys.argv[1]).resolve()
    cases = []
    for here in folders:
        command, directory = command_for(build, here)
        cases += [(command, directory, here, there, header) for there, header in HEADERS.items()]
    with ThreadPoolExecutor(max_workers=os.cpu_count()) as pool:
        findings = [finding for finding in pool.map(lambda case: check(*case), cases) if finding]
    for finding in findings:
        print(finding)
    print(f"{len(cases)} includes tried, {len(findings)} surprises")
    return 1 if findings else 0


if __name__ == "__main__":
    sys.exit(main())
