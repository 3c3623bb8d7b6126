"""Moves as people and programs write them."""

import re

from orvelin_lib.rules import legal_moves

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
