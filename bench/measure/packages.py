"""Gets at the files of Debian packages without installing them."""

import shutil
import subprocess
from collections.abc import Iterator
from contextlib import contextmanager
from pathlib import Path


@contextmanager
def unpacked(name: str, folder: Path) -> Iterator[Path]:
    """The folder of a package's files, while it is used. The download is kept in `folder`."""
    downloads = folder / "packages"
    tree = folder / "unpacked"
    downloads.mkdir(parents=True, exist_ok=True)
    if not list(downloads.glob(f"{name}_*.deb")):
        command = ["apt-get", "-q", "-o", "Acquire::Retries=3", "download", name]
        subprocess.run(command, cwd=downloads, check=True)
    shutil.rmtree(tree, ignore_errors=True)
    subprocess.run(["dpkg-deb", "-x", next(downloads.glob(f"{name}_*.deb")), tree], check=True)
    yield tree
    shutil.rmtree(tree)


def made_once(root: Path, name: str, fill) -> Path:
    """The folder `name` in `root`; `fill` is called with it when it does not exist yet. What is
    interrupted is made again."""
    folder = root / name
    if not folder.is_dir():
        unfinished = root / f"{name}.unfinished"
        shutil.rmtree(unfinished, ignore_errors=True)
        unfinished.mkdir(parents=True)
        fill(unfinished)
        unfinished.rename(folder)
    return folder
