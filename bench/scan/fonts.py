"""The folders of fonts that the scan is timed on, made once and kept.

Everything comes from Debian's font packages, which are downloaded and unpacked but not installed.
Files appear in several folders as hard links, so that the folders cost little and share the cache.
"""

import itertools
import multiprocessing
import os
import random
from pathlib import Path

from fontTools.ttLib import TTFont

from packages import made_once, unpacked

# About 3,500 fonts in 500 MB: large families and small ones, of many makers and scripts, from 1 KB
# to collections of 25 MB.
PACKAGES = [
    "fonts-aenigma",
    "fonts-arphic-ukai",
    "fonts-arphic-uming",
    "fonts-cantarell",
    "fonts-cmu",
    "fonts-comfortaa",
    "fonts-croscore",
    "fonts-dejavu-core",
    "fonts-dejavu-extra",
    "fonts-ebgaramond",
    "fonts-ebgaramond-extra",
    "fonts-firacode",
    "fonts-freefont-otf",
    "fonts-freefont-ttf",
    "fonts-hack",
    "fonts-inter",
    "fonts-jetbrains-mono",
    "fonts-junicode",
    "fonts-lato",
    "fonts-liberation2",
    "fonts-linuxlibertine",
    "fonts-lmodern",
    "fonts-mononoki",
    "fonts-mplus",
    "fonts-nanum",
    "fonts-nanum-eco",
    "fonts-nanum-extra",
    "fonts-noto-cjk",
    "fonts-noto-cjk-extra",
    "fonts-noto-core",
    "fonts-noto-extra",
    "fonts-noto-ui-core",
    "fonts-noto-ui-extra",
    "fonts-open-sans",
    "fonts-paratype",
    "fonts-quicksand",
    "fonts-roboto-fontface",
    "fonts-roboto-unhinted",
    "fonts-sil-andika",
    "fonts-sil-charis",
    "fonts-sil-gentiumplus",
    "fonts-symbola",
    "fonts-texgyre",
    "fonts-unfonts-core",
    "fonts-unfonts-extra",
    "fonts-urw-base35",
    "fonts-vollkorn",
    "fonts-wqy-zenhei",
]
SFNT_EXTENSIONS = {".ttf", ".otf", ".ttc", ".otc"}
FILES_PER_FOLDER = 100
WEB_FONTS_OF_EACH_KIND = 400  # beside four times as many plain fonts
INSTALLED_FONTS = 5000
LARGEST_CONVERTED = 150_000  # bytes: Brotli's best compression of a large font takes minutes


class Fonts:
    """Folders below `root`; each is made when it is first asked for."""

    def __init__(self, root: Path):
        self._root = root

    def sfnt(self) -> Path:
        """TrueType and OpenType fonts and collections, one folder for each package."""
        return self._made("sfnt", self._gather)

    def mixed(self) -> Path:
        """Plain fonts, WOFF and WOFF2; each of the latter a sixth of the files."""
        return self._made("mixed", self._mix)

    def installed(self) -> Path:
        """Fonts under as many PostScript names: the plain ones and renamed copies of small ones."""
        return self._made("installed", self._multiply)

    def copies(self, count: int) -> Path:
        """`count` plain fonts, each as often as needed to get there."""

        def link(folder: Path) -> None:
            fill(folder, itertools.islice(itertools.cycle(shuffled(files(self.sfnt()))), count))

        return self._made(f"copies-{count}", link)

    def repeated(self, title: str, font: Path, count: int) -> Path:
        """One font `count` times."""
        return self._made(f"{title}-{count}", lambda folder: fill(folder, [font] * count))

    def empty(self) -> Path:
        return self._made("empty", lambda folder: None)

    def nearest_in_size(self, size: int, extensions: set[str]) -> Path:
        candidates = [file for file in files(self.sfnt()) if file.suffix.lower() in extensions]
        return min(candidates, key=lambda file: abs(file.stat().st_size - size))

    def _made(self, name: str, fill_folder) -> Path:
        return made_once(self._root, name, fill_folder)

    def _gather(self, folder: Path) -> None:
        for package in PACKAGES:
            with unpacked(package, self._root) as tree:
                found = [file for file in files(tree) if file.suffix.lower() in SFNT_EXTENSIONS]
                (folder / package).mkdir()
                for file in found:
                    # Two folders of a package may hold fonts of one name; a flat one keeps both.
                    place = folder / package / file.name
                    if place.exists():
                        place = folder / package / f"{file.parent.name}-{file.name}"
                    file.rename(place)

    def _mix(self, folder: Path) -> None:
        plain = shuffled(files(self.sfnt()))
        web = list(itertools.islice(converted("woff", plain, self._root), WEB_FONTS_OF_EACH_KIND))
        rest = [font for font in plain if font not in {source for source, _ in web}]
        web2 = list(itertools.islice(converted("woff2", rest, self._root), WEB_FONTS_OF_EACH_KIND))
        made = [result for _, result in web + web2]
        fill(folder, shuffled(made + plain[: 4 * WEB_FONTS_OF_EACH_KIND]))

    def _multiply(self, folder: Path) -> None:
        plain = files(self.sfnt())
        wanted = INSTALLED_FONTS - len(plain)
        renamed = itertools.islice(converted("renamed", shuffled(plain), self._root), wanted)
        fill(folder, plain + [result for _, result in renamed])


def files(folder: Path) -> list[Path]:
    return sorted(path for path in folder.rglob("*") if path.is_file() and not path.is_symlink())


def shuffled(fonts: list[Path]) -> list[Path]:
    """The fonts in an order that mixes packages and sizes, the same one every time."""
    return random.Random(0).sample(fonts, len(fonts))


def fill(folder: Path, fonts) -> None:
    """Links the fonts into sub folders of `folder`."""
    for number, font in enumerate(fonts):
        place = folder / f"{number // FILES_PER_FOLDER:03}"
        place.mkdir(exist_ok=True)
        os.link(font, place / f"{number:05}-{font.name}")


def converted(kind: str, fonts: list[Path], root: Path):
    """Pairs of a font and its converted form, of those that are small and can be converted."""
    results = root / "converted" / kind
    results.mkdir(parents=True, exist_ok=True)

    def result(font: Path) -> Path:
        extension = font.suffix if kind == "renamed" else f".{kind}"
        return results / f"{font.parent.name}-{font.stem}{extension}"

    small = [
        (kind, font, result(font))
        for font in fonts
        if font.suffix.lower() in {".ttf", ".otf"} and font.stat().st_size <= LARGEST_CONVERTED
    ]
    with multiprocessing.Pool() as pool:
        for (_, font, made), is_made in zip(small, pool.imap(convert, small)):
            if is_made:
                yield font, made


def convert(task: tuple[str, Path, Path]) -> bool:
    kind, source, result = task
    if result.exists():
        return True
    unfinished = result.with_suffix(".unfinished")
    try:
        font = TTFont(source)
        if kind == "renamed":
            for record in font["name"].names:
                if record.nameID in (1, 4, 6):
                    record.string = record.toUnicode().replace("\0", "")[:55] + "-Copy"
        else:
            font.flavor = kind
        font.save(unfinished)
    except Exception:  # whatever a strange font makes fontTools raise: there are other fonts
        return False
    unfinished.rename(result)
    return True
