"""Opens a CSV audit in LibreOffice and compares every cell; see run-heavy.

usage: spreadsheet_test.py CSV_SAMPLE FOLDER
"""

import subprocess
import sys
import unittest
import xml.etree.ElementTree as xml
from pathlib import Path

from csv_texts import HEADERS, SHORT_RAW_TEXTS, TEXTS, differences, expected, sample

PROGRAM, FOLDER = sys.argv.pop(1), Path(sys.argv.pop(1)).resolve()

# Comma, quotation mark, UTF-8, from the first line on.
IMPORT = "CSV:44,34,76,1"
# The second number of a pair is the column's kind: text, whatever it looks like.
ALL_TEXT = "/".join(f"{column}/2" for column in range(1, len(HEADERS) + 1))

OFFICE = "{urn:oasis:names:tc:opendocument:xmlns:office:1.0}"
TABLE = "{urn:oasis:names:tc:opendocument:xmlns:table:1.0}"
TEXT = "{urn:oasis:names:tc:opendocument:xmlns:text:1.0}"


def characters(element: xml.Element) -> str:
    """The text of a paragraph."""
    text = element.text or ""
    for child in element:
        if child.tag == TEXT + "s":
            text += " " * int(child.get(TEXT + "c", "1"))
        elif child.tag == TEXT + "tab":
            text += "\t"
        elif child.tag == TEXT + "line-break":
            text += "\n"
        else:
            text += characters(child)
        text += child.tail or ""
    return text


def opened(name: str, data: bytes, kinds: str) -> xml.Element:
    """The sheet that LibreOffice makes of a CSV file."""
    FOLDER.mkdir(parents=True, exist_ok=True)
    source, target = FOLDER / f"{name}.csv", FOLDER / f"{name}.fods"
    source.write_bytes(data)
    target.unlink(missing_ok=True)
    subprocess.run(
        [
            "soffice",
            f"-env:UserInstallation={(FOLDER / 'profile').as_uri()}",
            "--headless",
            f"--infilter={IMPORT},{kinds}",
            "--convert-to",
            "fods",
            "--outdir",
            FOLDER,
            source,
        ],
        check=True,
        stdout=subprocess.DEVNULL,
        stderr=subprocess.DEVNULL,
        timeout=300,
    )
    return xml.parse(target).getroot()


def cells(sheet: xml.Element) -> list[list[str]]:
    """The texts of all cells in the width of the columns, without empty lines at the end."""
    lines = []
    for row in sheet.iter(TABLE + "table-row"):
        line = []
        for cell in row.iter(TABLE + "table-cell"):
            text = "\n".join(characters(paragraph) for paragraph in cell.findall(TEXT + "p"))
            line += [text] * min(int(cell.get(TABLE + "number-columns-repeated", "1")), 100)
        lines += [line[: len(HEADERS)]] * min(int(row.get(TABLE + "number-rows-repeated", "1")), 100)
    while lines and not any(lines[-1]):
        lines.pop()
    return lines


class InASpreadsheet(unittest.TestCase):
    def test_every_cell_holds_its_text(self):
        wanted = expected(TEXTS)
        wanted[-1] += [""] * (len(HEADERS) - len(wanted[-1]))
        found = cells(opened("texts", sample(PROGRAM, TEXTS), ALL_TEXT))
        self.assertEqual(differences(found, wanted), [])

    def test_nothing_is_a_formula(self):
        texts = TEXTS + SHORT_RAW_TEXTS
        sheet = opened("formulas", sample(PROGRAM, texts), "")
        self.assertEqual(len(cells(sheet)), len(texts) + 2)
        formulas = [cell.get(TABLE + "formula") for cell in sheet.iter(TABLE + "table-cell")]
        self.assertEqual([formula for formula in formulas if formula], [])

    def test_a_formula_would_be_found(self):
        sheet = opened("planted", sample(PROGRAM, ["a"]).replace(b"Restricted", b"=1+1"), "")
        formulas = [cell.get(TABLE + "formula") for cell in sheet.iter(TABLE + "table-cell")]
        self.assertEqual([formula for formula in formulas if formula], ["of:=1+1"])

    def test_texts_that_no_sheet_holds_leave_the_others_in_their_cells(self):
        lines = cells(opened("raw", sample(PROGRAM, SHORT_RAW_TEXTS), ALL_TEXT))
        self.assertEqual(len(lines), len(SHORT_RAW_TEXTS) + 2)
        for line in lines[1:-1]:
            self.assertEqual(line[4], "Restricted")
            self.assertEqual(line[16], "1, 3")


if __name__ == "__main__":
    unittest.main()
