"""Lines of test positions: what is understood, and what is refused."""

import unittest

from orvelin_lib.tool_main import ToolError
from scratch import ScratchTest
from suite_lib.epd import parse_line, read_suite
from support import ARRAY, MATE


class LineTest(unittest.TestCase):
    def test_all_operations(self):
        position = parse_line(
            f'{MATE} w - - bm Ra8# Ra7; am Kf1; dm 1; id "a; b"; c0 "said by nobody";', 7
        )
        self.assertEqual((position.number, position.name), (7, "a; b"))
        self.assertEqual(position.fen, f"{MATE} w - - 0 1")
        self.assertEqual(position.best, ("a1a8", "a1a7"))
        self.assertEqual(position.avoid, ("g1f1",))
        self.assertEqual(position.mate, 1)
        self.assertEqual(position.goal, "bm a1a8 a1a7; am g1f1; dm 1")
        self.assertFalse(position.chess960)

    def test_without_a_name_the_number_stands(self):
        self.assertEqual(parse_line(f"{MATE} w - - dm 1", 7).name, "7")

    def test_move_counters(self):
        self.assertEqual(parse_line(f"{MATE} w - - 12 40 dm 1;", 1).fen, f"{MATE} w - - 12 40")
        counted = parse_line(f"{MATE} w - - dm 1; hmvc 3; fmvn 20;", 1)
        self.assertEqual(counted.fen, f"{MATE} w - - 3 20")

    def test_chess960_by_place_or_by_letters(self):
        for fen, expected in (
            (f"{ARRAY} w KQkq -", False),
            (f"{ARRAY} w HAha -", True),
            ("4k3/8/8/8/8/8/8/4K2R w K -", False),
            ("4k3/8/8/8/8/8/8/4K1R1 w K -", True),
            ("4k3/8/8/8/8/8/8/5K1R w K -", True),
            ("1r2k3/8/8/8/8/8/8/4K2R w Kq -", True),
        ):
            self.assertEqual(parse_line(f"{fen} dm 1;", 1).chess960, expected, fen)

    def test_castling_is_written_as_the_engine_has_to(self):
        standard = parse_line("4k3/8/8/8/8/8/8/4K2R w K - bm O-O;", 1)
        self.assertEqual(standard.best, ("e1g1",))
        chess960 = parse_line("4k3/8/8/8/8/8/8/4K1R1 w G - bm O-O;", 1)
        self.assertEqual(chess960.best, ("e1g1",))
        self.assertTrue(chess960.chess960)
        far = parse_line("4k3/8/8/8/8/8/8/5K1R w H - bm O-O;", 1)
        self.assertEqual(far.best, ("f1h1",))

    def test_refused(self):
        for line, words in (
            ("nothing", "no position"),
            (f"{MATE} x - - dm 1;", "side to move"),
            (f"{MATE} w - - id \"x\";", "nothing is wanted"),
            (f"{MATE} w - - bm Ra9;", "not a move"),
            (f"{MATE} w - - bm Rb8;", "not a legal move"),
            (f"{MATE} w - - dm 0;", "dm needs"),
            (f"{MATE} w - - dm soon;", "dm needs"),
            (f"{MATE} w - - dm \u00b2;", "dm needs"),
            (f"{MATE} w - - dm 1; dm 2;", "twice"),
            (f"{MATE} w - - bm; dm 1;", "bm needs"),
            (f"{MATE} w - - am ; dm 1;", "am needs"),
            (f"{MATE} w - - bm Ra8 Ra7; am a1a8;", "both have a1a8"),
            (f"{MATE} w - - dm 1; hmvc abc;", "hmvc needs"),
            (f"{MATE} w - - dm 1; fmvn -1;", "fmvn needs"),
            (f'{MATE} w - - dm 1; id "open;', "not an operation"),
            (f"{MATE} w K - dm 1;", "has no rook"),
            (f"{MATE} w B - dm 1;", "castling"),
            ("4k3/8/8/8/8/8/8/R3K3 w K - dm 1;", "has no rook"),
            ("8/8/8/8/8/8/8/R3K3 w - - dm 1;", "0 kings"),
            ("4k2P/8/8/8/8/8/8/R3K3 w - - dm 1;", "first or the last rank"),
            ("R3k3/8/8/8/8/8/8/4K3 w - - dm 1;", "in check"),
            ("7k/5Q2/6K1/8/8/8/8/8 b - - dm 1;", "no legal move"),
            ("4k4/8/8/8/8/8/8/4K3 w - - dm 1;", "9 files"),
        ):
            with self.assertRaises(ValueError, msg=line) as raised:
                parse_line(line, 1)
            self.assertIn(words, str(raised.exception), line)


class FileTest(ScratchTest):
    def refused(self, text):
        with self.assertRaises(ToolError) as refusal:
            read_suite(self.file("x", text))
        return str(refusal.exception).replace(self.file("x"), "x")

    def test_what_is_read(self):
        text = f"# one\n\n{MATE} w - - dm 1;\n  {MATE} w - - bm Ra8;\n"
        positions = read_suite(self.file("x", text))
        self.assertEqual([position.number for position in positions], [1, 2])

    def test_what_is_refused(self):
        good = f"{MATE} w - - dm 1;\n"
        self.assertEqual(self.refused(good + "x\n"), "x, line 2: no position")
        self.assertEqual(self.refused("# nothing\n"), "x: no positions")

    def test_too_many_positions_are_refused_before_the_first_is_checked(self):
        refusal = "cannot read x: more than 100000 positions or 67108864 characters"
        self.assertEqual(self.refused("x\n" * 100001), refusal)
        self.assertEqual(self.refused(("x" * 1000000 + "\n") * 68), refusal)
        # Remarks do not count.
        self.assertEqual(self.refused("# x\n" * 100001), "x: no positions")


class SolvedTest(unittest.TestCase):
    def solved(self, operations, move, mate=None):
        return parse_line(f"{MATE} w - - {operations}", 1).solved_by(move, mate)

    def test_best_moves(self):
        self.assertTrue(self.solved("bm Ra8 Ra7;", "a1a7"))
        self.assertFalse(self.solved("bm Ra8 Ra7;", "a1a6"))

    def test_moves_to_avoid(self):
        self.assertTrue(self.solved("am Ra7;", "a1a8"))
        self.assertFalse(self.solved("am Ra7;", "a1a7"))
        self.assertFalse(self.solved("am Ra7;", "a1h8"))

    def test_mates(self):
        for mate, expected in ((1, True), (2, True), (3, False), (-1, False), (0, False)):
            self.assertEqual(self.solved("dm 2;", "a1a8", mate), expected, mate)
        self.assertFalse(self.solved("dm 2;", "a1a8"))
        self.assertFalse(self.solved("bm Ra8; dm 1;", "a1a7", 1))
        self.assertTrue(self.solved("bm Ra8; dm 1;", "a1a8", 1))


if __name__ == "__main__":
    unittest.main()
