"""The PDF makers that stand in every test run, and what each is asked to write.

Each is a program of Debian's as people use it. Together they write every kind of embedded program
that a document can hold, in the ways that differ between makers: subsets and whole fonts, one
resource dictionary for the document or one for each page, object streams and none, encryption.
"""

import os
import shutil
import subprocess
import sys
from collections.abc import Callable
from dataclasses import dataclass, field, replace
from pathlib import Path

from fonts import P052, SYSTEM

TIME_LIMIT = 300  # seconds; far more than any maker takes


@dataclass(frozen=True)
class Document:
    """A document, with what is known of it besides what pdffonts tells."""

    path: Path
    pages: int
    programs: set[str]  # the kinds that it was made to hold
    # Verdicts of embedded fonts that match none of the known ones; those not named are unknown.
    verdicts: dict[str, str] = field(default_factory=dict)
    # Fonts of a form within a form that several pages share: that place tells the first page only.
    nested: set[str] = field(default_factory=set)
    # Type 3 fonts that only their descriptors name, with their pages.
    described: dict[str, set[int]] = field(default_factory=dict)
    # The document whose fonts this one holds in another form, and the bytes that show the form.
    variant_of: "Document | None" = None
    mark: bytes = b""
    locked: bool = False  # it does not open without a password


class Workshop:
    """Where documents are made: a folder with the fonts, and the environment for the makers."""

    def __init__(self, folder: Path, environment: dict[str, str]):
        self.folder = folder
        self.environment = environment

    def path(self, name: str) -> Path:
        return self.folder / name

    def font(self, file_name: str) -> Path:
        return self.folder / "fonts" / file_name

    def write(self, name: str, text: str) -> Path:
        self.path(name).write_text(text, encoding="utf-8")
        return self.path(name)

    def run(self, *command: str | Path, output: Path | None = None) -> None:
        """Runs a maker; ends everything, with what it said, when it fails or is not there."""
        program = str(command[0])
        if shutil.which(program) is None:
            raise SystemExit(f"{program} is missing: install {PACKAGES.get(program, program)}")
        result = subprocess.run(
            [str(word) for word in command],
            cwd=self.folder,
            env={**os.environ, "LC_ALL": "C.UTF-8", **self.environment},
            stdin=subprocess.DEVNULL,
            capture_output=True,
            timeout=TIME_LIMIT,
            check=False,
        )
        if result.returncode != 0:
            said = (result.stdout + result.stderr).decode("utf-8", "replace")
            raise SystemExit(f"{program} failed ({result.returncode}):\n{said}")
        if output is not None:
            output.write_bytes(result.stdout)


PACKAGES = {
    "groff": "groff",
    "gs": "ghostscript",
    "pango-view": "pango1.0-tools",
    "pdffonts": "poppler-utils",
    "podofotxt2pdf": "libpodofo-utils",
    "qpdf": "qpdf",
    "rsvg-convert": "librsvg2-bin",
    "weasyprint": "weasyprint",
}


def pango(shop: Workshop) -> list[Document]:
    """Pango and Cairo: subsets as simple fonts, whose TrueType programs have lost their names."""
    faces = ("DejaVu Sans", "DejaVu Sans Bold", "Cantarell", "Goudy Bookletter 1911", "OCRA")
    markup = "\n".join(f'<span font="{face}">{face}</span>' for face in faces)
    path = shop.path("pango.pdf")
    shop.run("pango-view", "--no-display", "--markup", f"--text={markup}", f"--output={path}")
    return [Document(path, pages=1, programs={"trueType", "cff"})]


SVG = """<svg xmlns="http://www.w3.org/2000/svg" width="400" height="100">
<text x="10" y="50" font-size="20">{text}</text>
</svg>
"""


def librsvg(shop: Workshop) -> list[Document]:
    """librsvg: a page for each drawing, fonts shared between pages."""
    serif = '<tspan font-family="DejaVu Serif">Serif</tspan>'
    others = '<tspan font-family="Cantarell">Cantarell</tspan><tspan font-family="OCRA">OCRA</tspan>'
    drawings = [
        shop.write(f"{page}.svg", SVG.format(text=text))
        for page, text in enumerate((serif, others, serif + others), start=1)
    ]
    path = shop.path("librsvg.pdf")
    shop.run("rsvg-convert", "--format=pdf", f"--output={path}", *drawings)
    return [Document(path, pages=3, programs={"trueType", "cff"})]


