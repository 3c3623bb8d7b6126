"""The table on a terminal, which is another one each time it is drawn."""

import os
import pty
import select
import subprocess
import sys
import time
import unittest

from support import SHORT, MatchTest

CODE = """
import os, sys
from match_lib import display
from match_lib.display import Display
from orvelin_lib.tool_main import Console

display.PAUSE = 0
shown = Display(Console("test"), False)
shown.update(lambda: "line", lambda: "x" * 45 + "\\n" + "y")
shown.say("a fault")
shown.update(lambda: "line", lambda: "z")
shown.update(lambda: "last", lambda: "z")
shown.close()
"""


class TerminalTest(MatchTest):
    def on_terminal(self, *command):
        """What a command writes on a terminal of 40 columns."""
        outer, inner = pty.openpty()
        environment = {**os.environ, "COLUMNS": "40", "LINES": "24"}
        with subprocess.Popen(
            command, stdin=inner, stderr=inner, stdout=subprocess.DEVNULL, env=environment
        ) as process:
            os.close(inner)
            text, deadline = b"", time.monotonic() + 60
            while time.monotonic() < deadline:
                if select.select([outer], [], [], 1)[0]:
                    try:
                        text += os.read(outer, 4096)
                    except OSError:
                        break
            os.close(outer)
        self.assertEqual(process.returncode, 0, text)
        return text.decode().replace("\r\n", "\n")

    def test_it_is_drawn_in_its_place(self):
        # The first line takes two of the terminal's.
        expected = (
            "x" * 45 + "\ny\nline\n" + "\x1b[4A\x1b[J" + "test: a fault\n"
            "z\nline\n" + "\x1b[2A\x1b[J" + "z\nlast\n" + "\x1b[2A\x1b[J"
        )
        self.assertEqual(self.on_terminal(sys.executable, "-c", CODE), expected)

    def test_a_match_draws_its_table(self):
        engines = (*self.fake(), *self.fake("level"), "--depth", "1")
        text = self.on_terminal(*self.arguments(*engines, *SHORT, "--games", "4"))
        self.assertIn("| good   |     1 |", text)
        self.assertIn("game 1 of 4, good +0 =1 -0", text)
        quiet = self.on_terminal(*self.arguments(*engines, *SHORT, "--games", "2", "--quiet"))
        self.assertEqual(quiet, "")


if __name__ == "__main__":
    unittest.main()
