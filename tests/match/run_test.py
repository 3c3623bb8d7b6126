"""Matches as a user runs them: results, files and shards."""

import functools
import json
import os
import subprocess
import unittest

from match_lib.openings import RandomOpenings
from orvelin_lib.rules import Referee
from support import ENGINE, ROOT, SHORT, TOOL, MatchTest

OPENINGS = os.path.join(ROOT, "openings")
# Of one search whatever the machine: the same games every time.
FIXED = ("--nodes", "200", "--restart", "1", "--openings", OPENINGS, "--order", "random")
REAL = ("--engine", f"cmd={ENGINE}", "name=one", "--engine", f"cmd={ENGINE}", "name=two")
REAL += ("--each", "option.Hash=1", "--max-moves", "20")


def without_times(records):
    """What does not live by the clock, in the order of the games."""
    kept = "game pair white black fen opening result reason moves faults".split()
    rows = [{name: record[name] for name in kept} for record in records]
    return sorted(rows, key=lambda row: row["game"])


def on_core(core):
    os.sched_setaffinity(0, {core})


class PlayTest(MatchTest):
    def test_two_engines(self):
        run = self.match(*self.fake(), *self.fake("level"), "--tc", "60", *SHORT, games=4)
        records = self.records()
        self.assertEqual([record["game"] for record in records], [1, 2, 3, 4])
        self.assertEqual([record["white"] for record in records], ["good", "level"] * 2)
        for record in records:
            self.assertEqual((record["result"], record["reason"]), ("1/2-1/2", "length"))
            self.assertEqual(len(record["moves"]), 6)
            first = "#4" if record["white"] == "good" else 3
            self.assertEqual(record["scores"][0], first)
            self.assertEqual(set(record["depths"] + record["nodes"]), {7, 900})
            self.assertLess(record["clocks"][0], 60000)
        row = next(line for line in run.stdout.splitlines() if line.startswith("| good"))
        cells = [cell.strip() for cell in row.strip("|").split("|")]
        self.assertEqual(cells[:6], ["good", "4", "0", "4", "0", "50.0 %"])
        self.assertEqual((cells[10], cells[12:]), ("7.0", ["0", "0"]))
        self.assertIn("pairs by points     0: 0, 1/2: 0, 1: 2, 3/2: 0, 2: 0 (of good)", run.stdout)
        self.assert_gone("good")
        self.assertIn("setoption name Ponder value false", self.told("good"))

    def test_chess960_is_told_to_the_engines(self):
        engines = (*self.fake(), *self.fake("level"), "--depth", "1", "--variant", "chess960")
        opening = self.file("castling.epd", "4k3/8/8/8/8/8/PP6/KR6 w B - id 1;\n")
        self.match(*engines, "--openings", opening, "--max-moves", "1")
        self.assertIn("setoption name UCI_Chess960 value true", self.told("good"))
        # The first move by its text: the king goes to his rook.
        self.assertEqual([record["moves"][0] for record in self.records()], ["a1b1"] * 2)

    def test_options_reach_the_engines(self):
        words = ("option.hash=33", "option.Clear Hash=", "option.play style=very risky")
        words += ("--each", "option.Hash=7")
        self.match(*self.fake(), *self.fake("level"), *words, "--depth", "3", *SHORT)
        self.assertIn("setoption name Hash value 7", self.told("good"))
        self.assertIn("setoption name Hash value 33", self.told("level"))
        self.assertIn("setoption name Clear Hash", self.told("level"))
        self.assertIn("setoption name Play Style value very risky", self.told("level"))
        self.assertIn("go depth 3", self.told("level"))

    def test_engines_that_do_not_keep_to_their_nodes(self):
        # Both tell 900 nodes for each search.
        engines = (*self.fake(), "nodes=224", *self.fake("level"), "nodes=225", *SHORT)
        run = self.match(*engines, games=4)
        words = "good tells more than 4 times the nodes that it is given"
        self.assertEqual(run.stderr.count(words), 1)
        self.assertNotIn("level tells", run.stderr)
        self.assertEqual(sorted(self.records()[0]["overruns"]), [0, 3])
        self.assertRegex(run.stdout, r"\| good .*\|   12 \|\n")

    def test_fewer_cores_than_engines(self):
        core = min(os.sched_getaffinity(0))
        words = "2 engines think at a time on 1 core: their clocks run while they wait"
        engines = (*self.fake(), *self.fake("level"), *SHORT, "--concurrency", "2")
        for limit, is_told in (("--tc", True), ("--depth", False)):
            self.games = self.file(f"{limit}.jsonl")
            run = self.match(*engines, limit, "60", limit=functools.partial(on_core, core))
            self.assertEqual(words in run.stderr, is_told)

    def test_round_robin_and_gauntlet(self):
        three = (*self.fake(), *self.fake("level"), *self.fake("winning"))
        run = self.match(*three, "--depth", "1", *SHORT, "--concurrency", "2")
        meetings = sorted({tuple(sorted((r["white"], r["black"]))) for r in self.records()})
        everyone = [("good", "level"), ("good", "winning"), ("level", "winning")]
        self.assertEqual(meetings, everyone)
        self.assertEqual(len(self.records()), 6)
        self.assertIn("| level   | +0 =2 -0 |", run.stdout)
        self.games = self.file("gauntlet.jsonl")
        self.match(*three, "--depth", "1", *SHORT, "--gauntlet")
        meetings = sorted({tuple(sorted((r["white"], r["black"]))) for r in self.records()})
        self.assertEqual(meetings, everyone[:2])
        self.assertEqual(len(self.records()), 4)

    def test_pondering(self):
        # Both play the first move by its text, and so it is what the other expects.
        self.match(*self.fake(), *self.fake("level"), "--tc", "60", "--ponder", *SHORT)
        told = self.told("good")
        self.assertIn("setoption name Ponder value true", told)
        self.assertGreater(told.count("ponderhit"), 2)
        self.assertTrue(any(line.startswith("go ponder wtime ") for line in told))

    def test_adjudication(self):
        engines = (*self.fake("winning"), *self.fake("losing"))
        self.match(*engines, "--depth", "1", "--resign", "count=3", "score=800")
        for record in self.records():
            self.assertEqual(record["reason"], "win by adjudication")
            self.assertEqual(record["result"], "1-0" if record["white"] == "winning" else "0-1")
            self.assertEqual(len(record["moves"]), 6)
        self.games = self.file("draws.jsonl")
        engines = (*self.fake("level"), *self.fake("level")[:2], "name=other")
        self.match(*engines, "--depth", "1", "--draw", "moves=1", "count=2", "score=5")
        self.assertEqual({(r["result"], len(r["moves"])) for r in self.records()}, {("1/2-1/2", 4)})
        self.assertEqual({r["reason"] for r in self.records()}, {"draw by adjudication"})

    def test_sprt_ends_the_match(self):
        engines = (*self.fake("winning"), *self.fake("losing"))
        words = ("--resign", "count=1", "score=800", "--sprt", "elo0=0", "elo1=100")
        run = self.match(*engines, "--depth", "1", "--plies", "4", *words, games=200)
        self.assertIn("Elo 100 taken", run.stdout)
        self.assertLess(len(self.records()), 100)
        played = len(self.records())
        # It is over, and stays so.
        again = self.match(*engines, "--depth", "1", "--plies", "4", *words, "--resume", games=200)
        self.assertEqual(again.stdout, run.stdout)
        self.assertEqual(len(self.records()), played)

    def test_figures_for_programs(self):
        name = self.file("figures.json")
        self.match(*self.fake(), *self.fake("level"), "--depth", "1", *SHORT, "--json", name)
        with open(name, encoding="utf-8") as file:
            record = json.load(file)
        self.assertEqual(record["games"], 2)
        good = next(each for each in record["engines"] if each["engine"] == "good")
        self.assertEqual((good["draws"], good["pairs"], good["depth"]), (2, [0, 0, 1, 0, 0], 7))
        self.assertEqual((good["elo"], good["low"]), (0, None))


