#!/usr/bin/env python3
"""Reads every source of the project and names what breaks a convention.

usage: check_sources.py ROOT     checks the tree at ROOT; exit code 1 when something is found
       check_sources.py --self-test

The self-test makes a small tree in which each convention is broken once, and expects exactly those
findings: a check that cannot fail would be worth nothing.
"""

import fnmatch
import re
import sys
import tempfile
from pathlib import Path

import layout

CPP = {".cpp", ".h"}
TEXT = CPP | {".cmake", ".json", ".md", ".py", ".sh", ".txt", ".yml", ""}
SKIPPED = {".git", ".cache", "__pycache__", "build", "findings"}
VERBATIM = ("packaging/copyright", "packaging/licenses/")  # the words of others

INCLUDE = re.compile(r'^\s*#\s*include\s+(["<])([^">]+)[">]')
POSIX_HEADER = re.compile(r"(sys|net|linux)/\w+\.h|[a-z]+\.h")
STANDARD_HEADER = re.compile(r"[a-z_0-9]+")

# Each pattern is written so that it does not match this file.
UNWANTED = [
    ("names a source that readers of the project do not have",
     re.compile(r"\bspe[c]s?\b|\b(the|this|our|by|per|see) spe[c]ification|\bPar[t] \d+\.\d"
                r"|[\u00a7] ?\d", re.IGNORECASE)),
    ("numbers a passage of no named public standard",
     re.compile(r"^(?!.*\b(ISO|OpenType|RFC|Technical Note|TIFF|Unicode|WOFF)\b).*\bsectio[n]s? \d",
                re.IGNORECASE)),
    ("holds a path of one machine", re.compile(r"/wor[k]/|/tm[p]/wt|/roo[t]/|/hom[e]/[a-z]+/src")),
    ("names a package registry's host",
     re.compile(r"https?://[^\s/\"']*(artifac[t]|registr[y]|mirro[r]|npmj[s]|pyp[i])")),
    # The C library's part of it ends a program that has its own copy of the C++ library, as the
    # command-line tool has, instead of handing on what is thrown.
    ("hands on no exception", re.compile(r"\bcall_onc[e]\(")),
    ("is left for later", re.compile(r"\b(TOD[O]|FIXM[E]|XX[X]|HAC[K])\b")),
]

ASSERTION = re.compile(r"\b(EXPECT|ASSERT)_|\bFAIL\(|\bADD_FAILURE|\bstatic_assert\b"
                       r"|\b(expect|check|assert|verify)[A-Z]\w*\(")


def files(root):
    for path in sorted(root.rglob("*")):
        relative = path.relative_to(root)
        if path.is_file() and not SKIPPED.intersection(relative.parts):
            yield path, relative.as_posix()


def folder_of(name):
    """The folder that counts for includes: core/text for core/text/Trim.cpp, cli for cli/main.cpp."""
    parts = name.split("/")
    return "/".join(parts[:2]) if parts[0] in ("core", "app") else parts[0]


def included_folder(header):
    """The folder that a quoted include leads to; empty for a file beside the one including it."""
    return header.split("/")[0] if "/" in header else ""


def check_quoted_include(name, header):
    here = folder_of(name)
    there = included_folder(header)
    if here in layout.WORKSHOP:
        return None
    if here in layout.FACES:
        allowed = [here, *layout.FACES[here]]
    else:
        own = here.split("/")[-1]
        allowed = [own, *layout.LIBRARIES.get(own, [])]
    if there not in allowed:
        return f"may not include \"{header}\"; its folder may include: {', '.join(allowed)}"
    return None


def check_angle_include(name, header):
    here = folder_of(name)
    free = here in layout.WORKSHOP
    for library, (pattern, places) in layout.THIRD_PARTY.items():
        if re.fullmatch(pattern, header):
            if free or any(fnmatch.fnmatch(name, place) for place in places):
                return None
            return f"may not include <{header}>; {library} is only for {', '.join(places)}"
    standard = STANDARD_HEADER.fullmatch(header)
    if not standard and not POSIX_HEADER.fullmatch(header):
        return f"includes <{header}>, which no library in layout.py accounts for"
    if here in layout.PURE and (not standard or header in layout.EDGE_HEADERS):
        return f"may not include <{header}>; its folder holds pure functions"
    return None


def check_includes(name, lines):
    for number, line in enumerate(lines, 1):
        match = INCLUDE.match(line)
        if not match:
            continue
        check = check_quoted_include if match[1] == '"' else check_angle_include
        finding = check(name, match[2])
        if finding:
            yield number, finding


