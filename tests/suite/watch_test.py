"""When a solution counts, and since when: by the lines of a search."""

import unittest

from orvelin_lib.board import Position
from orvelin_lib.engine import EngineFailure
from orvelin_lib.rules import forces_mate
from suite_lib.epd import parse_line
from suite_lib.watch import Watch
from support import FORK, MATE

TWO = "7k/8/5K2/8/8/8/8/6R1 w - -"


class WatchTest(unittest.TestCase):
    def watch(self, line, *lines):
        """Reads the lines, of which one comes each second from the first second on."""
        watch = Watch(parse_line(line, 1), 100.0)
        watch.read([(101.0 + index, text) for index, text in enumerate(lines)])
        return watch

    def seconds(self, line, *lines):
        return self.watch(line, *lines).verdict()

    def assert_lie(self, words, line, *lines):
        with self.assertRaises(EngineFailure) as raised:
            self.seconds(line, *lines)
        self.assertIn(words, str(raised.exception))
        return raised.exception.kind


class MoveTest(WatchTest):
    GOAL = f"{FORK} w - - bm Nf6+;"

    def test_from_the_line_on_that_stays_right(self):
        moves = ("d5f6", "d5b4", "d5f6", "d5f6")
        lines = [f"info depth {depth} pv {move}" for depth, move in enumerate(moves, 1)]
        self.assertEqual(self.seconds(self.GOAL, *lines, "bestmove d5f6"), 3)

    def test_the_answer_decides(self):
        self.assertIsNone(self.seconds(self.GOAL, "info depth 1 pv d5f6", "bestmove d5b4"))
        self.assertEqual(self.seconds(self.GOAL, "info depth 1 pv d5b4", "bestmove d5f6"), 2)
        self.assertEqual(self.seconds(self.GOAL, "bestmove d5f6 ponder g8g7"), 1)

    def test_other_lines_do_not_count(self):
        lines = [
            "info depth 1 pv d5f6",
            "info string pv d5b4",
            "info depth 1 multipv 2 pv d5b4",
            "info currmove d5b4 currmovenumber 2",
            "info depth 2 score cp 5 lowerbound",
            "info nodes 7 pv",
        ]
        self.assertEqual(self.seconds(self.GOAL, *lines, "bestmove d5f6"), 1)

    def test_figures_are_those_of_the_last_lines(self):
        lines = ["info depth 1 nodes 5", "info depth 4 nodes 9 pv d5f6", "info hashfull 3"]
        figures = self.watch(self.GOAL, *lines, "bestmove d5f6").figures()
        self.assertEqual(figures["nodes"], 9)
        self.assertEqual(figures["depth"], 4)
        self.assertEqual(figures["elapsed"], 4)
        self.assertEqual(figures["move"], "d5f6")
        self.assertIsNone(figures["mate"])

    def test_illegal_answers(self):
        for answer in ("bestmove a1a1", "bestmove", "bestmove (none)", "bestmove e8h8"):
            self.assertEqual(self.assert_lie("no legal move", self.GOAL, answer), "illegal")

    def test_answers_to_nothing(self):
        for line in ("readyok", "uciok"):
            with self.assertRaisesRegex(EngineFailure, "nobody asked"):
                self.watch(self.GOAL, line, "bestmove d5f6")


class MateTest(WatchTest):
    GOAL = f"{TWO} dm 2;"

    def test_announced_in_so_many_moves_or_fewer(self):
        lines = ["info score cp 500 pv f6f7", "info score mate 3 pv f6f7"]
        lines.append("info score mate 2 pv f6f7")
        self.assertEqual(self.seconds(self.GOAL, *lines, "bestmove f6f7"), 3)
        self.assertIsNone(self.seconds(self.GOAL, *lines[:2], "bestmove f6f7"))

    def test_the_last_line_counts(self):
        lines = ["info score mate 2 pv f6f7", "info score cp 900 pv f6f7"]
        self.assertIsNone(self.seconds(self.GOAL, *lines, "bestmove f6f7"))

    def test_a_bound_is_no_announcement(self):
        lines = ["info score mate 2 lowerbound pv f6f7"]
        self.assertIsNone(self.seconds(self.GOAL, *lines, "bestmove f6f7"))
        lines = ["info score mate 2 pv f6f7", "info score cp 30 upperbound pv f6f7"]
        self.assertEqual(self.seconds(self.GOAL, *lines, "bestmove f6f7"), 1)

    def test_a_mate_against_oneself_is_a_lie(self):
        for mate in (-2, 0):
            words = f"says mate {mate} where"
            lines = [f"info score mate {mate} pv f6f7", "bestmove f6f7"]
            self.assertEqual(self.assert_lie(words, self.GOAL, *lines), "lie")

    def test_a_short_mate_is_held_against_the_rules(self):
        for mate, move in ((1, "f6f7"), (2, "g1g2")):
            lines = [f"info score mate {mate} pv {move}", f"bestmove {move}"]
            self.assertEqual(self.assert_lie("does not force it", self.GOAL, *lines), "lie")
        goal = f"{MATE} w - - bm Ra7;"
        self.assertEqual(
            self.assert_lie("mate 1", goal, "info score mate 1 pv a1a7", "bestmove a1a7"), "lie"
        )

    def test_the_rules_stand_in_where_nothing_was_told(self):
        watch = self.watch(self.GOAL, "bestmove f6f7")
        self.assertEqual(watch.verdict(), 1)
        self.assertEqual(watch.figures()["mate"], 2)
        self.assertIsNone(self.seconds(self.GOAL, "bestmove g1g2"))
        self.assertIsNone(self.seconds(f"{TWO} dm 1;", "bestmove f6f7"))


class ForceTest(unittest.TestCase):
    def forced(self, fen, move, count):
        position = parse_line(f"{fen} dm 9;", 1)
        return forces_mate(Position(position.fen), position.moves[move], count)

    def test_mates(self):
        for fen, move, count, expected in (
            (f"{MATE} w - -", "a1a8", 1, True),
            (f"{MATE} w - -", "a1a7", 2, False),
            (TWO, "f6f7", 1, False),
            (TWO, "f6f7", 2, True),
            ("k7/2Q5/8/2K5/8/8/8/8 w - -", "c7h7", 2, False),
            ("k7/2Q5/8/2K5/8/8/8/8 w - -", "c7h7", 3, True),
            # Stalemate is no mate.
            ("7k/8/4Q1K1/8/8/8/8/8 w - -", "e6f7", 3, False),
        ):
            self.assertEqual(self.forced(fen, move, count), expected, (fen, move, count))


if __name__ == "__main__":
    unittest.main()
