"""Players and results of kept matches, as the fit takes them."""

from collections import Counter
from dataclasses import dataclass, field

from match_lib import kept
from match_lib.clocks import Limit
from orvelin_lib.tool_main import ToolError

# What these engines call a level, and the option that switches it on.
LEVEL, LIMITED = "UCI_Elo", "UCI_LimitStrength"
OURS, ANCHOR = "orvelin-play", "Stockfish"


@dataclass(frozen=True)
class Player:
    """An engine with its settings and what it is given for a move: with another limit it is
    another player. A level of the engine that the scale is tied to is one player whatever it is
    given: it decides at a depth that its number fixes, and every match lets it go deeper."""

    name: str
    limit: str
    title: str | None
    options: tuple
    program: str = ""

    @property
    def label(self):
        return f"{self.name}, {self.limit}" if self.claim is None else self.name

    @property
    def identity(self):
        """What players of one label have in common."""
        return self if self.claim is None else (self.title, self.claim, self.program)

    @property
    def level(self):
        """The Elo that it is told to play at, None for full strength."""
        options = dict(self.options)
        if options.get(LIMITED) != "true" or LEVEL not in options:
            return None
        return int(options[LEVEL])

    @property
    def is_ours(self):
        """Whether it is the engine for players; the exact one has the same title."""
        return self.name.startswith(OURS)

    @property
    def claim(self):
        """The rating that the scale is tied to, None for most."""
        return self.level if (self.title or "").startswith(ANCHOR) else None


@dataclass
class Match:
    """What a kept file holds; players by the names that they have in its games."""

    file: str
    head: dict
    games: list
    players: dict


@dataclass
class Results:
    """Counts of games by (label of White, label of Black): [won, drawn, lost] by White."""

    players: dict = field(default_factory=dict)
    counts: dict = field(default_factory=dict)

    def add_player(self, player, file):
        """ToolError when another one has the label: two engines would be rated as one."""
        known = self.players.setdefault(player.label, player)
        if known.identity != player.identity:
            raise ToolError(f"{file}: {player.label} has other settings than in other files")

    def add(self, white, black, result):
        cell = self.counts.setdefault((white, black), [0, 0, 0])
        cell[("1-0", "1/2-1/2", "0-1").index(result)] += 1

    def games(self):
        """The number of games of each player."""
        games = Counter()
        for pair, cell in self.counts.items():
            for label in pair:
                games[label] += sum(cell)
        return games


def read_matches(names):
    """The matches of these files; those that differ in their shard alone are one."""
    return [_match(name) for name in names]


def _match(name):
    head, games = kept.read(name)
    players = {}
    for player in head["players"]:
        options = tuple(sorted(tuple(option) for option in player["options"]))
        limit = Limit(**player["limit"]).words()
        own = (player["name"], limit, player["title"], options, player["program"])
        players[player["name"]] = Player(*own)
    return Match(name, head, games, players)


def results_of(matches):
    """All games of all matches, each two by their colours."""
    results = Results()
    for match in matches:
        for game in match.games:
            white, black = match.players[game["white"]], match.players[game["black"]]
            for player in (white, black):
                results.add_player(player, match.file)
            results.add(white.label, black.label, game["result"])
    return results
