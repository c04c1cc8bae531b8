#!/usr/bin/env python3
"""Plants faults in copies of core's sources, one at a time, and counts how many the unit tests notice.
Run by ../../scripts/mutation, which says what it does."""

import argparse
import json
import os
import re
import resource
import shutil
import signal
import subprocess
import sys
import tempfile
import threading
import time
from collections import Counter
from dataclasses import dataclass, field, replace
from pathlib import Path
from typing import IO

import faults
from faults import Fault

HERE = Path(__file__).resolve().parent
sys.path.insert(0, str(HERE.parent / "conventions"))
import layout  # noqa: E402

# What the build reads.
COPIED = ["CMakeLists.txt", "CMakePresets.json", "README.md", "CHANGELOG.md", "cmake", "core", "reader",
          "cli", "fuzz", "packaging", "docs", "tests"]

# A fault may ask for all memory, or print without an end.
ADDRESS_SPACE = 6 << 30
KEPT_OUTPUT = 1 << 20

# Seconds; a test that takes longer waits until the others have passed.
SLOW = 0.4
SLOW_PART = " slow"


@dataclass
class Program:
    """Tests that are run in one go, and what has to be built for them."""

    folder: str  # whose tests they are
    targets: list[str]
    command: list[str]  # run in the folder of the build
    is_google_test: bool = True
    seconds: float = 0  # without a fault
    part: str = ""

    @property
    def name(self) -> str:
        return self.targets[0] + self.part

    @property
    def is_slow(self) -> bool:
        return self.part == SLOW_PART

    def parted(self, times: Path) -> list["Program"]:
        """The quick tests and the slow ones apart, where there are both: most faults are found by
        the quick ones."""
        suites = json.loads(times.read_text())["testsuites"] if self.is_google_test else []
        seconds = {f"{test['classname']}.{test['name']}": float(test["time"].removesuffix("s"))
                   for suite in suites for test in suite["testsuite"]}
        slow = [name for name, time_ in seconds.items() if time_ > SLOW]
        if not slow:
            return [self]
        of_slow = sum(seconds[name] for name in slow)
        listed = ":".join(slow)
        return [
            replace(self, command=[*self.command, f"--gtest_filter=-{listed}"], part=" quick",
                    seconds=max(self.seconds - of_slow, 0.1)),
            replace(self, command=[*self.command, f"--gtest_filter={listed}"], part=SLOW_PART,
                    seconds=of_slow),
        ]


def programs() -> dict[str, list[Program]]:
    """The tests of each folder, in the order in which they are run."""
    found = {}
    for folder in [*layout.CORE, "reader", "cli"]:
        target = f"test_{folder}"
        command = [f"tests/{target}", "--gtest_fail_fast", "--gtest_brief=1"]
        found[folder] = [Program(folder, [target], command)]
    # Reports are read by other programs.
    found["export"].append(Program(
        "export", ["report_samples", "quillmark-cli"],
        ["/usr/bin/python3", "-B", "../source/tests/export/report_test.py", "tests/report_samples",
         "cli/quillmark-cli", "../source/core/resources/Fonts", "-f"],
        is_google_test=False,
    ))
    return found


@dataclass
class Outcome:
    outcome: str  # "killed", "survived" or "not compiled"
    by: str = ""
    seconds: float = 0
    shown: str = field(default="")


def users_of(folder: str) -> list[str]:
    """The folders whose tests may notice a fault in one, besides itself."""
    users = [name for name, used in layout.CORE.items() if folder in used]
    faces = [name for name in ("reader", "cli") if folder in layout.FACES[name]]
    return users + faces


class Output:
    """Takes all that a program prints, and keeps the beginning."""

    def __init__(self, pipe: IO[bytes]):
        self._pipe = pipe
        self._kept = b""
        self._reader = threading.Thread(target=self._read, daemon=True)
        self._reader.start()

    def _read(self) -> None:
        while piece := self._pipe.read1(1 << 16):
            self._kept += piece[: KEPT_OUTPUT - len(self._kept)]

    def text(self) -> str:
        self._reader.join(5)  # what left the program's session may still hold the other end
        return self._kept.decode(errors="replace")


