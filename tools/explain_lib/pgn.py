"""Games from a PGN file: tags and the moves of the main line."""

import re
from dataclasses import dataclass, field

from explain_lib.fen import BadInput, read_fen
from explain_lib.figures import counted
from orvelin_lib.board import START_FEN, Move, Position
from orvelin_lib.notation import parse_move

TOKEN = re.compile(
    r"""(?P<skip>\s+ | ^%[^\n]* | ;[^\n]* | \{[^}]*\} | \$\d+ | [!?]+ | e\.p\.)
      | (?P<tag>\[\s*(?P<name>\w+)\s+"(?P<value>(?:[^"\\\n]|\\.)*)"\s*\])
      | (?P<open>\() | (?P<close>\))
      | (?P<result>(?:1-0 | 0-1 | 1/2-1/2 | \*)(?=[\s(){};]|$))
      | (?P<number>\d+(?:\s*\.+|(?=\s)))
      | (?P<move>[^\s(){};$!?\[]+)""",
    re.VERBOSE | re.MULTILINE,
)


@dataclass
class RawGame:
    """A game as it stands in the file; nothing is known of the moves yet."""

    tags: dict = field(default_factory=dict)
    moves: list = field(default_factory=list)


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


def raw_games(text):
    """The games of a file, one after the other."""
    game, depth, place = RawGame(), 0, 0
    while place < len(text):
        token = TOKEN.match(text, place)
        if token is None:
            line = text.count("\n", 0, place) + 1
            raise BadInput(f"line {line} of the PGN cannot be read: {text[place:place + 20]!r}")
        place = token.end()
        kind = token.lastgroup if token["tag"] is None else "tag"
        if kind == "open":
            depth += 1
        elif kind == "close":
            depth = max(depth - 1, 0)
        elif kind == "tag":
            if game.moves:
                yield game
                game, depth = RawGame(), 0
            game.tags[token["name"]] = re.sub(r"\\(.)", r"\1", token["value"])
        elif depth == 0 and kind == "move":
            game.moves.append(token["move"])
        elif depth == 0 and kind == "result":
            yield game
            game = RawGame()
    if game.moves or game.tags:
        yield game


def check_game(raw, number):
    """The game with its moves found among the legal ones."""
    try:
        fen, start = read_fen(raw.tags.get("FEN", START_FEN))
    except BadInput as problem:
        raise BadInput(f"game {number}: {problem}") from None
    if not raw.moves:
        raise BadInput(f"game {number} has no moves")
    moves, position, count = [], start, int(fen.split()[5])
    for text in raw.moves:
        label = f"{count}." if position.side == "w" else f"{count}..."
        try:
            move = parse_move(text, position)
        except ValueError as problem:
            raise BadInput(f"game {number}, move {label} {problem}") from None
        moves.append(Played(label, text, move))
        count += position.side == "b"
        position = position.after(move)
    return Game(raw.tags, fen, start, moves)


def read_game(file_name, number):
    """Game `number` of the file, counted from 1."""
    try:
        with open(file_name, "rb") as file:
            data = file.read()
    except OSError as error:
        raise BadInput(f"{file_name}: {error.strerror}") from None
    try:
        text = data.decode("utf-8-sig")
    except UnicodeDecodeError:
        text = data.decode("latin-1")
    count = 0
    for count, raw in enumerate(raw_games(text.replace("\r\n", "\n")), 1):
        if count == number:
            return check_game(raw, number)
    raise BadInput(f"{file_name} has {counted(count, 'game')}; there is no game {number}")
