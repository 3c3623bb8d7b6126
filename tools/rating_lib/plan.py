"""The matches that place the levels: each level against its neighbours and against other engines.

No search here looks at a clock, so that results do not depend on the machine nor on what else it
does. A level ends each search at its own nodes. Stockfish decides a move of a level at a depth that
its UCI_Elo fixes, and the nodes that it is given here let it go deeper than that; its `UCI_Elo` is
what that program says of itself, at 60 s + 0.6 s, and the only numbers that the scale is tied to.
The other engines are given a depth: they have no rating of their own then, and connect the levels.
"""

from dataclasses import dataclass

LEVELS = (800, 950, 1100, 1250, 1400, 1550, 1700, 1850, 2000, 2150, 2300, 2400)
GAMES = 200
# Parts in which a match is played, each of some minutes at most.
SHARDS = 20
# More than any level uses.
ENOUGH_NODES = 10000000

STOCKFISH = {1350: 20000, 1500: 20000, 1700: 20000, 1900: 50000, 2100: 50000, 2300: 100000}
# Commands and options of the others.
OTHERS = {
    "gnuchess": ("gnuchess --uci", ("option.OwnBook=false",)),
    "toga2": ("toga2", ("option.OwnBook=false",)),
    "glaurung": ("glaurung", ("option.Threads=1",)),
}
AGAINST_STOCKFISH = {
    800: (1350,),
    950: (1350,),
    1100: (1350,),
    1250: (1350, 1500),
    1400: (1350, 1500),
    1550: (1500, 1700),
    1700: (1700, 1900),
    1850: (1700, 1900),
    2000: (1900, 2100),
    2150: (2100, 2300),
    2300: (2100, 2300),
    2400: (2300,),
}
# (engine, depth) for levels that are about as strong.
AGAINST_OTHERS = {
    1100: (("gnuchess", 1), ("toga2", 1), ("glaurung", 1)),
    1400: (("gnuchess", 2), ("toga2", 2), ("glaurung", 2)),
    1700: (("gnuchess", 4), ("toga2", 4), ("glaurung", 4)),
    2000: (("gnuchess", 6), ("toga2", 6), ("glaurung", 6)),
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
    """All matches, the levels played by this program. The seed of each match is its place, so that
    no two begin with the same openings."""
    meetings = [
        (f"{low}-{high}", level_words(program, low), level_words(program, high))
        for low, high in zip(LEVELS, LEVELS[1:])
    ]
    for elo in LEVELS:
        meetings += [
            (f"{elo}-stockfish-{other}", level_words(program, elo), stockfish_words(other))
            for other in AGAINST_STOCKFISH[elo]
        ]
        meetings += [
            (f"{elo}-{name}-{depth}", level_words(program, elo), other_words(name, depth))
            for name, depth in AGAINST_OTHERS.get(elo, ())
        ]
    return [
        Planned(name, (first, second), 200 + place)
        for place, (name, first, second) in enumerate(meetings)
    ]
