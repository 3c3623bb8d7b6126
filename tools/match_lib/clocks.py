"""What a search is given, and the clocks of a game, in milliseconds."""

import math
import re
from dataclasses import dataclass

CONTROL = re.compile(r"(?:(\d+)/)?(?:(\d+):)?(\d+(?:\.\d+)?)(?:\+(\d+(?:\.\d+)?))?")
# In milliseconds: a month, above which engines and tools begin to count wrongly.
MOST_TIME = 31 * 24 * 3600 * 1000
MOST_MOVES = 1000
AMOUNTS = ("movetime", "nodes", "depth")
KINDS = ("tc", *AMOUNTS)


@dataclass(frozen=True)
class Limit:
    """A clock (`tc`: base, increment, and in how many moves the base comes again, 0 for never), or
    the same amount for every move."""

    kind: str
    amount: int
    increment: int = 0
    moves: int = 0

    @staticmethod
    def parse(kind, text):
        """The limit of a text; ValueError when it is none."""
        if kind != "tc":
            if not re.fullmatch("[1-9][0-9]{0,17}", text):
                raise ValueError(f"{kind}: {text!r} is not a whole number from 1 on")
            return Limit(kind, int(text))
        match = CONTROL.fullmatch(text)
        if match is None or not text.isascii():
            raise ValueError(f"not a time control: {text!r}; 10+0.1, 40/60 or 40/1:30+0.5 is one")
        moves, minutes, seconds, increment = match.groups(default="0")
        base = round(1000 * (60 * int(minutes) + float(seconds)))
        limit = Limit("tc", base, round(1000 * float(increment)), int(moves))
        if match[1] is not None and not 1 <= limit.moves <= MOST_MOVES:
            raise ValueError(f"not a time control: {text!r} has {limit.moves} moves")
        if base < 1:
            raise ValueError(f"not a time control: {text!r} begins without time")
        if max(base, limit.increment) > MOST_TIME:
            raise ValueError(f"not a time control: {text!r} is longer than a month")
        return limit

    @property
    def is_clock(self):
        return self.kind == "tc"

    def words(self):
        """As PGN writes a time control; others by their words."""
        if not self.is_clock:
            return f"{self.kind} {self.amount}"
        moves = f"{self.moves}/" if self.moves else ""
        increment = f"+{self.increment / 1000:g}" if self.increment else ""
        return f"{moves}{self.amount / 1000:g}{increment}"


class Clock:
    """The clock of one player in one game. Without a clock in the limit, that of a single move."""

    def __init__(self, limit, margin):
        self._limit = limit
        self._margin = margin
        self._moves_left = limit.moves
        timed = limit.is_clock or limit.kind == "movetime"
        self.remaining = float(limit.amount) if timed else math.inf

    @property
    def limit(self):
        return self._limit

    @property
    def moves_left(self):
        """Moves to the next control, 0 when there is none."""
        return self._moves_left

    @property
    def allowed(self):
        """So long the next move may take before the game is lost."""
        return self.remaining + self._margin

    def spend(self, elapsed):
        """Takes a move that was not too late off, and adds what a finished move earns."""
        if not self._limit.is_clock:
            return
        self.remaining = max(self.remaining - elapsed, 0.0) + self._limit.increment
        if self._moves_left:
            self._moves_left -= 1
            if self._moves_left == 0:
                self._moves_left = self._limit.moves
                self.remaining += self._limit.amount


def go_words(clocks, index):
    """The limits of a `go` for White (0) or Black (1)."""
    own, other = clocks[index], clocks[1 - index]
    limit = own.limit
    if not limit.is_clock:
        return f"{limit.kind} {limit.amount}"
    # Who plays against an opponent without a clock is told his own for both.
    if not other.limit.is_clock:
        other = own
    white, black = (own, other) if index == 0 else (other, own)
    words = f"wtime {_whole(white)} btime {_whole(black)}"
    if own.limit.increment or other.limit.increment:
        words += f" winc {white.limit.increment} binc {black.limit.increment}"
    if own.moves_left:
        words += f" movestogo {own.moves_left}"
    return words


def _whole(clock):
    # Some engines take a clock of 0 for none at all.
    return max(int(clock.remaining), 1)
