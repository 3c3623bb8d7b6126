"""Openings of all kinds of files, and those made at random."""

import random
import unittest

from match_lib.openings import Opening, OpeningFile, RandomOpenings, chess960_array
from orvelin_lib.board import START_FEN
from orvelin_lib.rules import Referee
from orvelin_lib.tool_main import ToolError
from scratch import ScratchTest

ENDING = "4k3/8/8/8/8/8/4P3/R3K3 w Q - 0 1"
PGN = f"""[Event "a"]

1. e4 {{good}} e5 2. Nf3 (2. f4 exf4) Nc6 1-0

[Event "b"]
[SetUp "1"]
[FEN "{ENDING}"]

1. O-O-O+ *
"""


class OpeningsTest(ScratchTest):
    def openings(self, text, chess960=False, plies=None):
        return OpeningFile(self.file("openings", text), chess960, plies)

    def test_lines_of_moves(self):
        openings = self.openings("# open\n\n8: e2e4 e7e5 e1e2\n1: e4 c5\nd2d4\n")
        self.assertEqual(len(openings), 3)
        self.assertEqual(openings[0], Opening(START_FEN, ("e2e4", "e7e5", "e1e2")))
        self.assertEqual(openings[1].moves, ("e2e4", "c7c5"))
        self.assertEqual(openings[2].moves, ("d2d4",))

    def test_pgn(self):
        openings = self.openings(PGN)
        self.assertEqual(openings[0].moves, ("e2e4", "e7e5", "g1f3", "b8c6"))
        self.assertEqual(openings[1], Opening(ENDING, ("e1c1",)))
        self.assertEqual(self.openings(PGN, plies=1)[0].moves, ("e2e4",))
        self.assertEqual(self.openings(PGN, chess960=True)[1].moves, ("e1a1",))

    def test_epd_and_fen(self):
        openings = self.openings(f"{ENDING}\n# remark\n4k3/8/8/8/8/8/4P3/4K3 b - - bm Kd7; id 1;\n")
        self.assertEqual(openings[0], Opening(ENDING))
        self.assertEqual(openings[1].fen, "4k3/8/8/8/8/8/4P3/4K3 b - - 0 1")

    def test_a_folder(self):
        self.file("b.txt", "d2d4\n")
        self.file("a.txt", "e2e4\n")
        openings = OpeningFile(self.directory, False)
        self.assertEqual([openings[0].moves, openings[1].moves], [("e2e4",), ("d2d4",)])

    def test_what_is_refused_is_named(self):
        for text, words in (
            ("", "openings: no openings"),
            ("e2e4 e7e5\ne2e4 e2e4\n", "openings, line 2: not a legal move: 'e2e4'"),
            ("4k3/8/8/8/8/8/8/4K3 w - - 0 1", "line 1: the game is over: insufficient material"),
            ("f2f3 e7e5 g2g4 d8h4", "line 1: the game is over: checkmate"),
            ("4k3/8/8/8/8/8/4P3/4K3 w Q - 0 1", "line 1: castling: the right Q has no rook"),
            ("4k3/8/8/8/8/8/4P3/1R2K3 w B - 0 1", "line 1: castling as in Chess960"),
            ('[FEN "x"]\n\n1. e4 *\n', "game 1: a FEN has four to six fields"),
        ):
            with self.assertRaisesRegex(ToolError, words):
                openings = self.openings(text)
                _ = [openings[index] for index in range(len(openings))]

    def test_the_digest_is_that_of_the_openings(self):
        one = self.openings("e2e4\nd2d4\n").digest()
        self.assertEqual(self.openings("# other words\n3: e2e4\nd2d4\n").digest(), one)
        self.assertNotEqual(self.openings("d2d4\ne2e4\n").digest(), one)
        self.assertNotEqual(self.openings("e2e4\nd2d4\n", plies=1).digest(), one)


class RandomTest(unittest.TestCase):
    def test_seed_and_number_fix_an_opening(self):
        for chess960 in (False, True):
            first, second = ([RandomOpenings(chess960, 6, s)[n] for n in range(20)] for s in (1, 2))
            self.assertEqual(first, [RandomOpenings(chess960, 6, 1)[n] for n in range(20)])
            self.assertNotEqual(first, second)
            self.assertGreater(len(set(first)), 18)
            for opening in first:
                referee = Referee(opening.fen, chess960)
                self.assertEqual(len(opening.moves), 6)
                self.assertTrue(all(referee.play(text) for text in opening.moves))
                self.assertIsNone(referee.verdict())

    def test_arrays(self):
        chance = random.Random(1)
        arrays = {chess960_array(chance).split()[0].split("/")[-1] for _ in range(300)}
        self.assertGreater(len(arrays), 200)
        for pieces in arrays:
            self.assertEqual(sorted(pieces), sorted("RNBQKBNR"))
            self.assertTrue(pieces.index("R") < pieces.index("K") < pieces.rindex("R"))
            self.assertEqual((pieces.index("B") + pieces.rindex("B")) % 2, 1)


if __name__ == "__main__":
    unittest.main()
