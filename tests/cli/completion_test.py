"""Tests that real shells complete the command line with the scripts that the program prints.

Usage: completion_test.py PROGRAM [unittest arguments]
PROGRAM is quillmark-cli. A shell that is not installed is passed over.
"""

import os
import pty
import re
import select
import shutil
import subprocess
import sys
import tempfile
import time
import unittest

PROGRAM = os.path.abspath(sys.argv[1])
TIME_LIMIT = 60  # seconds; far more than anything here takes


def script(shell):
    return subprocess.run(
        [PROGRAM, "completion", shell], check=True, capture_output=True, timeout=TIME_LIMIT
    ).stdout.decode("utf-8")


def environment(folder):
    return {
        "PATH": os.path.dirname(PROGRAM) + ":/usr/bin:/bin",
        "HOME": folder,
        "TERM": "dumb",
        "LC_ALL": "C.UTF-8",
    }


class Terminal:
    """A shell on a terminal, to which a user types."""

    def __init__(self, arguments, folder):
        self.child, self.terminal = pty.fork()
        if self.child == 0:
            os.chdir(folder)
            os.execve(arguments[0], arguments, environment(folder))
        self.text = ""

    def type(self, keys):
        os.write(self.terminal, keys.encode("utf-8"))

    def wait_for(self, pattern):
        """What has come since the last wait, once it matches."""
        end = time.monotonic() + TIME_LIMIT
        while not (found := re.search(pattern, self.text)):
            ready, _, _ = select.select([self.terminal], [], [], end - time.monotonic())
            if not ready:
                raise AssertionError(f"no {pattern!r} in {self.text!r}")
            self.text += os.read(self.terminal, 65536).decode("utf-8", "replace")
        self.text = self.text[found.end() :]
        return found.group()

    def close(self):
        os.close(self.terminal)
        os.waitpid(self.child, 0)


class CompletionTest(unittest.TestCase):
    def setUp(self):
        temporary = tempfile.TemporaryDirectory()
        self.addCleanup(temporary.cleanup)
        self.folder = temporary.name
        for name in ("one font.ttf", "book.pdf", "BOOK2.PDF", "list.txt"):
            with open(os.path.join(self.folder, name), "wb"):
                pass
        os.mkdir(os.path.join(self.folder, "Fonts"))

    def program(self, shell):
        found = shutil.which(shell, path="/usr/bin:/bin")
        if found is None:
            self.skipTest(f"{shell} is not installed")
        return found

    def write(self, name, text):
        path = os.path.join(self.folder, name)
        with open(path, "w", encoding="utf-8") as file:
            file.write(text)
        return path


class BashTest(CompletionTest):
    """Typed on a terminal."""

    def completed(self, typed, expected):
        """Types and presses Tab; the line has to become what is expected."""
        rc = self.write(".rc", "PS1='> '\nbind 'set enable-bracketed-paste off'\n" + script("bash"))
        shell = Terminal([self.program("bash"), "--noprofile", "--rcfile", rc, "-i"], self.folder)
        self.addCleanup(shell.close)
        shell.wait_for("> ")
        shell.type(typed + "\t")
        shell.wait_for(re.escape(expected))

    def test_commands(self):
        self.completed("quillmark-cli inst", "quillmark-cli installed ")
        self.completed("quillmark-cli -q comp", "quillmark-cli -q completion ")

    def test_options_of_the_command(self):
        self.completed("quillmark-cli check --no-i", "quillmark-cli check --no-installed ")
        self.completed("quillmark-cli scan --fi", "quillmark-cli scan --files-from ")

    def test_values(self):
        self.completed("quillmark-cli installed --sort fam", "--sort family ")
        self.completed("quillmark-cli installed --sort=fam", "--sort=family ")
        self.completed("quillmark-cli installed -f cs", "-f csv ")
        self.completed("quillmark-cli installed --verdict unknown,li", "unknown,likelyOK")
        self.completed("quillmark-cli check x --fonts Fo", "--fonts Fonts/")

    def test_words_of_commands(self):
        self.completed("quillmark-cli completion z", "completion zsh ")
        self.completed("quillmark-cli notes sh", "notes show ")

    def test_files(self):
        self.completed("quillmark-cli scan on", "scan one\\ font.ttf ")
        self.completed("quillmark-cli check bo", "check book.pdf ")
        self.completed("quillmark-cli check BO", "check BOOK2.PDF ")
        self.completed("quillmark-cli check -- bo", "check -- book.pdf ")
        self.completed("quillmark-cli scan --files-from li", "--files-from list.txt ")

    def offered(self, *words):
        """What is offered for the last word, without a terminal."""
        lines = script("bash") + (
            "\ncompopt() { :; }\n"
            'COMP_WORDS=("$@"); COMP_CWORD=$(($# - 1)); _quillmark_cli\n'
            "printf '%s\\n' \"${COMPREPLY[@]}\"\n"
        )
        result = subprocess.run(
            [self.program("bash"), "--noprofile", "--norc", "-u", "-c", lines, "bash", *words],
            capture_output=True,
            cwd=self.folder,
            env=environment(self.folder),
            timeout=TIME_LIMIT,
        )
        self.assertEqual(result.stderr, b"")
        return result.stdout.decode("utf-8").split("\n")[:-1]

    def test_offers_nothing_that_does_not_fit(self):
        self.assertEqual(self.offered("quillmark-cli", "scan", ""), ["Fonts", "one font.ttf"])
        self.assertEqual(
            sorted(self.offered("quillmark-cli", "check", "")), ["BOOK2.PDF", "Fonts", "book.pdf"]
        )
        self.assertEqual(self.offered("quillmark-cli", "explain", ""), [""])
        self.assertEqual(self.offered("quillmark-cli", "installed", "--fonts"), [""])
        self.assertEqual(self.offered("quillmark-cli", "installed", "--search", ""), [""])
        self.assertEqual(
            self.offered("quillmark-cli", "--search", "show", "not"), ["notes"], "a value"
        )
        self.assertEqual(self.offered("quillmark-cli", "scan", "--", "-"), [""])


