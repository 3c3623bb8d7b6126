#!/usr/bin/env python3
"""An engine that answers as a real one does until it misbehaves; for the tests of the soak run.

The name of the program that it was started by says what it does wrong: fake-KIND.
"""

import os
import signal
import sys
import time

sys.dont_write_bytecode = True
sys.path.insert(0, os.environ["SOAK_TOOLS"])

from orvelin_lib.board import START_FEN  # noqa: E402: the path has to be set first
from orvelin_lib.rules import Referee  # noqa: E402

KIND = os.path.basename(sys.argv[0]).removeprefix("fake-")


def say(line):
    print(line, flush=True)


class FakeEngine:
    """Plays the first legal move by its text, and from its second answer on wrongly."""

    def __init__(self):
        self._chess960 = False
        self._referee = None
        self._answers = 0
        self._hoard = []

    def _set_position(self, words):
        moves = words[words.index("moves") + 1 :] if "moves" in words else []
        fen = START_FEN if words[1] == "startpos" else " ".join(words[2:8])
        self._referee = Referee(fen, self._chess960)
        for move in moves:
            assert self._referee.play(move), move

    def _best_move(self):
        moves = sorted(self._referee.moves)
        if not moves:
            return "bestmove 0000"
        self._referee.play(moves[0])
        replies = sorted(self._referee.moves)
        return f"bestmove {moves[0]}" + (f" ponder {replies[0]}" if replies else "")

    def _misbehave(self):
        """True when the answer is no longer due."""
        if KIND == "illegal":
            say("bestmove a1a1")
        elif KIND == "ponder":
            say(f"bestmove {min(self._referee.moves)} ponder a1a1")
        elif KIND == "crash":
            os.kill(os.getpid(), signal.SIGSEGV)
        elif KIND == "exit":
            sys.exit(3)
        elif KIND == "mute":
            os.closerange(1, 3)
            signal.pause()
        elif KIND == "flood":
            while True:
                sys.stdout.write("x" * 4096)
        elif KIND == "twice":
            say("bestmove a1a1\n" + self._best_move())
        else:
            return KIND == "stall"
        return True

    def _go(self, pondering):
        say("info depth 1 score cp 0 pv")
        if not pondering:
            self._answer()
        elif KIND == "impatient":
            say(self._best_move())

    def _answer(self):
        self._answers += 1
        if KIND == "slow":
            time.sleep(0.3)
        elif KIND == "leak":
            self._hoard.append(bytearray(b"x") * (1 << 20))
        if self._answers < 2 or not self._misbehave():
            say(self._best_move())

    def obey(self, line):
        words = line.split()
        if words[0] == "uci":
            say("uciok")
        elif words[0] == "isready":
            say("readyok")
        elif words[0] == "setoption" and words[2] == "UCI_Chess960":
            self._chess960 = words[4] == "true"
        elif words[0] == "position":
            self._set_position(words)
        elif words[0] == "go":
            self._go("ponder" in words)
        elif words[0] == "ponderhit":
            self._answer()
        elif words[0] == "stop":
            say(self._best_move())


def main():
    engine = FakeEngine()
    for line in sys.stdin:
        if line == "quit\n" and KIND != "clinging":
            return 5 if KIND == "badquit" else 0
        engine.obey(line)
    return 0


if __name__ == "__main__":
    sys.exit(main())
