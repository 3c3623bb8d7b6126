"""What is kept of a match when its file is too large to be kept: who played whom from which opening,
the result, and a few figures of each player. JSON, a line for the match and one for each game, all
compressed with xz."""

import json
import lzma
import os
from collections import Counter

from match_lib import results
from match_lib.standings import Work
from orvelin_lib.files import read_error
from orvelin_lib.tool_main import ToolError

END = ".jsonl.xz"
KIND = "kept"
# Of the settings of a match, what can make its games other ones.
SETTINGS = (
    *("games", "gauntlet", "order", "seed", "chess960", "ponder", "margin", "restart"),
    *("max_moves", "draw", "resign"),
)
START = "rnbqkbnr/pppppppp/8/8/8/8/PPPPPPPP/RNBQKBNR w KQkq - 0 1"
# More than any match has, and less than a computer can hold.
MOST_BYTES = 1 << 28


def of_files(names):
    """(head, games) of the files of one match: of a whole one, or of shards, which need not be
    whole nor all be there."""
    heads, parts, seen = [], [], results.Seen()
    for name in names:
        head, records = results.read(name)
        shard = head.pop("shard")
        seen.add(name, {**head, "shard": shard}, records)
        if heads and head != heads[0]:
            raise ToolError(f"{name} and {names[0]} are not of the same match")
        heads.append(head)
        parts += records
    parts.sort(key=lambda record: record["game"])
    numbers = [record["game"] for record in parts]
    if len(set(numbers)) < len(numbers):
        raise ToolError(f"{names[0]}: a game is there twice")
    return _head(heads[0], parts), [_game(record) for record in parts]


def _head(head, records):
    titles = {}
    for record in records:
        # Older records have neither titles nor a date.
        for name, title in zip((record["white"], record["black"]), record.get("titles", ())):
            titles.setdefault(name, title)
    players = [
        {
            "name": player["name"],
            "title": titles.get(player["name"]),
            "program": os.path.basename(player["command"][0]),
            "limit": player["limit"],
            "options": player["options"],
        }
        for player in head["players"]
    ]
    dates = [record["date"] for record in records if "date" in record]
    return {
        "kind": KIND,
        "players": players,
        **{key: head[key] for key in SETTINGS},
        "dates": [min(dates), max(dates)] if dates else None,
    }


def _game(record):
    """Lists have an entry for White and one for Black."""
    works = [_work(record, index) for index in (0, 1)]
    kept = {key: record[key] for key in ("game", "pair", "white", "black", "result", "reason")}
    kept["opening"] = " ".join(record["opening"])
    if record["fen"] != START:
        kept["fen"] = record["fen"]
    kept["plies"] = len(record["opening"]) + len(record["moves"])
    kept["depth"] = [None if work.depth is None else round(work.depth, 1) for work in works]
    kept["left"] = [_least_left(record, index) for index in (0, 1)]
    faults = Counter((fault["engine"], fault["kind"]) for fault in record["faults"])
    kept["faults"] = [[*fault, count] for fault, count in sorted(faults.items())]
    return kept


def _work(record, index):
    work = Work()
    work.add(record, index)
    return work


def _least_left(record, index):
    """The least that was left on the clock in ms, None without one."""
    to_move = 0 if record["fen"].split()[1] == "w" else 1
    first = (to_move + len(record["opening"]) + index) % 2
    clocks = [clock for clock in record["clocks"][first::2] if clock is not None]
    return round(min(clocks)) if clocks else None


def data(head, games):
    """The bytes of a file; the same games give the same."""
    text = "".join(json.dumps(each, separators=(",", ":")) + "\n" for each in (head, *games))
    return lzma.compress(text.encode(), preset=9 | lzma.PRESET_EXTREME)


def read(name):
    """(head, games) of a file, or of one that orvelin-match writes while it plays."""
    if not name.endswith(END):
        return of_files([name])
    try:
        with lzma.open(name) as file:
            text = file.read(MOST_BYTES)
        head, *games = map(json.loads, text.splitlines())
    except OSError as error:
        raise read_error(name, error.strerror) from None
    except (lzma.LZMAError, EOFError, ValueError, RecursionError):
        raise _foreign(name) from None
    if not isinstance(head, dict) or head.get("kind") != KIND:
        raise _foreign(name)
    return head, games


def _foreign(name):
    return ToolError(f"{name} is not what orvelin-match keep writes")


def files_in(folder):
    """The names of all such files in a folder and those below it, in order."""
    names = [
        os.path.join(place, name)
        for place, _, names in os.walk(folder)
        for name in names
        if name.endswith(END)
    ]
    return sorted(names)
