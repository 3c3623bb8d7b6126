"""The lines of the opening book as texts: enough of them, of the right length, none twice."""

import re
import unittest

from opening_lines import file_names, read_lines

MOVE = re.compile(r"^([a-h][1-8]){2}[nbrq]?$")
MOST_GAMES = 8
WIDTH = 100


class LinesTest(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        cls.lines = read_lines()

    def test_there_are_enough(self):
        self.assertGreaterEqual(len(self.lines), 400)

    def test_lengths(self):
        for line in self.lines:
            self.assertTrue(8 <= len(line.moves) <= 16, f"{line.place}: {len(line.moves)} plies")

    def test_moves_are_moves(self):
        for line in self.lines:
            for move in line.moves:
                self.assertRegex(move, MOVE, line.place)

    def test_no_line_begins_another(self):
        # Sorted, a line stands right in front of those that it begins.
        ordered = sorted(self.lines, key=lambda line: line.moves)
        for line, following in zip(ordered, ordered[1:]):
            beginning = following.moves[: len(line.moves)]
            self.assertNotEqual(line.moves, beginning, f"{line.place} begins {following.place}")

    def test_weights(self):
        for line in self.lines:
            self.assertTrue(1 <= line.games <= MOST_GAMES, f"{line.place}: {line.games}")

    def test_groups_are_named(self):
        for line in self.lines:
            self.assertNotEqual(line.group, "", line.place)

    def test_width(self):
        for name in file_names():
            with open(name, encoding="ascii") as file:
                for number, text in enumerate(file, 1):
                    self.assertLessEqual(len(text.rstrip("\n")), WIDTH, f"{name}:{number}")


if __name__ == "__main__":
    unittest.main()
