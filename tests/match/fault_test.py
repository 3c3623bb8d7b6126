"""Engines that do what they must not: each fault loses its game, is told and saved with what was
said, and the match goes on."""

import os
import unittest
import unittest.mock

from support import SHORT, MatchTest


class FaultTest(MatchTest):
    def fault_of(self, kind, *arguments, count=2, games=2, tc=("--tc", "60")):
        """(record of the first game with a fault, the fault) of a match against a good engine."""
        engines = (*self.fake(kind, count), *self.fake())
        self.run_of_tool = self.match(*engines, *tc, *arguments, games=games)
        self.assertEqual(len(self.records()), games)
        self.assert_gone(kind)
        self.assert_gone("good")
        record = next(record for record in self.records() if record["faults"])
        fault = record["faults"][0]
        self.assertEqual(fault["engine"], kind)
        with open(fault["file"], encoding="utf-8") as file:
            self.session = file.read()
        self.assertIn(" > position ", self.session)
        self.assertIn(f": {fault['kind']}: ", self.run_of_tool.stderr)
        return record, fault

    def assert_lost(self, record, kind, reason):
        self.assertEqual(record["reason"], reason)
        self.assertEqual(record["result"], "0-1" if record["white"] == kind else "1-0")

    def test_illegal_move(self):
        record, fault = self.fault_of("illegal", *SHORT)
        self.assert_lost(record, "illegal", "illegal move")
        self.assertIn("'bestmove a1a1' after position", fault["detail"])
        self.assertIn("< bestmove a1a1", self.session)
        self.assertIn("\ngood (Fake good)\n", self.session)

    def test_ends_of_the_process(self):
        for kind, detail in (
            ("crash", "ended by SIGSEGV"),
            ("exit", "ended with status 3"),
            ("mute", "closed its output"),
        ):
            with self.subTest(kind):
                self.games = self.file(f"{kind}.jsonl")
                record, fault = self.fault_of(kind, *SHORT)
                self.assert_lost(record, kind, "crash")
                self.assertEqual(fault["detail"], detail)

    def test_an_engine_that_crashed_plays_the_next_game(self):
        record, _ = self.fault_of("crash", *SHORT, count=3, games=4)
        self.assertEqual(record["game"], 1)
        self.assertEqual([len(each["faults"]) for each in self.records()], [1, 1, 1, 1])
        self.assertEqual(sum(line.startswith("pid ") for line in self.told("crash")), 5)
        self.assertIn("growth of memory", self.run_of_tool.stdout)

    def test_a_bad_end_harms_no_game(self):
        for kind, detail in (
            ("badquit", "ended with status 5"),
            ("clinging", "did not end on quit"),
        ):
            with self.subTest(kind):
                self.games = self.file(f"{kind}.jsonl")
                patience = ("--patience", "3", "--restart", "1")
                record, fault = self.fault_of(kind, *SHORT, *patience)
                self.assertEqual((fault["kind"], fault["detail"]), ("crash", detail))
                self.assertEqual(record["reason"], "length")

    def test_stalling(self):
        record, fault = self.fault_of("stall", "--patience", "2", *SHORT, tc=("--tc", "0.3"))
        self.assert_lost(record, "stall", "stall")
        self.assertEqual(fault["detail"], "no bestmove within 2 s")

    def test_a_search_that_never_ends(self):
        record, fault = self.fault_of("stall", "--longest", "1", *SHORT, tc=("--nodes", "9"))
        self.assert_lost(record, "stall", "stall")
        self.assertEqual(fault["detail"], "no bestmove within 1 s, 900 nodes instead of 9")
        self.assertEqual(record["overruns"][record["white"] != "stall"], 2)

    def test_time(self):
        record, fault = self.fault_of("slow", *SHORT, tc=("--tc", "0.2"))
        self.assert_lost(record, "slow", "time forfeit")
        self.assertEqual(fault["kind"], "time")
        self.assertRegex(fault["detail"], r"ms on a clock of 200.0 ms")
        # It stays, and so does its opponent.
        self.assertEqual(sum(line.startswith("pid ") for line in self.told("slow")), 2)

    def test_time_after_which_stop_brings_the_answer(self):
        record, _ = self.fault_of("late", *SHORT, count=2, games=2, tc=("--movetime", "100"))
        self.assert_lost(record, "late", "time forfeit")
        self.assertIn("> stop", self.session)

    def test_lateness_within_the_margin(self):
        self.match(*self.fake("slow"), *self.fake(), "--movetime", "1", "--margin", "20000", *SHORT)
        self.assertEqual([record["faults"] for record in self.records()], [[], []])

    def test_a_margin_for_one_of_them(self):
        engines = (*self.fake("slow"), "margin=20000", *self.fake(), "--movetime", "100")
        self.match(*engines, "--margin", "5000", *SHORT)
        self.assertEqual([record["faults"] for record in self.records()], [[], []])
        self.assertEqual(self.records()[0]["titles"], ["Fake slow", "Fake good"])
        self.games = self.file("strict.jsonl")
        self.match(*self.fake("slow"), "margin=1", *self.fake(), "--movetime", "100", "--margin",
                   "20000", *SHORT)
        self.assertEqual({record["reason"] for record in self.records()}, {"time forfeit"})

    def test_flood(self):
        record, _ = self.fault_of("flood", *SHORT)
        self.assert_lost(record, "flood", "flood")

    def test_two_answers(self):
        record, _ = self.fault_of("twice", *SHORT)
        self.assertIn(record["reason"], ("stray answer", "illegal move"))

    def test_a_stray_answer_to_the_last_move_leaves_the_result(self):
        record, fault = self.fault_of("twice", "--plies", "0", "--max-moves", "1", count=1)
        self.assertEqual((record["reason"], fault["kind"]), ("length", "stray answer"))

    def test_an_answer_before_the_end_of_pondering(self):
        record, _ = self.fault_of("impatient", "--ponder", *SHORT)
        self.assert_lost(record, "impatient", "stray answer")

    def test_an_illegal_ponder_move_loses_nothing(self):
        record, fault = self.fault_of("ponder", "--ponder", *SHORT)
        self.assertEqual((record["reason"], fault["kind"]), ("length", "illegal ponder move"))
        self.assertIn("a1a1", fault["detail"])


