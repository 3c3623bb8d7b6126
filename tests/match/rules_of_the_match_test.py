"""Clocks, players, pairing and adjudication: what is decided without any engine."""

import math
import os
import unittest

from match_lib.adjudication import Adjudicator, Rule
from match_lib.clocks import Clock, Limit, go_words
from match_lib.pairing import Schedule, opening_order
from match_lib.players import players_of, read_words
from orvelin_lib.tool_main import UsageError


def clock(text, kind="tc", margin=10):
    return Clock(Limit.parse(kind, text), margin)


class LimitTest(unittest.TestCase):
    def test_clocks(self):
        for text, expected, words in (
            ("10+0.1", Limit("tc", 10000, 100), "10+0.1"),
            ("40/60", Limit("tc", 60000, 0, 40), "40/60"),
            ("40/1:30+0.5", Limit("tc", 90000, 500, 40), "40/90+0.5"),
            ("0.05", Limit("tc", 50), "0.05"),
        ):
            self.assertEqual(Limit.parse("tc", text), expected)
            self.assertEqual(expected.words(), words)

    def test_amounts(self):
        self.assertEqual(Limit.parse("nodes", "1000"), Limit("nodes", 1000))
        self.assertEqual(Limit.parse("depth", "8").words(), "depth 8")

    def test_refused(self):
        for text in "x -1 10+ /60 0/60 0 0+1 1e3 40/ 10+-1 99999999".split() + [""]:
            with self.assertRaises(ValueError, msg=text):
                Limit.parse("tc", text)
        for text in ("", "0", "-1", "1.5", "x", "9" * 30):
            with self.assertRaises(ValueError, msg=text):
                Limit.parse("nodes", text)


class ClockTest(unittest.TestCase):
    def test_increment(self):
        one = clock("0.1+0.01")
        one.spend(30.5)
        self.assertEqual(one.remaining, 79.5)

    def test_lateness_within_the_margin_leaves_the_increment(self):
        one = clock("0.1+0.01")
        self.assertEqual(one.allowed, 110)
        one.spend(105)
        self.assertEqual(one.remaining, 10)

    def test_the_base_comes_again(self):
        one = clock("2/0.1")
        one.spend(10)
        self.assertEqual(one.moves_left, 1)
        one.spend(10)
        self.assertEqual((one.moves_left, one.remaining), (2, 180))

    def test_amounts_have_no_clock_but_a_fixed_time(self):
        one = clock("100", "movetime")
        one.spend(90)
        self.assertEqual(one.allowed, 110)
        self.assertEqual(clock("5", "depth").allowed, math.inf)

    def test_go_words(self):
        clocks = clock("3/0.1+0.005"), clock("3/0.1+0.005")
        clocks[1].spend(50)
        words = "wtime 100 btime 55 winc 5 binc 5 movestogo 2"
        self.assertEqual(go_words(clocks, 1), words)
        self.assertEqual(go_words((clock("0.1"), clock("0.2")), 0), "wtime 100 btime 200")
        self.assertEqual(go_words((clock("7", "depth"), clock("0.2")), 0), "depth 7")
        self.assertEqual(go_words((clock("7", "depth"), clock("0.2")), 1), "wtime 200 btime 200")
        late = clock("0.1")
        late.spend(105)
        self.assertEqual(go_words((late, clock("0.1")), 0), "wtime 1 btime 100")


class PlayersTest(unittest.TestCase):
    def players(self, *engines, each=(), limit=Limit("depth", 1)):
        return players_of([read_words(words) for words in engines], read_words(each), limit)

    def test_what_is_said_of_each_and_of_one(self):
        one, two = self.players(
            ["cmd=./a b", "name=A", "option.Hash=16", "tc=1+0.1", "pawn=200"],
            ["cmd=/usr/x/b", "option.Skill Level=3"],
            each=["option.Hash=8", "dir=x"],
        )
        self.assertEqual((one.name, one.options, one.pawn), ("A", (("Hash", "16"),), 200))
        self.assertEqual(one.command, (os.path.abspath("a"), "b"))
        self.assertEqual(one.limit, Limit("tc", 1000, 100))
        self.assertEqual((two.name, two.limit), ("b", Limit("depth", 1)))
        self.assertEqual(two.options, (("Hash", "8"), ("Skill Level", "3")))
        self.assertEqual(two.folder, os.path.abspath("x"))

    def test_a_margin_of_its_own(self):
        one, two = self.players(["cmd=a", "margin=2.5"], ["cmd=b"])
        self.assertEqual((one.margin, two.margin), (2.5, None))

    def test_refused(self):
        for words in (["cmd"], ["x=1"], ["cmd="], ["option.=", "cmd"], ["tc=1", "nodes=5"],
                      ["name=a", "name=b"], ["pawn=0"], ["pawn=x"], ["margin=-1"], ["margin=x"], ["nodes=x"]):
            with self.assertRaises(ValueError, msg=words):
                read_words(words)
        for engines, words in (
            ([["cmd=a"], ["cmd=x/a"]], "two engines are called a"),
            ([["name=a"]], "an --engine has no cmd="),
        ):
            with self.assertRaisesRegex(UsageError, words):
                self.players(*engines)
        with self.assertRaisesRegex(UsageError, "a has no time"):
            self.players(["cmd=a"], limit=None)


