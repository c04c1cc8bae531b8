#!/usr/bin/env python3
"""Installs the build into a folder, moves that folder, and asks the tools of a desktop about it.

usage: installed_test.py CMAKE BUILD-FOLDER [--app]
"""

import configparser
import gzip
import os
import re
import shutil
import struct
import subprocess
import sys
import tempfile
import unittest
from pathlib import Path

CMAKE, BUILD = sys.argv[1], Path(sys.argv[2]).resolve()
APP = "--app" in sys.argv
ROOT = Path(__file__).parents[2]
ID = "org.quillmark.Quillmark"
SIZES = [16, 22, 24, 32, 48, 64, 128, 256, 512]

# Entries of the programs that show PDFs in Debian 12, as far as they come late by name.
VIEWERS = ["org.gnome.Evince", "org.kde.okular", "org.pwmt.zathura-pdf-poppler", "xpdf", "xreader",
           "zathura"]


def run(*command, **options):
    done = subprocess.run([str(word) for word in command], capture_output=True, check=False, text=True,
                          **options)
    if done.returncode != 0:
        raise AssertionError(f"{command} ended with {done.returncode}:\n{done.stdout}{done.stderr}")
    return done.stdout


class Prefix(unittest.TestCase):
    """An installed build that was moved; both classes of tests share it."""

    @classmethod
    def setUpClass(cls):
        cls.folder = FOLDER
        cls.prefix = FOLDER / "another place/prefix"
        cls.share = cls.prefix / "share"
        if not cls.prefix.exists():
            run(CMAKE, "--install", BUILD, "--prefix", FOLDER / "first")
            cls.prefix.parent.mkdir()
            (FOLDER / "first").rename(cls.prefix)
        cls.environment = {**os.environ, "HOME": str(FOLDER), "LC_ALL": "C.UTF-8",
                           "XDG_DATA_HOME": str(FOLDER / "data")}

    def program(self, name, *arguments):
        return run(self.prefix / "bin" / name, *arguments, env=self.environment, cwd=self.folder)


class Installed(Prefix):
    def test_the_command_line_works_where_it_was_moved_to(self):
        self.assertRegex(self.program("quillmark-cli", "--version"), r"^quillmark-cli \d+\.\d+\.\d+\n$")
        fonts = self.share / "quillmark/Fonts"
        listed = self.program("quillmark-cli", "scan", "--format", "json", fonts)
        self.assertIn('"CourierPrime-Bold"', listed)

    def test_a_report_is_set_in_the_face_that_came_along(self):
        report = self.folder / "report.pdf"
        self.program("quillmark-cli", "scan", "--format", "pdf", "-o", report, self.share / "quillmark/Fonts")
        self.assertIn("+CourierPrime-Regular", run("pdffonts", report))

    def test_what_is_loaded_came_along(self):
        for name in ["quillmark-reader", "modules/quillmark-scripts.so"]:
            self.assertTrue((self.prefix / "lib/quillmark" / name).is_file(), name)
        self.assertTrue((self.share / "quillmark/Fonts/OFL.txt").is_file())

    def test_manual_pages_have_no_warnings(self):
        programs = ["quillmark-cli", "quillmark"] if APP else ["quillmark-cli"]
        for program in programs:
            page = self.share / f"man/man1/{program}.1.gz"
            done = subprocess.run(["man", "--warnings", "-E", "UTF-8", "-l", "-Tutf8", "-Z", page],
                                  capture_output=True, text=True, check=True,
                                  env={**os.environ, "LC_ALL": "C.UTF-8", "MANWIDTH": "80"})
            self.assertEqual(done.stderr, "")
            self.assertRegex(run("lexgrog", page), f'"{program} - .+"')
            # Compressed without a time, so that every build gives the same bytes.
            self.assertEqual(page.read_bytes()[4:8], b"\0\0\0\0")

    def test_each_package_tells_its_notices_and_its_changes(self):
        for package in ["quillmark-cli", "quillmark"] if APP else ["quillmark-cli"]:
            place = self.share / "doc" / package
            self.assertEqual((place / "copyright").read_bytes(), (ROOT / "packaging/copyright").read_bytes())
            with gzip.open(place / "changelog.gz", "rt", encoding="utf-8") as changes:
                self.assertRegex(changes.readline(), r"^quillmark \(\d+\.\d+\.\d+\) ")

    def test_the_readme_finds_its_pages_and_pictures(self):
        readme = self.share / "doc/quillmark/README.md"
        links = re.findall(r"\]\(([^)#:]+)\)", readme.read_text(encoding="utf-8"))
        self.assertGreater(len(links), 10)
        for link in links:
            self.assertTrue((readme.parent / link).is_file(), link)

    def test_the_licenses_that_the_notices_refer_to_came_along(self):
        notices = (ROOT / "packaging/copyright").read_text(encoding="utf-8")
        folder = self.share / "doc/quillmark-cli/licenses"
        for name in os.listdir(folder):
            self.assertIn(f"licenses/{name}", notices)
        self.assertEqual(len(os.listdir(folder)), notices.count("or in\n licenses/"))

    def test_nothing_of_the_builder_is_in_texts_that_are_installed(self):
        for path in self.prefix.rglob("*"):
            if path.suffix in [".xml", ".desktop", ".md", ".json"]:
                self.assertNotIn(str(BUILD), path.read_text(encoding="utf-8"), path)


