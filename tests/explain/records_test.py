"""Records: what is read of them, what is refused, and what is told of a move."""

import copy
import json
import re
import unittest
import xml.etree.ElementTree as ET

from explain_lib.judgement import judged_move, pawn_of, score_text, side_of
from explain_lib.records import pick, records_of
from explain_lib.report_data import Report
from explain_lib.report_page import MARKS_WORDS, report_page
from explain_lib.terms import GROUPS, TERMS
from orvelin_lib.tool_main import ToolError
from support import ANALYSE, ROOT, START, ToolTest, line, record, score

AFTER = "rnbqkbnr/pppppppp/8/8/4P3/8/PPPP1PPP/RNBQKBNR b KQkq - 0 1"
BEST = line("d2d4 d7d5", "d4 d5", {"material": 20, "king_attack": 50}, units=100, win=500, loss=100)


def judgement(mark="", lost=0, accuracy=100, sentence="It is so."):
    return {"mark": mark, "lost": lost, "accuracy": accuracy, "sentence": sentence}


def made(terms=None, **words):
    """A game of one move, 1.e4, of which this is said."""
    played = line("e2e4 e7e5", "e4 e5", terms, units=0)
    move = {"move": "e2e4", "san": "e4", "taken": None, "line": played}
    first = record(ply=0, lines=[BEST], played={**move, "judgement": judgement(**words)}, win=500)
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
            ("rest", "e4", "a line is no object"),
            ("played", "e4", "played is no object"),
            ("played.move", None, "played has no move"),
            ("played.line.score", None, "score is no number"),
            ("played.judgement", 3, "judgement is no object"),
            ("played.judgement.mark", "!?", "mark is none"),
            ("played.judgement.lost", None, "lost is no number"),
            ("played.judgement.accuracy", "1", "accuracy is no number"),
            ("played.judgement.sentence", None, "sentence is no text"),
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
        # The second game of the file was broken.
        for each in second:
            each["source"]["game"] = 3
        self.assertEqual(pick([*first, *second], 3, "it"), second)
        with self.assertRaises(ToolError) as refusal:
            pick([*first, *second], 2, "it")
        self.assertIn("or it was left out", str(refusal.exception))
        for each in second:
            each["source"] |= {"game": 1, "file": "b.pgn"}
        self.assertEqual(pick([*first, *second], 2, "it"), second)
        with self.assertRaises(ToolError) as refusal:
            pick(first[::-1], 1, "it")
        self.assertIn("missing", str(refusal.exception))


