"""Records: what is read of them, what is refused, and what is told of a move."""

import copy
import json
import re
import unittest

from explain_lib.judgement import judge, pawn_of, score_text, side_of
from explain_lib.records import pick, records_of
from explain_lib.report_data import Report
from explain_lib.terms import GROUPS, TERMS
from orvelin_lib.tool_main import ToolError
from support import ANALYSE, ROOT, START, ToolTest, line, record

AFTER = "rnbqkbnr/pppppppp/8/8/4P3/8/PPPP1PPP/RNBQKBNR b KQkq - 0 1"
BEST = line("d2d4 d7d5", "d4 d5", {"material": 20, "king_attack": 50}, units=100, win=500, loss=100)


def made(loss=0, terms=None, **fields):
    """A game of one move, 1.e4, that gives away so many thousandths of the wins for losses."""
    played = line("e2e4 e7e5", "e4 e5", terms, units=0, win=500 - loss, loss=100 + loss, **fields)
    first = record(
        ply=0, lines=[BEST], played={"move": "e2e4", "san": "e4", "line": played}, win=500, loss=100
    )
    return [first, record(AFTER, ply=1)]


class ReadTest(unittest.TestCase):
    def read(self, *records):
        return list(records_of(map(json.dumps, records), "it"))

    def test_good_ones(self):
        records = made()
        self.assertEqual(self.read(*records), records)
        records[0]["something new"] = [1]
        self.assertEqual(self.read(*records), records)

    def test_refusals(self):
        for path, value, reason in (
            ("schema", 2, "schema is 2"),
            ("fen", "nonsense", "fen is none"),
            ("fen", START[:-2], "six fields"),
            ("fen", None, "fen is none"),
            ("source", 3, "source is missing"),
            ("receipt", None, "receipt is missing"),
            ("win", "1", "win is no number"),
            ("mate", "1", "mate is no number"),
            ("static", True, "static is no number"),
            ("terms", [0] * 46, "47 numbers"),
            ("terms", ["x"] * 47, "term is no number"),
            ("lines", None, "lines are missing"),
            ("lines", [3], "a line is no object"),
            ("lines.0.san", 3, "san of a line is no text"),
            ("lines.0.leaf", 3, "a leaf has no moves"),
            ("lines.0.leaf.terms", [], "47 numbers"),
            ("played", "e4", "played is no object"),
            ("played.move", None, "played has no move"),
            ("played.line.score", None, "score is no number"),
        ):
            wrong = copy.deepcopy(made()[0])
            *way, name = path.split(".")
            holder = wrong
            for step in way:
                holder = holder[int(step) if step.isdigit() else step]
            holder[name] = value
            with self.assertRaises(ToolError, msg=path) as refusal:
                self.read(made()[0], wrong)
            self.assertIn("it: line 2 is no record: ", str(refusal.exception))
            self.assertIn(reason, str(refusal.exception))

    def test_lines_that_are_none(self):
        for text in ("", "{", "[" * 100000, '{"schema": NaN', "\ufffd"):
            with self.assertRaises(ToolError) as refusal:
                list(records_of([text], "it"))
            self.assertIn("line 1 is no JSON", str(refusal.exception))
        endless = json.dumps(made()[0]).replace('"score": 0', '"score": Infinity', 1)
        with self.assertRaises(ToolError):
            list(records_of([endless], "it"))

    def test_picking(self):
        first, second = made(), [copy.deepcopy(each) for each in made()]
        for each in second:
            each["source"]["game"] = 2
        alone = record(AFTER)
        all_of_them = [*first, alone, alone, *second]
        self.assertEqual(pick(all_of_them, 1, "it"), first)
        self.assertEqual(pick(all_of_them, 3, "it"), [alone])
        self.assertEqual(pick(all_of_them, 4, "it"), second)
        with self.assertRaises(ToolError) as refusal:
            pick(all_of_them, 5, "it")
        self.assertIn("there is no number 5", str(refusal.exception))
        with self.assertRaises(ToolError) as refusal:
            pick(first[::-1], 1, "it")
        self.assertIn("missing", str(refusal.exception))


class JudgementTest(unittest.TestCase):
    def test_marks(self):
        for loss, mark in ((0, ""), (49, ""), (50, "?!"), (99, "?!"), (100, "?"), (200, "??")):
            judged = judge(*made(loss))
            self.assertEqual(judged.mark, mark, loss)
            self.assertAlmostEqual(judged.loss, loss / 10)
            self.assertAlmostEqual(judged.accuracy, 100 / 2 ** (loss / 100))

    def test_a_move_that_is_not_searched_is_judged_by_the_position_behind(self):
        first, second = made()
        first["played"]["line"] = None
        second |= {"win": 600, "draw": 200, "loss": 200}
        judged = judge(first, second)
        self.assertEqual((judged.before, judged.after, judged.mark), (70, 30, "??"))

    def test_the_only_good_move(self):
        first, second = made()
        first["played"] = {"move": "d2d4", "san": "d4", "line": None}
        for win, mark in ((500, ""), (401, ""), (400, "!")):
            other = line("e2e4", "e4", units=0, win=win, loss=600 - win)
            first["lines"] = [BEST, other]
            self.assertEqual(judge(first, second).mark, "" if win > 400 else mark)

    def test_the_difference_is_that_of_the_leaves(self):
        judged = judge(*made(200, {"material": -80, "king_attack": 40, "mobility": 30}))
        groups = {GROUPS[group]: total for group, total, _ in judged.groups}
        pawn = pawn_of(START)
        self.assertAlmostEqual(groups["material"], -100 / pawn)
        self.assertAlmostEqual(groups["king safety"], -10 / pawn)
        self.assertAlmostEqual(groups["piece activity"], 30 / pawn)
        self.assertEqual(GROUPS[judged.groups[0][0]], "material")
        self.assertIsNone(judge(*made(200)).groups)

    def test_the_difference_is_told_for_the_side_that_moved(self):
        first, second = made(200, {"material": 80})
        first["fen"] = AFTER
        groups = {GROUPS[group]: total for group, total, _ in judge(first, second).groups}
        self.assertLess(groups["material"], 0)

    def test_accuracy(self):
        side = side_of([judge(*made(0)), judge(*made(100))], True)
        self.assertAlmostEqual(side.accuracy, 75)
        self.assertEqual((side.moves, side.marks["?"]), (2, 1))
        self.assertIsNone(side_of([], False).accuracy)

    def test_scores_are_for_white(self):
        pawn = pawn_of(START)
        self.assertEqual(score_text(record(units=int(pawn * 2)), START), "+2.00")
        self.assertEqual(score_text(record(units=int(pawn * 2)), AFTER), "-2.00")
        self.assertEqual(score_text(record(mate=3), START), "+M3")
        self.assertEqual(score_text(record(mate=3), AFTER), "-M3")
        self.assertEqual(score_text(record(mate=-2), AFTER), "+M2")
        self.assertEqual(score_text(record(mate=0), AFTER), "mate")


