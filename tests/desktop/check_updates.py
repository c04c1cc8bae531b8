#!/usr/bin/python3
"""Drives the check for updates of the built application against a feed on this computer.

usage: with-desktop.sh /usr/bin/python3 check_updates.py [--pictures FOLDER]
           PROGRAM PROGRAM_WITH_FEED FEED_ADDRESS VERSION [FLOW...]

PROGRAM was built without a feed, the other with http://FEED_ADDRESS/feed.xml. Each flow begins with
an empty home. Ends with "N passed, N failed".
"""

import argparse
import contextlib
import json
import subprocess
import sys
import threading
import time
from pathlib import Path

from desktop import App, wait_for
from flows import Flows
from world import World

HERE = Path(__file__).parent
SERVER = HERE.parent / "feed" / "feed_server.py"
FLOWS = Flows()
UNREACHABLE = ("Couldn’t check for updates",
               "Check your internet connection and try again. Quillmark also checks on its own "
               "about once a day.")
# By behaviour of the server; the list that it has holds a newer version.
FAILURES = ["nowhere", "304", "401", "500", "503", "loop", "insecure", "reset", "garbage", "close",
            "405", "501", "cut"]
OFFERS = ["200", "redirect", "headless-405", "headless-501"]
NOTHING_NEW = ["404", "410", "gone-on-get"]

LIST = """<?xml version="1.0" encoding="utf-8"?>
<rss version="2.0" xmlns:sparkle="http://www.andymatuschak.org/xml-namespaces/sparkle"><channel>
<item><sparkle:version>{version}</sparkle:version><link>http://{address}/page</link>
<description><![CDATA[<ul><li>Reads fonts faster</li></ul>]]></description>{more}</item>
</channel></rss>
"""


class Server:
    def __init__(self, address, text, folder):
        file = folder / "feed.xml"
        file.write_text(text)
        self.process = subprocess.Popen(
            [sys.executable, "-B", SERVER, "--listen", address, "--list", file],
            stdin=subprocess.PIPE, stdout=subprocess.PIPE, text=True)
        self.lines = []
        self.is_ready = threading.Event()
        assert self.process.stdout.readline() == f"http://{address}/feed.xml\n"
        self.reader = threading.Thread(target=self._read)
        self.reader.start()

    def _read(self):
        for line in self.process.stdout:
            if line == "ready\n":
                self.is_ready.set()
            else:
                self.lines.append(json.loads(line))

    def behave(self, behaviour):
        self.is_ready.clear()
        self.process.stdin.write(behaviour + "\n")
        self.process.stdin.flush()
        assert self.is_ready.wait(20)
        self.lines.clear()

    def methods(self):
        return [line[0] for line in self.lines]

    def stop(self):
        self.process.stdin.close()
        self.process.wait(20)
        self.reader.join()


class Check:
    def __init__(self, arguments):
        self.world = World(arguments.program_with_feed)
        self.without_feed = arguments.program
        self.address = arguments.address
        self.version = arguments.version
        self.up_to_date = ("You’re up to date",
                           f"Quillmark {self.version} is the newest version. Quillmark checks for "
                           "updates on its own and will let you know when there’s a new one.")
        self.app = None

    def begin(self):
        if self.app:
            self.app.kill()
        self.world.forget()

    def recover(self):
        """From a flow that has failed: nothing, for each begins with a start of its own."""

    def start(self):
        self.app = self.world.start()
        return self.app

    @contextlib.contextmanager
    def server(self, version="99", more=""):
        server = Server(self.address, LIST.format(version=version, address=self.address, more=more),
                        self.world.runtime)
        try:
            yield server
        finally:
            server.stop()

    def ask(self):
        self.app.menu("Help", "Check for Updates…")

    def expect_alert(self, texts, what, seconds=None):
        box = self.app.active_window("alert", "Quillmark", seconds)
        shown = [self.app.text(label) for label in self.app.all("label", under=box)]
        for text in texts:
            assert text in shown, (what, text, shown)
        buttons = [node.get_name() for node in self.app.all("push button", under=box)]
        assert buttons == ["OK"], (what, buttons)
        self.app.key("Return")
        self.app.window_gone("alert")

    def dialog(self):
        """The one that the user has asked for, which takes the keyboard."""
        return self.app.active_window("dialog", "New Version")

    def settings(self):
        return self.world.settings.read_text() if self.world.settings.exists() else ""


@FLOWS.add
def without_a_feed_updates_come_with_the_system(check):
    check.app = App(check.without_feed)
    check.ask()
    check.expect_alert(("Updates come with your system",
                        "Quillmark is kept up to date together with your system’s other packages. "
                        "It never looks for updates itself."), "no feed")
    assert check.app.quit() == 0
    assert "[updates]" not in check.settings()


@FLOWS.add
def nobody_listening_is_a_failure(check):
    check.start()
    check.ask()
    check.expect_alert(UNREACHABLE, "refused")
    assert check.app.quit() == 0


@FLOWS.add
def every_answer_has_its_outcome(check):
    check.start()
    with check.server() as server:
        for behaviour in FAILURES:
            server.behave(behaviour)
            check.ask()
            check.expect_alert(UNREACHABLE, behaviour)
        for behaviour in NOTHING_NEW:
            server.behave(behaviour)
            check.ask()
            check.expect_alert(check.up_to_date, behaviour)
        for behaviour in OFFERS:
            server.behave(behaviour)
            check.ask()
            check.dialog()
            check.app.key("Escape")
            check.app.window_gone("dialog")
        server.behave("204")
        check.ask()
        check.expect_alert(UNREACHABLE, "204 to GET")
    assert check.app.quit() == 0


