"""The referee of games: legal moves and the ends of games."""

import os
import random
import re
import unittest

from orvelin_lib.board import Position, square_name
from orvelin_lib.rules import (
    Referee,
    can_take_en_passant,
    find_move,
    has_legal_move,
    legal_moves,
    perft,
)

SHORT = os.environ.get("ORVELIN_LIB_SHORT") == "1"
DATA = os.path.join(os.path.dirname(os.path.dirname(os.path.realpath(__file__))), "data")


def perft_figures():
    """(leaves, depth, FEN) of the reference file, the smallest first."""
    figures, fen = [], None
    with open(os.path.join(DATA, "perft.txt"), encoding="ascii") as file:
        for line in file:
            if line.startswith("> pos "):
                fen = line[6:].strip()
            elif match := re.match(r"perft (\d+) (\d+)", line):
                figures.append((int(match[2]), int(match[1]), fen))
    return sorted(figures)


class PerftTest(unittest.TestCase):
    def test_small_reference_figures(self):
        figures = perft_figures()[: 5 if SHORT else 12]
        self.assertGreater(len(figures), 4)
        for leaves, depth, fen in figures:
            self.assertEqual(perft(Position(fen), depth), leaves, fen)

    def test_known_positions(self):
        # En passant under a pin, castling through attacks, promotions.
        crowded = "r3k2r/p1ppqpb1/bn2pnp1/3PN3/1p2P3/2N2Q1p/PPPBBPPP/R3K2R w KQkq - 0 1"
        pins = "8/2p5/3p4/KP5r/1R3p1k/8/4P1P1/8 w - - 0 1"
        promotions = "n1n5/PPPk4/8/8/8/8/4Kppp/5N1N b - - 0 1"
        figures = [(crowded, 2, 2039), (pins, 3, 2812), (promotions, 2, 496)]
        if not SHORT:
            figures += [(crowded, 3, 97862), (pins, 4, 43238), (promotions, 3, 9483)]
        for fen, depth, leaves in figures:
            self.assertEqual(perft(Position(fen), depth), leaves, fen)


class OneMoveTest(unittest.TestCase):
    """What is asked of one move is what the list of all moves says."""

    def positions(self, games, plies):
        """Positions of random games."""
        chance = random.Random(7)
        for _ in range(games):
            referee = Referee("r3k2r/1pPp4/8/4pP2/1P2p1pP/8/3P4/R3K2R w KQkq e6 0 1")
            for _ in range(plies):
                yield referee.position
                if not referee.moves:
                    break
                referee.play(chance.choice(sorted(referee.moves)))

    def test_moves_are_found_by_their_texts(self):
        squares = [square_name(square) for square in range(64)]
        every = [a + b + c for a in squares for b in squares for c in ("", "q", "n")]
        for position in self.positions(2, 5):
            legal = {move.text(False): move for move in legal_moves(position)}
            legal = {text: move for text, move in legal.items() if text[4:] in ("", "q", "n")}
            found = {text: find_move(position, text, False) for text in every}
            self.assertEqual({text: move for text, move in found.items() if move}, legal)

    def test_texts_that_are_no_moves(self):
        for text in ("", "e2", "e2e9", "i2i4", "0000", "e2e4x", "e2e4 ", "O-O"):
            self.assertIsNone(find_move(Position(), text, False), text)

    def test_any_move_and_en_passant(self):
        seen = set()
        for position in self.positions(8, 40):
            moves = legal_moves(position)
            takes = any(move.en_passant for move in moves)
            seen.add((bool(moves), takes))
            self.assertEqual(has_legal_move(position), bool(moves))
            self.assertEqual(can_take_en_passant(position), takes)
        self.assertIn((True, True), seen)
        self.assertFalse(has_legal_move(Position("7k/5Q2/6K1/8/8/8/8/8 b - - 0 1")))

    def test_a_pinned_pawn_cannot_take_en_passant(self):
        self.assertFalse(can_take_en_passant(Position("4k3/8/8/r2pP2K/8/8/8/8 w - d6 0 1")))
        self.assertTrue(can_take_en_passant(Position("4k3/8/8/r2pP3/7K/8/8/8 w - d6 0 1")))


class CastlingTest(unittest.TestCase):
    def castling(self, fen, chess960=False):
        moves = Referee(fen, chess960).moves
        return sorted(text for text, move in moves.items() if move.castling)

    def test_both_ways(self):
        fen = "r3k2r/8/8/8/8/8/8/R3K2R b KQkq - 0 1"
        self.assertEqual(self.castling(fen), ["e8c8", "e8g8"])
        self.assertEqual(self.castling(fen, True), ["e8a8", "e8h8"])

    def test_not_out_of_through_or_into_check(self):
        for rook, expected in (
            ("4r3", []),
            ("5r2", ["e1c1"]),
            ("6r1", ["e1c1"]),
            ("3r4", ["e1g1"]),
            ("1r6", ["e1c1", "e1g1"]),
        ):
            fen = f"{rook}/2k5/8/8/8/8/8/R3K2R w KQ - 0 1"
            self.assertEqual(self.castling(fen), expected, rook)

    def test_the_right_ends_with_the_move_of_king_or_rook(self):
        for moves, expected in (
            (("e1e2", "a8b8", "e2e1", "b8a8"), []),
            (("h1h2", "a8b8", "h2h1", "b8a8"), ["e1c1"]),
            (("a1a8", "e8d7"), ["e1g1"]),
            (("h1h8", "e8d7"), ["e1c1"]),
        ):
            referee = Referee("r3k2r/8/8/8/8/8/8/R3K2R w KQkq - 0 1")
            for move in moves:
                self.assertTrue(referee.play(move), move)
            castling = sorted(text for text, move in referee.moves.items() if move.castling)
            self.assertEqual(castling, expected, moves)

    def test_chess960_king_and_rook_change_places(self):
        referee = Referee("4k3/8/8/8/8/8/8/5KR1 w G - 0 1", True)
        self.assertIn("f1g1", referee.moves)
        self.assertTrue(referee.play("f1g1"))
        self.assertEqual("".join(referee.position.board[:8]), ".....RK.")

    def test_chess960_rook_may_not_uncover_check(self):
        self.assertEqual(self.castling("4k3/8/8/8/8/8/8/rRK5 w B - 0 1", True), [])
        self.assertEqual(self.castling("4k3/8/8/8/8/8/8/1RK5 w B - 0 1", True), ["c1b1"])

    def test_chess960_a_third_piece_in_the_way(self):
        self.assertEqual(self.castling("4k3/8/8/8/8/8/8/1R1N1K2 w B - 0 1", True), [])
        self.assertEqual(self.castling("4k3/8/8/8/8/8/8/NR3K2 w B - 0 1", True), ["f1b1"])

    def test_letters_of_files_name_the_rook_and_q_the_outermost(self):
        self.assertEqual(self.castling("4k3/8/8/8/8/8/8/R1R1K3 w C - 0 1", True), ["e1c1"])
        self.assertEqual(self.castling("4k3/8/8/8/8/8/8/R1R1K3 w Q - 0 1", True), [])
        self.assertEqual(self.castling("4k3/8/8/8/8/8/8/2R1K3 w Q - 0 1", True), ["e1c1"])