POSTSCRIPT = """%!PS-Adobe-3.0
/DejaVuSans 20 selectfont 50 700 moveto (DejaVu Sans) show
/Helvetica 20 selectfont 50 650 moveto (Helvetica) show
showpage
8 dict begin
/FontType 3 def
/FontMatrix [0.001 0 0 0.001 0 0] def
/FontBBox [0 0 750 750] def
/Encoding 256 array def
0 1 255 { Encoding exch /.notdef put } for
Encoding 97 /square put
/CharProcs 2 dict def
CharProcs begin
/.notdef { } def
/square { 0 0 moveto 750 0 lineto 750 750 lineto 0 750 lineto closepath fill } def
end
/BuildGlyph {
  1000 0 0 0 750 750 setcachedevice
  exch /CharProcs get exch 2 copy known not { pop /.notdef } if get exec
} bind def
/BuildChar { 1 index /Encoding get exch get 1 index /BuildGlyph get exec } bind def
currentdict end
/Squares exch definefont pop
/Squares 20 selectfont 50 700 moveto (aaa) show
showpage
/P052-Roman 20 selectfont 50 700 moveto (P052) show
/Helvetica 20 selectfont 50 650 moveto (Helvetica) show
/DejaVuSans 20 selectfont 50 600 moveto (DejaVu Sans) show
showpage
"""


def ghostscript(shop: Workshop) -> list[Document]:
    """Ghostscript: Type 1 fonts as CFF, a Type 3 font without a name, with and without embedding."""
    source = shop.write("ghostscript.ps", POSTSCRIPT)

    def convert(name: str, *options: str) -> Path:
        path = shop.path(name)
        shop.run(
            "gs",
            "-q",
            "-dBATCH",
            "-dNOPAUSE",
            "-dSAFER",
            f"-sFONTPATH={shop.path('fonts')}",
            "-sDEVICE=pdfwrite",
            *options,
            f"-sOutputFile={path}",
            source,
        )
        return path

    return [
        Document(
            convert("ghostscript.pdf"),
            pages=3,
            programs={"trueType", "cff", "type3", "notEmbedded"},
        ),
        Document(
            # Also the standard fonts are embedded, as their clones and under their own names. (This
            # one's is that of a font that comes with a system.)
            convert("ghostscript-prepress.pdf", "-dPDFSETTINGS=/prepress"),
            pages=3,
            programs={"trueType", "cff", "type3"},
            verdicts={"Helvetica": "restricted"},
        ),
        Document(
            convert("ghostscript-none-embedded.pdf", "-dEmbedAllFonts=false"),
            pages=3,
            programs={"type3", "notEmbedded"},
        ),
        Document(
            convert("ghostscript-whole-fonts.pdf", "-dSubsetFonts=false", "-dCompatibilityLevel=1.2"),
            pages=3,
            programs={"trueType", "cff", "type3", "notEmbedded"},
        ),
    ]


ROFF = """.fam T
Times, \\fBbold\\fP, \\fIitalic\\fP, \\(*a from Symbol, \\f[HR]Helvetica\\fP
.bp
.fam C
Courier
.bp
\\f[PR]Palatino\\fP
"""


def groff(shop: Workshop) -> list[Document]:
    """groff: the standard fonts by name alone, or embedded as Type 1 programs of other names."""
    source = shop.write("groff.roff", ROFF)
    named, embedded = shop.path("groff.pdf"), shop.path("groff-embedded.pdf")
    shop.run("groff", "-Tpdf", source, output=named)
    shop.run("groff", "-Tpdf", "-P-e", source, output=embedded)
    return [
        Document(named, pages=3, programs={"type1", "notEmbedded"}),
        Document(embedded, pages=3, programs={"type1"}),
    ]


