"""The opening book that is made of the lines: whole, and read alike by another program."""

import collections
import re
import unittest

from built_book import BOOK_TOOL, NAME, BuiltBookTest
from opening_lines import read_lines
from orvelin_lib.process import program

POLYGLOT = program("polyglot")


class BookTest(BuiltBookTest):
    def counts(self):
        """The numbers of entries and of positions."""
        text = self.output_of(BOOK_TOOL, "verify", NAME)
        found = re.fullmatch(r"(\d+) entries, (\d+) positions\n", text)
        self.assertIsNotNone(found, text)
        return int(found[1]), int(found[2])

    def test_it_is_whole(self):
        entries, positions = self.counts()
        # As a tree without any transposition the lines have this many moves.
        lines = read_lines()
        most = {line.moves[:ply] for line in lines for ply in range(1, len(line.moves) + 1)}
        self.assertGreater(positions, len(lines))
        self.assertGreater(entries, positions)
        self.assertLessEqual(entries, len(most))

    def test_weights_of_the_first_moves(self):
        games = collections.Counter()
        for line in read_lines():
            games[line.moves[0]] += line.games
        shown = self.output_of(BOOK_TOOL, "look", NAME).splitlines()
        self.assertEqual({words[0]: int(words[1]) for words in map(str.split, shown)}, games)

    def test_best_known_first_moves_are_played_most(self):
        shown = self.output_of(BOOK_TOOL, "look", NAME).splitlines()
        self.assertEqual({line.split()[0] for line in shown[:2]}, {"e2e4", "d2d4"})

    def test_polyglot_finds_every_position(self):
        text = self.output_of(POLYGLOT, "info-book", "-bin", NAME)
        numbers = {
            name.strip(): int(number)
            for name, number in re.findall(r"^(.*\S)\s*:\s*(\d+)$", text, re.MULTILINE)
        }
        self.assertEqual(numbers["Isolated positions"], 0)
        of_both = numbers["Positions on lines for white"] + numbers["Positions on lines for black"]
        self.assertEqual(of_both, self.counts()[1])

    def dump(self, colour):
        """All that polyglot would play with a colour, a line of text each."""
        arguments = ("-bin", NAME, "-color", colour, "-out", "dump.txt")
        self.output_of(POLYGLOT, "dump-book", *arguments)
        with open(f"{self.directory}/dump.txt", encoding="ascii") as file:
            return file.read()

    def test_polyglot_plays_known_openings(self):
        for colour, opening in (
            ("white", r"1\. e4\{\d+%\} e5 2\. Nf3\{\d+%\} Nc6 3\. Bb5\{\d+%\} "),
            ("black", r"1\. e4 e5\{\d+%\} 2\. Nf3 Nc6\{\d+%\} 3\. Bb5 a6\{\d+%\} "),
        ):
            self.assertTrue(re.search(opening, self.dump(colour)), opening)

    def test_no_way_leads_back(self):
        # Two players with this book would make a draw of such a way.
        for colour in ("white", "black"):
            self.assertEqual(re.findall(r".*\{cycle.*", self.dump(colour)), [])


if __name__ == "__main__":
    unittest.main()
