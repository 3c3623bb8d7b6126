"""Ratings of all players on one scale, and of whom nothing can be said on it."""

from dataclasses import dataclass

from match_lib.statistics import QUANTILE
from orvelin_lib.tool_main import ToolError
from rating_lib.model import Fit, fitted, reachable


@dataclass(frozen=True)
class Rating:
    """In Elo; the error is half the width of the interval that holds the true one in 95 of 100."""

    elo: float
    error: float
    games: int


@dataclass(frozen=True)
class Ratings:
    """`left_out` tells why a player has none. Without anchors the mean of all is 0."""

    ratings: dict
    left_out: dict
    anchors: dict
    fit: Fit

    @property
    def advantage(self):
        """(Elo that White is worth, its error)."""
        return self.fit.advantage, QUANTILE * self.fit.advantage_error


def rated(results):
    """The ratings of all who are connected with an anchor; ToolError when there are none."""
    games = results.games()
    claims = {
        label: player.claim
        for label, player in results.players.items()
        if player.claim is not None and games[label]
    }
    anchor = max(claims or games, key=lambda label: games[label], default=None)
    if anchor is None:
        raise ToolError("there is no game to rate")
    better, worse = reachable(results.counts, anchor)
    kept = better & worse
    left_out = {
        label: _reason(label, results.counts, kept, better, worse)
        for label in games
        if label not in kept
    }
    counts = {pair: cell for pair, cell in results.counts.items() if kept.issuperset(pair)}
    if not counts:
        raise ToolError("there are no two players who took points from each other")
    if not any(cell[0] for cell in counts.values()) or not any(c[2] for c in counts.values()):
        raise ToolError("one colour has won no game: there is no advantage to fit")
    anchors = {label: claim for label, claim in claims.items() if label in kept}
    weights = {label: games[label] for label in anchors}
    fit = fitted(counts, weights)
    total = sum(weights.values())
    zero = sum(weights[label] * claim for label, claim in anchors.items()) / total if total else 0
    inner = _games_within(counts)
    ratings = {
        label: Rating(zero + elo, QUANTILE * fit.error[label], inner[label])
        for label, elo in fit.elo.items()
    }
    return Ratings(ratings, left_out, anchors, fit)


def _games_within(counts):
    games = dict.fromkeys((label for pair in counts for label in pair), 0)
    for pair, cell in counts.items():
        for label in pair:
            games[label] += sum(cell)
    return games


def _reason(label, counts, kept, better, worse):
    """Why the fit has no place for a player: `better` are those whom the anchor took points from in
    one or several steps, `worse` those who took points from it."""
    if label in better:
        return "took no point from those who are rated: infinitely weaker"
    if label in worse:
        return "lost no point to those who are rated: infinitely stronger"
    meets = any(label in pair and kept.intersection(pair) for pair in counts)
    return "played nobody who is rated" if not meets else "is not connected with those who are rated"
