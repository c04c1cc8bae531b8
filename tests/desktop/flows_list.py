"""What people do with the list of fonts, with the details of one and with their notes on it."""

import shutil
import stat
import time

from desktop import SCALE, children, wait_for
from flows import Flows
from window import ATTACH_PANEL, CHECK_PANEL, FONTS

FLOWS = Flows()


# How it starts.

@FLOWS.add
def the_first_start_lists_the_installed_fonts_and_writes_nothing(check):
    check.wait_for_names(FONTS)
    assert not check.note_file().exists()
    assert check.app.root.get_name() == "Quillmark"
    assert check.app.window.get_name() == "Quillmark"
    check.app.find("label", "7 fonts: 3 likely OK, 2 restricted, 2 unknown")


@FLOWS.add
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


@FLOWS.add
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


@FLOWS.add
def what_has_been_read_is_announced(check):
    app, world = check.app, check.world
    check.show_installed()
    app.renamed.clear()
    app.key("F5")
    wait_for("the announcement",
             lambda: ("label", "7 fonts: 3 likely OK, 2 restricted, 2 unknown") in app.renamed)
    app.renamed.clear()
    # The bus asks for a text when it has heard of its change, so it is to stand for a while.
    folder = world.many_fonts(20_000)
    second = world.start(folder, ready=False)
    wait_for("the announcement", lambda: ("label", "Scanning many…") in app.renamed)
    assert second.process.wait(10) == 0, second.output()
    wait_for("the announcement", lambda: any(role == "label" and name.startswith("20000 fonts: ")
                                             for role, name in app.renamed))
    app.context_menu(check.source("many"), choose="Remove from List")
    shutil.rmtree(folder)
    check.show_installed()
    app.renamed.clear()
    app.key("ctrl+shift+o")
    app.answer_panel(CHECK_PANEL, check.world.documents / "Elm.pdf")
    wait_for("the announcement", lambda: any(role == "label" and name.startswith("2 fonts: ")
                                             for role, name in app.renamed))
    check.show_installed()


# What the list shows.

@FLOWS.add
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


@FLOWS.add
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


@FLOWS.add
def a_search_that_finds_nothing_says_so(check):
    app = check.app
    says = "No fonts match\nChange the search or the filters to see more."
    assert not app.has("label", says)
    app.key("ctrl+f")
    app.type("zzz")
    app.find("label", says)
    app.find("label", "0 shown of 7 fonts: 3 likely OK, 2 restricted, 2 unknown")
    app.key("ctrl+a", "BackSpace")
    app.gone("label", says)
    check.wait_for_names(FONTS)


@FLOWS.add
def a_font_is_copied_as_a_row_of_a_spreadsheet(check):
    check.select("Dogwood 日本語")
    app = check.app
    row = app.rows(check.table())[check.names().index("Dogwood 日本語")]
    for copy in (lambda: app.key("ctrl+c"), lambda: app.key("ctrl+Insert"),
                 lambda: app.menu("Edit", "Copy")):
        with app.on_clipboard("before"):
            copy()
            wait_for("the row on the clipboard", lambda: app.clipboard().split("\t") == row)


@FLOWS.add
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


@FLOWS.add
def arrow_keys_move_the_details(check):
    names = check.names()
    check.select(names[0])
    check.app.listen(0)
    check.app.key("Down")
    wait_for("the next font", lambda: check.detail("Font") == names[1])
    assert ("table cell", names[1]) in check.app.listen()  # and a screen reader says so
    check.app.key("Up")
    wait_for("the first font", lambda: check.detail("Font") == names[0])


@FLOWS.add
def details_hide_and_show(check):
    app = check.app
    check.select("Brook Serif")
    app.menu("View", "Details")
    app.gone(None, "Your license notes")
    app.menu("View", "Details")
    app.find(None, "Your license notes")


# Notes.

@FLOWS.add
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


@FLOWS.add
def notes_outlast_a_restart(check):
    app = check.restart()
    check.select("Brook Serif")
    wait_for("the note", lambda: app.text(app.find("text", "Bought from")) == "Brook Type")


@FLOWS.add
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


@FLOWS.add
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


@FLOWS.add
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


@FLOWS.add
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
