"""Games move by move, with records that are computed here."""

import unittest
import xml.etree.ElementTree as ET

from explain_lib.analysis import game_records
from explain_lib.game import biggest_change, notes_for, steps_of
from explain_lib.judgement import pawn_of
from orvelin_lib.pgn import check_game, raw_games
from support import ANALYSE, SVG, ToolTest, record

MATE = """[White "A & B"]
[Black "<C>"]

1. e4 e5 2. Qh5 Nc6 3. Bc4 Nf6 4. Qxf7# 1-0
"""
ENDING = """[FEN "4k3/8/8/8/8/8/3pP3/4K3 w - - 0 1"]

1. Kxd2 Kf7 2. e4 *
"""
DEAD_DRAW = """[FEN "8/8/8/8/8/1kP5/8/4K3 w - - 0 1"]

1. Ke2 Kxc3 2. Ke3 Kc4 *
"""
CHESS960 = """[Variant "Chess960"]
[FEN "4k3/8/8/8/8/8/8/5KR1 w G - 0 1"]

1. O-O Kd7 *
"""
LONG = "1. Nf3 Nf6 2. Ng1 Ng8 " * 25 + "*"


def game_of(text):
    return check_game(next(raw_games(text.splitlines())), 1)


class FollowTest(unittest.TestCase):
    def records(self, text, limit="static"):
        return game_records((ANALYSE,), game_of(text), limit, 1)

    def steps(self, text, limit="static"):
        return steps_of(self.records(text, limit))

    def test_static_scores(self):
        records = self.records(MATE)
        steps = steps_of(records)
        self.assertEqual([step.san for step in steps][::3], ["e4", "Nc6", "Qxf7#"])
        for step, found in zip(steps, records[1:-1]):
            self.assertEqual(found["score"], found["static"])
            sign = 1 if found["fen"].split()[1] == "w" else -1
            self.assertAlmostEqual(step.score.pawns, sign * found["score"] / pawn_of(found["fen"]))
            self.assertEqual(step.mark, "")

    def test_the_term_that_changed_most(self):
        records = self.records(ENDING)
        first, second, last = steps_of(records)
        self.assertEqual(first.term, "material")
        # A pawn, and what it is to be ahead.
        self.assertGreater(first.change, 0.9)
        self.assertNotEqual(last.term, "right to move")
        (note,) = notes_for([first, second, last], records)
        self.assertIn("3 half-moves from 1. Kxd2 on lead to", note)
        (note,) = notes_for([last], records)
        self.assertIn("1 half-move from 2. e4 on leads to", note)

    def test_a_dead_draw_is_told(self):
        for limit in ("static", "depth=2"):
            records = self.records(DEAD_DRAW, limit)
            notes = notes_for(steps_of(records), records)
            wanted = "From 1... Kxc3 on the game is drawn: no side can give mate."
            self.assertEqual(notes[0], wanted)
        records = self.records(DEAD_DRAW.replace("1kP5", "1kN5"))
        self.assertIn("From the start on", notes_for(steps_of(records), records)[0])
        records = self.records(ENDING)
        self.assertNotIn("drawn", " ".join(notes_for(steps_of(records), records)))
        searched = self.records(ENDING, "depth=2")
        self.assertEqual(notes_for(steps_of(searched), searched), [])
        for each in searched[:-1]:
            each["played"]["judgement"] = None
        (note,) = notes_for(steps_of(searched), searched)
        self.assertIn("not judged", note)

    def test_the_biggest_change(self):
        before = record(terms={"material": 5, "mobility": -20, "stm": 14})
        after = record(terms={"material": 9, "mobility": -25, "stm": -14})
        name, change = biggest_change(before, after)
        self.assertEqual(name, "mobility")
        self.assertAlmostEqual(change, -5 / pawn_of(after["fen"]))

    def test_scores_of_searches_are_for_white(self):
        steps = self.steps(MATE, "depth=4")
        self.assertEqual([step.score.text for step in steps[-2:]], ["+M1", "mate"])
        self.assertGreater(steps[-1].score.pawns, 100)
        self.assertEqual(steps[-2].mark, "??")
        steps = self.steps("1. f3 e5 2. g4 *", "nodes=20000")
        self.assertEqual(steps[-1].score.text, "-M1")
        self.assertLess(steps[-1].score.pawns, -100)
        # A queen for White, with either side to move.
        queen = '[FEN "3k4/8/8/8/8/8/8/3K1Q2 w - - 0 1"]\n1. Qf2 Kd7 *'
        for step in self.steps(queen, "depth=3"):
            self.assertGreater(step.score.pawns, 5)

    def test_castling_where_king_and_rook_change_places(self):
        first, second = self.steps(CHESS960)
        self.assertEqual([first.number, second.number], ["1.", "1..."])
        self.assertEqual([first.san, second.san], ["O-O", "Kd7"])