class RealTest(MatchTest):
    def test_openings_colours_and_legal_games(self):
        self.match(*REAL, *FIXED, "--faults", games=4)
        first, second, third, _ = self.records()
        self.assertEqual(first["opening"], second["opening"])
        self.assertNotEqual(first["opening"], third["opening"])
        for record in self.records():
            referee = Referee(record["fen"])
            self.assertTrue(all(map(referee.play, record["opening"] + record["moves"])))

    def test_chess960_with_a_clock_and_pondering(self):
        words = ("--variant", "chess960", "--tc", "1+0.01", "--margin", "2000", "--ponder")
        self.match(*REAL, *words, "--faults", "--plies", "4")
        opening = RandomOpenings(True, 4, 1)[0]
        for record in self.records():
            self.assertEqual(record["fen"], opening.fen)
            self.assertEqual(tuple(record["opening"]), opening.moves)
            self.assertTrue(record["chess960"])

    def assert_the_same_by_parallel(self, whole):
        """The script for many machines shares the match out, here on this one."""
        script = os.path.join(ROOT, "tools", "scale", "analyse-parallel")
        name = self.file("parallel.jsonl")
        run = subprocess.run(
            [script, name, "3", "--jobs", "2", "--", *REAL, *FIXED, "--games", "8"],
            env={**os.environ, "ORVELIN_ANALYSE": TOOL, "PARALLEL_HOME": self.directory},
            capture_output=True,
            text=True,
            timeout=240,
            check=False,
        )
        self.assertEqual(run.returncode, 0, run.stderr)
        self.assertEqual(without_times(self.records(name)), whole)

    def test_shards_and_their_order_make_the_same_games(self):
        self.match(*REAL, *FIXED, games=8)
        whole = without_times(self.records())
        parts = [self.file(f"{which}.jsonl") for which in (1, 2)]
        for which, part in enumerate(parts, 1):
            words = ("--games", "8", "--shard", f"{which}/2", "--jsonl", part, "--resume")
            self.run_tool(*REAL, *FIXED, *words, "--quiet", "--concurrency", "2")
        merged = self.file("merged.jsonl")
        self.run_tool("merge", *parts, "-o", merged)
        self.assertEqual(without_times(self.records(merged)), whole)
        self.assertEqual([record["game"] for record in self.records(merged)], list(range(1, 9)))
        self.assert_the_same_by_parallel(whole)
        # The whole is there, so that nothing is left to play.
        run = self.run_tool(*REAL, *FIXED, "--games", "8", "--jsonl", merged, "--resume")
        self.assertEqual(run.stdout, self.run_tool("report", merged).stdout)


if __name__ == "__main__":
    unittest.main()
