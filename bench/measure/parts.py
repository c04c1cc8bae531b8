"""What the command lines of the benchmarks have in common."""

import argparse
from collections.abc import Iterable


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
