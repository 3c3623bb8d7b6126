"""Values of options: what is taken, and what is refused in which words."""

import argparse
import os
import unittest

from orvelin_lib.arguments import (
    Parser,
    command,
    decimal,
    file_name,
    number,
    numbers,
    positive,
    seconds,
)
from orvelin_lib.tool_main import UsageError
from scratch import ScratchTest


class NumberTest(unittest.TestCase):
    def refused(self, read, *texts):
        for text in texts:
            with self.assertRaises(argparse.ArgumentTypeError, msg=text):
                read(text)

    def test_whole_numbers(self):
        self.assertEqual(positive("7"), 7)
        self.assertEqual(numbers("1,20,3"), [1, 20, 3])
        self.assertEqual(number(0, 5)("5"), 5)
        self.refused(positive, "0", "-1", "1.5", "", "x", "1_0", " 1", "\u0663", "9" * 5000)
        self.refused(positive, str(1 << 63))
        self.refused(number(0, 5), "6")
        self.refused(numbers, "1,,2", "")

    def test_other_numbers(self):
        self.assertEqual(decimal(0, 1)("0.25"), 0.25)
        self.refused(decimal(0, 1), "-0.1", "1.1", "nan", "inf", "x", "")
        self.assertEqual(seconds("1.5"), 1.5)
        self.refused(seconds, "0", "-1", "nan", "inf", "1e300")


class ParserTest(unittest.TestCase):
    def test_one_line_for_whatever_is_wrong(self):
        parser = Parser(prog="tool")
        parser.add_argument("--file", type=file_name)
        for words, reason in (
            (["--nothing"], "unrecognized arguments: --nothing; see --help"),
            (["--file"], "argument --file: expected one argument; see --help"),
            (["--file", ""], "argument --file: no name of a file; see --help"),
        ):
            with self.assertRaises(UsageError) as refusal:
                parser.parse_args(words)
            self.assertEqual(str(refusal.exception), reason)


class CommandTest(ScratchTest):
    def test_words(self):
        self.assertEqual(command("engine --uci 'a b'"), ("engine", "--uci", "a b"))
        self.assertEqual(command("./engine x"), (os.path.abspath("engine"), "x"))

    def test_a_file_with_spaces_in_its_name(self):
        name = self.file("my engine", "")
        self.assertEqual(command(name), (name,))
        self.assertEqual(command(name + " 2"), (name.split()[0], "engine", "2"))

    def test_what_is_no_command(self):
        for text in ("", "  ", "'open"):
            with self.assertRaises(argparse.ArgumentTypeError, msg=text):
                command(text)


if __name__ == "__main__":
    unittest.main()
