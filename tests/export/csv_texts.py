"""Texts that are hard on a CSV file, and the cells that a list with them has to hold."""

import subprocess

HEADERS = [
    "Font", "PostScript name", "Family", "Style", "Verdict", "Why", "License in font",
    "License URL", "Embedding bits", "fsType", "Vendor ID", "Maker", "Copyright",
    "Apple system font", "File", "In PDF", "Pages", "Your license", "Bought from", "License link",
    "Attachment", "Your notes",
]
CLOSING = ["Note", "Check the license; this reads the font's own data. Not legal advice."]

# Texts that a spreadsheet can hold as they are.
TEXTS = [
    "",
    "plain",
    " spaces in front and behind ",
    "a comma, and another,",
    'a "quoted" word',
    '"',
    '""',
    '","',
    "one\ntwo",
    "\nbetween\n",
    "a\ttab",
    "it's",
    "'quoted'",
    "''",
    "=1+1",
    "=cmd|' /C calc'!A0",
    '=HYPERLINK("https://example.com","here, too")',
    "+1",
    "-1",
    "-",
    "@SUM(1)",
    "=",
    " =1+1",
    "=a\nb",
    "-\"\n,",
    "1,000",
    "0012",
    "1e5",
    "2026-11-22",
    "1/2",
    "TRUE",
    "#N/A",
    "sep=;",
    "ID",
    "\u00fcml\u00e4uts",
    "\u200f\u05e2\u05d1\u05e8\u05d9\u05ea\u200e \u202eback\u202c",
    "\u2028line\u2029paragraph\u0085next",
    "\ufefffirst",
    "\ufffd",
    "e\u0301 \U0001f58b\ufe0f \U0001f468\u200d\U0001f469\u200d\U0001f467",
    "x" * 30_000,
]

# Texts that programs for text keep, and spreadsheets do not.
RAW_TEXTS = [
    "one\rtwo",
    "one\r\ntwo",
    "\r",
    "\r\n",
    "=\r\n",
    "a\0b",
    "\0",
    "\0=1+1",
    "\0\0-\0",
    "".join(map(chr, range(1, 32))) + "\x7f",
    "x" * 1_000_000,
    '"' * 1_000_000,
    "\r\n" * 500_000,
    "\u20ac," * 300_000,
]


# Those of them over which a spreadsheet does not take minutes.
SHORT_RAW_TEXTS = [text for text in RAW_TEXTS if len(text) < 1000]


def sample(program: str, texts: list[str]) -> bytes:
    """The CSV file of a list with these texts."""
    encoded = [text.encode("utf-8") for text in texts]
    given = b"".join(b"%d\n%s" % (len(text), text) for text in encoded)
    return subprocess.run(
        [program], input=given, stdout=subprocess.PIPE, check=True, timeout=60
    ).stdout


def guarded(text: str) -> str:
    """Nothing that a spreadsheet would take for a formula."""
    # A spreadsheet drops NULs, so one in front hides nothing.
    return "'" + text if text.lstrip("\0").startswith(("=", "+", "-", "@")) else text


def expected(texts: list[str]) -> list[list[str]]:
    """The cells of that list."""
    rows = []
    for text in texts:
        cell = guarded(text)
        rows.append([
            cell, cell, cell, "", "Restricted", cell, "SIL Open Font License", cell,
            "Preview & print, no subsetting, bitmap only", "0x0304", cell, cell, cell, "no", cell,
            "Embedded (CFF), subset", "1, 3", "Open license (OFL, Apache, \u2026)", cell, cell,
            cell, cell,
        ])
    return [HEADERS, *rows, CLOSING]


def differences(found: list[list[str]], wanted: list[list[str]]) -> list[str]:
    """A sentence for each cell that is not as it should be."""
    sentences = []
    if len(found) != len(wanted):
        sentences.append(f"{len(found)} lines instead of {len(wanted)}")
    for line, (one, other) in enumerate(zip(found, wanted)):
        if len(one) != len(other):
            sentences.append(f"line {line} has {len(one)} cells instead of {len(other)}")
        for column, (cell, right) in enumerate(zip(one, other)):
            if cell != right:
                sentences.append(f"line {line}, column {column}: {cell[:60]!r}, not {right[:60]!r}")
    return sentences
