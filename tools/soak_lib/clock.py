"""Time controls and the GUI's own clocks, in milliseconds."""

import re
from dataclasses import dataclass

from orvelin_lib.board import WHITE

# From the shortest clock on which the engine still has a budget to one of ten seconds.
DEFAULT_CONTROLS = (
    "50+10 50+50 100+0 100+10 20/100+0 250+5 500+0 40/500+0 1000+0 1000+20 20/1000+10 "
    "3000+0 10000+0 10000+100"
).split()
SHORTEST_BASE = 50
# What the engine takes for movestogo when none is given.
ASSUMED_MOVES = 40


@dataclass(frozen=True)
class Control:
    """BASE+INCREMENT, or MOVES/BASE+INCREMENT when the base comes again every MOVES moves."""

    name: str
    base: int
    increment: int
    moves: int

    @staticmethod
    def parse(text):
        match = re.fullmatch(r"(?:(\d+)/)?(\d+)(?:\+(\d+))?", text)
        if match is None:
            raise ValueError(f"not a time control: '{text}'")
        moves, base, increment = (int(group or 0) for group in match.groups())
        if base < SHORTEST_BASE:
            raise ValueError(f"a clock of less than {SHORTEST_BASE} ms: '{text}'")
        return Control(text, base, increment, moves)


class Clock:
    """The clock of one player."""

    def __init__(self, control):
        self._control = control
        self._moves_left = control.moves
        self.remaining = float(control.base)

    @property
    def milliseconds(self):
        """What the engine is told."""
        return max(int(self.remaining), 0)

    @property
    def moves_left(self):
        return self._moves_left

    def has_budget(self):
        """False when the engine would divide by its budget of zero and end, which is by design."""
        moves = self._moves_left or ASSUMED_MOVES
        return self.milliseconds + self._control.increment * moves >= moves + 2

    def refill(self):
        """Back to at least the time of the start."""
        self.remaining = max(self.remaining, float(self._control.base))

    def spend(self, elapsed):
        """Takes the time of one move off and adds what a finished move earns."""
        self.remaining = max(self.remaining - elapsed, 0.0) + self._control.increment
        if self._moves_left:
            self._moves_left -= 1
            if self._moves_left == 0:
                self._moves_left = self._control.moves
                self.remaining += self._control.base


def go_words(control, clocks, side):
    """The limits of a go command for the side."""
    white, black = (clocks[0], clocks[1])
    words = f"wtime {white.milliseconds} btime {black.milliseconds}"
    if control.increment:
        words += f" winc {control.increment} binc {control.increment}"
    own = white if side == WHITE else black
    if own.moves_left:
        words += f" movestogo {own.moves_left}"
    return words
