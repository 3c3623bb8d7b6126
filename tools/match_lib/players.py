"""The engines of a match before they are started."""

import argparse
import os
from dataclasses import dataclass

from match_lib.clocks import KINDS, Limit
from orvelin_lib.arguments import MOST_SECONDS, command, decimal
from orvelin_lib.tool_main import UsageError

OPTION = "option."
PLAIN_KEYS = ("cmd", "name", "dir", "pawn", "margin")
# In milliseconds.
MOST_MARGIN = 1000 * MOST_SECONDS
MOST_PAWN = 100000


@dataclass(frozen=True)
class Player:
    """An engine: options are pairs of name and value, the folder is where it works, and the pawn
    is what it calls a pawn, in its own hundredths. The margin in milliseconds is that of the match
    when it is None."""

    name: str
    command: tuple
    limit: Limit
    options: tuple = ()
    folder: str | None = None
    pawn: int = 100
    margin: float | None = None


def read_words(words):
    """What the KEY=VALUE after --engine or --each say; ValueError when they say nothing."""
    values = {"options": {}}
    for word in words:
        key, mark, text = word.partition("=")
        if key.startswith(OPTION) and mark:
            values["options"][key.removeprefix(OPTION)] = text
        elif not mark or key not in (*PLAIN_KEYS, *KINDS):
            known = "=, ".join((*PLAIN_KEYS, *KINDS))
            raise ValueError(f"{word!r} is not {known}= or option.NAME=")
        elif key in values or (key in KINDS and "limit" in values):
            raise ValueError(f"{word!r}: that was said already")
        elif key in KINDS:
            values["limit"] = Limit.parse(key, text)
        else:
            values[key] = _read(key, text)
    return values


def _read(key, text):
    if not text:
        raise ValueError(f"{key}= has no value")
    if key == "cmd":
        return command(text)
    if key == "pawn":
        if not (text.isascii() and text.isdigit() and 1 <= int(text[:9]) <= MOST_PAWN):
            raise ValueError(f"pawn: {text!r} is not between 1 and {MOST_PAWN}")
        return int(text)
    if key == "margin":
        try:
            return decimal(0, MOST_MARGIN)(text)
        except argparse.ArgumentTypeError as error:
            raise ValueError(f"margin: {error}") from None
    return os.path.abspath(text) if key == "dir" else text


def players_of(engines, each, limit):
    """The players of these words; what is said of each engine holds where its own words are
    silent. UsageError when an engine has no command, no limit, or the name of another."""
    players = []
    for own in engines:
        values = {**each, **own, "options": {**each["options"], **own["options"]}}
        words = values.get("cmd")
        if words is None:
            raise UsageError("an --engine has no cmd=")
        name = values.get("name", os.path.basename(words[0]))
        if any(player.name == name for player in players):
            raise UsageError(f"two engines are called {name}: give one another name=")
        own_limit = values.get("limit", limit)
        if own_limit is None:
            raise UsageError(f"{name} has no time: give --tc, --movetime, --nodes or --depth")
        options = tuple(values["options"].items())
        folder, pawn = values.get("dir"), values.get("pawn", 100)
        margin = values.get("margin")
        players.append(Player(name, words, own_limit, options, folder, pawn, margin))
    return tuple(players)
