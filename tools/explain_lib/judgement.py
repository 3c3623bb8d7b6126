"""What the records say of the moves of a game, and what the difference of two lines is made of."""

from dataclasses import dataclass

from explain_lib.evaluation import middle_game_share
from explain_lib.figures import signed
from explain_lib.terms import GROUPS, PAWN_END_GAME, PAWN_MIDDLE_GAME, TERMS
from orvelin_lib.fen import Fen

# What the marks of the records are called.
MARK_NAMES = {"??": "blunder", "?": "mistake", "?!": "inaccuracy", "!": "only good move"}
# A term that moved less than this, in pawns, is not told.
LEAST_PAWNS = 0.005


def chances(score):
    """Of 100 points: a win is all of them and a draw half, for the side to move."""
    return (score["win"] + score["draw"] / 2) / 10


def squares_of(fen):
    """The board as 64 letters."""
    return Fen.parse(fen).board


def pawn_of(fen):
    """Engine units in a pawn of the phase."""
    share = middle_game_share(squares_of(fen))
    return share * PAWN_MIDDLE_GAME + (1 - share) * PAWN_END_GAME


def white_to_move(fen):
    return fen.split()[1] == "w"


def score_text(score, fen):
    """A score for White: in pawns of the phase, or as moves to the mate."""
    sign = 1 if white_to_move(fen) else -1
    mate = score.get("mate")
    if mate == 0:
        return "mate"
    if mate is not None:
        return ("+" if sign * mate > 0 else "-") + f"M{abs(mate)}"
    return signed(sign * score["score"] / pawn_of(fen))


def groups_of(terms, scale):
    """[(group, sum, [(term, value)])] of all groups, the largest first, and of the terms in each
    those that are more than nothing. Values are in pawns."""
    sums = {name: 0.0 for name in GROUPS}
    parts = {name: [] for name in GROUPS}
    for index, (term, units) in enumerate(zip(TERMS.values(), terms)):
        value = units * scale
        sums[term.group] += value
        if abs(value) >= LEAST_PAWNS:
            parts[term.group].append((index, value))
    for each in parts.values():
        each.sort(key=lambda part: -abs(part[1]))
    order = sorted(GROUPS, key=lambda name: -abs(sums[name]))
    return [(GROUPS.index(name), sums[name], parts[name]) for name in order]


@dataclass(frozen=True)
class Judged:
    """A move that was played, against the best one."""

    label: str
    san: str
    move: str
    white: bool
    best: dict
    played: dict
    is_best: bool
    groups: list
    # As the record has it; None where the move was not searched.
    judgement: dict

    @property
    def mark(self):
        return self.judgement["mark"] if self.judgement else ""

    @property
    def mark_name(self):
        return MARK_NAMES.get(self.mark, "")

    @property
    def loss(self):
        """In points of 100; 0 where it is not known."""
        return self.judgement["lost"] / 10 if self.judgement else 0

    @property
    def accuracy(self):
        """None where it is not known, and where there was no other move."""
        return self.judgement["accuracy"] if self.judgement else None

    @property
    def sentence(self):
        return self.judgement["sentence"] if self.judgement else ""

    @property
    def written(self):
        return f"{self.label}{self.san}"


def label_of(fen):
    fields = fen.split()
    return fields[5] + ("." if fields[1] == "w" else "...")


def _difference(record, best, played):
    """The groups of what the move gave away or won, for the side that made it; None where a leaf
    is missing."""
    if not (best and played and best.get("leaf") and played.get("leaf")):
        return None
    sign = 1 if white_to_move(record["fen"]) else -1
    terms = [
        p - b for b, p in zip(best["leaf"]["terms"], played["leaf"]["terms"])
    ]
    return groups_of(terms, sign / pawn_of(record["fen"]))


def judged_move(record):
    """The move played in a record."""
    fen, made = record["fen"], record["played"]
    best = record["lines"][0] if record["lines"] else None
    played = made.get("line")
    return Judged(
        label=label_of(fen),
        san=made["san"],
        move=made["move"],
        white=white_to_move(fen),
        best=best,
        played=played,
        is_best=best is not None and best["moves"].split()[:1] == [made["move"]],
        groups=_difference(record, best, played),
        judgement=made.get("judgement"),
    )


@dataclass
class Side:
    """How one side played."""

    moves: int
    accuracy: float
    marks: dict


def side_of(judged, white):
    """The marks and the mean accuracy of a side; the accuracy of no move is None."""
    own = [each for each in judged if each.white == white]
    marks = {mark: sum(each.mark == mark for each in own) for mark in MARK_NAMES}
    known = [each.accuracy for each in own if each.accuracy is not None]
    return Side(len(own), sum(known) / len(known) if known else None, marks)
