#!/usr/bin/python3
"""Takes a picture of the window in every state that it has.

usage: with-desktop.sh /usr/bin/python3 pictures.py [--dark] [--contrast] [--size WxH] [--readme]
           PROGRAM DRAG_SOURCE FOLDER

scripts/screenshots calls it for every size, scale and colour. The size is in unscaled pixels. With
--readme it takes those of docs/pictures alone: the light one, or with --dark the dark one.
"""

import argparse
import contextlib
import os
import shutil
import sys
from pathlib import Path

from desktop import SCALE, run, wait_for
from fixtures import OPEN_LICENSE, TEXT_FONT, write_font, write_pdf
from window import ATTACH_PANEL, CHECK, FONTS, SCAN_PANEL, Check
from world import World

# Enough to be seen at work on it: a few seconds.
MANY_FONTS = 40_000
MANY_PAGES = 150_000


# What the README's pictures show. The folder's path can be read in them.
README_FOLDER = Path("/tmp/Planner Fonts")
README_FONTS = [
    ("Larch Script", "Regular", 0x0002, {
        "copyright": "Copyright 2024 Larch & Daughters. All rights reserved.",
        "manufacturer": "Larch & Daughters",
        "licenseDescription": "Licensed for one designer on two computers. Embedding needs a "
                              "separate license.",
    }),
    ("Rowan Hand", "Regular", 0x0004, {
        "licenseDescription": "See the agreement that came with your purchase.",
    }),
    ("Maple Mono", "Regular", 0x0000, {"copyright": "Copyright 2019 Maple"}),
    ("Hazel Sans", "Light", 0x0000, {"licenseDescription": OPEN_LICENSE}),
    ("Hazel Sans", "Regular", 0x0000, {"licenseDescription": OPEN_LICENSE}),
    ("Hazel Sans", "Bold", 0x0000, {"licenseDescription": OPEN_LICENSE}),
    ("Willow Serif", "Regular", 0x0000, {
        "licenseDescription": "Licensed under the Apache License, Version 2.0",
    }),
]
README_LIST = ["Larch Script", "Maple Mono", "Rowan Hand", "Hazel Sans", "Hazel Sans Bold",
               "Hazel Sans Light", "Willow Serif"]


class Pictures(Check):
    def __init__(self, world, drag_source, folder, size):
        super().__init__(world, drag_source)
        self.folder = folder
        self.size = size

    def start(self, *arguments, **options):
        app = super().start(*arguments, **options)
        window = run("xdotool", "search", "--onlyvisible", "--pid", app.process.pid).split()[-1]
        width, height = (round(part * SCALE) for part in self.size)
        run("xdotool", "windowmove", window, 0, 30, "windowsize", window, width, height)
        wait_for("the size", lambda: app.box(app.window)[2] == width)
        run("xdotool", "mousemove", 5, 5)  # nothing is to look hovered over
        return app

    def take(self, name):
        self.app.settle()
        x, y, width, height = self.app.box(self.app.window)
        run("maim", "--hidecursor", "-g", f"{width}x{height}+{x}+{y}", self.folder / f"{name}.png")


def many_installed_fonts(world):
    """What makes them the installed ones of a start."""
    configuration = world.runtime / "many.conf"
    text = (world.fonts / "fonts.conf").read_text()
    configuration.write_text(
        text.replace("<dir>", f"<dir>{world.many_fonts(MANY_FONTS)}</dir><dir>", 1))
    # Qt's own first look at them is to be over quickly.
    run("fc-cache", env={**os.environ, "FONTCONFIG_FILE": str(configuration)})
    return {"FONTCONFIG_FILE": str(configuration)}


def many_pages(world):
    """A document that takes a while to check."""
    file = world.outside / "Catalogue 2024.pdf"
    with file.open("w", encoding="ascii") as pdf:
        kids = " ".join(f"{number} 0 R" for number in range(3, 3 + MANY_PAGES))
        pdf.write("%PDF-1.4\n1 0 obj <</Type /Catalog /Pages 2 0 R>> endobj\n"
                  f"2 0 obj <</Type /Pages /Kids [{kids}] /Count {MANY_PAGES}>> endobj\n")
        for number in range(3, 3 + MANY_PAGES):
            pdf.write(f"{number} 0 obj <</Type /Page /Parent 2 0 R /MediaBox [0 0 9 9] /Resources "
                      f"<</Font <</F <</Type /Font /Subtype /Type1 /BaseFont /Font{number}>>>>>>>> "
                      "endobj\n")
        pdf.write("trailer <</Root 1 0 R>>\n")
    return file


