"""What surrounds the application in a check: its fonts and documents, and the programs of a desktop.

Everything lies in the private desktop's folders, and so ends with it.
"""

import contextlib
import os
import shutil
import subprocess
import sys
import uuid
from pathlib import Path

import fixtures
from desktop import App, wait_for

HERE = Path(__file__).parent


class World:
    def __init__(self, program):
        self.program = Path(program).resolve()
        self.runtime = Path(os.environ["XDG_RUNTIME_DIR"])
        self.home = Path(os.environ["HOME"])
        self.data = Path(os.environ["XDG_DATA_HOME"]) / "Quillmark"
        self.settings = Path(os.environ["XDG_CONFIG_HOME"]) / "Quillmark" / "settings.ini"
        self.fonts = self.runtime / "fonts"
        fixtures.main(self.fonts)
        os.environ["FONTCONFIG_FILE"] = str(self.fonts / "fonts.conf")
        self.documents = self.fonts / "documents"
        self.outside = self.runtime / "outside"
        self.outside.mkdir()
        # Whatever is handed to another program ends up in this file, a line for each.
        self.opened_file = self.runtime / "opened"
        stubs = self.runtime / "bin"
        stubs.mkdir()
        stub = stubs / "xdg-open"
        stub.write_text(f'#!/bin/sh\nprintf "%s\\n" "$@" >>"{self.opened_file}"\n')
        stub.chmod(0o755)
        os.environ["PATH"] = f"{stubs}:{os.environ['PATH']}"

    def start(self, *arguments, env=None, ready=True):
        return App(self.program, *arguments, env=env, ready=ready)

    def forget(self):
        """As before the first start."""
        for folder in (self.data, self.settings.parent):
            shutil.rmtree(folder, ignore_errors=True)
        self.forget_opened()

    def forget_opened(self):
        self.opened_file.unlink(missing_ok=True)

    def opened(self):
        return self.opened_file.read_text().splitlines() if self.opened_file.exists() else []

    def copy(self, name, folder=None):
        """A document in a folder of its own, for checks that change it."""
        target = self.outside / uuid.uuid4().hex[:8] / (folder or "")
        target.mkdir(parents=True)
        return Path(shutil.copy(self.documents / name, target))

    def many_fonts(self, count):
        """A new folder, "many", with so many fonts that reading them takes a while."""
        folder = self.outside / uuid.uuid4().hex[:8] / "many"
        folder.mkdir(parents=True)
        for number in range(count):
            (folder / f"{number}.ttf").hardlink_to(self.fonts / "more" / "Elm-Regular.ttf")
        return folder

    @contextlib.contextmanager
    def file_manager(self):
        """While a file manager is on the bus: what it was asked for."""
        calls = self.runtime / f"shown-{uuid.uuid4().hex}"
        with service("filemanager_mock.py", calls):
            yield lambda: calls.read_text().splitlines() if calls.exists() else []

    @contextlib.contextmanager
    def portal(self, scheme, contrast):
        """While a desktop with these settings is on the bus: what changes them."""
        with service("portal_mock.py", scheme, contrast) as process:
            def change(new_scheme, new_contrast):
                process.stdin.write(f"{new_scheme} {new_contrast}\n")
                process.stdin.flush()
            yield change


@contextlib.contextmanager
def service(script, *arguments):
    process = subprocess.Popen([sys.executable, "-B", HERE / script, *map(str, arguments)],
                               stdin=subprocess.PIPE, stdout=subprocess.PIPE, text=True)
    try:
        assert process.stdout.readline() == "ready\n"
        yield process
    finally:
        process.terminate()
        process.wait()


def luminance(world, app, node=None):
    """How bright the window, or a part of it, is on the screen; 0 is black, 1 is white."""
    shot = world.runtime / "luminance.png"
    x, y, width, height = app.box(node or app.window)
    subprocess.run(["maim", "--hidecursor", "-g", f"{width}x{height}+{x}+{y}", shot], check=True)
    return float(subprocess.run(["convert", shot, "-colorspace", "Gray", "-format",
                                 "%[fx:mean]", "info:"],
                                check=True, capture_output=True, text=True).stdout)


__all__ = ["World", "luminance", "wait_for"]