class Build:
    """A copy of the sources with a build folder beside it."""

    def __init__(self, root: Path, work: Path):
        self._root = root
        self.sources = work / "source"
        self._folder = work / "build"
        self._log = work / "build.log"
        # Short, since tests make sockets in it; and a home, since a faulty program has to have none
        # that matters.
        self._scratch = Path(tempfile.mkdtemp(prefix="qm"))
        self._home = work / "home"
        self._home.mkdir(parents=True, exist_ok=True)

    def close(self) -> None:
        shutil.rmtree(self._scratch, ignore_errors=True)

    def copy_sources(self) -> None:
        """What differs is copied, so that only that is built again."""
        listed = subprocess.run(
            ["git", "ls-files", "-z", "--cached", "--others", "--exclude-standard", "--", *COPIED],
            cwd=self._root, capture_output=True, text=True, check=True,
        ).stdout.split("\0")
        names = {name for name in listed if name and (self._root / name).is_file()}
        for name in names:
            self._copy(name)
        for path in self.sources.rglob("*"):
            if path.is_file() and path.relative_to(self.sources).as_posix() not in names:
                path.unlink()

    def _copy(self, name: str) -> None:
        source, copy = self._root / name, self.sources / name
        if not copy.is_file() or copy.read_bytes() != source.read_bytes():
            copy.parent.mkdir(parents=True, exist_ok=True)
            shutil.copy(source, copy)

    def configure(self) -> None:
        linker = ["-DCMAKE_EXE_LINKER_FLAGS=-fuse-ld=lld"] if shutil.which("ld.lld") else []
        done = self._logged([
            "cmake", "-S", str(self.sources), "-B", str(self._folder), "-G", "Ninja",
            "-DCMAKE_BUILD_TYPE=Debug", "-DCMAKE_CXX_FLAGS_DEBUG=-O0 -g0 -w", "-DQUILLMARK_APP=OFF",
            "-DCMAKE_GTEST_DISCOVER_TESTS_DISCOVERY_MODE=PRE_TEST", *linker,
        ])
        if not done:
            sys.exit(f"mutation: configuring failed; see {self._log}")

    def build(self, targets: list[str], jobs: int = 1) -> bool:
        return self._logged(["ninja", "-C", str(self._folder), "-j", str(jobs), *targets])

    def _logged(self, command: list[str]) -> bool:
        with self._log.open("w") as log:
            return subprocess.run(
                command, stdin=subprocess.DEVNULL, stdout=log, stderr=log, check=False
            ).returncode == 0

    def measured(self, program: Program) -> tuple[str, float, Path]:
        """As run, without a fault; and a file with the seconds of each of its tests."""
        times = self._folder / "times.json"
        command = [*program.command, f"--gtest_output=json:{times}"]
        timed = replace(program, command=command) if program.is_google_test else program
        return *self.run(timed, 600), times

    def run(self, program: Program, limit: float) -> tuple[str, float]:
        """Why the tests did not pass, or nothing; and how long they took."""
        shutil.rmtree(self._scratch, ignore_errors=True)
        self._scratch.mkdir()
        environment = os.environ | {"TMPDIR": str(self._scratch), "HOME": str(self._home)}

        def limit_process() -> None:
            resource.setrlimit(resource.RLIMIT_AS, (ADDRESS_SPACE, ADDRESS_SPACE))
            resource.setrlimit(resource.RLIMIT_CORE, (0, 0))
            # Ignored by what a shell, or nohup, starts in the background.
            for number in (signal.SIGHUP, signal.SIGINT, signal.SIGQUIT):
                signal.signal(number, signal.SIG_DFL)

        begin = time.monotonic()
        started = subprocess.Popen(
            program.command, cwd=self._folder, env=environment,
            stdin=subprocess.DEVNULL, stdout=subprocess.PIPE, stderr=subprocess.STDOUT,
            start_new_session=True, preexec_fn=limit_process,
        )
        output = Output(started.stdout)
        try:
            code = started.wait(limit)
            reason = "" if code == 0 else f"exit code {code}"
        except subprocess.TimeoutExpired:
            reason = f"took more than {limit:.0f} s"
        finally:
            # With all that it started itself.
            try:
                os.killpg(started.pid, signal.SIGKILL)
            except ProcessLookupError:
                pass
            started.wait()
        seconds = time.monotonic() - begin
        if reason:
            text = output.text()
            failed = re.search(r"(?:\[  FAILED  \]|^FAIL:|^ERROR:) (\S+?)[,\s]", text, re.MULTILINE)
            reason = f"{program.name} {failed[1] if failed else reason}"
        return reason, seconds


