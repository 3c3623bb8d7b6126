"""The sums against the engine's own total, and the arithmetic of a table that is known."""

import unittest

from explain_lib.bars_picture import position_picture
from explain_lib.evaluation import (
    BadTable,
    Evaluation,
    endgame_function,
    is_mate_impossible,
    middle_game_share,
    read_table,
)
from explain_lib.session import Session
from explain_lib.terminal import PLAIN, Style, explain
from explain_lib.terms import TERMS
from orvelin_lib.fen import Fen
from support import ENGINE, PATIENCE, START, line_of, table

# (position, special endgame, bishops of opposite colours)
POSITIONS = (
    (START, None, False),
    ("r3k2r/p1ppqpb1/bn2pnp1/3PN3/1p2P3/2N2Q1p/PPPBBPPP/R3K2R b KQkq - 0 1", None, False),
    ("5rk1/1b3ppp/1q2p3/p1bpP1N1/1p3P2/3B2Q1/PPP3PP/5R1K w - - 0 21", None, False),
    ("r4rk1/pp1n1ppp/2pb4/3p1q2/3Pn3/2NBPN1P/PP3PP1/R2Q1RK1 w - - 0 14", None, True),
    ("bnrqkrnb/pppppppp/8/8/8/8/PPPPPPPP/BNRQKRNB w CFcf - 0 1", None, False),
    ("8/pp3pk1/2p3p1/3p3p/3P3P/2P2KP1/PP3P2/8 b - - 0 30", None, False),
    ("8/5b2/4k3/2p5/1P6/4BK2/8/8 b - - 0 1", None, True),
    ("8/1QQQQ3/1QQQQ3/8/6k1/8/8/R3K3 b Q - 0 1", None, False),
    ("8/4k3/8/8/8/8/3R4/4K3 w - - 0 1", "KRK", False),
    ("8/4k3/8/8/8/3q4/8/K7 w - - 0 1", "KQK", False),
    ("8/4k3/4p3/8/8/8/4K3/8 w - - 0 1", "KPK", False),
    ("8/4k3/8/8/2B5/8/1N2K3/8 b - - 0 1", "KBNK", False),
    ("8/4k3/8/3r4/8/3p4/8/R3K3 b - - 0 1", "KRPKR", False),
    ("8/4k3/8/3r4/8/8/8/Q3K3 w - - 0 1", "KQKR", False),
    ("8/4k3/8/8/8/8/8/4K3 w - - 0 1", None, False),
)


class DeadDrawTest(unittest.TestCase):
    def test_pieces_that_cannot_give_mate(self):
        for text, drawn in (
            ("8/8/4k3/8/8/4K3/8/8", True),
            ("8/8/4k3/8/8/4KN2/8/8", True),
            ("8/8/4kn2/8/8/4KN2/8/8", False),
            ("4kb2/8/8/8/8/8/8/2B1K3", True),
            ("2b1k3/8/8/8/8/8/8/2B1K3", False),
            ("8/8/4k3/8/8/4KP2/8/8", False),
        ):
            board = Fen.parse(text + " w - - 0 1").board
            self.assertEqual(is_mate_impossible(board), drawn, text)

    def test_nobody_is_ahead_there(self):
        with Session([ENGINE], PATIENCE) as session:
            line = line_of("8/8/4k3/8/8/4K3/8/8 w - - 0 1")
            evaluation = session.evaluation(line)
        style = Style(80, PLAIN, False)
        text = explain(evaluation, line.position, style, False)
        self.assertIn("Drawn: no side can give mate.", text)
        self.assertNotIn("For White", text)
        self.assertIn("These terms decide nothing.", " ".join(text.split()))
        root = position_picture(evaluation, line.position.board, "w", "")
        words = [each.text for each in root.iter() if each.tag.endswith("text")]
        self.assertIn("Drawn: no side can give mate.", words)
        self.assertNotIn("pawns for White", words)


