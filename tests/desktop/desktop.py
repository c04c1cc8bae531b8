"""Drives a Qt application as a person does, on the desktop that with-desktop.sh sets up.

Pointer and keys go through the X server (xdotool). What is on the screen is read through the
accessibility bus (AT-SPI), as a screen reader gets it, and as pictures (maim). Run it with Debian's
own /usr/bin/python3, to which python3-pyatspi belongs.

Round trips do not order X events against calls over D-Bus, so whatever is expected is waited for.
"""

import contextlib
import os
import subprocess
import tempfile
import time

import gi

gi.require_version("Atspi", "2.0")
from gi.repository import Atspi, GLib  # noqa: E402

WAIT = float(os.environ.get("DESKTOP_WAIT", "20"))  # seconds; only what fails takes that long
SCALE = float(os.environ.get("QT_SCALE_FACTOR", "1"))
CLIPBOARD = ("xclip", "-selection", "clipboard")
VIEWS = ("table", "tree", "tree table", "list")


def handle_events():
    """Lets the bus tell what has changed; what it was asked before is remembered until then."""
    context = GLib.MainContext.default()
    while context.iteration(False):
        pass


def run(*command, **options):
    return subprocess.run([str(part) for part in command], check=True, text=True,
                          capture_output=True, **options).stdout


def wait_for(what, test, seconds=None):
    """Asks until test() is true, and returns its value."""
    end = time.monotonic() + (seconds or WAIT)
    last = None
    while True:
        handle_events()
        try:
            last = test()
            if last:
                return last
        except (GLib.Error, AttributeError) as error:  # an object went away meanwhile
            last = error
        if time.monotonic() > end:
            raise AssertionError(f"waited for {what}; last: {last!r}")
        time.sleep(0.03)


def has_state(node, *states):
    held = node.get_state_set()
    return all(held.contains(state) for state in states)


def showing(node):
    return has_state(node, Atspi.StateType.SHOWING, Atspi.StateType.VISIBLE)


def children(node):
    for index in range(node.get_child_count()):
        child = node.get_child_at_index(index)
        if child is not None:
            yield child


def walk(node):
    """A node and all below it, but not the cells of tables, of which there can be thousands."""
    yield node
    if node.get_role_name() not in VIEWS:
        for child in children(node):
            yield from walk(child)


