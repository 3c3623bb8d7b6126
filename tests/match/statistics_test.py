"""Elo, its error and the test of two strengths: worked values, and matches of known strength."""

import itertools
import math
import random
import unittest

from match_lib.sprt import Sprt, likely_shares, log_likelihood_ratio
from match_lib.statistics import SCORES, elo_of, estimate, moments, normal_share, score_of


class EloTest(unittest.TestCase):
    def test_worked_values(self):
        # Odds of ten to one are 400 points, of three to one 400 * log10(3).
        for score, elo in ((0.5, 0), (10 / 11, 400), (1 / 11, -400), (0.75, 190.848502)):
            self.assertAlmostEqual(elo_of(score), elo, 6)
            self.assertAlmostEqual(score_of(elo), score, 8)

    def test_nothing_but_wins(self):
        self.assertEqual((elo_of(1), elo_of(0)), (math.inf, -math.inf))

    def test_share_of_the_normal_distribution(self):
        # The table of the distribution: 1.2816 and 1.96 cut off 10 % and 2.5 %.
        for value, share in ((0, 0.5), (1.2815515655, 0.9), (-1.959963984540054, 0.025)):
            self.assertAlmostEqual(normal_share(value), share, 9)


class EstimateTest(unittest.TestCase):
    def test_by_hand(self):
        # Ten pairs: points 0.25 twice, 0.5 four times, 0.75 four times. The mean is 5.5 / 10, the
        # squares of the distances are 2 * 0.09 + 4 * 0.0025 + 4 * 0.04 = 0.35.
        found = moments((0, 2, 4, 4, 0))
        self.assertAlmostEqual(found.mean, 0.55)
        self.assertAlmostEqual(found.variance, 0.35 / 9)
        self.assertAlmostEqual(found.error, math.sqrt(0.35 / 90))
        # 0.05 / 0.0623610 = 0.801784 deviations above an even score; 1.96 of them are 0.122225.
        result = estimate((0, 2, 4, 4, 0))
        self.assertAlmostEqual(result.elo, 400 * math.log10(0.55 / 0.45))
        self.assertAlmostEqual(score_of(result.low), 0.427775, 6)
        self.assertAlmostEqual(score_of(result.high), 0.672225, 6)
        self.assertAlmostEqual(result.superiority, 0.788660, 5)
        self.assertAlmostEqual(result.error, (result.high - result.low) / 2)

    def test_the_other_side_is_the_mirror(self):
        first, second = estimate((1, 7, 20, 11, 3)), estimate((3, 11, 20, 7, 1))
        self.assertAlmostEqual(first.elo, -second.elo)
        self.assertAlmostEqual(first.low, -second.high)
        self.assertAlmostEqual(first.superiority, 1 - second.superiority)

    def test_openings_that_decide_are_no_error(self):
        # Every pair is even, as each opening was won twice by the same colour, but for two.
        self.assertLess(estimate((0, 1, 98, 1, 0)).error, 10)

    def test_without_an_error(self):
        for counts in ((0, 0, 0, 0, 0), (0, 0, 1, 0, 0), (0, 0, 9, 0, 0), (0, 0, 0, 0, 5)):
            self.assertIsNone(estimate(counts), counts)


class Opponents:
    """Two players of known strength, with draws, and openings that favour White by as much as the
    opening says: the pairs have less variance than games by themselves."""

    BIASES = (-0.4, -0.1, 0.1, 0.3, 0.6)
    DRAWN = 0.35

    def __init__(self, edge, seed):
        self._chance = random.Random(seed)
        self.shares = [0.0] * 5
        for bias in self.BIASES:
            games = self._game(edge + bias), self._game(edge - bias)
            for first, second in itertools.product(*games):
                self.shares[first[0] + second[0]] += first[1] * second[1] / len(self.BIASES)
        self.score = sum(share * score for share, score in zip(self.shares, SCORES))

    def _game(self, edge):
        """(half points, probability) of the results of one game."""
        decided = 1 - self.DRAWN
        win = decided * score_of(400 * edge)
        return ((0, decided - win), (1, self.DRAWN), (2, win))

    def counts(self, pairs):
        drawn = self._chance.choices(range(5), self.shares, k=pairs)
        return [drawn.count(points) for points in range(5)]

    def test(self, sprt, step, most):
        """Plays until the test decides: what it takes, None when it does not."""
        counts = [0] * 5
        for _ in range(0, most, step):
            counts = [old + new for old, new in zip(counts, self.counts(step))]
            if verdict := sprt.verdict(counts):
                return verdict
        return None


class CoverageTest(unittest.TestCase):
    """The interval of 95 % holds the true strength in 93 to 97 % of 2,000 matches."""

    def coverage(self, edge, pairs):
        opponents = Opponents(edge, seed=f"{edge} {pairs}")
        elo, held, superior = elo_of(opponents.score), 0, 0
        for _ in range(2000):
            found = estimate(opponents.counts(pairs))
            held += found.low <= elo <= found.high
            superior += found.superiority > 0.95
        return held / 2000, superior / 2000

    def test_the_interval_holds_the_truth(self):
        for edge, pairs in ((0.0, 100), (0.0, 500), (0.1, 200), (0.4, 200), (-0.2, 50)):
            held, _ = self.coverage(edge, pairs)
            self.assertTrue(0.93 <= held <= 0.97, (edge, pairs, held))

    def test_equal_players_seldom_look_superior(self):
        _, superior = self.coverage(0.0, 200)
        self.assertTrue(0.035 <= superior <= 0.065, superior)


