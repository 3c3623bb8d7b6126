"""FEN: what is a position, and what is refused with the reason."""

import re
from dataclasses import dataclass


class FenError(ValueError):
    """A text that is not the FEN of a position that can be played."""


@dataclass(frozen=True)
class Fen:
    """The fields of a FEN, each of which is right for itself. The board has 64 FEN letters from a1
    to h8, '.' for an empty square."""

    board: str
    pieces: str
    side: str
    rights: str
    en_passant: str
    draw_counter: int
    move_number: int

    @staticmethod
    def parse(text):
        """The fields of a text, of which both counters, or the last, may be missing."""
        fields = text.split()
        if not 4 <= len(fields) <= 6:
            raise FenError(
                "a FEN has four to six fields: pieces, side, castling, en passant, counters"
            )
        for name, field, pattern in (
            ("side to move", fields[1], "[wb]"),
            ("castling", fields[2], "-|[A-HKQa-hkq]{1,4}"),
            ("en passant square", fields[3], "-|[a-h][36]"),
            ("half-move counter", fields[4] if len(fields) > 4 else "0", "[0-9]{1,4}"),
            ("move number", fields[5] if len(fields) > 5 else "1", "[0-9]{1,5}"),
        ):
            if not re.fullmatch(pattern, field):
                raise FenError(f"{name}: {field!r}")
        board = _read_board(fields[0])
        side, en_passant = fields[1], fields[3]
        if en_passant != "-":
            _check_en_passant(board, side, en_passant)
        counters = [int(field) for field in fields[4:]]
        draw_counter, move_number = counters + [0, 1][len(counters) :]
        return Fen(board, fields[0], side, fields[2], en_passant, draw_counter, move_number)

    def __str__(self):
        return (
            f"{self.pieces} {self.side} {self.rights} {self.en_passant} "
            f"{self.draw_counter} {self.move_number}"
        )


def _read_board(text):
    ranks = text.split("/")
    if len(ranks) != 8:
        raise FenError(f"{len(ranks)} ranks instead of 8")
    board = ""
    for number, rank in zip("87654321", ranks):
        if not re.fullmatch("[KQRBNPkqrbnp1-8]+", rank):
            raise FenError(f"rank {number} is not one: {rank!r}")
        row = "".join("." * int(sign) if sign.isdigit() else sign for sign in rank)
        if len(row) != 8:
            raise FenError(f"rank {number} has {len(row)} files")
        board = row + board
    for king, side in (("K", "White"), ("k", "Black")):
        if board.count(king) != 1:
            raise FenError(f"{side} has {board.count(king)} kings")
    if re.search("[Pp]", ranks[0] + ranks[7]):
        raise FenError("a pawn stands on the first or the last rank")
    return board


def _check_en_passant(board, side, name):
    """The pawn that was just moved by two squares stands before the square, and came over it."""
    square = "abcdefgh".index(name[0]) + 8 * (int(name[1]) - 1)
    back, pawn, rank = (8, "p", "6") if side == "w" else (-8, "P", "3")
    is_possible = name[1] == rank and board[square - back] == pawn
    if not is_possible or board[square] + board[square + back] != "..":
        raise FenError(f"en passant square: no pawn has just come over {name}")
