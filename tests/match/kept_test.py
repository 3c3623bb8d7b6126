"""What is kept of a match."""

import json
import lzma
import os
import unittest

from match_lib import kept
from orvelin_lib.board import START_FEN
from orvelin_lib.tool_main import ToolError
from support import MatchTest

HEAD = {
    "kind": "run", "players": [
        {"name": name, "command": [f"/secret/{name}"], "limit": {
            "kind": "tc", "amount": 1000, "increment": 10, "moves": 0},
         "options": [["Hash", "16"]], "folder": None, "pawn": 100} for name in "AB"],
    "games": 4, "gauntlet": False, "openings": "0123", "order": "random", "seed": 3,
    "chess960": False, "ponder": False, "margin": 10.0, "patience": 10, "longest": 300, "restart": 0,
    "max_moves": 0, "draw": None, "resign": None, "shard": [1, 1],
}


def record(number, **more):
    white, black = "AB" if number % 2 else "BA"
    return {
        "kind": "game", "game": number, "pair": (number - 1) // 2, "white": white, "black": black,
        "titles": [f"Title {white}", f"Title {black}"], "date": f"2026.11.2{number}",
        "fen": START_FEN, "chess960": False, "result": "0-1", "reason": "checkmate",
        "opening": ["f2f3"], "moves": ["e7e5", "g2g4", "d8h4"], "scores": [35, "#-1", "#1"],
        "depths": [9, 3, None], "nodes": [1000, None, 400], "times": [10.0, 2.5, 40.0],
        "clocks": [990.4, 60.0, 970.0], "memory": None,
        "faults": [{"kind": "time", "engine": "B", "detail": "late", "file": "/secret"}], **more,
    }


class KeptTest(MatchTest):
    def written(self, name, *records, **head):
        text = "".join(json.dumps(each) + "\n" for each in ({**HEAD, **head}, *records))
        return self.file(name, text)

    def kept(self, *names):
        name = self.file("games.jsonl.xz")
        self.run_tool("keep", *names, "-o", name)
        with open(name, "rb") as file:
            self.assertNotIn("secret", lzma.decompress(file.read()).decode())
        return kept.read(name)

    def test_what_is_kept(self):
        head, games = self.kept(self.written("a.jsonl", record(2), record(1)))
        self.assertEqual(head["players"][0], {
            "name": "A", "title": "Title A", "program": "A", "limit": HEAD["players"][0]["limit"],
            "options": [["Hash", "16"]]})
        self.assertEqual((head["margin"], head["dates"]), (10.0, ["2026.11.21", "2026.11.22"]))
        self.assertEqual([game["game"] for game in games], [1, 2])
        self.assertEqual(games[0], {
            "game": 1, "pair": 0, "white": "A", "black": "B", "result": "0-1",
            "reason": "checkmate", "opening": "f2f3", "plies": 4, "depth": [3.0, 9.0],
            # Black moves behind the opening.
            "left": [60, 970], "faults": [["B", "time", 1]]})

    def test_a_match_without_clocks_and_from_a_position(self):
        fen = "4k3/8/8/8/8/8/4P3/4K3 b - - 0 1"
        more = {"fen": fen, "clocks": [None] * 3, "opening": [], "depths": [4, 6, 8]}
        _, (game,) = self.kept(self.written("a.jsonl", record(1, **more)))
        self.assertEqual((game["fen"], game["opening"], game["left"]), (fen, "", [None, None]))
        self.assertEqual((game["depth"], game["plies"]), ([6.0, 6.0], 3))

    def test_older_records(self):
        old = {key: value for key, value in record(1).items() if key not in ("titles", "date")}
        head, _ = self.kept(self.written("a.jsonl", old))
        self.assertEqual((head["dates"], head["players"][0]["title"]), (None, None))

    def test_shards_become_one(self):
        names = [self.written("1.jsonl", record(1), shard=[1, 2]),
                 self.written("2.jsonl", record(3), shard=[2, 2])]
        head, games = self.kept(*reversed(names))
        self.assertEqual([game["game"] for game in games], [1, 3])
        self.assertNotIn("shard", head)

    def test_the_same_games_give_the_same_bytes(self):
        name = self.written("a.jsonl", record(1), record(2))
        found = [kept.data(*kept.of_files([name])) for _ in range(2)]
        self.assertEqual(*found)
        self.kept(name)
        with open(self.file("games.jsonl.xz"), "rb") as file:
            self.assertEqual(file.read(), found[0])

    def test_a_file_of_a_match_is_read_as_it_is(self):
        name = self.written("a.jsonl", record(1), record(2))
        self.assertEqual(kept.read(name), self.kept(name))

    def test_small(self):
        games = [record(n, moves=["e7e5"] * 80, times=[1.0] * 80, depths=[9] * 80,
                        clocks=[5.0] * 80, nodes=[n] * 80) for n in range(1, 501)]
        self.kept(self.written("a.jsonl", *games))
        self.assertLess(os.path.getsize(self.file("games.jsonl.xz")), 40 * len(games))

    def test_refused(self):
        one = self.written("a.jsonl", record(1))
        other = self.written("b.jsonl", record(2), seed=4)
        twice = self.written("c.jsonl", record(1, result="1-0"), shard=[1, 2])
        out = self.file("out.jsonl.xz")
        for names, status, words in (
            ((one, other), 1, "not of the same match"),
            ((one, twice), 1, "a game is there twice"),
            ((one, one), 1, "is in"),
            ((self.file("none"),), 1, "cannot read"),
        ):
            run = self.run_tool("keep", *names, "-o", out, status=status)
            self.assertIn(words, run.stderr)
        self.run_tool("keep", one, "-o", self.file("out.jsonl"), status=2)
        self.assertFalse(os.path.exists(out))

    def test_foreign_files(self):
        other = lzma.compress(b'{"kind":"run"}\n')
        for data in (b"", b"text", other, other[:-9], lzma.compress(b"[]"), lzma.compress(b"")):
            name = self.file("bad.jsonl.xz")
            with open(name, "wb") as file:
                file.write(data)
            with self.assertRaisesRegex(ToolError, "is not what orvelin-match keep writes"):
                kept.read(name)
        with self.assertRaisesRegex(ToolError, "cannot read"):
            kept.read(self.file("none.jsonl.xz"))


if __name__ == "__main__":
    unittest.main()