class ScheduleTest(unittest.TestCase):
    def plans(self, *arguments):
        schedule = Schedule(*arguments)
        return [schedule.plan(number) for number in schedule.numbers()]

    def test_pairs_swap_colours_on_one_opening(self):
        plans = self.plans(3, False, 8)
        self.assertEqual([plan.number for plan in plans], list(range(1, 25)))
        for first, second in zip(plans[::2], plans[1::2]):
            self.assertEqual((first.pair, first.opening), (second.pair, second.opening))
            self.assertEqual((first.white, first.black), (second.black, second.white))

    def test_all_meet_on_the_same_openings(self):
        for gauntlet, meetings in ((False, {(0, 1), (0, 2), (1, 2)}), (True, {(0, 1), (0, 2)})):
            openings = {}
            for plan in self.plans(3, gauntlet, 8):
                meeting = tuple(sorted((plan.white, plan.black)))
                openings.setdefault(meeting, []).append(plan.opening)
            self.assertEqual(set(openings), meetings)
            for played in openings.values():
                self.assertEqual(sorted(played), [0, 0, 1, 1, 2, 2, 3, 3])

    def test_shards_are_the_whole_in_pairs(self):
        whole = self.plans(3, False, 10)
        parts = [self.plans(3, False, 10, (which, 4)) for which in (1, 2, 3, 4)]
        self.assertEqual(sorted((p for part in parts for p in part), key=lambda p: p.number), whole)
        for part in parts:
            self.assertEqual([p.pair for p in part[::2]], [p.pair for p in part[1::2]])
            self.assertIn(len(part), (6, 8))

    def test_order_of_openings(self):
        self.assertEqual(opening_order(3, 5, "sequential", 1), [0, 1, 2, 0, 1])
        one, other = (opening_order(50, 70, "random", seed) for seed in (1, 2))
        self.assertEqual(one, opening_order(50, 70, "random", 1))
        self.assertNotEqual(one, other)
        self.assertEqual((sorted(one[:50]), one[50:]), (list(range(50)), one[:20]))
        # Who plays fewer games gets the beginning of the same.
        self.assertEqual(opening_order(50, 7, "random", 1), one[:7])


class AdjudicationTest(unittest.TestCase):
    DRAW, RESIGN = Rule(count=2, score=10, moves=5), Rule(count=2, score=600)

    def verdict(self, *reports, draw=None, resign=None, pawns=(100, 100), first_move=10):
        """That of the last of the scores, of White and Black in turn, and that none came before."""
        judge = Adjudicator(draw, resign, pawns)
        for ply, value in enumerate(reports):
            score, mate = (None, int(value[1:])) if isinstance(value, str) else (value, None)
            verdict = judge.report(ply % 2, score, mate, first_move + ply // 2)
            if ply < len(reports) - 1:
                self.assertIsNone(verdict, ply)
        return verdict and verdict[0]

    def test_draw_when_both_say_so(self):
        self.assertEqual(self.verdict(10, -10, 0, 5, draw=self.DRAW), "1/2-1/2")
        self.assertIsNone(self.verdict(10, -10, 0, 11, draw=self.DRAW))
        self.assertIsNone(self.verdict(10, 0, 20, 0, 10, 0, draw=self.DRAW))
        self.assertIsNone(self.verdict(0, None, 0, 0, draw=self.DRAW))
        self.assertEqual(self.verdict(0, 0, 0, 0, 0, 0, draw=self.DRAW, first_move=4), "1/2-1/2")

    def test_resignation_needs_the_winner_too(self):
        self.assertEqual(self.verdict(600, -600, 700, -601, resign=self.RESIGN), "1-0")
        self.assertEqual(self.verdict(-600, 600, -700, "#5", resign=self.RESIGN), "0-1")
        self.assertIsNone(self.verdict(599, -900, 599, -900, resign=self.RESIGN))
        self.assertIsNone(self.verdict(900, -900, 900, None, resign=self.RESIGN))
        self.assertIsNone(self.verdict(900, 900, 900, 900, resign=self.RESIGN))
        self.assertEqual(self.verdict("#3", "#-2", "#2", "#-1", resign=self.RESIGN), "1-0")
        self.assertIsNone(self.verdict(900, -900, 0, -900, resign=self.RESIGN))

    def test_units(self):
        # What the first calls 300 is half as much as it says.
        reports = (1100, -600, 1100, -600)
        self.assertIsNone(self.verdict(*reports, resign=self.RESIGN, pawns=(200, 100)))
        reports = (1200, -600, 1200, -600)
        self.assertEqual(self.verdict(*reports, resign=self.RESIGN, pawns=(200, 100)), "1-0")
        self.assertEqual(self.verdict(20, 0, 20, 0, draw=self.DRAW, pawns=(200, 100)), "1/2-1/2")

    def test_off_unless_asked(self):
        self.assertIsNone(self.verdict(*[0] * 40))
        self.assertIsNone(self.verdict(*["#1", "#-1"] * 20))

    def test_words(self):
        keys = ("count", "score")
        self.assertEqual(Rule.parse(["count=2", "score=600"], keys), self.RESIGN)
        for words in (["count=2"], ["count=0", "score=1"], ["count=x", "score=1"], ["moves=1"],
                      ["count=1", "count=2", "score=3"]):
            with self.assertRaises(ValueError, msg=words):
                Rule.parse(words, keys)


if __name__ == "__main__":
    unittest.main()
