"""What a move gave away: the chances before and after it, its mark, and a side's accuracy."""

from dataclasses import dataclass

from explain_lib.evaluation import middle_game_share
from explain_lib.figures import signed
from explain_lib.terms import GROUPS, PAWN_END_GAME, PAWN_MIDDLE_GAME, TERMS
from orvelin_lib.fen import Fen

# From so many points of the chances on, of 100, that a move gives away.
MARKS = ((20, "??", "blunder"), (10, "?", "mistake"), (5, "?!", "inaccuracy"))
GOOD = ("!", "only good move")
# The second best move gives away as much: then the best one was the only good one.
ONLY_POINTS = 10
# A move that gives away as many points counts half for the accuracy.
HALF_POINTS = 10
NEAR_NOTHING = 0.005
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


@dataclass
class Judged:
    """A move that was played, against the best one."""

    label: str
    san: str
    move: str
    white: bool
    best: dict
    played: dict
    is_best: bool
    before: float
    after: float
    mark: str
    mark_name: str
    groups: list
    sentence: str = ""

    @property
    def loss(self):
        return max(self.before - self.after, 0.0)

    @property
    def written(self):
        return f"{self.label}{self.san}"

    @property
    def accuracy(self):
        return 100 * 2 ** (-self.loss / HALF_POINTS)


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


def _turned(record):
    """The score of the position after a move, for the side that made it."""
    return {
        "win": record["loss"],
        "draw": record["draw"],
        "loss": record["win"],
        "score": -record["score"],
        "mate": None if record.get("mate") is None else -record["mate"],
        "moves": "",
        "san": "",
        "leaf": None,
    }


def judge(record, following):
    """The move played in a record; the record behind it is asked where it was not searched."""
    fen, made = record["fen"], record["played"]
    best = record["lines"][0] if record["lines"] else None
    is_best = best is not None and best["moves"].split()[:1] == [made["move"]]
    played = best if is_best else made.get("line") or _turned(following)
    before = chances(best) if best else chances(record)
    after = before if is_best else chances(played)
    loss = before - after
    mark, name = next(((m, n) for points, m, n in MARKS if loss >= points), ("", ""))
    if is_best and len(record["lines"]) > 1 and not mark:
        if before - chances(record["lines"][1]) >= ONLY_POINTS:
            mark, name = GOOD
    return Judged(
        label=label_of(fen),
        san=made["san"],
        move=made["move"],
        white=white_to_move(fen),
        best=best,
        played=played,
        is_best=is_best,
        before=before,
        after=min(after, before),
        mark=mark,
        mark_name=name,
        groups=_difference(record, best, played),
    )


@dataclass
class Side:
    """How one side played."""

    moves: int
    accuracy: float
    marks: dict


def side_of(judged, white):
    """The accuracy and the marks of a side; the accuracy of no move is None."""
    own = [each for each in judged if each.white == white]
    marks = {mark: sum(each.mark == mark for each in own) for mark in ("??", "?", "?!", "!")}
    mean = sum(each.accuracy for each in own) / len(own) if own else None
    return Side(len(own), mean, marks)
