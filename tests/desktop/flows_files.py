"""What people do with folders and documents, and with what they export."""

import shutil

from desktop import wait_for
from flows import Flows
from window import CHECK, CHECK_PANEL, FONTS, INSTALLED, NO_PDF, SCAN_PANEL

FLOWS = Flows()


# Folders.

@FLOWS.add
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


@FLOWS.add
def an_empty_folder_is_kept_and_reported(check):
    app = check.app
    app.key("ctrl+o")
    app.answer_panel(SCAN_PANEL, check.world.fonts / "empty")
    check.alert("No font files were found in empty.")
    app.find("label", "No fonts found\nAdd font files to this folder, then rescan.")
    app.context_menu(check.source("empty"), choose="Remove from List")
    wait_for("the installed fonts", lambda: len(check.names()) == len(FONTS))


# Documents.

@FLOWS.add
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


@FLOWS.add
def a_drop_of_other_documents_is_refused_aloud(check):
    app = check.app
    check.show(CHECK)
    with check.dragged(check.world.documents / "Letter.docx") as source:
        app.drag(source, app.find(None, "Drop area for PDF files"))
        wait_for("the alert", lambda: app.has("alert"))
    check.alert(NO_PDF)


@FLOWS.add
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


@FLOWS.add
def return_on_the_drop_page_chooses_documents(check):
    app = check.app
    check.show(CHECK)
    app.find(None, "Drop area for PDF files")
    app.key("Return")
    app.answer_panel(CHECK_PANEL, check.world.documents / "Elm.pdf")
    wait_for("the document", lambda: check.has_source("Elm.pdf"))
    wait_for("its fonts", lambda: check.names() == ["Courier", "Elm"])


@FLOWS.add
def a_document_without_fonts_says_so(check):
    app = check.app
    app.key("ctrl+shift+o")
    app.answer_panel(CHECK_PANEL, check.world.documents / "Blank.pdf")
    app.find("label", "No fonts in this PDF\nIt may be all images, or its text was turned into "
             "outlines.")


@FLOWS.add
def a_damaged_document_is_reported(check):
    app = check.app
    app.key("ctrl+shift+o")
    app.answer_panel(CHECK_PANEL, check.world.documents / "Damaged.pdf")
    check.alert("Damaged.pdf couldn't be opened as a PDF.")
    assert not check.has_source("Damaged.pdf")


@FLOWS.add
def a_locked_document_is_reported(check):
    app = check.app
    app.key("ctrl+shift+o")
    app.answer_panel(CHECK_PANEL, check.world.documents / "Locked.pdf")
    check.alert("Locked.pdf is password-protected. Open it in Preview, remove the password, and "
                "check the copy.")
    assert not check.has_source("Locked.pdf")


@FLOWS.add
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

@FLOWS.add
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


@FLOWS.add
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


@FLOWS.add
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


@FLOWS.add
def an_empty_list_is_not_exported(check):
    app = check.app
    app.key("ctrl+shift+o")
    app.answer_panel(CHECK_PANEL, check.world.documents / "Blank.pdf")
    app.find("label", "No fonts in this PDF\nIt may be all images, or its text was turned into "
             "outlines.")
    app.key("ctrl+e")
    check.alert("There's nothing to export in this view yet.")
    check.show_installed()
