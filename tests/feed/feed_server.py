#!/usr/bin/env python3
"""A place for lists of updates on this computer, for tests of the check for updates.

usage: feed_server.py [--listen ADDRESS:PORT] [--list FILE] [BEHAVIOUR]

Prints its URL on the first line, then one line of JSON for each request: method, path, headers.
A request for /BEHAVIOUR/... is answered in that manner, any other in the manner named on the last
line of standard input, at first in that of the command line (200 unless said otherwise). After each
line of standard input it prints "ready". Ends when standard input does.

  NUMBER         that status; 200 has the list as its body
  headless-405, headless-501
                 that status to HEAD, the list to GET
  cookie         200, and sets a cookie
  redirect       302 to a place that answers with the list
  insecure       302 to ftp:
  nowhere        301 without a target
  loop           302 to itself for ever
  hang           takes the request and never answers
  slow-body      the head of an answer, and one byte of its body a second
  drip           one byte of an answer's head a second
  cut            half of the list, then the end of the connection
  endless        a list that never ends
  reset          resets the connection
  garbage        answers with bytes that are not HTTP
  close          closes the connection without an answer
  gone-on-get    200 to HEAD, 404 to GET
"""

import argparse
import json
import socket
import struct
import sys
import threading
from http.server import BaseHTTPRequestHandler, ThreadingHTTPServer
from pathlib import Path

over = threading.Event()  # set at the end of standard input
printing = threading.Lock()


def say(line):
    with printing:
        print(line, flush=True)


class Feed(BaseHTTPRequestHandler):
    protocol_version = "HTTP/1.1"
    list = b"<rss version='2.0'><channel/></rss>"
    behaviour = "200"

    def log_message(self, *_):
        pass

    def answer(self, status, content=b"", **headers):
        self.send_response(status)
        for name, value in headers.items():
            self.send_header(name.replace("_", "-"), value)
        self.send_header("Content-Type", "application/rss+xml")
        if status not in (204, 304):
            self.send_header("Content-Length", str(len(content)))
        self.end_headers()
        if self.command != "HEAD":
            self.wfile.write(content)

    def drip(self, content):
        for byte in content:
            self.wfile.write(bytes([byte]))
            if over.wait(1):
                return

    def do_GET(self):
        say(json.dumps([self.command, self.path, dict(self.headers.items())]))
        first = self.path.split("/")[1]
        behaviour = first if "/" in self.path[1:] else self.behaviour
        try:
            self.behave(behaviour)
        except OSError:  # the other side has gone
            self.close_connection = True

    do_HEAD = do_GET

    def behave(self, behaviour):
        head = self.command == "HEAD"
        self.close_connection = True
        if behaviour.isdigit():
            self.close_connection = False
            self.answer(int(behaviour), self.list if behaviour == "200" else b"")
        elif behaviour.startswith("headless-"):
            self.answer(int(behaviour[9:]) if head else 200, b"" if head else self.list)
        elif behaviour == "cookie":
            self.answer(200, self.list, Set_Cookie="who=you; Path=/")
        elif behaviour == "redirect":
            self.answer(302, Location="/200/moved.xml")
        elif behaviour == "insecure":
            self.answer(302, Location="ftp://127.0.0.1/feed.xml")
        elif behaviour == "nowhere":
            self.answer(301)
        elif behaviour == "loop":
            self.answer(302, Location=self.path)
        elif behaviour == "hang":
            over.wait()
        elif behaviour == "slow-body":
            self.wfile.write(b"HTTP/1.1 200 OK\r\nContent-Length: 1000\r\n\r\n")
            self.drip(b"<" * 1000)
        elif behaviour == "drip":
            self.drip(b"HTTP/1.1 200 OK\r\nX: " + b"x" * 1000)
        elif behaviour == "cut":
            self.wfile.write(b"HTTP/1.1 200 OK\r\nContent-Length: %d\r\n\r\n" % len(self.list))
            self.wfile.write(self.list[:len(self.list) // 2])
        elif behaviour == "endless":
            self.wfile.write(b"HTTP/1.1 200 OK\r\n\r\n")
            while not over.is_set():
                self.wfile.write(b" " * 65536)
        elif behaviour == "reset":
            # Lingering for no time sends a reset instead of an orderly end.
            self.connection.setsockopt(socket.SOL_SOCKET, socket.SO_LINGER, struct.pack("ii", 1, 0))
            self.connection.close()
        elif behaviour == "garbage":
            self.wfile.write(b"220 not the web\r\n\r\n")
        elif behaviour == "close":
            pass
        elif behaviour == "gone-on-get":
            self.answer(200 if head else 404, self.list if head else b"")
        else:
            sys.exit(f"unknown behaviour {behaviour}")


def main():
    parser = argparse.ArgumentParser()
    parser.add_argument("--listen", default="127.0.0.1:0")
    parser.add_argument("--list", type=Path)
    parser.add_argument("behaviour", nargs="?", default="200")
    options = parser.parse_args()
    if options.list:
        Feed.list = options.list.read_bytes()
    Feed.behaviour = options.behaviour

    address, port = options.listen.split(":")
    server = ThreadingHTTPServer((address, int(port)), Feed)
    server.daemon_threads = True
    server.handle_error = lambda *_: None
    threading.Thread(target=server.serve_forever, daemon=True).start()
    say(f"http://{address}:{server.server_address[1]}/feed.xml")
    for line in sys.stdin:
        Feed.behaviour = line.strip()
        say("ready")
    over.set()


if __name__ == "__main__":
    main()