def own_header(root, name):
    """How a source includes the header of the same name; None when there is no such header."""
    header = name.removesuffix(".cpp") + ".h"
    if not name.endswith(".cpp") or not (root / header).is_file():
        return None
    return re.sub("^(core|app|tests)/", "", header)


def check_own_header(root, name, lines):
    expected = own_header(root, name)
    if expected is None:
        return
    for index, line in enumerate(lines):
        match = INCLUDE.match(line)
        if not match:
            continue
        if match[2] not in (expected, Path(expected).name):
            yield index + 1, f"includes {match[2]} before its own header, {expected}"
        elif index + 1 < len(lines) and lines[index + 1] != "":
            yield index + 1, "has no blank line after its own header"
        return


def check_header(name, lines):
    if not name.endswith(".h"):
        return
    if "#pragma once" not in lines:
        yield 1, "has no #pragma once"
    if not lines or not lines[0].startswith("// "):
        yield 1, "does not begin with a comment that tells its reader where they are"


def check_words(lines):
    for number, line in enumerate(lines, 1):
        for finding, pattern in UNWANTED:
            if pattern.search(line):
                yield number, finding


def check_assertions(name, lines):
    """A test that asserts nothing passes whatever the program does."""
    if not name.endswith("Test.cpp"):
        return
    start = None
    for index, line in enumerate(lines):
        if re.match(r"(TYPED_)?TEST(_F|_P)?\(", line):
            start = index
        elif line == "}" and start is not None:
            if not any(ASSERTION.search(text) for text in lines[start:index]):
                yield start + 1, "is a test that asserts nothing"
            start = None


CONSTANT = re.compile(r"\bconstexpr\s+[\w:]+\s+(\w+)\s*[({=]")
LIMIT_ROW = re.compile(r"\| `(\w+)` \|")


def check_limits(root):
    """docs/limits.md has a row for each constant of each Limits.h, and for nothing that is gone."""
    page = "docs/limits.md"
    if not (root / page).is_file():
        return
    rows = {}
    for number, line in enumerate((root / page).read_text(encoding="utf-8").split("\n"), 1):
        if match := LIMIT_ROW.match(line):
            rows[match[1]] = number
    constants = set()
    for path in sorted(path for part in ("core", "app", "cli", "reader") for path in (root / part).rglob("*")):
        if path.suffix in CPP:
            names = CONSTANT.findall(path.read_text(encoding="utf-8"))
            constants.update(names)
            if path.name == "Limits.h":
                for name in set(names) - rows.keys() - {"mebibyte"}:
                    yield path.relative_to(root).as_posix(), 1, f"{name} has no row in {page}"
    for name in rows.keys() - constants:
        yield page, rows[name], f"{name} is no constant in core/, app/, cli/ or reader/"


def check_tree(root):
    findings = list(check_limits(root))
    for path, name in files(root):
        if path.suffix not in TEXT or name.startswith(VERBATIM):
            continue
        try:
            lines = path.read_text(encoding="utf-8").split("\n")
        except UnicodeDecodeError:
            findings.append((name, 1, "is not UTF-8"))
            continue
        checks = [check_words(lines)]
        if path.suffix in CPP:
            checks += [
                check_includes(name, lines),
                check_own_header(root, name, lines),
                check_header(name, lines),
                check_assertions(name, lines),
            ]
        findings += [(name, line, finding) for check in checks for line, finding in check]
    return sorted(findings)


