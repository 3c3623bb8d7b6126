"""A folder with engines that misbehave, and orvelin-match as a program."""

import json
import os
import shlex
import subprocess
import sys

from scratch import ScratchTest

ROOT = os.environ["MATCH_ROOT"]
ENGINE = os.environ["MATCH_ENGINE"]
TOOL = os.path.join(ROOT, "tools", "orvelin-match")
FAKE = os.path.join(os.path.dirname(os.path.realpath(__file__)), "fake_engine.py")
# A game of the fakes is over then.
SHORT = ("--plies", "0", "--max-moves", "3")


class MatchTest(ScratchTest):
    def setUp(self):
        super().setUp()
        self.games = self.file("games.jsonl")

    def words(self, kind, count=2):
        """The command of an engine."""
        return [sys.executable, "-S", FAKE, kind, str(count), self.file(f"{kind}.log")]

    def fake(self, kind="good", count=2):
        """An engine as an argument."""
        return ("--engine", f"cmd={shlex.join(self.words(kind, count))}", f"name={kind}")

    def told(self, kind):
        """What the processes of an engine were told."""
        with open(self.file(f"{kind}.log"), encoding="utf-8") as file:
            return file.read().splitlines()

    def assert_gone(self, kind):
        """No process of the engine is left."""
        for line in self.told(kind):
            if line.startswith("pid "):
                self.assertFalse(os.path.exists(f"/proc/{line.split()[1]}/fd"), line)

    def arguments(self, *further):
        return [sys.executable, TOOL, *further]

    def run_tool(self, *arguments, status=0, limit=None):
        run = subprocess.run(
            self.arguments(*arguments),
            cwd=self.directory,
            capture_output=True,
            text=True,
            timeout=240,
            check=False,
            preexec_fn=limit,
        )
        self.assertEqual(run.returncode, status, run.stdout + run.stderr)
        self.assertNotIn("Traceback", run.stderr)
        return run

    def match(self, *arguments, games=2, status=0, limit=None):
        """A match whose games are kept."""
        counts = ("--games", str(games), "--jsonl", self.games)
        return self.run_tool(*arguments, *counts, status=status, limit=limit)

    def records(self, name=None):
        """Those of the games, in the order in which they were over."""
        with open(name or self.games, encoding="ascii") as file:
            head, *records = map(json.loads, file)
        self.assertEqual(head["kind"], "run")
        return records