class ZshTest(CompletionTest):
    def completed(self, typed, expected):
        functions = os.path.join(self.folder, "functions")
        os.makedirs(functions, exist_ok=True)
        self.write("functions/_quillmark-cli", script("zsh"))
        self.write(
            ".zshrc",
            f"fpath=({functions} $fpath)\nautoload -U compinit\ncompinit -u -D\n"
            "unsetopt zle_bracketed_paste 2>/dev/null\nunset zle_bracketed_paste\n"
            "PS1='> '\n",
        )
        shell = Terminal([self.program("zsh"), "-o", "NO_GLOBAL_RCS", "-i"], self.folder)
        self.addCleanup(shell.close)
        shell.wait_for("> ")
        shell.type(typed + "\t")
        shell.wait_for(re.escape(expected))

    def test_commands(self):
        self.completed("quillmark-cli inst", "alled ")

    def test_options_and_values(self):
        self.completed("quillmark-cli check --no-i", "nstalled ")
        self.completed("quillmark-cli installed --sort fam", "ily ")
        self.completed("quillmark-cli installed --verdict unknown,li", "kelyOK")

    def test_words_and_files(self):
        self.completed("quillmark-cli completion fi", "sh ")
        self.completed("quillmark-cli check bo", "ok.pdf ")
        self.completed("quillmark-cli scan on", "e\\ font.ttf ")

    def test_can_be_sourced(self):
        path = self.write("script", script("zsh"))
        lines = f"autoload -U compinit; compinit -u -D; . {path}; print $_comps[quillmark-cli]"
        result = subprocess.run(
            [self.program("zsh"), "-f", "-c", lines],
            capture_output=True,
            env=environment(self.folder),
            timeout=TIME_LIMIT,
        )
        self.assertEqual((result.stdout, result.stderr), (b"_quillmark-cli\n", b""))


class FishTest(CompletionTest):
    def offered(self, typed):
        self.write("script", script("fish"))
        result = subprocess.run(
            [self.program("fish"), "--no-config", "-c", f"source script; complete -C '{typed}'"],
            capture_output=True,
            cwd=self.folder,
            env=environment(self.folder),
            timeout=TIME_LIMIT,
        )
        self.assertEqual(result.stderr, b"")
        return [line.split("\t")[0] for line in result.stdout.decode("utf-8").splitlines()]

    def test_commands(self):
        self.assertEqual(self.offered("quillmark-cli inst"), ["installed"])
        self.assertEqual(
            sorted(self.offered("quillmark-cli ")),
            ["check", "completion", "explain", "installed", "notes", "scan", "show"],
        )

    def test_options_of_the_command(self):
        self.assertEqual(self.offered("quillmark-cli check --no-i"), ["--no-installed"])
        self.assertEqual(self.offered("quillmark-cli scan --no-i"), [])

    def test_values(self):
        self.assertEqual(self.offered("quillmark-cli installed --sort fam"), ["family"])
        self.assertEqual(self.offered("quillmark-cli installed -f jsonl"), ["jsonl"])
        self.assertEqual(
            self.offered("quillmark-cli installed --verdict unknown,li"), ["unknown,likelyOK"]
        )
        self.assertEqual(self.offered("quillmark-cli check x --fonts Fo"), ["Fonts/"])

    def test_words_and_files(self):
        self.assertEqual(self.offered("quillmark-cli completion z"), ["zsh"])
        self.assertIn("show", self.offered("quillmark-cli notes "))
        self.assertEqual(self.offered("quillmark-cli check book.p"), ["book.pdf"])
        self.assertEqual(self.offered("quillmark-cli explain bo"), [])


if __name__ == "__main__":
    unittest.main(argv=[sys.argv[0], "-v", *sys.argv[2:]])
