"""Engines that misbehave: each fault is counted, with its reason, and the run goes on."""

import unittest

from support import FORK, MATE, THREE, SuiteTest


class FaultTest(SuiteTest):
    def fault(self, *lines, patience="20", depth=("--movetime", "50")):
        """(kind, detail) of the fault that an engine commits in the second of three positions."""
        engine = self.fake(answers={FORK: list(lines)})
        record = self.record(
            *("--engine", engine, "--name", "bad", *depth, "--patience", patience),
            *("--threshold", "2"),
        )
        (summary,) = record["engines"]
        self.assertEqual((summary["solved"], summary["faults"], summary["finished"]), (2, 1, 3))
        first, second, third = record["positions"]
        self.assertEqual((first["fault"], third["fault"]), (None, None))
        self.assertEqual((first["solved"], second["solved"], third["solved"]), (True, False, True))
        # What comes after a fault is asked of a new process.
        starts = [line for line in self.told() if line == "uci"]
        self.assertEqual(len(starts), 3)
        self.assert_gone()
        kind, detail = second["fault"]["kind"], second["fault"]["detail"]
        self.assertIn(f"bad: fork: fault: {kind}: {detail}", self.run_of_tool.stdout)
        return kind, detail

    def test_stalling(self):
        kind, detail = self.fault("!stall", patience="2")
        self.assertEqual((kind, detail), ("stall", "no bestmove within 2.0 s"))

    def test_stalling_in_a_search_by_depth(self):
        engine = ("--depth", "3", "--longest", "1.5")
        self.assertEqual(self.fault("!stall", depth=engine)[1], "no bestmove within 1.5 s")

    def test_crashing(self):
        self.assertEqual(self.fault("!crash"), ("crash", "ended by SIGSEGV"))

    def test_leaving(self):
        self.assertEqual(self.fault("!exit 3"), ("crash", "ended with status 3"))

    def test_leaving_behind_the_answer(self):
        self.assertEqual(
            self.fault("bestmove d5f6", "!exit 0"), ("crash", "ended with status 0")
        )

    def test_flooding(self):
        self.assertEqual(self.fault("!flood", patience="60"), ("flood", "writes without end"))

    def test_an_illegal_move(self):
        self.assertEqual(self.fault("bestmove d5d6"), ("illegal", "no legal move: 'd5d6'"))

    def test_no_move(self):
        self.assertEqual(self.fault("bestmove"), ("illegal", "no legal move: ''"))

    def test_answering_twice(self):
        kind, detail = self.fault("bestmove d5f6", "bestmove d5b4")
        self.assertEqual((kind, detail), ("stray", "answers what nobody asked: 'bestmove d5b4'"))

    def test_answering_once_more_later(self):
        self.assertEqual(self.fault("!late bestmove d5b4", "bestmove d5f6")[0], "stray")

    def test_an_answer_to_nothing_within_the_search(self):
        self.assertEqual(self.fault("readyok", "bestmove d5f6")[0], "stray")

    def test_a_mate_that_is_none(self):
        lines = ["info depth 1 score mate 1 pv d5f6", "bestmove d5f6"]
        self.assertEqual(self.fault(*lines)[0], "lie")

    def test_a_slow_engine_is_at_no_fault(self):
        slow = {FORK: ["!sleep 0.6", "info depth 1 pv d5f6", "bestmove d5f6"]}
        record = self.record("--engine", self.fake(answers=slow), "--movetime", "50")
        seconds = [entry["seconds"] for entry in record["positions"]]
        self.assertGreaterEqual(seconds[1], 0.6)
        self.assertLess(seconds[1], 30)
        self.assertLess(seconds[0], seconds[1])
        self.assertEqual(self.told().count("uci"), 2)

    def test_faults_of_one_engine_do_not_touch_another(self):
        bad = self.fake("bad", answers=dict.fromkeys((MATE, FORK, "otherwise"), ["!crash"]))
        record = self.record(
            *("--engine", bad, "--name", "bad", "--engine", self.fake("good"), "--name", "good"),
            *("--jobs", "2", "--movetime", "50"),
            status=1,
        )
        counts = {entry["name"]: (entry["solved"], entry["faults"]) for entry in record["engines"]}
        self.assertEqual(counts, {"bad": (0, 3), "good": (3, 0)})
        self.assert_gone("bad")

    def test_an_engine_that_cannot_castle_freely(self):
        text = THREE + "4k3/8/8/8/8/8/8/5K1R w H - bm Kg1; id \"free\";\n"
        without = self.record("--engine", self.fake(), "--movetime", "50", status=1, text=text)
        fault = without["positions"][3]["fault"]
        self.assertEqual((fault["kind"], fault["detail"]), ("start", "does not play Chess960"))
        self.assertEqual(without["engines"][0]["solved"], 3)


if __name__ == "__main__":
    unittest.main()
