"""Moves in SAN and UCI notation, of all kinds."""

import unittest

from orvelin_lib.board import Position
from orvelin_lib.notation import moves_by_text, parse_move


class NotationTest(unittest.TestCase):
    def check(self, fen, **expected):
        for text, move in expected.items():
            self.assert_is(fen, text, move)

    def assert_is(self, fen, text, move, chess960=False):
        self.assertEqual(parse_move(text, Position(fen)).text(chess960), move, text)

    def assert_refused(self, fen, *texts):
        for text in texts:
            with self.assertRaises(ValueError, msg=text):
                parse_move(text, Position(fen))

    def test_plain_moves(self):
        fen = "rnbqkbnr/pppppppp/8/8/8/8/PPPPPPPP/RNBQKBNR w KQkq - 0 1"
        self.check(fen, e4="e2e4", e3="e2e3", Nf3="g1f3", e2e4="e2e4", Ng1f3="g1f3")
        self.assert_is(fen, "Ng1-f3", "g1f3")
        self.assert_is(fen, "e2-e4", "e2e4")
        self.assert_refused(fen, "e5", "Nd2", "O-O", "Ke2", "e1g1", "", "x", "Pe4 e5", "N", "e9")

    def test_marks_say_nothing(self):
        fen = "6k1/5ppp/8/8/8/8/8/R5K1 w - - 0 1"
        for text in ("Ra8", "Ra8+", "Ra8#", "Ra8#!!", "Ra8!?", "a1a8#"):
            self.assert_is(fen, text, "a1a8")

    def test_captures(self):
        fen = "4k3/8/8/3p1p2/4P3/2N5/8/4K3 w - - 0 1"
        self.check(fen, exd5="e4d5", exf5="e4f5", Nxd5="c3d5", Nd5="c3d5", e5="e4e5")
        self.assert_refused(fen, "dxe4", "gxf5", "d5x", "dxd5")

    def test_a_pawn_is_no_bishop(self):
        fen = "4k3/8/8/8/8/2p5/1P1B4/4K3 w - - 0 1"
        self.check(fen, bxc3="b2c3", Bxc3="d2c3")

    def test_disambiguation_by_file_rank_and_both(self):
        fen = "4k3/8/8/8/8/R6R/8/4K3 w - - 0 1"
        self.check(fen, Rad3="a3d3", Rhd3="h3d3", Ra3d3="a3d3")
        self.assert_refused(fen, "Rd3", "Rbd3")
        fen = "R7/8/7k/8/8/8/8/R3K3 w - - 0 1"
        self.check(fen, R8a4="a8a4", R1a4="a1a4")
        self.assert_refused(fen, "Ra4", "Raa4")
        fen = "8/8/k7/8/4Q2Q/8/8/K6Q w - - 0 1"
        self.check(fen, Qh4e1="h4e1", Qee1="e4e1", Q1e1="h1e1")
        self.assert_refused(fen, "Qe1", "Qhe1", "Q4e1")

    def test_a_pinned_piece_needs_no_disambiguation(self):
        fen = "4k3/8/8/8/1b6/2N5/8/4K1N1 w - - 0 1"
        self.assert_is(fen, "Ne2", "g1e2")
        self.assert_refused(fen, "Nce2")

    def test_promotions(self):
        fen = "1r5k/P7/8/8/8/8/8/K7 w - - 0 1"
        for text, move in (
            ("a8=Q", "a7a8q"),
            ("a8N", "a7a8n"),
            ("axb8=R+", "a7b8r"),
            ("a7b8b", "a7b8b"),
            ("a7a8Q", "a7a8q"),
        ):
            self.assert_is(fen, text, move)
        self.assert_refused(fen, "a8", "axb8", "a8=K", "a8=P", "a7a8")

    def test_en_passant(self):
        fen = "4k3/8/8/3pP3/8/8/8/4K3 w - d6 0 1"
        for text in ("exd6", "exd6 e.p.", "exd6e.p.", "e5d6"):
            self.assert_is(fen, text, "e5d6")
        self.assert_refused(fen.replace("d6", "-"), "exd6")

    def test_castling(self):
        fen = "r3k2r/8/8/8/8/8/8/R3K2R w KQkq - 0 1"
        for text in ("O-O", "0-0", "O-O+", "e1g1", "e1h1"):
            self.assert_is(fen, text, "e1g1")
        for text in ("O-O-O", "0-0-0!", "e1c1", "e1a1"):
            self.assert_is(fen, text, "e1c1")
        self.assert_refused(fen, "O-0", "O-O-0", "O-O-O-O", "OO")
        self.assert_refused(fen.replace("KQkq", "kq"), "O-O", "O-O-O", "e1g1", "e1h1")

    def test_castling_in_chess960(self):
        fen = "4k3/8/8/8/8/8/8/1R3KR1 w GB - 0 1"
        for text in ("O-O", "f1g1"):
            self.assert_is(fen, text, "f1g1", True)
        for text in ("O-O-O", "f1b1", "f1c1"):
            self.assert_is(fen, text, "f1b1", True)
        # Beside the king a step looks like castling of standard chess: it is a step.
        beside = "4k3/8/8/8/8/8/8/5K1R w H - 0 1"
        self.assertFalse(parse_move("f1g1", Position(beside)).castling)
        self.assertFalse(parse_move("Kg1", Position(beside)).castling)
        self.assertTrue(parse_move("O-O", Position(beside)).castling)
        self.assertTrue(parse_move("f1h1", Position(beside)).castling)

    def test_all_legal_moves_have_a_text(self):
        fen = "r3k2r/p1ppqpb1/bn2pnp1/3PN3/1p2P3/2N2Q1p/PPPBBPPP/R3K2R w KQkq - 0 1"
        position = Position(fen)
        moves = moves_by_text(position, False)
        self.assertEqual(len(moves), 48)
        for text, move in moves.items():
            self.assertEqual(parse_move(text, position), move)


if __name__ == "__main__":
    unittest.main()
