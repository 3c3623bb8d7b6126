"""The suites that come with the engine: their positions are what they say, and it solves them."""

import os
import re
import subprocess
import unittest

from orvelin_lib.board import Position
from orvelin_lib.engine import UciEngine
from orvelin_lib.rules import forces_mate
from suite_lib.epd import read_suite
from support import ENGINE, SUITES, SuiteTest

NAMES = ("mates", "endings", "tactics")
# Longer mates take too long to prove in Python.
PROVED_MATE = 3


def positions(name):
    return read_suite(os.path.join(SUITES, name + ".epd"))


def fen_of(position):
    """The FEN of a position in which nobody may castle."""
    ranks = ("".join(position.board[first : first + 8]) for first in range(56, -1, -8))
    pieces = "/".join(re.sub(r"\.+", lambda match: str(len(match[0])), rank) for rank in ranks)
    return f"{pieces} {position.side} - - 0 1"


class SolvedTest(SuiteTest):
    def test_the_engine_solves_all(self):
        for name in NAMES:
            with open(os.path.join(SUITES, name + ".epd"), encoding="utf-8") as file:
                text = file.read()
            record = self.record(
                *("--engine", ENGINE, "--name", "orvelin", "--option", "Hash=16"),
                *("--depth", "12", "--jobs", "2", "--fresh", "--patience", "60"),
                text=text,
            )
            self.assertEqual(record["engines"][0]["faults"], 0)


class FileTest(unittest.TestCase):
    def test_names_and_numbers(self):
        fens = []
        for name in NAMES:
            for index, position in enumerate(positions(name), 1):
                self.assertTrue(position.name.startswith(f"{name}.{index:02d} "), position.name)
                fens.append(position.fen)
        self.assertEqual(len(set(fens)), len(fens))

    def test_both_sides_and_mates_in_one_to_five(self):
        mates = positions("mates")
        self.assertEqual({position.mate for position in mates}, {1, 2, 3, 4, 5})
        for name in NAMES:
            sides = {position.fen.split()[1] for position in positions(name)}
            self.assertEqual(sides, {"w", "b"}, name)


class MateTest(unittest.TestCase):
    def test_short_mates_are_exact(self):
        proved = 0
        for test in positions("mates"):
            if test.mate > PROVED_MATE:
                continue
            position = Position(test.fen)
            moves = test.moves.values()
            self.assertTrue(any(forces_mate(position, m, test.mate) for m in moves), test.name)
            shorter = test.mate - 1
            if shorter > 0:
                self.assertFalse(any(forces_mate(position, m, shorter) for m in moves), test.name)
            proved += 1
        self.assertGreater(proved, 20)


class EndingTest(unittest.TestCase):
    """What orvelin-tables says of every move."""

    def values(self, table, fens):
        """1, 0 or -1 as White wins, draws or loses, and the plies to the mate."""
        command = [os.environ["SUITE_TABLES"], "eval", table, *fens]
        output = subprocess.run(command, capture_output=True, text=True, check=True).stdout
        values = []
        for line in output.splitlines():
            text = line.split(": ", 1)[1]
            if match := re.match(r"(White|Black) is mated", text):
                values.append((-1 if match[1] == "White" else 1, 0))
            elif match := re.match(r"(White|Black) mates in (\d+) pl", text):
                values.append((1 if match[1] == "White" else -1, int(match[2])))
            else:
                self.assertTrue(text.startswith("draw"), line)
                values.append((0, 0))
        self.assertEqual(len(values), len(fens))
        return values

    def assert_best(self, test, moves, values):
        """The moves of bm, and no others, keep the result; with dm, they mate the fastest."""
        sign = 1 if test.fen.split()[1] == "w" else -1
        results = dict(zip(moves, ((sign * result, plies) for result, plies in values)))
        best = max(result for result, _ in results.values())
        keeping = {move: plies for move, (result, plies) in results.items() if result == best}
        if test.mate is not None:
            self.assertEqual(best, 1, test.name)
            fastest = min(keeping.values())
            self.assertEqual(fastest // 2 + 1, test.mate, test.name)
            keeping = {move: plies for move, plies in keeping.items() if plies == fastest}
        self.assertEqual(set(keeping), set(test.best), test.name)
        return best

    def test_four_men(self):
        by_table = {}
        for test in positions("endings"):
            if match := re.search(r" (KBNK|KQKR|KRKN),", test.name):
                by_table.setdefault(match[1], []).append(test)
        self.assertEqual(set(by_table), {"KBNK", "KQKR", "KRKN"})
        results = set()
        for table, tests in by_table.items():
            # One call for all positions: a table is built for each.
            after = [
                (test, text, fen_of(Position(test.fen).after(move)))
                for test in tests
                for text, move in test.moves.items()
            ]
            values = self.values(table, [fen for _, _, fen in after])
            for test in tests:
                rows = [(row[1], value) for row, value in zip(after, values) if row[0] is test]
                results.add(self.assert_best(test, *zip(*rows)))
        self.assertEqual(results, {0, 1})


class TacticTest(unittest.TestCase):
    DEPTH = 8
    # Less than this between the solution and everything else would be no tactic.
    GAP = 100

    def score(self, engine, fen, moves):
        """What the search of these moves alone gives; a mate is more than all material."""
        engine.new_game()
        engine.send(f"position fen {fen}")
        engine.send(f"go depth {self.DEPTH} searchmoves {' '.join(moves)}")
        score = None
        for _, line in engine.wait_for("bestmove", 120):
            words = line.split()
            if "score" in words:
                kind, number = words[words.index("score") + 1 :][:2]
                score = int(number)
                if kind == "mate":
                    score = 20000 - score if score > 0 else -20000 - score
        return score

    def test_nothing_else_is_as_good(self):
        with UciEngine([ENGINE], patience=60) as engine:
            engine.handshake()
            engine.set_option("Hash", 16)
            for test in positions("tactics"):
                others = [move for move in test.moves if move not in test.best]
                best = self.score(engine, test.fen, test.best)
                other = self.score(engine, test.fen, others)
                # A search of a millisecond may end before it has told anything: a mate.
                best = 20000 if best is None else best
                self.assertIsNotNone(other, test.name)
                self.assertGreaterEqual(best - other, self.GAP, test.name)


if __name__ == "__main__":
    unittest.main()