REPORTLAB = """
import sys
from reportlab.pdfbase import pdfmetrics
from reportlab.pdfbase.cidfonts import UnicodeCIDFont
from reportlab.pdfbase.ttfonts import TTFont
from reportlab.pdfgen.canvas import Canvas

path, fonts, metrics = sys.argv[1:]
pdfmetrics.registerFont(TTFont("Sans", fonts + "/DejaVuSans.ttf"))
pdfmetrics.registerFont(TTFont("OCRA", fonts + "/OCRA.ttf"))
pdfmetrics.registerFont(UnicodeCIDFont("HeiseiMin-W3"))
face = pdfmetrics.EmbeddedType1Face(metrics, fonts + "/P052-Roman.pfb")
pdfmetrics.registerTypeFace(face)
pdfmetrics.registerFont(pdfmetrics.Font("P052", "P052-Roman", "WinAnsiEncoding"))

canvas = Canvas(path)
canvas.setFont("Sans", 12)
# More characters than one simple font can encode: two subsets of one font.
canvas.drawString(50, 700, "".join(map(chr, range(0x21, 0x180))))
canvas.setFont("OCRA", 12)
canvas.drawString(50, 650, "OCRA")
canvas.showPage()
canvas.setFont("HeiseiMin-W3", 12)
canvas.drawString(50, 700, "\\u65e5\\u672c")
canvas.showPage()
canvas.setFont("P052", 12)
canvas.drawString(50, 700, "P052")
canvas.acroForm.textfield(name="field", value="text", x=50, y=600, fontName="Courier")
canvas.save()
"""


def reportlab(shop: Workshop) -> list[Document]:
    """ReportLab: one resource dictionary for all pages, Type 1 programs, a CJK font that is only
    named, and Courier only in the appearance of a form's field."""
    script = shop.write("with_reportlab.py", REPORTLAB)
    path = shop.path("reportlab.pdf")
    metrics = (SYSTEM / P052.source).with_suffix(".afm")
    if not metrics.exists():
        metrics = SYSTEM / "type1/urw-base35/P052-Roman.afm"
    found = subprocess.run(
        [sys.executable, "-c", "import reportlab"], capture_output=True, check=False
    )
    if found.returncode != 0:
        raise SystemExit("reportlab is missing: install python3-reportlab")
    shop.run(sys.executable, script, path, shop.path("fonts"), metrics)
    return [Document(path, pages=3, programs={"trueType", "type1", "notEmbedded"})]


HTML = """<!DOCTYPE html>
<meta charset="utf-8">
<style>
@page { size: A6 }
@font-face { font-family: Letter; src: url(fonts/GoudyBookletter1911.otf) }
@font-face { font-family: Machine; src: url(fonts/OCRA.ttf) }
p { break-after: page }
</style>
<p style="font-family: 'DejaVu Sans'">DejaVu Sans, <b>bold</b></p>
<p style="font-family: Cantarell">Cantarell, <b>bold</b>,
<span style="font-family: Letter">Goudy Bookletter</span></p>
<p style="font-family: Machine">OCRA</p>
"""


def weasyprint(shop: Workshop) -> list[Document]:
    """WeasyPrint: composite fonts, CFF inside OpenType, and names made of what the page calls the
    family, so that fonts match by family or not at all."""
    source = shop.write("weasyprint.html", HTML)
    path = shop.path("weasyprint.pdf")
    shop.run("weasyprint", source, path)
    return [
        Document(
            path,
            pages=3,
            programs={"trueType", "openType"},
            verdicts={"Machine": "restricted"},
        )
    ]


def podofo(shop: Workshop) -> list[Document]:
    """PoDoFo: a whole TrueType font as a composite font."""
    source = shop.write("podofo.txt", "PoDoFo\n" * 100)
    path = shop.path("podofo.pdf")
    shop.run("podofotxt2pdf", source, path, "-utf8", "-fontname", "DejaVu Sans")
    return [Document(path, pages=2, programs={"trueType"})]


def qt(shop: Workshop) -> list[Document]:
    """Qt: everything as TrueType, fonts with CFF outlines, too. Written by qt_document.cpp."""
    writer = os.environ.get("QT_DOCUMENT")
    if not writer:
        raise SystemExit("the writer was not built: install qt6-base-dev and configure again")
    path = shop.path("qt.pdf")
    shop.run(Path(writer).absolute(), path)
    return [Document(path, pages=2, programs={"trueType"})]


