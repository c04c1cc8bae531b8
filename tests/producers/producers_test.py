"""Checks documents of one PDF maker and compares the result with poppler's pdffonts.

usage: producers_test.py PROGRAM FOLDER MAKER [unittest arguments]

PROGRAM is quillmark-cli. FOLDER is where the documents are made; it is emptied first. MAKER is a
name from makers.py or heavy.py.

The two programs agree after the rules in expected_fonts(). What is left over is a failure.
"""

import json
import re
import subprocess
import sys
import unittest
from collections.abc import Callable
from dataclasses import dataclass, field
from pathlib import Path

import fonts
import heavy
import makers
import pdffonts
from makers import Document, Workshop

PROGRAM, FOLDER, MAKER = Path(sys.argv[1]).absolute(), Path(sys.argv[2]).absolute(), sys.argv[3]
TIME_LIMIT = 60  # seconds


def check(document: Path, *options: str) -> tuple[int, dict]:
    """The exit code and the report."""
    command = [PROGRAM, "check", "--no-installed", "--format", "json", *options, document]
    result = subprocess.run(
        command,
        stdin=subprocess.DEVNULL,
        capture_output=True,
        timeout=TIME_LIMIT,
        check=False,
    )
    if not result.stdout:
        raise AssertionError(f"no report, exit code {result.returncode}: {result.stderr!r}")
    return result.returncode, json.loads(result.stdout)


def clean(name: str) -> str:
    """The name without a subset prefix."""
    return re.sub(r"^[A-Z]{6}\+(?=.)", "", name)


@dataclass
class ExpectedFont:
    names: set[str] = field(default_factory=set)
    programs: set[str] = field(default_factory=set)
    subset: bool = False
    pages: set[int] = field(default_factory=set)


def expected_fonts(document: Document) -> dict[tuple[str, bool], ExpectedFont]:
    """The fonts that have to be found, by clean name and whether they are embedded.

    The rules that lead from pdffonts' list to ours:
    - pdffonts has a row for each font dictionary. Ours are merged when the names are the same
      without their subset prefixes, the embedded ones apart from those that are only named.
    - A font without a name, which pdffonts calls [none], is called (unnamed font), unless its
      descriptor names it: pdffonts does not look there.
    - pdffonts tells pages only by being asked for each page alone. Asked so, it goes into every
      form again; we go into the forms of a form only where we first meet it.
    """
    found: dict[tuple[str, bool], ExpectedFont] = {}
    for name, pages in document.described.items():
        found[name, True] = ExpectedFont({name}, {"type3"}, False, pages)
    for page in range(1, document.pages + 1):
        for row in pdffonts.read(document.path, page):
            if row.name == "[none]" and document.described:
                continue
            name = "(unnamed font)" if row.name == "[none]" else row.name
            key = (clean(name), row.program != "notEmbedded")
            if clean(name) in document.nested and key in found:
                continue
            font = found.setdefault(key, ExpectedFont())
            font.names.add(name)
            font.programs.add(row.program)
            font.subset |= row.subset
            font.pages.add(page)
    return found


@dataclass(frozen=True)
class ExpectedMatch:
    font: fonts.Font | None
    by_family: bool


def expected_match(name: str) -> ExpectedMatch:
    """The known font that a name leads to: by its PostScript name, else by the family part."""
    known = [font for font in fonts.FONTS if font.known]
    for font in known:
        if font.post_script_name == name:
            return ExpectedMatch(font, by_family=False)
    for font in known:
        # Each of these is the only known font of its family, and named after it.
        if font.post_script_name.split("-")[0].lower() == name.split("-")[0].lower():
            return ExpectedMatch(font, by_family=True)
    return ExpectedMatch(None, by_family=False)


