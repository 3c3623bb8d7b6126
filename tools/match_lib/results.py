"""The file of a match: its settings in the first line, and a line for each game."""

import json
import os

from match_lib.clocks import Limit
from match_lib.pairing import Schedule
from orvelin_lib.files import read_error
from orvelin_lib.journal import Journal, read_journal
from orvelin_lib.tool_main import ToolError, UsageError

NEEDED = {"game", "pair", "white", "black", "result", "reason", "moves", "opening", "fen", "faults"}


def opened(options, settings):
    """(journal, records so far) of the file of the options, (None, []) without one."""
    name, head = options.jsonl, settings.as_dict()
    if name is None:
        return None, []
    if not (options.resume and os.path.lexists(name)):
        return Journal.create(name, head), []
    journal, old, records = Journal.resume(name)
    if old is None:
        journal.begin(head)
        return journal, []
    if old != head:
        journal.close()
        raise UsageError(f"{name} belongs to another match: {_difference(old, head)}")
    try:
        return journal, _checked(name, records)
    except ToolError:
        journal.close()
        raise


def _difference(old, new):
    """The first setting that is another one, and no more than that of a nested one."""
    old, new = (dict(_leaves(head)) for head in (old, new))
    for key in [*new, *old]:
        was, now = (json.dumps(each[key])[:100] if key in each else "not set" for each in (old, new))
        if was != now:
            return f"{key} was {was}, and is {now}"
    return "it has other settings"


def _leaves(value, path=""):
    """(name, value) of all that is in settings, in their order."""
    if isinstance(value, dict):
        entries = list(value.items())
    elif path == "players":
        yield "number of players", len(value)
        entries = enumerate(value, 1)
    elif path.endswith(" options"):
        entries = value
    else:
        yield path, value
        return
    for key, each in entries:
        yield from _leaves(each, f"{path} {key}".strip())


def read(name):
    """(settings as they were written, records) of a file."""
    head, records = read_journal(name)
    if "players" not in head or "shard" not in head:
        raise ToolError(f"{name} is not the file of a match")
    return head, _checked(name, records)


def _checked(name, records):
    """The records, each game once."""
    numbers = set()
    for record in records:
        if not isinstance(record, dict) or not NEEDED <= record.keys():
            raise ToolError(f"{name}: not the record of a game: {json.dumps(record)[:80]}")
        if record["game"] in numbers:
            raise ToolError(f"{name}: game {record['game']} is there twice")
        numbers.add(record["game"])
    return records


class Seen:
    """Refuses games that another file has brought already: they would count twice, and make every
    error too small."""

    def __init__(self):
        self._places = {}

    def add(self, name, head, records):
        """ToolError when one of the records of a file was there before."""
        match = json.dumps({**head, "shard": None})
        for record in records:
            # A game without a move has no times that would tell it from another one.
            if not record["moves"]:
                continue
            key = hash((match, json.dumps(record)))
            if key in self._places:
                words = f"game {record['game']} is in {self._places[key]} too"
                raise ToolError(f"{name}: {words}: the same games count once only")
            self._places[key] = name


def controls_of(head):
    """The time controls of the players by their names, as PGN has them."""
    return {player["name"]: Limit(**player["limit"]).words() for player in head["players"]}


def merged(names):
    """(head, records by their numbers) of the files of all shards of one match; ToolError when
    they are not that, or not whole."""
    parts = {}
    common = None
    for name in names:
        head, records = read(name)
        which, count = head.pop("shard")
        common = common or (head, count, name)
        if (head, count) != common[:2]:
            words = f"{name} and {common[2]} are not of the same match"
            raise ToolError(f"{words}: {_difference(common[0], head)}")
        if which in parts:
            raise ToolError(f"{name}: shard {which}/{count} is there twice")
        parts[which] = name, records
    head, count, _ = common
    return {**head, "shard": [1, 1]}, _whole(head, count, parts)


def _whole(head, count, parts):
    """All games of all shards in their order."""
    if missing := [str(which) for which in range(1, count + 1) if which not in parts]:
        raise ToolError(f"shard {missing[0]}/{count} is missing" + _others(missing))
    records = []
    for which, (name, own) in sorted(parts.items()):
        schedule = Schedule(len(head["players"]), head["gauntlet"], head["games"], (which, count))
        played, planned = {record["game"] for record in own}, set(schedule.numbers())
        if strange := played - planned:
            raise ToolError(f"{name}: game {min(strange)} is not of shard {which}/{count}")
        if lacking := planned - played:
            raise read_error(name, f"{len(lacking)} games are missing, such as game {min(lacking)}")
        records += own
    return sorted(records, key=lambda record: record["game"])


def _others(missing):
    return f", and {len(missing) - 1} others" if len(missing) > 1 else ""


def lines(head, records):
    """The text of a file."""
    whole = [{"kind": "run", **head}, *records]
    return "".join(json.dumps(record) + "\n" for record in whole)
