"""orvelin-match on this machine plays a game between two processes of another system: with the moves
of those of this machine, since nodes and not clocks end their searches."""

import json
import os
import sys
import tempfile
import unittest

from program import DATA, command, native, run

MATCH = os.path.join(os.path.dirname(os.path.dirname(DATA)), "tools", "orvelin-match")


class MatchTest(unittest.TestCase):
    def test_the_moves_of_a_match_are_the_same(self):
        games = self.games(command("orvelin-play"))
        self.assertEqual(len(games), 2)
        self.assertGreaterEqual(min(len(moves) for moves, _ in games), 20)
        self.assertEqual(games, self.games(native("orvelin-play")))

    def games(self, words):
        """Moves and end of each game of an engine with itself."""
        with tempfile.TemporaryDirectory() as folder:
            cmd = f"cmd={' '.join(words)}"
            _, error, status = run(
                [sys.executable, "-B", MATCH, "--engine", cmd, "name=one", "--engine", cmd, "name=two"]
                + "--each option.Hash=16 --nodes 1000 --games 2 --max-moves 15 --plies 4".split()
                + "--jsonl match.jsonl --quiet --patience 120".split(),
                folder=folder,
            )
            self.assertEqual((error, status), ("", 0))
            with open(os.path.join(folder, "match.jsonl"), encoding="utf-8") as file:
                lines = [json.loads(line) for line in file]
        return [
            (line["opening"] + line["moves"], line["reason"])
            for line in lines
            if line["kind"] == "game"
        ]


if __name__ == "__main__":
    unittest.main()