class VerdictTest(unittest.TestCase):
    def verdict(self, fen, moves=()):
        referee = Referee(fen)
        for move in moves:
            self.assertIsNone(referee.verdict(), move)
            self.assertTrue(referee.play(move), move)
        return referee.verdict()

    def test_checkmate(self):
        fools_mate = "rnb1kbnr/pppp1ppp/8/4p3/6Pq/5P2/PPPPP2P/RNBQKBNR w KQkq - 1 3"
        self.assertEqual(self.verdict(fools_mate), ("0-1", "checkmate"))
        self.assertEqual(
            self.verdict("6k1/5ppp/8/8/8/8/8/R5K1 w - - 0 1", ["a1a8"]), ("1-0", "checkmate")
        )

    def test_mate_on_the_hundredth_ply_is_mate(self):
        self.assertEqual(
            self.verdict("6k1/5ppp/8/8/8/8/8/R5K1 w - - 99 90", ["a1a8"]), ("1-0", "checkmate")
        )

    def test_stalemate(self):
        self.assertEqual(
            self.verdict("7k/8/8/6Q1/8/8/8/K7 w - - 0 1", ["g5g6"]), ("1/2-1/2", "stalemate")
        )

    def test_fifty_moves(self):
        fen = "4k3/8/8/8/8/8/4P3/R3K3 w - - 99 90"
        self.assertEqual(self.verdict(fen, ["a1a2"]), ("1/2-1/2", "fifty moves"))
        self.assertIsNone(self.verdict(fen, ["e2e3"]))

    def test_threefold_repetition(self):
        shuffle = ["g1f3", "g8f6", "f3g1", "f6g8"]
        start = "rnbqkbnr/pppppppp/8/8/8/8/PPPPPPPP/RNBQKBNR w KQkq - 0 1"
        self.assertIsNone(self.verdict(start, shuffle))
        self.assertEqual(self.verdict(start, shuffle * 2), ("1/2-1/2", "threefold repetition"))

    def test_lost_castling_rights_make_another_position(self):
        fen = "4k3/8/8/8/8/8/8/R3K2R w KQ - 0 1"
        shuffle = ["h1h2", "e8e7", "h2h1", "e7e8"]
        self.assertIsNone(self.verdict(fen, shuffle * 2))
        self.assertEqual(
            self.verdict(fen, [*shuffle * 2, "h1h2"]), ("1/2-1/2", "threefold repetition")
        )

    def test_insufficient_material(self):
        draw = ("1/2-1/2", "insufficient material")
        for pieces, expected in (
            ("8", draw),
            ("1N6", draw),
            ("b7", draw),
            ("b1B5", draw),
            ("bB6", None),
            ("nN6", None),
            ("p7", None),
        ):
            fen = f"4k3/8/8/8/{pieces}/8/8/4K3 w - - 0 1"
            self.assertEqual(self.verdict(fen), expected, pieces)


class RefusalTest(unittest.TestCase):
    def test_illegal_texts(self):
        start = "r3k2r/8/8/8/8/8/8/R3K2R w KQkq - 0 1"
        for text in ("e1e3", "e8e7", "0000", "", "e1h1", "E1E2", "a1a8q"):
            referee = Referee(start)
            self.assertFalse(referee.play(text), text)
            self.assertEqual(referee.position.side, "w")

    def test_en_passant_only_at_once(self):
        referee = Referee("4k3/3p4/8/4P3/8/8/8/4K3 b - - 0 1")
        referee.play("d7d5")
        self.assertIn("e5d6", referee.moves)
        for text in ("e1e2", "e8e7", "e2e1"):
            self.assertTrue(referee.play(text))
        self.assertNotIn("e5d6", referee.moves)
        referee = Referee("4k3/3p4/8/4P3/8/8/8/4K3 b - - 0 1")
        referee.play("d7d5")
        referee.play("e5d6")
        self.assertEqual(referee.position.board.count("p"), 0)

    def test_promotion_needs_its_letter(self):
        referee = Referee("4k3/P7/8/8/8/8/8/4K3 w - - 0 1")
        self.assertNotIn("a7a8", referee.moves)
        self.assertTrue(referee.play("a7a8n"))
        self.assertEqual(referee.position.board[56], "N")


if __name__ == "__main__":
    unittest.main()
