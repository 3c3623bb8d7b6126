"""Matches that are interrupted, break down, and are taken up again."""

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


if __name__ == "__main__":
    unittest.main()
