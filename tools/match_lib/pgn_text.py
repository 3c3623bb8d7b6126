"""Games as PGN, with score, depth, time and clock of each move in its comment."""

import textwrap

from match_lib.adjudication import DRAW, WIN
from orvelin_lib.board import START_FEN, Position
from orvelin_lib.fen import Fen
from orvelin_lib.notation import san
from orvelin_lib.rules import find_move

WIDTH = 80
# The words of the standard for what ended a game; what the rules end is normal.
TERMINATIONS = {
    "time forfeit": "time forfeit",
    DRAW: "adjudication",
    WIN: "adjudication",
    # Records of earlier versions do not tell the two apart.
    "adjudication": "adjudication",
    "length": "adjudication",
    "illegal move": "rules infraction",
    "stray answer": "rules infraction",
    "crash": "abandoned",
    "stall": "abandoned",
    "flood": "abandoned",
}


def pgn_text(entry, controls=None):
    """The game of a record; `controls` are the time controls of the players by their names."""
    lines = [f'[{name} "{_escaped(value)}"]' for name, value in _tags(entry, controls or {})]
    words = " ".join([*_titles(entry), *_words(entry), f"{{{_end(entry)}}}", entry["result"]])
    body = textwrap.wrap(words, WIDTH, break_long_words=False, break_on_hyphens=False)
    return "\n".join([*lines, "", *body, "", ""])


def _escaped(value):
    return str(value).replace("\\", "\\\\").replace('"', '\\"')


def _end(entry):
    return _comment_text(entry["reason"])


def _comment_text(text):
    # What a comment has inside would end it.
    return text.replace("}", ")")


def _titles(entry):
    """A comment with the names that the engines gave themselves, which have their versions; older
    records have none."""
    titles = zip((entry["white"], entry["black"]), entry.get("titles", ()))
    words = "; ".join(f"{name} is {title}" for name, title in titles if title and title != name)
    if words:
        yield f"{{{_comment_text(words)}}}"


def _tags(entry, controls):
    yield "Event", "orvelin-match"
    yield "Site", "?"
    yield "Date", entry["date"]
    yield "Round", f"{entry['pair'] + 1}.{(entry['game'] - 1) % 2 + 1}"
    yield "White", entry["white"]
    yield "Black", entry["black"]
    yield "Result", entry["result"]
    if entry["chess960"]:
        yield "Variant", "Chess960"
    if entry["fen"] != START_FEN:
        yield "SetUp", "1"
        yield "FEN", entry["fen"]
    white, black = (controls.get(entry[side]) for side in ("white", "black"))
    if white and white == black:
        yield "TimeControl", white
    elif white and black:
        yield "WhiteTimeControl", white
        yield "BlackTimeControl", black
    yield "PlyCount", len(entry["opening"]) + len(entry["moves"])
    yield "Termination", TERMINATIONS.get(entry["reason"], "normal")


def _words(entry):
    """The movetext, word by word."""
    position, number = Position(entry["fen"]), Fen.parse(entry["fen"]).move_number
    comments = [""] * len(entry["opening"])
    comments += [_comment(entry, index) for index in range(len(entry["moves"]))]
    needs_number = True
    for text, comment in zip([*entry["opening"], *entry["moves"]], comments):
        is_white = position.side == "w"
        if is_white or needs_number:
            yield f"{number}." if is_white else f"{number}..."
        move = find_move(position, text, entry["chess960"])
        yield san(position, move)
        if comment:
            yield comment
        # After a comment the number stands again.
        needs_number = bool(comment)
        position = position.after(move)
        number += not is_white


def _comment(entry, index):
    score, depth = entry["scores"][index], entry["depths"][index]
    words = []
    if score is not None:
        words.append(f"{_score(score)}/{depth or 0}")
    words.append(f"{entry['times'][index] / 1000:.3f}s")
    if entry["nodes"][index]:
        words.append(f"n={entry['nodes'][index]}")
    if entry["clocks"][index] is not None:
        words.append(f"[%clk {_clock(entry['clocks'][index] / 1000)}]")
    return f"{{{' '.join(words)}}}"


def _score(score):
    """In pawns from the side of the player; moves to a mate behind an M."""
    if isinstance(score, str):
        moves = score.lstrip("#")
        return f"-M{moves[1:]}" if moves.startswith("-") else f"+M{moves}"
    return f"{score / 100:+.2f}"


def _clock(seconds):
    minutes, rest = divmod(seconds, 60)
    hours, minutes = divmod(int(minutes), 60)
    return f"{hours}:{minutes:02}:{rest:06.3f}"
