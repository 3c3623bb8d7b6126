"""docs/evaluation.md against the weights and tables of the code, and against the engine."""

import os
import re
import unittest

from explain_lib.session import Session
from explain_lib.terms import ENDGAMES, PAWN_END_GAME, PAWN_MIDDLE_GAME, TERMS
from support import ENGINE, PATIENCE, ROOT, line_of

# (term, its count, position): what the page says of the term.
STATEMENTS = (
    ("material", 1000, "4k3/8/8/8/8/8/8/4K2Q w - - 0 1"),
    ("material", 25, "4k3/8/8/8/8/8/8/4K2N w - - 0 1"),
    ("material", 450, "4k2r/8/8/8/8/8/8/4K2Q w - - 0 1"),
    ("undefended_pieces", 1, "4k3/8/8/8/8/8/8/3QK3 w - - 0 1"),
    ("development", -20, "4k3/8/8/8/8/8/4P3/3NK1BR w - - 0 1"),
    ("development", 10, "rnbqkbnr/pppppppp/8/8/8/2NN4/PPPPPPPP/R1BQKB1R w KQkq - 0 1"),
    ("pawn_shield", 30, "4k3/p7/8/8/8/8/5PPP/5RK1 w - - 0 1"),
    ("locked_up_rook", 0, "4k3/p7/8/8/8/8/5PPP/5RK1 w - - 0 1"),
    ("locked_up_rook", -1, "4k3/p7/8/8/8/8/5PPP/6KR w - - 0 1"),
    ("open_files_on_king", -30, "4k3/p7/8/8/8/8/5PPP/6KR w - - 0 1"),
    ("castling_rights", -20, "r3k2r/8/8/8/8/8/8/4K3 w kq - 0 1"),
    ("pawn_storm", 5, "6k1/8/8/8/5P2/8/8/4K3 w - - 0 1"),
    ("pawn_storm", 0, "6k1/8/8/8/8/5P2/8/4K3 w - - 0 1"),
    ("knight_king_contact", 1, "6k1/5N2/8/8/8/8/8/4K3 w - - 0 1"),
    ("knight_battlefield_contact", 1, "6k1/8/8/8/5N2/8/8/4K3 w - - 0 1"),
    ("knight_battlefield_attack", 3, "6k1/5N2/8/8/8/8/8/4K3 w - - 0 1"),
    ("own_hanging_material", -1, "6k1/5N2/8/8/8/8/8/4K3 w - - 0 1"),
    ("pinned_pieces", 1, "4k3/4n3/8/8/8/8/8/K3R3 w - - 0 1"),
    ("doubled_pawns", -1, "4k3/8/P7/8/8/8/P7/4K3 w - - 0 1"),
    ("doubled_pawns", 0, "4k3/P7/8/8/8/8/P7/4K3 w - - 0 1"),
    ("passed_pawns", 0, "4k3/8/8/8/8/P7/8/4K3 w - - 0 1"),
    ("passed_pawns", 125, "7k/8/8/8/P7/8/8/4K3 w - - 0 1"),
    ("opposite_colored_bishops", 1, "4k3/8/8/2b5/8/3B4/8/4K3 b - - 0 1"),
    ("safe_queencheck", 6, "4k3/8/8/8/8/8/8/3QK3 w - - 0 1"),
    ("queen_mobility", 20, "4k3/8/8/8/8/8/8/3QK3 w - - 0 1"),
    ("king_activity", 2, "4k3/8/8/8/8/3K4/8/8 w - - 0 1"),
    ("king_activity", 3, "4k3/8/8/8/3K4/8/8/8 w - - 0 1"),
    ("stm", -1, "4k3/8/8/8/3K4/8/8/8 b - - 0 1"),
)


def read(*path):
    with open(os.path.join(ROOT, *path), encoding="utf-8") as file:
        return file.read()


DOCUMENT = read("docs", "evaluation.md")
WEIGHTS = re.findall(r'\{"(\w+)", (\S+?)F, (\S+?)F\}', read("src", "evaluation", "weight.cpp"))


def numbers(text):
    return [int(number) for number in re.findall(r"-?\d+", text)]


class TableTest(unittest.TestCase):
    def test_names_and_weights_are_those_of_the_code(self):
        rows = re.findall(r"^\| `(\w+)` \| .* \| .* \| (\S+) \| (\S+) \|$", DOCUMENT, re.MULTILINE)
        self.assertEqual(len(WEIGHTS), len(TERMS))
        self.assertEqual(rows, WEIGHTS)

    def test_the_tool_knows_the_same_terms(self):
        self.assertEqual(list(TERMS), [name for name, _, _ in WEIGHTS])
        _, middle_game, end_game = WEIGHTS[0]
        self.assertAlmostEqual(PAWN_MIDDLE_GAME, 100 * float(middle_game))
        self.assertAlmostEqual(PAWN_END_GAME, 100 * float(end_game))

    def test_mobility(self):
        code = read("src", "evaluation", "mobility.h")
        table = re.sub("//.*", "", re.search(r"mobility_table\{(.*?)\}", code, re.DOTALL)[1])
        rows = re.findall(r"^\| (?:knight|bishop|rook|queen) \| (.*) \|$", DOCUMENT, re.MULTILINE)
        self.assertEqual(len(rows), 4)
        self.assertEqual(numbers(" ".join(rows)), numbers(table))

    def test_special_endgames(self):
        code = read("src", "evaluation", "evaluation_dispatch.cpp")
        functions = re.findall(r"static_cast<float>\((\w+)\(\)\)", code)
        self.assertEqual(sorted(ENDGAMES), sorted(functions))
        named = re.findall(r"^\| (K[A-Z]+(?:, K[A-Z]+)*) \|", DOCUMENT, re.MULTILINE)
        self.assertEqual(sorted(", ".join(named).split(", ")), sorted(functions))


class EngineTest(unittest.TestCase):
    def test_counts(self):
        weights = {name: (float(middle), float(end)) for name, middle, end in WEIGHTS}
        with Session([ENGINE], PATIENCE) as session:
            for name, expected, fen in STATEMENTS:
                with self.subTest(term=name, fen=fen):
                    evaluation = session.evaluation(line_of(fen))
                    (part,) = [part for part in evaluation.parts if part.name == name]
                    middle_game, end_game = weights[name]
                    self.assertAlmostEqual(part.middle_game / middle_game, expected, delta=0.01)
                    self.assertAlmostEqual(part.end_game / end_game, expected, delta=0.01)

    def test_how_far_the_printed_total_lies_off(self):
        positions = re.findall(r"^[^#\n]+?: (.*)$", read("bench", "positions.txt"), re.MULTILINE)
        self.assertEqual(len(positions), 20)
        with Session([ENGINE], PATIENCE) as session:
            evaluations = [session.evaluation(line_of(fen)) for fen in positions]
        off = max(abs(each.total - each.printed_total) for each in evaluations)
        self.assertIn(f"at most {off} units", re.sub(r"\s+", " ", DOCUMENT))


if __name__ == "__main__":
    unittest.main()
