"""The names of openings: every line is one, and what is wrong with a line is told."""

import os
import unittest

from board_lib.opening_names import NamesError, position_key, read_names
from opening_lines import FOLDER, read_lines
from orvelin_lib.board import Position
from orvelin_lib.notation import parse_move

FILE = os.path.join(FOLDER, "names.list")
LONGEST = 60


class NamesTest(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        with open(FILE, encoding="utf-8") as file:
            cls.lines = file.read().splitlines()
        cls.names = read_names(cls.lines)

    def test_there_are_enough(self):
        self.assertGreaterEqual(len(self.names), 300)

    def test_names_fit_on_a_line_of_a_telephone(self):
        for name in self.names.values():
            self.assertLessEqual(len(name), LONGEST, name)
            self.assertEqual(" ".join(name.split()), name)

    def test_every_line_of_the_book_has_a_name(self):
        for line in read_lines():
            position, found = Position(), False
            for text in line.moves[:3]:
                position = position.after(parse_move(text, position))
                found = found or position_key(position) in self.names
            self.assertTrue(found, line.place)

    def test_a_position_is_known_by_what_can_still_be_done(self):
        key = position_key(Position("r3k2r/8/8/8/4P3/8/8/R3K2R b KQk e3 4 9"))
        self.assertEqual(key, "r3k2r/8/8/8/4P3/8/8/R3K2R b KQk")
        self.assertEqual(position_key(Position("4k3/8/8/8/8/8/8/4K3 w - - 0 1")), "4k3/8/8/8/8/8/8/4K3 w -")

    def test_wrong_lines_are_told(self):
        for lines, told in (
            (["e4 = One", "", "e5 = Two"], "line 3: not a legal move: 'e5'"),
            (["e4", "One"], "line 1: moves, ' = ' and a name are expected"),
            (["e4 = "], "line 1: moves, ' = ' and a name are expected"),
            (["# Names", "d4 d5 c4 = One", "c4 d5 d4 = Two"], "line 3: the position is One already"),
            (["Nf3 = One", "N2 = Two"], "line 2: not a move: 'N2'"),
        ):
            with self.assertRaises(NamesError) as caught:
                read_names(lines)
            self.assertEqual(str(caught.exception), told)


if __name__ == "__main__":
    unittest.main()
