"""Reads PDF reports as other programs read them.

usage: report_test.py SAMPLES PROGRAM FONTS [unittest arguments]

SAMPLES is the program that writes the reports, PROGRAM is quillmark-cli, FONTS the folder of the
report's own face.
"""

import json
import os
import re
import shutil
import subprocess
import sys
import tempfile
import unittest
import xml.etree.ElementTree as ElementTree
from pathlib import Path

SAMPLES, PROGRAM, FONTS = (os.path.abspath(path) for path in sys.argv[1:4])
TIME_LIMIT = 120  # seconds
DISCLAIMER = "Check the license; this reads the font's own data. Not legal advice."
PAGE_WIDTH, PAGE_HEIGHT = 612, 792
FRAME = (54, 54, 558, 726)  # left, top, right and bottom, from the page's upper left corner


def run(*command, accepted=(0,)):
    result = subprocess.run(command, capture_output=True, timeout=TIME_LIMIT, check=False)
    if result.returncode not in accepted:
        raise AssertionError(f"{command}: exit code {result.returncode}, {result.stderr!r}")
    return result.stdout


def lines(report):
    """The text as poppler reads it, without empty lines, with one blank where there are several."""
    text = run("pdftotext", "-layout", report, "-").decode()
    collapsed = (" ".join(line.split()) for line in text.replace("\f", "\n").split("\n"))
    return [line for line in collapsed if line]


def words(report):
    """For each page its words, each with its box from the page's upper left corner."""
    document = ElementTree.fromstring(run("pdftotext", "-bbox", report, "-"))
    namespace = "{http://www.w3.org/1999/xhtml}"
    sides = ("xMin", "yMin", "xMax", "yMax")
    return [
        [
            (word.text, tuple(float(word.get(side)) for side in sides))
            for word in page.iter(namespace + "word")
        ]
        for page in document.iter(namespace + "page")
    ]


def colors(report, box, resolution=200):
    """The colours inside a box of the first page, in points from the upper left corner, each with
    how many pixels have it."""
    scale = resolution / 72
    left, top, right, bottom = (round(side * scale) for side in box)
    image = run(
        "pdftoppm", "-r", str(resolution), "-f", "1", "-l", "1", "-x", str(left), "-y", str(top),
        "-W", str(right - left), "-H", str(bottom - top), report,
    )  # fmt: skip
    header = re.match(rb"P6\s+(\d+)\s+(\d+)\s+255\s", image)
    pixels = image[header.end() :]
    counts = {}
    for at in range(0, len(pixels), 3):
        color = tuple(pixels[at : at + 3])
        counts[color] = counts.get(color, 0) + 1
    return counts


def drawn_outside(report, page):
    """Whether a page has ink above, below or beside the frame, but for the footer's line."""
    image = run("pdftoppm", "-r", "72", "-gray", "-f", str(page), "-l", str(page), report)
    header = re.match(rb"P5\s+(\d+)\s+(\d+)\s+255\s", image)
    width, height = int(header[1]), int(header[2])
    pixels = image[header.end() :]
    left, top, right, bottom = FRAME
    footer = range(PAGE_HEIGHT - 40 - 8, PAGE_HEIGHT - 40 + 4)
    for y in range(height):
        row = pixels[y * width : (y + 1) * width]
        if y in footer:
            continue
        outside = row if y < top or y >= bottom else row[:left] + row[right:]
        if any(pixel < 250 for pixel in outside):
            return True
    return False


def objects(report):
    """qpdf's view of the file."""
    return json.loads(run("qpdf", "--json", report))


