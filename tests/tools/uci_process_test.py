"""Engines as processes: what becomes of one whose tool is killed."""

import os
import signal
import subprocess
import sys
import time
import unittest

ENGINE = os.environ["MEASURE_ENGINE"]
PATIENCE = 10

# A tool that starts an engine, tells its id, and waits to be killed.
TOOL = """
import sys, time
from orvelin_lib.process import EngineProcess
engine = EngineProcess([sys.argv[1]])
print(engine.pid, flush=True)
time.sleep(600)
"""


def runs(process):
    """Whether the process lives; one that is dead may wait for its parent to look."""
    try:
        with open(f"/proc/{process}/stat", encoding="utf-8") as file:
            return file.read().rpartition(")")[2].split()[0] != "Z"
    except OSError:
        return False


class UciProcessTest(unittest.TestCase):
    def test_engine_dies_with_its_tool(self):
        with subprocess.Popen(
            [sys.executable, "-c", TOOL, ENGINE], stdout=subprocess.PIPE, text=True
        ) as tool:
            engine = int(tool.stdout.readline())
            self.assertTrue(runs(engine))
            tool.kill()
        deadline = time.monotonic() + PATIENCE
        while runs(engine) and time.monotonic() < deadline:
            time.sleep(0.01)
        alive = runs(engine)
        if alive:
            os.kill(engine, signal.SIGKILL)
        self.assertFalse(alive)


if __name__ == "__main__":
    unittest.main()