def qpdf(shop: Workshop) -> list[Document]:
    """qpdf: what other makers wrote, put together, packed, encrypted and laid over one another."""
    parts = [
        *(pango(shop) + librsvg(shop) + reportlab(shop) + weasyprint(shop)),
        ghostscript(shop)[0],
    ]
    together = shop.path("qpdf.pdf")
    shop.run("qpdf", "--empty", "--pages", *[part.path for part in parts], "--", together)
    whole = Document(
        together,
        pages=sum(part.pages for part in parts),
        programs=set().union(*(part.programs for part in parts)),
        verdicts={"Machine": "restricted"},
    )

    def variant(name: str, mark: bytes, *options: str, locked: bool = False) -> Document:
        path = shop.path(f"qpdf-{name}.pdf")
        shop.run("qpdf", *options, together, path)
        return replace(whole, path=path, variant_of=whole, mark=mark, locked=locked)

    def encrypted(
        name: str, bits: str, *options: str, password: str = "", packed: bool = False
    ) -> Document:
        encrypt = ("--allow-weak-crypto", "--encrypt", password, "owner", bits, *options, "--")
        streams = "--object-streams=generate" if packed else "--object-streams=disable"
        return variant(name, b"/Encrypt", *encrypt, streams, locked=bool(password))

    return [
        whole,
        variant("packed", b"/ObjStm", "--object-streams=generate"),
        variant("unpacked", b"\nxref\n", "--object-streams=disable"),
        variant("linearized", b"/Linearized", "--linearize"),
        variant("plain", b"%QDF", "--qdf"),
        encrypted("rc4-40", "40"),
        encrypted("rc4-128", "128", "--use-aes=n"),
        encrypted("aes-128", "128", "--use-aes=y"),
        encrypted("aes-128-packed", "128", "--use-aes=y", packed=True),
        encrypted("aes-256", "256"),
        encrypted("aes-256-first-form", "256", "--force-R5"),
        encrypted("clear-metadata", "256", "--cleartext-metadata"),
        encrypted("rc4-password", "128", "--use-aes=n", password="word"),
        encrypted("aes-128-password", "128", "--use-aes=y", password="word"),
        encrypted("aes-256-password", "256", password="word"),
        *_overlays(shop),
    ]


def _overlays(shop: Workshop) -> list[Document]:
    """A stamp on every page, and a stamp that bears a stamp: forms, and forms within forms."""
    base, stamp, seal = shop.path("librsvg.pdf"), shop.path("pango.pdf"), shop.path("seal.pdf")
    shop.run("rsvg-convert", "--format=pdf", f"--output={seal}", _seal(shop))
    stamped, sealed = shop.path("qpdf-stamped.pdf"), shop.path("sealed.pdf")
    nested = shop.path("qpdf-nested.pdf")
    repeat = ("--from=", "--repeat=1", "--")
    shop.run("qpdf", base, "--overlay", stamp, *repeat, stamped)
    shop.run("qpdf", stamp, "--overlay", seal, *repeat, sealed)
    shop.run("qpdf", base, "--overlay", sealed, *repeat, nested)
    return [
        Document(stamped, pages=3, programs={"trueType", "cff"}),
        Document(
            nested,
            pages=3,
            programs={"trueType", "cff"},
            # What the seal and the stamp below it hold and the base does not.
            nested={"DejaVuSans", "DejaVuSans-Bold", "DejaVuSansMono", "GoudyBookletter1911"},
        ),
    ]


def _seal(shop: Workshop) -> Path:
    return shop.write(
        "seal.svg", SVG.format(text='<tspan font-family="DejaVu Sans Mono">Seal</tspan>')
    )


MAKERS: dict[str, Callable[[Workshop], list[Document]]] = {
    "Cairo": pango,
    "librsvg": librsvg,
    "Ghostscript": ghostscript,
    "groff": groff,
    "ReportLab": reportlab,
    "WeasyPrint": weasyprint,
    "PoDoFo": podofo,
    "Qt": qt,
    "qpdf": qpdf,
}
