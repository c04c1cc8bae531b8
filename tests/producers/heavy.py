"""PDF makers whose packages take too long to install for every test run; see run-heavy."""

import sys
from collections.abc import Callable

from makers import PACKAGES, Document, Workshop, librsvg

HTML = """<!DOCTYPE html>
<meta charset="utf-8">
<title>Fonts</title>
<style>
@font-face { font-family: Letter; src: url(fonts/GoudyBookletter1911.otf) }
p { break-after: page }
</style>
<p style="font-family: 'DejaVu Sans'">DejaVu Sans, <b>bold</b></p>
<p style="font-family: Cantarell">Cantarell, <b>bold</b>,
<span style="font-family: Letter">Goudy Bookletter</span></p>
<p style="font-family: OCRA">OCRA <span style="font-family: 'DejaVu Sans'">DejaVu Sans</span></p>
"""


def chromium(shop: Workshop) -> list[Document]:
    """Chromium: CFF outlines as Type 3 fonts, whose names stand in their descriptors."""
    source, path = shop.write("chromium.html", HTML), shop.path("chromium.pdf")
    shop.run(
        "chromium",
        "--headless",
        "--no-sandbox",
        "--disable-gpu",
        "--disable-background-networking",
        "--no-first-run",
        f"--user-data-dir={shop.path('chromium-profile')}",
        "--no-pdf-header-footer",
        f"--print-to-pdf={path}",
        source,
    )
    return [
        Document(
            path,
            pages=3,
            programs={"trueType", "type3"},
            described={
                "Cantarell-Regular": {2},
                "Cantarell-Bold": {2},
                "GoudyBookletter1911": {2},
                "OCRA": {3},
            },
        )
    ]


OFFICE = """<?xml version="1.0" encoding="UTF-8"?>
<office:document xmlns:office="urn:oasis:names:tc:opendocument:xmlns:office:1.0"
  xmlns:style="urn:oasis:names:tc:opendocument:xmlns:style:1.0"
  xmlns:text="urn:oasis:names:tc:opendocument:xmlns:text:1.0"
  xmlns:fo="urn:oasis:names:tc:opendocument:xmlns:xsl-fo-compatible:1.0"
  office:mimetype="application/vnd.oasis.opendocument.text" office:version="1.3">
<office:automatic-styles>{styles}</office:automatic-styles>
<office:body><office:text>{paragraphs}</office:text></office:body>
</office:document>
"""
OFFICE_STYLE = """<style:style style:name="P{number}" style:family="paragraph">
<style:paragraph-properties fo:break-after="{then}"/>
<style:text-properties fo:font-family="{family}" fo:font-weight="{weight}"/></style:style>
"""


def libreoffice(shop: Workshop) -> list[Document]:
    """LibreOffice: CFF outlines as Type 1 programs; plainly, and as an archivable document."""
    lines = [
        ("DejaVu Sans", "normal", "auto"),
        ("DejaVu Sans", "bold", "page"),
        ("Cantarell", "normal", "auto"),
        ("Goudy Bookletter 1911", "normal", "page"),
        ("DejaVu Serif", "normal", "auto"),
        ("DejaVu Sans", "normal", "auto"),
    ]
    styles = "".join(
        OFFICE_STYLE.format(number=number, family=family, weight=weight, then=then)
        for number, (family, weight, then) in enumerate(lines)
    )
    paragraphs = "".join(
        f'<text:p text:style-name="P{number}">{family}</text:p>'
        for number, (family, _, _) in enumerate(lines)
    )
    documents = []
    for name, filter_options in (
        ("libreoffice", ""),
        ("libreoffice-archive", ':{"SelectPdfVersion":{"type":"long","value":"2"}}'),
    ):
        source = shop.write(f"{name}.fodt", OFFICE.format(styles=styles, paragraphs=paragraphs))
        shop.run(
            "soffice",
            f"-env:UserInstallation={shop.path('libreoffice-profile').as_uri()}",
            "--headless",
            "--convert-to",
            f"pdf:writer_pdf_Export{filter_options}",
            "--outdir",
            shop.folder,
            source,
        )
        documents.append(Document(shop.path(f"{name}.pdf"), pages=3, programs={"trueType", "type1"}))
    return documents


LATEX = r"""\documentclass{article}
\usepackage[T1]{fontenc}
\usepackage{lmodern}
\usepackage{graphicx}
\begin{document}
Roman, \textbf{bold}, \emph{italic} and $x^2 + \sum_{i=0}^n \alpha_i$.
\newpage
\textsf{Sans}, \texttt{typewriter}, {\fontfamily{ptm}\selectfont Times}
\newpage
\includegraphics[page=2]{librsvg.pdf}
\end{document}
"""


def pdftex(shop: Workshop) -> list[Document]:
    """pdfTeX: Type 1 subsets in object streams, another document's page as a form;
    and the same text by way of a DVI file."""
    librsvg(shop)
    shop.run("pdflatex", "-interaction=batchmode", shop.write("pdftex.tex", LATEX))
    plain = LATEX.replace(r"\includegraphics[page=2]{librsvg.pdf}", "The end.")
    shop.run("latex", "-interaction=batchmode", shop.write("dvipdfmx.tex", plain))
    shop.run("dvipdfmx", "-q", "dvipdfmx.dvi")
    return [
        Document(shop.path("pdftex.pdf"), pages=3, programs={"type1", "trueType", "cff"}),
        Document(shop.path("dvipdfmx.pdf"), pages=3, programs={"cff"}),
    ]


