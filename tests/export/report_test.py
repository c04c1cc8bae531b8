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
import unicodedata
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
    return json.loads(run("qpdf", "--json=1", report))


def shown(report):
    """For each page what its operators show, in their order: the face without its prefix, its size,
    the colour, and where it starts, in points from the lower left corner."""
    file = objects(report)
    everything = file["objects"]
    root = everything[everything["trailer"]["/Root"]]
    resources = everything[everything[root["/Pages"]]["/Resources"]]
    faces = {
        name: everything[font]["/BaseFont"].split("+")[1]
        for name, font in resources["/Font"].items()
    }
    return [shown_by(content(report, page["contents"][0]), faces) for page in file["pages"]]


def content(report, reference):
    number = reference.split()[0]
    return run("qpdf", f"--show-object={number}", "--filtered-stream-data", report)


def shown_by(operators, faces):
    found, operands = [], []
    # A string is one token; what is in it may look like operators.
    for token in re.findall(rb"\((?:\\.|[^\\)])*\)|[^\s()]+", operators, re.S):
        if token == b"BT":
            x = y = 0
        elif token == b"Tf":
            font, size = faces[operands[-2].decode()], float(operands[-1])
        elif token == b"rg":
            color = tuple(float(part) for part in operands[-3:])
        elif token == b"Td":
            x, y = x + float(operands[-2]), y + float(operands[-1])
        elif token == b"Tj":
            found.append((font, size, color, round(x, 3), round(y, 3)))
        operands = [] if token.isalpha() else [*operands, token]
    return found


