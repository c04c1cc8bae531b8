"""Times PDF reports and prints ratios beside their targets. Run by ../report.sh."""

import subprocess
from pathlib import Path

import parts
from figures import heading, print_costs, print_figure, ratio
from processes import Cost, Program, compare, median, peak_memory

REPORT, PANGO, START = "report", "Pango, line by line", "start and rows"
ROWS = 5_000


class Bench:
    def __init__(self, programs: Path, rounds: int, scratch: Path):
        self._program = str(programs / "bench/bench_report")
        self._rounds = rounds
        self._output = scratch / "report.pdf"

    def report(self, rows: int, title: str = REPORT) -> Program:
        command = [self._program, "report", str(rows), str(self._output)]
        return Program(title, command, output=self._output)

    def start(self, rows: int) -> Program:
        return Program(START, [self._program, "start", str(rows)])

    def rows(self) -> None:
        pango = Program(PANGO, [self._program, "pango", str(ROWS)])
        start = self.start(ROWS)
        costs = compare([self.report(ROWS), pango, start], self._rounds)
        heading(f"{ROWS:,} fonts")
        print_costs(costs, 1)
        print_figure(
            "report to Pango, both without start: CPU",
            ratio(without(costs[REPORT], costs[START]), without(costs[PANGO], costs[START])),
            0.4,
        )
        print_figure("MB of the file", self._output.stat().st_size / 1e6, 2.8)
        memory = peak_memory(self.report(ROWS)) - peak_memory(start)
        print_figure("MB of memory above the start", memory / 1024, 60)

    def growth(self) -> None:
        counts = [100, 1_000, 10_000, 50_000]
        heading("From 100 fonts to 50,000")
        each = []
        for count in counts:
            costs = compare([self.report(count), self.start(count)], self._rounds)
            cost = median(without(costs[REPORT], costs[START])).cpu
            each.append(cost / count)
            memory = peak_memory(self.report(count)) - peak_memory(self.start(count))
            print(f"{count:>6} fonts{cost * 1e3:9.1f} ms CPU, {memory / 1024:.1f} MB")
        print_figure("a font of 50,000 to a font of 1,000", each[3] / each[1], 1.1)

    def hostile(self) -> None:
        known = subprocess.run(
            [self._program, "hostile", "?"], capture_output=True, text=True, check=True
        )
        programs = [
            Program(kind, [self._program, "hostile", kind, str(self._output)])
            for kind in known.stdout.split()
        ]
        costs = compare([*programs, self.start(1)], self._rounds)
        heading("One string of 32,767 characters")
        for program in programs:
            cost = median(without(costs[program.title], costs[START])).cpu
            print_figure(f"{program.title}: seconds of CPU", cost, 0.3)


def without(costs: list[Cost], starts: list[Cost]) -> list[Cost]:
    return [
        Cost(cost.cpu - start.cpu, cost.wall - start.wall) for cost, start in zip(costs, starts)
    ]


PARTS = {"rows": Bench.rows, "growth": Bench.growth, "hostile": Bench.hostile}


if __name__ == "__main__":
    parts.run("bench/report.sh", __doc__, PARTS, Bench, rounds=5)
