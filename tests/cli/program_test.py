"""Tests of the built quillmark-cli as a process: what only shows from outside.

Usage: program_test.py PROGRAM SAMPLES SOURCES [unittest arguments]
PROGRAM is quillmark-cli, SAMPLES the program that writes sample fonts and documents, SOURCES the
project's folder with the schema and the manuals.
"""

import json
import os
import pty
import re
import resource
import select
import shutil
import signal
import subprocess
import sys
import tempfile
import time
import unittest

import jsonschema

PROGRAM, SAMPLES, SOURCES = (os.path.abspath(path) for path in sys.argv[1:4])
TIME_LIMIT = 60  # seconds; far more than anything here takes


def document(name):
    with open(os.path.join(SOURCES, "docs", name), encoding="utf-8") as file:
        return file.read()


def closed(schema):
    """A schema without room for keys that later versions may add: none is left undescribed."""
    if isinstance(schema, list):
        return [closed(part) for part in schema]
    if not isinstance(schema, dict):
        return schema
    parts = {key: closed(part) for key, part in schema.items()}
    return {**parts, "additionalProperties": False} if schema.get("type") == "object" else parts


def run(*arguments, **options):
    options.setdefault("stdin", subprocess.DEVNULL)
    options.setdefault("stdout", subprocess.PIPE)
    options.setdefault("stderr", subprocess.PIPE)
    return subprocess.run([PROGRAM, *arguments], timeout=TIME_LIMIT, **options)


def run_on_terminal(*arguments, environment):
    """Everything that a run writes to a terminal of 80 columns."""
    child, terminal = pty.fork()
    if child == 0:
        os.execve(PROGRAM, [PROGRAM, *arguments], environment)
    written = b""
    while True:
        ready, _, _ = select.select([terminal], [], [], TIME_LIMIT)
        try:
            piece = os.read(terminal, 65536) if ready else b""
        except OSError:  # the other side is closed
            piece = b""
        if not piece:
            break
        written += piece
    os.close(terminal)
    _, status = os.waitpid(child, 0)
    return os.waitstatus_to_exitcode(status), written.decode("utf-8")