class ProducersTest(unittest.TestCase):
    known: Path
    open: list[Document]
    variants: list[Document]
    locked: list[Document]

    @classmethod
    def setUpClass(cls) -> None:
        cls.known = FOLDER / "known"
        shop = Workshop(FOLDER, fonts.gather(FOLDER))
        documents = {**makers.MAKERS, **heavy.MAKERS}[MAKER](shop)
        cls.locked = [document for document in documents if document.locked]
        cls.variants = [
            document for document in documents if document.variant_of and not document.locked
        ]
        # What holds for a document holds for its variants, when their rows are the same.
        cls.open = [document for document in documents if document.variant_of is None]

    def each(self, documents: list[Document], examine: Callable[[Document], None]) -> None:
        for document in documents:
            with self.subTest(document=document.path.name):
                examine(document)

    def rows(self, document: Document, *options: str) -> list[dict]:
        exit_code, report = check(document.path, *options)
        self.assertEqual((exit_code, report["errors"]), (0, []))
        (audit,) = report["lists"]
        self.assertEqual(audit["pageCount"], document.pages)
        return audit["rows"]

    def test_finds_the_fonts_pages_and_programs_that_pdffonts_finds(self) -> None:
        self.assertTrue(self.open)
        self.each(self.open, self.compare_with_pdffonts)

    def compare_with_pdffonts(self, document: Document) -> None:
        wanted = expected_fonts(document)
        found = {}
        for row in self.rows(document):
            pdf = row["pdf"]
            key = (clean(pdf["pdfNames"][0]), pdf["program"] != "notEmbedded")
            self.assertNotIn(key, found, "two rows for one font")
            found[key] = pdf
        self.assertEqual(sorted(found), sorted(wanted))
        for key, font in wanted.items():
            pdf = found[key]
            if key[0] in document.described:
                self.assertEqual(set(map(clean, pdf["pdfNames"])), font.names, key)
            else:
                self.assertEqual(set(pdf["pdfNames"]), font.names, key)
                self.assertEqual(pdf["subset"], font.subset, key)
            self.assertIn(pdf["program"], font.programs, key)
            self.assertEqual(pdf["pages"], sorted(font.pages), key)
        # The maker did write what it was asked for.
        self.assertEqual({pdf["program"] for pdf in found.values()}, document.programs)

    def test_reads_every_embedded_program(self) -> None:
        self.each(self.open, self.look_for_embedded_data)

    def look_for_embedded_data(self, document: Document) -> None:
        for row in self.rows(document):
            is_program = row["pdf"]["program"] not in ("notEmbedded", "type3")
            self.assertEqual(row["pdf"]["readEmbeddedData"], is_program, row["pdf"]["pdfNames"])

    def test_matches_known_fonts_and_tells_the_verdicts_of_all(self) -> None:
        self.each(self.open, self.match_with_known_fonts)

    def match_with_known_fonts(self, document: Document) -> None:
        for row in self.rows(document, "--fonts", str(self.known)):
            pdf, assessment = row["pdf"], row["assessment"]
            name = clean(pdf["pdfNames"][0])
            match = expected_match(name)
            path = match.font and str(self.known / match.font.file_name)
            self.assertEqual(pdf.get("matchedPath"), path, name)
            self.assertEqual(pdf["matchedByFamily"], match.by_family, name)
            if pdf["program"] == "notEmbedded":
                verdict = "likelyOK"
            elif match.font:
                verdict = match.font.verdict
            else:
                verdict = document.verdicts.get(name, "unknown")
            self.assertEqual(assessment["verdict"], verdict, name)
            if match.font:
                self.assertEqual(assessment["license"], match.font.license, name)

    def test_how_a_document_is_packed_or_encrypted_changes_none_of_its_rows(self) -> None:
        self.each(self.variants, self.compare_with_original)

    def compare_with_original(self, document: Document) -> None:
        self.assertIn(document.mark, document.path.read_bytes())
        assert document.variant_of is not None
        original = self.rows(document.variant_of)
        self.assertEqual(sorted(map(as_text, self.rows(document))), sorted(map(as_text, original)))

    def test_a_document_that_needs_a_password_is_named_as_locked(self) -> None:
        self.each(self.locked, self.look_for_the_lock)

    def look_for_the_lock(self, document: Document) -> None:
        exit_code, report = check(document.path)
        self.assertEqual((exit_code, report["lists"]), (3, []))
        message = (
            f"{document.path.name} is password-protected. "
            "Open it in Preview, remove the password, and check the copy."
        )
        self.assertEqual([error["message"] for error in report["errors"]], [message])


def as_text(row: dict) -> str:
    """A row as text: fonts of equal display names may stand in another order."""
    return json.dumps(row, sort_keys=True)


if __name__ == "__main__":
    unittest.main(argv=[sys.argv[0], *sys.argv[4:]], verbosity=2)
