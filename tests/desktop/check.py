#!/usr/bin/python3
"""Drives the built application through what its users do, and reads the results off the screen.

usage: with-desktop.sh /usr/bin/python3 check.py [--pictures FOLDER] PROGRAM DRAG_SOURCE [FLOW...]

Each flow is a function; FLOW names those to run, all by default. A flow finds the application
running, with an empty home, its installed list shown, and leaves it to the next. After one that
fails, the application is started anew; what the screen showed goes to FOLDER.
Ends with "N passed, N failed".
"""

import argparse
import contextlib
import os
import shutil
import signal
import stat
import sys
import time
import traceback
from pathlib import Path

from desktop import SCALE, App, children, run, wait_for
from flows import passes
from world import World, luminance

INSTALLED = "Installed on This Mac"
CHECK = "Check a Document"
SCAN_PANEL = ("Choose a folder with font files (.ttf, .otf, .ttc, .woff). Subfolders are included.")
CHECK_PANEL = ("Choose PDFs to list the fonts embedded in them. The files are only read, never "
               "changed.")
ATTACH_PANEL = ("Choose the license, receipt or invoice for this font. A copy is kept with your "
                "notes.")
NO_PDF = ("Drop a PDF file. (Other documents: export or print them to PDF first, then check the "
          "PDF.)")
# By verdict, then by name.
FONTS = ["Brook Serif", "Zapfino", "Cedar Mono", "Dogwood 日本語", "Alder Grotesk",
         "Alder Grotesk Bold", "DejaVu Sans"]
FLOWS = []


def flow(function):
    FLOWS.append(function)
    return function


class Check:
    """The application of a flow, and the world around it."""

    def __init__(self, world, drag_source):
        self.world = world
        self.drag_source = drag_source
        self.app = None

    def start(self, *arguments, **options):
        self.app = self.world.start(*arguments, **options)
        return self.app

    def restart(self):
        assert self.app.quit() == 0
        return self.start()

    # Names of what stands in the window.

    def table(self):
        return self.app.find("table", "Fonts")

    def names(self):
        return [row[0] for row in self.app.rows(self.table())]

    def wait_for_names(self, names):
        wait_for(f"the rows {names}", lambda: self.names() == names)

    def sources(self):
        return self.app.find("tree", "Sources")

    def source(self, name):
        """The row of a source, by the beginning of what is spoken: numbers may follow."""
        return wait_for(f"the source {name!r}", lambda: next(
            (row for row in children(self.sources())
             if row.get_name() == name or row.get_name().startswith(name + ", ")), None))

    def has_source(self, name):
        return any(row == name or row.startswith(name + ", ")
                   for row in self.app.items(self.sources()))

    def show(self, name):
        self.app.click(self.source(name))

    def show_installed(self):
        self.show(INSTALLED)
        wait_for("the installed fonts", lambda: len(self.names()) == len(FONTS))

    def begin(self):
        """To where a flow begins, wherever the former one has ended."""
        if not self.app.has("label", INSTALLED):
            self.show_installed()

    def select(self, name):
        self.app.click(self.app.cell(self.table(), self.names().index(name)))
        wait_for(f"the details of {name}", lambda: self.detail("Font") == name)

    def detail(self, name):
        return self.app.text(self.app.find(None, name))

    def alert(self, text):
        """Waits for this alert, and closes it."""
        alert = self.app.find("alert", "Quillmark")
        shown = [self.app.text(node) for node in self.app.all("label", under=alert)]
        assert text in shown, (text, shown)
        self.app.key("Escape")
        self.app.gone("alert")

    @contextlib.contextmanager
    def dragged(self, *files):
        source = App(self.drag_source, *files)
        try:
            yield source.find(None, "drag source")
        finally:
            source.kill()
        wait_for("the window to be active", self.app.active)

    def note_file(self):
        return self.world.data / "notes.json"

    def saved(self):
        """The notes as they stand on the disk."""
        return self.note_file().read_text() if self.note_file().exists() else ""


# How it starts.

@flow
def the_first_start_lists_the_installed_fonts_and_writes_nothing(check):
    check.wait_for_names(FONTS)
    assert not check.note_file().exists()
    assert check.app.root.get_name() == "Quillmark"
    assert check.app.window.get_name() == "Quillmark"
    check.app.find("label", "7 fonts: 3 likely OK, 2 restricted, 2 unknown")


