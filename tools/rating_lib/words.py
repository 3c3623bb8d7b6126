"""The texts of the page on strength, between its tables."""

HEAD = """
# Strength

What `orvelin-play` and its levels are worth, by the results that lie in `results`. This page is made
from them, and from nothing else, by

    tools/fit-ratings --document results > docs/strength.md

How the games are played and gone on with stands in `results/README.md`. Errors are those of 95 %
everywhere.
"""
SCALE = """
## The scale

All games of all matches are fitted at once. Differences in Elo are what games can tell; the zero of
the scale has to come from somewhere else. It is tied to the levels of Debian's stockfish 15.1: the
mean of their fitted ratings, each counted by its games, is the mean of what they call themselves by
`UCI_Elo`. That is a claim of that program, calibrated, as its README says, at 60 s + 0.6 s and
anchored to CCRL 40/4. It was not checked here. Errors tell how well the games place a player
against that mean, and nothing of whether the claim is right. How well the claims agree with each
other shows the last column. A level of stockfish counts as one player whatever its clock or nodes:
it chooses its move at a depth that the level fixes, and has always been given more than that takes.
"""
MODEL = """
White's advantage is {advantage} Elo, and of games between equal players {draws} are drawn, as one
figure for all. Errors take each game for itself; the two games from one opening with colours
swapped make them a little too large. The model and its sources stand in
`tools/rating_lib/model.py`.
"""
LEVEL_NOTE = """
## Levels

`UCI_LimitStrength` with `UCI_Elo`, by nodes and without a clock. `inside` tells whether the stated
number lies within the error of the fitted one.
"""
PRELIMINARY = """
**These figures are preliminary:** there are {games} of levels so far, and a level is only taken for
measured when it has played 200 and more.
"""
PLAY = """
## What a level plays like

The moves of games of each level, judged by `orvelin-analyse`: what a move gives away on average, in
hundredths of a point to be expected, and how many moves a game are marked as doubtful (?!, from 5
hundredths on), mistakes (?, from 10) and blunders (??, from 20).
"""
FULL = """
## Full strength
"""
EQUAL = """
## Two equal engines

The same program on both sides: what the match tool finds between them has to be 0 within its error.
The columns are those of [all matches](#all-matches).
"""
MATCHES = """
## All matches

Won, drawn and lost are those of the first player. Elo and its error are those of the match alone,
from the pairs of games; a number alone is that level of `orvelin-play`. The margin, of which more
stands in [match.md](match.md#time), and the least that was left on a clock after a move are in
milliseconds. Depths are the means of the last depths told, `late` tells of games lost on time.
`nodes 10000000` is no limit to a level, which ends each search at nodes of its own.
"""
FAULTS = """
## Faults

Illegal moves, crashes, stalls and stray answers, as the referee of [orvelin-match](match.md#faults)
knows them. How the games were played in which an engine lost on time stands in `results/README.md`.
The exact engine, `orvelin`, runs out of time on a clock with an increment: [clocks.md](clocks.md).
"""
LEFT_OUT = """
## Not on the scale

Who has no connection over games with the levels that the scale is tied to has no rating there yet.
"""