class OutputTest(ToolTest):
    def test_terminal(self):
        run = self.explain("--pgn", self.file("a.pgn", MATE), "--ascii")
        lines = run.stdout.splitlines()
        rows = [line for line in lines if "|" in line]
        self.assertEqual(len(rows), 7)
        self.assertEqual(rows[0].split()[:2], ["1.", "e4"])
        self.assertEqual(rows[1].split()[:2], ["1...", "e5"])
        self.assertEqual(rows[-1].split()[:3], ["4.", "Qxf7#", "mate"])
        self.assertLessEqual(max(map(len, lines)), 100)
        self.assertIn("A & B - <C>", lines[0])

    def test_page_and_picture(self):
        self.explain(
            *("--pgn", self.file("a.pgn", MATE + CHESS960 + LONG), "--nodes", "2000"),
            *("--svg", self.file("a.svg"), "--html", self.file("a.html")),
        )
        root = ET.fromstring(self.read("a.svg"))
        titles = [rect.find(SVG + "title") for rect in root.iter(SVG + "rect")]
        titles = [title.text for title in titles if title is not None]
        self.assertEqual(len(titles), 7)
        self.assertRegex(titles[0], r"^1\. e4[?!]*: ")
        self.assertIn("+M1", titles[-2])
        page = ET.fromstring(self.read("a.html"))
        moves = [b.text for b in page.iter("button") if b.get("data-ply")]
        self.assertEqual(moves, "e4 e5 Qh5 Nc6 Bc4 Nf6 Qxf7#".split())
        self.assertIn("A & B – <C>", page.find(".//h1").text)
        self.assertIn("nodes 2000", "".join(page.itertext()))

    def test_a_long_game_goes_on_in_further_rows(self):
        self.explain("--pgn", self.file("a.pgn", LONG), "--svg", self.file("a.svg"))
        root = ET.fromstring(self.read("a.svg"))
        columns = [r for r in root.iter(SVG + "rect") if r.find(SVG + "title") is not None]
        self.assertEqual(len(columns), 100)
        width, height = (float(root.get(name)) for name in ("width", "height"))
        for column in columns:
            self.assertLess(float(column.get("x")) + float(column.get("width")), width)
            self.assertLess(float(column.get("y")), height)
        self.assertEqual(len({column.get("x") for column in columns}), 40)

    def test_signs_that_no_page_may_contain(self):
        text = MATE.replace("A & B", "A\x01\x1b & \ufffeB")
        self.explain(
            *("--pgn", self.file("a.pgn", text), "--depth", "2"),
            *("--svg", self.file("a.svg"), "--html", self.file("a.html")),
        )
        words = "".join(ET.fromstring(self.read("a.svg")).itertext())
        self.assertIn("A\ufffd\ufffd & \ufffdB - <C>", words)
        title = ET.fromstring(self.read("a.html")).find(".//h1").text
        self.assertRegex(title, "^A.* & .*B – <C>$")

    def test_the_number_of_the_game(self):
        name = self.file("a.pgn", MATE + ENDING)
        run = self.explain("--pgn", name, "--game", "2")
        self.assertIn("Kxd2", run.stdout)
        self.assertNotIn("Qxf7", run.stdout)


if __name__ == "__main__":
    unittest.main()