@flow
def columns_and_verdicts_are_spoken(check):
    rows = check.app.rows(check.table())
    assert check.app.headers(check.table()) == ["Font", "Verdict", "License in the font",
                                                "Embedding bits", "Source"]
    verdicts = {row[0]: row[1] for row in rows}
    assert verdicts["Brook Serif"] == "Restricted"
    assert verdicts["Cedar Mono"] == "Unknown"
    assert verdicts["Alder Grotesk"] == "Likely OK to embed"
    sources = {row[0]: row[-1] for row in rows}
    assert sources["Zapfino"] == "Came with macOS"
    assert sources["Cedar Mono"] == "Cedar-Regular.ttf"


@flow
def the_window_opens_in_its_size_at_the_screens_scale(check):
    assert check.app.quit() == 0
    check.world.forget()
    app = check.start()
    wait_for("the size",
             lambda: app.box(app.window)[2:] == (int(1280 * SCALE), int(780 * SCALE)))
    window = app.box(app.window)
    outside = [(node.get_role_name(), node.get_name(), app.box(node))
               for role in ("push button", "check box", "combo box", "table", "tree")
               for node in app.all(role) if not lies_in(app.box(node), window)]
    assert not outside, (window, outside)


def lies_in(box, window):
    return (box[0] >= window[0] and box[1] >= window[1]
            and box[0] + box[2] <= window[0] + window[2]
            and box[1] + box[3] <= window[1] + window[3])


@flow
def what_has_been_read_is_announced(check):
    app = check.app
    check.show_installed()
    app.renamed.clear()
    app.key("F5")
    wait_for("the announcement",
             lambda: ("label", "7 fonts: 3 likely OK, 2 restricted, 2 unknown") in app.renamed)
    assert ("progress bar", "Reading every installed font…") in app.renamed, app.renamed
    app.renamed.clear()
    app.key("ctrl+shift+o")
    app.answer_panel(CHECK_PANEL, check.world.documents / "Elm.pdf")
    wait_for("the announcement", lambda: any(role == "label" and name.startswith("2 fonts: ")
                                             for role, name in app.renamed))
    check.show_installed()


# What the list shows.

@flow
def the_search_narrows_the_list_and_is_cleared(check):
    app = check.app
    app.key("ctrl+f")
    assert app.focus()[1] == "Search"
    app.type("BOLD")
    check.wait_for_names(["Alder Grotesk Bold"])
    app.key("ctrl+a")
    app.type("ABCD")  # a maker
    check.wait_for_names(["Cedar Mono"])
    app.key("ctrl+a")
    app.paste("日本")
    check.wait_for_names(["Dogwood 日本語"])
    app.key("ctrl+a", "BackSpace")
    check.wait_for_names(FONTS)


@flow
def chips_and_picker_filter(check):
    app = check.app
    chip = next(node for node in app.all() if node.get_name() == "Restricted 2")
    app.click(chip)
    check.wait_for_names(["Brook Serif", "Zapfino"])
    assert app.checked(chip)
    app.choose(app.labelled("combo box", "Show"), "Came with macOS")
    check.wait_for_names(["Zapfino"])
    app.choose(app.labelled("combo box", "Show"), "Added by you")
    check.wait_for_names(["Brook Serif"])
    app.choose(app.labelled("combo box", "Show"), "All fonts")
    app.click(next(node for node in app.all() if node.get_name() == "All 7"))
    check.wait_for_names(FONTS)


@flow
def every_column_sorts_both_ways(check):
    titles = check.app.headers(check.table())
    for column, title in enumerate(titles):
        orders = []
        for _ in range(2):
            orders.append(sort_by(check, column, title))
        assert sorted(orders) == ["down", "up"], (title, orders)
    while sort_by(check, titles.index("Font"), "Font") != "up":
        pass
    while sort_by(check, titles.index("Verdict"), "Verdict") != "up":
        pass
    assert set(check.names()[:2]) == {"Brook Serif", "Zapfino"}, check.names()


VERDICT_ORDER = ["Restricted", "Unknown", "Likely OK to embed"]


def sort_by(check, column, title):
    """Clicks on a header; which way the column is sorted then."""
    time.sleep(0.5)  # two clicks within 400 ms would be a double click
    app = check.app
    app.click(app.header(check.table(), title))

    def order():
        table = check.table()
        values = [app.cell(table, row, column).get_name() for row in range(len(FONTS))]
        if title == "Verdict":
            values = [VERDICT_ORDER.index(value) for value in values]
        if values == sorted(values):
            return "up"
        return "down" if values == sorted(values, reverse=True) else None
    return wait_for(f"{title} to be sorted", order)


