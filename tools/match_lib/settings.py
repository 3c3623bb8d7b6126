"""All that makes a match what it is."""

import json
from dataclasses import asdict, dataclass

from match_lib.adjudication import Rule


@dataclass(frozen=True)
class Settings:
    """Times are in seconds, the margin in milliseconds. `games` are those of each two players who
    meet; `shard` is which part of how many."""

    players: tuple
    games: int
    gauntlet: bool
    openings: str
    order: str
    seed: int
    chess960: bool
    ponder: bool
    margin: float
    patience: float
    longest: float
    restart: int
    max_moves: int
    draw: Rule | None
    resign: Rule | None
    shard: tuple

    def as_dict(self):
        """As JSON has it: the same settings give the same."""
        values = json.loads(json.dumps(asdict(self)))
        for player in values["players"]:
            # Matches from before there was a margin of its own can be taken up again.
            if player["margin"] is None:
                del player["margin"]
        return values