class ProgramTest(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        cls.temporary = tempfile.TemporaryDirectory()
        cls.folder = cls.temporary.name
        subprocess.run([SAMPLES, cls.folder], check=True, timeout=TIME_LIMIT)
        cls.fonts = os.path.join(cls.folder, "Fonts")

    @classmethod
    def tearDownClass(cls):
        cls.temporary.cleanup()

    def at(self, name):
        return os.path.join(self.folder, name)


class JsonTest(ProgramTest):
    """Real output is valid against the published schema."""

    def report(self, *arguments, exit_code=0):
        result = run(*arguments, "--format", "json")
        self.assertEqual(result.returncode, exit_code, result.stderr)
        report = json.loads(result.stdout.decode("utf-8"))
        published = json.loads(document("schema/quillmark.schema.json"))
        schema = closed(published)
        validator = jsonschema.validators.validator_for(schema)
        validator.check_schema(schema)
        validator(schema).validate(report)
        # A schema that lets everything pass would prove nothing.
        with self.assertRaises(jsonschema.ValidationError):
            validator(schema).validate({**report, "lists": [{}]})
        # The reports of later versions pass, which may have more keys.
        validator(published).validate({**report, "later": 1})
        return report

    def test_installed(self):
        report = self.report("installed")
        self.assertEqual([entry["kind"] for entry in report["lists"]], ["installed"])

    def test_scan_of_a_folder_and_a_file_with_an_error(self):
        report = self.report(
            "scan", self.fonts, self.at("Fonts/cedar.ttf"), self.at("gone"), exit_code=3
        )
        self.assertEqual([len(entry["rows"]) for entry in report["lists"]], [2, 1])
        self.assertEqual(
            report["errors"],
            [{"path": self.at("gone"), "message": "No such file or directory"}],
        )

    def test_check_with_and_without_a_match(self):
        report = self.report(
            "check", self.at("document.pdf"), "--fonts", self.fonts, "--no-installed"
        )
        (row,) = report["lists"][0]["rows"]
        self.assertEqual(row["pdf"]["matchedPath"], self.at("Fonts/cedar.ttf"))
        report = self.report(
            "check", self.at("document.pdf"), self.at("gone.pdf"), "--no-installed", exit_code=3
        )
        (row,) = report["lists"][0]["rows"]
        self.assertNotIn("matchedPath", row["pdf"])


    def test_lines(self):
        schema = closed(json.loads(document("schema/quillmark.schema.json")))
        line_schema = {"$schema": schema["$schema"], **schema["$defs"]["line"]}
        line_schema.update({key: schema[key] for key in ("$defs",)})
        line_schema["properties"]["disclaimer"] = schema["properties"]["disclaimer"]
        validator = jsonschema.validators.validator_for(line_schema)(line_schema)
        result = run("scan", self.fonts, self.at("Fonts/cedar.ttf"), "--format", "jsonl")
        lines = result.stdout.decode("utf-8").splitlines()
        document_lines = run(
            "check", self.at("document.pdf"), "--no-installed", "-fjsonl"
        ).stdout.decode("utf-8").splitlines()
        self.assertEqual((len(lines), len(document_lines)), (3, 1))
        for line in lines + document_lines:
            validator.validate(json.loads(line))
            with self.assertRaises(jsonschema.ValidationError):
                validator.validate({**json.loads(line), "later": 1})
        # A line is the row of the whole report, with its list.
        report = json.loads(run("scan", self.fonts, "--json").stdout)
        for line, row in zip(lines, report["lists"][0]["rows"]):
            self.assertEqual({**json.loads(line), **row}, json.loads(line))

    def test_lines_come_at_once(self):
        reader, writer = os.pipe()
        list_reader, list_writer = os.pipe()
        with subprocess.Popen(
            [PROGRAM, "scan", self.fonts, "--files-from", "/dev/stdin", "-fjsonl"],
            stdin=list_reader,
            stdout=writer,
        ) as process:
            os.close(writer)
            os.close(list_reader)
            os.close(list_writer)
            # As many writes as lines: none waits for the next one.
            pieces = []
            while piece := os.read(reader, 65536):
                pieces.append(piece)
            os.close(reader)
        self.assertEqual(process.returncode, 0)
        self.assertEqual(b"".join(pieces).count(b"\n"), 2)
        self.assertTrue(all(piece.endswith(b"}\n") for piece in pieces))

    def test_show_with_a_note(self):
        notes = self.at("my-notes.json")
        note = {
            "boughtFrom": "Tree Types",
            "license": "ebook",
            "text": "",
            "attachment": "0A1B2C3D-receipt.pdf",
            "attachmentName": "receipt.pdf",
            "updated": "2026-03-14T09:26:53Z",
            "url": "",
        }
        with open(notes, "w", encoding="utf-8") as file:
            json.dump({"notes": {"Cedar-Regular": note}}, file)
        report = self.report("show", self.at("Fonts/cedar.ttf"), "--notes", notes)
        (row,) = report["lists"][0]["rows"]
        self.assertEqual(row["note"]["attachmentName"], "receipt.pdf")
        self.assertNotIn("attachment", row["note"])
        report = self.report("show", "no such font", "--no-notes", exit_code=3)
        self.assertEqual(report["errors"][0]["path"], "no such font")

    def test_the_time_of_a_check_can_be_fixed(self):
        for value, expected in (
            ("0", "1970-01-01T00:00:00Z"),
            ("1700000000", "2023-11-14T22:13:20Z"),
            ("9223372036", "2262-04-11T23:47:16Z"),
        ):
            self.assertEqual(self.checked_at(value), expected)
        for value in ("", "-1", "1.5", "12x", "9223372037", "99999999999999999999"):
            before = time.gmtime()
            checked = time.strptime(self.checked_at(value), "%Y-%m-%dT%H:%M:%SZ")
            self.assertLessEqual(before[:6], checked[:6], value)
            self.assertLessEqual(checked[:6], time.gmtime()[:6], value)

    def checked_at(self, source_date_epoch):
        environment = {**os.environ, "SOURCE_DATE_EPOCH": source_date_epoch}
        result = run(
            "check", self.at("document.pdf"), "--no-installed", "-fjson", env=environment
        )
        return json.loads(result.stdout)["lists"][0]["checkedAt"]


class PdfReportTest(ProgramTest):
    def write(self, *arguments, **options):
        path = self.at("report.pdf")
        result = run(*arguments, "--format", "pdf", "--output", path, **options)
        self.assertEqual((result.returncode, result.stdout, result.stderr), (0, b"", b""))
        return path

    def lines(self, path):
        text = subprocess.run(
            ["pdftotext", "-raw", path, "-"], check=True, capture_output=True, timeout=TIME_LIMIT
        ).stdout.decode("utf-8")
        return text.splitlines()

    def test_it_names_each_list(self):
        lines = self.lines(self.write("scan", self.fonts, self.at("Fonts/cedar.ttf")))
        self.assertEqual(lines[0], "Font license audit: Fonts, cedar.ttf")
        self.assertEqual(lines[1].split(", ")[0], self.fonts)
        self.assertIn("3 fonts: 1 restricted, 0 unknown, 2 likely OK.", lines)

    def test_it_names_no_list_when_nothing_could_be_read(self):
        path = self.at("empty.pdf")
        result = run("scan", self.at("gone"), "--format", "pdf", "--output", path)
        self.assertEqual(result.returncode, 3)
        self.assertEqual(self.lines(path)[0], "Font license audit")

    def test_the_same_time_gives_the_same_bytes(self):
        environment = {**os.environ, "SOURCE_DATE_EPOCH": "1700000000", "TZ": "UTC"}
        reports = []
        for _ in range(2):
            with open(self.write("scan", self.fonts, env=environment), "rb") as file:
                reports.append(file.read())
        self.assertEqual(reports[0], reports[1])

    def test_notes_are_found_where_the_application_keeps_them(self):
        home = self.at("Home")
        folder = os.path.join(home, ".local/share/Quillmark")
        os.makedirs(folder)
        note = {
            "boughtFrom": "Tree Types",
            "license": "ebook",
            "text": "",
            "updated": "2026-03-14T09:26:53Z",
            "url": "",
        }
        with open(os.path.join(folder, "notes.json"), "w", encoding="utf-8") as file:
            json.dump({"notes": {"Cedar-Regular": note}}, file)
        environment = {**os.environ, "HOME": home, "XDG_DATA_HOME": ""}
        result = run("scan", self.fonts, "--format", "csv", env=environment)
        self.assertIn(b",Ebook / ePub,Tree Types,", result.stdout)
        environment["XDG_DATA_HOME"] = os.path.join(home, ".local/share")
        environment["HOME"] = "/nowhere"
        result = run("scan", self.fonts, "--format", "csv", env=environment)
        self.assertIn(b",Ebook / ePub,Tree Types,", result.stdout)
        environment["XDG_DATA_HOME"] = "relative"
        result = run("scan", self.fonts, "--format", "csv", env=environment)
        self.assertNotIn(b"Tree Types", result.stdout)


class StreamsTest(ProgramTest):
    def test_a_closed_pipe_ends_the_program_quietly(self):
        reader, writer = os.pipe()
        os.close(reader)
        result = run("scan", self.fonts, stdout=writer)
        os.close(writer)
        self.assertEqual((result.returncode, result.stderr), (141, b""))

    def test_closed_standard_output_is_reported(self):
        result = subprocess.run(
            ["/bin/sh", "-c", '"$0" scan "$1" >&-', PROGRAM, self.fonts],
            stderr=subprocess.PIPE,
            timeout=TIME_LIMIT,
        )
        self.assertEqual(result.returncode, 4)
        self.assertIn(b"standard output could not be written", result.stderr)

    def test_with_all_standard_streams_closed_the_output_file_gets_the_report_only(self):
        result = subprocess.run(
            [
                "/bin/sh",
                "-c",
                '"$0" scan "$1" /nowhere -o "$2" <&- >&- 2>&-',
                PROGRAM,
                self.fonts,
                self.at("report.txt"),
            ],
            timeout=TIME_LIMIT,
        )
        self.assertEqual(result.returncode, 3)
        with open(self.at("report.txt"), encoding="utf-8") as file:
            report = file.read()
        self.assertTrue(report.startswith("Fonts\n"), report)
        self.assertNotIn("/nowhere", report)

    def test_a_limit_on_the_size_of_files_is_an_error_of_the_write(self):
        result = run(
            "scan",
            *[self.fonts] * 100,
            "-o",
            self.at("limited.txt"),
            preexec_fn=lambda: resource.setrlimit(resource.RLIMIT_FSIZE, (8192, 8192)),
        )
        self.assertEqual(result.returncode, 4)
        self.assertIn(b"limited.txt could not be written: File too large", result.stderr)
        self.assertFalse(os.path.exists(self.at("limited.txt")))

    def test_appending_to_standard_output_under_its_device_name(self):
        with open(self.at("log"), "wb") as file:
            file.write(b"before\n")
        with open(self.at("log"), "ab") as file:
            run("scan", self.fonts, "-o", "/dev/stdout", stdout=file)
        with open(self.at("log"), "rb") as file:
            self.assertTrue(file.read().startswith(b"before\nFonts\n"))

    def test_ctrl_c_exits_with_130_at_once(self):
        times = []
        for _ in range(5):
            # It cannot end by itself while nobody reads the pipe.
            reader, writer = self.full_pipe()
            with subprocess.Popen([PROGRAM, "scan", self.fonts], stdout=writer) as process:
                os.close(writer)
                self.wait_until_it_handles(process.pid, signal.SIGINT)
                start = time.monotonic()
                process.send_signal(signal.SIGINT)
                self.assertEqual(process.wait(TIME_LIMIT), 130)
                times.append(time.monotonic() - start)
            os.close(reader)
        self.assertLess(min(times), 0.1)  # seconds; a busy machine is slow now and then

    @staticmethod
    def wait_until_it_handles(process, number):
        end = time.monotonic() + TIME_LIMIT
        while time.monotonic() < end:
            with open(f"/proc/{process}/status", encoding="utf-8") as file:
                caught = int(re.search(r"(?m)^SigCgt:\s*([0-9a-f]+)", file.read()).group(1), 16)
            if caught >> (number - 1) & 1:
                return
            time.sleep(0)
        raise AssertionError("it does not handle the signal")

    @staticmethod
    def full_pipe():
        reader, writer = os.pipe()
        os.set_blocking(writer, False)
        try:
            while True:
                os.write(writer, b"x")
        except BlockingIOError:
            os.set_blocking(writer, True)
        return reader, writer


class TerminalTest(ProgramTest):
    def test_a_terminal_gets_color_and_no_color_is_respected(self):
        environment = {**os.environ, "TERM": "xterm"}
        environment.pop("NO_COLOR", None)
        code, text = run_on_terminal("-q", "scan", self.fonts, environment=environment)
        self.assertEqual(code, 0)
        self.assertIn("\x1b[31m", text)
        for plain in ({"NO_COLOR": "1"}, {"TERM": "dumb"}):
            code, text = run_on_terminal(
                "-q", "scan", self.fonts, environment={**environment, **plain}
            )
            self.assertEqual(code, 0)
            self.assertNotIn("\x1b", text)
        code, text = run_on_terminal(
            "-q", "scan", self.fonts, environment={**environment, "NO_COLOR": ""}
        )
        self.assertIn("\x1b[31m", text)

    def test_a_terminal_that_cannot_erase_lines_gets_no_progress(self):
        environment = {**os.environ, "TERM": "dumb"}
        code, text = run_on_terminal("scan", self.fonts, environment=environment)
        self.assertEqual(code, 0)
        self.assertTrue(text.startswith("Fonts\r\n"), text)
        self.assertNotIn("\x1b", text)
        del environment["TERM"]
        self.assertEqual(run_on_terminal("scan", self.fonts, environment=environment), (code, text))

    def test_what_is_done_quickly_shows_no_progress(self):
        environment = {**os.environ, "TERM": "xterm", "NO_COLOR": "1"}
        starts = set()
        for _ in range(5):  # a busy machine is slow now and then
            code, text = run_on_terminal("scan", self.fonts, environment=environment)
            self.assertEqual(code, 0)
            starts.add(text.startswith("Fonts\r\n"))
        self.assertIn(True, starts)

    def test_lines_fit_the_terminal(self):
        environment = {**os.environ, "TERM": "xterm", "NO_COLOR": "1"}
        _, text = run_on_terminal(
            "-q", "scan", self.at("Fonts/acme.ttf"), environment=environment
        )
        for line in text.split("\r\n")[2:]:  # the first two are the name and the path
            self.assertLessEqual(len(line), 80, line)


class RepeatedTest(ProgramTest):
    def results(self, environment):
        """What each format says of the samples."""
        environment = {**os.environ, "SOURCE_DATE_EPOCH": "1700000000", "TZ": "UTC", **environment}
        found = {}
        for command in (("scan", self.fonts), ("check", self.at("document.pdf"), "--no-installed")):
            for form in ("text", "json", "jsonl", "csv", "pdf"):
                result = run(*command, "-f", form, env=environment)
                self.assertEqual((result.returncode, result.stderr), (0, b""))
                self.assertTrue(result.stdout)
                found[command[0], form] = result.stdout
        return found

    def test_the_same_input_gives_the_same_bytes(self):
        self.assertEqual(self.results({}), self.results({}))

    def test_what_programs_read_does_not_depend_on_the_language(self):
        english, turkish = self.results({"LC_ALL": "C"}), self.results({"LC_ALL": "tr_TR.UTF-8"})
        for key in english:
            if key[1] in ("json", "jsonl", "csv"):
                self.assertEqual(english[key], turkish[key], key)


class StartTest(ProgramTest):
    def test_it_needs_no_qt(self):
        result = subprocess.run(["ldd", PROGRAM], capture_output=True, timeout=TIME_LIMIT)
        self.assertIn(b"libc.so", result.stdout)
        self.assertNotIn(b"Qt", result.stdout)


class ReaderTest(ProgramTest):
    """What becomes of the program when the one that reads for it cannot do so."""

    def run_beside(self, reader, *arguments):
        """Runs a copy of the program that has `reader`, a script, for its reader, or none."""
        with tempfile.TemporaryDirectory() as folder:
            program = os.path.join(folder, "bin", "quillmark-cli")
            os.mkdir(os.path.dirname(program))
            shutil.copy(PROGRAM, program)
            if reader is not None:
                path = os.path.join(folder, "lib", "quillmark", "quillmark-reader")
                os.makedirs(os.path.dirname(path))
                with open(path, "w", encoding="utf-8") as file:
                    file.write(reader)
                os.chmod(path, 0o755)
            return subprocess.run(
                [program, *arguments], capture_output=True, timeout=TIME_LIMIT, check=False
            )

    def test_that_it_cannot_be_started_is_said(self):
        commands = (
            ["installed"],
            ["scan", self.fonts],
            ["check", self.at("document.pdf")],
            ["check", self.at("document.pdf"), "--no-installed"],
            ["show", "Foo"],
        )
        for command in commands:
            result = self.run_beside(None, *command)
            self.assertEqual(result.returncode, 70, command)
            self.assertIn(b"quillmark-reader cannot be started: No such file", result.stderr)

    def test_that_it_does_not_work_is_said(self):
        for command in (["installed"], ["scan", self.fonts], ["check", self.at("document.pdf")]):
            result = self.run_beside("#!/bin/sh\n", *command)
            self.assertEqual(result.returncode, 70, command)
            self.assertIn(b"quillmark-reader does not work", result.stderr)

    def test_without_proc_none_is_started_from_the_current_folder(self):
        without_proc = ["unshare", "-rm", "sh", "-c", 'mount -t tmpfs none /proc && exec "$@"', "-"]
        with tempfile.TemporaryDirectory() as folder:
            path = os.path.join(folder, "lib", "quillmark", "quillmark-reader")
            os.makedirs(os.path.dirname(path))
            with open(path, "w", encoding="utf-8") as file:
                file.write("#!/bin/sh\ntouch started\n")
            os.chmod(path, 0o755)
            if subprocess.run([*without_proc, "true"], check=False).returncode != 0:
                self.skipTest("this system lets nobody hide /proc")
            subprocess.run(
                [*without_proc, PROGRAM, "scan", self.fonts],
                cwd=folder,
                stdin=subprocess.DEVNULL,
                capture_output=True,
                timeout=TIME_LIMIT,
                check=False,
            )
            self.assertEqual(os.listdir(folder), ["lib"])


class DocumentationTest(unittest.TestCase):
    """README, the manual, the manual page, --help and the completions tell the same."""

    @classmethod
    def setUpClass(cls):
        cls.help = run("--help").stdout.decode("utf-8")

    def test_all_name_the_same_options(self):
        options = self.options(self.help)
        self.assertEqual(len(options), 20)
        self.assertEqual(self.options(run("--help-all").stdout.decode("utf-8")), options)
        self.assertEqual(self.options(document("command-line.md")) - {"--install"}, options)
        self.assertEqual(self.options(document("man/quillmark-cli.1.scd")), options)
        for shell in ("bash", "zsh"):
            self.assertEqual(self.options(self.completion(shell)), options, shell)
        fish = re.findall(r" -l ([a-z-]+)", self.completion("fish"))
        self.assertEqual({"--" + name for name in fish}, options)

    def test_all_name_the_same_short_options(self):
        pattern = r"(?<![\w-])-([A-Za-z0-9])(?=, --)"
        short = set(re.findall(pattern, self.help))
        self.assertEqual(short, set("0fohqv"))
        self.assertEqual(set(re.findall(pattern, document("man/quillmark-cli.1.scd"))), short)
        self.assertEqual(
            set(re.findall(r"(?m)^\| `-([A-Za-z0-9])`, `--", document("command-line.md"))), short
        )
        self.assertEqual(set(re.findall(r" -s (\S)", self.completion("fish"))), short)

    def test_all_name_the_same_commands(self):
        commands = set(re.findall(r"(?m)^  ([a-z]+)\b(?! *-)", self.help.split("Which fonts")[0]))
        commands.discard("quillmark")
        self.assertEqual(
            commands, {"installed", "scan", "check", "show", "notes", "explain", "completion"}
        )
        synopsis = document("man/quillmark-cli.1.scd").split("# DESCRIPTION")[0]
        self.assertEqual(set(re.findall(r"(?m)^\*quillmark-cli\* \*([a-z]+)\*", synopsis)), commands)
        for name in ("docs/command-line.md", "README.md"):
            with open(os.path.join(SOURCES, name), encoding="utf-8") as file:
                used = set(re.findall(r"quillmark-cli ([a-z]+)", file.read()))
            self.assertEqual(used, commands, name)
        fish = re.findall(r"__fish_use_subcommand -a ([a-z]+)", self.completion("fish"))
        self.assertEqual(set(fish), commands)

    def test_readme_names_only_options_that_there_are(self):
        with open(os.path.join(SOURCES, "README.md"), encoding="utf-8") as file:
            lines = [line for line in file if "quillmark-cli" in line and "build" not in line]
        self.assertGreater(len(lines), 10)
        self.assertLessEqual(self.options("".join(lines)), self.options(self.help))

    def test_examples_of_the_help_are_understood(self):
        examples = re.findall(r"(?m)^  quillmark-cli (.*)$", self.help)
        self.assertGreater(len(examples), 4)
        for example in examples:
            words = example.replace("~/", "/nowhere/").split()
            result = run(*words, "--output", "/dev/null", "--format", "text")
            self.assertIn(result.returncode, (0, 3), example)

    def test_the_manual_page_is_without_faults(self):
        made = subprocess.run(
            ["scdoc"],
            input=document("man/quillmark-cli.1.scd").encode("utf-8"),
            capture_output=True,
            check=True,
            timeout=TIME_LIMIT,
        )
        shown = subprocess.run(
            ["groff", "-man", "-Tutf8", "-ww", "-K", "utf8"],
            input=made.stdout,
            capture_output=True,
            check=True,
            timeout=TIME_LIMIT,
        )
        self.assertEqual(shown.stderr, b"")

    def test_all_name_the_same_exit_codes(self):
        codes = set(re.findall(r"(?m)^ +([0-9]+)   [A-Za-z]", self.help))
        self.assertEqual(codes, {"0", "1", "2", "3", "4", "70", "130"})
        codes.add("141")  # of interest to few, so it is not in the help
        self.assertEqual(set(re.findall(r"(?m)^\| ([0-9]+) \|", document("command-line.md"))), codes)
        self.assertEqual(
            set(re.findall(r"(?m)^\*([0-9]+)\*$", document("man/quillmark-cli.1.scd"))), codes
        )

    @staticmethod
    def completion(shell):
        return run("completion", shell).stdout.decode("utf-8")

    @staticmethod
    def options(text):
        return set(re.findall(r"(?<![\w-])--[a-z]+(?:-[a-z]+)*", text))


if __name__ == "__main__":
    unittest.main(argv=[sys.argv[0], "-v", *sys.argv[4:]])
