#!/usr/bin/python3
"""Makes what scripts/demo cannot take from a package.

usage: demo-files.py FONT-FOLDER PDF

In FONT-FOLDER, copies of two of its fonts whose embedding bits forbid embedding: Debian ships no
such font. And PDF, two pages as somebody who sells printables might make them: a headline in a font
that the PDF only names, text in an embedded font that is installed, and lines in fonts that are
only in the folder.
"""

import struct
import sys
from pathlib import Path

from reportlab.lib.pagesizes import A5
from reportlab.pdfbase import pdfmetrics
from reportlab.pdfbase.ttfonts import TTFont
from reportlab.pdfgen.canvas import Canvas

RESTRICTED_LICENSE_EMBEDDING = 0x0002
FS_TYPE_OFFSET = 8


def restricted_copy(source, target):
    """Copies a TrueType or OpenType file and sets its fsType to Restricted License embedding."""
    data = bytearray(source.read_bytes())
    (table_count,) = struct.unpack_from(">H", data, 4)
    for record in range(12, 12 + 16 * table_count, 16):
        tag, _, offset, _ = struct.unpack_from(">4sIII", data, record)
        if tag == b"OS/2":
            struct.pack_into(">H", data, offset + FS_TYPE_OFFSET, RESTRICTED_LICENSE_EMBEDDING)
            target.parent.mkdir(exist_ok=True)
            target.write_bytes(data)
            return target
    raise ValueError(f"{source} has no OS/2 table")


def register(name, file):
    pdfmetrics.registerFont(TTFont(name, str(file)))
    return name


def make_pdf(output, fonts, restricted):
    installed = register("installed", "/usr/share/fonts/truetype/dejavu/DejaVuSerif.ttf")
    light = register("light", fonts / "fonts-open-sans/OpenSans-Light.ttf")
    hand = register("hand", fonts / "fonts-dustin/Domestic_Manners.ttf")
    forbidden = register("forbidden", restricted)

    canvas = Canvas(str(output), pagesize=A5, invariant=1, initialFontName="Times-Roman")
    canvas.setFont("Times-Roman", 28)
    canvas.drawString(50, 500, "Spring sale")
    canvas.setFont(installed, 12)
    canvas.drawString(50, 460, "Posters, cards and worksheets at half the price.")
    canvas.showPage()
    for height, font, text in (
            (500, light, "Until the end of May."),
            (460, hand, "See you there!"),
            (420, forbidden, "Quillmark Street 1")):
        canvas.setFont(font, 12)
        canvas.drawString(50, height, text)
    canvas.save()


def main():
    if len(sys.argv) != 3:
        print(__doc__, file=sys.stderr)
        return 2
    fonts, pdf = Path(sys.argv[1]), Path(sys.argv[2])
    own = fonts / "restricted-copies"
    restricted_copy(fonts / "fonts-ebgaramond/EBGaramond12-Bold.otf", own / "EBGaramond12-Bold.otf")
    restricted = restricted_copy(fonts / "fonts-beteckna/Beteckna.ttf", own / "Beteckna.ttf")
    make_pdf(pdf, fonts, restricted)
    return 0


if __name__ == "__main__":
    sys.exit(main())
