#!/usr/bin/env python3
"""CHANGELOG.md in the form of Debian's packages."""

import os
import subprocess
import unittest
from pathlib import Path

ROOT = Path(__file__).parents[2]
PROGRAM = ROOT / "packaging/debian/changelog"


def converted(text, version="0.2.0"):
    environment = {**os.environ, "SOURCE_DATE_EPOCH": "1700000000"}
    return subprocess.run([PROGRAM, version, "Anna <anna@example.org>"], input=text, text=True,
                          capture_output=True, check=False, env=environment)


class Changelog(unittest.TestCase):
    def test_releases_become_entries_and_long_changes_are_folded(self):
        done = converted(
            "# Changelog\n\nWhat changed.\n\n## Not released yet\n\n- Reads `.woff`; says *why*.\n"
            "- A change whose words\n  go on, and on, and on, and on, and on, and on, and on until"
            " no line could hold them all.\n\n## 0.1.0 (2026-02-03)\n\n- Begins.\n")
        self.assertEqual(done.stderr, "")
        self.assertEqual(done.stdout, """\
quillmark (0.2.0) UNRELEASED; urgency=medium

  * Reads `.woff`; says *why*.
  * A change whose words go on, and on, and on, and on, and on, and on, and
    on until no line could hold them all.

 -- Anna <anna@example.org>  Tue, 14 Nov 2023 22:13:20 +0000

quillmark (0.1.0) unstable; urgency=medium

  * Begins.

 -- Anna <anna@example.org>  Tue, 03 Feb 2026 12:00:00 +0000

""")

    def test_a_heading_that_is_no_release_is_refused(self):
        done = converted("## Soon\n\n- Something.\n")
        self.assertEqual(done.returncode, 1)
        self.assertIn('"Soon"', done.stderr)

    def test_every_change_of_the_project_is_in_it(self):
        text = (ROOT / "CHANGELOG.md").read_text(encoding="utf-8")
        done = converted(text)
        self.assertEqual(done.returncode, 0, done.stderr)
        self.assertEqual(done.stdout.count("\n  * "), text.count("\n- "))
        self.assertLessEqual(max(map(len, done.stdout.splitlines())), 80)


if __name__ == "__main__":
    unittest.main()