class RunTest(MatchTest):
    def test_faults_ends_at_the_first(self):
        engines = (*self.fake("illegal", 1), *self.fake())
        run = self.match(*engines, "--tc", "60", "--faults", games=40, status=1)
        self.assertLess(len(self.records()), 4)
        self.assertIn("illegal: illegal move: ", run.stdout)

    def test_faults_of_good_engines(self):
        engines = (*self.fake(), *self.fake("level"))
        run = self.match(*engines, "--tc", "60", "--faults", "--ponder", *SHORT)
        self.assertIn("none: no illegal move, crash, stall, stray answer or time loss", run.stdout)

    def test_growing_memory_shows(self):
        length = ("--plies", "0", "--max-moves", "5")
        self.match(*self.fake("leak"), *self.fake(), "--depth", "1", *length, games=6)
        memory = self.records()[-1]["memory"]
        self.assertEqual([each["games"] for each in memory], [6, 6])
        steady, leaking = sorted(each["growth"] for each in memory)
        self.assertGreater(leaking, 4096)
        self.assertLess(steady, 2048)

    def test_a_dialogue_that_cannot_be_saved_does_not_end_the_match(self):
        engines = (*self.fake("illegal"), *self.fake())
        run = self.match(*engines, "--tc", "60", *SHORT, "--dialogues", "/dev/null/x")
        self.assertIn("not saved: cannot write /dev/null/x: Not a dir", run.stdout)
        self.assertEqual(len(self.records()), 2)

    def test_where_dialogues_go(self):
        engines = (*self.fake("illegal"), *self.fake(), "--tc", "60", *SHORT)
        self.match(*engines)
        names = ["game-1-illegal-move.txt", "game-2-illegal-move.txt"]
        self.assertEqual(sorted(os.listdir(self.file("games-faults"))), names)
        # Those of an earlier run stay.
        os.unlink(self.games)
        kept = self.file("games-faults/game-1-illegal-move.txt", "kept")
        self.match(*engines)
        names += [name.replace("move", "move-2") for name in names]
        self.assertEqual(sorted(os.listdir(self.file("games-faults"))), sorted(names))
        self.assertTrue(self.records()[0]["faults"][0]["file"].endswith("move-2.txt"))
        with open(kept, encoding="ascii") as file:
            self.assertEqual(file.read(), "kept")


class StartTest(MatchTest):
    def test_a_program_by_its_name_alone(self):
        program = self.file("named", f"#!/bin/sh\nexec {' '.join(self.words('level'))}\n")
        os.chmod(program, 0o755)
        path = f"{self.directory}:{os.environ['PATH']}"
        with unittest.mock.patch.dict(os.environ, PATH=path):
            self.match(*self.fake(), "--engine", "cmd=named", "--depth", "1", *SHORT)
        self.assertEqual(self.records()[0]["black"], "named")

    def test_what_cannot_be_started(self):
        good = self.fake()
        missing = self.file("missing")
        for engine, words in (
            (("--engine", f"cmd={missing}"), f"cannot run {missing}: No such file"),
            (self.fake("silent"), "silent: no uciok within 1 s"),
            (("--engine", "cmd=/bin/true"), "true: ended with status 0"),
        ):
            run = self.match(*good, *engine, "--tc", "60", "--patience", "1", status=1)
            self.assertIn(f"orvelin-match: {words}", run.stderr)
            self.assertFalse(os.path.exists(self.games))
        self.assert_gone("good")

    def test_options_that_the_engine_refuses(self):
        for word, message in (
            ("option.Threads=1", "has no option Threads"),
            ("option.Hash=65", "option Hash: '65' is above 64"),
            ("option.Play Style=Risky", "option Play Style: 'Risky' is not one of Calm, Very Risky"),
        ):
            engines = (*self.fake(), *self.fake("winning"), word)
            run = self.match(*engines, "--depth", "1", status=2)
            self.assertEqual(run.stderr, f"orvelin-match: winning: {message}\n")
            self.assertFalse(os.path.exists(self.games))
        self.assert_gone("winning")


if __name__ == "__main__":
    unittest.main()
