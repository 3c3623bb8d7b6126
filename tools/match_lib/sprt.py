"""A match that ends as soon as it has told two strengths apart.

The sequential probability ratio test: A. Wald, Sequential Tests of Statistical Hypotheses, Annals
of Mathematical Statistics 16, 1945, which has the bounds. The distribution of the pairs is not known
beyond its mean, so each hypothesis is given its most likely one: X. Li, J. Liu and Z. Ying,
Generalized Sequential Probability Ratio Test for Separate Families of Hypotheses, Sequential
Analysis 33, 2014; for five results of a pair it was worked out in the notes of M. Van den Bergh,
hardy.uhasselt.be/Fishtest. The most likely distribution of a given mean is that of A. Owen,
Empirical Likelihood Ratio Confidence Intervals for a Single Functional, Biometrika 75, 1988.
"""

import math
from dataclasses import asdict, dataclass

from match_lib.statistics import SCORES, score_of

# A result that was not seen yet is not impossible: so many pairs stand for it.
UNSEEN = 1e-3
STEPS = 60


def _tilt(shares, mean):
    """The t for which shares / (1 + t * (score - mean)) have this mean and a sum of 1. Their sum of
    share * (score - mean) falls with t, so its only zero is found by halving."""
    low, high = -1 / (1 - mean), 1 / mean
    for _ in range(STEPS):
        middle = (low + high) / 2
        slope = sum(
            share * (score - mean) / (1 + middle * (score - mean))
            for share, score in zip(shares, SCORES)
        )
        if slope > 0:
            low = middle
        else:
            high = middle
    return (low + high) / 2


def likely_shares(counts, mean):
    """The most likely shares of the five results of a pair when their mean is given."""
    counts = [max(count, UNSEEN) for count in counts]
    shares = [count / sum(counts) for count in counts]
    tilt = _tilt(shares, mean)
    return [share / (1 + tilt * (score - mean)) for share, score in zip(shares, SCORES)]


def log_likelihood_ratio(counts, elo0, elo1):
    """How much better the pairs fit a difference of elo1 than one of elo0."""
    if not sum(counts):
        return 0.0
    shares0 = likely_shares(counts, score_of(elo0))
    shares1 = likely_shares(counts, score_of(elo1))
    return sum(
        max(count, UNSEEN) * math.log(share1 / share0)
        for count, share0, share1 in zip(counts, shares0, shares1)
    )


@dataclass(frozen=True)
class Sprt:
    """The test of elo1 against elo0; alpha and beta are how often either may be taken wrongly."""

    elo0: float
    elo1: float
    alpha: float = 0.05
    beta: float = 0.05

    @staticmethod
    def parse(words):
        """The test of texts such as elo1=5; ValueError when they are none."""
        values = {}
        for word in words:
            key, mark, text = word.partition("=")
            if key not in ("elo0", "elo1", "alpha", "beta") or not mark or key in values:
                raise ValueError(f"{word!r} is not elo0=, elo1=, alpha= or beta=, each once")
            try:
                values[key] = float(text)
            except ValueError:
                raise ValueError(f"{key}: {text!r} is not a number") from None
        if not {"elo0", "elo1"} <= values.keys():
            raise ValueError("elo0=NUMBER and elo1=NUMBER are needed")
        sprt = Sprt(**values)
        if not -1000 <= sprt.elo0 < sprt.elo1 <= 1000:
            raise ValueError("elo0 must be below elo1, and both between -1000 and 1000")
        if not (0 < sprt.alpha < 0.5 and 0 < sprt.beta < 0.5):
            raise ValueError("alpha and beta must be between 0 and 0.5")
        return sprt

    @property
    def bounds(self):
        """The ratio below which elo0 is taken, and the one above which elo1 is."""
        return (
            math.log(self.beta / (1 - self.alpha)),
            math.log((1 - self.beta) / self.alpha),
        )

    def ratio(self, counts):
        return log_likelihood_ratio(counts, self.elo0, self.elo1)

    def verdict(self, counts):
        """"elo0" or "elo1", None while the match has to go on."""
        low, high = self.bounds
        ratio = self.ratio(counts)
        return "elo1" if ratio >= high else "elo0" if ratio <= low else None

    def state(self, counts):
        """The ratio between its bounds."""
        low, high = self.bounds
        return f"LLR {self.ratio(counts):.2f} of {low:.2f} to {high:.2f}"

    def text(self, counts):
        """How far the test is, in one line."""
        words = {"elo0": f"Elo {self.elo0:g} taken", "elo1": f"Elo {self.elo1:g} taken"}
        state = words.get(self.verdict(counts), "not decided")
        return f"SPRT of Elo {self.elo0:g} and {self.elo1:g}: {self.state(counts)}, {state}"

    def as_dict(self):
        return asdict(self)