@flow
def arrow_keys_move_the_details(check):
    names = check.names()
    check.select(names[0])
    check.app.listen(0.05)
    check.app.key("Down")
    wait_for("the next font", lambda: check.detail("Font") == names[1])
    assert ("table cell", names[1]) in check.app.listen()  # and a screen reader says so
    check.app.key("Up")
    wait_for("the first font", lambda: check.detail("Font") == names[0])


@flow
def details_hide_and_show(check):
    app = check.app
    check.select("Brook Serif")
    app.menu("View", "Details")
    app.gone(None, "Your license notes")
    app.menu("View", "Details")
    app.find(None, "Your license notes")


# Notes.

@flow
def notes_are_saved_as_they_are_typed_and_never_mixed(check):
    app = check.app
    check.select("Brook Serif")
    app.give_focus(app.find("text", "Bought from"))
    app.type("Brook Type")
    wait_for("the note on the disk", lambda: '"Brook Type"' in check.saved())
    check.select("Cedar Mono")
    wait_for("an empty note", lambda: app.text(app.find("text", "Bought from")) == "")
    app.give_focus(app.find("text", "Notes"))
    app.type("Ask them.")
    wait_for("both notes", lambda: "Ask them." in check.saved())
    check.select("Brook Serif")
    wait_for("the first note", lambda: app.text(app.find("text", "Bought from")) == "Brook Type")
    assert app.text(app.find("text", "Notes")) == ""
    assert stat.S_IMODE(check.note_file().stat().st_mode) == 0o600
    assert stat.S_IMODE(check.world.data.stat().st_mode) == 0o700


@flow
def notes_outlast_a_restart(check):
    app = check.restart()
    check.select("Brook Serif")
    wait_for("the note", lambda: app.text(app.find("text", "Bought from")) == "Brook Type")


@flow
def notes_that_cannot_be_saved_are_reported_and_saved_later(check):
    app, file = check.app, check.note_file()
    check.select("Dogwood 日本語")
    app.give_focus(app.find("text", "Bought from"))
    file.unlink(missing_ok=True)
    file.mkdir(parents=True)  # not even the superuser can put a file in its place
    try:
        app.type("a")
        check.alert(f"{file} could not be written: Not a regular file.")
        assert app.text(app.find("text", "Bought from")) == "a"
    finally:
        file.rmdir()
    app.give_focus(app.find("text", "Bought from"))
    app.type("b")
    wait_for("the note on the disk", lambda: '"ab"' in check.saved()
             or '"ba"' in check.saved())


@flow
def the_licence_held_is_chosen_from_a_list(check):
    app = check.app
    check.select("Cedar Mono")
    picker = app.labelled("combo box", "License type")
    entries = app.items(next(children(picker)))
    assert len(entries) > 2, entries
    app.give_focus(app.find("text", "Bought from"))
    app.key("shift+Tab", "Down")
    wait_for("the choice", lambda: picker.get_name() == entries[1])
    wait_for("the choice on the disk", lambda: "CedarMono-Regular" in check.saved())


@flow
def receipts_are_attached_replaced_opened_and_removed(check):
    app, world = check.app, check.world
    attachments = world.data / "Attachments"
    check.select("Brook Serif")
    app.find("label", "No file attached")
    app.press(app.find("push button", "Attach File…"))
    app.answer_panel(ATTACH_PANEL, world.documents / "receipt.txt")
    wait_for("the copy", lambda: [path.name[8:] for path in attachments.iterdir()] == ["-receipt.txt"])
    app.press(app.find("push button", "Attach File…"))
    app.answer_panel(ATTACH_PANEL, world.documents / "invoice.txt")
    wait_for("the other copy",
             lambda: [path.name[8:] for path in attachments.iterdir()] == ["-invoice.txt"])
    world.forget_opened()
    app.press(app.find("push button", "Open"))
    copy = next(attachments.iterdir())
    wait_for("the copy to be opened", lambda: world.opened() == [copy.as_uri()])
    app.press(app.find("push button", "Remove"))
    app.find("label", "No file attached")
    assert not list(attachments.iterdir())
    assert (world.documents / "receipt.txt").exists()


