"""Ratings from kept results: the scale, and those who have no place on it."""

import unittest

from match_lib.statistics import QUANTILE
from orvelin_lib.tool_main import ToolError
from rating_lib.games import Player, Results
from rating_lib.ratings import rated


def player(name, claim=None, title=None):
    options = () if claim is None else (("UCI_LimitStrength", "true"), ("UCI_Elo", str(claim)))
    return Player(name, "depth 1", title or ("Stockfish 15.1" if claim else "Other 1"), options)


def results(*meetings):
    """Of (first, second, wins, draws, losses), half of them with either colour."""
    made = Results()
    for first, second, *counts in meetings:
        for each in (first, second):
            made.add_player(each, "file")
        for result, count in zip(("1-0", "1/2-1/2", "0-1"), counts):
            turned = {"1-0": "0-1", "0-1": "1-0"}.get(result, result)
            for _ in range(count // 2):
                made.add(first.label, second.label, result)
                made.add(second.label, first.label, turned)
    return made


A, B, C, D = (player(name) for name in "ABCD")
LOW, HIGH = player("low", 1500), player("high", 1900)


class ScaleTest(unittest.TestCase):
    def test_one_anchor_is_the_zero(self):
        made = rated(results((A, LOW, 60, 20, 20), (A, B, 40, 20, 40)))
        self.assertAlmostEqual(made.ratings[LOW.label].elo, 1500)
        self.assertEqual(made.ratings[LOW.label].error, 0)
        self.assertAlmostEqual(made.ratings[A.label].elo, made.ratings[B.label].elo, 3)
        self.assertGreater(made.ratings[A.label].elo, 1600)
        self.assertEqual([made.ratings[each.label].games for each in (A, B, LOW)], [200, 100, 100])
        self.assertEqual(made.left_out, {})

    def test_anchors_that_do_not_agree_share_the_zero_by_their_games(self):
        # Equal in their games, 400 apart in what they say: 300 games against 100.
        made = rated(results((A, LOW, 120, 60, 120), (A, HIGH, 40, 20, 40)))
        for each in (A, LOW, HIGH):
            self.assertAlmostEqual(made.ratings[each.label].elo, (3 * 1500 + 1900) / 4, 3)
        self.assertEqual(made.anchors, {LOW.label: 1500, HIGH.label: 1900})

    def test_errors_are_of_95_percent(self):
        made = rated(results((A, LOW, 60, 20, 20)))
        self.assertAlmostEqual(
            made.ratings[A.label].error, QUANTILE * made.fit.error[A.label])
        self.assertAlmostEqual(made.advantage[1], QUANTILE * made.fit.advantage_error)

    def test_groups_are_tied_to_their_own_anchors(self):
        made = rated(results((A, LOW, 40, 20, 40), (B, HIGH, 40, 20, 40), (C, D, 40, 20, 40)))
        self.assertAlmostEqual(made.ratings[A.label].elo, 1500, 3)
        self.assertAlmostEqual(made.ratings[B.label].elo, 1900, 3)
        self.assertEqual(set(made.left_out), {C.label, D.label})

    def test_without_anchors_the_mean_is_the_zero(self):
        made = rated(results((A, B, 60, 20, 20)))
        self.assertAlmostEqual(made.ratings[A.label].elo, -made.ratings[B.label].elo)

    def test_only_stockfish_claims(self):
        self.assertEqual(LOW.claim, 1500)
        self.assertIsNone(player("ours", 1500, "Orvelin 0.40.1").claim)
        ours = player("orvelin-play-1500", 1500, "Orvelin 0.40.1")
        self.assertEqual((ours.level, ours.is_ours), (1500, True))
        self.assertFalse(player("orvelin", title="Orvelin 0.40.1").is_ours)
        self.assertIsNone(Player("full", "10+0.1", "Stockfish 15.1", ()).claim)
        off = (("UCI_LimitStrength", "false"), ("UCI_Elo", "1500"))
        self.assertIsNone(Player("full", "10+0.1", "Stockfish 15.1", off).claim)


class LeftOutTest(unittest.TestCase):
    def left_out(self, *meetings):
        made = rated(results((A, LOW, 60, 20, 20), *meetings))
        self.assertEqual(set(made.ratings) & set(made.left_out), set())
        return made.left_out

    def test_who_won_everything(self):
        reasons = self.left_out((B, A, 10, 0, 0), (C, A, 0, 0, 10))
        self.assertEqual(reasons, {
            B.label: "lost no point to those who are rated: infinitely stronger",
            C.label: "took no point from those who are rated: infinitely weaker",
        })

    def test_a_draw_is_enough(self):
        self.assertEqual(self.left_out((B, A, 10, 2, 0)), {})

    def test_who_is_not_connected(self):
        reasons = self.left_out((B, C, 10, 10, 10))
        self.assertEqual(set(reasons), {B.label, C.label})
        self.assertIn("played nobody who is rated", reasons.values())

    def test_who_is_connected_over_the_left_out_alone(self):
        # B beat everybody; C has met B alone, and lost all.
        reasons = self.left_out((B, A, 10, 0, 0), (B, C, 10, 0, 0))
        self.assertEqual(reasons[C.label], "played nobody who is rated")


class RefusedTest(unittest.TestCase):
    def test_nothing_to_fit(self):
        for made in (
            Results(), results((A, B, 10, 0, 0)), results((A, LOW, 0, 10, 0)),
        ):
            with self.assertRaises(ToolError):
                rated(made)

    def test_one_name_for_two_players(self):
        made = results((A, B, 2, 2, 2))
        with self.assertRaisesRegex(ToolError, "A, depth 1 has other settings"):
            made.add_player(player("A", title="Other 2"), "other file")
        made.add_player(LOW, "file")
        with self.assertRaisesRegex(ToolError, "low has other settings"):
            made.add_player(player("low", 1600), "other file")

    def test_a_level_with_a_claim_is_one_player_whatever_it_is_given(self):
        made = results((A, LOW, 2, 2, 2))
        options = (("Hash", "16"), *LOW.options)
        other = Player(LOW.name, "10+0.1", LOW.title, options)
        made.add_player(other, "other file")
        self.assertEqual(other.label, LOW.label)
        self.assertNotEqual(Player("A", "10+0.1", A.title, ()).label, A.label)


if __name__ == "__main__":
    unittest.main()
