"""Matches that are refused, and files of matches that do not go together."""

import os
import unittest

from support import SHORT, TOOL, MatchTest


class UsageTest(MatchTest):
    def test_bad_usage(self):
        two = (*self.fake(), *self.fake("level"))
        depth = ("--depth", "1")
        for arguments, message in (
            ((), "a match needs two --engine or more"),
            ((*self.fake(), *depth), "a match needs two --engine or more"),
            ((*self.fake(), *self.fake(), *depth), "two engines are called good"),
            (two, "good has no time: give --tc, --movetime, --nodes or --depth"),
            ((*two, *depth, "--nodes", "5"), "--nodes: there is another limit already"),
            ((*two, "--tc", "soon"), "not a time control: 'soon'"),
            ((*two, *depth, "--games", "3"), "--games 3: an odd game"),
            ((*two, *depth, "--games", "0"), "0 is not between 2 and"),
            ((*two, *depth, "--concurrency", "0"), "0 is not between 1 and 1024"),
            ((*two, *depth, "--resume"), "--resume needs a --jsonl"),
            ((*two, *depth, "--shard", "3/2"), "'3/2' is no shard such as 3/32"),
            ((*two, *depth, "--shard", "1/2", "--sprt", "elo0=0", "elo1=5"), "not with --shard"),
            ((*two, *self.fake("slow"), *depth, "--sprt", "elo0=0", "elo1=5"), "for two engines"),
            ((*two, *depth, "--sprt", "elo0=5"), "--sprt: elo0=NUMBER and elo1=NUMBER are needed"),
            ((*two, *depth, "--draw", "count=1"), "--draw: moves=NUMBER is needed"),
            ((*two, *depth, "--order", "random"), "--order random needs --openings"),
            ((*two, *depth, "--each", "cmd=x"), "--each: an engine has its cmd= and name="),
            (("--engine", "cmd=a", "hash=3"), "--engine: 'hash=3' is not cmd=, name=, dir=, pawn=, margin="),
            ((*two, *depth, "--pgn", "-"), "need names of files"),
            ((*two, *depth, "--patience", "nan"), "is not between 0 and"),
            (("report",), "the following arguments are required: FILE"),
            (("merge", "x"), "the following arguments are required: -o"),
        ):
            with self.subTest(arguments):
                run = self.run_tool(*arguments, status=2)
                self.assertIn(message, run.stderr)
                self.assertEqual(run.stderr.count("\n"), 1)
        self.assertEqual(os.listdir(self.directory), [])

    def test_what_cannot_be_read(self):
        two = (*self.fake(), *self.fake("level"), "--depth", "1")
        missing = self.file("missing")
        for arguments, message in (
            ((*two, "--openings", missing), f"cannot read {missing}: No such file or directory"),
            ((*two, "--openings", self.file("o", "e2e5\n")), "o, line 1: not a legal move: 'e2e5'"),
            ((*two, "--pgn", self.file("no/where")), "no/where: No such file or directory"),
            (("report", missing), f"cannot read {missing}: No such file or directory"),
            (("report", TOOL), f"{TOOL} is not the log of a run: line 1"),
            (("report", self.file("x", '{"kind": "run"}\n')), "x is not the file of a match"),
        ):
            run = self.run_tool(*arguments, status=1)
            self.assertIn(message, run.stderr)

    def test_another_match_is_left_alone(self):
        two = (*self.fake(), *self.fake("level"), *SHORT)
        self.match(*two, "--depth", "1")
        before = self.records()
        run = self.match(*two, "--depth", "1", status=2)
        self.assertIn(f"{self.games} exists: go on with --resume, or name another", run.stderr)
        run = self.match(*two, "--depth", "1", "--resume", games=4, status=2)
        self.assertIn(f"{self.games} belongs to another match: games was 2, and is 4", run.stderr)
        for more, words in (
            (("option.Hash=8",), "players 2 options Hash was not set, and is \"8\"\n"),
            (("nodes=5",), "players 2 limit kind was \"depth\", and is \"nodes\"\n"),
            (self.fake("slow"), "number of players was 2, and is 3\n"),
            (("--draw", "moves=1", "count=2", "score=3"), "draw count was not set, and is 2\n"),
        ):
            run = self.match(*two[:-len(SHORT)], *more, *SHORT, "--depth", "1", "--resume", status=2)
            self.assertIn(f"belongs to another match: {words}", run.stderr)
        self.assertEqual(self.records(), before)

    def test_half_a_first_line_is_begun_anew(self):
        self.file("games.jsonl", '{"kind": "run", "pla')
        engines = (*self.fake(), *self.fake("level"), *SHORT, "--depth", "1")
        self.match(*engines, "--resume")
        self.assertEqual(len(self.records()), 2)

    def test_merge_wants_all_shards_of_one_match(self):
        two = (*self.fake(), *self.fake("level"), "--depth", "1", *SHORT, "--games", "4")
        parts = [self.file(f"{which}.jsonl") for which in (1, 2)]
        for which, part in enumerate(parts, 1):
            self.run_tool(*two, "--shard", f"{which}/2", "--jsonl", part)
        other = self.file("other.jsonl")
        self.run_tool(*two, "--shard", "2/2", "--seed", "5", "--jsonl", other)
        with open(parts[1], encoding="ascii") as file:
            lines = file.readlines()
        half = self.file("half.jsonl", "".join(lines[:2]))
        with open(parts[0], encoding="ascii") as file:
            strange = self.file("strange.jsonl", "".join([*lines, *file.readlines()[1:]]))
        for files, words in (
            (parts[:1], "shard 2/2 is missing"),
            ([parts[0], parts[0]], "shard 1/2 is there twice"),
            ([parts[0], other], "are not of the same match: seed was 1, and is 5"),
            ([parts[0], half], "half.jsonl: 1 games are missing, such as game 4"),
            ([parts[0], strange], "strange.jsonl: game 1 is not of shard 2/2"),
        ):
            run = self.run_tool("merge", *files, "-o", self.file("out"), status=1)
            self.assertIn(words, run.stderr)
            self.assertFalse(os.path.exists(self.file("out")))
        whole = self.file("whole.jsonl", "precious")
        run = self.run_tool("merge", *parts, "-o", whole, status=2)
        self.assertIn(f"{whole} exists: give --overwrite, or name another", run.stderr)
        with open(whole, encoding="ascii") as file:
            self.assertEqual(file.read(), "precious")
        self.run_tool("merge", *parts, "-o", whole, "--overwrite")
        self.assertEqual(len(self.records(whole)), 4)
        # The same once more changes nothing.
        self.run_tool("merge", *parts, "-o", whole)
        self.assertEqual(self.run_tool("merge", *parts, "-o", "-").stdout.count("\n"), 5)

    def test_the_same_games_count_once(self):
        two = (*self.fake(), *self.fake("level"), "--depth", "1", *SHORT)
        self.match(*two)
        with open(self.games, encoding="ascii") as file:
            copy = self.file("copy.jsonl", file.read())
        for second in (self.games, copy):
            run = self.run_tool("report", self.games, second, status=1)
            self.assertIn(f"{second}: game 1 is in {self.games} too", run.stderr)
        # Another run of the same match is another match.
        again = self.file("again.jsonl")
        self.run_tool(*two, "--games", "2", "--jsonl", again)
        self.assertIn("| good   |     4 |", self.run_tool("report", self.games, again).stdout)


if __name__ == "__main__":
    unittest.main()