@flow
def a_link_goes_to_the_browser_and_only_a_real_one(check):
    app, world = check.app, check.world
    check.select("Cedar Mono")
    app.give_focus(app.find("text", "Link"))
    app.type("example.org")
    assert not app.has("push button", "Open the link")
    app.key("ctrl+a")
    app.type("https://example.org/receipt?id=1")
    world.forget_opened()
    app.press(app.find("push button", "Open the link"))
    wait_for("the browser", lambda: world.opened() == ["https://example.org/receipt?id=1"])


# Folders.

@flow
def a_folder_is_scanned_rescanned_remembered_and_removed(check):
    app, world = check.app, check.world
    folder = world.outside / "My Fonts ü"
    shutil.copytree(world.fonts / "more", folder)
    app.key("ctrl+o")
    app.answer_panel(SCAN_PANEL, folder)
    wait_for("the folder's fonts", lambda: check.names() == ["Fir", "Elm"])
    check.source("My Fonts ü, 2 fonts")
    app = check.restart()
    check.show("My Fonts ü")
    wait_for("the folder's fonts", lambda: check.names() == ["Fir", "Elm"])
    (folder / "Fir-Regular.ttf").unlink()
    app.context_menu(check.source("My Fonts ü"), choose="Rescan")
    wait_for("the font to be gone", lambda: check.names() == ["Elm"])
    app.context_menu(check.source("My Fonts ü"), choose="Remove from List")
    wait_for("the installed fonts", lambda: len(check.names()) == len(FONTS))
    assert not check.has_source("My Fonts ü")
    check.restart()
    check.wait_for_names(FONTS)
    assert not check.has_source("My Fonts ü")


@flow
def an_empty_folder_is_kept_and_reported(check):
    app = check.app
    app.key("ctrl+o")
    app.answer_panel(SCAN_PANEL, check.world.fonts / "empty")
    check.alert("No font files were found in empty.")
    app.find("label", "No fonts found\nAdd font files to this folder, then rescan.")
    app.context_menu(check.source("empty"), choose="Remove from List")
    wait_for("the installed fonts", lambda: len(check.names()) == len(FONTS))


# Documents.

@flow
def dropped_documents_are_checked_whatever_the_case_of_their_suffix(check):
    app, documents = check.app, check.world.documents
    check.show(CHECK)
    area = app.find(None, "Drop area for PDF files")
    with check.dragged(documents / "My Flyer.pdf", documents / "Letter.docx",
                       documents / "Kärtchen.PDF") as source:
        app.drag(source, area)
        wait_for("both documents", lambda: check.has_source("My Flyer.pdf")
                 and check.has_source("Kärtchen.PDF"))
    check.show("My Flyer.pdf")
    wait_for("its fonts", lambda: check.names() == ["Brook Serif", "Fir", "Alder Grotesk", "Courier"])
    assert app.headers(check.table())[-2:] == ["Pages", "In the PDF"]
    assert not app.has("combo box", "All fonts")
    app.find("label", "2 fonts here look restricted for a product you sell. Check their licenses, "
             "or rebuild the file with open-licensed fonts.")


@flow
def a_drop_of_other_documents_is_refused_aloud(check):
    app = check.app
    check.show(CHECK)
    with check.dragged(check.world.documents / "Letter.docx") as source:
        app.drag(source, app.find(None, "Drop area for PDF files"))
        wait_for("the alert", lambda: app.has("alert"))
    check.alert(NO_PDF)


@flow
def of_what_is_dropped_only_files_are_taken(check):
    app = check.app
    check.show(CHECK)
    area = app.find(None, "Drop area for PDF files")
    for dragged in ([], ["https://example.org/page.pdf"]):
        with check.dragged(*dragged) as source:
            app.drag(source, area)
    assert not app.has("alert")
    assert not check.has_source("page.pdf")
    with check.dragged("https://example.org/page.pdf",
                       check.world.documents / "Elm.pdf") as source:
        app.drag(source, area)
        wait_for("the document", lambda: check.has_source("Elm.pdf"))
    assert not app.has("alert")
    assert not check.has_source("page.pdf")


@flow
def return_on_the_drop_page_chooses_documents(check):
    app = check.app
    check.show(CHECK)
    app.find(None, "Drop area for PDF files")
    app.key("Return")
    app.answer_panel(CHECK_PANEL, check.world.documents / "Elm.pdf")
    wait_for("the document", lambda: check.has_source("Elm.pdf"))
    wait_for("its fonts", lambda: check.names() == ["Courier", "Elm"])


