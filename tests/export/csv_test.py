"""Reads a CSV audit back with Python's csv module and compares every cell.

usage: csv_test.py CSV_SAMPLE [unittest arguments]
"""

import csv
import io
import sys
import unittest

from csv_texts import RAW_TEXTS, TEXTS, differences, expected, sample

PROGRAM = sys.argv.pop(1)


def cells(data: bytes) -> list[list[str]]:
    csv.field_size_limit(10_000_000)
    return list(csv.reader(io.StringIO(data.decode("utf-8"), newline=""), strict=True))


class ReadBack(unittest.TestCase):
    def test_every_cell_of_ordinary_and_hostile_texts(self):
        texts = TEXTS + RAW_TEXTS
        self.assertEqual(differences(cells(sample(PROGRAM, texts)), expected(texts)), [])

    def test_an_empty_list(self):
        self.assertEqual(cells(sample(PROGRAM, [])), expected([]))

    def test_the_file_ends_with_one_line_end(self):
        data = sample(PROGRAM, TEXTS)
        self.assertTrue(data.endswith(b"Not legal advice.\r\n"))

    def test_no_cell_begins_like_a_formula(self):
        texts = TEXTS + RAW_TEXTS
        for row in cells(sample(PROGRAM, texts)):
            for cell in row:
                self.assertNotIn(cell[:1], {"=", "+", "-", "@"})

    def test_a_wrong_cell_would_be_found(self):
        texts = ["a", "b"]
        found = cells(sample(PROGRAM, texts).replace(b"Restricted", b"restricted", 1))
        self.assertEqual(
            differences(found, expected(texts)), ["line 1, column 4: 'restricted', not 'Restricted'"]
        )


if __name__ == "__main__":
    unittest.main()
