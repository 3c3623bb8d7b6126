"""The fit of strengths: published values, values by hand, and players of known strength."""

import math
import random
import unittest

from match_lib.statistics import QUANTILE
from rating_lib.model import PER_ELO, chances, fitted, reachable

# Games between seven teams of the American League in 1987: a row is the home team, and a word what
# it won and lost against each other one. A. Agresti, Categorical Data Analysis, 2nd edition, 2002,
# section 10.6, which also has the fit by the Bradley-Terry model.
TEAMS = ("Milwaukee", "Detroit", "Toronto", "New York", "Boston", "Cleveland", "Baltimore")
ANCHORED = [{team: float(team == "Baltimore") for team in TEAMS}]
HOME = """
-   4-3 4-2 4-3 6-1 4-2 6-0
3-3 -   4-2 4-3 6-0 6-1 4-3
2-5 4-3 -   2-4 4-3 4-2 6-0
3-3 5-1 2-5 -   4-3 4-2 6-1
5-1 2-5 3-3 4-2 -   5-2 6-0
2-5 3-3 3-4 4-3 4-2 -   2-4
2-5 1-5 1-6 2-4 1-6 3-4 -
"""


def baseball():
    counts = {}
    for home, row in zip(TEAMS, HOME.split("\n")[1:]):
        for away, word in zip(TEAMS, row.split()):
            if word != "-":
                won, lost = map(int, word.split("-"))
                counts[home, away] = (won, 0, lost)
    return counts


class PublishedTest(unittest.TestCase):
    def check(self, values, expected):
        for name, (value, error) in expected.items():
            self.assertAlmostEqual(values.elo[name] * PER_ELO, value, 3, name)
            self.assertAlmostEqual(values.error[name] * PER_ELO, error, 3, name)

    def test_without_the_advantage_of_the_home_team(self):
        counts = baseball()
        # Each game once in either place: no advantage is left, and each game counts twice.
        counts = {
            (home, away): tuple(
                map(sum, zip(counts[home, away], reversed(counts[away, home])))
            )
            for home, away in counts
        }
        found = fitted(counts, ANCHORED)
        self.assertAlmostEqual(found.advantage, 0, 6)
        half = math.sqrt(0.5)
        self.check(found, {
            "Milwaukee": (1.5814, 0.3433 * half), "Detroit": (1.4364, 0.3396 * half),
            "Toronto": (1.2945, 0.3367 * half), "New York": (1.2476, 0.3359 * half),
            "Boston": (1.1077, 0.3339 * half), "Cleveland": (0.6839, 0.3319 * half),
            "Baltimore": (0, 0),
        })

    def test_with_the_advantage_of_the_home_team(self):
        found = fitted(baseball(), ANCHORED)
        self.assertAlmostEqual(found.advantage * PER_ELO, 0.3023, 3)
        self.assertAlmostEqual(found.advantage_error * PER_ELO, 0.1309, 3)
        self.check(found, {"Milwaukee": (1.6196, 0.3474), "Cleveland": (0.7047, 0.3350)})


