"""The table while the match goes on: in its place on a terminal, else as a line now and then."""

import contextlib
import shutil
import sys
import time

# In seconds; the table needs no more often to be drawn.
PAUSE = 0.5


class Display:
    """Draws on standard error. Whatever else is said there goes through say()."""

    def __init__(self, console, is_quiet):
        self._console = console
        self._is_quiet = is_quiet
        self._is_terminal = sys.stderr is not None and sys.stderr.isatty()
        self._height = 0
        self._drawn = 0.0

    def say(self, words):
        self._erase()
        self._console.say(words)

    def update(self, line, table):
        """Both are functions, called where they are shown."""
        if self._is_quiet:
            return
        if not self._is_terminal:
            self._console.progress(line)
            return
        now = time.monotonic()
        if now - self._drawn < PAUSE:
            return
        self._drawn = now
        self._erase()
        text = f"{table()}\n{line()}\n"
        width = shutil.get_terminal_size().columns
        # Long lines take several of the terminal's.
        self._height = sum(max(1, -(-len(row) // width)) for row in text.splitlines())
        self._write(text)

    def close(self):
        """Leaves the place to the table that goes to standard output."""
        self._erase()

    def _erase(self):
        if self._height:
            self._write(f"\x1b[{self._height}A\x1b[J")
            self._height = 0

    @staticmethod
    def _write(text):
        # Nobody may be there any more to whom it could be shown.
        with contextlib.suppress(OSError):
            sys.stderr.write(text)
            sys.stderr.flush()
