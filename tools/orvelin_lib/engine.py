"""A UCI engine that is asked and answers."""

import collections
import os
import time

from orvelin_lib.process import EngineFailure, EngineProcess

__all__ = ["EngineFailure", "UciEngine", "number_after"]


def number_after(words, key):
    """The number after a word of an info line, None when there is none."""
    if key not in words:
        return None
    index = words.index(key) + 1
    try:
        return int(words[index])
    except (IndexError, ValueError):
        return None


class UciEngine(EngineProcess):
    """One engine. Its lines wait with the moments of their arrival until they are taken."""

    def __init__(self, command, directory=None, patience=10.0):
        self.patience = patience
        self.name = os.path.basename(command[0])
        self._options = {}
        self._lines = collections.deque()
        super().__init__(command, directory)

    def __enter__(self):
        return self

    def __exit__(self, *_):
        self.kill()

    def take(self, moment, line):
        self._lines.append((moment, line))

    def wait_for(self, word, seconds=None):
        """All (moment, line) up to the first line that begins with the word."""
        seconds = self.patience if seconds is None else seconds
        deadline = time.monotonic() + seconds
        taken = []
        while True:
            while self._lines:
                taken.append(self._lines.popleft())
                if taken[-1][1].split(" ")[0] == word:
                    return taken
            left = deadline - time.monotonic()
            if left <= 0:
                raise self.failure("stall", f"no {word} within {seconds:.1f} s")
            self.listen(left)

    def ask(self, line, word, seconds=None):
        """Sends a line; the seconds until the answer that begins with the word."""
        began = time.monotonic()
        self.send(line)
        return self.wait_for(word, seconds)[-1][0] - began

    def handshake(self):
        """Asks for the name and the options."""
        self.send("uci")
        for _, line in self.wait_for("uciok"):
            if line.startswith("id name "):
                self.name = line[len("id name ") :]
            elif line.startswith("option name "):
                option = line[len("option name ") :].split(" type ")[0]
                self._options[option.lower()] = option

    def set_option(self, name, value):
        """Sets an option if the engine has it; whether it has."""
        known = self._options.get(name.lower())
        if known is not None:
            self.send(f"setoption name {known} value {value}")
        return known is not None

    def ready(self, seconds=None):
        """The seconds until the engine is ready again."""
        return self.ask("isready", "readyok", seconds)

    def new_game(self):
        """The seconds until the engine is ready for another game."""
        began = time.monotonic()
        self.send("ucinewgame")
        self.ready()
        return time.monotonic() - began

    def quit(self, seconds=None):
        """The seconds from `quit` to the end of the process."""
        began = time.monotonic()
        super().quit(self.patience if seconds is None else seconds)
        return time.monotonic() - began
