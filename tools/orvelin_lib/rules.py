"""Legal moves, and the end of a game."""

from collections import Counter

from orvelin_lib.board import (
    BISHOP_RAYS,
    BLACK,
    KING_JUMPS,
    KNIGHT_JUMPS,
    PAWN_TAKES,
    ROOK_RAYS,
    WHITE,
    Move,
    Position,
    letter,
    other,
    side_of,
    square_name,
)

SQUARES = {square_name(square): square for square in range(64)}
# Both kings, '.', and bishops or knights: more kinds than these have material to mate.
MOST_KINDS_WITHOUT_MATE = 5


def legal_moves(position):
    """All legal moves of the side to move."""
    return [move for move in _pseudo_legal_moves(position) if _is_legal(position, move)]


def has_legal_move(position):
    """The same as whether there is any, at a fraction of the time."""
    return any(_is_legal(position, move) for move in _pseudo_legal_moves(position))


def legal_moves_from(position, square):
    """Those of the piece on a square."""
    return [move for move in _moves_from(position, square) if _is_legal(position, move)]


def find_move(position, text, chess960):
    """The legal move of a text in UCI notation, None when it names none."""
    square = SQUARES.get(text[:2])
    if square is None:
        return None
    for move in _moves_from(position, square):
        if move.text(chess960) == text and _is_legal(position, move):
            return move
    return None


def can_take_en_passant(position):
    """True when a legal move takes the pawn that has just gone two squares."""
    if position.en_passant is None:
        return False
    squares = PAWN_TAKES[other(position.side)][position.en_passant]
    return any(
        move.en_passant and _is_legal(position, move)
        for square in squares
        if position.board[square] == letter(position.side, "P")
        for move in _pawn_moves(position, square)
    )


def _is_legal(position, move):
    return not position.after(move).in_check(position.side)


def _pseudo_legal_moves(position):
    for square, piece in enumerate(position.board):
        if piece != ".":
            yield from _moves_from(position, square)


def _moves_from(position, square):
    """Those of the piece on a square; none when it is not of the side to move."""
    piece = position.board[square]
    if piece == "." or side_of(piece) != position.side:
        return
    kind = piece.upper()
    if kind == "P":
        yield from _pawn_moves(position, square)
    elif kind == "N":
        yield from _jumps(position, square, KNIGHT_JUMPS[square])
    elif kind == "K":
        yield from _jumps(position, square, KING_JUMPS[square])
        yield from _castling_moves(position, square)
    if kind in "RQ":
        yield from _slides(position, square, ROOK_RAYS[square])
    if kind in "BQ":
        yield from _slides(position, square, BISHOP_RAYS[square])


def _jumps(position, square, targets):
    for target in targets:
        piece = position.board[target]
        if piece == "." or side_of(piece) != position.side:
            yield Move(square, target)


def _slides(position, square, rays):
    for ray in rays:
        for target in ray:
            piece = position.board[target]
            if piece == "." or side_of(piece) != position.side:
                yield Move(square, target)
            if piece != ".":
                break


def _pawn_moves(position, square):
    board, side = position.board, position.side
    forward, first_rank = (8, 1) if side == WHITE else (-8, 6)
    target = square + forward
    if not 0 <= target < 64:
        return
    if board[target] == ".":
        yield from _with_promotions(square, target)
        if square // 8 == first_rank and board[target + forward] == ".":
            yield Move(square, target + forward)
    for target in PAWN_TAKES[side][square]:
        if target == position.en_passant:
            yield Move(square, target, en_passant=True)
        elif board[target] != "." and side_of(board[target]) != side:
            yield from _with_promotions(square, target)


def _with_promotions(square, target):
    if target // 8 in (0, 7):
        for kind in "qrbn":
            yield Move(square, target, kind)
    else:
        yield Move(square, target)


def _castling_moves(position, king):
    side, board = position.side, position.board
    rank = king // 8 * 8
    for rook in position.rooks:
        if board[rook] != letter(side, "R") or rook // 8 != king // 8:
            continue
        king_to, rook_to = (rank + 6, rank + 5) if rook > king else (rank + 2, rank + 3)
        path = range(min(king, king_to), max(king, king_to) + 1)
        crossed = set(path) | set(range(min(rook, rook_to), max(rook, rook_to) + 1))
        if any(board[square] != "." for square in crossed - {king, rook}):
            continue
        if not any(position.attacked(square, other(side)) for square in path):
            yield Move(king, rook, castling=True)


def forces_mate(position, move, count):
    """True when the legal move mates in so many moves at most, whatever the other side does."""
    after = position.after(move)
    # To know of a check is much cheaper than to know all replies.
    if count == 1 and not after.in_check():
        return False
    replies = legal_moves(after)
    if not replies:
        return after.in_check()
    if count == 1:
        return False
    for reply in replies:
        then = after.after(reply)
        if not any(forces_mate(then, answer, count - 1) for answer in legal_moves(then)):
            return False
    return True


def perft(position, depth):
    """Leaves of the tree of legal moves."""
    moves = legal_moves(position)
    if depth == 1:
        return len(moves)
    return sum(perft(position.after(move), depth - 1) for move in moves)


def _material_is_insufficient(board):
    # Said of nearly every position without looking at the pieces.
    if len(set(board)) > MOST_KINDS_WITHOUT_MATE:
        return False
    pieces = [(piece, square) for square, piece in enumerate(board) if piece not in ".Kk"]
    if len(pieces) < 2:
        return all(piece in "BbNn" for piece, _ in pieces)
    colours = {(square // 8 + square) % 2 for _, square in pieces}
    return all(piece in "Bb" for piece, _ in pieces) and len(colours) == 1


class Referee:
    """One game: takes moves by their texts and says when the game is over and why. All legal moves
    are only computed where somebody asks for them."""

    def __init__(self, fen, chess960=False):
        self.position = Position(fen)
        self.chess960 = chess960
        self._seen = Counter()
        self._arrive()

    def _arrive(self):
        self._moves = None
        position = self.position
        # An en passant square counts only where a pawn may really take.
        key = (
            "".join(position.board),
            position.side,
            position.rooks,
            position.en_passant if can_take_en_passant(position) else None,
        )
        self._seen[key] += 1
        self._times_seen = self._seen[key]

    @property
    def moves(self):
        """The legal moves by their texts."""
        if self._moves is None:
            self._moves = {move.text(self.chess960): move for move in legal_moves(self.position)}
        return self._moves

    def play(self, text):
        """Makes the move; False when it is not legal."""
        move = find_move(self.position, text, self.chess960)
        if move is None:
            return False
        self.position = self.position.after(move)
        self._arrive()
        return True

    def allows(self, text):
        """True when the move is legal."""
        return find_move(self.position, text, self.chess960) is not None

    def ends_with(self, text):
        """True when the legal move leaves the other side without a move."""
        move = find_move(self.position, text, self.chess960)
        return not has_legal_move(self.position.after(move))

    def verdict(self):
        """(result, reason), or None while the game goes on."""
        position = self.position
        if not has_legal_move(position):
            if not position.in_check():
                return "1/2-1/2", "stalemate"
            return ("1-0" if position.side == BLACK else "0-1"), "checkmate"
        if _material_is_insufficient(position.board):
            return "1/2-1/2", "insufficient material"
        if self._times_seen >= 3:
            return "1/2-1/2", "threefold repetition"
        if position.draw_counter >= 100:
            return "1/2-1/2", "fifty moves"
        return None
