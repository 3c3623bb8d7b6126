"""An engine at the board: what it writes comes in pieces of any size, and is kept whole."""

import os
import shlex
import time
import unittest

from match_lib.clocks import Limit
from match_lib.engine import Fault, Listener, MatchEngine
from match_lib.engine_options import EngineOption
from match_lib.players import Player

EARLY = "info depth 3 score cp 1 nodes 30 pv g1f3"
FIRST = "info depth 4 score cp 7 nodes 40 pv e2e4"
SECOND = "info depth 5 multipv 2 score cp 5 nodes 50 pv d2d4"
THIRD = "info depth 6 nodes 60"
REMARK = "info string depth 9 score cp 9 nodes 90 pv"


class EngineOptionTest(unittest.TestCase):
    def assert_taken(self, line, good, bad):
        option = EngineOption.parse(f"option name {line}")
        for value in good:
            self.assertIsNone(option.problem(value), value)
        for value, problem in bad:
            self.assertEqual(option.problem(value), problem)
        return option

    def test_spin(self):
        bad = (("-4", "is below -3"), ("65", "is above 64"), ("", "is not a whole number"),
               ("1.5", "is not a whole number"), ("max", "is not a whole number"))
        option = self.assert_taken("Skill Level type spin default 5 min -3 max 64", "-3 0 64".split(), bad)
        self.assertEqual(option.command("7"), "setoption name Skill Level value 7")
        self.assert_taken("Hash type spin", ("99999", "-1"), [("x", "is not a whole number")])

    def test_check(self):
        bad = [(value, "is not true or false") for value in ("True", "1", "", "on")]
        self.assert_taken("Ponder type check default false", ("true", "false"), bad)

    def test_combo(self):
        line = "Style type combo default Very Risky var Calm var Very Risky var Maximum"
        bad = [(value, "is not one of Calm, Very Risky, Maximum") for value in ("Very", "Risky", "")]
        self.assert_taken(line, ("Calm", "very risky", "Maximum"), bad)

    def test_string_and_button(self):
        self.assert_taken("File type string default <empty>", ("", "a var b", "<empty>"), ())
        option = self.assert_taken(
            "Clear Hash type button", [""], [("1", "is too much: a button has no value")])
        self.assertEqual(option.command(""), "setoption name Clear Hash")

    def test_other_lines(self):
        for line in ("id name x", "option", "option name x", "option name x type", "info string"):
            self.assertIsNone(EngineOption.parse(line), line)


class EngineTest(unittest.TestCase):
    def setUp(self):
        stop, self.stop = os.pipe()
        self.addCleanup(os.close, stop)
        self.addCleanup(os.close, self.stop)
        self.listener = Listener(stop)

    def engine(self, *pieces):
        """One that writes these pieces after the next line that it is told."""
        writes = "; sleep 0.05; ".join(f"printf %b {shlex.quote(piece)}" for piece in pieces)
        command = ("/bin/sh", "-c", f"read line; {writes}; read line")
        engine = MatchEngine(Player("x", command, Limit("depth", 1)), command)
        self.addCleanup(engine.kill)
        self.listener.seat([engine])
        return engine

    def searched(self, *pieces):
        """The engine after a search in which it wrote these pieces, and the words of its answer."""
        engine = self.engine(*pieces)
        engine.send("go depth 1")
        return engine, self.listener.need(engine, "bestmove", 20)[1]

    def test_the_last_lines_count_however_they_come(self):
        lines = [EARLY, FIRST, SECOND, THIRD, REMARK, "bestmove e2e4 ponder e7e5"]
        whole = "".join(line + "\\n" for line in lines)
        cut = whole.index("score cp 5")
        for pieces in (
            (whole,),
            tuple(line + "\\n" for line in lines),
            (whole[:cut], whole[cut:]),
            (f"{EARLY}\\n{FIRST}\\n{SECOND}\\n", f"{THIRD}\\n{REMARK}\\nbest", "move e2e4 ponder e7e5\\n"),
            (whole.replace("\\n", "\\r\\n"),),
        ):
            with self.subTest(pieces):
                engine, words = self.searched(*pieces)
                self.assertEqual(words, ["bestmove", "e2e4", "ponder", "e7e5"])
                report = engine.report()
                self.assertEqual((report.depth, report.text, report.nodes), (4, 7, 60))
                said = [line[11:].rstrip() for line in engine.session().splitlines()]
                self.assertEqual(said, [" > go depth 1"] + [f" < {line}" for line in lines])

    def test_a_line_that_is_cut_where_another_could_begin(self):
        pieces = (f"{FIRST}\\ninfo string ", "info depth 1 score cp 3 nodes 2\\n", "bestmove a1a2\\n")
        engine, _ = self.searched(*pieces)
        self.assertEqual((engine.report().depth, engine.report().nodes), (4, 40))

    def test_score_and_nodes_of_different_lines(self):
        engine, _ = self.searched(f"{EARLY}\\ninfo depth 4 score cp 2\\nbestmove a1a2\\n")
        report = engine.report()
        self.assertEqual((report.depth, report.text, report.nodes), (4, 2, 30))

    def test_a_mate_and_nothing(self):
        engine, _ = self.searched("info depth 3 score mate -2 nodes 9\\nbestmove a1a2\\n")
        self.assertEqual(engine.report().text, "#-2")
        engine, _ = self.searched("bestmove a1a2\\n")
        report = engine.report()
        self.assertEqual((report.depth, report.text, report.nodes), (None, None, None))

    def test_an_answer_within_information_is_found_at_once(self):
        started = time.monotonic()
        _, words = self.searched(f"{FIRST}\\nbestmove a1a2\\n{THIRD}\\n")
        self.assertEqual(words, ["bestmove", "a1a2"])
        self.assertLess(time.monotonic() - started, 15)

    def test_another_answer_than_the_one_that_is_due(self):
        with self.assertRaisesRegex(Fault, "readyok where bestmove was due"):
            self.searched("readyok\\n")

    def test_no_answer(self):
        with self.assertRaisesRegex(Fault, "no bestmove within 0.2 s"):
            engine = self.engine(FIRST + "\\n")
            engine.send("go depth 1")
            self.listener.need(engine, "bestmove", 0.2)


if __name__ == "__main__":
    unittest.main()
