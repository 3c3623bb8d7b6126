"""A folder of its own for each test."""

import os
import tempfile
import unittest


class ScratchTest(unittest.TestCase):
    def setUp(self):
        directory = tempfile.TemporaryDirectory()
        self.addCleanup(directory.cleanup)
        self.directory = directory.name

    def file(self, name, text=None):
        """The path of a file of the folder, which is written when there is a text for it."""
        path = os.path.join(self.directory, name)
        if text is not None:
            with open(path, "w", encoding="utf-8") as file:
                file.write(text)
        return path
