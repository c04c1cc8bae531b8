"""Writes documents of any number of pages, such as a typesetter writes for a manual."""

import io
import random
import struct
import zlib
from enum import Enum
from pathlib import Path

from fontTools.fontBuilder import FontBuilder
from fontTools.ttLib.tables._g_l_y_f import Glyph

KIDS = 10  # of a node of the page tree
MEMBERS = 100  # of an object stream
CATALOG = 1
PAGES = 2


class Resources(Enum):
    OWN = "each page has its own"
    SHARED = "all pages refer to the same"
    INHERITED = "the root of the page tree has them"


class Objects(Enum):
    PLAIN = "objects in the file, a cross-reference table"
    PACKED = "object streams, a cross-reference stream"


def write(path: Path, pages: int, fonts: int, resources: Resources, objects: Objects) -> None:
    """Every page has text and links; with `OWN` resources, it uses eight of the fonts."""
    document = Document()
    document.reserve(PAGES)
    used = [add_font(document, number) for number in range(fonts)]
    contents = [add_contents(document, number) for number in range(50)]
    shared = document.add(font_resources(used))
    leaves = document.reserve(pages)
    root = shared if resources is Resources.INHERITED else None
    parents = add_page_tree(document, leaves, root)
    for number, (page, parent) in enumerate(zip(leaves, parents)):
        refers = {
            Resources.OWN: f"/Resources {len(document.objects) + 1} 0 R ",
            Resources.SHARED: f"/Resources {shared} 0 R ",
            Resources.INHERITED: "",
        }[resources]
        if resources is Resources.OWN:
            document.add(font_resources(used[(number + i) % fonts] for i in range(8)))
        links = " ".join(f"{document.add(link(leaves, number, i))} 0 R" for i in range(5))
        document.objects[page - 1] = (
            f"<< /Type /Page /Parent {parent} 0 R /MediaBox [0 0 595.276 841.89] {refers}"
            f"/Contents {contents[number % len(contents)]} 0 R /Annots [{links}] >>"
        ).encode()
    document.objects[CATALOG - 1] = f"<< /Type /Catalog /Pages {PAGES} 0 R >>".encode()
    unfinished = path.with_suffix(".unfinished")
    unfinished.write_bytes(
        document.plain() if objects is Objects.PLAIN else document.packed()
    )
    unfinished.rename(path)


class Document:
    def __init__(self):
        self.objects: list[bytes] = []

    def reserve(self, count: int) -> list[int]:
        """The numbers of so many new objects, whose text comes later."""
        begin = len(self.objects) + 1
        self.objects += [b"null"] * count
        return list(range(begin, begin + count))

    def add(self, text: str | bytes) -> int:
        self.objects.append(text.encode() if isinstance(text, str) else text)
        return len(self.objects)

    def add_stream(self, dictionary: str, data: bytes) -> int:
        return self.add(stream(dictionary, data))

    def plain(self) -> bytes:
        out = bytearray(b"%PDF-1.7\n")
        offsets = [append(out, number, text) for number, text in enumerate(self.objects, start=1)]
        table = len(out)
        out += f"xref\n0 {len(offsets) + 1}\n0000000000 65535 f \n".encode()
        for offset in offsets:
            out += b"%010d 00000 n \n" % offset
        out += f"trailer\n<< /Size {len(offsets) + 1} /Root {CATALOG} 0 R >>\n".encode()
        return bytes(out + f"startxref\n{table}\n%%EOF\n".encode())

    def packed(self) -> bytes:
        out = bytearray(b"%PDF-1.7\n")
        entries = [(0, 0, 65535)] + [(0, 0, 0)] * len(self.objects)
        members = []
        for number, text in enumerate(self.objects, start=1):
            if text.endswith(b"endstream"):
                entries[number] = (1, append(out, number, text), 0)
            else:
                members.append(number)
        for begin in range(0, len(members), MEMBERS):
            group = members[begin : begin + MEMBERS]
            for index, number in enumerate(group):
                entries[number] = (2, len(entries), index)
            entries.append((1, append(out, len(entries), self._object_stream(group)), 0))
        table = len(out)
        entries.append((1, table, 0))
        data = b"".join(struct.pack(">BIH", *entry) for entry in entries)
        dictionary = f"/Type /XRef /W [1 4 2] /Size {len(entries)} /Root {CATALOG} 0 R "
        append(out, len(entries) - 1, stream(dictionary, data))
        return bytes(out + f"startxref\n{table}\n%%EOF\n".encode())

    def _object_stream(self, numbers: list[int]) -> bytes:
        places, data = [], b""
        for number in numbers:
            places.append(f"{number} {len(data)} ")
            data += self.objects[number - 1] + b"\n"
        first = "".join(places)
        dictionary = f"/Type /ObjStm /N {len(numbers)} /First {len(first)} "
        return stream(dictionary, first.encode() + data)