@flow
def a_document_without_fonts_says_so(check):
    app = check.app
    app.key("ctrl+shift+o")
    app.answer_panel(CHECK_PANEL, check.world.documents / "Blank.pdf")
    app.find("label", "No fonts in this PDF\nIt may be all images, or its text was turned into "
             "outlines.")


@flow
def a_damaged_document_is_reported(check):
    app = check.app
    app.key("ctrl+shift+o")
    app.answer_panel(CHECK_PANEL, check.world.documents / "Damaged.pdf")
    check.alert("Damaged.pdf couldn't be opened as a PDF.")
    assert not check.has_source("Damaged.pdf")


@flow
def a_locked_document_is_reported(check):
    app = check.app
    app.key("ctrl+shift+o")
    app.answer_panel(CHECK_PANEL, check.world.documents / "Locked.pdf")
    check.alert("Locked.pdf is password-protected. Open it in Preview, remove the password, and "
                "check the copy.")
    assert not check.has_source("Locked.pdf")


@flow
def a_document_is_checked_again_and_removed(check):
    app = check.app
    document = check.world.copy("Kärtchen.PDF")
    app.key("ctrl+shift+o")
    app.answer_panel(CHECK_PANEL, document)
    wait_for("the document", lambda: check.names() == ["Alder Grotesk", "Courier"])
    shutil.copy(check.world.documents / "Elm.pdf", document)
    app.click(app.find("push button", "Check Again"))
    wait_for("what it holds now", lambda: check.names() == ["Courier", "Elm"])
    for _ in range(2):  # there is one of that name from before
        if check.has_source("Kärtchen.PDF"):
            app.context_menu(check.source("Kärtchen.PDF"), choose="Remove from List")
    wait_for("the document to be gone", lambda: not check.has_source("Kärtchen.PDF"))
    check.show_installed()


# Exports.

@flow
def a_csv_is_written_with_the_notes_and_revealed(check):
    app, world = check.app, check.world
    check.show_installed()
    app.key("ctrl+e")
    panel = app.panel("Export as CSV")
    assert app.text(app.find("text", None, under=panel)) == f"{INSTALLED}.csv"
    with world.file_manager() as shown:
        app.answer_panel("Export as CSV", world.outside / "audit")
        target = world.outside / "audit.csv"
        wait_for("ShowItems", lambda: shown() == [f"ShowItems {target.as_uri()}"])
    assert "Brook Type" in target.read_text()


@flow
def a_file_is_replaced_only_when_that_is_wanted(check):
    app, target = check.app, check.world.outside / "old.pdf"
    check.show_installed()
    target.write_text("old")
    app.key("ctrl+shift+e")
    app.answer_panel("Export as PDF", target, replace=False)
    assert target.read_text() == "old"
    app.key("ctrl+shift+e")
    app.answer_panel("Export as PDF", target, replace=True)
    wait_for("the report", lambda: target.read_bytes().startswith(b"%PDF-"))


@flow
def a_file_that_cannot_be_written_is_reported(check):
    app = check.app
    check.show_installed()
    app.key("ctrl+e")
    # Not even the superuser can write through a link to nowhere.
    target = check.world.outside / "nowhere.csv"
    target.symlink_to("/nonexistent/folder/audit.csv")
    app.answer_panel("Export as CSV", target)
    alert = app.find("alert", "Quillmark")
    texts = [app.text(node) for node in app.all("label", under=alert)]
    assert f"{target} could not be written: No such file or directory." in texts, texts
    app.key("Escape")
    app.gone("alert")


@flow
def an_empty_list_is_not_exported(check):
    app = check.app
    app.key("ctrl+shift+o")
    app.answer_panel(CHECK_PANEL, check.world.documents / "Blank.pdf")
    app.find("label", "No fonts in this PDF\nIt may be all images, or its text was turned into "
             "outlines.")
    app.key("ctrl+e")
    check.alert("There's nothing to export in this view yet.")
    check.show_installed()


# The desktop around it.

@flow
def fonts_are_revealed_with_a_file_manager_and_without_one(check):
    app, world = check.app, check.world
    font = world.fonts / "installed" / "Brook-Regular.ttf"
    row = check.names().index("Brook Serif")
    with world.file_manager() as shown:
        assert app.context_menu(app.cell(check.table(), row)) == ["Show Font File in Finder"]
        app.context_menu(app.cell(check.table(), row), choose="Show Font File in Finder")
        wait_for("ShowItems", lambda: shown() == [f"ShowItems {font.as_uri()}"])
    world.forget_opened()
    app.context_menu(app.cell(check.table(), row), choose="Show Font File in Finder")
    wait_for("the folder", lambda: world.opened() == [font.parent.as_uri()])