@unittest.skipUnless(APP, "a build without the window")
class Desktop(Prefix):
    def entry(self, name):
        parser = configparser.RawConfigParser(strict=True, delimiters=("=",))
        parser.optionxform = str
        parser.read(self.share / "applications" / name, encoding="utf-8")
        return parser["Desktop Entry"]

    def test_the_window_works_where_it_was_moved_to(self):
        self.assertRegex(self.program("quillmark", "--version"), r"^quillmark \d+\.\d+\.\d+\n$")

    def test_desktop_entries_are_valid_and_start_the_program(self):
        entries = sorted((self.share / "applications").iterdir())
        self.assertEqual(len(entries), 2)
        self.assertEqual(run("desktop-file-validate", *entries), "")
        for path in entries:
            entry = self.entry(path.name)
            self.assertEqual(entry["Exec"], "quillmark %F")
            self.assertEqual(entry["Icon"], ID)

    def test_pdfs_are_opened_by_the_hidden_entry_only(self):
        self.assertNotIn("MimeType", self.entry(f"{ID}.desktop"))
        hidden = self.entry(f"zz.{ID}.pdf.desktop")
        self.assertEqual(hidden["MimeType"], "application/pdf;")
        self.assertEqual(hidden["NoDisplay"], "true")
        self.assertEqual(hidden["InitialPreference"], "0")

    def test_no_viewer_loses_its_pdfs(self):
        for viewer in VIEWERS:
            folder = self.folder / f"with-{viewer}"
            shutil.copytree(self.share / "applications", folder)
            (folder / f"{viewer}.desktop").write_text(
                "[Desktop Entry]\nType=Application\nName=Viewer\nExec=viewer %f\nMimeType=application/pdf;\n",
                encoding="utf-8")
            run("update-desktop-database", folder)
            cache = (folder / "mimeinfo.cache").read_text(encoding="utf-8").splitlines()
            self.assertEqual(cache[1], f"application/pdf={viewer}.desktop;zz.{ID}.pdf.desktop;")

    def validate_metainfo(self, path):
        return run("appstreamcli", "validate", "--pedantic", "--no-net", path)

    def test_metainfo_is_valid_with_and_without_a_page_on_the_web(self):
        plain = self.share / f"metainfo/{ID}.metainfo.xml"
        self.assertIn("Validation was successful", self.validate_metainfo(plain))
        self.assertNotIn("http", plain.read_text(encoding="utf-8"))
        linked = self.folder / f"{ID}.metainfo.xml"
        run(CMAKE, f"-DMETAINFO={linked}", "-DPROJECT_VERSION=1.2.3",
            "-DQUILLMARK_WEB_FOLDER=https://quillmark.example", "-P",
            ROOT / "packaging/desktop/Metainfo.cmake", env={**os.environ, "SOURCE_DATE_EPOCH": "1700000000"})
        self.assertIn("Validation was successful", self.validate_metainfo(linked))
        text = linked.read_text(encoding="utf-8")
        self.assertIn('<url type="homepage">https://quillmark.example</url>', text)
        pictures = re.findall(r"<image[^>]*>https://quillmark.example/pictures/([^<]+)</image>", text)
        self.assertEqual(len(pictures), 2)
        for picture in pictures:
            self.assertTrue((ROOT / "docs/pictures" / picture).is_file(), picture)
        self.assertIn('version="1.2.3" date="2023-11-14"', text)

    def test_metainfo_and_desktop_entry_name_each_other(self):
        text = (self.share / f"metainfo/{ID}.metainfo.xml").read_text(encoding="utf-8")
        self.assertIn(f"<id>{ID}</id>", text)
        self.assertIn(f'<launchable type="desktop-id">{ID}.desktop</launchable>', text)
        self.assertIn(f"<summary>{self.entry(ID + '.desktop')['Comment']}</summary>", text)

    def test_the_icon_is_there_at_every_size(self):
        icons = self.share / "icons/hicolor"
        self.assertTrue((icons / f"scalable/apps/{ID}.svg").is_file())
        for size in SIZES:
            data = (icons / f"{size}x{size}/apps/{ID}.png").read_bytes()
            self.assertEqual(data[:8], b"\x89PNG\r\n\x1a\n")
            self.assertEqual(struct.unpack(">II", data[16:24]), (size, size))


if __name__ == "__main__":
    with tempfile.TemporaryDirectory() as temporary:
        FOLDER = Path(temporary)
        unittest.main(argv=sys.argv[:1])