# A tree in which everything is wrong once. Name, content, and the findings: line and a part of the
# sentence. The words that the project does not use are put together here, so that this file can be
# checked like any other.
BAD_TREE = [
    ("core/text/Trim.h", "// Trimming.\n#pragma once\n", []),
    ("core/text/Trim.cpp", '#include "text/Trim.h"\n\n#include <unicode/uchar.h>\n', []),
    ("core/text/Upward.cpp", '#include "fontfile/SFNT.h"\n', [(1, "may not include")]),
    ("core/text/Window.cpp", "#include <gtk/gtk.h>\n", [(1, "no library in layout.py")]),
    ("core/text/Disk.cpp", "#include <fstream>\n", [(1, "pure functions")]),
    ("core/fontfile/Judge.cpp", '#include "assessment/Brand.h"\n', [(1, "may not include")]),
    ("core/fontfile/Words.cpp", '#include "text/Trim.h"\n', []),
    ("core/library/Face.cpp", '#include "cli/Options.h"\n', [(1, "may not include")]),
    ("core/library/Path.cpp", '#include "core/text/Trim.h"\n', [(1, "may not include")]),
    ("core/library/Other.cpp", "#include <zlib.h>\n", [(1, "zlib is only for")]),
    ("core/library/Settings.cpp", "#include <QSettings>\n", [(1, "Qt's core is only for")]),
    ("app/model/List.cpp", '#include "library/FontLibrary.h"\n#include <QString>\n', []),
    ("app/main.cpp", '#include "model/List.h"\n#include "cli/Options.h"\n', [(2, "may not include")]),
    ("app/model/Report.cpp", '#include "coding/JsonWriter.h"\n', [(1, "may not include")]),
    ("core/library/Inflate.cpp", "#include <zlib.h>\n", []),
    ("core/pdf/Walk.cpp", "#include <qpdf/QPDF.hh>\n#include <vector>\n",
     [(1, "libqpdf is only for")]),
    ("core/pdf/Late.h", "// Late.\n#pragma once\n", []),
    ("core/pdf/Late.cpp", '#include <vector>\n\n#include "pdf/Late.h"\n',
     [(1, "before its own header")]),
    ("core/pdf/Tight.h", "// Tight.\n#pragma once\n", []),
    ("core/pdf/Tight.cpp", '#include "pdf/Tight.h"\n#include <vector>\n', [(1, "no blank line")]),
    ("core/pdf/Twice.h", "// Twice.\nint one();\n", [(1, "no #pragma once")]),
    ("core/pdf/Silent.h", "#pragma once\n", [(1, "where they are")]),
    ("cli/Parse.cpp", '#include "pdf/Late.h"\n#include <nlohmann/json.hpp>\n',
     [(2, "nlohmann-json is only for")]),
    ("tests/text/TrimTest.cpp",
     "TEST(Trim, Nothing)\n{\n    trim();\n}\n\nTEST(Trim, Something)\n{\n    EXPECT_TRUE(trim());\n}\n",
     [(1, "asserts nothing")]),
    ("docs/words.md", "As the spe" + "c says.\nIn Par" + "t 3.1.\nThe special part 3 is fine.\n",
     [(1, "names a source"), (2, "names a source")]),
    ("docs/rules.md", "See sectio" + "n 4.\nTIFF 6.0, sectio" + "n 13, has a name.\nA subsection is fine.\n",
     [(1, "no named public standard")]),
    ("docs/paths.md", "Look in /wor" + "k/shared.\n", [(1, "path of one machine")]),
    ("scripts/fetch", "curl https://registr" + "y.example/a\n", [(1, "package registry")]),
    ("core/pdf/Limits.h", "// Limits.\n#pragma once\ninline constexpr int depth = 3;\n"
     "constexpr std::uint64_t width(int pages)\n", [(1, "width has no row")]),
    ("docs/limits.md", "| `depth` | 3 |\n| `gone` | 4 |\n", [(2, "no constant")]),
    ("packaging/licenses/GPL-3", "under Sectio" + "n 7 of it\n", []),
    ("docs/later.md", "TOD" + "O: write this.\n", [(1, "left for later")]),
    ("docs/once.md", "std::call_onc" + "e(flag, read);\n", [(1, "hands on no exception")]),
    ("build/generated.md", "TOD" + "O\n", []),
]


def self_test():
    with tempfile.TemporaryDirectory() as folder:
        root = Path(folder)
        expected = []
        for name, content, findings in BAD_TREE:
            path = root / name
            path.parent.mkdir(parents=True, exist_ok=True)
            path.write_text(content, encoding="utf-8")
            expected += [(name, line, part) for line, part in findings]
        found = check_tree(root)
    expected.sort()
    matching = len(found) == len(expected) and all(
        name == expected_name and line == expected_line and part in finding
        for (name, line, finding), (expected_name, expected_line, part) in zip(found, expected))
    if not matching:
        print("expected:", *expected, "found:", *found, sep="\n  ")
        return 1
    print(f"{len(found)} planted faults found, and nothing else")
    return 0


def main():
    if sys.argv[1:] == ["--self-test"]:
        return self_test()
    if len(sys.argv) != 2:
        print(__doc__, file=sys.stderr)
        return 2
    root = Path(sys.argv[1]).resolve()
    if not (root / "core").is_dir():
        print(f"{root} has no folder core", file=sys.stderr)
        return 2
    findings = check_tree(root)
    for name, line, finding in findings:
        print(f"{name}:{line}: {finding}")
    print(f"{sum(1 for _ in files(root))} files checked, {len(findings)} findings")
    return 1 if findings else 0


if __name__ == "__main__":
    sys.exit(main())
