"""What a page shows of a game or a position, made of its records."""

from explain_lib.evaluation import (
    NO_MATE_NOTE,
    endgame_function,
    endgame_note,
    is_mate_impossible,
)
from explain_lib.judgement import (
    chances,
    groups_of,
    judged_move,
    pawn_of,
    score_text,
    side_of,
    squares_of,
    white_to_move,
)
from explain_lib.records import how
from explain_lib.terms import GROUPS, TERMS

UNEXPLAINED = {
    "mate or draw": "The score is a mate, or a draw by rule: no sum of terms.",
    "endgame": "The score is that of a known ending: no sum of terms.",
    "not found": "No position was found whose evaluation is the score.",
    "not asked": "The position behind the score was not looked for.",
}


def _groups(groups):
    """Rounded for the page; sums are rounded by themselves."""
    if groups is None:
        return None
    return [
        [group, round(total, 3), [[term, round(value, 3)] for term, value in parts]]
        for group, total, parts in groups
    ]


def _leaf_groups(leaf, fen):
    return None if leaf is None else _groups(groups_of(leaf["terms"], 1 / pawn_of(fen)))


def white_chances(record):
    value = chances(record)
    return value if white_to_move(record["fen"]) else 100 - value


def _bars_note(record):
    """Why the score is not that of the bars of the position; nothing where no rule says so."""
    board = squares_of(record["fen"])
    if is_mate_impossible(board):
        return NO_MATE_NOTE
    # By stalemate, or because nothing else is left to play.
    if record["draw"] == 1000:
        return "The game is drawn. These terms decide nothing."
    endgame = endgame_function(board)
    return endgame_note(endgame) if endgame else ""


def _position(record):
    fen = record["fen"]
    return {
        "fen": fen,
        "chances": round(white_chances(record), 1),
        "score": score_text(record, fen),
        "mate": record.get("mate") is not None,
        "groups": _groups(groups_of(record["terms"], 1 / pawn_of(fen))),
        "note": _bars_note(record),
    }


def line_of(record, line):
    """A line as the page shows it; its score is White's."""
    value = chances(line)
    fen = record["fen"]
    leaf = line.get("leaf")
    why = line.get("unexplained")
    return {
        "moves": line["moves"].split(),
        "san": line["san"].split(),
        "score": score_text(line, fen),
        "bound": bool(line.get("at_least")),
        "chances": round(value if white_to_move(fen) else 100 - value, 1),
        "leaf": leaf["moves"].split() if leaf else None,
        "leafFen": leaf.get("fen") if leaf else None,
        "groups": _leaf_groups(leaf, fen),
        "why": None if leaf else UNEXPLAINED.get(why, "Why is not told."),
    }


def _move(record, judged):
    best = line_of(record, judged.best) if judged.best else None
    played = line_of(record, judged.played) if judged.played else None
    return {
        "label": judged.label,
        "san": judged.san,
        "move": judged.move,
        "mark": judged.mark,
        "markName": judged.mark_name,
        "best": best,
        "played": None if judged.is_best else played,
        "isBest": judged.is_best,
        "loss": round(judged.loss, 1),
        "sentence": judged.sentence,
        "groups": None if judged.is_best else _groups(judged.groups),
        "white": judged.white,
    }


class Report:
    """A game, or one position: what it is called, what was judged, and the data of its page."""

    def __init__(self, records):
        source = records[0]["source"]
        self.records = records
        self.is_game = bool(source.get("game"))
        self.players = [str(source.get(side) or "?") for side in ("white", "black")]
        self.result = str(source.get("result") or "")
        self.words = how(records[0])
        self.title = self._title(source)
        self.judged = [judged_move(record) for record in records[:-1] if record["played"]]
        self.is_judged = any(each.judgement for each in self.judged)
        self.sides = [side_of(self.judged, white) for white in (True, False)]

    def _title(self, source):
        if not self.is_game:
            return str(source.get("id") or "") or "Position"
        words = [" – ".join(self.players), *(source.get(n) or "" for n in ("event", "date"))]
        words = [str(word).replace(".??", "") for word in words]
        return ", ".join(word for word in words if word.strip("?*. –"))  or "Game"

    def data(self):
        """What the script of the page reads."""
        first = self.records[0]
        return {
            "kind": "game" if self.is_game else "position",
            "groups": list(GROUPS),
            "terms": [[name, term.full, term.meaning] for name, term in TERMS.items()],
            "positions": [_position(record) for record in self.records],
            "moves": [
                _move(record, each) for record, each in zip(self.records, self.judged)
            ],
            "lines": [] if self.is_game else [line_of(first, line) for line in first["lines"]],
        }
