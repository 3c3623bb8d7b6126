"""A folder of engines with known speeds and faults, for one test."""

import os
import shlex
import subprocess
import sys

from scratch import ScratchTest

SOURCE = os.path.join(os.path.dirname(os.path.realpath(__file__)), "fake_uci_engine.py")
TOOLS = os.environ["MEASURE_TOOLS"]


class FakeEngines(ScratchTest):
    def fake(self, name, rate=1000000, kind="good"):
        """A program of this name."""
        words = [sys.executable, "-S", SOURCE, str(rate), kind, self.file(name + ".log")]
        with open(self.file(name), "w", encoding="utf-8") as file:
            file.write("#!/bin/sh\nexec " + shlex.join(words) + "\n")
        os.chmod(self.file(name), 0o755)
        return self.file(name)

    def told(self, name):
        """What the engine of this name was told, by all of its processes."""
        with open(self.file(name + ".log"), encoding="utf-8") as file:
            lines = file.read().splitlines()
        return [line for line in lines if not line.startswith("pid ")]

    def assert_gone(self, name):
        """No process of the engine is left."""
        with open(self.file(name + ".log"), encoding="utf-8") as file:
            for line in file:
                if line.startswith("pid "):
                    self.assertFalse(os.path.exists(f"/proc/{line.split()[1]}/fd"), line)

    def tool(self, name, *arguments, status=0, limit=None, text=None):
        """Runs a tool, before whose engines those of the folder are found."""
        run = subprocess.run(
            [sys.executable, os.path.join(TOOLS, name), *arguments],
            input=text,
            capture_output=True,
            text=True,
            timeout=240,
            check=False,
            env={**os.environ, "PATH": self.directory + ":" + os.environ["PATH"]},
            preexec_fn=limit,
        )
        self.assertEqual(run.returncode, status, run.stdout + run.stderr)
        return run