class App:
    """A running application. Its objects die when a list is sorted or filtered: look them up anew."""

    def __init__(self, *command, env=None, ready=True):
        self.log = tempfile.TemporaryFile("w+", dir=os.environ["XDG_RUNTIME_DIR"])
        self.process = subprocess.Popen([str(part) for part in command], stdout=self.log,
                                        stderr=subprocess.STDOUT, env={**os.environ, **(env or {})})
        self.heard = []  # (role, name) of what got the focus
        self._listener = Atspi.EventListener.new(self._hear)
        self._listener.register("object:state-changed:focused")
        self.renamed = []  # (role, name) of what has changed its text meanwhile
        self._renaming = Atspi.EventListener.new(self._hear_name)
        self._renaming.register("object:property-change:accessible-name")
        if ready:
            self.root = wait_for("the application on the accessibility bus", self._find_root)
            self.window = wait_for("its window", lambda: next(filter(showing, children(self.root))))
            wait_for("the window to be active", self.active)

    def output(self):
        self.log.seek(0)
        return self.log.read()

    def _find_root(self):
        if self.process.poll() is not None:
            raise SystemExit(f"ended with {self.process.returncode}: {self.output()}")
        for app in children(Atspi.get_desktop(0)):
            if app.get_process_id() == self.process.pid and app.get_child_count():
                return app
        return None

    def _hear(self, event):
        try:
            if event.detail1 and event.source.get_process_id() == self.process.pid:
                self.heard.append((event.source.get_role_name(), event.source.get_name()))
        except GLib.Error:
            pass  # gone again already

    def _hear_name(self, event):
        try:
            if event.source.get_process_id() == self.process.pid:
                self.renamed.append((event.source.get_role_name(), event.source.get_name()))
        except GLib.Error:
            pass

    def listen(self, seconds=1):
        """What has got the focus since the last call; waits so long for the first of it."""
        end = time.monotonic() + seconds
        while not self.heard and time.monotonic() < end:
            time.sleep(0.01)
            handle_events()
        time.sleep(0.05)  # more may come with it
        handle_events()
        heard, self.heard = self.heard, []
        return heard

    def all(self, role=None, name=None, under=None):
        for top in [under] if under is not None else list(children(self.root)):
            for node in walk(top):
                if ((role is None or node.get_role_name() == role)
                        and (name is None or node.get_name() == name) and showing(node)):
                    yield node

    def find(self, role=None, name=None, under=None, seconds=None):
        return wait_for(f"{role or 'anything'} named {name!r}",
                        lambda: next(self.all(role, name, under), None), seconds)

    def has(self, role=None, name=None, under=None):
        return next(self.all(role, name, under), None) is not None

    def gone(self, role=None, name=None):
        wait_for(f"{role} {name!r} to go away", lambda: not self.has(role, name))

    def windows(self, role, name=None):
        """Windows of their own, such as dialogs: found sooner than what is inside of one."""
        return [top for top in children(self.root)
                if top.get_role_name() == role and (name is None or top.get_name() == name)
                and showing(top)]

    def find_window(self, role, name=None, seconds=None):
        return wait_for(f"{role} named {name!r}",
                        lambda: next(iter(self.windows(role, name)), None), seconds)

    def active_window(self, role, name=None, seconds=None):
        """One that gets the keys by now, which is a moment after it has come up."""
        window = self.find_window(role, name, seconds)
        wait_for(f"the {role} to be active", lambda: has_state(window, Atspi.StateType.ACTIVE))
        return window

    def window_gone(self, role):
        wait_for(f"the {role} to go away", lambda: not self.windows(role))

    def labelled(self, role, label):
        """By the label beside it: a combo box is named after its current choice."""
        def look():
            for node in self.all(role):
                for relation in node.get_relation_set():
                    if (relation.get_relation_type() == Atspi.RelationType.LABELLED_BY
                            and relation.get_target(0).get_name() == label):
                        return node
            return None
        return wait_for(f"{role} labelled {label!r}", look)

    def dump(self):
        lines = []

        def add(node, depth):
            lines.append("  " * depth + f"{node.get_role_name()} {node.get_name()!r} "
                         f"{node.get_description()!r}")
            for child in children(node):
                if showing(child):
                    add(child, depth + 1)
        add(self.root, 0)
        return "\n".join(lines)

    @staticmethod
    def text(node):
        if node.get_text_iface():
            return Atspi.Text.get_text(node, 0, Atspi.Text.get_character_count(node))
        return node.get_name()

    @staticmethod
    def headers(table):
        return [Atspi.Table.get_column_header(table, column).get_name()
                for column in range(Atspi.Table.get_n_columns(table))]

    @staticmethod
    def rows(table):
        columns = range(Atspi.Table.get_n_columns(table))
        return [[Atspi.Table.get_accessible_at(table, row, column).get_name() for column in columns]
                for row in range(Atspi.Table.get_n_rows(table))]

    @staticmethod
    def header(table, name):
        return next(head for head in (Atspi.Table.get_column_header(table, column)
                                      for column in range(Atspi.Table.get_n_columns(table)))
                    if head.get_name() == name)

    @staticmethod
    def cell(table, row, column=0):
        return Atspi.Table.get_accessible_at(table, row, column)

    @staticmethod
    def items(view):
        return [child.get_name() for child in children(view)]

    @staticmethod
    def item(view, name):
        return wait_for(f"item {name!r}", lambda: next(
            (child for child in children(view) if child.get_name() == name), None))

    @staticmethod
    def checked(node):
        return has_state(node, Atspi.StateType.CHECKED)

    @staticmethod
    def enabled(node):
        return has_state(node, Atspi.StateType.ENABLED, Atspi.StateType.SENSITIVE)

    @staticmethod
    def focused(node):
        return has_state(node, Atspi.StateType.FOCUSED)

    def focus(self):
        """The (role, name) of what has the keyboard focus; all of the window is asked for it."""
        for top in children(self.root):
            for node in walk(top):
                if self.focused(node):
                    return node.get_role_name(), node.get_name()
        return None

    def key_for_focus(self, key):
        """Presses a key that moves the keyboard focus: the (role, name) of what got it, as a screen
        reader heard it; usually one."""
        self.listen(0)
        self.key(key)
        return self.listen(WAIT)

    def active(self):
        return any(has_state(top, Atspi.StateType.ACTIVE) for top in children(self.root))

    @staticmethod
    def box(node):
        """Left, top, width and height on the screen; the bus knows them unscaled."""
        box = Atspi.Component.get_extents(node, Atspi.CoordType.SCREEN)
        return tuple(int(part * SCALE) for part in (box.x, box.y, box.width, box.height))

    # What a person does.

    def settle(self):
        """One round trip through the application's event loop, if it has not ended."""
        with contextlib.suppress(GLib.Error):
            Atspi.Component.get_extents(self.window, Atspi.CoordType.SCREEN)

    def give_focus(self, node):
        """As an assistive technology does; what is scrolled out of sight comes into it."""
        Atspi.Component.grab_focus(node)
        wait_for(f"the focus on {node.get_name()!r}", lambda: self.focused(node))

    def press(self, button):
        self.give_focus(button)
        self.key("space")

    def click(self, node, button=1, at=None):
        x, y, width, height = self.box(node)
        dx, dy = at or (width // 2, height // 2)
        # With --sync it would wait 15 s where the pointer is there already.
        run("xdotool", "mousemove", x + dx, y + dy, "click", button)
        self.settle()

    def hover(self, node):
        x, y, width, height = self.box(node)
        run("xdotool", "mousemove", x + width // 2, y + height // 2)

    def key(self, *keys):
        # A window that has just closed gives the focus back a moment later; keys would be lost.
        wait_for("an active window", self.active)
        run("xdotool", "key", "--clearmodifiers", *keys)
        self.settle()

    def type(self, text):
        """By key presses, which lose what is not on the keyboard; see paste."""
        assert text.isascii(), text
        wait_for("an active window", self.active)
        run("xdotool", "type", "--clearmodifiers", "--delay", 12, text)
        self.settle()

    @staticmethod
    def clipboard():
        return subprocess.run([*CLIPBOARD, "-o"], text=True, capture_output=True).stdout

    @contextlib.contextmanager
    def on_clipboard(self, text):
        """While this text is on the clipboard, unless something else gets there."""
        with subprocess.Popen([*CLIPBOARD, "-quiet"], stdin=subprocess.PIPE, text=True,
                              stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL) as holder:
            holder.stdin.write(text)
            holder.stdin.close()
            wait_for("the clipboard", lambda: self.clipboard() == text)
            yield
            holder.terminate()

    def paste(self, text):
        with self.on_clipboard(text):
            self.key("ctrl+v")
            self.settle()
            time.sleep(0.2)  # the application fetches what is pasted from the holder

    def menu(self, *path):
        """Chooses an entry of the menu bar, as an assistive technology does."""
        node = self.find("menu bar")
        for name in path:
            entries = next((child for child in children(node)
                            if child.get_role_name() == "popup menu"), node)
            node = next(child for child in children(entries) if child.get_name() == name)
        Atspi.Action.do_action(node, 0)
        self.settle()

    def context_menu(self, node=None, choose=None, keys=None):
        """The names in a context menu, opened by the pointer on a node or by keys.

        Such a menu is not in the tree of objects: it is walked with the Down key, and heard. With
        `choose` that entry is taken, else the menu is left.
        """
        self.listen(0)
        if keys:
            self.key(keys)
        else:
            self.click(node, button=3)
        self.listen(0.3)
        names = []
        for _ in range(20):
            run("xdotool", "key", "Down")
            heard = [name for role, name in self.listen() if role == "menu item"]
            if not heard or heard[-1] in names:
                break
            names.append(heard[-1])
            if names[-1] == choose:
                run("xdotool", "key", "Return")
                self.listen(0.1)
                return names
        run("xdotool", "key", "Escape")
        self.listen(0.1)
        assert choose is None, f"no {choose!r} among {names}"
        return names

    def choose(self, combo, text):
        entries = self.items(next(children(combo)))
        self.click(combo)
        run("xdotool", "key", "Home", *["Down"] * entries.index(text), "Return")
        wait_for(f"the choice {text!r}", lambda: combo.get_name() == text)

    def drag(self, node, target, steps=10, drop=True):
        x, y, width, height = self.box(node)
        to_x, to_y, to_width, to_height = self.box(target)
        x, y = x + width // 2, y + height // 2
        to_x, to_y = to_x + to_width // 2, to_y + to_height // 2
        run("xdotool", "mousemove", x, y, "mousedown", 1)
        for step in range(1, steps + 1):  # of one long move nobody makes a drag
            run("xdotool", "mousemove", x + (to_x - x) * step // steps,
                y + (to_y - y) * step // steps)
            time.sleep(0.03)
        time.sleep(0.1)
        if drop:
            run("xdotool", "mouseup", 1)
            self.settle()

    def panel(self, title):
        panel = self.find("dialog", title)
        wait_for("the panel to be active", lambda: has_state(panel, Atspi.StateType.ACTIVE))
        return panel

    def answer_panel(self, title, path, replace=None):
        """Types a path into the toolkit's own file panel and confirms.

        `replace` answers the question that follows where there is such a file already.
        """
        panel = self.panel(title)
        field = self.find("text", None, under=panel)
        if not self.focused(field):
            self.click(field)
        self.key("ctrl+a")
        if str(path).isascii():
            self.type(str(path))
        else:
            self.paste(str(path))
        wait_for("the path", lambda: self.text(field) == str(path))
        self.key("Return")
        if replace is not None:
            question = self.find("alert")
            self.click(self.find("push button", "Yes" if replace else "No", under=question))
            wait_for("the answer", lambda: not self.has("alert"))
            if not replace:
                self.key("Escape")
        self.gone("dialog", title)

    def picture(self, path):
        """The whole screen, since menus and panels are windows of their own."""
        run("maim", "--hidecursor", path)

    # How it ends.

    def to_front(self):
        window = run("xdotool", "search", "--onlyvisible", "--pid", self.process.pid).split()[-1]
        run("xdotool", "windowactivate", "--sync", window)

    def quit(self, seconds=10):
        """The exit code after Ctrl+Q."""
        self.key("ctrl+q")
        return self.process.wait(seconds)

    def kill(self):
        if self.process.poll() is None:
            self.process.kill()
            self.process.wait(5)