class JudgementTest(unittest.TestCase):
    def test_it_is_that_of_the_record(self):
        first, _ = made(mark="?", lost=123.5, accuracy=60.1, sentence="It is bad.")
        judged = judged_move(first)
        self.assertEqual((judged.mark, judged.mark_name), ("?", "mistake"))
        self.assertEqual((judged.loss, judged.accuracy), (12.35, 60.1))
        self.assertEqual((judged.sentence, judged.written), ("It is bad.", "1.e4"))
        self.assertFalse(judged.is_best)
        first["played"]["move"] = "d2d4"
        self.assertTrue(judged_move(first).is_best)

    def test_a_move_that_was_not_searched_is_not_judged(self):
        for without in ({"line": None, "judgement": None}, {"line": None}):
            records = made(mark="??", lost=300)
            records[0]["played"].pop("judgement")
            records[0]["played"] |= without
            report = Report(records)
            (judged,) = report.judged
            self.assertFalse(report.is_judged)
            self.assertEqual((judged.mark, judged.loss, judged.sentence), ("", 0, ""))
            self.assertIsNone(judged.accuracy)
            self.assertIsNone(report.sides[0].accuracy)
            self.assertIn("--moves best,played", report_page(report))
        self.assertNotIn("--moves best,played", report_page(Report(made())))

    def test_the_difference_is_that_of_the_leaves(self):
        judged = judged_move(made({"material": -80, "king_attack": 40, "mobility": 30})[0])
        groups = {GROUPS[group]: total for group, total, _ in judged.groups}
        pawn = pawn_of(START)
        self.assertAlmostEqual(groups["material"], -100 / pawn)
        self.assertAlmostEqual(groups["king safety"], -10 / pawn)
        self.assertAlmostEqual(groups["piece activity"], 30 / pawn)
        self.assertEqual(GROUPS[judged.groups[0][0]], "material")
        self.assertIsNone(judged_move(made()[0]).groups)

    def test_the_difference_is_told_for_the_side_that_moved(self):
        first, _ = made({"material": 80})
        first["fen"] = AFTER
        groups = {GROUPS[group]: total for group, total, _ in judged_move(first).groups}
        self.assertLess(groups["material"], 0)

    def test_accuracy_is_the_mean_over_moves_that_were_not_forced(self):
        moves = [made()[0], made(mark="?", accuracy=50)[0], made(accuracy=None)[0]]
        side = side_of([judged_move(move) for move in moves], True)
        self.assertAlmostEqual(side.accuracy, 75)
        self.assertEqual((side.moves, side.marks["?"]), (3, 1))
        self.assertIsNone(side_of([], False).accuracy)

    def test_the_page_tells_the_points_of_the_analysis(self):
        with open(f"{ROOT}/src/analyse/move_judgement.h", encoding="utf-8") as file:
            text = file.read()
        points = {
            name: round(100 * float(value))
            for name, value in re.findall(r"double (\w+) = ([0-9.]+);", text)
        }
        self.assertIn(f"?! from {points['dubious_loss']} points on, ", MARKS_WORDS)
        self.assertIn(f"? from {points['mistake_loss']}, ", MARKS_WORDS)
        self.assertIn(f"?? from {points['blunder_loss']}. ", MARKS_WORDS)
        self.assertIn("double praise_margin = blunder_loss;", text)
        self.assertIn(f"gives away {points['blunder_loss']} points", MARKS_WORDS)

    def test_bars_that_are_not_the_score_have_a_note(self):
        drawn = {"win": 0, "loss": 0}
        for fen, fields, words in (
            (START, {}, "^$"),
            ("8/8/4k3/8/8/2KN4/8/8 w - - 0 1", drawn, "no side can give mate"),
            ("8/8/4k3/8/8/2KN4/8/8 w - - 0 1", {}, "no side can give mate"),
            ("7k/5Q2/6K1/8/8/8/8/8 b - - 0 1", drawn, "^The game is drawn"),
            ("8/5k2/8/4KP2/8/8/8/8 w - - 0 1", {}, "^For KPK the search"),
        ):
            (position,) = Report([record(fen, **fields)]).data()["positions"]
            self.assertRegex(position["note"], words, fen)

    def test_scores_are_for_white(self):
        pawn = pawn_of(START)
        self.assertEqual(score_text(record(units=int(pawn * 2)), START), "+2.00")
        self.assertEqual(score_text(record(units=int(pawn * 2)), AFTER), "-2.00")
        self.assertEqual(score_text(record(mate=3), START), "+M3")
        self.assertEqual(score_text(record(mate=3), AFTER), "-M3")
        self.assertEqual(score_text(record(mate=-2), AFTER), "+M2")
        self.assertEqual(score_text(record(mate=0), AFTER), "mate")


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
        self.assertNotIn("not judged", run.stdout)
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

    def test_a_mate_stands_beside_the_mark_of_its_move(self):
        records = made(mark="??")
        plain = re.findall(r'<span class="dot [^>]*>', report_page(Report(records)))
        records[1].update(score(units=-29990, win=0, loss=1000, mate=-5))
        page = report_page(Report(records))
        mark, flag = re.findall(r'<span class="dot [^>]*>', page)
        self.assertEqual(len(plain), 1)
        self.assertIn("top:6.0%", mark)
        self.assertIn("dot mate", flag)
        self.assertIn("top:calc(6.0% + 1.5rem)", flag)
        # At the other end of the graph too.
        records[1].update(score(units=29990, win=1000, loss=0, mate=5))
        self.assertIn("top:calc(94.0% - 1.5rem)", report_page(Report(records)))

    def test_the_style_is_read_alike_as_html_and_as_xml(self):
        records = made()
        for each in records:
            each["source"]["white"] = "@style@ & @script@"
        page = report_page(Report(records))
        rule = ".panel > :last-child, .moments p { margin-bottom: 0; }"
        # HTML knows no entities in a style.
        self.assertIn(rule, page)
        root = ET.fromstring(page)
        self.assertIn(rule, root.find("head/style").text)
        self.assertIn("@style@ & @script@", root.find("head/title").text)


if __name__ == "__main__":
    unittest.main()
