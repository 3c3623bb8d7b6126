"""Matches that are interrupted, taken up again, merged, or refused."""

import contextlib
import json
import os
import signal
import subprocess
import sys
import time
import unittest

from limits import small_files
from processes import running
from support import SHORT, TOOL, MatchTest


class InterruptionTest(MatchTest):
    def slow_match(self, games=6):
        return (*self.fake("slow"), *self.fake(), "--tc", "60", *SHORT, "--games", str(games),
                "--jsonl", self.games, "--pgn", self.file("games.pgn"))

    def start(self, *arguments):
        pipes = {"stdout": subprocess.PIPE, "stderr": subprocess.PIPE}
        command = self.arguments(*arguments)
        process = subprocess.Popen(command, text=True, start_new_session=True, **pipes)
        self.addCleanup(process.stdout.close)
        self.addCleanup(process.stderr.close)
        self.addCleanup(process.wait)
        self.addCleanup(process.kill)
        return process

    def wait_for_games(self, count):
        deadline = time.monotonic() + 120
        while not os.path.exists(self.games) or self.lines() <= count:
            self.assertLess(time.monotonic(), deadline)
            time.sleep(0.02)

    def lines(self):
        with open(self.games, "rb") as file:
            return file.read().count(b"\n")

    def finish(self, played):
        self.assertLess(played, 6)
        run = self.run_tool(*self.slow_match(), "--resume")
        numbers = [record["game"] for record in self.records()]
        self.assertEqual(sorted(numbers), [1, 2, 3, 4, 5, 6])
        self.assertIn("| slow   |     6 |", run.stdout)
        with open(self.file("games.pgn"), encoding="utf-8") as file:
            self.assertEqual(file.read().count("[Event "), 6)

    def interrupt(self, number, send):
        """Starts a match and sends a signal to it; what it says."""
        figures = self.file("figures.json")
        process = self.start(*self.slow_match(), "--json", figures)
        self.wait_for_games(2)
        send(process)
        output, errors = process.communicate(timeout=60)
        self.assertEqual(process.returncode, 128 + number, errors)
        self.assertIn("| slow ", output)
        self.assertIn(f"go on with --resume --jsonl {self.games}", errors)
        self.assertNotIn("broken down", errors)
        with open(figures, encoding="utf-8") as file:
            self.assertEqual(json.load(file)["games"], self.lines() - 1)
        self.assert_gone("slow")
        self.assertEqual([record["faults"] for record in self.records()], [[]] * (self.lines() - 1))
        return errors

    def test_ctrl_c(self):
        self.interrupt(signal.SIGINT, lambda process: process.send_signal(signal.SIGINT))
        self.finish(self.lines() - 1)

    def test_the_whole_group_is_told(self):
        errors = self.interrupt(
            signal.SIGTERM, lambda process: os.killpg(process.pid, signal.SIGTERM)
        )
        self.assertIn("interrupted by SIGTERM; ", errors)

    def test_engines_are_told_before_the_match(self):
        def hang_up(process):
            for line in self.told("slow"):
                if line.startswith("pid "):
                    with contextlib.suppress(ProcessLookupError):
                        os.kill(int(line.split()[1]), signal.SIGKILL)
            # The worker finds its engine dead first.
            time.sleep(0.1)
            process.send_signal(signal.SIGHUP)

        self.interrupt(signal.SIGHUP, hang_up)

    def test_ctrl_c_before_the_first_game(self):
        # The interpreter and the tool have begun, and the engine keeps silent.
        for number, message in ((signal.SIGINT, ""), (signal.SIGTERM, " by SIGTERM")):
            engines = (*self.fake("silent"), *self.fake(), "--depth", "1")
            process = self.start(*engines, "--patience", "60")
            deadline = time.monotonic() + 60
            while not os.path.exists(self.file("silent.log")) or "uci" not in self.told("silent"):
                self.assertLess(time.monotonic(), deadline)
                time.sleep(0.02)
            process.send_signal(number)
            output, errors = process.communicate(timeout=60)
            self.assertEqual((process.returncode, output), (128 + number, ""))
            self.assertEqual(errors, f"orvelin-match: interrupted{message}\n")
            self.assert_gone("silent")
            os.unlink(self.file("silent.log"))

    def test_ctrl_c_while_the_tool_is_read(self):
        code = (
            "import os, runpy, signal, sys; sys.argv = sys.argv[1:]\n"
            "class Finder:\n"
            "    def find_spec(self, name, *_):\n"
            "        if name == 'match_lib': os.kill(os.getpid(), signal.SIGINT)\n"
            "sys.meta_path.insert(0, Finder())\n"
            "runpy.run_path(sys.argv[0], run_name='__main__')"
        )
        run = subprocess.run(
            [sys.executable, "-c", code, TOOL], capture_output=True, text=True, check=False
        )
        self.assertEqual((run.returncode, run.stderr), (130, "orvelin-match: interrupted\n"))

    def test_kill(self):
        process = self.start(*self.slow_match(), "--concurrency", "2")
        self.wait_for_games(1)
        process.kill()
        process.wait()
        deadline = time.monotonic() + 60
        while self.processes_left() and time.monotonic() < deadline:
            time.sleep(0.05)
        self.assertEqual(self.processes_left(), [])
        played = self.lines() - 1
        # As a run that was killed while it wrote leaves it.
        with open(self.games, "a", encoding="ascii") as file:
            file.write('{"kind": "ga')
        with open(self.file("games.pgn"), "a", encoding="ascii") as file:
            file.write('[Event "orv')
        self.finish(played)

    def processes_left(self):
        """Workers and engines of this folder."""
        return running(os.path.realpath(self.arguments()[0]), self.directory)

    def test_a_worker_that_breaks_down(self):
        process = self.start(*self.slow_match())
        self.wait_for_games(1)
        path = f"/proc/{process.pid}/task/{process.pid}/children"
        with open(path, encoding="ascii") as children:
            (worker,) = children.read().split()
        os.kill(int(worker), signal.SIGKILL)
        _, errors = process.communicate(timeout=60)
        self.assertEqual(process.returncode, 1, errors)
        words = f"a worker has broken down; go on with --resume --jsonl {self.games}"
        self.assertIn(words, errors)

    def test_a_full_disk_leaves_whole_lines(self):
        engines = (*self.fake(), *self.fake("level"), "--depth", "1", *SHORT)
        run = self.match(*engines, games=20, status=1, limit=small_files(3000))
        words = f"cannot write {self.games}: File too large; go on with --resume"
        self.assertIn(words, run.stderr.splitlines()[-1])
        with open(self.games, encoding="ascii") as file:
            self.assertTrue(file.read().endswith("}\n"))
        self.assertGreater(len(self.records()), 0)
        self.match(*engines, "--resume", games=20)
        self.assertEqual(len(self.records()), 20)


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
