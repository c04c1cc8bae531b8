"""Runs quillmark-cli over the hostile files and compares what it reports, how long it takes and how
much memory it has at most with what is allowed. Run by ../../scripts/hostile and by CTest."""

import argparse
import itertools
import json
import os
import stat
import subprocess
import sys
import tempfile
import threading
import time
from collections.abc import Callable
from dataclasses import dataclass
from pathlib import Path

SECONDS = 5
# A process that waits takes next to no processor time. It is given up after 30 seconds, and its file
# is reported like one that cannot be read.
WAITING_SECONDS = 25
WAITING_CPU_SECONDS = 1
MEBIBYTES = 512


@dataclass(frozen=True)
class Run:
    report: dict
    exit_code: int
    wall: float
    cpu: float
    memory: float  # MiB of the largest process, the command line itself or a reader

    @property
    def waited(self) -> bool:
        return self.wall > WAITING_SECONDS and self.cpu < WAITING_CPU_SECONDS


def run(cli: str, output: Path, arguments: list[str]) -> Run:
    """Runs the command line as a user would; its report is empty when it wrote none."""
    output.unlink(missing_ok=True)
    command = [cli, *arguments, "--format", "json", "--output", str(output)]
    # As a child of a small process: until a program is loaded, it has the size of this one.
    begin = time.perf_counter()
    measured = subprocess.run(
        ["/usr/bin/time", "-q", "-f", "%M %U %S", "timeout", "60", *command],
        stdin=subprocess.DEVNULL,
        capture_output=True,
        text=True,
        errors="replace",
        check=False,
    )
    wall = time.perf_counter() - begin
    kibibytes, user, system = measured.stderr.split("\n")[-2].split()
    report = json.loads(output.read_text()) if output.exists() else {}
    return Run(
        report, measured.returncode, wall, float(user) + float(system), int(kibibytes) / 1024
    )


def pages_text(pages: list[int]) -> str:
    runs = []
    for _, run_ in itertools.groupby(enumerate(pages), lambda item: item[1] - item[0]):
        numbers = [number for _, number in run_]
        runs.append(str(numbers[0]) if len(numbers) == 1 else f"{numbers[0]}-{numbers[-1]}")
    return "+".join(runs)


def row_text(row: dict) -> str:
    pdf = row["pdf"]
    name = row["facts"]["postScriptName"] or row["facts"]["family"]
    facts = " with facts" if pdf["readEmbeddedData"] else ""
    return f"{name} {pdf['program']} {pages_text(pdf['pages'])}{facts}"


def report_text(report: dict) -> str:
    """What was read, in the form in which HostileFiles.h expects it."""
    if not report["lists"]:
        return "; ".join(error["message"] for error in report["errors"])
    texts = []
    for listed in report["lists"]:
        rows = listed["rows"]
        if listed["kind"] == "document":
            count = listed["pageCount"]
            text = f"{count} page" if count == 1 else f"{count} pages"
            few = sorted(row_text(row) for row in rows[:4])
            texts.append(text)
        else:
            few = sorted(row["facts"]["family"] for row in rows[:4])
        if len(rows) > 3 or any(len(text) > 100 for text in few):
            few = [f"{len(rows)} row" if len(rows) == 1 else f"{len(rows)} rows"]
        if few:
            texts.append(", ".join(few))
    return ": ".join(texts)


