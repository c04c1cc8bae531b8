"""Times quillmark-cli against its peers and prints ratios beside their targets. Run by ../scan.sh."""

import argparse
import os
import subprocess
import tempfile
from pathlib import Path

import parts
from figures import heading, print_costs, print_figure, print_ratio, ratio
from fonts import Fonts, files
from processes import Cost, Program, compare, median, peak_memory, run

HERE = Path(__file__).parent
FONT_CONFIGURATION = """<?xml version="1.0"?>
<!DOCTYPE fontconfig SYSTEM "fonts.dtd">
<fontconfig>
  <dir>{fonts}</dir>
  <cachedir>{cache}</cachedir>
</fontconfig>
"""


class Bench:
    def __init__(self, fonts: Fonts, programs: Path, rounds: int, scratch: Path):
        self._fonts = fonts
        self._cli = str(programs / "cli/quillmark-cli")
        self._floor = str(programs / "bench/bench_floor")
        self._here = str(programs / "bench/bench_here")
        self._listing = str(programs / "bench/bench_listing")
        self._rounds = rounds
        self._scratch = scratch

    def scan(
        self,
        folder: Path,
        title: str = "quillmark-cli",
        cores: int | None = None,
        cli: str | None = None,
    ) -> Program:
        output = self._scratch / "scan.json"
        command = [cli or self._cli, "scan", "--format", "json", "-o", str(output), str(folder)]
        return Program(title, command, cores=cores, output=output)

    def two_scans(self, folder: Path) -> Program:
        """Two programs that share nothing, each on a core of its own."""
        first, second = sorted(os.sched_getaffinity(0))[:2]
        scan = f"{self._cli} scan --format json -o /dev/null {folder}"
        command = f"taskset -c {first} {scan} & taskset -c {second} {scan} && wait $!"
        return Program("two at once", ["sh", "-c", command])

    def floor(self, folder: Path) -> Program:
        return Program("floor", [self._floor, str(folder)])

    def fc_scan(self, folder: Path) -> Program:
        # It does not go into sub folders by itself.
        folders = sorted({str(file.parent) for file in files(folder)})
        line = "%{file}:%{index}:%{postscriptname}:%{family}:%{style}:%{foundry}\n"
        return Program("fc-scan", ["fc-scan", "--format", line, *folders])

    def otfinfo(self, folder: Path) -> Program:
        # It ends with an error when one of the fonts has no names that it understands.
        command = 'tr "\\n" "\\0" | xargs -0 otfinfo --quiet --info || true'
        return Program("otfinfo", ["sh", "-c", command], self._listed(folder))

    def fonttools(self, folder: Path) -> Program:
        peer = ["/usr/bin/python3", str(HERE / "fonttools_peer.py")]
        return Program("fontTools", peer, self._listed(folder))

    def _listed(self, folder: Path) -> Path:
        listed = self._scratch / f"{folder.name}.txt"
        listed.write_text("".join(f"{file}\n" for file in files(folder)))
        return listed

    def plain_fonts(self) -> None:
        folder = self._fonts.sfnt()
        one_core = self.scan(folder, "quillmark-cli, one core", cores=1)
        costs = compare(
            [
                self.scan(folder),
                one_core,
                self.floor(folder),
                self.fc_scan(folder),
                self.otfinfo(folder),
                self.fonttools(folder),
            ],
            self._rounds,
        )
        count = len(files(folder))
        heading(f"TrueType, OpenType and collections: {count} files, {self._faces(folder)} faces")
        print_costs(costs, count)
        print_ratio(costs, "fc-scan", 0.2)
        print_ratio(costs, "otfinfo", 0.12)
        print_ratio(costs, "fontTools", 0.15)
        print_ratio(costs, "floor", 2.5)
        print_ratio(costs, "floor", title=one_core.title)

    def web_fonts(self) -> None:
        folder = self._fonts.mixed()
        one_core = self.scan(folder, "quillmark-cli, one core", cores=1)
        two_cores = self.scan(folder, "quillmark-cli, two cores", cores=2)
        costs = compare(
            [
                self.scan(folder),
                self.floor(folder),
                self.fc_scan(folder),
                self.fonttools(folder),
                one_core,
                two_cores,
            ],
            self._rounds,
        )
        found = files(folder)
        kinds = [sum(file.suffix == kind for file in found) for kind in (".woff", ".woff2")]
        heading(f"With {kinds[0]} WOFF and {kinds[1]} WOFF2 among {len(found)} files")
        print_costs(costs, len(found))
        print_ratio(costs, "fc-scan", 0.25)
        wall = ratio(costs[two_cores.title], costs[one_core.title], lambda cost: cost.wall)
        print_figure("wall time on two cores to one core", wall, 0.65)

    def cores(self) -> None:
        folder = self._fonts.copies(10_000)
        one_core = self.scan(folder, "one core", cores=1)
        two_cores = self.scan(folder, "two cores", cores=2)
        two_scans = self.two_scans(folder)
        costs = compare([one_core, two_cores, two_scans], self._rounds)
        heading("One core and two, 10,000 plain files")
        print_costs(costs, 10_000)
        wall = ratio(costs[two_cores.title], costs[one_core.title], lambda cost: cost.wall)
        print_figure("wall time on two cores to one core", wall, 0.65)
        # Cores that share a processor's parts give less than twice as much, whatever runs on them.
        limit = ratio(costs[two_scans.title], costs[one_core.title], lambda cost: cost.wall) / 2
        print_figure("the same of two scans that share nothing", limit)

    def processes(self) -> None:
        for title, folder in [
            ("plain fonts", self._fonts.sfnt()),
            ("with WOFF and WOFF2 among them", self._fonts.mixed()),
        ]:
            here = self.scan(folder, "in one process", cli=self._here)
            costs = compare([self.scan(folder), here], self._rounds)
            count = len(files(folder))
            heading(f"Reading in processes of their own: {count} files, {title}")
            print_costs(costs, count)
            print_ratio(costs, here.title, 1.05)
            wall = ratio(costs["quillmark-cli"], costs[here.title], lambda cost: cost.wall)
            print_figure("wall time to in one process", wall, 1.05)

    def size_of_font(self) -> None:
        large = self._fonts.nearest_in_size(20_000_000, {".ttc", ".otc"})
        small = self._fonts.nearest_in_size(20_000, {".ttf", ".otf"})
        count = 400
        large_folder = self._fonts.repeated("large", large, count)
        small_folder = self._fonts.repeated("small", small, count)
        empty = self.scan(self._fonts.empty(), "empty folder")
        costs = compare(
            [
                self.scan(large_folder, "large collection"),
                self.scan(small_folder, "small font"),
                empty,
            ],
            self._rounds,
        )
        start = median(costs[empty.title]).cpu
        faces = {
            "large collection": self._faces(large_folder),
            "small font": self._faces(small_folder),
        }
        heading(
            f"{count} files of {large.name} ({large.stat().st_size / 1e6:.1f} MB, "
            f"{faces['large collection'] // count} faces) and of {small.name} "
            f"({small.stat().st_size / 1e3:.1f} KB)"
        )
        each = {
            title: (median(costs[title]).cpu - start) / number for title, number in faces.items()
        }
        for title, cost in each.items():
            print(f"{title:<28}{cost * 1e6:9.1f} us CPU a face")
        print_figure(
            "a face of the collection to the small font",
            each["large collection"] / each["small font"],
            1.0,
        )

    def number_of_fonts(self) -> None:
        counts = [100, 1_000, 10_000]
        empty = self.scan(self._fonts.empty(), "empty folder")
        programs = [self.scan(self._fonts.copies(count), str(count)) for count in counts]
        costs = compare([empty, *programs], self._rounds)
        start = median(costs[empty.title]).cpu
        heading("From 100 files to 10,000")
        print(f"{'start alone':<28}{start * 1e3:9.1f} ms CPU")
        each = []
        for count in counts:
            total = median(costs[str(count)]).cpu
            each.append((total - start) / count)
            print(
                f"{count:>6} files{'':16}{total * 1e3:9.1f} ms CPU, "
                f"{each[-1] * 1e6:.1f} us a file above the start"
            )
        print_figure("a file of 10,000 to a file of 1,000", each[2] / each[1], 1.0)

    def memory(self) -> None:
        folder = self._fonts.copies(8_000)
        start = peak_memory(self.scan(self._fonts.empty()))
        peak = peak_memory(self.scan(folder))
        heading(f"Memory, {self._faces(folder)} faces")
        print(f"start {start / 1024:.1f} MB, peak {peak / 1024:.1f} MB")
        print_figure("peak above start, MB", (peak - start) / 1024, 40)

    def installed_fonts(self) -> None:
        folder = self._fonts.installed()
        configuration = self._scratch / "fonts.conf"
        cache = self._scratch / "fontconfig"
        configuration.write_text(FONT_CONFIGURATION.format(fonts=folder, cache=cache))
        environment = {"FONTCONFIG_FILE": str(configuration)}
        output = self._scratch / "installed.json"
        installed = Program(
            "quillmark-cli",
            [self._cli, "installed", "--format", "json", "-o", str(output)],
            environment=environment,
            output=output,
        )
        listing = Program("listing", [self._listing], environment=environment)
        run(Program("fc-cache", ["fc-cache", "--force"], environment=environment))
        costs = compare([installed, listing, self.floor(folder)], self._rounds)
        heading(f"Installed fonts: {len(files(folder))} files")
        print_costs(costs, len(files(folder)))
        both = [
            Cost(one.cpu + other.cpu, one.wall + other.wall)
            for one, other in zip(costs["listing"], costs["floor"])
        ]
        print_figure(
            "CPU to the listing and the floor", ratio(costs["quillmark-cli"], both), 1.5
        )

    def _faces(self, folder: Path) -> int:
        printed = subprocess.run(
            [self._floor, folder], capture_output=True, text=True, check=True
        ).stdout
        return int(printed.split(" faces")[0].split()[-1])


PARTS = {
    "plain": Bench.plain_fonts,
    "web": Bench.web_fonts,
    "cores": Bench.cores,
    "processes": Bench.processes,
    "size": Bench.size_of_font,
    "number": Bench.number_of_fonts,
    "memory": Bench.memory,
    "installed": Bench.installed_fonts,
}


def main() -> None:
    parser = argparse.ArgumentParser(description=__doc__, prog="bench/scan.sh")
    parser.add_argument("--programs", type=Path, required=True, help=argparse.SUPPRESS)
    parser.add_argument("--fonts", type=Path, required=True, help=argparse.SUPPRESS)
    parts.add_arguments(parser, PARTS, rounds=7)
    arguments = parts.parse(parser, PARTS)
    with tempfile.TemporaryDirectory() as scratch:
        bench = Bench(
            Fonts(arguments.fonts), arguments.programs, arguments.rounds, Path(scratch)
        )
        for part in arguments.parts:
            PARTS[part](bench)


if __name__ == "__main__":
    main()
