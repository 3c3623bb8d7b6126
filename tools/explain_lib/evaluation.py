"""The table that the engine prints on `eval`, and the sum that is made of it."""

import math
import struct
from dataclasses import dataclass

from explain_lib.terms import (
    ENDGAMES,
    FULL_PHASE,
    PAWN_END_GAME,
    PAWN_MIDDLE_GAME,
    PHASE_COUNTS,
    TERMS,
)

BISHOPS = "opposite_colored_bishops"
# Half a unit of the sixth digit, the last that the engine prints, and a little for what it rounded
# before.
PRINTED_ERROR = 5.2e-6


class BadTable(Exception):
    """What the engine printed is not the table of the terms."""


@dataclass(frozen=True)
class Contribution:
    """A term: what the engine prints for it, and both halves by their share of the phase."""

    name: str
    middle_game: float
    end_game: float
    middle_share: float

    @property
    def middle_part(self):
        return self.middle_game * self.middle_share

    @property
    def end_part(self):
        return self.end_game * (1 - self.middle_share)

    @property
    def net(self):
        return self.middle_part + self.end_part


def middle_game_share(board):
    """1 for the pieces of the start, 0 for pawns and kings alone; more than 1 after promotions."""
    return sum(PHASE_COUNTS.get(piece.upper(), 0) for piece in board) / FULL_PHASE


def endgame_function(board):
    """The name of the special function that the engine has for this material, or None."""
    pieces = {True: "", False: ""}
    for kind in "KQRBNP":
        pieces[True] += kind * board.count(kind)
        pieces[False] += kind * board.count(kind.lower())
    names = (pieces[True] + pieces[False], pieces[False] + pieces[True])
    return next((name for name in names if name in ENDGAMES), None)


NO_MATE_TITLE = "Drawn: no side can give mate."
NO_MATE_NOTE = "The game is drawn: no side can give mate. These terms decide nothing."


def is_mate_impossible(board):
    """Whether no side can ever give mate: with a minor piece at most, or with bishops on squares
    of one colour."""
    pieces = [(piece.upper(), at) for at, piece in enumerate(board) if piece.upper() in "QRBNP"]
    kinds = [kind for kind, _ in pieces]
    if kinds in ([], ["N"]):
        return True
    colours = {(at // 8 + at % 8) % 2 for _, at in pieces}
    return set(kinds) == {"B"} and len(colours) == 1


def endgame_note(name):
    return f"For {name} the search takes a function of its own instead of this sum."


def _finite(text):
    number = float(text)
    if not math.isfinite(number):
        raise ValueError(text)
    return number


def read_table(lines):
    """({name: (middle game, end game)}, total) from the lines that the engine printed."""
    table, total = {}, None
    for line in lines:
        words = line.split()
        try:
            if line.startswith("Total score:"):
                total = int(words[2])
            elif len(words) == 3 and words[0] in TERMS:
                table[words[0]] = (_finite(words[1]), _finite(words[2]))
        except (IndexError, ValueError):
            raise BadTable(f"cannot be read: {line}") from None
    missing = [name for name in TERMS if name not in table]
    if missing:
        raise BadTable(f"{len(missing)} of {len(TERMS)} terms are missing: {missing[0]}, ...")
    if total is None:
        raise BadTable("the line with the total score is missing")
    return table, total


def _single(number):
    """Rounded to single precision, in which the engine adds."""
    return struct.unpack("f", struct.pack("f", number))[0]


def _added(total, part, error):
    """The running total of the engine's table after a term that is off by an error."""
    for half in (part.middle_part, part.end_part):
        total = _single(total + half + abs(half) * error)
    return int(total)


class Evaluation:
    """A position's terms, their sum, and how that agrees with the engine's own total.

    The engine cuts the running total of its table to a whole number after every term, and halves
    the end for bishops of opposite colours. The search rounds once, at the end.
    """

    def __init__(self, board, lines):
        table, self.printed_total = read_table(lines)
        self.middle_share = middle_game_share(board)
        self.endgame = endgame_function(board)
        self.is_drawn = is_mate_impossible(board)
        self.parts = [Contribution(name, *table[name], self.middle_share) for name in TERMS]
        self.halved = table[BISHOPS][0] != 0
        self.sum = sum(part.net for part in self.parts)
        whole = self.sum / (2 if self.halved else 1)
        self.total = int(math.copysign(math.floor(abs(whole) + 0.5), whole))

    @property
    def pawn(self):
        """What a pawn counts in this phase, in units of the engine."""
        share = self.middle_share
        return share * PAWN_MIDDLE_GAME + (1 - share) * PAWN_END_GAME

    def pawns(self, units):
        return units / self.pawn

    def biggest_first(self):
        return sorted(self.parts, key=lambda part: -abs(part.net))

    def expected_totals(self):
        """The least and the greatest total that the engine's own way of adding can come to: the
        terms are printed with six digits, which can decide where a number is cut."""
        low = high = 0
        for part in self.parts:
            low = _added(low, part, -PRINTED_ERROR)
            high = _added(high, part, PRINTED_ERROR)
        return (int(low / 2), int(high / 2)) if self.halved else (low, high)

    @property
    def agrees(self):
        low, high = self.expected_totals()
        return low <= self.printed_total <= high

    def check_text(self):
        """What the check of the sum against the engine's total gave."""
        if self.agrees:
            return (
                f"The engine prints {self.printed_total} for it, cutting to a whole number after "
                "each term: this agrees."
            )
        low, high = self.expected_totals()
        wanted = str(low) if low == high else f"{low} to {high}"
        return (
            f"THE SUMS DO NOT AGREE: the engine prints the total {self.printed_total}, "
            f"its terms make {wanted}."
        )

    def notes(self):
        """What a reader has to know beside the terms."""
        notes = []
        if self.is_drawn:
            notes.append(NO_MATE_NOTE)
        if self.halved:
            notes.append(f"Bishops of opposite colours: the sum of {self.sum:.0f} units is halved.")
        if self.endgame:
            notes.append(endgame_note(self.endgame))
        return notes

