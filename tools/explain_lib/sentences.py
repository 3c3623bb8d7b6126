"""One sentence on a move. A record that has one of its own is taken at its word."""

from explain_lib.figures import signed
from explain_lib.terms import GROUPS


def _points(chance):
    return f"{round(chance)} %"


def _first_words(line, count):
    return " ".join(line["san"].split()[:count])


def _mate_words(judged):
    """What is to be said where a mate is missed or allowed; None else."""
    best, played = judged.best, judged.played
    before = best.get("mate") if best else None
    after = played.get("mate")
    if before is not None and before > 0 and (after is None or after <= 0):
        return f"misses mate in {before}"
    if after is not None and after < 0 and (before is None or before >= 0):
        return f"allows mate in {-after}"
    return None


def _main_reason(judged):
    """The group in which most is lost, where the leaves tell it."""
    if judged.groups is None:
        return ""
    group, change, _ = min(judged.groups, key=lambda each: each[1])
    if change >= -0.1:
        return ""
    return f" Most of it is {GROUPS[group]}: {signed(change)} pawns."


def plain_sentence(judged):
    """From the numbers alone."""
    side = "White" if judged.white else "Black"
    if judged.san.endswith("#"):
        return f"{judged.written} is mate."
    if judged.best is None:
        return f"{judged.written} was played."
    if judged.is_best:
        only = " and the only good one" if judged.mark == "!" else ""
        mate = judged.best.get("mate")
        if mate is not None and mate > 0:
            return f"{judged.written} is the best move{only}: mate in {mate}."
        return (
            f"{judged.written} is the best move{only}: {side} keeps {_points(judged.before)} "
            "of the chances."
        )
    instead = f"{judged.label}{_first_words(judged.best, 1)}"
    mate = _mate_words(judged)
    if mate:
        return f"{judged.written} {mate}; {instead} was best.{_main_reason(judged)}"
    if judged.loss < 1:
        return f"{judged.written} is as good as the best move, {instead}."
    return (
        f"{judged.written} takes {side}'s chances from {_points(judged.before)} to "
        f"{_points(judged.after)}; {instead} was best.{_main_reason(judged)}"
    )


def sentence_of(record, judged):
    """The sentence of the record, else a plain one."""
    for holder in (record, record["played"]):
        if isinstance(holder.get("sentence"), str) and holder["sentence"]:
            return holder["sentence"]
    return plain_sentence(judged)
