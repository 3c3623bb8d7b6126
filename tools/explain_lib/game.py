"""A game move by move: the score, the evaluation, and the term that changed most."""

from dataclasses import dataclass

from explain_lib.evaluation import Evaluation, biggest_change
from explain_lib.figures import counted
from explain_lib.session import Line, Score


@dataclass(frozen=True)
class Step:
    """One half-move and the position after it."""

    number: str
    san: str
    evaluation: Evaluation
    score: Score
    term: str
    change: float


def follow(session, game, limit, console=None):
    """The steps of a game. Without a limit the score is the evaluation itself."""
    line = Line(game.fen, game.start)
    before = session.evaluation(line)
    steps = []
    for played in game.moves:
        line.play(played.move)
        after = session.evaluation(line)
        score = Score.of_end(line.position)
        if score is None and limit is None:
            score = Score.of_pawns(after.pawns(after.total))
        elif score is None:
            score = session.score(line, limit, after)
        term, change = biggest_change(before, after)
        steps.append(Step(played.number, played.san, after, score, term, after.pawns(change)))
        if console is not None:
            console.progress(f"half-move {len(steps)} of {len(game.moves)}")
        before = after
    return steps


def words_for(limit, engine):
    """How the scores were come by."""
    how = "static evaluation" if limit is None else f"search by go {limit}"
    return f"{engine}, {how}. With each move the term that changed most."


def notes_for(steps, limit):
    """(what a reader has to know beside the scores, whether it is an alarm)."""
    notes = []
    special = [step for step in steps if step.evaluation.endgame]
    if special and limit is None:
        first = special[0]
        notes.append(
            (
                f"{counted(len(special), 'half-move')} from {first.number} {first.san} on "
                f"{'leads' if len(special) == 1 else 'lead'} to material for which the search "
                "takes a function of its own instead of the sum shown here.",
                False,
            )
        )
    for step in steps:
        if not step.evaluation.agrees:
            text = f"After {step.number} {step.san}: {step.evaluation.check_text()}"
            notes.append((text, True))
    return notes
