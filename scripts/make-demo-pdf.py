#!/usr/bin/python3
"""Makes the PDF that scripts/demo checks.

usage: make-demo-pdf.py FONT-FOLDER OUTPUT

Two pages, as somebody who sells printables might make them: a headline in a font that the PDF only
names, text in an embedded font that is installed, and a line in one that is only in the folder.
"""

import sys
from pathlib import Path

from reportlab.lib.pagesizes import A5
from reportlab.pdfbase import pdfmetrics
from reportlab.pdfbase.ttfonts import TTFont
from reportlab.pdfgen.canvas import Canvas


def register(name, file):
    pdfmetrics.registerFont(TTFont(name, str(file)))
    return name


def main():
    if len(sys.argv) != 3:
        print(__doc__, file=sys.stderr)
        return 2
    fonts, output = Path(sys.argv[1]), sys.argv[2]
    text = register("text", "/usr/share/fonts/truetype/dejavu/DejaVuSerif.ttf")
    hand = register("hand", next(fonts.rglob("OpenSans-Light.ttf")))
    free = register("free", next(fonts.rglob("Domestic_Manners.ttf")))

    canvas = Canvas(output, pagesize=A5, invariant=1)
    canvas.setFont("Helvetica-Bold", 28)
    canvas.drawString(50, 500, "Spring sale")
    canvas.setFont(text, 12)
    canvas.drawString(50, 460, "Posters, cards and worksheets at half the price.")
    canvas.showPage()
    canvas.setFont(hand, 12)
    canvas.drawString(50, 500, "Until the end of May.")
    canvas.setFont(free, 12)
    canvas.drawString(50, 460, "See you there!")
    canvas.save()
    return 0


if __name__ == "__main__":
    sys.exit(main())
