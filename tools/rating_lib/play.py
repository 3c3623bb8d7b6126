"""What a level plays like, from what orvelin-analyse says of its games."""

import json
import re

from orvelin_lib.files import read_lines
from orvelin_lib.tool_main import ToolError

# Beside the kept results.
FILE = "play.csv"
HEAD = "level,games,moves,lost,doubtful,mistakes,blunders"
NAME = re.compile(r"orvelin-play-(\d+)")
MARKS = ("?!", "?", "??")


class Play:
    """Counts the moves of each level; `lost` in thousandths of a point."""

    def __init__(self):
        self._sums = {}

    def add(self, record):
        """Takes a record of a position in; who had no other move is not judged."""
        source, played = record["source"], record.get("played")
        judgement = played and played["judgement"]
        if not judgement or judgement["accuracy"] is None:
            return
        player = source["white" if record["fen"].split()[1] == "w" else "black"]
        name = NAME.fullmatch(player or "")
        if name is None:
            return
        sums = self._sums.setdefault(int(name[1]), [set(), 0, 0.0, 0, 0, 0])
        sums[0].add((source["file"], source["game"]))
        sums[1] += 1
        sums[2] += judgement["lost"]
        for place, mark in enumerate(MARKS, 3):
            sums[place] += judgement["mark"] == mark

    def text(self):
        """A line for each level."""
        lines = [HEAD]
        for level, (games, *sums) in sorted(self._sums.items()):
            lines.append(",".join(str(value) for value in (level, len(games), *sums)))
        return "\n".join(lines) + "\n"


def counted_play(names):
    """Counts what levels play like, from the lines of JSON that orvelin-analyse made of their games."""
    play = Play()
    for name in names:
        for line in read_lines(name):
            play.add(json.loads(line))
    return play.text()


def read_rows(name):
    """The rows of the table: level, games, moves, loss a move in hundredths, marks a game."""
    head, *lines = read_lines(name)
    if head != HEAD:
        raise ToolError(f"{name} does not begin with {HEAD}")
    rows = []
    for line in lines:
        level, games, moves, lost, *marks = line.split(",")
        rows.append([
            int(level), int(games), int(moves), f"{float(lost) / int(moves) / 10:.1f}",
            *(f"{int(mark) / int(games):.2f}" for mark in marks),
        ])
    return rows
