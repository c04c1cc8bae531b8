"""Runs programs and tells what they cost."""

import os
import statistics
import subprocess
import time
from dataclasses import dataclass, field
from pathlib import Path


@dataclass(frozen=True)
class Program:
    title: str
    command: list[str]
    standard_input: Path | None = None
    cores: int | None = None  # the number of cores that it may use; None for all
    environment: dict[str, str] = field(default_factory=dict)
    output: Path | None = None  # a file that it writes
    accepted: tuple[int, ...] = (0,)  # exit codes of success


@dataclass(frozen=True)
class Cost:
    cpu: float  # user and system time, in seconds, also of the processes that it started
    wall: float


def run(program: Program) -> Cost:
    """Runs the program, its output thrown away; ends this one when it fails."""
    here = os.sched_getaffinity(0)
    actions = [
        (os.POSIX_SPAWN_OPEN, 0, str(program.standard_input or os.devnull), os.O_RDONLY, 0),
        (os.POSIX_SPAWN_OPEN, 1, os.devnull, os.O_WRONLY, 0),
        (os.POSIX_SPAWN_OPEN, 2, os.devnull, os.O_WRONLY, 0),
    ]
    if program.output:
        # Replacing a file waits for the disk, which is not what is measured.
        program.output.unlink(missing_ok=True)
    if program.cores:
        os.sched_setaffinity(0, sorted(here)[: program.cores])  # the program inherits it
    begin = time.perf_counter()
    process = os.posix_spawnp(
        program.command[0],
        program.command,
        os.environ | program.environment,
        file_actions=actions,
    )
    _, status, usage = os.wait4(process, 0)
    wall = time.perf_counter() - begin
    os.sched_setaffinity(0, here)
    check(program, os.waitstatus_to_exitcode(status))
    return Cost(usage.ru_utime + usage.ru_stime, wall)


class ProgramFailed(SystemExit):
    """Ends this program, with a message, where nobody expects it."""


def check(program: Program, exit_code: int) -> None:
    if exit_code not in program.accepted:
        raise ProgramFailed(f"{program.title} failed: {program.command}")


def compare(programs: list[Program], rounds: int) -> dict[str, list[Cost]]:
    """The costs by title. The programs take turns, so that what else the machine does meets all of
    them alike; a first turn, which is not counted, warms the caches."""
    costs: dict[str, list[Cost]] = {program.title: [] for program in programs}
    for turn in range(rounds + 1):
        for program in programs:
            cost = run(program)
            if turn > 0:
                costs[program.title].append(cost)
    return costs


def median(costs: list[Cost]) -> Cost:
    return Cost(
        statistics.median(cost.cpu for cost in costs),
        statistics.median(cost.wall for cost in costs),
    )


def peak_memory(program: Program) -> int:
    """The most memory that the program has resident at once, in KiB."""
    # Asked of the system directly, the figure would be at least this interpreter's own size, which
    # a child has until its program is loaded; GNU time is small.
    result = subprocess.run(
        ["/usr/bin/time", "-q", "-f", "%M", *program.command],
        stdin=open(program.standard_input or os.devnull),
        stdout=subprocess.DEVNULL,
        stderr=subprocess.PIPE,
        env=os.environ | program.environment,
        text=True,
        check=False,
    )
    check(program, result.returncode)
    return int(result.stderr.split()[-1])
