"""FEN texts: what can be explained and what is refused, with the reason."""

import re

from orvelin_lib.board import Position, other


class BadInput(Exception):
    """Something that the user gave is not what it should be."""


def _check_men(text):
    ranks = text.split("/")
    if len(ranks) != 8:
        raise BadInput(f"{len(ranks)} ranks instead of 8")
    for number, rank in zip("87654321", ranks):
        if not re.fullmatch("[KQRBNPkqrbnp1-8]+", rank):
            raise BadInput(f"rank {number} is not one: {rank!r}")
        files = sum(int(sign) if sign.isdigit() else 1 for sign in rank)
        if files != 8:
            raise BadInput(f"rank {number} has {files} files")
    for king, side in (("K", "White"), ("k", "Black")):
        if text.count(king) != 1:
            raise BadInput(f"{side} has {text.count(king)} kings")
    if re.search("[Pp]", ranks[0] + ranks[7]):
        raise BadInput("a pawn stands on the first or the last rank")


def _check_fields(fields):
    if not 4 <= len(fields) <= 6:
        raise BadInput("a FEN has four to six fields: men, side, castling, en passant, counters")
    _check_men(fields[0])
    for name, field, pattern in (
        ("side to move", fields[1], "[wb]"),
        ("castling", fields[2], "-|[A-HKQa-hkq]{1,4}"),
        ("en passant square", fields[3], "-|[a-h][36]"),
        ("half-move counter", fields[4] if len(fields) > 4 else "0", "[0-9]{1,4}"),
        ("move number", fields[5] if len(fields) > 5 else "1", "[0-9]{1,5}"),
    ):
        if not re.fullmatch(pattern, field):
            raise BadInput(f"{name}: {field!r}")


def read_fen(text):
    """(the FEN with all its fields, its position)."""
    fields = text.split()
    try:
        _check_fields(fields)
        try:
            position = Position(text)
        except ValueError:
            raise BadInput("a right to castle has no rook") from None
        if any(position.board[rook] not in "Rr" for rook in position.rooks):
            raise BadInput("a right to castle has no rook")
        if position.in_check(other(position.side)):
            raise BadInput("the side that has just moved is in check")
    except BadInput as problem:
        raise BadInput(f"not a FEN that can be explained: {problem}: {text!r}") from None
    return " ".join(fields + ["0", "1"][len(fields) - 4 :]), position
