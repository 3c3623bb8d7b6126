"""What the results of a match say of the strength of two players.

The unit is the pair: two games from one opening with colours swapped. An opening that favours a
side favours each player once, so the two results depend on each other, and the error is that of the
mean of the pairs, not of the games. Counts are those of pairs with 0, 1/2, 1, 3/2 and 2 points.

Elo is the logistic scale: A. Elo, The Rating of Chessplayers, Past and Present, 1978, with the base
of 400 points for odds of ten to one.
"""

import math
from dataclasses import dataclass

# The share of a point of each game that a pair of these points brings.
SCORES = (0.0, 0.25, 0.5, 0.75, 1.0)
# The quantile of the normal distribution for 95 % between both ends.
QUANTILE = 1.959963984540054


def elo_of(score):
    """The difference in strength at which this is the expected score; infinite at 0 and 1."""
    if score <= 0:
        return -math.inf
    if score >= 1:
        return math.inf
    return 400 * math.log10(score / (1 - score))


def score_of(elo):
    """The expected score of a game."""
    return 1 / (1 + 10 ** (-elo / 400))


def normal_share(value):
    """The share of a normal distribution that lies below so many standard deviations."""
    return 0.5 * math.erfc(-value / math.sqrt(2))


@dataclass(frozen=True)
class Moments:
    """Mean score, and variance of the score, of pairs."""

    pairs: int
    mean: float
    variance: float

    @property
    def error(self):
        """The standard deviation of the mean."""
        return math.sqrt(self.variance / self.pairs)


def moments(counts):
    """Those of pentanomial counts; None for fewer than two pairs, which have no variance."""
    pairs = sum(counts)
    if pairs < 2:
        return None
    mean = sum(count * score for count, score in zip(counts, SCORES)) / pairs
    squares = sum(count * (score - mean) ** 2 for count, score in zip(counts, SCORES))
    return Moments(pairs, mean, squares / (pairs - 1))


@dataclass(frozen=True)
class Estimate:
    """A difference in Elo with the ends of the interval that holds it with 95 %, and the chance
    of superiority: that the first player is the stronger one."""

    elo: float
    low: float
    high: float
    superiority: float

    @property
    def error(self):
        """Half the width of the interval, infinite when it has an open end."""
        return (self.high - self.low) / 2


def estimate(counts):
    """What pentanomial counts say; None when they say nothing of the error.

    The mean of the pairs is taken as normal, and the ends of its interval are put on the scale of
    Elo. The chance of superiority is the share of that normal distribution above an even score.
    """
    found = moments(counts)
    if found is None or found.variance == 0:
        return None
    reach = QUANTILE * found.error
    return Estimate(
        elo_of(found.mean),
        elo_of(found.mean - reach),
        elo_of(found.mean + reach),
        normal_share((found.mean - 0.5) / found.error),
    )