def append(out: bytearray, number: int, text: bytes) -> int:
    """Where the object begins."""
    offset = len(out)
    out += b"%d 0 obj\n%b\nendobj\n" % (number, text)
    return offset


def stream(dictionary: str, data: bytes) -> bytes:
    packed = zlib.compress(data)
    head = f"<< {dictionary}/Filter /FlateDecode /Length {len(packed)} >>\nstream\n"
    return head.encode() + packed + b"\nendstream"


def add_font(document: Document, number: int) -> int:
    name = f"{''.join(chr(65 + number // 26**i % 26) for i in range(6))}+Manual{number}-Regular"
    program = document.add_stream("", font_program(number))
    descriptor = document.add(
        f"<< /Type /FontDescriptor /FontName /{name} /Flags 4 /FontBBox [0 0 500 700] "
        f"/ItalicAngle 0 /Ascent 700 /Descent 0 /CapHeight 700 /StemV 80 /FontFile2 {program} 0 R >>"
    )
    return document.add(
        f"<< /Type /Font /Subtype /TrueType /BaseFont /{name} /FirstChar 65 /LastChar 65 "
        f"/Widths [500] /Encoding /WinAnsiEncoding /FontDescriptor {descriptor} 0 R >>"
    )


def font_program(number: int) -> bytes:
    builder = FontBuilder(1000, isTTF=True)
    builder.setupGlyphOrder([".notdef", "A"])
    builder.setupCharacterMap({65: "A"})
    builder.setupGlyf({".notdef": Glyph(), "A": Glyph()})
    builder.setupHorizontalMetrics({".notdef": (500, 0), "A": (500, 0)})
    builder.setupHorizontalHeader(ascent=700, descent=0)
    names = {
        "familyName": f"Manual {number}",
        "styleName": "Regular",
        "psName": f"Manual{number}-Regular",
        "copyright": "Copyright (c) the makers of this benchmark",
    }
    builder.setupNameTable(names)
    builder.setupOS2(fsType=8)
    builder.setupPost()
    file = io.BytesIO()
    builder.save(file)
    return file.getvalue()


def add_contents(document: Document, number: int) -> int:
    letters = random.Random(number)
    lines = ("".join(letters.choices("etaoin shrdlu", k=80)) for _ in range(45))
    text = "".join(f"({line}) Tj T*\n" for line in lines)
    return document.add_stream("", f"BT /F0 10 Tf 12 TL 60 780 Td\n{text}ET\n".encode())


def font_resources(fonts) -> str:
    entries = " ".join(f"/F{index} {font} 0 R" for index, font in enumerate(fonts))
    return f"<< /ProcSet [/PDF /Text] /Font << {entries} >> >>"


def link(leaves: list[int], page: int, number: int) -> str:
    target = leaves[(page * 7 + number) % len(leaves)]
    return (
        f"<< /Type /Annot /Subtype /Link /Border [0 0 0] /Rect [60 {60 + 20 * number} 120 "
        f"{72 + 20 * number}] /A << /S /GoTo /D [{target} 0 R /XYZ 60 780 null] >> >>"
    )


def add_page_tree(document: Document, leaves: list[int], resources: int | None) -> list[int]:
    """The parents of the leaves; the root is the object `PAGES`."""
    levels = [leaves]
    while len(levels) == 1 or len(levels[-1]) > 1:
        count = -(-len(levels[-1]) // KIDS)
        levels.append([PAGES] if count == 1 else document.reserve(count))
    below = [1] * len(leaves)  # pages below each node of a level
    for number, level in enumerate(levels[1:], start=1):
        groups = [slice(i * KIDS, (i + 1) * KIDS) for i in range(len(level))]
        below = [sum(below[group]) for group in groups]
        for index, (node, group) in enumerate(zip(level, groups)):
            kids = " ".join(f"{kid} 0 R" for kid in levels[number - 1][group])
            above = f"/Parent {levels[number + 1][index // KIDS]} 0 R " if node != PAGES else ""
            own = f"/Resources {resources} 0 R " if node == PAGES and resources else ""
            document.objects[node - 1] = (
                f"<< /Type /Pages {above}{own}/Count {below[index]} /Kids [{kids}] >>"
            ).encode()
    return [levels[1][index // KIDS] for index in range(len(leaves))]