class SentenceTest(unittest.TestCase):
    def sentence(self, records):
        (judged,) = Report(records).judged
        return judged.sentence

    def test_plain_ones(self):
        self.assertEqual(
            self.sentence(made(200, {"material": -280, "king_attack": 50})),
            "1.e4 takes White's chances from 70 % to 50 %; 1.d4 was best. "
            f"Most of it is material: {-300 / pawn_of(START):.2f} pawns.",
        )
        self.assertEqual(self.sentence(made()), "1.e4 is as good as the best move, 1.d4.")
        self.assertIn("1.e4 allows mate in 2; 1.d4 was best.", self.sentence(made(400, mate=-2)))
        records = made(200)
        records[0]["lines"][0] = {**BEST, "mate": 4}
        self.assertIn("misses mate in 4", self.sentence(records))
        records[0]["played"] = {"move": "d2d4", "san": "d4", "line": None}
        self.assertEqual(self.sentence(records), "1.d4 is the best move: mate in 4.")

    def test_the_sentence_of_the_record(self):
        for holder in (lambda r: r, lambda r: r["played"]):
            records = made(200)
            holder(records[0])["sentence"] = "It is so."
            self.assertEqual(self.sentence(records), "It is so.")


class NamesTest(unittest.TestCase):
    def test_they_are_those_of_the_analysis(self):
        with open(f"{ROOT}/src/analyse/term_names.cpp", encoding="utf-8") as file:
            text = file.read()
        rows = re.findall(r'\{"(\w+)",\s*"([^"]*)",\s*"([^"]*)",\s*(\w+)\}', text)
        rows = [(code, full, said, group.replace("_", " ")) for code, full, said, group in rows]
        self.assertEqual([(code, *term) for code, term in TERMS.items()], rows)
        names = re.search(r"group_names\{(.*?)\}", text, re.DOTALL)[1]
        self.assertEqual(list(GROUPS), re.findall(r'"([^"]*)"', names))


class ToolsTest(ToolTest):
    def test_records_of_a_file(self):
        pgn = self.file("a.pgn", "1. f3 e5 2. g4 Qh4# 0-1\n\n1. e4 *\n")
        command = f"'{ANALYSE}' '{pgn}' --limit depth=4 --moves best,played --quiet"
        self.program("make", f"{command} --jsonl '{self.file('a.jsonl')}'\n")
        self.run_program("make")
        name = self.file("a.jsonl")
        run = self.explain("--records", name, "--ascii")
        self.assertRegex(run.stdout, r"2\. g4\?\? +-M1")
        self.assertIn("depth 4", run.stdout)
        self.explain("--records", name, "--html", self.file("a.html"))
        self.explain("--pgn", pgn, "--depth", "4", "--html", self.file("b.html"))
        self.assertEqual(self.read("a.html"), self.read("b.html"))
        self.assertIn("1. e4", self.explain("--records", name, "--game", "2").stdout)
        run = self.explain("--records", name, "--game", "3", status=1)
        self.assertIn("there is no number 3", run.stderr)
        run = self.explain("--records", pgn, status=1)
        self.assertIn("line 1 is no JSON", run.stderr)

    def test_lines_of_a_position(self):
        run = self.explain("--startpos", "--moves", "e4", "--depth", "5", "--lines", "3", "--ascii")
        self.assertEqual(len(re.findall(r"^[123]\. ", run.stdout, re.MULTILINE)), 3)
        self.assertIn("leaf: ", run.stdout)
        self.assertIn("piece activity", run.stdout)
        mate = "7k/5Q2/6K1/8/8/8/8/8 w - - 0 1"
        run = self.explain(mate, "--depth", "3")
        self.assertIn("1. +M1", run.stdout)
        self.assertIn("no sum of terms", run.stdout)

    def test_what_a_page_may_not_run(self):
        nasty = '</script><script>alert("x")</script>'
        pgn = self.file("a.pgn", f'[White "{nasty}"]\n\n1. e4 *'.replace('alert("x")', "alert(1)"))
        self.explain("--pgn", pgn, "--depth", "1", "--html", self.file("a.html"))
        page = self.read("a.html")
        self.assertEqual(page.count("<script"), 2)
        self.assertIn("default-src 'none'", page)
        self.assertNotRegex(page, r"https?://(?!www\.w3\.org/2000/svg)")


if __name__ == "__main__":
    unittest.main()
