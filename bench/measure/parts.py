"""What the command lines of the benchmarks have in common."""

import argparse
import tempfile
from collections.abc import Callable, Iterable
from pathlib import Path
from typing import Any


def add_arguments(parser: argparse.ArgumentParser, parts: Iterable[str], rounds: int) -> None:
    """Adds the number of rounds, and the parts of the benchmark that can be named."""
    parser.add_argument(
        "--rounds", type=int, default=rounds, help=f"turns of each program (default: {rounds})"
    )
    parser.add_argument(
        "parts", nargs="*", metavar="PART", help=f"what to time: {', '.join(parts)} (default: all)"
    )


def parse(parser: argparse.ArgumentParser, parts: Iterable[str]) -> argparse.Namespace:
    """The arguments, with all parts where none is named. A wrong name ends the program."""
    arguments = parser.parse_args()
    for part in arguments.parts:
        if part not in parts:
            parser.error(f'there is no part "{part}"')
    arguments.parts = arguments.parts or list(parts)
    return arguments


def run(
    prog: str,
    description: str | None,
    parts: dict[str, Callable[[Any], None]],
    make: Callable[[Path, int, Path], Any],
    rounds: int,
) -> None:
    """The whole of a benchmark with one kind of programs: `make` gets their folder, the rounds and a
    folder for scratch, and each part is called with what it makes."""
    parser = argparse.ArgumentParser(description=description, prog=prog)
    parser.add_argument("--programs", type=Path, required=True, help=argparse.SUPPRESS)
    add_arguments(parser, parts, rounds)
    arguments = parse(parser, parts)
    with tempfile.TemporaryDirectory() as scratch:
        bench = make(arguments.programs.resolve(), arguments.rounds, Path(scratch))
        for part in arguments.parts:
            parts[part](bench)
