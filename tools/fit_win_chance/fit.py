#!/usr/bin/env python3
"""Fits the chances of a score to the table that orvelin-fit-games made.

usage: fit.py [games.csv]

White wins at score s with the chance W(s) = 1 / (1 + exp((a - s) / b)), Black with W(-s), and else
the game is drawn: a is the score of an even chance to win, b tells how fast the chance grows. Both
are found by maximum likelihood. Positions of one game are no independent witnesses, so the errors
are those of the delete-one-group jackknife, over groups of whole games.
"""

import math
import pathlib
import sys

STEPS = 100
START = (100.0, 100.0)


def read_table(path):
    """The rows as (score, group, (won, drawn, lost))."""
    rows = []
    for line in path.read_text().splitlines():
        if line.startswith("#") or line.startswith("score"):
            continue
        score, group, *counts = (int(word) for word in line.split(","))
        rows.append((score, group, tuple(counts)))
    return rows


def sum_by_score(rows):
    sums = {}
    for score, _, counts in rows:
        sums[score] = tuple(map(sum, zip(sums.get(score, (0, 0, 0)), counts)))
    return sums


def chance(x):
    return 1.0 / (1.0 + math.exp(-x))


def chances(score, a, b):
    """Of a won, a drawn, a lost game."""
    won = chance((score - a) / b)
    lost = chance((-score - a) / b)
    return won, 1.0 - won - lost, lost


def slopes(score, a, b):
    """Of the three chances, by a and by b."""
    won, _, lost = chances(score, a, b)
    by_score_won = won * (1.0 - won) / b
    by_score_lost = lost * (1.0 - lost) / b
    by_a = (-by_score_won, -by_score_lost)
    by_b = (-by_score_won * (score - a) / b, -by_score_lost * (-score - a) / b)
    return [(won_, -won_ - lost_, lost_) for won_, lost_ in (by_a, by_b)]


def fit(sums):
    """The likeliest a and b, by the method of scoring."""
    a, b = START
    for _ in range(STEPS):
        gradient = [0.0, 0.0]
        aa = ab = bb = 0.0
        for score, counts in sums.items():
            p = chances(score, a, b)
            by_a, by_b = slopes(score, a, b)
            total = sum(counts)
            for n, p_k, da, db in zip(counts, p, by_a, by_b):
                gradient[0] += n * da / p_k
                gradient[1] += n * db / p_k
                aa += total * da * da / p_k
                ab += total * da * db / p_k
                bb += total * db * db / p_k
        determinant = aa * bb - ab * ab
        step_a = (bb * gradient[0] - ab * gradient[1]) / determinant
        step_b = (aa * gradient[1] - ab * gradient[0]) / determinant
        a, b = a + step_a, b + step_b
        if abs(step_a) + abs(step_b) < 1e-10:
            return a, b
    raise SystemExit("the fit does not settle")


def jackknife_errors(rows):
    groups = sorted({group for _, group, _ in rows})
    fits = [fit(sum_by_score([row for row in rows if row[1] != left_out])) for left_out in groups]
    errors = []
    for values in zip(*fits):
        mean = sum(values) / len(values)
        spread = sum((value - mean) ** 2 for value in values)
        errors.append(math.sqrt((len(values) - 1) / len(values) * spread))
    return errors


def print_comparison(sums, a, b):
    print("\n     score      positions   won  drawn   lost   fit: won  drawn   lost")
    low = -1000
    for high in (-500, -300, -200, -150, -100, -50, -20, 20, 50, 100, 150, 200, 300, 500, 1001):
        part = {s: counts for s, counts in sums.items() if low <= s < high}
        counts = [sum(column) for column in zip(*part.values())]
        total = sum(counts)
        told = [
            sum(sum(n) * chances(s, a, b)[k] for s, n in part.items()) / total for k in range(3)
        ]
        seen = "".join(f"{n / total:7.3f}" for n in counts)
        print(f"{low:5} to {high - 1:5}{total:9}{seen}    " + "".join(f"{p:7.3f}" for p in told))
        low = high


def main():
    if len(sys.argv) > 2 or sys.argv[1:2] in (["-h"], ["--help"]):
        raise SystemExit(__doc__)
    here = pathlib.Path(__file__).resolve().parent
    rows = read_table(pathlib.Path(sys.argv[1]) if len(sys.argv) == 2 else here / "games.csv")
    sums = sum_by_score(rows)
    a, b = fit(sums)
    error_a, error_b = jackknife_errors(rows)
    print(f"positions: {sum(map(sum, sums.values()))}")
    print(f"a = {a:.2f} +- {error_a:.2f}")
    print(f"b = {b:.2f} +- {error_b:.2f}")
    print_comparison(sums, a, b)


if __name__ == "__main__":
    main()
