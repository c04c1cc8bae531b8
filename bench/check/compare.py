"""Times document checks against peers and prints ratios beside their targets. Run by ../check.sh."""

import argparse
import functools
import sys
import tempfile
from collections.abc import Callable
from pathlib import Path

import parts
from big import Objects, Resources, write
from documents import package, real_documents
from figures import heading, print_costs, print_figure, print_ratio
from processes import Cost, Program, ProgramFailed, compare, median, peak_memory, run

QUILLMARK = "quillmark-cli"
INSTALLED = "with installed fonts"
ALL_AT_ONCE = "one process for all"
PEERS = ["pdffonts", "mutool info -F", "qpdf --json"]
START = "start alone"


class Bench:
    def __init__(self, folder: Path, programs: Path, options: argparse.Namespace, scratch: Path):
        self._folder = folder
        self._cli = str(programs / "cli/quillmark-cli")
        self._rounds = options.rounds
        self._sample = options.documents
        self._output = scratch / "check.json"

    def check(self, *documents: Path, title: str = QUILLMARK, installed: bool = False) -> Program:
        fonts = [] if installed else ["--no-installed"]
        output = ["--format", "json", "-o", str(self._output)]
        command = [self._cli, "check", *fonts, *output, *map(str, documents)]
        return Program(title, command, output=self._output)

    def peers(self, document: Path) -> list[Program]:
        pdffonts, mutool, qpdf = PEERS
        return [
            Program(pdffonts, ["pdffonts", str(document)]),
            Program(mutool, ["mutool", "info", "-F", str(document)]),
            # 3 means that it is done and has warned of damage.
            Program(qpdf, ["qpdf", "--json", str(document)], accepted=(0, 3)),
        ]

    def start(self) -> Program:
        return Program(START, [self._cli, "--version"])

    def real(self) -> None:
        documents = self._real()
        costs = by_document(
            documents,
            lambda document: [
                self.check(document),
                self.check(document, title=INSTALLED, installed=True),
                *self.peers(document),
                self.start(),
            ],
            self._rounds,
        )
        together = self.check(*documents, title=ALL_AT_ONCE)
        totals = {title: total(each) for title, each in costs.items()}
        totals |= compare([together], self._rounds)
        size = sum(document.stat().st_size for document in documents)
        heading(f"{len(documents)} real documents, {size / 1e6:.0f} MB, one process for each")
        print_costs(totals, len(documents))
        for peer, target in zip(PEERS, [0.15, 0.75, 0.33]):
            print_ratio(totals, peer, target)
        for peer in PEERS:
            print_ratio(totals, peer, title=INSTALLED)
        print_ratio(totals, QUILLMARK, title=ALL_AT_ONCE)
        self._print_slowest(costs)
        start = median(totals[START]).wall / len(documents)
        print_figure("ms by the clock for --version", start * 1e3, 20)

    def _print_slowest(self, costs: dict[str, dict[Path, list[Cost]]]) -> None:
        def cpu(title: str, document: Path) -> float:
            return median(costs[title][document]).cpu

        slowest = sorted(costs[QUILLMARK], key=lambda document: -cpu(QUILLMARK, document))
        for document in slowest[:5]:
            peers = ", ".join(f"{peer} {cpu(peer, document) * 1e3:.0f}" for peer in PEERS)
            cost = cpu(QUILLMARK, document) * 1e3
            print(f"  {self._title(document)}: {cost:.1f} ms CPU ({peers})")
        print_figure("seconds of CPU for the slowest", cpu(QUILLMARK, slowest[0]), 2)

    def memory(self) -> None:
        documents = self._real()
        heading(f"Memory, {len(documents)} real documents")
        print(f"{START:<28}{peak_memory(self.start()) / 1024:9.1f} MB")
        peaks: dict[str, list[tuple[int, Path]]] = {}
        for document in documents:
            for program in [self.check(document), *self.peers(document)]:
                peaks.setdefault(program.title, []).append((peak_memory(program), document))
        for title, each in peaks.items():
            peak, document = max(each)
            print(f"{title:<28}{peak / 1024:9.1f} MB at most, for {self._title(document)}")
        print_figure("MB at most for one of them", max(peaks[QUILLMARK])[0] / 1024, 300)
        together = peak_memory(self.check(*documents))
        print(f"{ALL_AT_ONCE:<28}{together / 1024:9.1f} MB")

    def growth(self) -> None:
        counts = [10, 100, 1_000, 10_000]
        for objects in Objects:
            documents = [self._big(count, 40, Resources.OWN, objects) for count in counts]
            programs = [self.check(document, title=document.stem) for document in documents]
            costs = compare(programs, self._rounds)
            cpu = [median(costs[program.title]).cpu for program in programs]
            heading(f"From 10 pages to 10,000, {objects.value}")
            for count, program, cost in zip(counts, programs, cpu):
                peak = peak_memory(program) / 1024
                print(f"{count:>6} pages{'':16}{cost * 1e3:9.1f} ms CPU, {peak:.1f} MB")
            # What ten pages cost is starting and reading the fonts.
            each = [(cost - cpu[0]) / (count - counts[0]) for cost, count in zip(cpu[2:], counts[2:])]
            print(f"a page more: {each[1] * 1e6:.1f} us CPU")
            print_figure("a page of 10,000 to a page of 1,000", each[1] / each[0], 1.1)

    def pages(self) -> None:
        for objects in Objects:
            document = self._big(8_000, 40, Resources.OWN, objects)
            costs = compare([self.check(document), *self.peers(document)], self._rounds)
            heading(f"8,000 pages, {objects.value}")
            print_costs(costs, 1)
            print_ratio(costs, "pdffonts", 0.25)

    def shared(self) -> None:
        for resources in [Resources.SHARED, Resources.INHERITED]:
            for objects in Objects:
                document = self._big(20_000, 50, resources, objects)
                costs = compare([self.check(document)], self._rounds)
                heading(f"20,000 pages, {resources.value}, {objects.value}")
                print_costs(costs, 1)
                print_figure("seconds of CPU", median(costs[QUILLMARK]).cpu, 1)

    @staticmethod
    def _title(document: Path) -> str:
        """The package that a real document is from, and its name."""
        return f"{document.name} of {package(document)}"

    @functools.cache
    def _real(self) -> list[Path]:
        """Those that all programs can read: what one gives up on costs it nothing."""
        documents = real_documents(self._folder)
        if self._sample is not None and self._sample < len(documents):
            count = len(documents)
            documents = [documents[i * count // self._sample] for i in range(self._sample)]
        return [document for document in documents if self._can_be_compared(document)]

    def _can_be_compared(self, document: Path) -> bool:
        run(self.check(document))
        for peer in self.peers(document):
            try:
                run(peer)
            except ProgramFailed:
                print(f"{self._title(document)} is left out: {peer.title} fails")
                return False
        return True

    def _big(self, pages: int, fonts: int, resources: Resources, objects: Objects) -> Path:
        name = f"{pages}-{fonts}-{resources.name}-{objects.name}.pdf".lower()
        document = self._folder / "big" / name
        if not document.exists():
            document.parent.mkdir(parents=True, exist_ok=True)
            write(document, pages, fonts, resources, objects)
        return document


def by_document(
    documents: list[Path], programs: Callable[[Path], list[Program]], rounds: int
) -> dict[str, dict[Path, list[Cost]]]:
    """The costs of each document by the program's title. All programs read one document before the
    next one's turn comes, so that what else the machine does meets all of them alike."""
    costs: dict[str, dict[Path, list[Cost]]] = {}
    for _ in range(rounds):
        for document in documents:
            document.read_bytes()  # which warms the cache
            for program in programs(document):
                each = costs.setdefault(program.title, {}).setdefault(document, [])
                each.append(run(program))
    return costs


def total(costs: dict[Path, list[Cost]]) -> list[Cost]:
    """The cost of all documents together, in each round."""
    return [
        Cost(sum(cost.cpu for cost in turn), sum(cost.wall for cost in turn))
        for turn in zip(*costs.values())
    ]


PARTS = {
    "real": Bench.real,
    "memory": Bench.memory,
    "growth": Bench.growth,
    "pages": Bench.pages,
    "shared": Bench.shared,
}


def main() -> None:
    parser = argparse.ArgumentParser(description=__doc__, prog="bench/check.sh")
    parser.add_argument("--programs", type=Path, required=True, help=argparse.SUPPRESS)
    parser.add_argument("--documents-folder", type=Path, required=True, help=argparse.SUPPRESS)
    parser.add_argument("--documents", type=int, help="how many real documents (default: all)")
    parts.add_arguments(parser, PARTS, rounds=3)
    arguments = parts.parse(parser, PARTS)
    sys.stdout.reconfigure(line_buffering=True)  # a part can take minutes
    with tempfile.TemporaryDirectory() as scratch:
        bench = Bench(arguments.documents_folder, arguments.programs, arguments, Path(scratch))
        for part in arguments.parts:
            PARTS[part](bench)


if __name__ == "__main__":
    main()
