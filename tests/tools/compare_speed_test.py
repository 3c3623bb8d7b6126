"""The comparison of speeds: its arithmetic, and its ways with engines that misbehave."""

import json
import os
import unittest
from types import SimpleNamespace

from fake_engines import TOOLS, FakeEngines
from measure_lib import speed
from measure_lib.uci import Search
from orvelin_lib.table import table


def contender(name, *rates, failure=None):
    made = speed.Contender(speed.Candidate(name, (name,)), title=f"{name} 1.0")
    made.rates = [list(row) for row in rates]
    made.failure = failure
    return made


class ArithmeticTest(unittest.TestCase):
    def test_the_median_of_the_rounds_and_the_geometric_mean_of_the_positions(self):
        one = contender("one", (1000, 9000, 2000), (4000, 1, 4000), (8000, 8000, 8000))
        self.assertEqual(one.medians, [2000, 4000, 8000])
        self.assertAlmostEqual(one.overall, 4000)

    def test_the_spread_is_that_of_the_worst_position(self):
        one = contender("one", (100, 100, 100), (90, 100, 110), (100, 101, 100))
        self.assertAlmostEqual(one.spread, 0.2)

    def test_ratio(self):
        fast = contender("fast", (3000,), (3000,), (3000,))
        slow = contender("slow", (1500,), (1500,), (1500,))
        self.assertAlmostEqual(speed.ratio_of(fast, [fast, slow], "slow"), 2)
        self.assertAlmostEqual(speed.ratio_of(slow, [fast, slow], "slow"), 1)
        self.assertIsNone(speed.ratio_of(fast, [fast], "slow"))

    def test_the_table(self):
        engines = [
            contender("fast", (3000000,), (3000000,), (3000000,)),
            contender("slow", (1500400,), (1500400,), (1500400,)),
            contender("gone", (1000000,), (), (), failure="ended with status 3"),
        ]
        lines = speed.text(engines, "slow").splitlines()
        cells = [[cell.strip() for cell in line.split("|")[1:-1]] for line in lines[:5]]
        self.assertEqual(len({len(line) for line in lines[:5]}), 1)
        self.assertEqual(cells[0][0], "engine")
        self.assertEqual(cells[0][-2:], ["ratio to slow", "spread"])
        self.assertEqual(cells[2], ["fast", "3000", "3000", "3000", "3000", "2.00", "0.0 %"])
        self.assertEqual(cells[3], ["slow", "1500", "1500", "1500", "1500", "1.00", "0.0 %"])
        self.assertEqual(cells[4], ["gone", "-", "-", "-", "-", "-", "-"])
        self.assertEqual(
            lines[6:],
            ["fast: fast 1.0", "slow: slow 1.0", "gone: failed: ended with status 3"],
        )

    def test_no_ratio_to_an_engine_that_failed(self):
        engines = [
            contender("fast", (1000,), (1000,), (1000,)),
            contender("slow", (), (), (), failure="hangs"),
        ]
        self.assertIn("|             - |", speed.text(engines, "slow").splitlines()[2])
        settings = SimpleNamespace(
            rounds=1, movetime=1, hash=1, reference="slow", processor_time=False
        )
        entries = speed.record(engines, settings)["engines"]
        self.assertIsNone(entries[0]["ratio"])
        self.assertNotIn("overall", entries[1])

    def test_columns(self):
        self.assertEqual(
            table(["a", "long"], [["text", 1], ["b", 22]]),
            "| a    | long |\n|------|-----:|\n| text |    1 |\n| b    |   22 |",
        )


class RateTest(unittest.TestCase):
    @staticmethod
    def search(milliseconds, line_seconds):
        return Search(1000000, milliseconds, line_seconds, 0.25, 0)

    def test_the_own_time_counts(self):
        self.assertAlmostEqual(self.search(500, 0.505).rate, 2000000)

    def test_the_clock_on_the_wall_counts_where_they_differ(self):
        self.assertAlmostEqual(self.search(100, 0.5).rate, 2000000)
        self.assertAlmostEqual(self.search(900, 0.5).rate, 2000000)

    def test_the_clock_on_the_wall_counts_where_no_time_is_told(self):
        self.assertAlmostEqual(self.search(None, 0.5).rate, 2000000)
        self.assertAlmostEqual(self.search(0, 0.5).rate, 2000000)

    def test_time_of_the_processor(self):
        self.assertAlmostEqual(self.search(500, 0.5).processor_rate, 4000000)


class PositionTest(unittest.TestCase):
    def test_they_are_those_of_the_command_bench(self):
        source = os.path.join(os.path.dirname(TOOLS), "src", "search", "bench_positions.h")
        with open(source, encoding="utf-8") as file:
            text = file.read()
        for _, fen in speed.POSITIONS:
            self.assertIn(f'"{fen}"', text)


