"""Times the window and prints figures beside their targets. Run by ../window.sh."""

import subprocess
from pathlib import Path

import big
import parts
from figures import heading, print_figure, ratio
from processes import Program, compare, median

WINDOW, PLAIN = "the window", "the same widgets, no data"
STALL, MEMORY, ROWS = "longest stall in ms", "MB of memory", "rows"


class Bench:
    def __init__(self, programs: Path, rounds: int, scratch: Path):
        self._program = str(programs / "bench/bench_window")
        self._rounds = rounds
        self._scratch = scratch

    def start(self) -> None:
        window = Program(WINDOW, [self._program, "window"])
        plain = Program(PLAIN, [self._program, "plain"])
        costs = compare([window, plain], self._rounds)
        heading("Until the window is seen")
        for title, rounds in costs.items():
            cost = median(rounds)
            print(f"{title:<28}{cost.wall * 1e3:9.1f} ms{cost.cpu * 1e3:9.1f} ms CPU")
        wall = ratio(costs[WINDOW], costs[PLAIN], lambda cost: cost.wall)
        print_figure("time to the same widgets without data", wall, 1.5)
        print_figure("MB of memory", self._figures("window")[MEMORY], 60)
        print_figure("MB of the same widgets without data", self._figures("plain")[MEMORY])

    def folder(self) -> None:
        heading("While fonts are read")
        for count, memory in ((10_000, None), (5_000, 90)):
            folder = self._scratch / f"fonts{count}"
            subprocess.run([self._program, "fonts", folder, str(count)], check=True)
            rounds = [self._figures("folder", folder) for _ in range(self._rounds)]
            if rounds[0][ROWS] != count:
                raise SystemExit(f"{rounds[0][ROWS]} rows of {count}")
            self._print_stall(f"{count:,} fonts", rounds)
            print_figure(f"{count:,} fonts: MB of memory", worst(rounds, MEMORY), memory)

    def document(self) -> None:
        heading("While a document is checked")
        path = self._scratch / "manual.pdf"
        big.write(path, 2_000, 200, big.Resources.OWN, big.Objects.PACKED)
        rounds = [self._figures("document", path) for _ in range(self._rounds)]
        self._print_stall("2,000 pages", rounds)

    @staticmethod
    def _print_stall(title: str, rounds: list[dict[str, float]]) -> None:
        print_figure(f"{title}: longest stall in ms, worst round", worst(rounds, STALL), 50)

    def _figures(self, *arguments: str | Path) -> dict[str, float]:
        output = subprocess.run(
            [self._program, *arguments], check=True, text=True, capture_output=True
        ).stdout
        lines = (line.rsplit(": ", 1) for line in output.splitlines())
        return {name: float(value) for name, value in lines}


def worst(rounds: list[dict[str, float]], name: str) -> float:
    return max(figures[name] for figures in rounds)


PARTS = {"start": Bench.start, "folder": Bench.folder, "document": Bench.document}


if __name__ == "__main__":
    parts.run("bench/window.sh", __doc__, PARTS, Bench, rounds=9)
