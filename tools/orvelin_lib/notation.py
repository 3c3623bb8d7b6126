"""Moves as people and programs write them."""

import re

from orvelin_lib.board import square_name
from orvelin_lib.rules import has_legal_move, legal_moves, legal_moves_from

# The letter of the piece, where it comes from as far as that is said, target, promotion.
SAN = re.compile(r"([KQRBN])?([a-h])?([1-8])?x?([a-h][1-8])=?([QRBN])?")
UCI = re.compile(r"([a-h][1-8]){2}[qrbnQRBN]?")
CASTLING = re.compile(r"([O0])-\1(-\1)?")
# Marks of check, mate and praise, and of a pawn taken in passing: they say nothing new.
MARKS = re.compile(r"( ?e\.p\.)?[+#!?]*$")


def moves_by_text(position, chess960):
    """The legal moves by their texts in UCI notation."""
    return {move.text(chess960): move for move in legal_moves(position)}


def parse_move(text, position):
    """The legal move that a text in SAN or UCI notation names; ValueError when it names none, or
    more than one."""
    bare = MARKS.sub("", text)
    if match := CASTLING.fullmatch(bare):
        found = _castling(position, king_side=match[2] is None)
    elif UCI.fullmatch(plain := bare.replace("-", "")):
        # The king on his own rook's square says castling without any doubt, and goes first.
        either = moves_by_text(position, True)
        move = either.get(plain.lower()) or moves_by_text(position, False).get(plain.lower())
        found = [move] if move else []
    elif match := SAN.fullmatch(plain):
        found = _named(position, match)
    else:
        raise ValueError(f"not a move: '{text}'")
    if not found:
        raise ValueError(f"not a legal move: '{text}'")
    if len(found) > 1:
        raise ValueError(f"more than one move: '{text}'")
    return found[0]


def _castling(position, king_side):
    return [
        move
        for move in legal_moves(position)
        if move.castling and (move.target > move.start) == king_side
    ]


def _named(position, match):
    piece, file, rank, target, promotion = match.groups()
    return [
        move
        for move in legal_moves(position)
        if not move.castling
        and position.board[move.start].upper() == (piece or "P")
        and move.promotion.upper() == (promotion or "")
        and _lies_on(move.target, target[0], target[1])
        and _lies_on(move.start, file, rank)
    ]


def _lies_on(square, file, rank):
    """True when the square has this file and rank, as far as they are given."""
    return file in (None, "abcdefgh"[square % 8]) and rank in (None, str(square // 8 + 1))


def san(position, move):
    """The legal move in SAN, with the marks of check and mate."""
    after = position.after(move)
    mark = "" if not after.in_check() else "+" if has_legal_move(after) else "#"
    return _san_without_mark(position, move) + mark


def _san_without_mark(position, move):
    if move.castling:
        return "O-O" if move.target > move.start else "O-O-O"
    kind = position.board[move.start].upper()
    start, target = square_name(move.start), square_name(move.target)
    takes = move.en_passant or position.board[move.target] != "."
    if kind == "P":
        promotion = f"={move.promotion.upper()}" if move.promotion else ""
        return f"{start[0]}x{target}{promotion}" if takes else target + promotion
    return kind + _origin(position, move, start) + ("x" if takes else "") + target


def _origin(position, move, start):
    """File, rank or both: as little as tells the piece from others that may go there."""
    piece = position.board[move.start]
    rivals = [
        square_name(square)
        for square, other in enumerate(position.board)
        if other == piece and square != move.start
        # A king, which castles, has no rival.
        and any(rival.target == move.target for rival in legal_moves_from(position, square))
    ]
    if not rivals:
        return ""
    if all(rival[0] != start[0] for rival in rivals):
        return start[0]
    if all(rival[1] != start[1] for rival in rivals):
        return start[1]
    return start
