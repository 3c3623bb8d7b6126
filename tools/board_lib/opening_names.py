"""The names of openings, by position: what the page reads of openings/names.list."""

import json

from orvelin_lib.board import WHITE, Position
from orvelin_lib.notation import parse_move

# The rooks that may still castle, in the order of a FEN.
RIGHTS = ((7, "K"), (0, "Q"), (63, "k"), (56, "q"))


class NamesError(Exception):
    """A line is wrong; the text tells which and how."""


def position_key(position):
    """The first three fields of a FEN: what a position is known by, whatever the moves to it."""
    ranks = []
    for first in range(56, -1, -8):
        text, gap = "", 0
        for piece in position.board[first : first + 8] + [""]:
            if piece == ".":
                gap += 1
            else:
                text += (str(gap) if gap else "") + piece
                gap = 0
        ranks.append(text)
    rights = "".join(right for rook, right in RIGHTS if rook in position.rooks) or "-"
    return f"{'/'.join(ranks)} {'w' if position.side == WHITE else 'b'} {rights}"


def _named_position(line):
    moves, separator, name = line.partition(" = ")
    if not separator or not name.strip():
        raise ValueError("moves, ' = ' and a name are expected")
    position = Position()
    for text in moves.split():
        position = position.after(parse_move(text, position))
    return position_key(position), name.strip()


def read_names(lines):
    """{position: name}; NamesError where a line is none, a move is not legal, or a position has a
    name already."""
    names = {}
    for number, line in enumerate(lines, 1):
        if not line.strip() or line.startswith("#"):
            continue
        try:
            key, name = _named_position(line)
            if key in names:
                raise ValueError(f"the position is {names[key]} already")
        except ValueError as error:
            raise NamesError(f"line {number}: {error}") from None
        names[key] = name
    return names


def names_text(file):
    """The names of a file as JSON."""
    with open(file, encoding="utf-8") as lines:
        return json.dumps(read_names(lines), ensure_ascii=False, separators=(",", ":")) + "\n"
