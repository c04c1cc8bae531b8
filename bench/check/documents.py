"""Real documents: every PDF of some of Debian's documentation packages, which are downloaded and
unpacked but not installed."""

import gzip
import shutil
from pathlib import Path

from packages import made_once, unpacked

# About 1,100 documents in 450 MB: of many makers (pdfTeX, LuaTeX, XeTeX, Ghostscript, FOP, LilyPond,
# LibreOffice, ReportLab and others), in many languages, from one page to more than a thousand.
PACKAGES = [
    "asymptote-doc",
    "auto-multiple-choice-doc-pdf",
    "bind9-doc",
    "debian-faq",
    "debian-policy",
    "debian-refcard",
    "debmake-doc",
    "developers-reference",
    "docbook-xsl-doc-pdf",
    "erlang-doc",
    "ghostscript-doc",
    "gmsh-doc",
    "gnuplot-doc",
    "graphviz-doc",
    "harden-doc",
    "installation-guide-amd64",
    "kicad-doc-en",
    "lilypond-doc-pdf",
    "maxima-doc",
    "octave-doc",
    "pari-doc",
    "python-reportlab-doc",
    "r-doc-pdf",
    "texlive-humanities-doc",
    "texlive-latex-base-doc",
    "texlive-latex-recommended-doc",
    "texlive-science-doc",
    "tipa-doc",
    "why3-doc-pdf",
]
FOLDER = "debian-documents"


def real_documents(root: Path) -> list[Path]:
    def gather(folder: Path) -> None:
        for package in PACKAGES:
            with unpacked(package, root) as tree:
                for file in sorted(tree.rglob("*")):
                    if file.name.endswith((".pdf", ".pdf.gz")) and not file.is_symlink():
                        copy(file, folder / package / file.relative_to(tree))

    folder = made_once(root, FOLDER, gather)
    return sorted(folder.rglob("*.pdf"))


def package(document: Path) -> str:
    return document.parts[document.parts.index(FOLDER) + 1]


def copy(source: Path, target: Path) -> None:
    target.parent.mkdir(parents=True, exist_ok=True)
    if source.suffix == ".gz":
        with gzip.open(source, "rb") as packed, open(target.with_suffix(""), "wb") as plain:
            shutil.copyfileobj(packed, plain)
    else:
        source.rename(target)