FONTSPEC = r"""\documentclass{article}
\usepackage{fontspec}
\newfontface\sans{DejaVuSans.ttf}[Path=fonts/]
\newfontface\cantarell{Cantarell-Regular.otf}[Path=fonts/]
\newfontface\goudy{GoudyBookletter1911.otf}[Path=fonts/]
\newfontface\machine{OCRA.ttf}[Path=fonts/]
\begin{document}
{\sans DejaVu Sans} {\cantarell Cantarell}
\newpage
{\goudy Goudy} {\machine OCRA} {\sans DejaVu Sans} $x$
\end{document}
"""


def luatex(shop: Workshop) -> list[Document]:
    """LuaTeX: OpenType and TrueType fonts as composite fonts."""
    shop.environment["TEXMFVAR"] = str(shop.path("texmf"))
    shop.run("lualatex", "-interaction=batchmode", shop.write("luatex.tex", FONTSPEC))
    return [Document(shop.path("luatex.pdf"), pages=2, programs={"trueType", "cff", "type1"})]


def xetex(shop: Workshop) -> list[Document]:
    """XeTeX, whose documents xdvipdfmx writes."""
    shop.run("xelatex", "-interaction=batchmode", shop.write("xetex.tex", FONTSPEC))
    return [Document(shop.path("xetex.pdf"), pages=2, programs={"trueType", "cff"})]


MATPLOTLIB = """
import sys
import matplotlib
matplotlib.use("pdf")
from matplotlib import pyplot
from matplotlib.backends.backend_pdf import PdfPages

kind, path = int(sys.argv[1]), sys.argv[2]
matplotlib.rcParams["pdf.fonttype"] = kind
with PdfPages(path) as pages:
    for family in ("DejaVu Sans", "DejaVu Serif"):
        matplotlib.rcParams["font.family"] = family
        figure = pyplot.figure()
        figure.text(0.1, 0.5, "Text in " + family)
        pages.savefig(figure)
"""


def matplotlib(shop: Workshop) -> list[Document]:
    """Matplotlib: every font as a Type 3 font, or as TrueType."""
    script = shop.write("with_matplotlib.py", MATPLOTLIB)
    shop.environment["MPLCONFIGDIR"] = str(shop.path("matplotlib"))
    drawn, embedded = shop.path("matplotlib-type3.pdf"), shop.path("matplotlib-truetype.pdf")
    shop.run(sys.executable, script, "3", drawn)
    shop.run(sys.executable, script, "42", embedded)
    return [
        Document(drawn, pages=2, programs={"type3"}),
        Document(embedded, pages=2, programs={"trueType"}),
    ]


FO = """<?xml version="1.0" encoding="UTF-8"?>
<fo:root xmlns:fo="http://www.w3.org/1999/XSL/Format">
<fo:layout-master-set><fo:simple-page-master master-name="page" page-width="10cm"
  page-height="10cm"><fo:region-body/></fo:simple-page-master></fo:layout-master-set>
<fo:page-sequence master-reference="page"><fo:flow flow-name="xsl-region-body">
<fo:block font-family="DejaVu Sans">DejaVu Sans <fo:inline font-family="Times">Times</fo:inline></fo:block>
<fo:block break-before="page" font-family="P052">P052 <fo:inline font-family="Cantarell">Cantarell</fo:inline></fo:block>
</fo:flow></fo:page-sequence></fo:root>
"""
FOP_CONFIGURATION = """<?xml version="1.0"?>
<fop version="1.0"><renderers><renderer mime="application/pdf"><fonts>
<directory>{fonts}</directory></fonts></renderer></renderers></fop>
"""


def fop(shop: Workshop) -> list[Document]:
    """FOP: composite fonts, and standard fonts that are only named."""
    configuration = shop.write(
        "fop.xconf", FOP_CONFIGURATION.format(fonts=shop.path("fonts"))
    )
    path = shop.path("fop.pdf")
    shop.run("fop", "-q", "-c", configuration, shop.write("fop.fo", FO), path)
    return [Document(path, pages=2, programs={"trueType", "cff", "notEmbedded"})]


MUPDF_PAGE = """%%MediaBox 0 0 300 300
{fonts}
BT {lines} ET
"""


def mupdf(shop: Workshop) -> list[Document]:
    """MuPDF: whole fonts as simple fonts."""
    path = shop.path("mupdf.pdf")
    pages = []
    for number, names in enumerate((("DejaVuSans.ttf", "OCRA.ttf"), ("Cantarell-Regular.otf",))):
        fonts = "\n".join(f"%%Font F{i} {shop.font(name)}" for i, name in enumerate(names))
        lines = " ".join(f"/F{i} 12 Tf 20 {20 * i + 20} Td (text) Tj" for i in range(len(names)))
        pages.append(
            shop.write(f"mupdf{number}.txt", MUPDF_PAGE.format(fonts=fonts, lines=lines))
        )
    pages.append(
        shop.write("mupdf2.txt", MUPDF_PAGE.format(fonts="%%Font F0 Times-Roman", lines="/F0 12 Tf (x) Tj"))
    )
    shop.run("mutool", "create", "-o", path, *pages)
    return [Document(path, pages=3, programs={"trueType", "openType", "notEmbedded"})]


MAKERS: dict[str, Callable[[Workshop], list[Document]]] = {
    "Chromium": chromium,
    "FOP": fop,
    "LibreOffice": libreoffice,
    "LuaTeX": luatex,
    "Matplotlib": matplotlib,
    "MuPDF": mupdf,
    "pdfTeX": pdftex,
    "XeTeX": xetex,
}
PACKAGES |= {
    "chromium": "chromium",
    "dvipdfmx": "texlive-base",
    "fop": "fop",
    "latex": "texlive-latex-recommended lmodern",
    "lualatex": "texlive-luatex",
    "mutool": "mupdf-tools",
    "pdflatex": "texlive-latex-recommended lmodern",
    "soffice": "libreoffice-writer-nogui",
    "xelatex": "texlive-xetex",
}
