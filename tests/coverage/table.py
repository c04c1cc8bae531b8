"""Prints the lines and branches of each folder that tests reach. Run by ../../scripts/coverage.

usage: table.py SUMMARY     gcovr's summary as JSON
"""

import json
import re
import sys
from collections import defaultdict
from pathlib import Path

# Headers are included through links in the build folder.
LINK = re.compile(r"build/coverage/include/(\w+)/\1/")


def folder_of(name: str) -> str:
    linked = LINK.match(name)
    if linked:
        inner = linked[1] if linked[1] in ("reader", "cli") else None
        return inner or next(
            folder for folder in (f"core/{linked[1]}", f"app/{linked[1]}") if Path(folder).is_dir()
        )
    parts = name.split("/")
    return "/".join(parts[:2]) if parts[0] in ("core", "app") and len(parts) > 2 else parts[0]


def main() -> int:
    sums: dict[str, list[int]] = defaultdict(lambda: [0, 0, 0, 0])
    for file in json.loads(Path(sys.argv[1]).read_text())["files"]:
        folder = folder_of(file["filename"])
        counts = [file[key] for key in ("line_covered", "line_total", "branch_covered", "branch_total")]
        for name in {folder, folder.split("/")[0]}:
            sums[name] = [old + more for old, more in zip(sums[name], counts)]
    print(f"{'':<18}{'lines':>16}{'branches':>24}")
    for name, (lines, all_lines, branches, all_branches) in sorted(sums.items()):
        print(
            f"{name:<18}{lines:>6} of {all_lines:>6}{100 * lines / max(1, all_lines):>7.1f} %"
            f"{branches:>8} of {all_branches:>6}{100 * branches / max(1, all_branches):>7.1f} %"
        )
    return 0


if __name__ == "__main__":
    sys.exit(main())
