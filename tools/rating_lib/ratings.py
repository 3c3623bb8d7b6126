"""Ratings of all players on one scale, and of whom nothing can be said on it."""

from collections import Counter
from dataclasses import dataclass

from match_lib.statistics import QUANTILE
from orvelin_lib.tool_main import ToolError
from rating_lib.model import Fit, fitted, reachable

# Why a player has no rating.
WEAKER = "took no point from those who are rated: infinitely weaker"
STRONGER = "lost no point to those who are rated: infinitely stronger"
FAR = "played nobody who is rated"


@dataclass(frozen=True)
class Rating:
    """In Elo; the error is half the width of the interval that holds the true one in 95 of 100."""

    elo: float
    error: float
    games: int


@dataclass(frozen=True)
class Ratings:
    """`left_out` tells why a player has none; `anchors` has the claims that the scale is tied to,
    by player."""

    ratings: dict
    left_out: dict
    anchors: dict
    fit: Fit

    @property
    def advantage(self):
        """(Elo that White is worth, its error)."""
        return self.fit.advantage, QUANTILE * self.fit.advantage_error


def rated(results):
    """The ratings of all who are connected with an anchor, or, where there is none, with the player
    of most games, the mean then being 0; ToolError when there is no rating at all. Groups that are
    not connected by games have but the claims of their anchors in common."""
    games = results.games()
    if not games:
        raise ToolError("there is no game to rate")
    claims = {
        label: player.claim
        for label, player in results.players.items()
        if player.claim is not None and games[label]
    }
    starts = sorted(claims, key=lambda label: -games[label]) or [max(games, key=games.get)]
    groups, left_out = _groups(results.counts, starts, games)
    placed = set().union(*groups)
    counts = {pair: cell for pair, cell in results.counts.items() if placed.issuperset(pair)}
    if not counts:
        raise ToolError("there are no two players who took points from each other")
    if not any(cell[0] for cell in counts.values()) or not any(c[2] for c in counts.values()):
        raise ToolError("one colour has won no game: there is no advantage to fit")
    anchors = {label: claim for label, claim in claims.items() if label in placed}
    weights = [
        {label: games[label] * (label in anchors or not anchors) for label in group}
        for group in groups
    ]
    fit = fitted(counts, weights)
    inner = _games_within(counts)
    ratings = {}
    for group in weights:
        total = sum(group.values())
        zero = sum(weight * anchors.get(label, 0) for label, weight in group.items()) / total
        for label in group:
            error = QUANTILE * fit.error[label]
            ratings[label] = Rating(zero + fit.elo[label], error, inner[label])
    return Ratings(ratings, left_out, anchors, fit)


def _groups(counts, starts, games):
    """(sets of players who are connected by points in both directions, reasons for the others)."""
    groups, placed, reasons = [], set(), {}
    for start in starts:
        if start in placed:
            continue
        better, worse = reachable(counts, start)
        group = better & worse
        if len(group) > 1:
            groups.append(group)
            placed |= group
        for label in games:
            if label not in group and (label in better or label in worse):
                reasons.setdefault(label, WEAKER if label in better else STRONGER)
    return groups, {label: reasons.get(label, FAR) for label in games if label not in placed}


def _games_within(counts):
    games = Counter()
    for pair, cell in counts.items():
        for label in pair:
            games[label] += sum(cell)
    return games
