"""Games from a PGN file: tags and the moves of the main line."""

import re
from dataclasses import dataclass, field

from orvelin_lib.board import START_FEN, Move, Position
from orvelin_lib.fen import Fen, FenError
from orvelin_lib.files import input_title, read_lines
from orvelin_lib.notation import parse_move
from orvelin_lib.table import counted
from orvelin_lib.tool_main import ToolError

TOKEN = re.compile(
    r"""(?P<skip>\s+ | ^%.* | ;.* | \{[^}]*\} | \$\d+ | [!?]+ | e\.p\.)
      | (?P<comment>\{[^}]*$)
      | (?P<tag>\[\s*(?P<name>\w+)\s+"(?P<value>(?:[^"\\]|\\.)*)"\s*\])
      | (?P<open>\() | (?P<close>\))
      | (?P<result>(?:1-0 | 0-1 | 1/2-1/2 | \*)(?=[\s(){};]|$))
      | (?P<number>\d+(?:\s*\.+|(?=\s|$)))
      | (?P<move>[^\s(){};$!?\[]+)""",
    re.VERBOSE,
)
# What is kept of the tags.
TAGS = ("White", "Black", "Event", "Date", "Result", "FEN", "Variant")
# No game comes near it, and a file that has nothing but moves ends here.
MOST_MOVES = 20000


@dataclass
class RawGame:
    """A game as it stands in the file; nothing is known of the moves yet."""

    tags: dict = field(default_factory=dict)
    moves: list = field(default_factory=list)
    is_empty: bool = True


@dataclass(frozen=True)
class Played:
    """A legal move with its number and how the file writes it."""

    number: str
    san: str
    move: Move


@dataclass(frozen=True)
class Game:
    """A game with legal moves from its start position."""

    tags: dict
    fen: str
    start: Position
    moves: list

    def title(self):
        players = " - ".join(self.tags.get(side, "?") for side in ("White", "Black"))
        words = [players, *(self.tags.get(tag, "") for tag in ("Event", "Date", "Result"))]
        words = [word.replace(".??", "") for word in words]
        return ", ".join(word for word in words if word.strip("?*. "))


def _tokens(lines):
    """(number of the line, token) of all that is no comment."""
    comment = None
    for row, line in enumerate(lines, 1):
        place = 0
        if comment is not None:
            place = line.find("}") + 1
            if place == 0:
                continue
            comment = None
        while place < len(line):
            token = TOKEN.match(line, place)
            if token is None:
                raise _unreadable(row, line[place:])
            place = token.end()
            if token.lastgroup == "comment":
                comment = row, token["comment"]
            elif token.lastgroup != "skip":
                yield row, token
    if comment is not None:
        raise _unreadable(*comment)


def _unreadable(row, text):
    return ToolError(f"line {row} of the PGN cannot be read: {text[:20]!r}")


def raw_games(lines):
    """The games of a file, one after the other; one at a time is held in memory."""
    game, depth = RawGame(), 0
    for row, token in _tokens(lines):
        kind = token.lastgroup if token["tag"] is None else "tag"
        if kind == "open":
            depth += 1
        elif kind == "close":
            depth = max(depth - 1, 0)
        elif kind == "tag":
            if game.moves:
                yield game
                game, depth = RawGame(), 0
            game.is_empty = False
            if token["name"] in TAGS:
                game.tags[token["name"]] = re.sub(r"\\(.)", r"\1", token["value"])
        elif depth == 0 and kind == "move":
            if len(game.moves) == MOST_MOVES:
                raise ToolError(f"line {row} of the PGN: a game of more than {MOST_MOVES} moves")
            game.is_empty = False
            game.moves.append(token["move"])
        elif depth == 0 and kind == "result":
            game.tags.setdefault("Result", token["result"])
            yield game
            game = RawGame()
    if not game.is_empty:
        yield game


def check_game(raw, number):
    """The game with its moves found among the legal ones."""
    text = raw.tags.get("FEN", START_FEN)
    try:
        fen, position = Fen.parse(text), Position(text)
    except FenError as problem:
        raise ToolError(f"game {number}: not a FEN: {problem}: {text!r}") from None
    if not raw.moves:
        raise ToolError(f"game {number} has no moves")
    start, moves, count = position, [], fen.move_number
    for text in raw.moves:
        label = f"{count}." if position.side == "w" else f"{count}..."
        try:
            move = parse_move(text, position)
        except ValueError as problem:
            raise ToolError(f"game {number}, move {label} {problem}") from None
        moves.append(Played(label, text, move))
        count += position.side == "b"
        position = position.after(move)
    return Game(raw.tags, str(fen), start, moves)


def read_game(name, number, console=None):
    """Game `number` of a file, counted from 1; what stands after it is not read."""
    count = 0
    for count, raw in enumerate(raw_games(read_lines(name, console)), 1):
        if count == number:
            return check_game(raw, number)
    raise ToolError(
        f"{input_title(name)} has {counted(count, 'game')}; there is no game {number}"
    )