@flow
def the_menu_key_opens_context_menus(check):
    check.select("Brook Serif")
    assert check.app.context_menu(keys="Menu") == ["Show Font File in Finder"]
    assert check.app.context_menu(keys="shift+F10") == ["Show Font File in Finder"]
    check.app.key("ctrl+o")
    check.app.answer_panel(SCAN_PANEL, check.world.fonts / "more")
    check.select("Fir")
    check.app.click(check.source("more"))
    for keys in ("Menu", "shift+F10"):
        entries = check.app.context_menu(keys=keys)
        assert entries == ["Rescan", "Show in Finder", "Remove from List"], (keys, entries)
    check.app.context_menu(check.source("more"), choose="Remove from List")
    check.show_installed()


@flow
def shortcuts_work_wherever_the_focus_is(check):
    app = check.app
    check.select("Brook Serif")
    table_has_it = lambda: app.click(app.cell(check.table(), 0))
    field_has_it = lambda: app.key("ctrl+f")
    note_has_it = lambda: app.give_focus(app.find("text", "Notes"))
    panels = {"ctrl+o": SCAN_PANEL, "ctrl+shift+o": CHECK_PANEL, "ctrl+e": "Export as CSV",
              "ctrl+shift+e": "Export as PDF"}
    for give_focus in (table_has_it, field_has_it, note_has_it):
        give_focus()
        before = app.focus()
        for keys, title in panels.items():
            app.key(keys)
            app.panel(title)
            app.key("Escape")
            app.gone("dialog", title)
            wait_for("the focus to come back", lambda was=before: app.focus() == was)
    app.key("ctrl+f")
    assert app.focus()[1] == "Search"


@flow
def the_help_opens_and_closes(check):
    app = check.app
    app.menu("Help", "How Quillmark Decides")
    dialog = app.find("dialog")
    app.find("label", "How Quillmark decides", under=dialog)
    app.key("Return")
    app.gone("dialog")


@flow
def every_visible_control_has_a_name(check):
    app = check.app
    check.select("Brook Serif")
    roles = ("push button", "check box", "radio button", "toggle button", "combo box", "text",
             "table", "tree", "image", "progress bar", "link", "spin button")
    nameless = [(role, app.box(node)) for role in roles for node in app.all(role)
                if not node.get_name()]
    assert not nameless, nameless


@flow
def tab_reaches_everything_and_nothing_traps_it(check):
    app = check.app
    check.select("Brook Serif")
    app.key("ctrl+f")
    for step in ("Tab", "shift+Tab"):
        seen = []
        for _ in range(60):
            seen.append(app.heard_focus())
            if seen.count(seen[0]) > 1:
                break
            app.key(step)
        names = {name for role, name in filter(None, seen)}
        roles = {role for role, name in filter(None, seen)}
        missing = {"Search", "Bought from", "Notes", "Link", "Attach File…"} - names
        assert not missing, (step, missing, seen)
        assert "table cell" in roles or "table" in roles, (step, seen)
        assert seen.count(seen[0]) > 1, ("trapped", step, seen)


# Starts.

@flow
def a_second_start_hands_over_its_files_and_ends(check):
    app, world = check.app, check.world
    check.show_installed()
    other = App(check.drag_source)  # another program's window has the focus
    second = world.start(world.documents / "Elm.pdf", ready=False)
    assert second.process.wait(10) == 0, second.output()
    wait_for("the document", lambda: check.names() == ["Courier", "Elm"])
    wait_for("the window to be active", app.active)
    other.kill()
    second = world.start(ready=False)
    assert second.process.wait(10) == 0, second.output()


@flow
def two_starts_at_once_make_one_window(check):
    assert check.app.quit() == 0
    starts = [check.world.start(ready=False) for _ in range(3)]
    wait_for("two of three to end",
             lambda: sum(start.process.poll() is not None for start in starts) == 2)
    assert sorted(start.process.poll() for start in starts if start.process.poll() is not None) == [0, 0]
    for start in starts:
        if start.process.poll() is None:
            start.kill()
    check.start()  # what was killed is in nobody's way
    check.wait_for_names(FONTS)


