"""Test positions and the files in which they stand."""

import functools
import re
from dataclasses import dataclass

from orvelin_lib.board import Position, side_of
from orvelin_lib.fen import FenError
from orvelin_lib.files import input_title, read_error, read_lines
from orvelin_lib.notation import moves_by_text, parse_move
from orvelin_lib.rules import forces_mate, legal_moves
from orvelin_lib.tool_main import ToolError

# More would take days to search, and the memory of the machine.
MOST_POSITIONS = 100000
# All lines of positions together; remarks do not count.
MOST_CHARACTERS = 1 << 26
FIELDS = re.compile(
    r"(?P<fen>(?:\S+\s+){3}\S+)(?P<counters>\s+\d+\s+\d+)?(?:\s+(?P<operations>.*))?"
)
OPERATION = re.compile(r'\s*((?:[^";]|"[^"]*")+)(?:;|$)')


@functools.lru_cache(maxsize=256)
def _moves_of(fen, chess960):
    return moves_by_text(Position(fen), chess960)


@dataclass(frozen=True)
class TestPosition:
    """A position and what is wanted there."""

    number: int
    name: str
    line: str
    fen: str
    chess960: bool
    best: tuple
    avoid: tuple
    mate: int | None

    @property
    def moves(self):
        """The legal moves by their texts; only those of the last positions are kept."""
        return _moves_of(self.fen, self.chess960)

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
    fen = " ".join([*match["fen"].split(), *counters])
    position = _checked(fen)
    chess960 = _is_chess960(position, fen.split()[2])
    best, avoid = (
        tuple(parse_move(text, position).text(chess960) for text in _moves(operations, word))
        for word in ("bm", "am")
    )
    if both := set(best) & set(avoid):
        raise ValueError(f"bm and am both have {' '.join(sorted(both))}")
    mate = _number(operations, "dm", 1, None)
    if not (best or avoid or mate):
        raise ValueError("nothing is wanted: neither bm nor am nor dm")
    name = operations.get("id", "").strip('"') or str(number)
    return TestPosition(number, name, line, fen, chess960, best, avoid, mate)


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
        raise ValueError(f"{word} needs moves")
    return texts


def _number(operations, word, least, otherwise):
    """The number of an operation that need not be there."""
    if word not in operations:
        return otherwise
    text = operations[word]
    if not (text.isascii() and text.isdigit()) or int(text) < least:
        raise ValueError(f"{word} needs a number of moves: '{text}'")
    return int(text)


def _checked(fen):
    """The position when it can be played on."""
    try:
        position = Position(fen)
    except FenError as problem:
        raise ValueError(f"not a FEN: {problem}") from None
    if not legal_moves(position):
        raise ValueError("there is no legal move")
    return position


def _is_chess960(position, rights):
    """True when castling is not that of standard chess, or is given by files."""
    if set(rights) - set("KQkq-"):
        return True
    for rook in position.rooks:
        king = position.king(side_of(position.board[rook]))
        if king % 8 != 4 or rook % 8 not in (0, 7):
            return True
    return False


def read_suite(name, console=None):
    """All test positions of a file; lines with '#' are remarks."""
    lines, characters = [], 0
    for row, line in enumerate(read_lines(name, console), 1):
        if not (line := line.strip()) or line.startswith("#"):
            continue
        characters += len(line)
        if len(lines) == MOST_POSITIONS or characters > MOST_CHARACTERS:
            raise read_error(
                name, f"more than {MOST_POSITIONS} positions or {MOST_CHARACTERS} characters"
            )
        lines.append((row, line))
    title = input_title(name)
    if not lines:
        raise ToolError(f"{title}: no positions")
    positions = []
    for row, line in lines:
        try:
            positions.append(parse_line(line, len(positions) + 1))
        except ValueError as error:
            raise ToolError(f"{title}, line {row}: {error}") from None
        if console is not None:
            console.progress(lambda: f"{len(positions)} of {len(lines)} positions checked")
    return positions
