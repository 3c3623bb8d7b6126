"""The matches that place the levels, and the run that plays them."""

import json
import os
import pathlib
import shlex
import signal
import subprocess
import sys
import time
import unittest
import unittest.mock

from orvelin_lib.tool_main import Console, ToolError
from rating_lib import ladder, plan
from rating_lib.ladder import Ladder
from rating_lib.plan import GAMES, LEVELS, SHARDS, Planned
from scratch import ScratchTest

ROOT = os.environ["RATING_ROOT"]
FAKE = os.path.join(ROOT, "tests", "match", "fake_engine.py")
PART = GAMES // SHARDS


class PlanTest(unittest.TestCase):
    def setUp(self):
        self.matches = plan.plan("/folder/orvelin-play")

    def test_names_and_openings_are_of_one_match_each(self):
        for values in ([match.name for match in self.matches], [m.seed for m in self.matches]):
            self.assertEqual(len(values), len(set(values)))

    def test_every_level_meets_its_neighbours_and_a_level_that_says_its_strength(self):
        self.assertGreaterEqual(len(LEVELS), 12)
        self.assertEqual((LEVELS[0], LEVELS[-1]), (800, 2400))
        names = {match.name for match in self.matches}
        for low, high in zip(LEVELS, LEVELS[1:]):
            self.assertIn(f"{low}-{high}", names)
        for level in LEVELS:
            self.assertTrue(any(name.startswith(f"{level}-stockfish-") for name in names), level)

    def test_no_search_looks_at_a_clock(self):
        for match in self.matches:
            for player in match.players:
                limits = [word for word in player if word.startswith(("nodes=", "depth="))]
                self.assertEqual(len(limits), 1, player)
                self.assertFalse([word for word in player if word.startswith(("tc=", "movetime="))])

    def test_a_level_is_what_it_is_called(self):
        for elo in LEVELS:
            self.assertIn(f"option.UCI_Elo={elo}", plan.level_words("program", elo))
            self.assertIn("option.UCI_LimitStrength=true", plan.level_words("program", elo))


class LadderTest(ScratchTest):
    def made(self, *matches):
        return Ladder(self.directory, matches)

    def played(self, name, shard, games, nodes):
        """The file of a part in which each game took so many nodes."""
        head = {"kind": "run", "players": [], "shard": [shard, SHARDS]}
        game = {"pair": 0, "white": "", "black": "", "result": "", "reason": "", "moves": [],
                "opening": [], "fen": "", "faults": [], "nodes": [nodes, None]}
        records = [head, *({**game, "game": number} for number in range(games))]
        text = "".join(json.dumps(each) + "\n" for each in records)
        self.file(f"{name}.{shard}.jsonl", text)

    def test_the_match_with_the_least_cost_is_next(self):
        one, two = Planned("one", (), 1), Planned("two", (), 2)
        self.played("one", 1, PART, 200000000)
        self.played("two", 1, PART, 300000000)
        self.assertEqual(self.made(one, two).next_part().file, self.file("one.2.jsonl"))
        # A part that was cut off goes on.
        self.played("one", 2, PART - 1, 100000000)
        self.assertEqual(self.made(one, two).next_part().file, self.file("one.2.jsonl"))
        self.played("one", 2, PART, 200000000)
        self.assertEqual(self.made(one, two).next_part().file, self.file("two.2.jsonl"))

    def test_a_game_costs_more_than_its_nodes(self):
        one, two = Planned("one", (), 1), Planned("two", (), 2)
        self.played("one", 1, PART, 1000)
        self.played("two", 1, PART - 1, 2000)
        self.assertEqual(self.made(one, two).next_part().file, self.file("two.1.jsonl"))

    def test_all_is_played(self):
        for shard in range(1, SHARDS + 1):
            self.played("one", shard, PART, 1)
        made = self.made(Planned("one", (), 1))
        self.assertIsNone(made.next_part())
        self.assertIn(f"| one   |    {GAMES} | {GAMES} |", made.table())

    def test_an_empty_file_is_begun(self):
        self.file("one.1.jsonl", "")
        self.assertEqual(self.made(Planned("one", (), 1)).next_part().games, 0)


SCRIPT = """
import sys
from orvelin_lib.tool_main import Console
from rating_lib import ladder
from rating_lib.plan import Planned
match = Planned("one", (sys.argv[2:5], sys.argv[5:8]), 1)
sys.exit(ladder.play(ladder.Ladder(sys.argv[1], [match]), Console("test")))
"""


class RunTest(ScratchTest):
    """With engines that play the first legal move at once."""

    def player(self, kind, name):
        command = shlex.join([sys.executable, "-S", FAKE, kind, "0", self.file(f"{name}.log")])
        return (f"cmd={command}", f"name={name}", "depth=1")

    def match(self, first="good"):
        return Planned("one", (self.player(first, "A"), self.player("good", "B")), 1)

    def test_parts_are_played_one_after_the_other(self):
        sizes = {"GAMES": 4, "SHARDS": 2, "MOST_MOVES": "20"}
        with unittest.mock.patch.multiple(ladder, **sizes):
            made = Ladder(self.directory, [self.match()])
            self.assertEqual(ladder.play(made, Console("test")), 0)
            again = Ladder(self.directory, [self.match()])
            self.assertIsNone(again.next_part())
        self.assertEqual([part.games for part in again.parts["one"]], [2, 2])

    def test_a_match_that_cannot_be_played_ends_the_run(self):
        match = Planned("one", (("cmd=/none", "name=A", "depth=1"), self.player("good", "B")), 1)
        with self.assertRaisesRegex(ToolError, "ended with 1"):
            ladder.play(Ladder(self.directory, [match]), Console("test"))

    def test_a_signal_ends_the_run(self):
        # The first search does not end by itself.
        words = [word for player in self.match("stall").players for word in player]
        log = pathlib.Path(self.file("A.log"))
        with subprocess.Popen([sys.executable, "-c", SCRIPT, self.directory, *words]) as run:
            while not (log.exists() and "go depth" in log.read_text()):
                self.assertIsNone(run.poll())
                time.sleep(0.01)
            run.send_signal(signal.SIGTERM)
            self.assertEqual(run.wait(240), 143)
        part = Ladder(self.directory, [self.match()]).next_part()
        self.assertEqual((part.shard, part.games), (1, 0))
        self.assertEqual(pathlib.Path(part.file).read_text().count("\n"), 1)

    def test_the_list_of_an_empty_folder(self):
        tool = os.path.join(ROOT, "tools", "run-ladder")
        run = subprocess.run([sys.executable, tool, "--list", self.directory],
                             capture_output=True, text=True, timeout=240, check=True)
        self.assertIn("| 800-900 ", run.stdout)
        self.assertEqual(len(run.stdout.splitlines()), 2 + len(plan.plan("")))


if __name__ == "__main__":
    unittest.main()