class Runner:
    def __init__(self, cli: str, mutants: str, folder: Path, slower: float):
        self._cli = cli
        self._mutants = mutants
        self._folder = folder
        self._slower = slower
        self._failures = 0

    def check(self, name: str, arguments: list[str], expected: str | Callable[[dict], bool]) -> None:
        """`expected`: the text of the report, or what says whether a report is right."""
        done = run(self._cli, self._folder / "report.json", arguments)
        problems = []
        if done.exit_code not in (0, 3) or not done.report:
            problems.append(f"exit code {done.exit_code}")
        else:
            found = report_text(done.report)
            if callable(expected):
                if not expected(done.report):
                    problems.append(f'not "{found[:200]}"')
            elif found != expected:
                problems.append(f'"{found[:200]}" instead of "{expected}"')
        # What else the machine does is no fault of the program, but what it waits for is.
        if min(done.wall, done.cpu) > SECONDS * self._slower or done.waited:
            problems.append("too slow")
        if done.memory > MEBIBYTES:
            problems.append("too much memory")
        print(
            f"{name:<40}{done.wall:8.2f} s{done.cpu:8.2f} s CPU{done.memory:8.1f} MiB   "
            + (", ".join(problems) or "as expected"),
            flush=True,
        )
        self._failures += bool(problems)

    def run(self) -> int:
        for line in (self._folder / "expected").read_text().splitlines():
            name, _, expected = line.partition("\t")
            path = str(self._folder / name)
            command = ["check", "--no-installed"] if name.endswith(".pdf") else ["scan"]
            self.check(name, [*command, path], expected)
        self.reader_outlives_all()
        self.strange_folder()
        self.cut_font()
        return self._failures

    def reader_outlives_all(self) -> None:
        """A file that a reader ends over is reported like one that holds nothing."""
        reader = Path(self._cli).parent.parent / "lib/quillmark/quillmark-reader"
        lines = (self._folder / "expected").read_text().splitlines()
        files = [str(self._folder / line.partition("\t")[0]) for line in lines]
        done = subprocess.run([self._mutants, "files", str(reader), *files], check=False)
        print(f"{'all in one process of a reader':<40}{len(files):8} files", flush=True)
        self._failures += done.returncode != 0

    def strange_folder(self) -> None:
        """A folder with everything that is neither a file nor a folder, and links in circles."""
        folder = self._folder / "strange"
        folder.mkdir(exist_ok=True)
        (folder / "sound.ttf").write_bytes((self._folder / "sound.ttf").read_bytes())
        os.mkfifo(folder / "pipe.ttf")
        os.mkfifo(folder / "pipe.pdf")
        os.mkfifo(folder / "OFL.txt")
        links = {
            "zero.ttf": "/dev/zero",
            "terminal.otf": "/dev/tty",
            "random.woff2": "/dev/urandom",
            "self.ttf": "self.ttf",
            "ping.ttf": "pong.ttf",
            "pong.ttf": "ping.ttf",
            "folder.ttf": ".",
            "above": "..",
            "gone.ttf": "nowhere",
            "memory.ttf": "/proc/self/mem",
            "linked-pipe.ttf": "pipe.ttf",
        }
        for link, target in links.items():
            (folder / link).symlink_to(target)
        try:
            os.mknod(folder / "device.ttf", stat.S_IFCHR | 0o600, os.makedev(1, 5))
        except PermissionError:
            pass  # only root makes devices; the links lead to some
        deep = folder
        for _ in range(100):
            deep = deep / ("d" * 10)
            deep.mkdir()
        self.check("a folder of pipes, devices and loops", ["scan", str(folder)], "Sound")
        for name in ["pipe.pdf", "zero.ttf", "self.ttf", "above"]:
            self.check(
                f"{name} as a document",
                ["check", "--no-installed", str(folder / name)],
                f"{name} couldn't be opened as a PDF.",
            )

    def cut_font(self) -> None:
        """A folder whose fonts are cut to nothing and written again while they are read."""
        folder = self._folder / "changing"
        folder.mkdir(exist_ok=True)
        sound = (self._folder / "sound.ttf").read_bytes()
        changing = [folder / f"changing{i}.ttf" for i in range(200)]
        for path in changing:
            path.write_bytes(sound)
        still = [folder / f"still{i}.ttf" for i in range(3)]
        for path in still:
            path.write_bytes(sound)
        is_over = threading.Event()

        def change() -> None:
            while not is_over.is_set():
                for path in changing:
                    os.truncate(path, 60)
                    path.write_bytes(sound)

        cuts = 0

        def is_right(report: dict) -> bool:
            nonlocal cuts
            families = {
                row["facts"]["filePath"]: row["facts"]["family"]
                for row in report["lists"][0]["rows"]
            }
            cuts += len(changing) + len(still) - list(families.values()).count("Sound")
            # A font whose names are cut off goes by the name of its file.
            return all(families.pop(str(path), "") == "Sound" for path in still) and all(
                family in ("Sound", Path(path).stem) for path, family in families.items()
            )

        changer = threading.Thread(target=change)
        changer.start()
        try:
            for turn in range(100):
                if turn >= 5 and cuts > 0:
                    break
                self.check(
                    f"fonts cut while they are read, turn {turn + 1}",
                    ["scan", str(folder)],
                    is_right,
                )
        finally:
            is_over.set()
            changer.join()
        if cuts == 0:
            print("no font was cut while it was read")
            self._failures += 1


def main() -> None:
    parser = argparse.ArgumentParser(description=__doc__)
    parser.add_argument("cli")
    parser.add_argument("maker", help="the program hostile_files")
    parser.add_argument("mutants", help="the program mutants, which sees readers end")
    parser.add_argument("--quick", action="store_true", help="without the large files")
    parser.add_argument(
        "--slower", type=float, default=1, help="how much slower a build may be than a release"
    )
    arguments = parser.parse_args()
    with tempfile.TemporaryDirectory() as folder:
        quick = ["--quick"] if arguments.quick else []
        subprocess.run([arguments.maker, folder, *quick], check=True)
        failures = Runner(
            arguments.cli, arguments.mutants, Path(folder), arguments.slower
        ).run()
    if failures:
        sys.exit(f"{failures} of the hostile files are not as expected")


if __name__ == "__main__":
    main()