def take_all(pictures):
    world = pictures.world
    app = pictures.start(env=many_installed_fonts(world))
    app.find("label", "Reading every installed font…")
    pictures.take("reading")
    assert app.quit() == 0

    app = pictures.start()
    pictures.wait_for_names(FONTS)
    pictures.take("list")

    pictures.select("Alder Grotesk")
    pictures.take("long licence")
    app.click(next(node for node in app.all() if node.get_name() == "Restricted 2"))
    app.key("ctrl+f")
    app.type("brook")
    pictures.wait_for_names(["Brook Serif"])
    pictures.take("filtered")
    app.type("n")
    pictures.wait_for_names([])
    pictures.take("none match")
    app.key("ctrl+a", "BackSpace")
    app.click(next(node for node in app.all() if node.get_name() == "All 7"))
    pictures.wait_for_names(FONTS)

    pictures.select("Brook Serif")
    for field, text in (("Bought from", "Brook Type & Co."), ("Link", "https://example.org/receipt"),
                        ("Notes", "Desktop license for two computers.\nEmbedding in PDFs is "
                                  "included.")):
        app.give_focus(app.find("text", field))
        app.paste(text)
    app.press(app.find("push button", "Attach File…"))
    app.answer_panel(ATTACH_PANEL, world.documents / "receipt.txt")
    app.give_focus(app.find("push button", "Open"))
    app.key("Tab", "Tab")  # the keyboard brings into sight what it reaches
    pictures.take("notes")

    app.key("ctrl+o")
    app.answer_panel(SCAN_PANEL, world.fonts / "empty")
    app.find("alert", "Quillmark")
    pictures.take("alert")
    pictures.alert("No font files were found in empty.")
    pictures.take("empty")

    pictures.show(CHECK)
    area = app.find(None, "Drop area for PDF files")
    pictures.take("drop page")
    with pictures.dragged(world.documents / "My Flyer.pdf") as source:
        app.drag(source, area, drop=False)
        pictures.take("drop page hovering")
        run("xdotool", "mouseup", 1)
        wait_for("its fonts", lambda: "Fir" in pictures.names())
    run("xdotool", "mousemove", 5, 5)
    pictures.select("Brook Serif")
    pictures.take("document")

    pictures.show(CHECK)
    with pictures.dragged(many_pages(world)) as source:
        app.drag(source, app.find(None, "Drop area for PDF files"))
        app.find("label", "Checking Catalogue 2024.pdf…")
        pictures.take("drop page checking")

    app.menu("Help", "How Quillmark Decides")
    app.find("dialog")
    pictures.take("help")
    app.key("Escape")
    app.gone("dialog")
    assert app.quit() == 0


@contextlib.contextmanager
def made(folder):
    folder.mkdir()
    try:
        yield
    finally:
        shutil.rmtree(folder)


def install_text_fonts(world):
    """The window's own text gets the further faces that it has on most computers."""
    for name in ("DejaVuSans-Bold.ttf", "DejaVuSansMono.ttf"):
        shutil.copy(TEXT_FONT.parent / name, world.fonts / "installed")
    configuration = world.fonts / "fonts.conf"
    before, monospace, after = configuration.read_text().partition("<family>monospace</family>")
    configuration.write_text(
        before + monospace + after.replace("DejaVu Sans", "DejaVu Sans Mono", 1))


def take_for_readme(pictures, dark):
    world = pictures.world
    fonts = {f"{family} {style}": write_font(
                 README_FOLDER / f"{family.replace(' ', '')}-{style}.ttf", family, style, fs_type,
                 names, vendor=family[:4].upper())
             for family, style, fs_type, names in README_FONTS}
    document = world.outside / "Spring Planner.pdf"
    write_pdf(document, [fonts["Hazel Sans Regular"]] * 10 + [fonts["Willow Serif Regular"]] * 2)
    install_text_fonts(world)
    app = pictures.start(README_FOLDER, document)
    wait_for("its fonts", lambda: pictures.names() == ["Courier", "Hazel Sans", "Willow Serif"])
    if dark:
        pictures.select("Hazel Sans")
    else:
        pictures.show(README_FOLDER.name)
        pictures.wait_for_names(README_LIST)
        pictures.select("Larch Script")
    run("xdotool", "mousemove", 5, 5)
    pictures.take("document-dark" if dark else "window")
    assert app.quit() == 0


def main():
    parser = argparse.ArgumentParser()
    parser.add_argument("--dark", action="store_true")
    parser.add_argument("--contrast", action="store_true")
    parser.add_argument("--size", default="1280x780")
    parser.add_argument("--readme", action="store_true")
    parser.add_argument("program")
    parser.add_argument("drag_source")
    parser.add_argument("folder", type=Path)
    arguments = parser.parse_args()
    arguments.folder.mkdir(parents=True, exist_ok=True)
    size = tuple(map(int, arguments.size.split("x")))
    world = World(arguments.program)
    pictures = Pictures(world, arguments.drag_source, arguments.folder, size)
    wants_portal = arguments.dark or arguments.contrast
    with (world.portal(int(arguments.dark), int(arguments.contrast)) if wants_portal
          else contextlib.nullcontext()):
        try:
            if arguments.readme:
                with made(README_FOLDER):
                    take_for_readme(pictures, arguments.dark)
            else:
                take_all(pictures)
        except BaseException:
            if pictures.app:
                pictures.app.picture(arguments.folder / "failure.png")
                pictures.app.kill()
            raise
    return 0


if __name__ == "__main__":
    sys.exit(main())
