"""The application as the flows find it: what stands in its window, by the names that are spoken."""

import contextlib

from desktop import App, children, wait_for

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

    def recover(self):
        """From a flow that has failed, wherever it was."""
        self.app.kill()
        print(self.app.output(), flush=True)
        self.start()

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
