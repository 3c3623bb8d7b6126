"""A chess position that knows nothing of speed: standard chess and Chess960.

Squares are 0 (a1) to 63 (h8); pieces are FEN letters, '.' is an empty square.
"""

from typing import NamedTuple

from orvelin_lib.fen import Fen, FenError

WHITE, BLACK = "w", "b"
START_FEN = "rnbqkbnr/pppppppp/8/8/8/8/PPPPPPPP/RNBQKBNR w KQkq - 0 1"

ROOK_STEPS = ((1, 0), (-1, 0), (0, 1), (0, -1))
BISHOP_STEPS = ((1, 1), (1, -1), (-1, 1), (-1, -1))
KING_STEPS = ROOK_STEPS + BISHOP_STEPS
KNIGHT_STEPS = ((1, 2), (2, 1), (2, -1), (1, -2), (-1, -2), (-2, -1), (-2, 1), (-1, 2))


def square_name(square):
    return "abcdefgh"[square % 8] + str(square // 8 + 1)


def square_of(name):
    return "abcdefgh".index(name[0]) + 8 * (int(name[1]) - 1)


def _ray(square, step, limit=7):
    """The squares that a piece meets on its way from a square, nearest first."""
    file, rank = square % 8 + step[0], square // 8 + step[1]
    squares = []
    while 0 <= file < 8 and 0 <= rank < 8 and len(squares) < limit:
        squares.append(8 * rank + file)
        file, rank = file + step[0], rank + step[1]
    return tuple(squares)


def _jumps(steps):
    return tuple(tuple(to for step in steps for to in _ray(s, step, 1)) for s in range(64))


def _rays(steps):
    return tuple(tuple(r for r in (_ray(s, step) for step in steps) if r) for s in range(64))


KNIGHT_JUMPS = _jumps(KNIGHT_STEPS)
KING_JUMPS = _jumps(KING_STEPS)
ROOK_RAYS = _rays(ROOK_STEPS)
BISHOP_RAYS = _rays(BISHOP_STEPS)
# Where a pawn of the side takes.
PAWN_TAKES = {WHITE: _jumps(((-1, 1), (1, 1))), BLACK: _jumps(((-1, -1), (1, -1)))}


def other(side):
    return BLACK if side == WHITE else WHITE


def letter(side, kind):
    """The piece of a side; the kind is an upper-case letter."""
    return kind if side == WHITE else kind.lower()


def side_of(piece):
    return WHITE if piece.isupper() else BLACK


class Move(NamedTuple):
    """A move; castling has the square of the king's own rook as its target."""

    start: int
    target: int
    promotion: str = ""
    castling: bool = False
    en_passant: bool = False

    def text(self, chess960):
        """The move as the engine writes it."""
        target = self.target
        if self.castling and not chess960:
            target = self.start // 8 * 8 + (6 if target > self.start else 2)
        return square_name(self.start) + square_name(target) + self.promotion


class Position:
    """Pieces, side to move, rooks that may still castle, en passant square and draw counter."""

    def __init__(self, fen=START_FEN):
        """The position of a FEN; FenError when it cannot be played."""
        fields = Fen.parse(fen)
        self.board = list(fields.board)
        self.side = fields.side
        self.en_passant = None if fields.en_passant == "-" else square_of(fields.en_passant)
        self.draw_counter = fields.draw_counter
        rooks = [self._rook_of(right) for right in fields.rights.replace("-", "")]
        self.rooks = frozenset(rooks)
        if len(self.rooks) < len(rooks):
            raise FenError(f"castling: a right stands twice: {fields.rights!r}")
        if self.in_check(other(self.side)):
            raise FenError("the side that has just moved is in check")

    def _rook_of(self, right):
        """The square of the rook with which a right lets the king castle: K and Q mean the
        outermost one of that side, other letters its file."""
        side, word = side_of(right), right.upper()
        king = self.king(side)
        first = 0 if side == WHITE else 56
        squares = range(first, first + 8)
        rooks = [square for square in squares if self.board[square] == letter(side, "R")]
        if king not in squares:
            rooks = []
        elif word == "K":
            rooks = [square for square in rooks if square > king][-1:]
        elif word == "Q":
            rooks = [square for square in rooks if square < king][:1]
        else:
            rooks = [square for square in rooks if square == squares["ABCDEFGH".index(word)]]
        if not rooks:
            raise FenError(f"castling: the right {right} has no rook")
        return rooks[0]

    def king(self, side):
        return self.board.index(letter(side, "K"))

    def attacked(self, square, by):
        """True when a piece of the side attacks the square."""
        board = self.board
        king, queen, rook, bishop, knight, pawn = "KQRBNP" if by == WHITE else "kqrbnp"
        # Plain loops: referees of fast games ask this most of all.
        for other_square in KNIGHT_JUMPS[square]:
            if board[other_square] == knight:
                return True
        for other_square in KING_JUMPS[square]:
            if board[other_square] == king:
                return True
        for other_square in PAWN_TAKES[BLACK if by == WHITE else WHITE][square]:
            if board[other_square] == pawn:
                return True
        return self._slider(ROOK_RAYS[square], (rook, queen)) or self._slider(
            BISHOP_RAYS[square], (bishop, queen)
        )

    def _slider(self, rays, sliders):
        board = self.board
        for ray in rays:
            for square in ray:
                piece = board[square]
                if piece != ".":
                    if piece in sliders:
                        return True
                    break
        return False

    def in_check(self, side=None):
        side = side or self.side
        return self.attacked(self.king(side), other(side))

    def after(self, move):
        """The position after a move of the side to move."""
        after = object.__new__(Position)
        board = after.board = self.board.copy()
        piece, taken = board[move.start], board[move.target]
        board[move.start] = "."
        if move.castling:
            board[move.target] = "."
            rank, king_side = move.start // 8 * 8, move.target > move.start
            board[rank + (6 if king_side else 2)] = piece
            board[rank + (5 if king_side else 3)] = letter(self.side, "R")
        else:
            board[move.target] = letter(self.side, move.promotion.upper()) or piece
        if move.en_passant:
            board[move.start // 8 * 8 + move.target % 8] = "."
        after.side = other(self.side)
        gone = {move.start, move.target}
        if piece in "Kk":
            gone.update(rook for rook in self.rooks if self.board[rook] == letter(self.side, "R"))
        after.rooks = self.rooks - gone
        is_pawn = piece in "Pp"
        double_step = is_pawn and abs(move.target - move.start) == 16
        after.en_passant = (move.start + move.target) // 2 if double_step else None
        quiet = not is_pawn and (taken == "." or move.castling)
        after.draw_counter = self.draw_counter + 1 if quiet else 0
        return after
