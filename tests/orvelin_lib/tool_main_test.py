"""How a tool ends: its exit status, and one line for whatever goes wrong."""

import subprocess
import sys
import unittest

SCRIPT = """
import argparse, os, signal, sys, time
from orvelin_lib.engine import EngineFailure
from orvelin_lib.tool_main import *

def body(console):
    {}

sys.exit(run_tool("tool", body))
"""


class ToolMainTest(unittest.TestCase):
    def tool(self, body, **further):
        return subprocess.run(
            [sys.executable, "-c", SCRIPT.format(body)],
            stderr=subprocess.PIPE,
            text=True,
            timeout=60,
            check=False,
            **{"stdout": subprocess.PIPE, **further},
        )

    def test_how_it_ends(self):
        full = "No space left on device"
        for body, status, words in (
            ("return 0", 0, ""),
            ("return 1", 1, ""),
            ("raise ToolError('cannot')", 1, "cannot"),
            ("raise UsageError('not so')", 2, "not so"),
            ("raise EngineFailure('died')", 1, "engine: died"),
            ("raise MemoryError", 1, "not enough memory"),
            ("raise OSError(28, os.strerror(28))", 1, full),
            ("raise KeyboardInterrupt", 130, "interrupted"),
            ("signal.raise_signal(signal.SIGINT)", 130, "interrupted"),
            ("signal.raise_signal(signal.SIGTERM)", 130, "interrupted"),
            ("signal.raise_signal(signal.SIGHUP)", 130, "interrupted"),
        ):
            run = self.tool(body)
            expected = f"tool: {words}\n" if words else ""
            self.assertEqual((run.returncode, run.stderr), (status, expected), body)

    def test_signals_that_nohup_has_switched_off(self):
        body = "signal.raise_signal(signal.SIGHUP); return 0"
        command = [sys.executable, "-c", SCRIPT.format(body)]
        run = subprocess.run(["nohup", *command], capture_output=True, timeout=60, check=False)
        self.assertEqual(run.returncode, 0)

    def test_output_that_cannot_be_written(self):
        for body in ("print_whole('a' * 100000); return 0", "print_whole('a'); return 0"):
            with open("/dev/full", "w", encoding="ascii") as full:
                run = self.tool(body, stdout=full)
            words = "tool: cannot write to standard output: No space left on device\n"
            self.assertEqual((run.returncode, run.stderr), (1, words))

    def test_output_that_is_closed(self):
        command = [sys.executable, "-c", SCRIPT.format("print_whole('a'); return 0")]
        closed = ["sh", "-c", 'exec "$@" >&-', "sh", *command]
        run = subprocess.run(closed, stderr=subprocess.PIPE, text=True, timeout=60, check=False)
        words = "tool: cannot write to standard output: it is closed\n"
        self.assertEqual((run.returncode, run.stderr), (1, words))
        closed[2] = 'exec "$@" 2>&-'
        command[2] = SCRIPT.format("raise ToolError('nobody reads it')")
        run = subprocess.run(
            ["sh", "-c", 'exec "$@" 2>&-', "sh", *command], stdout=subprocess.PIPE, timeout=60
        )
        self.assertEqual((run.returncode, run.stdout), (1, b""))

    def test_help_that_cannot_be_written(self):
        with open("/dev/full", "w", encoding="ascii") as full:
            run = self.tool("argparse.ArgumentParser().parse_args(['--help'])", stdout=full)
        self.assertNotIn("Exception", run.stderr)

    def test_signs_that_the_terminal_does_not_have(self):
        run = self.tool(
            "print_whole('Wei\\xdf\\udc80'); return 0", env={"PYTHONIOENCODING": "ascii", **PATH}
        )
        self.assertEqual((run.returncode, run.stdout), (0, "Wei??"))

    def test_progress_comes_after_two_seconds(self):
        body = (
            "console._shown -= 1; console.progress('soon'); console._shown -= 1.5;"
            "console.progress(lambda: 'now'); console.progress('again'); return 0"
        )
        self.assertEqual(self.tool(body).stderr, "tool: now\n")


PATH = {"PYTHONPATH": ":".join(sys.path)}

if __name__ == "__main__":
    unittest.main()
