"""Test positions and the files in which they stand."""

import re
from dataclasses import dataclass, field

from orvelin_lib.board import WHITE, Position, letter, other, side_of
from orvelin_lib.notation import moves_by_text, parse_move
from orvelin_lib.rules import forces_mate, legal_moves

FIELDS = re.compile(
    r"(?P<men>[1-8pnbrqkPNBRQK]+(?:/[1-8pnbrqkPNBRQK]+){7})\s+(?P<side>[wb])\s+"
    r"(?P<rights>-|[A-HKQa-hkq]+)\s+(?P<en_passant>-|[a-h][36])(?P<counters>\s+\d+\s+\d+)?"
    r"(?:\s+(?P<operations>.*))?"
)
OPERATION = re.compile(r'\s*((?:[^";]|"[^"]*")+)(?:;|$)')


@dataclass(frozen=True)
class TestPosition:
    """A position and what is wanted there; its legal moves by their texts."""

    number: int
    name: str
    line: str
    fen: str
    chess960: bool
    best: tuple
    avoid: tuple
    mate: int | None
    moves: dict = field(repr=False, compare=False)

    @property
    def goal(self):
        """What is wanted, in UCI notation."""
        words = []
        for word, moves in (("bm", self.best), ("am", self.avoid)):
            if moves:
                words.append(f"{word} {' '.join(moves)}")
        if self.mate is not None:
            words.append(f"dm {self.mate}")
        return "; ".join(words)

    def solved_by(self, text, mate):
        """True when this move, and mate in so many moves or None, is all that is wanted."""
        if text not in self.moves or text in self.avoid:
            return False
        if self.best and text not in self.best:
            return False
        return self.mate is None or (mate is not None and 0 < mate <= self.mate)

    def mates(self, text, count):
        """True when the legal move mates in so many moves at most, by the rules alone."""
        return forces_mate(Position(self.fen), self.moves[text], count)


def parse_line(line, number):
    """The test position of a line; ValueError when it is none."""
    match = FIELDS.fullmatch(line.strip())
    if match is None:
        raise ValueError("no position")
    operations = _operations(match["operations"] or "")
    counters = (match["counters"] or "").split() or [
        str(_number(operations, "hmvc", 0, 0)),
        str(_number(operations, "fmvn", 0, 1)),
    ]
    fen = " ".join([match["men"], match["side"], match["rights"], match["en_passant"], *counters])
    position = _checked(fen)
    chess960 = _is_chess960(position, match["rights"])
    best, avoid = (
        tuple(parse_move(text, position).text(chess960) for text in _moves(operations, word))
        for word in ("bm", "am")
    )
    if both := set(best) & set(avoid):
        raise ValueError(f"bm and am both have {' '.join(sorted(both))}")
    mate = _number(operations, "dm", 1, None)
    if not (best or avoid or mate):
        raise ValueError("nothing is wanted: neither bm nor am nor dm")
    moves = moves_by_text(position, chess960)
    name = operations.get("id", "").strip('"') or str(number)
    return TestPosition(number, name, line, fen, chess960, best, avoid, mate, moves)


def _operations(text):
    """The operands by their words."""
    operations, place = {}, 0
    while place < len(text.rstrip()):
        match = OPERATION.match(text, place)
        if match is None:
            raise ValueError(f"not an operation: {text[place:]}")
        word, _, operands = match[1].strip().partition(" ")
        if word in operations:
            raise ValueError(f"{word} stands there twice")
        operations[word] = operands.strip()
        place = match.end()
    return operations


def _moves(operations, word):
    """The texts of the moves of an operation that need not be there."""
    texts = operations.get(word, "").split()
    if word in operations and not texts:
        raise ValueError(f"{word} wants moves")
    return texts


def _number(operations, word, least, otherwise):
    """The number of an operation that need not be there."""
    if word not in operations:
        return otherwise
    text = operations[word]
    if not (text.isascii() and text.isdigit()) or int(text) < least:
        raise ValueError(f"{word} wants a number of moves: '{text}'")
    return int(text)


def _checked(fen):
    """The position when it can be played on."""
    men, _, rights = fen.split()[:3]
    if men.count("K") != 1 or men.count("k") != 1:
        raise ValueError("there is not one king of each side")
    position = Position(fen.replace(f" {rights} ", " - ", 1))
    for right in rights.replace("-", ""):
        if not _rook_files(position, right):
            raise ValueError(f"a right to castle without its rook: {right}")
    position = Position(fen)
    if any(man in "Pp" for man in position.board[:8] + position.board[56:]):
        raise ValueError("a pawn stands on the first or last rank")
    if position.in_check(other(position.side)):
        raise ValueError("the side that is not to move is in check")
    if not legal_moves(position):
        raise ValueError("there is no legal move")
    return position


def _rook_files(position, right):
    """The files of the rooks with which the letter of the right lets the king castle."""
    side, word = side_of(right), right.upper()
    rank, king_file = divmod(position.king(side), 8)
    if rank != (0 if side == WHITE else 7):
        return []
    rooks = [f for f in range(8) if position.board[8 * rank + f] == letter(side, "R")]
    if word == "K":
        return [file for file in rooks if file > king_file]
    if word == "Q":
        return [file for file in rooks if file < king_file]
    return [file for file in rooks if file == "ABCDEFGH".index(word)]


def _is_chess960(position, rights):
    """True when castling is not that of standard chess, or is given by files."""
    if set(rights) - set("KQkq-"):
        return True
    for rook in position.rooks:
        king = position.king(side_of(position.board[rook]))
        if king % 8 != 4 or rook % 8 not in (0, 7):
            return True
    return False


def read_suite(file, name):
    """All test positions of an open file; lines with '#' are remarks."""
    positions = []
    for row, line in enumerate(file, 1):
        if not line.strip() or line.startswith("#"):
            continue
        try:
            positions.append(parse_line(line.strip(), len(positions) + 1))
        except ValueError as error:
            raise ValueError(f"{name}, line {row}: {error}") from None
    if not positions:
        raise ValueError(f"{name}: no positions")
    return positions
