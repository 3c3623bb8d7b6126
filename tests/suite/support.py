"""A folder with engines that answer by scripts, and orvelin-suite as a program."""

import json
import os
import shlex
import subprocess
import sys

from scratch import ScratchTest

ROOT = os.environ["SUITE_ROOT"]
ENGINE = os.environ["SUITE_ENGINE"]
TOOL = os.path.join(ROOT, "tools", "orvelin-suite")
SUITES = os.path.join(ROOT, "suites")
FAKE = os.path.join(os.path.dirname(os.path.realpath(__file__)), "fake_engine.py")

MATE = "6k1/5ppp/8/8/8/8/8/R5K1"
FORK = "r5k1/3q1p1p/p5p1/3N4/8/8/4QPPP/6K1"
ARRAY = "rnbqkbnr/pppppppp/8/8/8/8/PPPPPPPP/RNBQKBNR"
THREE = f"""# a remark

{MATE} w - - bm Ra8#; dm 1; id "mate";
{FORK} w - - bm Nf6+; id "fork";
{ARRAY} w KQkq - am f4 f3; id "array";
"""
RIGHT = {
    MATE: ["info depth 1 score mate 1 nodes 10 pv a1a8", "bestmove a1a8"],
    FORK: ["info depth 3 score cp 900 nodes 20 pv d5f6", "bestmove d5f6"],
    "otherwise": ["info depth 5 score cp 20 nodes 30 pv e2e4", "bestmove e2e4"],
}


class SuiteTest(ScratchTest):
    def fake(self, name="fake", answers=None, **script):
        """The command of an engine with these answers beside those that are right."""
        script["answers"] = {**RIGHT, **(answers or {})}
        path = self.file(name + ".json", json.dumps(script))
        return shlex.join([sys.executable, "-S", FAKE, path, self.file(name + ".log")])

    def told(self, name="fake"):
        """What the processes of an engine were told."""
        with open(self.file(name + ".log"), encoding="utf-8") as file:
            return file.read().splitlines()

    def assert_gone(self, name="fake"):
        """No process of the engine is left."""
        for line in self.told(name):
            if line.startswith("pid "):
                self.assertFalse(os.path.exists(f"/proc/{line.split()[1]}/fd"), line)

    def environment(self):
        """GNU parallel leaves files in its home."""
        return {**os.environ, "PARALLEL_HOME": self.directory}

    def suite(
        self, *arguments, status=0, text=THREE, environment=None, output=subprocess.PIPE, limit=None
    ):
        """Runs the tool on these positions."""
        run = subprocess.run(
            [sys.executable, TOOL, self.file("test.epd", text), *arguments],
            stdout=output,
            stderr=subprocess.PIPE,
            text=True,
            timeout=240,
            check=False,
            env={**self.environment(), **(environment or {})},
            preexec_fn=limit,
        )
        self.assertEqual(run.returncode, status, (run.stdout or "") + run.stderr)
        self.assertNotIn("Traceback", run.stderr)
        return run

    def record(self, *arguments, status=0, text=THREE, environment=None):
        """What the JSON file of such a run holds."""
        name = self.file("record.json")
        self.run_of_tool = self.suite(
            *arguments, "--json", name, status=status, text=text, environment=environment
        )
        with open(name, encoding="utf-8") as file:
            return json.load(file)
