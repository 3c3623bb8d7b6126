"""The book as orvelin-book makes it of the lines, and the programs that read it."""

import os
import subprocess
import tempfile
import unittest

from opening_lines import read_text

BOOK_TOOL = os.environ["OPENINGS_BOOK_TOOL"]
# The name under which the engine looks for its book.
NAME = "Orvelin.bin"


class BuiltBookTest(unittest.TestCase):
    """Tests on one book, which lies in a folder with nothing else in it."""

    @classmethod
    def setUpClass(cls):
        directory = tempfile.TemporaryDirectory()
        cls.addClassCleanup(directory.cleanup)
        cls.directory = directory.name
        made = run([BOOK_TOOL, "make", "-", "-o", NAME], cls.directory, read_text())
        if made.returncode != 0:
            raise AssertionError(made.stderr)

    def output_of(self, *command):
        """What a program prints that has to succeed."""
        done = run(command, self.directory)
        self.assertEqual(done.returncode, 0, done.stdout + done.stderr)
        return done.stdout


def run(command, directory, text=""):
    return subprocess.run(
        command,
        cwd=directory,
        input=text,
        capture_output=True,
        text=True,
        timeout=60,
        check=False,
    )
