"""Moves as people write them: what is written is read as the same move."""

import random
import unittest

from orvelin_lib.board import Position
from orvelin_lib.notation import moves_by_text, parse_move, san
from orvelin_lib.rules import legal_moves

CROWDED = "r3k2r/p1ppqpb1/bn2pnp1/3PN3/1p2P3/2N2Q1p/PPPBBPPP/R3K2R w KQkq - 0 1"


class SanTest(unittest.TestCase):
    def san(self, fen, text, chess960=False):
        position = Position(fen)
        return san(position, moves_by_text(position, chess960)[text])

    def test_words(self):
        for fen, text, expected in (
            (CROWDED, "e1g1", "O-O"),
            (CROWDED, "e1c1", "O-O-O"),
            (CROWDED, "d5e6", "dxe6"),
            (CROWDED, "f3f6", "Qxf6"),
            (CROWDED, "a2a4", "a4"),
            (CROWDED, "c3b1", "Nb1"),
            ("7k/P7/8/8/8/8/8/K7 w - - 0 1", "a7a8n", "a8=N"),
            ("1r5k/P7/8/8/8/8/8/K7 w - - 0 1", "a7b8q", "axb8=Q+"),
            ("4k3/8/8/3pP3/8/8/8/4K3 w - d6 0 1", "e5d6", "exd6"),
            ("6k1/5ppp/8/8/8/8/8/R5K1 w - - 0 1", "a1a8", "Ra8#"),
        ):
            self.assertEqual(self.san(fen, text), expected)

    def test_which_of_several_pieces(self):
        knights = "4k3/8/8/8/8/1N3N2/8/1N2K3 w - - 0 1"
        queens = "6k1/8/8/Q6Q/8/8/8/Q3K3 w - - 0 1"
        pinned = "4r2k/8/8/8/8/4N3/8/1N2K3 w - - 0 1"
        for fen, text, expected in (
            (knights, "f3d2", "Nfd2"),
            (knights, "b3d2", "Nb3d2"),
            (knights, "b1d2", "N1d2"),
            (knights, "f3g5", "Ng5"),
            (queens, "a5d5", "Qad5+"),
            (queens, "a5e5", "Qa5e5"),
            ("8/7k/8/Q3Q3/8/8/8/Q3K3 w - - 0 1", "a5c3", "Qa5c3"),
            ("4k3/8/8/8/8/8/8/R3K2R w KQ - 0 1", "a1d1", "Rd1"),
        ):
            self.assertEqual(self.san(fen, text), expected, text)
        # A pinned piece is no rival.
        self.assertEqual(self.san(pinned, "b1c3"), "Nc3")

    def test_chess960_castling(self):
        fen = "4k3/8/8/8/8/8/8/5KR1 w G - 0 1"
        self.assertEqual(self.san(fen, "f1g1", True), "O-O")

    def test_every_move_of_random_games_is_read_again(self):
        chance = random.Random(5)
        marks = set()
        for fen in (CROWDED, "n1n5/PPPk4/8/8/8/8/4Kppp/5N1N b - - 0 1"):
            position = Position(fen)
            for _ in range(25):
                moves = legal_moves(position)
                if not moves:
                    break
                texts = [san(position, move) for move in moves]
                self.assertEqual(len(set(texts)), len(moves))
                for text, move in zip(texts, moves):
                    self.assertEqual(parse_move(text, position), move, text)
                    marks.add(text[-1])
                position = position.after(chance.choice(moves))
        self.assertIn("+", marks)


if __name__ == "__main__":
    unittest.main()