class RunTest(FakeEngines):
    def compare(self, *arguments, status=0):
        """A short run; the record of each engine by its name."""
        name = self.file("record.json")
        self.run_of_tool = self.tool(
            "compare-speed",
            *("--no-install", "--movetime", "100", "--patience", "3", "--json", name),
            *arguments,
            status=status,
        )
        with open(name, encoding="utf-8") as file:
            return {entry["name"]: entry for entry in json.load(file)["engines"]}

    def test_speeds_of_three_engines(self):
        self.fake("stockfish", 6000000)
        engines = self.compare(
            *("--engine", self.fake("ours", 30000000), "--rounds", "2"),
            *("--also", "before=" + self.fake("before", 1000000)),
            *("--engines", "stockfish"),
        )
        self.assertEqual(list(engines), ["orvelin", "before", "stockfish"])
        for entry in engines.values():
            self.assertEqual([len(rates) for rates in entry["rates"]], [2, 2, 2])
            self.assertIsNone(entry["failure"])
        # A busy machine takes something off, but not a factor of 5.
        self.assertGreater(engines["orvelin"]["ratio"], 1)
        self.assertEqual(engines["stockfish"]["ratio"], 1)
        self.assertLess(engines["before"]["ratio"], 1)
        self.assertIn("orvelin: Fake 30000000", self.run_of_tool.stdout)
        for name in ("ours", "before", "stockfish"):
            self.assert_gone(name)

    def test_what_an_engine_is_told(self):
        self.fake("stockfish")
        self.compare(
            *("--engine", self.fake("ours"), "--engines", "stockfish"),
            *("--rounds", "2", "--hash", "64"),
        )
        told = self.told("stockfish")
        self.assertEqual(
            told[:5],
            [
                "uci",
                "setoption name Number of Threads value 1",
                "setoption name Hash value 64",
                "setoption name Use NNUE value false",
                "isready",
            ],
        )
        # Options that it does not have are not sent: no OwnBook, no Threads.
        self.assertEqual(sum(line.startswith("setoption") for line in told), 3)
        # A search to warm up, and three positions in two rounds, each from an empty table.
        self.assertEqual(told.count("go movetime 100"), 7)
        self.assertEqual(told.count("ucinewgame"), 7)
        for _, fen in speed.POSITIONS[:2]:
            self.assertEqual(told.count(f"position fen {fen}"), 2)

    def test_nodes_without_a_time_of_their_own(self):
        engines = self.compare(
            *("--engine", self.fake("ours", 4000000, "timeless"), "--engines", "none"),
            *("--also", "lying=" + self.fake("lying", 4000000, "lying"), "--rounds", "1"),
        )
        for entry in engines.values():
            self.assertLess(entry["overall"], 4100000)
            self.assertGreater(entry["overall"], 40000)

    def failure_of(self, kind, *further):
        """What is said of this engine, beside one that gives its figures."""
        engines = self.compare(
            *("--engine", self.fake("ours"), "--engines", "none", "--rounds", "1"),
            *("--also", "bad=" + self.fake("bad", 1000, kind), *further),
            status=1,
        )
        self.assertIsNone(engines["orvelin"]["failure"])
        self.assertIn("overall", engines["orvelin"])
        self.assertIn(f"bad: failed: {engines['bad']['failure']}", self.run_of_tool.stdout)
        self.assert_gone("bad")
        return engines["bad"]["failure"]

    def test_a_hanging_engine(self):
        self.assertEqual(self.failure_of("hanging", "--patience", "1"), "no bestmove within 1.1 s")

    def test_an_engine_that_never_answers(self):
        self.assertEqual(self.failure_of("mute", "--patience", "1"), "no uciok within 1.0 s")

    def test_an_engine_that_is_killed(self):
        self.assertEqual(self.failure_of("killed"), "ended by SIGKILL")

    def test_an_engine_that_leaves(self):
        self.assertEqual(self.failure_of("leaving"), "ended with status 3")

    def test_an_engine_that_tells_no_nodes(self):
        self.assertEqual(self.failure_of("silent"), "tells no nodes")

    def test_an_engine_that_writes_without_end(self):
        self.assertEqual(self.failure_of("flooding", "--patience", "60"), "writes without end")

    def test_a_missing_engine(self):
        engines = self.compare(
            *("--engine", self.fake("ours"), "--engines", "none", "--rounds", "1"),
            *("--also", "bad=" + self.file("nowhere")),
            status=1,
        )
        self.assertEqual(
            engines["bad"]["failure"], "cannot be started: No such file or directory"
        )
        self.assertIn("overall", engines["orvelin"])

    def test_bad_usage(self):
        for arguments in (
            ("--rounds", "0"),
            ("--engines", "nonsense"),
            ("--also", "nameless"),
            ("--also", "orvelin=" + self.fake("twin"), "--engines", "none"),
        ):
            run = self.tool("compare-speed", "--engine", self.fake("ours"), *arguments, status=2)
            self.assertEqual(run.stdout, "")


if __name__ == "__main__":
    unittest.main()