class Mutation:
    def __init__(self, build: Build, work: Path, is_quick: bool):
        self._build = build
        self._is_quick = is_quick
        self._results = work / "results.jsonl"
        self._programs = programs()
        self.known: dict[str, Outcome] = {}
        if self._results.exists():
            for line in self._results.read_text().splitlines():
                entry = json.loads(line)
                key = entry.pop("key")
                self.known[key] = Outcome(**entry)

    def measure(self) -> None:
        """The tests have to pass as long as nothing is wrong; how long they take decides when they
        hang, and which come first."""
        for folder, programs_ in self._programs.items():
            self._programs[folder] = []
            for program in programs_:
                reason, program.seconds, times = self._build.measured(program)
                if reason:
                    sys.exit(f"mutation: without a fault, {reason}")
                for part in program.parted(times):
                    self._programs[folder].append(part)
                    print(f"{part.name:<24}{part.seconds:6.1f} s", flush=True)

    def _programs_for(self, folder: str) -> list[Program]:
        first, *others = self._programs[folder]
        if self._is_quick:
            others = [program for program in others if not program.is_slow]
        for user in users_of(folder):
            others += [program for program in self._programs[user] if not program.is_slow]
        return [first, *sorted(others, key=lambda program: program.seconds)]

    def plant(self, fault: Fault) -> Outcome:
        path = self._build.sources / fault.file
        source = path.read_text(encoding="utf-8")
        begin = time.monotonic()
        try:
            path.write_text(fault.planted(source), encoding="utf-8")
            outcome = self._judge(fault.file.split("/")[1])
        finally:
            path.write_text(source, encoding="utf-8")
        outcome.seconds = round(time.monotonic() - begin, 1)
        outcome.shown = str(fault)
        return outcome

    def _judge(self, folder: str) -> Outcome:
        if not self._build.build([f"quillmark_{folder}"]):
            return Outcome("not compiled")
        for program in self._programs_for(folder):
            if not self._build.build(program.targets):
                return Outcome("not compiled")
            reason, _ = self._build.run(program, 20 + 5 * program.seconds)
            if reason:
                return Outcome("killed", reason)
        return Outcome("survived")

    def keep(self, fault: Fault, outcome: Outcome) -> None:
        self.known[fault.key] = outcome
        with self._results.open("a") as results:
            results.write(json.dumps({"key": fault.key, **outcome.__dict__}) + "\n")


def main() -> int:
    parser = argparse.ArgumentParser(prog="scripts/mutation", description=__doc__)
    parser.add_argument("--count", type=int, default=300)
    parser.add_argument("--seed", type=int, default=1)
    parser.add_argument("--again", action="store_true")
    parser.add_argument("--quick", action="store_true")
    parser.add_argument("--jobs", type=int, default=1)
    parser.add_argument("--only", default="")
    arguments = parser.parse_args()

    # Leaves no tests running that were started.
    signal.signal(signal.SIGTERM, lambda *_: sys.exit("mutation: stopped"))
    root = HERE.parent.parent
    work = root / "build" / "mutation"
    build = Build(root, work)
    try:
        return examine(build, work, arguments)
    finally:
        build.close()


def examine(build: Build, work: Path, arguments: argparse.Namespace) -> int:
    build.copy_sources()
    build.configure()
    targets = [target for group in programs().values() for program in group
               for target in program.targets]
    if not build.build(targets, arguments.jobs):
        sys.exit(f"mutation: building failed; see {work / 'build.log'}")
    mutation = Mutation(build, work, arguments.quick)
    mutation.measure()

    counted: list[tuple[Fault, Outcome]] = []
    for fault in faults.chosen(build.sources, "core", arguments.seed):
        if len(counted) == arguments.count:
            break
        outcome = mutation.known.get(fault.key)
        is_tried_again = arguments.again and outcome and outcome.outcome == "survived"
        if (outcome is None or is_tried_again) and arguments.only in fault.file:
            outcome = mutation.plant(fault)
            mutation.keep(fault, outcome)
            print(f"{len(counted) + 1:>4} {outcome.outcome:<13}{outcome.seconds:6.1f} s  {fault}"
                  f"  {outcome.by}", flush=True)
        if outcome and outcome.outcome != "not compiled":
            counted.append((fault, outcome))

    survivors = [fault for fault, outcome in counted if outcome.outcome == "survived"]
    print("\nSurvivors:", *(survivors or ["none"]), sep="\n  ")
    by_folder = Counter(fault.file.split("/")[1] for fault, _ in counted)
    survived = Counter(fault.file.split("/")[1] for fault in survivors)
    print()
    for folder in layout.CORE:
        killed = by_folder[folder] - survived[folder]
        print(f"  core/{folder:<12}{killed:>4} of {by_folder[folder]:>4}")
    killed = len(counted) - len(survivors)
    print(f"Killed {killed} of {len(counted)} faults: {100 * killed / max(1, len(counted)):.1f} %")
    return 0


if __name__ == "__main__":
    sys.exit(main())