class Report(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        temporary = tempfile.TemporaryDirectory()
        cls.addClassCleanup(temporary.cleanup)
        cls.folder = Path(temporary.name)
        environment = {**os.environ, "LC_ALL": "en_US.UTF-8", "TZ": "UTC"}
        result = subprocess.run(
            [SAMPLES, cls.folder],
            env=environment,
            capture_output=True,
            timeout=TIME_LIMIT,
            check=True,
        )
        cls.printed = result.stdout.decode()

    def report(self, name):
        return self.folder / f"{name}.pdf"

    def test_every_report_is_a_sound_file(self):
        reports = sorted(self.folder.glob("*.pdf"))
        self.assertGreaterEqual(len(reports), 8)
        for report in reports:
            with self.subTest(report.name):
                self.assertNotIn("WARNING", run("qpdf", "--check", report).decode())

    def test_the_text_is_complete_and_in_order(self):
        self.assertEqual(
            lines(self.report("typical")),
            [
                "Font license audit: Grüße (2).pdf",
                "/home/anna/Grüße (2).pdf",
                "Checked Mar 14, 2026, 9:26 AM with Quillmark.",
                "3 fonts: 1 restricted, 1 unknown, 1 likely OK.",
                DISCLAIMER + " Each verdict reads the",
                "font's own fields (embedding bits, license text and URL, copyright, where it's "
                "installed),",
                "not the license you hold.",
                "Cedar [Restricted]",
                "The headline of Cedar.",
                "- The only reason.",
                "- A reason of so many words that it does not fit on one line of the page and goes "
                "on, at",
                "the same distance from the left, on the next one.",
                "PostScript: Cedar-Regular",
                "License: No license text",
                "Birch [Unknown]",
                "The headline of Birch.",
                "- The only reason.",
                "PostScript: Birch-Regular",
                "License: No license text",
                "Alder [Likely OK to embed]",
                "The headline of Alder.",
                "- The only reason.",
                "PostScript: Alder-Regular",
                "License: SIL Open Font License",
                "License URL: https://scripts.sil.org/OFL",
                "Maker: Example Foundry",
                "In the PDF: Embedded (CFF), subset; pages 1, 2, 9",
                "File: /usr/share/fonts/Alder.ttf",
                "Your note: Ebook / ePub; from Example Shop; https://example.com/receipts?id=(7); "
                "file:",
                "receipt.pdf; first line",
                "second line",
                "Quillmark audit, page 1. " + DISCLAIMER,
            ],
        )

    def test_an_empty_list_has_its_heading_and_its_footer(self):
        found = lines(self.report("empty"))
        self.assertEqual(found[3], "0 fonts: 0 restricted, 0 unknown, 0 likely OK.")
        self.assertEqual(found[-1], "Quillmark audit, page 1. " + DISCLAIMER)

    def test_the_same_list_gives_the_same_bytes(self):
        self.assertEqual(self.report("typical").read_bytes(), self.report("again").read_bytes())

    def test_title_creator_and_date_are_told(self):
        told = run("pdfinfo", "-isodates", self.report("typical")).decode()
        for line in [
            r"Title: +Font license audit: Grüße \(2\)\.pdf",
            r"Creator: +Quillmark",
            r"CreationDate: +2026-03-14T09:26:53Z",
            r"Page size: +612 x 792 pts \(letter\)",
            r"Pages: +1",
        ]:
            self.assertRegex(told, line)

    def test_the_fonts_are_embedded_subsets_of_the_reports_face(self):
        listed = run("pdffonts", self.report("typical")).decode().splitlines()[2:]
        found = {re.match(r"[A-Z]{6}\+(\S+)", line)[1]: line.split()[-5:-2] for line in listed}
        yes = ["yes", "yes", "yes"]  # embedded, subset, with Unicode
        self.assertEqual(found, {"CourierPrime-Regular": yes, "CourierPrime-Bold": yes})

    def test_each_verdict_and_tone_has_its_color(self):
        page = words(self.report("typical"))[0]
        boxes = {}
        for text, box in page:
            boxes.setdefault(text, box)
        for text, wanted in [
            ("[Restricted]", (0.75, 0.15, 0.12)),
            ("[Unknown]", (0.7, 0.45, 0.0)),
            ("[Likely", (0.1, 0.5, 0.25)),
            ("restricted,", (0.75, 0.15, 0.12)),
            ("unknown,", (0.7, 0.45, 0.0)),
            ("likely", (0.1, 0.5, 0.25)),
            ("Cedar", (0.08, 0.08, 0.1)),
            ("headline", (0.08, 0.08, 0.1)),
            ("PostScript:", (0.35, 0.35, 0.38)),
            ("note:", (0.35, 0.35, 0.38)),
            ("audit,", (0.35, 0.35, 0.38)),
        ]:
            with self.subTest(text):
                counts = colors(self.report("typical"), boxes[text], resolution=600)
                counts.pop((255, 255, 255), None)
                most = max(counts, key=counts.get)
                for channel, part in zip(most, wanted):
                    self.assertAlmostEqual(channel, 255 * part, delta=1.5)

    def test_text_starts_at_the_frame_and_the_footer_stands_below_it(self):
        page = words(self.report("typical"))[0]
        title = page[0][1]
        self.assertAlmostEqual(title[0], 54, delta=0.5)
        self.assertGreaterEqual(title[1], 54 - 1)
        footer = next(box for text, box in page if text == "audit,")
        self.assertLess(footer[1], PAGE_HEIGHT - 40)
        self.assertGreater(footer[3], PAGE_HEIGHT - 40)

    def test_a_long_list_goes_on_with_a_footer_and_its_number_on_every_page(self):
        pages = words(self.report("pages"))
        self.assertGreater(len(pages), 50)
        for number, page in enumerate(pages, 1):
            text = " ".join(word for word, _ in page)
            footer = f"Quillmark audit, page {number}. {DISCLAIMER}"
            self.assertTrue(text.endswith(footer), text[-99:])

    def test_nothing_is_lost_between_pages(self):
        names = [line for line in lines(self.report("pages")) if line.startswith("Font ")][1:]
        labels = ["Restricted", "Unknown", "Likely OK to embed"]
        expected = [f"Font {number} [{labels[number % 3]}]" for number in range(1, 401)]
        self.assertEqual(names, expected)
        everything = lines(self.report("pages"))
        reasons = sum(max(number % 7 - 1, 0) for number in range(1, 401))
        self.assertEqual(everything.count("- One more reason."), reasons)
        self.assertEqual(sum(line.startswith("PostScript: ") for line in everything), 400)

    def test_a_fonts_name_never_stands_alone_at_the_foot_of_a_page(self):
        for number, page in enumerate(words(self.report("pages"))[:-1], 1):
            body = [(word, box) for word, box in page if box[3] < PAGE_HEIGHT - 66 + 1]
            rows = sorted({round(box[1]) for _, box in body})
            last, last_but_one = (
                " ".join(word for word, box in body if round(box[1]) == row)
                for row in (rows[-1], rows[-2])
            )
            self.assertFalse(last.endswith("]") or last.startswith("The headline"), (number, last))
            self.assertFalse(last_but_one.endswith("]"), (number, last_but_one))

    def test_all_stands_inside_the_frame(self):
        for name in ["typical", "pages", "scripts", "courier"]:
            for number, page in enumerate(words(self.report(name)), 1):
                for word, (left, _, right, bottom) in page:
                    self.assertGreaterEqual(left, FRAME[0] - 0.1, (name, number, word))
                    self.assertLessEqual(right, FRAME[2] + 0.1, (name, number, word))
                    self.assertLessEqual(bottom, PAGE_HEIGHT - 36, (name, number, word))
        for name, pages in [("typical", [1]), ("pages", [1, 2, 9]), ("hostile", range(1, 60, 7))]:
            for page in pages:
                self.assertFalse(drawn_outside(self.report(name), page), (name, page))

    def test_eight_scripts_and_an_emoji_are_drawn_and_found_as_text(self):
        report = self.report("scripts")
        found = " ".join(lines(report))
        # Poppler marks where the reading order turns.
        found = re.sub("[\u202a-\u202e\u2066-\u2069]", "", found)
        names = [
            "思源黑体", "ヒラギノ角ゴ", "나눔고딕", "خط النسخ", "देवनागरी", "Ελληνικά", "Русский",
            "עברית", "Party 🎉",
        ]  # fmt: skip
        for name in names:
            with self.subTest(name):
                self.assertIn(f"{name} [Unknown]", found)
                self.assertIn(f"The headline of {name}.", found)
        for font in run("pdffonts", report).decode().splitlines()[2:]:
            self.assertIn(" yes yes yes ", font)

    def test_an_emoji_has_its_colors(self):
        report = self.report("scripts")
        for number, page in enumerate(words(report), 1):
            boxes = [box for word, box in page if "🎉" in word]
            if boxes:
                single = self.folder / "emoji.pdf"
                run("qpdf", report, "--pages", ".", str(number), "--", single)
                vivid = [c for c in colors(single, boxes[0]) if max(c) - min(c) > 150]
                self.assertGreater(len(vivid), 20)
                return
        self.fail("there is no emoji")

    def test_hostile_names_are_all_there(self):
        found = lines(self.report("hostile"))
        self.assertTrue("The last font [Unknown]" in found)
        text = "".join(found).replace(" ", "")
        self.assertGreaterEqual(text.count("x"), 32_767 * 3)
        self.assertGreaterEqual(text.count("中"), 32_767 * 3)
        self.assertTrue("\ufffd\ufffd\ufffdnul" in text)
        self.assertTrue("line\ufffd\ufffdfeed\ufffdandtab" in text)
        self.assertTrue("\\(escape))([Unknown]" in text)

    def test_the_outline_has_each_font_under_its_verdict(self):
        outline = objects(self.report("pages"))["outlines"]
        self.assertEqual(
            [(entry["title"], len(entry["kids"])) for entry in outline],
            [("Restricted (133)", 133), ("Unknown (134)", 134), ("Likely OK to embed (133)", 133)],
        )
        self.assertEqual([kid["title"] for kid in outline[0]["kids"]][:2], ["Font 3", "Font 6"])
        self.assertTrue(all(not entry["open"] for entry in outline))

    def test_an_outlines_entry_leads_to_the_page_of_its_font(self):
        pages = words(self.report("pages"))
        for entry in objects(self.report("pages"))["outlines"]:
            for kid in entry["kids"]:
                page = pages[kid["destpageposfrom1"] - 1]
                number = kid["title"].removeprefix("Font ")
                starts = [
                    index
                    for index, (word, _) in enumerate(page)
                    if word == "Font" and page[index + 1][0] == number
                ]
                self.assertEqual(len(starts), 1, kid["title"])

    def test_addresses_are_links(self):
        listed = run("pdfinfo", "-url", self.report("typical")).decode().splitlines()[1:]
        found = [line.split(maxsplit=2) for line in listed]
        self.assertEqual(
            found,
            [
                ["1", "Annotation", "https://scripts.sil.org/OFL"],
                ["1", "Annotation", "https://example.com/receipts?id=(7)"],
            ],
        )

    def test_a_link_lies_on_its_address(self):
        page = words(self.report("typical"))[0]
        box = next(box for word, box in page if word == "https://scripts.sil.org/OFL")
        file = json.dumps(objects(self.report("typical")))
        annotations = re.findall(r'"/Rect": \[([^]]*)\]', file)
        left, bottom, right, top = (float(side) for side in annotations[0].split(","))
        self.assertAlmostEqual(left, box[0], delta=1)
        self.assertAlmostEqual(right, box[2], delta=1)
        self.assertAlmostEqual((bottom + top) / 2, PAGE_HEIGHT - (box[1] + box[3]) / 2, delta=3)

    def test_without_its_face_the_report_is_set_in_courier(self):
        self.assertEqual(lines(self.report("courier")), lines(self.report("typical")))
        self.assertNotIn("CourierPrime", run("pdffonts", self.report("courier")).decode())
        printed = self.printed.splitlines()
        self.assertEqual(len(printed), 2)
        for line, name in zip(printed, ["CourierPrime-Regular.ttf", "CourierPrime-Bold.ttf"]):
            self.assertTrue(line.startswith("Quillmark report font: "))
            self.assertIn(name, line)

    def test_a_face_that_cannot_be_read_is_replaced_and_told_where_asked(self):
        told = (self.folder / "diagnostics.txt").read_text().splitlines()
        self.assertEqual(len(told), 1)
        self.assertRegex(told[0], "^Quillmark report font: CourierPrime-Bold.ttf ")
        fonts = run("pdffonts", self.report("broken")).decode()
        self.assertIn("+CourierPrime-Regular", fonts)
        self.assertNotIn("+CourierPrime-Bold", fonts)

    def moved(self, name, with_module):
        """The samples' program with its files, somewhere else."""
        place = self.folder / name
        source = Path(SAMPLES).parent.parent
        shutil.copytree(FONTS, place / "share/quillmark/Fonts")
        if with_module:
            shutil.copytree(source / "lib/quillmark", place / "lib/quillmark")
        (place / "bin").mkdir()
        (place / "reports").mkdir()
        program = shutil.copy(SAMPLES, place / "bin")
        return run(program, place / "reports").decode(), place / "reports"

    def test_a_program_that_was_moved_finds_its_files(self):
        printed, reports = self.moved("moved", with_module=True)
        self.assertEqual(len(printed.splitlines()), 2, printed)  # of the report without its face
        for name in ["typical.pdf", "scripts.pdf"]:
            self.assertEqual(lines(reports / name)[4:], lines(self.folder / name)[4:])
            self.assertIn("+CourierPrime-Regular", run("pdffonts", reports / name).decode())

    def test_without_pango_other_scripts_are_still_found_as_text(self):
        printed, reports = self.moved("alone", with_module=False)
        self.assertIn("Quillmark report font: Pango is missing;", printed)
        self.assertIn("思源黑体 [Unknown]", lines(reports / "scripts.pdf"))
        self.assertIn("Party 🎉 [Unknown]", lines(reports / "scripts.pdf"))

    def test_the_reports_own_fonts_are_likely_ok(self):
        for options in [["--fonts", FONTS], []]:
            output = run(
                PROGRAM, "check", self.report("typical"), "--no-installed", "--format", "json", *options
            )
            found = {
                row["facts"]["postScriptName"]: row["assessment"]["verdict"]
                for row in json.loads(output)["lists"][0]["rows"]
            }
            self.assertEqual(set(found.values()), {"likelyOK"}, found)
            if options:
                self.assertEqual(set(found), {"CourierPrime-Regular", "CourierPrime-Bold"})


if __name__ == "__main__":
    unittest.main(argv=[sys.argv[0], *sys.argv[4:]])
