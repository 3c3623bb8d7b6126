"""The page that an installed orvelin-board serves."""

import json
import re
import subprocess
import unittest
import urllib.parse
import urllib.request

# The machine may be busy with anything.
PATIENCE = 120
# Of the files of the board: how each kind begins, and what the server calls it.
BOARD_KINDS = {
    "": (b"<!DOCTYPE html>", "text/html"),
    "main.mjs": (b"// ", "text/javascript"),
    "board.css": (b"/*", "text/css"),
    "openings.json": (b"{", "application/json"),
    "engine/orvelin.wasm": (b"\0asm", "application/wasm"),
    "orvelin-board-core.wasm": (b"\0asm", "application/wasm"),
    "Orvelin.bin": (b"", "application/octet-stream"),
}


class ServedBoardTest(unittest.TestCase):
    """A test that can ask whether a board is served."""

    def assert_board_is_served_by(self, command, version, book):
        """The installed board has all files of the page, which is of this version and has this book."""
        server = subprocess.Popen((command, "--no-browser"), stdout=subprocess.PIPE, text=True)
        self.addCleanup(server.communicate)
        self.addCleanup(server.kill)
        address = server.stdout.readline().strip()

        def fetch(name):
            with urllib.request.urlopen(urllib.parse.urljoin(address, name), timeout=PATIENCE) as answer:
                return answer.read(), answer.headers.get_content_type()

        for name, (begin, kind) in BOARD_KINDS.items():
            body, told = fetch(name)
            self.assertEqual((body[: len(begin)], told), (begin, kind), name)
        # Offline the page has what this list tells.
        worker = fetch("service_worker.js")[0].decode()
        kept = json.loads(re.search(r"^const FILES = (\[.+\]);$", worker, re.MULTILINE)[1])
        self.assertGreater(len(kept), 30)
        for name in kept:
            self.assertTrue(fetch(name)[0], name)
        told = re.search(rb'data-version="([\d.]+)"', fetch("")[0])[1].decode()
        self.assertEqual(told, version)
        with open(book, "rb") as file:
            self.assertEqual(fetch("Orvelin.bin")[0], file.read())