class LikelihoodTest(unittest.TestCase):
    COUNTS = (10, 50, 100, 60, 15)

    def test_likely_shares_have_the_mean_and_are_the_most_likely(self):
        for mean in (0.4, 0.51, 0.7):
            shares = likely_shares(self.COUNTS, mean)
            self.assertAlmostEqual(sum(shares), 1, 9)
            self.assertAlmostEqual(sum(s * v for s, v in zip(shares, SCORES)), mean, 9)
            best = self.likelihood(shares)
            # Every small step that keeps sum and mean makes it less likely.
            for step in ((1, -2, 1, 0, 0), (0, 1, -2, 1, 0), (0, 0, 1, -2, 1)):
                for size in (1e-4, -1e-4):
                    moved = [share + size * part for share, part in zip(shares, step)]
                    self.assertLess(self.likelihood(moved), best)

    def likelihood(self, shares):
        return sum(count * math.log(share) for count, share in zip(self.COUNTS, shares))

    def test_by_hand_with_two_results(self):
        # With pairs of 0 and 2 points alone the shares are fixed by the mean, as of a coin: 60 of
        # 100 at a mean of 0.6 against 0.5 give 60 * ln(1.2) + 40 * ln(0.8).
        ratio = log_likelihood_ratio((40, 0, 0, 0, 60), 0, elo_of(0.6))
        self.assertAlmostEqual(ratio, 60 * math.log(1.2) + 40 * math.log(0.8), 1)

    def test_near_the_normal_approximation(self):
        # For small differences N (s1 - s0) (2 s - s0 - s1) / (2 var).
        found = moments(self.COUNTS)
        for elo0, elo1 in ((0, 5), (-3, 1), (10, 14)):
            low, high = score_of(elo0), score_of(elo1)
            normal = found.pairs * (high - low) * (2 * found.mean - low - high) / 2 / found.variance
            self.assertAlmostEqual(log_likelihood_ratio(self.COUNTS, elo0, elo1), normal, 1)

    def test_mirror_and_nothing(self):
        ratio = log_likelihood_ratio(self.COUNTS, 0, 5)
        self.assertAlmostEqual(log_likelihood_ratio(self.COUNTS[::-1], -5, 0), -ratio, 9)
        self.assertEqual(log_likelihood_ratio((0, 0, 0, 0, 0), 0, 5), 0)


class SprtTest(unittest.TestCase):
    def test_bounds_of_wald(self):
        low, high = Sprt(0, 5).bounds
        self.assertAlmostEqual(high, math.log(19))
        self.assertAlmostEqual(low, -math.log(19))
        low, high = Sprt(0, 5, alpha=0.01, beta=0.2).bounds
        self.assertAlmostEqual(low, math.log(0.2 / 0.99))
        self.assertAlmostEqual(high, math.log(0.8 / 0.01))

    def test_words(self):
        self.assertEqual(Sprt.parse(["elo0=0", "elo1=5", "beta=0.1"]), Sprt(0, 5, 0.05, 0.1))
        for words in (
            "elo0=0",
            "elo0=5 elo1=0",
            "elo0=0 elo1=x",
            "elo0=0 elo1=nan",
            "elo0=0 elo1=5 alpha=0",
            "elo0=0 elo0=1 elo1=5",
            "x=1",
        ):
            with self.assertRaises(ValueError, msg=words):
                Sprt.parse(words.split())

    def test_it_is_seldom_wrong(self):
        # The bounds are passed by a step, not met, so the errors are below what is allowed.
        sprt, matches = Sprt(0, 60, alpha=0.1, beta=0.1), 250
        for elo, wrong in ((0, "elo1"), (60, "elo0")):
            opponents = self.opponents_of(elo)
            taken = [opponents.test(sprt, 4, 2000) for _ in range(matches)]
            self.assertNotIn(None, taken)
            # Of 250 with at most 10 % wrong 36 are wrong once in a hundred times.
            self.assertLess(taken.count(wrong), 36, elo)
            self.assertGreater(taken.count(wrong), 2, elo)

    @staticmethod
    def opponents_of(elo):
        """Those with this difference, found by halving."""
        low, high = -1.0, 1.0
        for _ in range(40):
            middle = (low + high) / 2
            is_low = elo_of(Opponents(middle, 0).score) < elo
            low, high = (middle, high) if is_low else (low, middle)
        return Opponents(low, seed=elo)

    def test_text(self):
        sprt = Sprt(0, 5)
        self.assertEqual(
            sprt.text((0, 0, 0, 0, 0)),
            "SPRT of Elo 0 and 5: LLR 0.00 of -2.94 to 2.94, not decided",
        )
        self.assertIn("Elo 5 taken", sprt.text((0, 100, 1000, 600, 100)))
        self.assertIn("Elo 0 taken", sprt.text((100, 600, 1000, 100, 0)))


if __name__ == "__main__":
    unittest.main()
