"""Makes the small world of fonts and documents in which the window is checked.

usage: fixtures.py FOLDER

In FOLDER: fonts.conf, for FONTCONFIG_FILE, with which just the fonts of "installed" are installed;
"more", a folder of further fonts; "empty", one without any; and PDFs in "documents".
"""

import shutil
import sys
from pathlib import Path

from fontTools.fontBuilder import FontBuilder
from fontTools.pens.ttGlyphPen import TTGlyphPen
from reportlab.pdfbase import pdfmetrics
from reportlab.pdfbase.ttfonts import TTFont
from reportlab.pdfgen.canvas import Canvas

# The window's own text is set in this one.
TEXT_FONT = Path("/usr/share/fonts/truetype/dejavu/DejaVuSans.ttf")
LETTERS = "ABCDEFGHIJKLMNOPQRSTUVWXYZ"

OPEN_LICENSE = ("This Font Software is licensed under the SIL Open Font License, Version 1.1. "
                "This license is available with a FAQ at: https://openfontlicense.org")
LONG_LICENSE = OPEN_LICENSE + "\n\n" + "\n\n".join(
    f"{number}) Neither the Font Software nor any of its individual components, in Original or "
    "Modified Versions, may be sold by itself. Redistribution is permitted when each copy contains "
    "the above copyright notice and this license."
    for number in range(1, 31))

# Family, style, fsType, further names.
INSTALLED = [
    ("Alder Grotesk", "Regular", 0x0000, {
        "copyright": "Copyright 2024 The Alder Project Authors",
        "licenseDescription": LONG_LICENSE,
        "licenseInfoURL": "https://openfontlicense.org",
        "designer": "Anna Alder",
    }),
    ("Alder Grotesk", "Bold", 0x0000, {"licenseDescription": OPEN_LICENSE}),
    ("Brook Serif", "Regular", 0x0002, {
        "copyright": "© Brook Type & Co.",
        "manufacturer": "Brook Type & Co.",
        "licenseInfoURL": "https://example.org/brook?a=1&b=2",
    }),
    ("Cedar Mono", "Regular", 0x0004, {"manufacturer": "abcd Foundry"}),
    ("Dogwood 日本語", "Regular", 0x0008, {"psName": "Dogwood-Regular"}),
    ("Zapfino", "Regular", 0x0000, {"copyright": "Copyright Apple Inc."}),
]
MORE = [
    ("Elm", "Regular", 0x0000, {"licenseDescription": OPEN_LICENSE}),
    ("Fir", "Regular", 0x0002, {}),
]


def letter(width, bar):
    pen = TTGlyphPen(None)
    for left, right in ((50, 50 + bar), (width - 50 - bar, width - 50)):
        pen.moveTo((left, 0))
        pen.lineTo((left, 700))
        pen.lineTo((right, 700))
        pen.lineTo((right, 0))
        pen.closePath()
    return pen.glyph()


def write_font(path, family, style, fs_type, names, vendor="TEST"):
    path.parent.mkdir(parents=True, exist_ok=True)
    full = family if style == "Regular" else f"{family} {style}"
    glyphs = [".notdef", "space", *LETTERS]
    builder = FontBuilder(1000, isTTF=True)
    builder.setupGlyphOrder(glyphs)
    builder.setupCharacterMap({32: "space", **{ord(c): c for c in LETTERS}})
    builder.setupGlyf({name: letter(600, 60 + 5 * at) for at, name in enumerate(glyphs)})
    builder.setupHorizontalMetrics({name: (600, 50) for name in glyphs})
    builder.setupHorizontalHeader(ascent=800, descent=-200)
    builder.setupNameTable({
        "familyName": family,
        "styleName": style,
        "fullName": full,
        "psName": f"{family.replace(' ', '')}-{style}",
        "version": "Version 1.000",
        **names,
    }, mac=False)
    builder.setupOS2(sTypoAscender=800, usWinAscent=800, usWinDescent=200, fsType=fs_type,
                     achVendID=vendor)
    builder.setupPost()
    builder.save(path)
    return path


def write_fonts(folder, fonts):
    return [write_font(folder / f"{family.split()[0]}-{style}.ttf", family, style, fs_type, names)
            for family, style, fs_type, names in fonts]


BLANK_PDF = """%PDF-1.4
1 0 obj <</Type /Catalog /Pages 2 0 R>> endobj
2 0 obj <</Type /Pages /Kids [3 0 R] /Count 1>> endobj
3 0 obj <</Type /Page /Parent 2 0 R /MediaBox [0 0 300 300]>> endobj
trailer <</Root 1 0 R>>
"""


def write_pdf(path, fonts, password=None):
    """A page for each font, which is embedded. Courier, which every page names, is not."""
    canvas = Canvas(str(path), invariant=1, initialFontName="Courier", encrypt=password)
    for font in fonts:
        pdfmetrics.registerFont(TTFont(str(font), str(font)))
        canvas.setFont(str(font), 20)
        canvas.drawString(72, 720, "QUILL")
        canvas.showPage()
    canvas.save()


def main(folder):
    (folder / "installed").mkdir(parents=True)
    (folder / "empty").mkdir()
    shutil.copy(TEXT_FONT, folder / "installed")
    installed = {path.stem: path for path in write_fonts(folder / "installed", INSTALLED)}
    more = {path.stem: path for path in write_fonts(folder / "more", MORE)}
    (folder / "fonts.conf").write_text(f"""<?xml version="1.0"?>
<!DOCTYPE fontconfig SYSTEM "urn:fontconfig:fonts.dtd">
<fontconfig>
  <dir>{folder}/installed</dir>
  <cachedir>{folder}/cache</cachedir>
  <alias><family>sans-serif</family><prefer><family>DejaVu Sans</family></prefer></alias>
  <alias><family>monospace</family><prefer><family>DejaVu Sans</family></prefer></alias>
</fontconfig>
""", encoding="utf-8")
    documents = folder / "documents"
    documents.mkdir()
    write_pdf(documents / "My Flyer.pdf",
              [installed["Brook-Regular"], installed["Alder-Regular"], more["Fir-Regular"]])
    write_pdf(documents / "Kärtchen.PDF", [installed["Alder-Regular"]])
    write_pdf(documents / "Elm.pdf", [more["Elm-Regular"]])
    write_pdf(documents / "Locked.pdf", [more["Elm-Regular"]], password="secret")
    (documents / "Blank.pdf").write_text(BLANK_PDF, encoding="ascii")
    (documents / "Damaged.pdf").write_text("no PDF at all", encoding="utf-8")
    (documents / "Letter.docx").write_text("no PDF either", encoding="utf-8")
    (documents / "receipt.txt").write_text("paid", encoding="utf-8")
    (documents / "invoice.txt").write_text("to be paid", encoding="utf-8")


if __name__ == "__main__":
    if len(sys.argv) != 2:
        sys.exit(__doc__)
    main(Path(sys.argv[1]))
