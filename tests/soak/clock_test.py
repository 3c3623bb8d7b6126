"""Clocks and the schedule of the soak run."""

import random
import unittest

from orvelin_lib.rules import Referee
from soak_lib.clock import DEFAULT_CONTROLS, Clock, Control, go_words
from soak_lib.schedule import chess960_array, plan_game


class ControlTest(unittest.TestCase):
    def test_parts(self):
        self.assertEqual(Control.parse("500"), Control("500", 500, 0, 0))
        self.assertEqual(Control.parse("50+10"), Control("50+10", 50, 10, 0))
        self.assertEqual(Control.parse("20/100+5"), Control("20/100+5", 100, 5, 20))

    def test_refused(self):
        for text in ("", "x", "49", "-50", "50+", "/100", "1.5", "100/"):
            with self.assertRaises(ValueError, msg=text):
                Control.parse(text)

    def test_the_defaults_reach_from_50_ms_to_10_s(self):
        bases = [Control.parse(text).base for text in DEFAULT_CONTROLS]
        self.assertEqual((min(bases), max(bases)), (50, 10000))


class ClockTest(unittest.TestCase):
    def test_increment_and_sudden_death(self):
        clock = Clock(Control.parse("100+10"))
        clock.spend(30.5)
        self.assertEqual(clock.remaining, 79.5)
        self.assertEqual(clock.milliseconds, 79)

    def test_time_beyond_the_clock_leaves_the_increment(self):
        clock = Clock(Control.parse("100+10"))
        clock.spend(105)
        self.assertEqual(clock.remaining, 10)

    def test_the_base_comes_again(self):
        clock = Clock(Control.parse("2/100"))
        clock.spend(10)
        self.assertEqual(clock.moves_left, 1)
        clock.spend(10)
        self.assertEqual((clock.moves_left, clock.remaining), (2, 180))

    def test_refill_takes_nothing_away(self):
        clock = Clock(Control.parse("2/100"))
        clock.spend(90)
        clock.refill()
        self.assertEqual((clock.moves_left, clock.remaining), (1, 100))
        clock.spend(10)
        clock.refill()
        self.assertEqual(clock.remaining, 190)

    def test_budget(self):
        # 40 moves are taken when none are given: below 42 ms the budget divides to zero.
        for control, spent, expected in (
            ("50", 8, True),
            ("50", 9, False),
            ("50+1", 50, False),
            ("50+2", 50, True),
            ("20/50", 28, True),
            ("20/50", 30, False),
        ):
            clock = Clock(Control.parse(control))
            clock.spend(spent)
            self.assertEqual(clock.has_budget(), expected, (control, clock.remaining))

    def test_go_words(self):
        control = Control.parse("3/100+5")
        clocks = (Clock(control), Clock(control))
        clocks[1].spend(50)
        self.assertEqual(
            go_words(control, clocks, "b"), "wtime 100 btime 55 winc 5 binc 5 movestogo 2"
        )
        control = Control.parse("100")
        clocks = (Clock(control), Clock(control))
        self.assertEqual(go_words(control, clocks, "w"), "wtime 100 btime 100")


class ScheduleTest(unittest.TestCase):
    CONTROLS = tuple(Control.parse(text) for text in DEFAULT_CONTROLS)

    def plans(self, seed, count):
        return [plan_game(seed, number, self.CONTROLS, 0.5) for number in range(count)]

    def test_a_plan_hangs_on_seed_and_number_alone(self):
        self.assertEqual(self.plans(3, 12), self.plans(3, 12))
        self.assertNotEqual(self.plans(3, 12), self.plans(4, 12))

    def test_the_starts_are_varied_and_the_game_goes_on_behind_the_opening(self):
        plans = self.plans(5, 60)
        self.assertGreater(len({(plan.fen, plan.opening) for plan in plans}), 50)
        for attribute in ("chess960", "ponder", "swapped"):
            self.assertEqual({getattr(plan, attribute) for plan in plans}, {True, False})
        self.assertGreater(len({plan.control for plan in plans}), 5)
        for plan in plans:
            referee = Referee(plan.fen, plan.chess960)
            for text in plan.opening:
                self.assertTrue(referee.play(text), plan)
            self.assertIsNone(referee.verdict(), plan)

    def test_arrays(self):
        chance = random.Random(1)
        arrays = {chess960_array(chance).split()[0].split("/")[-1] for _ in range(300)}
        self.assertGreater(len(arrays), 200)
        for pieces in arrays:
            self.assertEqual(sorted(pieces), sorted("RNBQKBNR"))
            self.assertLess(pieces.index("R"), pieces.index("K"))
            self.assertLess(pieces.index("K"), pieces.rindex("R"))
            self.assertEqual((pieces.index("B") + pieces.rindex("B")) % 2, 1)


if __name__ == "__main__":
    unittest.main()