@FLOWS.add
def asking_again_meanwhile_probes_once_and_for_fifteen_seconds(check):
    check.start()
    with check.server() as server:
        server.behave("hang")
        begun = time.monotonic()
        check.ask()
        wait_for("the probe", server.methods)
        check.ask()
        check.ask()
        check.expect_alert(UNREACHABLE, "hang", seconds=60)
        assert 15 <= time.monotonic() - begun < 40
        # Nor has the first start asked anything by itself, for which it had time by now.
        assert server.methods() == ["HEAD"], server.methods()
        assert server.lines[0][2]["User-Agent"] == f"Quillmark/{check.version}"
    assert check.app.quit() == 0


@FLOWS.add
def ending_during_a_probe_is_clean(check):
    check.start()
    with check.server() as server:
        server.behave("hang")
        check.ask()
        wait_for("the probe", server.methods)
        assert check.app.quit(seconds=10) == 0


@FLOWS.add
def an_older_version_is_no_news(check):
    check.start()
    with check.server(version="0.0.1"):
        check.ask()
        check.expect_alert(check.up_to_date, "older")
    assert check.app.quit() == 0


@FLOWS.add
def a_new_version_is_told_and_its_page_opened(check):
    app = check.start()
    with check.server():
        check.ask()
        dialog = check.dialog()
        labels = [app.text(label) for label in app.all("label", under=dialog)]
        assert "A new version of Quillmark is available!" in labels, labels
        assert f"Quillmark 99 is available; you have {check.version}." in labels, labels
        notes = app.find(None, "Release notes", under=dialog)
        assert "Reads fonts faster" in app.text(notes), app.text(notes)
        buttons = [node.get_name() for node in app.all("push button", under=dialog)]
        assert buttons == ["Skip This Version", "Remind Me Later", "Download…"], buttons
        wait_for("the focus", lambda: app.focus() == ("push button", "Download…"))
        app.key("Tab")
        wait_for("the notes", lambda: app.focus()[1] == "Release notes")
        app.key("Tab")
        wait_for("the check box",
                 lambda: app.focus() == ("check box", "Check for updates automatically"))
        app.key("Tab")
        app.key("Tab")
        app.key("Tab")
        wait_for("the focus", lambda: app.focus() == ("push button", "Download…"))
        # The window stays usable beside it.
        app.click(app.find("tree", "Sources"))
        app.click(app.find("push button", "Download…", under=dialog))
        app.window_gone("dialog")
        wait_for("the browser", lambda: check.world.opened() == [f"http://{check.address}/page"])
    assert app.quit() == 0


@FLOWS.add
def skipping_is_remembered(check):
    app = check.start()
    with check.server():
        check.ask()
        app.click(app.find("push button", "Skip This Version", under=check.dialog()))
        app.window_gone("dialog")
        assert app.quit() == 0
    assert "skippedVersion=99" in check.settings(), check.settings()


@FLOWS.add
def a_critical_update_cannot_be_skipped(check):
    app = check.start()
    with check.server(more="<sparkle:criticalUpdate/>"):
        check.ask()
        dialog = check.dialog()
        assert not app.has("push button", "Skip This Version", under=dialog)
        app.key("Escape")
        app.window_gone("dialog")
    assert app.quit() == 0


@FLOWS.add
def closing_the_window_takes_the_dialog_along(check):
    app = check.start()
    with check.server():
        check.ask()
        check.dialog()
        app.menu("File", "Quit")
        assert app.process.wait(10) == 0


@FLOWS.add
def the_second_start_asks_for_consent_and_then_checks(check):
    with check.server() as server:
        app = check.start()
        assert not app.windows("alert")
        assert app.quit() == 0
        assert "automaticChecks" not in check.settings()

        app = check.start()
        question = app.find_window("alert", "Quillmark")
        labels = [app.text(label) for label in app.all("label", under=question)]
        assert "Check for updates automatically?" in labels, labels
        # It keeps nobody from working.
        app.click(app.find("tree", "Sources"))
        assert not server.lines
        app.click(app.find("push button", "Check Automatically", under=question))
        app.window_gone("alert")
        # Nobody asked for it, so that it keeps its hands off the keyboard.
        dialog = app.find_window("dialog", "New Version", seconds=60)
        assert server.methods() == ["GET"], server.methods()
        app.click(app.find("push button", "Remind Me Later", under=dialog))
        app.window_gone("dialog")
        assert app.quit() == 0
        assert "automaticChecks=true" in check.settings(), check.settings()
        assert "lastCheck=" in check.settings(), check.settings()

        # Who has answered is not asked again.
        app = check.start()
        assert not app.windows("alert")
        assert app.quit() == 0


def main():
    parser = argparse.ArgumentParser()
    parser.add_argument("--pictures", type=Path)
    parser.add_argument("program")
    parser.add_argument("program_with_feed")
    parser.add_argument("address")
    parser.add_argument("version")
    parser.add_argument("flows", nargs="*")
    arguments = parser.parse_args()
    check = Check(arguments)
    passed, failed = FLOWS.run(check, arguments.flows, arguments.pictures)
    if check.app:
        check.app.kill()
    print(f"{passed} passed, {failed} failed")
    return failed != 0


if __name__ == "__main__":
    sys.exit(main())
