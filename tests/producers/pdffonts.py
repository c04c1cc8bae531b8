"""What poppler's pdffonts says of a document, as a second opinion."""

import re
import subprocess
from dataclasses import dataclass
from pathlib import Path

# pdffonts names the program's format together with the kind of font that uses it. A program in a
# container for OpenType is told as one whatever its outlines are.
PROGRAMS = {
    "Type 1": "type1",
    "Type 1C": "cff",
    "Type 1C (OT)": "openType",
    "Type 3": "type3",
    "TrueType": "trueType",
    "TrueType (OT)": "openType",
    "CID Type 0": "type1",
    "CID Type 0C": "cff",
    "CID Type 0C (OT)": "openType",
    "CID TrueType": "trueType",
    "CID TrueType (OT)": "openType",
}
ROW = re.compile(
    r"(?P<name>.*?) +"
    r"(?P<type>" + "|".join(map(re.escape, sorted(PROGRAMS, key=len, reverse=True))) + r"|unknown)"
    r" +(?P<encoding>\S+) +(?P<embedded>yes|no) +(?P<subset>yes|no) +(?P<unicode>yes|no)"
    r" +(?:\d+ +\d+|\[none\])"
)


@dataclass(frozen=True)
class Row:
    name: str  # with its subset prefix; "[none]" for a font without a name
    program: str  # one of our own kinds
    subset: bool


def read(document: Path, page: int | None = None) -> list[Row]:
    """The fonts of a document, or of one of its pages, in pdffonts' order."""
    pages = [] if page is None else ["-f", str(page), "-l", str(page)]
    result = subprocess.run(
        ["pdffonts", *pages, str(document)], capture_output=True, text=True, check=True
    )
    rows = []
    for line in result.stdout.splitlines()[2:]:
        match = ROW.fullmatch(line.rstrip())
        if match is None:
            raise ValueError(f"pdffonts wrote a line of another form: {line}")
        # What is not embedded has no program, whatever its type; a Type 3 font counts as embedded.
        embedded = match["embedded"] == "yes"
        program = PROGRAMS.get(match["type"], match["type"]) if embedded else "notEmbedded"
        rows.append(Row(match["name"], program, match["subset"] == "yes"))
    return rows