REGULAR, BOLD = "CourierPrime-Regular", "CourierPrime-Bold"
BLACK, GREY = (0.08, 0.08, 0.1), (0.35, 0.35, 0.38)
RESTRICTED, UNKNOWN, LIKELY_OK = (0.75, 0.15, 0.12), (0.7, 0.45, 0.0), (0.1, 0.5, 0.25)


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

    def test_each_line_has_its_face_size_and_color(self):
        by_line = {}
        for font, size, color, _, y in shown(self.report("typical"))[0]:
            by_line.setdefault(y, []).append((font, size, color))
        emphasised = (BOLD, 9.5, BLACK)
        text, note = (REGULAR, 9, BLACK), (REGULAR, 9, GREY)
        summary = [
            emphasised, (BOLD, 9.5, RESTRICTED), emphasised, (BOLD, 9.5, UNKNOWN), emphasised,
            (BOLD, 9.5, LIKELY_OK), emphasised,
        ]  # fmt: skip
        title, subtitle, check, disclaimer = [(BOLD, 16, BLACK)], [text], [note], [[note]] * 3
        footer = [(REGULAR, 7.5, GREY)]
        expected = [title, subtitle, check, summary, *disclaimer]
        for verdict, reasons, facts in [(RESTRICTED, 3, 2), (UNKNOWN, 1, 2), (LIKELY_OK, 1, 9)]:
            expected.append([emphasised, (BOLD, 9.5, verdict)])
            expected += [[text]] * (1 + reasons) + [[note]] * facts
        self.assertEqual([by_line[y] for y in sorted(by_line, reverse=True)], [*expected, footer])

    def test_four_fonts_at_their_sizes_and_five_colors_are_all(self):
        fonts, colors_seen = set(), set()
        for page in shown(self.report("pages")):
            for font, size, color, _, _ in page:
                fonts.add((font, size))
                colors_seen.add(color)
        self.assertEqual(fonts, {(REGULAR, 9), (BOLD, 9.5), (BOLD, 16), (REGULAR, 7.5)})
        self.assertEqual(colors_seen, {BLACK, GREY, RESTRICTED, UNKNOWN, LIKELY_OK})

    def test_the_footer_stands_forty_points_above_the_edge_and_all_else_in_the_frame(self):
        for *body, footer in shown(self.report("pages")):
            self.assertEqual(footer, (REGULAR, 7.5, GREY, 54, 40))
            for _, size, _, x, y in body:
                self.assertGreaterEqual(x, 54)
                self.assertLess(x, 54 + 504)
                self.assertGreater(y, 66)
                self.assertLess(y, 66 + 672 - size / 2)

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

    def test_a_letter_and_its_mark_are_drawn_as_the_letter_that_the_reports_face_has(self):
        report = self.report("known-letters")
        self.assertIn("Grüße Été [Unknown]", unicodedata.normalize("NFC", " ".join(lines(report))))
        faces = {line.split()[0].split("+")[1] for line in
                 run("pdffonts", report).decode().splitlines()[2:]}  # fmt: skip
        self.assertEqual(faces, {"CourierPrime-Regular", "CourierPrime-Bold"})

    def test_a_mark_that_the_reports_face_has_not_stands_on_its_letter(self):
        report = self.report("other-letters")
        name = "Xox\u030cyx"
        self.assertIn(f"{name} [Unknown]", " ".join(lines(report)))
        left, top, right, bottom = dict(words(report)[0])[name]
        advance = (right - left) / 5
        # Above the small letters there is nothing but the mark.
        heights = (top, top + (bottom - top) * 0.25)
        inked = [
            len(colors(report, (left + at * advance, heights[0], left + (at + 1) * advance,
                                heights[1]))) > 1
            for at in range(1, 5)
        ]  # fmt: skip
        self.assertEqual(inked, [False, True, False, False])

    def test_many_ideographs_are_copied_drawn_and_found_as_text(self):
        report = self.report("ideographs")
        text = "".join(lines(report)).replace(" ", "")
        self.assertIn("".join(chr(0x4E00 + number) for number in range(1500)), text)
        embedded = run("pdffonts", report).decode().splitlines()[2:]
        self.assertTrue(any("CID TrueType" in line for line in embedded), embedded)
        self.assertTrue(all(" yes yes yes " in line for line in embedded), embedded)
        box = next(box for word, box in words(report)[0] if word.startswith(chr(0x4E00)))
        # As much ink as a page of text has, on each part of the line.
        width = (box[2] - box[0]) / 10
        for part in range(10):
            left = box[0] + part * width
            counts = colors(report, (left, box[1], left + width, box[3]))
            dark = sum(count for color, count in counts.items() if max(color) < 128)
            self.assertGreater(dark / sum(counts.values()), 0.05, part)
        # The first is one level stroke, the second one bent stroke below it on both sides.
        glyph = (box[3] - box[1]) * 0.8
        middle = (box[1] + box[3]) / 2
        above = colors(report, (box[0] + 1, box[1], box[0] + glyph - 1, middle - 2))
        self.assertTrue(all(min(color) > 128 for color in above), above)

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

    def scanned(self, name, fonts, **variables):
        """A report on the report's own face, with a note in several scripts, made where the system's
        fonts are those that `fonts` says."""
        settings = self.folder / f"{name}.conf"
        settings.write_text(
            '<?xml version="1.0"?><!DOCTYPE fontconfig SYSTEM "urn:fontconfig:fonts.dtd">'
            f"<fontconfig>{fonts}</fontconfig>"
        )
        notes = self.folder / f"{name}.json"
        note = {
            "boughtFrom": "思源黑体", "license": "notSet", "url": "", "text": "Ελλάς देवनागरी 🎉",
            "updated": "2026-03-14T09:26:53Z",
        }  # fmt: skip
        notes.write_text(json.dumps({"notes": {REGULAR: note}}))
        report = self.folder / f"{name}-scanned.pdf"
        result = subprocess.run(
            [PROGRAM, "scan", FONTS, "--format", "pdf", "--notes", notes, "--output", report],
            env={**os.environ, "FONTCONFIG_FILE": str(settings), **variables},
            capture_output=True,
            timeout=TIME_LIMIT,
            check=False,
        )
        self.assertEqual(result.returncode, 0, result.stderr)
        self.assertEqual(result.stdout, b"")
        self.assertNotIn("WARNING", run("qpdf", "--check", report).decode())
        text = " ".join(lines(report))
        self.assertIn("Your note: from 思源黑体; Ελλάς देवनागरी 🎉", text)
        self.assertIn("Courier Prime Bold [Likely OK to embed]", text)
        return run("pdffonts", report).decode(), report, result.stderr.decode()

    def test_a_system_without_fonts_has_the_whole_text_in_the_reports_face(self):
        (self.folder / "no fonts").mkdir()
        fonts, report, told = self.scanned("none", f"<dir>{self.folder / 'no fonts'}</dir>")
        self.assertEqual(told, "")
        self.assertEqual(set(re.findall(r"\+(\S+)", fonts)), {REGULAR, BOLD})
        page = words(report)[0]
        box = next(box for word, box in page if word.startswith("思源黑体"))
        self.assertGreater(len(colors(report, box)), 2)  # boxes, where nothing would be a lie

    def test_caches_that_cannot_be_written_change_nothing(self):
        system = "<dir>/usr/share/fonts</dir><cachedir>/dev/null/cache</cachedir>"
        nowhere = {"HOME": "/dev/null", "XDG_CACHE_HOME": "/dev/null"}
        fonts, _, _ = self.scanned("uncached", system, **nowhere)
        self.assertGreater(len(set(re.findall(r"\+(\S+)", fonts))), 2)

    def devanagari(self, folder, name, fs_type):
        """A font with Devanagari in `folder` that says `fs_type` of embedding; `name` is of five
        letters, for the start of its PostScript name."""
        path = run("fc-match", "--format", "%{file}", "Lohit Devanagari").decode()
        font = bytearray(Path(path).read_bytes())
        tables = {
            font[at : at + 4].decode(): int.from_bytes(font[at + 8 : at + 12], "big")
            for at in range(12, 12 + 16 * int.from_bytes(font[4:6], "big"), 16)
        }
        font[tables["OS/2"] + 8 : tables["OS/2"] + 10] = fs_type.to_bytes(2, "big")
        for encoding in ["latin-1", "utf-16-be"]:
            font = font.replace("Lohit".encode(encoding), name.encode(encoding))
        folder.mkdir(exist_ok=True)
        (folder / f"{name}.ttf").write_bytes(font)

    def test_only_fonts_that_allow_it_are_embedded(self):
        forbidding = {"Restricted": 0x0002, "No subsetting": 0x0100, "Bitmaps": 0x0200}
        for forbidden, allowed in [("Alder", "Birch"), ("Birch", "Alder")]:
            for kind, fs_type in forbidding.items():
                with self.subTest(kind=kind, forbidden=forbidden):
                    folder = self.folder / f"{kind} {forbidden}"
                    self.devanagari(folder, forbidden, fs_type)
                    self.devanagari(folder, allowed, 0x0004)
                    fonts, _, _ = self.scanned(folder.name, f"<dir>{folder}</dir>")
                    names = set(re.findall(r"\+(\S+)", fonts)) - {REGULAR, BOLD}
                    self.assertEqual(names, {f"{allowed}-Devanagari"})

    def collected(self, folder, fonts):
        """Puts fonts of `folder` into one collection there, in their place."""
        collection = bytearray(b"ttcf" + bytes([0, 1, 0, 0]) + len(fonts).to_bytes(4, "big"))
        starts = len(collection)
        collection += bytes(4 * len(fonts))
        for index, font in enumerate(fonts):
            start = len(collection)
            collection[starts + 4 * index : starts + 4 * index + 4] = start.to_bytes(4, "big")
            data = bytearray(font.read_bytes())
            for at in range(12, 12 + 16 * int.from_bytes(data[4:6], "big"), 16):
                offset = start + int.from_bytes(data[at + 8 : at + 12], "big")
                data[at + 8 : at + 12] = offset.to_bytes(4, "big")
            collection += data + bytes(-len(data) % 4)
            font.unlink()
        (folder / f"{fonts[0].stem}.ttc").write_bytes(collection)

    def test_a_collection_with_a_font_that_forbids_it_is_not_embedded(self):
        for forbidden, allowed in [("Alder", "Birch"), ("Birch", "Alder")]:
            with self.subTest(forbidden=forbidden):
                folder = self.folder / f"Collected {forbidden}"
                self.devanagari(folder, forbidden, 0x0002)
                self.devanagari(folder, "Cedar", 0x0002)
                self.collected(folder, [folder / f"{forbidden}.ttf", folder / "Cedar.ttf"])
                self.devanagari(folder, allowed, 0x0004)
                fonts, _, _ = self.scanned(folder.name, f"<dir>{folder}</dir>")
                names = set(re.findall(r"\+(\S+)", fonts)) - {REGULAR, BOLD}
                self.assertEqual(names, {f"{allowed}-Devanagari"})

    def test_text_that_only_a_restricted_font_has_is_boxes_and_found(self):
        self.devanagari(self.folder / "only", "Alder", 0x0002)
        fonts, _, _ = self.scanned("only", f"<dir>{self.folder / 'only'}</dir>")
        self.assertEqual(set(re.findall(r"\+(\S+)", fonts)), {REGULAR, BOLD})

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
