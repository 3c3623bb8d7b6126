#!/usr/bin/env python3
"""An engine that plays the first legal move by its text, and does wrong what it is told to.

fake_engine.py KIND [COUNT [LOG]]: misbehaves from its search COUNT on (2 if not given), counted
over all games of the process. LOG takes what it was told.
"""

import os
import signal
import sys
import time

sys.dont_write_bytecode = True
sys.path.insert(0, os.path.join(os.path.dirname(os.path.realpath(__file__)), "..", "..", "tools"))

from orvelin_lib.board import START_FEN  # noqa: E402: the path has to be set first
from orvelin_lib.rules import Referee  # noqa: E402

KIND, COUNT, LOG = [*sys.argv[1:], *("2", os.devnull)[len(sys.argv) - 2 :]]


def say(line):
    print(line, flush=True)


class FakeEngine:
    """Knows the rules, and no more."""

    def __init__(self):
        self._chess960 = False
        self._referee = None
        self._searches = 0
        self._hoard = []
        self._late = None
        self._ponders = False

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
            move = self._best_move()
            say(f"{move}\n{move}")
        elif KIND == "late":
            self._late = self._best_move()
        else:
            return KIND == "stall"
        return True

    def _answer(self):
        self._searches += 1
        if KIND == "slow":
            time.sleep(0.3)
        elif KIND == "leak":
            self._hoard.append(bytearray(b"x") * (1 << 20))
        score = {"winning": "cp 900", "losing": "cp -900", "level": "cp 3"}.get(KIND, "mate 4")
        say(f"info depth 7 score {score} nodes 700 pv")
        say("info depth 9 multipv 2 score cp 0 nodes 900 pv")
        say("info string score cp 5 depth 1 nodes 5")
        if self._searches < int(COUNT) or not self._misbehave():
            say(self._best_move())

    def _stop(self):
        if self._late:
            say(self._late)
            self._late = None
        elif self._ponders:
            say(self._best_move())
        self._ponders = False

    def obey(self, line):
        words = line.split()
        if words[0] == "uci" and KIND != "silent":
            say(f"id name Fake {KIND}\noption name Hash type spin default 1 min 1 max 64")
            say("option name Play Style type combo default Calm var Calm var Very Risky")
            say("option name Clear Hash type button")
            say("option name UCI_Chess960 type check\noption name Ponder type check\nuciok")
        elif words[0] == "isready":
            say("readyok")
        elif words[0] == "setoption" and words[2] == "UCI_Chess960":
            self._chess960 = words[4] == "true"
        elif words[0] == "position":
            self._set_position(words)
        elif words[0] == "go" and "ponder" in words and KIND == "impatient":
            say(self._best_move())
        elif words[0] == "go" and "ponder" in words:
            self._ponders = True
        elif words[0] in ("go", "ponderhit"):
            self._ponders = False
            self._answer()
        elif words[0] == "stop":
            self._stop()


def main():
    engine = FakeEngine()
    with open(LOG, "a", encoding="utf-8") as log:
        print(f"pid {os.getpid()}", file=log, flush=True)
        for line in sys.stdin:
            print(line.strip(), file=log, flush=True)
            if line == "quit\n" and KIND != "clinging":
                return 5 if KIND == "badquit" else 0
            engine.obey(line)
    return 0


if __name__ == "__main__":
    sys.exit(main())
