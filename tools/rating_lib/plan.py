"""The matches that place the levels: each level against its neighbours and against other engines.

No search here looks at a clock, so that results do not depend on the machine nor on what else it
does. A level ends each search at its own nodes. Stockfish decides a move of a level at a depth that
its UCI_Elo fixes, and the nodes that it is given here let it go deeper than that; its `UCI_Elo` is
what that program says of itself, at 60 s + 0.6 s, and the only numbers that the scale is tied to.
The other engines are given a depth: they have no rating of their own then, and connect the levels.
"""

import zlib
from dataclasses import dataclass

LEVELS = (800, 900, 1000, 1100, 1200, 1300, 1400, 1500, 1700, 1800, 2000, 2200, 2400)
GAMES = 200
# Parts in which a match is played, each of some minutes at most.
SHARDS = 20
# More than any level uses.
ENOUGH_NODES = 10000000

STOCKFISH = {1350: 20000, 1500: 20000, 1700: 20000, 1900: 50000, 2100: 50000}
# Commands and options of the others.
OTHERS = {
    "gnuchess": ("gnuchess --uci", ("option.OwnBook=false",)),
    "toga2": ("toga2", ("option.OwnBook=false",)),
    "glaurung": ("glaurung", ("option.Threads=1",)),
}
AGAINST_STOCKFISH = {
    800: (1350,),
    900: (1350,),
    1000: (1350,),
    1100: (1350,),
    1200: (1350, 1500),
    1300: (1350, 1500),
    1400: (1500, 1700),
    1500: (1500, 1700),
    1700: (1700,),
    1800: (1700, 1900),
    2000: (1900,),
    2200: (1900, 2100),
    2400: (2100,),
}
# (engine, depth) for levels that are about as strong.
AGAINST_OTHERS = {
    1200: (("gnuchess", 1),),
    1300: (("toga2", 1),),
    1400: (("gnuchess", 1), ("glaurung", 2)),
    1500: (("toga2", 2), ("glaurung", 2)),
    1700: (("gnuchess", 2), ("glaurung", 3)),
    1800: (("toga2", 3),),
    2000: (("gnuchess", 3), ("glaurung", 4)),
}


@dataclass(frozen=True)
class Planned:
    """A match: its name, and the words behind --engine of both players."""

    name: str
    players: tuple
    seed: int


def level_words(program, elo):
    return (
        f"cmd={program}",
        f"name=orvelin-play-{elo}",
        "option.UCI_LimitStrength=true",
        f"option.UCI_Elo={elo}",
        f"nodes={ENOUGH_NODES}",
    )


def stockfish_words(elo):
    return (
        "cmd=stockfish",
        f"name=stockfish-{elo}",
        "option.UCI_LimitStrength=true",
        f"option.UCI_Elo={elo}",
        f"nodes={STOCKFISH[elo]}",
    )


def other_words(name, depth):
    command, options = OTHERS[name]
    return (f"cmd={command}", f"name={name}-{depth}", *options, f"depth={depth}")


def plan(program):
    """All matches, the levels played by this program, from the weakest and quickest on. The seed of
    each match comes from its name, so that no two begin with the same openings."""
    meetings = []
    for elo, higher in zip(LEVELS, (*LEVELS[1:], None)):
        own = level_words(program, elo)
        if higher is not None:
            meetings.append((f"{elo}-{higher}", own, level_words(program, higher)))
        for other in AGAINST_STOCKFISH[elo]:
            meetings.append((f"{elo}-stockfish-{other}", own, stockfish_words(other)))
        for name, depth in AGAINST_OTHERS.get(elo, ()):
            meetings.append((f"{elo}-{name}-{depth}", own, other_words(name, depth)))
    return [
        Planned(name, (first, second), zlib.crc32(name.encode()))
        for name, first, second in meetings
    ]
