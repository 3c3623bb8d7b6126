"""Every code block is classified, and every command in it exists or runs."""

import os
import re
import tempfile
import unittest

from blocks import Classification, of_kind
from commands import CommandChecker
from project import DOCUMENTS, ENGINE, HERE, PLAY, PROGRAMS, ROOT
from sandbox import Sandbox
from sessions import Replay

# Code in running text that is a command of ours, and not the name of a file or folder.
COMMAND_SPAN = re.compile(r"^(\./(run|check)|tools/[\w-]+|orvelin-[\w-]+|cmake|ctest)( |$)")
PLACEHOLDER = re.compile(r"\[[A-Z].*?\]|\.\.\.")


def classification():
    """The table, read anew: each test asks for its own rows."""
    with open(os.path.join(HERE, "blocks.txt"), encoding="utf-8") as file:
        return Classification(file.read())


class ClassificationTest(unittest.TestCase):
    maxDiff = None

    def test_every_block_is_classified(self):
        table = classification()
        new = [
            f"[{name}] line {block.line}: {block.first_line}"
            for name, document in DOCUMENTS.items()
            for block in document.blocks
            if table.kind(name, block) is None
        ]
        self.assertEqual(new, [], "add them to tests/documents/blocks.txt")

    def test_every_row_has_its_block(self):
        table = classification()
        for name, document in DOCUMENTS.items():
            for block in document.blocks:
                table.kind(name, block)
        self.assertEqual(table.unused(), [], "take them out of tests/documents/blocks.txt")


class BlockTest(unittest.TestCase):
    def hold(self, kind, faults_of, least):
        """No block of the kind has a fault, and there are so many blocks at least."""
        blocks = of_kind(classification(), DOCUMENTS, kind)
        self.assertGreaterEqual(len(blocks), least)
        for name, block in blocks:
            with self.subTest(document=name, line=block.line, text=block.first_line):
                self.assertEqual(list(faults_of(block.text)), [])

    def test_commands_that_are_not_run_exist(self):
        self.hold("check", CommandChecker(ROOT, PROGRAMS).faults, 5)

    def test_commands_in_running_text_exist(self):
        checker = CommandChecker(ROOT, PROGRAMS)
        spans = [
            (name, span)
            for name, document in DOCUMENTS.items()
            for span in document.spans
            if COMMAND_SPAN.match(span) and not os.path.isdir(os.path.join(ROOT, span))
        ]
        self.assertGreater(len(spans), 20)
        for name, span in spans:
            with self.subTest(document=name, span=span):
                self.assertEqual(list(checker.faults(PLACEHOLDER.sub("", span))), [])

    def test_commands_run(self):
        with tempfile.TemporaryDirectory() as directory:
            self.hold("run", Sandbox(ROOT, PROGRAMS, directory).faults, 1)

    def test_sessions_are_answered_as_written(self):
        with tempfile.TemporaryDirectory() as directory:
            self.hold("session", Replay(ENGINE, directory).faults, 5)
            self.hold("play", Replay(PLAY, directory).faults, 5)


if __name__ == "__main__":
    unittest.main()