@flow
def files_on_the_command_line_are_checked_and_folders_scanned(check):
    world = check.world
    assert check.app.quit() == 0
    app = check.start((world.documents / "My Flyer.pdf").as_uri(), world.fonts / "more")
    wait_for("the document", lambda: check.has_source("My Flyer.pdf"))
    wait_for("the folder", lambda: check.has_source("more"))
    wait_for("the document's fonts", lambda: "Fir" in check.names())
    check.select("Fir")  # matched to the folder, which was read first
    assert any("more/Fir-Regular.ttf" in (node.get_name() or "") + app.text(node)
               for node in app.all()), app.dump()
    app.context_menu(check.source("more"), choose="Remove from List")
    check.show_installed()


@flow
def anything_else_on_the_command_line_is_refused_aloud(check):
    assert check.app.quit() == 0
    check.start(check.world.documents / "Letter.docx")
    check.alert(NO_PDF)
    check.show_installed()


@flow
def words_on_the_command_line_need_no_display(check):
    environment = {"DISPLAY": "", "QT_QPA_PLATFORM": "xcb"}
    for option, code in (("--help", 0), ("--version", 0), ("--frobnicate", 2)):
        said = check.world.start(option, env=environment, ready=False)
        assert said.process.wait(10) == code, said.output()
        assert said.output().startswith(("Usage: quillmark", "quillmark ", "quillmark: ")), option


@flow
def it_ends_at_once_while_it_reads(check):
    world = check.world
    assert check.app.quit() == 0
    folder = world.outside / "never ends"
    folder.mkdir()
    # A start with much to read: thousands of fonts, which take seconds.
    for number in range(20_000):
        (folder / f"{number}.ttf").hardlink_to(world.fonts / "more" / "Elm-Regular.ttf")
    app = check.start(folder)
    begun = time.monotonic()
    code = app.quit()
    assert code == 0, code
    assert time.monotonic() - begun < 5, time.monotonic() - begun
    shutil.rmtree(folder)
    world.forget()
    check.start()


@flow
def closing_the_window_ends_it(check):
    app = check.app
    app.key("alt+F4")
    assert app.process.wait(10) == 0
    check.start()


@flow
def the_end_of_the_session_ends_it_in_order(check):
    check.app.process.send_signal(signal.SIGTERM)
    assert check.app.process.wait(10) == 0
    check.start()


@flow
def the_window_opens_as_it_was_left(check):
    app = check.app
    window = run("xdotool", "search", "--onlyvisible", "--pid", app.process.pid).split()[-1]
    run("xdotool", "windowsize", "--sync", window, 1000, 640)
    wait_for("the size", lambda: app.box(app.window)[2] == 1000)
    app = check.restart()
    wait_for("the size", lambda: app.box(app.window)[2:] == (1000, 640))
    assert "[window]" in check.world.settings.read_text()


# Colours.

@flow
def the_desktops_colours_are_followed(check):
    world = check.world
    assert check.app.quit() == 0
    with world.portal(1, 0) as change:
        app = check.start()
        wait_for("a dark window", lambda: luminance(world, app) < 0.3)
        change(0, 0)
        wait_for("a light window", lambda: luminance(world, app) > 0.7)
        change(1, 1)
        wait_for("a dark window", lambda: luminance(world, app) < 0.3)
        change(0, 0)
        wait_for("a light window", lambda: luminance(world, app) > 0.7)


def main():
    parser = argparse.ArgumentParser()
    parser.add_argument("--pictures", type=Path)
    parser.add_argument("program")
    parser.add_argument("drag_source")
    parser.add_argument("flows", nargs="*")
    arguments = parser.parse_args()
    check = Check(World(arguments.program), arguments.drag_source)
    chosen = [flow for flow in FLOWS if not arguments.flows or flow.__name__ in arguments.flows]
    passed = failed = 0
    check.start()
    for run_flow in chosen:
        if passes(run_flow, check, arguments.pictures):
            passed += 1
        else:
            failed += 1
            check.app.kill()
            print(check.app.output(), flush=True)
            check.start()
    try:
        assert check.app.quit() == 0, "the exit code"
        passed += 1
    except Exception:
        failed += 1
        traceback.print_exc(file=sys.stdout)
        check.app.kill()
    print(f"{passed} passed, {failed} failed")
    return failed != 0


if __name__ == "__main__":
    sys.exit(main())
