"""How strong players are by the results of their games: the likeliest strengths, and their errors.

The model has a strength for each player, one advantage of White and one rate of draws. With x the
difference of two strengths plus the advantage, White's win, a draw and Black's win have chances as
exp(x / 2) : draws : exp(-x / 2). That is the model of R. R. Davidson, On Extending the Bradley-Terry
Model to Accommodate Ties in Paired Comparison Experiments, Journal of the American Statistical
Association 65, 1970, pages 317-328, with the order of play as in R. R. Davidson and R. J. Beaver, On
Extending the Bradley-Terry Model to Incorporate Within-Pair Order Effects, Biometrics 33, 1977,
pages 693-702; without draws and advantage it is that of R. A. Bradley and M. E. Terry, Rank Analysis
of Incomplete Block Designs, Biometrika 39, 1952, pages 324-345.

The logarithm of the likelihood is concave in the strengths, the advantage and the logarithm of the
rate of draws, so that Newton's method finds its only maximum. It lies in the finite when every
player can be reached from every other one over games that brought points: L. R. Ford, Solution of a
Ranking Problem from Binary Comparisons, American Mathematical Monthly 64, 1957, number 8, part 2,
pages 28-33.
"""

import math
from dataclasses import dataclass

from rating_lib.linear import inverse, solved

STEPS = 100
SETTLED = 1e-10
# Of 400 points of Elo in the model's own unit: odds of ten to one.
PER_ELO = math.log(10) / 400


@dataclass(frozen=True)
class Fit:
    """Strengths are in Elo, each against the zero of its group. Errors are standard deviations
    against that zero, in Elo too."""

    elo: dict
    error: dict
    advantage: float
    advantage_error: float
    draws: float

    def expected(self, white, black):
        """The chances of (win, draw, loss) of White."""
        x = (self.elo[white] - self.elo[black] + self.advantage) / _elo_scale(self.draws)
        return chances(x, self.draws)


def chances(x, draws):
    """Of (win, draw, loss) at a difference in the model's own unit."""
    win, loss = math.exp(x / 2), math.exp(-x / 2)
    total = win + draws + loss
    return win / total, draws / total, loss / total


def _elo_scale(draws):
    """Points of Elo of the model's own unit. Of two players who are about as strong the stronger
    one then scores what the scale of Elo says; the more draws, the smaller is the share of points
    that a difference in the model's unit brings."""
    return 2 / (2 + draws) / PER_ELO


def reachable(counts, start):
    """The players who are reached from the start by points gained, and by points lost."""
    gained, lost = {}, {}
    for (white, black), (wins, draws, losses) in counts.items():
        for winner, loser, has_points in (
            (white, black, wins + draws > 0),
            (black, white, losses + draws > 0),
        ):
            if has_points:
                gained.setdefault(winner, set()).add(loser)
                lost.setdefault(loser, set()).add(winner)
    return _closure(gained, start), _closure(lost, start)


def _closure(edges, start):
    found, waiting = {start}, [start]
    while waiting:
        for other in edges.get(waiting.pop(), ()):
            if other not in found:
                found.add(other)
                waiting.append(other)
    return found


def fitted(counts, groups=None):
    """The fit of counts of games by (White, Black): (won, drawn, lost) by White. A group has all
    players who are connected by points in both directions, by their weights: the mean that these
    give is its zero. Advantage and rate of draws are common to all groups. Without groups all
    players are one, and each has the same weight."""
    names = sorted({name for pair in counts for name in pair})
    groups = groups or [dict.fromkeys(names, 1.0)]
    places = {name: place for place, name in enumerate(names)}
    cells = [(places[white], places[black], cell) for (white, black), cell in counts.items()]
    has_draws = any(cell[1] for _, _, cell in cells)
    # The last two are the advantage and the logarithm of the rate of draws.
    values = [0.0] * len(names) + [0.0, 0.0 if has_draws else -math.inf]
    fixed = {places[min(group)] for group in groups}
    if not has_draws:
        fixed.add(len(names) + 1)
    free = [place for place in range(len(values)) if place not in fixed]
    likelihood, gradient, information = _slopes(cells, values)
    for _ in range(STEPS):
        step = solved(_part(information, free), [gradient[place] for place in free])
        size = 1.0
        while True:
            moved = list(values)
            for place, change in zip(free, step):
                moved[place] += size * change
            found = _slopes(cells, moved)
            if found[0] >= likelihood - 1e-12 * abs(likelihood) or size < 1e-6:
                break
            size /= 2
        values = moved
        likelihood, gradient, information = found
        if max(abs(change) for change in step) < SETTLED:
            break
    return _told(names, values, free, _part(information, free), groups)


def _part(matrix, free):
    return [[matrix[row][column] for column in free] for row in free]


def _slopes(cells, values):
    """(logarithm of the likelihood, its gradient, its negative second derivatives): the last is the
    observed information, which does not depend on what was observed here but through the values."""
    count = len(values)
    advantage, draws = values[-2], math.exp(values[-1])
    likelihood, gradient = 0.0, [0.0] * count
    information = [[0.0] * count for _ in range(count)]
    for white, black, cell in cells:
        shares = chances(values[white] - values[black] + advantage, draws)
        games = sum(cell)
        likelihood += sum(n * math.log(share) for n, share in zip(cell, shares) if n)
        # What of each outcome is in the exponent: half the difference, and the draw.
        tilt, tie = shares[0] - shares[2], shares[1]
        by_x = (cell[0] - cell[2] - games * tilt) / 2
        by_tie = cell[1] - games * tie
        xx = games * (shares[0] + shares[2] - tilt * tilt) / 4
        xt = -games * tilt * tie / 2
        tt = games * tie * (1 - tie)
        of_x = ((white, 1.0), (black, -1.0), (count - 2, 1.0))
        gradient[-1] += by_tie
        information[-1][-1] += tt
        for place, sign in of_x:
            gradient[place] += sign * by_x
            information[place][-1] += sign * xt
            information[-1][place] += sign * xt
            for other, sign_of_other in of_x:
                information[place][other] += sign * sign_of_other * xx
    return likelihood, gradient, information


def _told(names, values, free, information, groups):
    """The fit on the scale of Elo, with errors by the delta method."""
    covariance = inverse(information)
    where = {place: index for index, place in enumerate(free)}
    places = {name: place for place, name in enumerate(names)}
    draws = math.exp(values[-1])
    scale = _elo_scale(draws)
    # Of the scale by the logarithm of the rate of draws.
    stretch = -scale * draws / (2 + draws)

    def deviation(slopes):
        """Standard deviation of what has these slopes by the values."""
        own = [(where[place], slope) for place, slope in slopes if place in where and slope]
        variance = sum(a * b * covariance[i][j] for i, a in own for j, b in own)
        return math.sqrt(max(variance, 0.0))

    elo, error = {}, {}
    for group in groups:
        total = sum(group.values())
        shares = {places[name]: weight / total for name, weight in group.items()}
        zero = sum(share * values[place] for place, share in shares.items())
        for name in group:
            own = places[name]
            slopes = [(place, scale * ((place == own) - share)) for place, share in shares.items()]
            slopes.append((len(names) + 1, stretch * (values[own] - zero)))
            elo[name] = scale * (values[own] - zero)
            error[name] = deviation(slopes)
    advantage = values[-2]
    slopes = [(len(names), scale), (len(names) + 1, stretch * advantage)]
    return Fit(elo, error, scale * advantage, deviation(slopes), draws)
