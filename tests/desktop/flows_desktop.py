"""How the window gets on with the desktop, with the keyboard, and with its own starts and ends."""

import shutil
import signal
import time

from desktop import App, Atspi, has_state, run, wait_for
from flows import Flows
from window import CHECK_PANEL, FONTS, NO_PDF, SCAN_PANEL
from world import luminance

FLOWS = Flows()


# The desktop around it.

@FLOWS.add
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


@FLOWS.add
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


@FLOWS.add
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


@FLOWS.add
def the_help_opens_and_closes(check):
    app = check.app
    app.menu("Help", "How Quillmark Decides")
    dialog = app.find("dialog")
    app.find("label", "How Quillmark decides", under=dialog)
    app.key("Return")
    app.gone("dialog")


@FLOWS.add
def every_visible_control_has_a_name(check):
    app = check.app
    check.select("Brook Serif")
    roles = ("push button", "check box", "radio button", "toggle button", "combo box", "text",
             "table", "tree", "image", "progress bar", "link", "spin button")
    nameless = [(role, app.box(node)) for role in roles for node in app.all(role)
                if not node.get_name()]
    assert not nameless, nameless


@FLOWS.add
def tab_reaches_everything_and_nothing_traps_it(check):
    app = check.app
    check.select("Brook Serif")
    assert app.key_for_focus("ctrl+f")[-1] == ("text", "Search")
    for step in ("Tab", "shift+Tab"):
        seen = [("text", "Search")]
        while len(seen) < 60 and seen.count(seen[0]) == 1:
            seen += app.key_for_focus(step)
        names = {name for role, name in seen}
        roles = {role for role, name in seen}
        missing = {"Search", "Bought from", "Notes", "Link", "Attach File…"} - names
        assert not missing, (step, missing, seen)
        assert "table cell" in roles or "table" in roles, (step, seen)
        assert seen.count(seen[0]) > 1, ("trapped", step, seen)


# Starts.

@FLOWS.add
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


@FLOWS.add
def a_second_start_leaves_the_keyboard_to_the_dialog_that_is_open(check):
    app = check.app
    check.show_installed()
    for open_dialog in (lambda: app.key("ctrl+o"),
                        lambda: app.menu("Help", "How Quillmark Decides")):
        for other in (None, check.drag_source):  # another program's window has the focus, or ours
            open_dialog()
            app.active_window("dialog")
            in_front = other and App(other)
            second = check.world.start(ready=False)
            assert second.process.wait(10) == 0, second.output()
            dialog = app.active_window("dialog")
            # Where the keyboard went to the window, it was after a moment.
            time.sleep(0.5)
            assert has_state(dialog, Atspi.StateType.ACTIVE)
            run("xdotool", "key", "Escape")
            app.window_gone("dialog")
            if in_front:
                in_front.kill()
            wait_for("the window to be active", app.active)


@FLOWS.add
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


@FLOWS.add
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


@FLOWS.add
def anything_else_on_the_command_line_is_refused_aloud(check):
    assert check.app.quit() == 0
    check.start(check.world.documents / "Letter.docx")
    check.alert(NO_PDF)
    check.show_installed()


@FLOWS.add
def words_on_the_command_line_need_no_display(check):
    environment = {"DISPLAY": "", "QT_QPA_PLATFORM": "xcb"}
    for option, code in (("--help", 0), ("--version", 0), ("--frobnicate", 2)):
        said = check.world.start(option, env=environment, ready=False)
        assert said.process.wait(10) == code, said.output()
        assert said.output().startswith(("Usage: quillmark", "quillmark ", "quillmark: ")), option


@FLOWS.add
def it_ends_at_once_while_it_reads(check):
    world = check.world
    assert check.app.quit() == 0
    folder = world.many_fonts(20_000)
    app = check.start(folder)
    begun = time.monotonic()
    code = app.quit()
    assert code == 0, code
    assert time.monotonic() - begun < 5, time.monotonic() - begun
    shutil.rmtree(folder)
    world.forget()
    check.start()


@FLOWS.add
def closing_the_window_ends_it(check):
    app = check.app
    app.key("alt+F4")
    assert app.process.wait(10) == 0
    check.start()


@FLOWS.add
def the_end_of_the_session_ends_it_in_order(check):
    check.app.process.send_signal(signal.SIGTERM)
    assert check.app.process.wait(10) == 0
    check.start()


@FLOWS.add
def the_window_opens_as_it_was_left(check):
    app = check.app
    window = run("xdotool", "search", "--onlyvisible", "--pid", app.process.pid).split()[-1]
    run("xdotool", "windowsize", "--sync", window, 1000, 640)
    wait_for("the size", lambda: app.box(app.window)[2] == 1000)
    app = check.restart()
    wait_for("the size", lambda: app.box(app.window)[2:] == (1000, 640))
    assert "[window]" in check.world.settings.read_text()


# Colours.

@FLOWS.add
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
