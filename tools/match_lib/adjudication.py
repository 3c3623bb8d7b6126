"""Games that are decided before their end, because both players say the same.

Engines count in units of their own: what one calls 100 may be 200 to another. So each score is
first put into hundredths of that engine's pawn, which its user may state, and nothing counts that
only one of the two reports.
"""

from dataclasses import asdict, dataclass

# In hundredths of a pawn: more than any score that is not a mate.
MATE = 10**6
# The reasons of such ends.
DRAW, WIN = "draw by adjudication", "win by adjudication"


@dataclass(frozen=True)
class Rule:
    """Reports that decide a game: `count` in a row from each player, of `score` hundredths of a
    pawn, from move `moves` on."""

    count: int
    score: int
    moves: int = 1

    @staticmethod
    def parse(words, keys):
        """The rule of texts such as count=4; ValueError when they are none."""
        values = {}
        for word in words:
            key, mark, text = word.partition("=")
            if key not in keys or not mark or key in values:
                raise ValueError(f"{word!r} is not {'=, '.join(keys)}=, each once")
            if not (text.isascii() and text.isdigit() and len(text) < 6):
                raise ValueError(f"{key}: {text!r} is not a whole number")
            values[key] = int(text)
        if missing := [key for key in keys if key not in values]:
            raise ValueError(f"{missing[0]}=NUMBER is needed")
        if values["count"] < 1:
            raise ValueError("count: 0 reports decide nothing")
        return Rule(**values)

    def as_dict(self):
        return asdict(self)


class Adjudicator:
    """Follows the reports of one game. Without rules it never decides."""

    def __init__(self, draw, resign, pawns):
        self._draw, self._resign = draw, resign
        self._pawns = pawns
        # How many reports in a row each player has given, of a draw, of a win, of a loss.
        self._runs = [{"draw": 0, "win": 0, "loss": 0} for _ in range(2)]

    def report(self, index, score, mate, move_number):
        """Takes what White (0) or Black (1) says of his move, None for nothing: the verdict, or
        None while the game goes on."""
        value = self._value(index, score, mate)
        runs = self._runs[index]
        for word, holds in (
            ("draw", self._says_draw(value, move_number)),
            ("win", self._says_decided(value)),
            ("loss", self._says_decided(None if value is None else -value)),
        ):
            runs[word] = runs[word] + 1 if holds else 0
        return self._verdict()

    def _value(self, index, score, mate):
        if mate is not None:
            return MATE if mate > 0 else -MATE
        return None if score is None else 100 * score / self._pawns[index]

    def _says_draw(self, value, move_number):
        rule = self._draw
        return rule and value is not None and move_number >= rule.moves and abs(value) <= rule.score

    def _says_decided(self, value):
        return self._resign and value is not None and value >= self._resign.score

    def _verdict(self):
        white, black = self._runs
        if self._draw and min(white["draw"], black["draw"]) >= self._draw.count:
            return "1/2-1/2", DRAW
        if self._resign and min(white["win"], black["loss"]) >= self._resign.count:
            return "1-0", WIN
        if self._resign and min(white["loss"], black["win"]) >= self._resign.count:
            return "0-1", WIN
        return None
