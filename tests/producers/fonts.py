"""The fonts that the makers write with, and the folder that documents are matched to.

Each comes with a known licence field, so that what a document's row says about it can be foretold.
"""

import shutil
import struct
from dataclasses import dataclass
from pathlib import Path

SYSTEM = Path("/usr/share/fonts")


@dataclass(frozen=True)
class Font:
    post_script_name: str
    source: str  # below SYSTEM
    package: str
    license: str
    verdict: str
    known: bool  # whether it also stands in the folder that documents are matched to

    @property
    def file_name(self) -> str:
        return Path(self.source).name


def _dejavu(name: str, known: bool) -> Font:
    source = f"truetype/dejavu/{name}.ttf"
    return Font(name, source, "fonts-dejavu-core", "bitstreamVera", "likelyOK", known)


def _cantarell(name: str, known: bool) -> Font:
    source = f"opentype/cantarell/{name}.otf"
    return Font(name, source, "fonts-cantarell", "ofl", "likelyOK", known)


GOUDY = Font(
    "GoudyBookletter1911",
    "opentype/sortsmill/GoudyBookletter1911.otf",
    "fonts-goudybookletter",
    "none",
    "unknown",
    True,
)
# Made restricted here: see gather().
OCRA = Font("OCRA", "truetype/ocr-a/OCRA.ttf", "fonts-ocr-a", "none", "restricted", True)
# Folders of fonts are not searched for Type 1 programs.
P052 = Font("P052-Roman", "X11/Type1/P052-Roman.pfb", "fonts-urw-base35", "none", "unknown", False)

# The bold ones are not known, so their documents match them by family.
FONTS = [
    _dejavu("DejaVuSans", True),
    _dejavu("DejaVuSans-Bold", False),
    _dejavu("DejaVuSansMono", True),
    _dejavu("DejaVuSerif", True),
    _cantarell("Cantarell-Regular", True),
    _cantarell("Cantarell-Bold", False),
    GOUDY,
    OCRA,
    P052,
]

CONFIGURATION = """<?xml version="1.0"?>
<!DOCTYPE fontconfig SYSTEM "fonts.dtd">
<fontconfig>
  <dir>{fonts}</dir>
  <cachedir>{cache}</cachedir>
</fontconfig>
"""


def gather(folder: Path) -> dict[str, str]:
    """Copies the fonts to `folder`/fonts, those that are known also to `folder`/known.

    Returns the environment in which fontconfig finds exactly the first of the two.
    """
    shutil.rmtree(folder, ignore_errors=True)
    for name in ("fonts", "known"):
        (folder / name).mkdir(parents=True)
    for font in FONTS:
        copy = folder / "fonts" / font.file_name
        source = SYSTEM / font.source
        if not source.exists():
            raise SystemExit(f"{source} is missing: install {font.package}")
        shutil.copyfile(source, copy)
        if font is OCRA:
            _restrict(copy)
        if font.known:
            shutil.copyfile(copy, folder / "known" / font.file_name)
    configuration = folder / "fonts.conf"
    configuration.write_text(
        CONFIGURATION.format(fonts=folder / "fonts", cache=folder / "fontconfig-cache")
    )
    return {"FONTCONFIG_FILE": str(configuration)}


def _restrict(file: Path) -> None:
    """Sets the one embedding bit that forbids it. (No maker used here looks at it.)"""
    data = bytearray(file.read_bytes())
    (tables,) = struct.unpack_from(">H", data, 4)
    for record in range(12, 12 + 16 * tables, 16):
        tag, _, offset, _ = struct.unpack_from(">4sIII", data, record)
        if tag == b"OS/2":
            struct.pack_into(">H", data, offset + 8, 2)
            file.write_bytes(data)
            return
    raise SystemExit(f"{file} has no OS/2 table")
