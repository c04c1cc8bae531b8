#!/usr/bin/env python3
"""Compares packaging/copyright with what the built programs contain and load.

usage: notices_test.py BUILD-FOLDER [--app]
"""

import os
import re
import subprocess
import sys
import unittest
from pathlib import Path

BUILD = Path(sys.argv[1])
APP = "--app" in sys.argv
ROOT = Path(__file__).parents[2]

# The library that a shared object or an archive of the system belongs to, as the notices name it.
LIBRARY = {
    "ld-linux": "glibc",
    "libbrotli": "brotli",
    "libc.": "glibc",
    "libdeflate": "libdeflate",
    "libdl": "glibc",
    "libexpat": "expat",
    "libfontconfig": "fontconfig",
    "libfreetype": "freetype",
    "libgcc": "gcc",
    "libglib-": "glib",
    "libgobject-": "glib",
    "libgnutls": "gnutls",
    "libharfbuzz": "harfbuzz",
    "libicu": "icu",
    "libjpeg": "libjpeg-turbo",
    "libm.": "glibc",
    "libpango": "pango",
    "libpng": "libpng",
    "libpthread": "glibc",
    "libqpdf": "qpdf",
    "libQt6": "qt",
    "libsodium": "libsodium",
    "libstdc++": "gcc",
    "libz.": "zlib",
    # Only in builds under the sanitizers, which nobody ships.
    "libasan": "gcc",
    "libubsan": "gcc",
}


def library_of(file):
    found = {name for start, name in LIBRARY.items() if file.startswith(start)}
    if len(found) != 1:
        raise AssertionError(f"{file}: which library is that? Add it to packaging/copyright and here")
    return found.pop()


def output_of(*command):
    return subprocess.run([str(word) for word in command], capture_output=True, check=True, text=True).stdout


def paragraphs():
    """The fields of each paragraph; lines that continue a field are joined to it."""
    text = (ROOT / "packaging/copyright").read_text(encoding="utf-8")
    for paragraph in text.rstrip("\n").split("\n\n"):
        fields, name = {}, None
        for line in paragraph.split("\n"):
            if line.startswith(" "):
                fields[name] += "\n" + line[1:]
            else:
                name, value = line.split(":", 1)
                if name in fields:
                    raise AssertionError(f"{name} twice in a paragraph: {line}")
                fields[name] = value.strip()
        yield fields


class Notices(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        cls.header, *others = paragraphs()
        cls.files = [fields for fields in others if "Files" in fields]
        cls.licenses = {fields["License"].split("\n")[0]: fields for fields in others if "Files" not in fields}
        cls.libraries = {fields["Files"].split("/")[1]: fields for fields in cls.files
                         if fields["Files"].startswith("library/")}

    def test_it_is_a_machine_readable_file_of_debian(self):
        self.assertEqual(self.header["Format"],
                         "https://www.debian.org/doc/packaging-manuals/copyright-format/1.0/")
        self.assertEqual(self.files[0]["Files"], "*")
        for fields in self.files:
            self.assertLessEqual({"Files", "Copyright", "License"}, set(fields))
            self.assertTrue(fields["Copyright"].strip(), fields)

    def test_every_license_that_is_named_has_its_text_and_no_other(self):
        named = {name for fields in self.files for name in re.split(" and ", fields["License"])}
        self.assertEqual(named, set(self.licenses))
        for name, fields in self.licenses.items():
            self.assertGreater(len(fields["License"]), len(name) + 40, name)

    def test_every_archive_that_the_command_line_contains_is_named(self):
        links = [output_of("ninja", "-C", BUILD, "-t", "commands", program).splitlines()[-1]
                 for program in ["quillmark-cli", "quillmark-reader"]]
        archives = {os.path.basename(word) for word in " ".join(links).split()
                    if re.match(r"/.*\.a$", word) and not word.startswith(str(BUILD))}
        for archive in archives:
            name = library_of(archive)
            self.assertIn(name, self.libraries)
            self.assertIn("contained in quillmark-cli", self.libraries[name]["Comment"])

    def test_every_library_that_is_loaded_is_named(self):
        programs = [BUILD / "cli/quillmark-cli", BUILD / "lib/quillmark/quillmark-reader",
                    BUILD / "lib/quillmark/modules/quillmark-scripts.so"]
        if APP:
            programs.append(BUILD / "app/quillmark")
        needed = set()
        for program in programs:
            needed.update(re.findall(r"\(NEEDED\).*\[(.+)\]", output_of("readelf", "-d", program)))
        self.assertTrue(needed)
        self.assertLessEqual({library_of(file) for file in needed}, set(self.libraries))

    def test_every_library_whose_headers_are_used_is_named(self):
        sys.path.insert(0, str(ROOT / "tests/conventions"))
        import layout  # pylint: disable=import-outside-toplevel
        known = {library.removeprefix("lib") for library in self.libraries}
        unknown = {name for name in layout.THIRD_PARTY
                   if name.lower().removeprefix("lib") not in known
                   and not name.startswith("Qt's ")}
        self.assertEqual(unknown, {"GoogleTest", "Google Benchmark"})

    def test_the_page_for_developers_names_the_same_libraries(self):
        page = (ROOT / "docs/third-party.md").read_text(encoding="utf-8")
        packages = set(re.findall(r"Debian package ([\w.+-]+)\.", " ".join(
            fields["Comment"].replace("\n", " ") for fields in self.libraries.values())))
        self.assertEqual(len(packages), len(self.libraries))
        for package in packages:
            self.assertIn(f"`{package}`", page)

    def test_the_font_of_reports_has_its_license(self):
        fonts = [fields for fields in self.files if fields["Files"] == "core/resources/Fonts/*"]
        self.assertEqual([fields["License"] for fields in fonts], ["OFL-1.1"])
        words = (ROOT / "core/resources/Fonts/OFL.txt").read_text(encoding="utf-8").split()
        self.assertIn(" ".join(words[words.index("PREAMBLE"):]),
                      " ".join(self.licenses["OFL-1.1"]["License"].replace("\n.\n", "\n\n").split()))

    def test_what_the_licenses_ask_to_be_said_is_said(self):
        text = " ".join((ROOT / "packaging/copyright").read_text(encoding="utf-8").split())
        for sentence in [
            "Portions of this software are copyright © 2022 The FreeType Project",
            "This software is based in part on the work of the Independent JPEG Group.",
        ]:
            self.assertIn(sentence, text)


if __name__ == "__main__":
    unittest.main(argv=sys.argv[:1])
