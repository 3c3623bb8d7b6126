"""The manual pages: the commands in them exist, and they describe all options and no others."""

import tempfile
import unittest

from commands import CommandChecker
from manuals import read_manuals, told_options
from project import ENGINE, PLAY, PROGRAMS, ROOT
from sessions import Replay

MANUALS = read_manuals(ROOT)


class ManualsTest(unittest.TestCase):
    maxDiff = None

    def test_examples_are_commands_that_exist(self):
        checker = CommandChecker(ROOT, PROGRAMS)
        with tempfile.TemporaryDirectory() as directory:
            exact, play = Replay(ENGINE, directory), Replay(PLAY, directory)
            for name, page in MANUALS.items():
                self.assertNotEqual(page.blocks, [], name)
                for block in page.blocks:
                    # What has no prompt is for the engine.
                    replay = play if name == "orvelin-play" else exact
                    judge = checker if block.startswith("$ ") else replay
                    with self.subTest(manual=name, block=block):
                        self.assertEqual(list(judge.faults(block.rstrip("\n"))), [])

    def test_all_options_are_described_and_no_others(self):
        checker = CommandChecker(ROOT, PROGRAMS)
        # The engine takes no arguments.
        tools = {name: page for name, page in MANUALS.items() if name != "orvelin"}
        self.assertGreater(len(tools), 4)
        for name, page in tools.items():
            with self.subTest(manual=name):
                self.assertEqual(page.listed, told_options(checker.own_program(name)))


if __name__ == "__main__":
    unittest.main()
