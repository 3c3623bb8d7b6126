"""A game move by move: the score, and the term that changed most."""

from dataclasses import dataclass

from explain_lib.evaluation import endgame_function, is_mate_impossible
from explain_lib.figures import signed
from explain_lib.judgement import (
    judged_move,
    label_of,
    pawn_of,
    score_text,
    squares_of,
    white_to_move,
)
from explain_lib.records import how, is_searched
from explain_lib.terms import TERMS
from orvelin_lib.board import Position
from orvelin_lib.rules import legal_moves
from orvelin_lib.table import counted

# A mate counts as a score beyond all others, in pawns.
MATE_PAWNS = 1000.0
NOT_JUDGED = (
    "The moves are not judged: the records have no search of the moves that were played "
    "(--moves best,played)."
)


def _is_over(record):
    return not legal_moves(Position(record["fen"]))


def _mate(record):
    """Moves to the mate. What is not searched knows of none, even of one on the board."""
    if is_searched(record):
        return record.get("mate")
    return 0 if Position(record["fen"]).in_check() and _is_over(record) else None


@dataclass(frozen=True)
class Score:
    """What a position is worth for White: pawns, and how that is written."""

    pawns: float
    text: str

    @classmethod
    def of(cls, record):
        fen, mate = record["fen"], _mate(record)
        sign = 1 if white_to_move(fen) else -1
        if mate is None and not is_searched(record) and _is_over(record):
            return cls(0.0, signed(0.0))
        if mate is None:
            pawns = record["score"] / pawn_of(fen)
        else:
            # Who is mated already has a mate of 0.
            pawns = (MATE_PAWNS - abs(mate)) * (1 if mate > 0 else -1)
        return cls(sign * pawns, score_text({**record, "mate": mate}, fen))


@dataclass(frozen=True)
class Step:
    """One half-move and the position after it."""

    number: str
    san: str
    mark: str
    score: Score
    term: str
    change: float
    endgame: bool


def biggest_change(before, after):
    """(name, pawns) of the term that changed most between two records. The right to move, which
    changes with every move, is left out."""
    changes = [
        (name, new - old)
        for name, old, new in zip(TERMS, before["terms"], after["terms"])
        if name != "stm"
    ]
    name, units = max(changes, key=lambda change: abs(change[1]))
    return name, units / pawn_of(after["fen"])


def steps_of(records):
    """The steps of a game. Without a search the score is the static evaluation."""
    steps = []
    for before, after in zip(records, records[1:]):
        mark = judged_move(before).mark
        term, change = biggest_change(before, after)
        term = TERMS[term].full
        endgame = endgame_function(squares_of(after["fen"])) is not None
        played = before["played"]
        steps.append(
            Step(
                label_of(before["fen"]), played["san"], mark, Score.of(after), term, change, endgame
            )
        )
    return steps


def words_for(records):
    """How the scores were come by."""
    return f"{how(records[0])}. With each move the term that changed most."


def _drawn_note(records):
    """From where on no side can give mate, whatever terms still change."""
    for index, each in enumerate(records):
        if is_mate_impossible(squares_of(each["fen"])):
            before = records[max(index - 1, 0)]
            move = f"{label_of(before['fen'])} {before['played']['san']}" if index else "the start"
            return [f"From {move} on the game is drawn: no side can give mate."]
    return []


def notes_for(steps, records):
    """What a reader has to know beside the scores."""
    return _drawn_note(records) + _notes_on_scores(steps, records)


def _notes_on_scores(steps, records):
    if is_searched(records[0]):
        judged = any(each["played"] and each["played"].get("judgement") for each in records)
        return [] if judged else [NOT_JUDGED]
    special = [step for step in steps if step.endgame]
    if not special:
        return []
    first = special[0]
    return [
        f"{counted(len(special), 'half-move')} from {first.number} {first.san} on "
        f"{'leads' if len(special) == 1 else 'lead'} to material for which the search "
        "takes a function of its own instead of the sum of the terms."
    ]