class EngineTest(unittest.TestCase):
    def test_the_sums_agree_with_the_engine(self):
        with Session([ENGINE], PATIENCE) as session:
            for fen, endgame, halved in POSITIONS:
                with self.subTest(fen=fen):
                    evaluation = session.evaluation(line_of(fen))
                    low, high = evaluation.expected_totals()
                    self.assertLessEqual(low, evaluation.printed_total)
                    self.assertLessEqual(evaluation.printed_total, high)
                    # The bounds are so narrow that a wrong sum is seen.
                    self.assertLessEqual(high - low, 3)
                    self.assertTrue(evaluation.agrees)
                    self.assertIn("this agrees", evaluation.check_text())
                    self.assertLess(abs(evaluation.total - evaluation.printed_total), 60)
                    self.assertEqual(evaluation.endgame, endgame)
                    self.assertEqual(evaluation.halved, halved)

    def test_the_terms_are_those_of_the_engine_in_its_order(self):
        with Session([ENGINE], PATIENCE) as session:
            evaluation = session.evaluation(line_of(START))
        self.assertEqual([part.name for part in evaluation.parts], list(TERMS))
        right_to_move = evaluation.parts[-1]
        self.assertEqual((right_to_move.middle_game, right_to_move.end_game), (14, 14))
        self.assertEqual((evaluation.total, evaluation.printed_total), (14, 14))


class ArithmeticTest(unittest.TestCase):
    def evaluation(self, total, fen=START, **terms):
        return Evaluation(line_of(fen).position.board, table(total, **terms))

    def test_the_phase(self):
        self.assertEqual(middle_game_share(line_of(START).position.board), 1)
        ending = line_of("4k3/8/8/8/8/8/8/QRBNK3 w - - 0 1").position.board
        self.assertEqual(middle_game_share(ending), 20 / 62)
        self.assertEqual(middle_game_share(list("Kk" + "." * 62)), 0)

    def test_the_halves_are_blended(self):
        evaluation = self.evaluation(
            100, "4k3/8/8/8/8/8/8/QRBNK3 w - - 0 1", material=(62, 124), mobility=(31, -62)
        )
        parts = {part.name: part for part in evaluation.parts}
        self.assertAlmostEqual(parts["material"].middle_part, 20)
        self.assertAlmostEqual(parts["material"].end_part, 84)
        self.assertAlmostEqual(parts["mobility"].net, 10 - 42)
        self.assertAlmostEqual(evaluation.sum, 72)
        self.assertEqual(evaluation.total, 72)

    def test_the_total_is_rounded_once_and_the_printed_one_cut_each_time(self):
        terms = {"material": (1.6, 0), "mobility": (1.6, 0), "space": (-0.6, 0)}
        # 1.6 is cut to 1, 2.6 to 2, 1.4 to 1.
        self.assertTrue(self.evaluation(1, **terms).agrees)
        for wrong in (-1, 0, 2, 3):
            self.assertFalse(self.evaluation(wrong, **terms).agrees, wrong)
        self.assertEqual(self.evaluation(1, **terms).total, 3)
        negative = {name: (-middle, 0) for name, (middle, _) in terms.items()}
        self.assertTrue(self.evaluation(-1, **negative).agrees)
        self.assertEqual(self.evaluation(-1, **negative).total, -3)

    def test_a_total_that_disagrees_is_said(self):
        text = self.evaluation(500, material=(100, 100)).check_text()
        self.assertIn("DO NOT AGREE", text)
        self.assertIn("500", text)
        # A whole number printed with six digits may have been a little less.
        self.assertIn("99 to 100", text)

    def test_bishops_of_opposite_colours_halve(self):
        evaluation = self.evaluation(
            61, material=(100, 0), opposite_colored_bishops=(22.3661, 2.31197)
        )
        self.assertTrue(evaluation.agrees)
        self.assertEqual(evaluation.total, 61)
        self.assertIn("halved", " ".join(evaluation.notes()))

    def test_material_of_special_endgames(self):
        for pieces, expected in (
            ("KQk", "KQK"),
            ("kqK", "KQK"),
            ("KRPkr", "KRPKR"),
            ("krpKR", "KRPKR"),
            ("KBBk", "KBBK"),
            ("KRkr", None),
            ("KQQk", None),
            ("Kk", None),
        ):
            self.assertEqual(endgame_function(list(pieces)), expected, pieces)

    def test_the_order(self):
        evaluation = self.evaluation(0, material=(5, 0), mobility=(-20, 0), stm=(14, 14))
        self.assertEqual(
            [part.name for part in evaluation.biggest_first()[:3]], ["mobility", "stm", "material"]
        )

    def test_tables_that_are_none(self):
        good = table(0)
        self.assertEqual(len(read_table(good)[0]), len(TERMS))
        for lines in (
            [],
            good[1:],
            good[:-1],
            [*good[:-1], "Total score: much"],
            [*good[:-1], "Total score:"],
            ["material nan 0", *good[1:]],
            ["material 1 x", *good[1:]],
        ):
            with self.assertRaises(BadTable, msg=lines[:1]):
                read_table(lines)


if __name__ == "__main__":
    unittest.main()
