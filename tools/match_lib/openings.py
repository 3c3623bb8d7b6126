"""The openings of a match: of a file, or made at random."""

import glob
import hashlib
import os
import random
from dataclasses import dataclass

from orvelin_lib.board import START_FEN, side_of
from orvelin_lib.fen import Fen, FenError
from orvelin_lib.files import input_title, read_lines
from orvelin_lib.notation import parse_move
from orvelin_lib.pgn import raw_games
from orvelin_lib.rules import Referee
from orvelin_lib.tool_main import ToolError

RANDOM_PLIES = 8
# So often a random opening is made again when it leads to the end of the game.
MOST_TRIES = 1000


@dataclass(frozen=True)
class Opening:
    """A start position, and the moves from it in UCI notation that are played without a clock."""

    fen: str
    moves: tuple = ()


@dataclass(frozen=True)
class Source:
    """An opening as it stands in a file: where, from which position, and its moves."""

    place: str
    fen: str
    moves: tuple


class OpeningFile:
    """The openings of a PGN, EPD or FEN file, or of lines of moves with or without a weight; those
    of a folder are those of all its *.txt. An opening is looked at when it is asked for."""

    def __init__(self, name, chess960, plies=None):
        self._chess960, self._plies = chess960, plies
        names = sorted(glob.glob(os.path.join(name, "*.txt"))) if os.path.isdir(name) else [name]
        self._sources = [source for each in names for source in _sources(each)]
        if not self._sources:
            raise ToolError(f"{input_title(name)}: no openings")

    def __len__(self):
        return len(self._sources)

    def digest(self):
        """The same for the same openings."""
        text = "\n".join(f"{s.fen} {' '.join(s.moves)}" for s in self._sources)
        return hashlib.sha256(f"{self._plies} {text}".encode()).hexdigest()[:16]

    def __getitem__(self, index):
        source = self._sources[index]
        try:
            return self._checked(source)
        except (FenError, ValueError) as problem:
            raise ToolError(f"{source.place}: {problem}") from None

    def _checked(self, source):
        referee = Referee(source.fen, self._chess960)
        if not self._chess960:
            _require_standard(referee.position)
        texts = []
        for text in source.moves[: self._plies]:
            texts.append(parse_move(text, referee.position).text(self._chess960))
            referee.play(texts[-1])
        if referee.verdict() is not None:
            raise ValueError(f"the game is over: {referee.verdict()[1]}")
        return Opening(str(Fen.parse(source.fen)), tuple(texts))


def _require_standard(position):
    for rook in position.rooks:
        king = position.king(side_of(position.board[rook]))
        if king % 8 != 4 or rook % 8 not in (0, 7):
            raise ValueError("castling as in Chess960: give --variant chess960")


def _sources(name):
    lines = list(read_lines(name))
    title = input_title(name)
    first = next((line for line in map(str.strip, lines) if line and line[0] not in "#%;"), "")
    if first.startswith("["):
        for number, game in enumerate(raw_games(lines), 1):
            place = f"{title}, game {number}"
            yield Source(place, game.tags.get("FEN", START_FEN), tuple(game.moves))
        return
    for row, line in enumerate(map(str.strip, lines), 1):
        if line and not line.startswith("#"):
            place = f"{title}, line {row}"
            yield _position(place, line) if "/" in line.split()[0] else _line(place, line)


def _position(place, line):
    fields = line.split()
    counters = fields[4:6] if all(word.isdigit() for word in fields[4:6]) else []
    return Source(place, " ".join(fields[:4] + counters), ())


def _line(place, line):
    weight, mark, moves = line.partition(":")
    return Source(place, START_FEN, tuple((moves if mark and weight.isdigit() else line).split()))


class RandomOpenings:
    """Random moves from the start position, or from a start position of Chess960; the seed and the
    index fix an opening."""

    def __init__(self, chess960, plies, seed):
        self._chess960, self._seed = chess960, seed
        self._plies = RANDOM_PLIES if plies is None else plies

    def digest(self):
        return f"random {self._plies}"

    def __getitem__(self, index):
        chance = random.Random(f"{self._seed}:{index}")
        for _ in range(MOST_TRIES):
            fen = chess960_array(chance) if self._chess960 else START_FEN
            moves = _random_moves(fen, self._chess960, self._plies, chance)
            if moves is not None:
                return Opening(fen, moves)
        raise ToolError(f"no random opening of {self._plies} half-moves leaves a game to play")


def _random_moves(fen, chess960, plies, chance):
    """So many moves, None when the game is over by then."""
    referee = Referee(fen, chess960)
    moves = []
    while referee.verdict() is None:
        if len(moves) == plies:
            return tuple(moves)
        moves.append(chance.choice(sorted(referee.moves)))
        referee.play(moves[-1])
    return None


def chess960_array(chance):
    """The FEN of a random start of Chess960."""
    files = [""] * 8
    files[chance.randrange(0, 8, 2)] = "B"
    files[chance.randrange(1, 8, 2)] = "B"
    for piece in "QNN":
        files[chance.choice([file for file in range(8) if not files[file]])] = piece
    for file, piece in zip([file for file in range(8) if not files[file]], "RKR"):
        files[file] = piece
    pieces = "".join(files)
    return f"{pieces.lower()}/pppppppp/8/8/8/8/PPPPPPPP/{pieces} w KQkq - 0 1"
