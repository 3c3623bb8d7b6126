"""Who plays whom, with which colours, from which opening: fixed by the number of the game alone."""

import random
from dataclasses import dataclass


@dataclass(frozen=True)
class Plan:
    """One game before it is played: players and opening by their indices. The two games of a pair
    have the same opening and swapped colours."""

    number: int
    pair: int
    white: int
    black: int
    opening: int


def meetings(players, gauntlet):
    """Which players meet, by their indices: all, or the first with each of the others."""
    return [
        (first, second)
        for first in range(1 if gauntlet else players - 1)
        for second in range(first + 1, players)
    ]


class Schedule:
    """All games of a match, numbered from 1. Every two players who meet get the same openings, and
    the table is level whenever all have met as often."""

    def __init__(self, players, gauntlet, games_of_two, shard=(1, 1)):
        self._meetings = meetings(players, gauntlet)
        self._pairs = games_of_two // 2 * len(self._meetings)
        self._shard = shard

    @property
    def openings(self):
        """How many openings are played."""
        return self._pairs // len(self._meetings)

    def plan(self, number):
        pair, is_second = divmod(number - 1, 2)
        opening, meeting = divmod(pair, len(self._meetings))
        white, black = self._meetings[meeting]
        if is_second:
            white, black = black, white
        return Plan(number, pair, white, black, opening)

    def numbers(self):
        """The games of the shard (which, of how many), which are those of every so many pairs."""
        which, count = self._shard
        return [
            number
            for pair in range(which - 1, self._pairs, count)
            for number in (2 * pair + 1, 2 * pair + 2)
        ]


def opening_order(count, wanted, order, seed):
    """The indices of the openings in the order in which they are played; when there are fewer than
    wanted they come again."""
    indices = list(range(count))
    if order == "random":
        random.Random(seed).shuffle(indices)
    return [indices[number % count] for number in range(wanted)]
