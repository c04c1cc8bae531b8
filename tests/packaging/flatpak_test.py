#!/usr/bin/env python3
"""Compares the Flatpak manifest with this tree. It is not built here."""

import json
import re
import sys
import unittest
from pathlib import Path

ROOT = Path(__file__).parents[2]
ID = "org.quillmark.Quillmark"
MANIFEST = ROOT / f"packaging/flatpak/{ID}.json"

# The third-party libraries that KDE's runtime brings, by their names in the table of headers.
RUNTIME = {"brotli", "FreeType", "fontconfig", "GnuTLS", "HarfBuzz", "ICU", "Pango", "Qt's core",
           "Qt's network", "Qt's windows", "zlib"}
WORKSHOP = {"GoogleTest", "Google Benchmark"}


class Manifest(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        cls.manifest = json.loads(MANIFEST.read_text(encoding="utf-8"))
        cls.modules = {module["name"]: module for module in cls.manifest["modules"]}

    def test_it_is_named_as_the_desktop_entry_is_and_starts_what_that_starts(self):
        entry = (ROOT / f"packaging/desktop/{ID}.desktop").read_text(encoding="utf-8")
        self.assertEqual(self.manifest["id"], ID)
        self.assertIn(f"\nExec={self.manifest['command']} ", entry)

    def test_it_asks_for_no_network_and_writes_nowhere_unasked(self):
        options = self.manifest["finish-args"]
        self.assertNotIn("--share=network", options)
        for option in options:
            if option.startswith("--filesystem="):
                self.assertTrue(option.endswith(":ro"), option)

    def test_every_library_comes_from_the_runtime_or_is_a_module(self):
        sys.path.insert(0, str(ROOT / "tests/conventions"))
        import layout  # pylint: disable=import-outside-toplevel
        modules = {name.lower().removeprefix("lib") for name in self.modules}
        missing = {name for name in set(layout.THIRD_PARTY) - RUNTIME - WORKSHOP
                   if name.lower().removeprefix("lib") not in modules}
        self.assertEqual(missing, set())

    def test_the_last_module_is_this_tree_and_the_others_are_releases(self):
        *others, last = self.manifest["modules"]
        self.assertEqual(last["sources"], [{"type": "dir", "path": "../.."}])
        for module in others:
            [source] = module["sources"]
            self.assertRegex(source["url"], r"^https://.+\.git$")
            self.assertTrue(re.fullmatch(r"v?\d+\.\d+(\.\d+)?", source["tag"]), source)


if __name__ == "__main__":
    unittest.main()
