"""A chess position that knows nothing of speed: standard chess and Chess960.

Squares are 0 (a1) to 63 (h8); men are FEN letters, '.' is an empty square.
"""

from dataclasses import dataclass

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
    """The squares that a man meets on its way from a square, nearest first."""
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
    """The man of a side; the kind is an upper-case letter."""
    return kind if side == WHITE else kind.lower()


def side_of(man):
    return WHITE if man.isupper() else BLACK


@dataclass(frozen=True)
class Move:
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
    """Men, side to move, rooks that may still castle, en passant square and draw counter."""

    def __init__(self, fen=START_FEN):
        fields = fen.split()
        self.board = self._read_men(fields[0])
        self.side = fields[1]
        self.rooks = frozenset(self._read_rooks(fields[2]))
        self.en_passant = None if fields[3] == "-" else square_of(fields[3])
        self.draw_counter = int(fields[4]) if len(fields) > 4 else 0

    @staticmethod
    def _read_men(text):
        board = []
        for rank in reversed(text.split("/")):
            for man in rank:
                board.extend("." * int(man) if man.isdigit() else man)
        if len(board) != 64:
            raise ValueError(f"not 64 squares: {text}")
        return board

    def _read_rooks(self, text):
        for word in text.replace("-", ""):
            side = side_of(word)
            king, rook = self.king(side), letter(side, "R")
            rank = range(king // 8 * 8, king // 8 * 8 + 8)
            if word.upper() in "KQ":
                rooks = [s for s in rank if self.board[s] == rook]
                yield max(rooks) if word.upper() == "K" else min(rooks)
            else:
                yield rank["ABCDEFGH".index(word.upper())]

    def king(self, side):
        return self.board.index(letter(side, "K"))

    def attacked(self, square, by):
        """True when a man of the side attacks the square."""
        board = self.board
        king, queen, rook, bishop, knight, pawn = (letter(by, kind) for kind in "KQRBNP")
        if any(board[s] == knight for s in KNIGHT_JUMPS[square]):
            return True
        if any(board[s] == king for s in KING_JUMPS[square]):
            return True
        if any(board[s] == pawn for s in PAWN_TAKES[other(by)][square]):
            return True
        return self._slider(ROOK_RAYS[square], (rook, queen)) or self._slider(
            BISHOP_RAYS[square], (bishop, queen)
        )

    def _slider(self, rays, men):
        board = self.board
        for ray in rays:
            for square in ray:
                man = board[square]
                if man != ".":
                    if man in men:
                        return True
                    break
        return False

    def in_check(self, side=None):
        side = side or self.side
        return self.attacked(self.king(side), other(side))

    def after(self, move):
        """The position behind a move of the side to move."""
        behind = object.__new__(Position)
        board = behind.board = self.board.copy()
        man, taken = board[move.start], board[move.target]
        board[move.start] = "."
        if move.castling:
            board[move.target] = "."
            rank, king_side = move.start // 8 * 8, move.target > move.start
            board[rank + (6 if king_side else 2)] = man
            board[rank + (5 if king_side else 3)] = letter(self.side, "R")
        else:
            board[move.target] = letter(self.side, move.promotion.upper()) or man
        if move.en_passant:
            board[move.start // 8 * 8 + move.target % 8] = "."
        behind.side = other(self.side)
        gone = {move.start, move.target}
        if man in "Kk":
            gone.update(rook for rook in self.rooks if self.board[rook] == letter(self.side, "R"))
        behind.rooks = self.rooks - gone
        is_pawn = man in "Pp"
        double_step = is_pawn and abs(move.target - move.start) == 16
        behind.en_passant = (move.start + move.target) // 2 if double_step else None
        quiet = not is_pawn and (taken == "." or move.castling)
        behind.draw_counter = self.draw_counter + 1 if quiet else 0
        return behind
