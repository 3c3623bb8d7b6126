"""FEN texts: what is read, and what is refused with which reason."""

import unittest

from orvelin_lib.board import START_FEN, Position
from orvelin_lib.fen import Fen, FenError


class FenTest(unittest.TestCase):
    def test_missing_counters_are_those_of_a_new_game(self):
        kings = "4k3/8/8/8/8/8/8/4K3"
        for text, expected in (
            (START_FEN, START_FEN),
            (f" {kings}  w - - ", f"{kings} w - - 0 1"),
            (f"{kings} b - - 7", f"{kings} b - - 7 1"),
            (f"{kings} b - - 7 30", f"{kings} b - - 7 30"),
        ):
            self.assertEqual(str(Fen.parse(text)), expected)

    def test_the_fields(self):
        fen = Fen.parse("4k3/8/8/8/3pP3/8/8/R3K3 b Q e3 3 20")
        self.assertEqual((fen.board[0], fen.board[27:29], fen.board[60]), ("R", "pP", "k"))
        self.assertEqual((fen.side, fen.rights, fen.en_passant), ("b", "Q", "e3"))
        self.assertEqual((fen.draw_counter, fen.move_number), (3, 20))

    def test_castling_rights_by_side_and_by_file(self):
        for fen, rooks in (
            ("bnrqkrnb/pppppppp/8/8/8/8/PPPPPPPP/BNRQKRNB w CFcf - 0 1", {2, 5, 58, 61}),
            ("4k3/8/8/8/8/8/8/R1R1K1RR w KQ - 0 1", {0, 7}),
            ("4k3/8/8/8/8/8/8/R1R1K1RR w CG - 0 1", {2, 6}),
        ):
            self.assertEqual(Position(fen).rooks, rooks)

    def test_what_is_refused(self):
        kings = "4k3/8/8/8/8/8/8/4K3"
        for text, reason in (
            ("", "four to six fields"),
            ("hello", "four to six fields"),
            (f"{kings} w", "four to six fields"),
            (f"{kings} w - - 0 1 2", "four to six fields"),
            ("4k3/8/8/8/8/8/4K3 w - - 0 1", "7 ranks"),
            ("4k3/8/8/9/8/8/8/4K3 w - - 0 1", "rank 5"),
            ("4k3/8/8/7/8/8/8/4K3 w - - 0 1", "rank 5 has 7 files"),
            ("4k3/8/8/44p/8/8/8/4K3 w - - 0 1", "rank 5 has 9 files"),
            ("4k3/8/8/8/8/8/8/8 w - - 0 1", "White has 0 kings"),
            ("4kk2/8/8/8/8/8/8/4K3 w - - 0 1", "Black has 2 kings"),
            ("4k2P/8/8/8/8/8/8/4K3 w - - 0 1", "first or the last rank"),
            (f"{kings} x - - 0 1", "side to move"),
            (f"{kings} w X - 0 1", "castling: 'X'"),
            (f"{kings} w K - 0 1", "the right K has no rook"),
            (f"{kings} w h - 0 1", "the right h has no rook"),
            ("4k3/8/8/8/8/8/8/R3K3 w K - 0 1", "the right K has no rook"),
            ("4k3/8/8/8/8/8/8/4K2R w Q - 0 1", "the right Q has no rook"),
            ("4k3/8/8/8/8/8/4K3/R7 w Q - 0 1", "the right Q has no rook"),
            ("7r/4k3/8/8/8/8/8/4K3 w k - 0 1", "the right k has no rook"),
            ("4k3/8/8/8/8/8/4K2R/8 w H - 0 1", "the right H has no rook"),
            ("4k3/8/8/8/8/8/8/4K2R w HK - 0 1", "a right stands twice"),
            ("4k3/8/8/8/8/8/8/4K2R w KK - 0 1", "a right stands twice"),
            (f"{kings} w - e5 0 1", "en passant square: 'e5'"),
            (f"{kings} w - e6 0 1", "no pawn has just come over e6"),
            ("4k3/8/8/4p3/8/8/8/4K3 b - e6 0 1", "no pawn has just come over e6"),
            ("4k3/8/8/8/4P3/8/8/4K3 w - e3 0 1", "no pawn has just come over e3"),
            ("4k3/8/8/8/4P3/4N3/8/4K3 b - e3 0 1", "no pawn has just come over e3"),
            ("4k3/8/8/8/4P3/8/4N3/4K3 b - e3 0 1", "no pawn has just come over e3"),
            (f"{kings} w - - x 1", "half-move counter"),
            (f"{kings} w - - 0 -1", "move number"),
            (f"{kings} w - - \u0663 1", "half-move counter"),
            ("4k3/8/8/8/8/8/4R3/4K3 w - - 0 1", "is in check"),
        ):
            with self.assertRaises(FenError, msg=text) as refusal:
                Position(text)
            self.assertIn(reason, str(refusal.exception))


if __name__ == "__main__":
    unittest.main()