class ByHandTest(unittest.TestCase):
    def test_three_to_one(self):
        # Odds of 3 to 1 are 400 * log10(3) Elo; of 200 games the information is 200 * 3/4 * 1/4.
        found = fitted({("A", "B"): (75, 0, 25), ("B", "A"): (25, 0, 75)}, [{"A": 0, "B": 1}])
        self.assertAlmostEqual(found.elo["A"], 400 * math.log10(3), 6)
        self.assertAlmostEqual(found.error["A"], 1 / math.sqrt(37.5) / PER_ELO, 6)
        self.assertEqual((found.elo["B"], found.error["B"], found.draws), (0, 0, 0))
        # Against the mean of both it is half of that.
        found = fitted({("A", "B"): (75, 0, 25), ("B", "A"): (25, 0, 75)})
        self.assertAlmostEqual(found.elo["A"], 200 * math.log10(3), 6)
        self.assertAlmostEqual(found.elo["B"], -200 * math.log10(3), 6)

    def test_draws(self):
        # The three shares are fitted exactly: wins to losses are exp(x), draws their mean times 30
        # by the root of 50 * 20. On the scale of Elo x shrinks by 2 / (2 + draws).
        found = fitted({("A", "B"): (50, 30, 20), ("B", "A"): (20, 30, 50)}, [{"A": 0, "B": 1}])
        draws = 30 / math.sqrt(1000)
        self.assertAlmostEqual(found.draws, draws, 8)
        self.assertAlmostEqual(found.elo["A"], 400 * math.log10(2.5) * 2 / (2 + draws), 6)
        for share, chance in zip((0.5, 0.3, 0.2), found.expected("A", "B")):
            self.assertAlmostEqual(share, chance, 8)

    def test_error_with_draws(self):
        # Each of 200 games is won, drawn or lost with 0.5, 0.3, 0.2: the error of what is made of
        # the three shares, by the delta method on the shares themselves.
        found = fitted({("A", "B"): (50, 30, 20), ("B", "A"): (20, 30, 50)}, [{"A": 0, "B": 1}])
        shares = [0.5, 0.3, 0.2]

        def elo(win, draw, loss):
            return 400 * math.log10(win / loss) * 2 / (2 + draw / math.sqrt(win * loss))

        slopes = []
        for place in range(3):
            low, high = list(shares), list(shares)
            low[place] -= 1e-6
            high[place] += 1e-6
            slopes.append((elo(*high) - elo(*low)) / 2e-6)
        mean = sum(share * slope for share, slope in zip(shares, slopes))
        variance = sum(share * (slope - mean) ** 2 for share, slope in zip(shares, slopes))
        self.assertAlmostEqual(found.error["A"], math.sqrt(variance / 200), 4)

    def test_white(self):
        found = fitted({("A", "B"): (50, 30, 20), ("B", "A"): (50, 30, 20)})
        self.assertAlmostEqual(found.elo["A"], 0, 6)
        self.assertAlmostEqual(found.advantage, 400 * math.log10(2.5) * 2 / (2 + found.draws), 6)

    def test_near_an_even_score_a_point_is_what_it_is_on_the_scale_of_elo(self):
        # 51 % are 6.95 Elo, however many games are drawn.
        for draws in (2, 200, 800):
            decided = 1000 - draws
            won = decided / 2 + 10
            cell = (won, draws, decided - won)
            found = fitted({("A", "B"): cell, ("B", "A"): cell[::-1]}, [{"A": 0, "B": 1}])
            self.assertAlmostEqual(found.elo["A"], 400 * math.log10(0.51 / 0.49), delta=0.02)

    def test_a_chain_adds_up(self):
        step = {("A", "B"): (75, 0, 25), ("B", "A"): (25, 0, 75)}
        other = {("B", "C"): (75, 0, 25), ("C", "B"): (25, 0, 75)}
        found = fitted({**step, **other}, [{"A": 0, "B": 0, "C": 1}])
        self.assertAlmostEqual(found.elo["A"], 800 * math.log10(3), 5)
        self.assertAlmostEqual(found.error["A"], math.sqrt(2 / 37.5) / PER_ELO, 5)

    def test_groups_without_games_between_them(self):
        even = {("A", "B"): (75, 0, 25), ("B", "A"): (25, 0, 75)}
        other = {("C", "D"): (40, 0, 60), ("D", "C"): (60, 0, 40)}
        found = fitted({**even, **other}, [{"A": 0, "B": 1}, {"C": 1, "D": 1}])
        alone = fitted(other)
        self.assertAlmostEqual(found.elo["A"], 400 * math.log10(3), 6)
        self.assertAlmostEqual(found.elo["C"], 200 * math.log10(40 / 60), 6)
        self.assertAlmostEqual(found.error["C"], alone.error["C"], 6)

    def test_chances(self):
        win, draw, loss = chances(math.log(4), 1)
        self.assertAlmostEqual(win, 2 / 3.5)
        self.assertAlmostEqual(draw, 1 / 3.5)
        self.assertAlmostEqual(loss, 0.5 / 3.5)


class ReachableTest(unittest.TestCase):
    def test_points_connect(self):
        counts = {("A", "B"): (1, 0, 1), ("B", "C"): (3, 0, 0), ("D", "A"): (1, 0, 0),
                  ("E", "A"): (0, 1, 0), ("F", "G"): (1, 1, 1)}
        better, worse = reachable(counts, "A")
        self.assertEqual((better, worse), (set("ABCE"), set("ABDE")))


class KnownStrengthTest(unittest.TestCase):
    """Matches of five players of known strength, as a ladder has them."""

    STRENGTHS = (0.0, 0.6, 1.1, 2.0, 2.6)
    MEETINGS = ((0, 1), (1, 2), (2, 3), (3, 4), (0, 2), (2, 4))
    ADVANTAGE, DRAWS, GAMES, MATCHES = 0.2, 0.5, 30, 1000

    def counts(self, chance):
        counts = {}
        for first, second in self.MEETINGS:
            for white, black in ((first, second), (second, first)):
                x = self.STRENGTHS[white] - self.STRENGTHS[black] + self.ADVANTAGE
                outcomes = chance.choices(range(3), chances(x, self.DRAWS), k=self.GAMES)
                counts[white, black] = tuple(outcomes.count(outcome) for outcome in range(3))
        return counts

    def test_intervals_hold_the_truth(self):
        chance = random.Random(7)
        scale = 2 / (2 + self.DRAWS) / PER_ELO
        hits, total, advantages = [0] * 5, 0, 0
        for _ in range(self.MATCHES):
            found = fitted(self.counts(chance), [{player: player == 0 for player in range(5)}])
            total += 1
            for player, strength in enumerate(self.STRENGTHS):
                error = abs(found.elo[player] - strength * scale)
                hits[player] += error <= QUANTILE * found.error[player] + 1e-9
            error = abs(found.advantage - self.ADVANTAGE * scale)
            advantages += error <= QUANTILE * found.advantage_error
        self.assertEqual(hits[0], total)
        for count in (*hits[1:], advantages):
            self.assertGreater(count / total, 0.93)
            self.assertLess(count / total, 0.97)


if __name__ == "__main__":
    unittest.main()
