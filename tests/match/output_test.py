"""What is written of games: standings, tables, PGN."""

import copy
import json
import os
import subprocess
import unittest

from match_lib import report
from match_lib.pgn_text import pgn_text
from match_lib.sprt import Sprt
from match_lib.standings import Standings
from orvelin_lib.board import START_FEN
from orvelin_lib.pgn import check_game, raw_games
from scratch import ScratchTest

MATE = {
    "kind": "game", "game": 1, "pair": 0, "white": "A", "black": "B", "date": "2026.11.22",
    "fen": START_FEN, "chess960": False, "result": "0-1", "reason": "checkmate",
    "opening": ["f2f3"], "moves": ["e7e5", "g2g4", "d8h4"], "scores": [35, "#-1", "#1"],
    "depths": [9, 3, None], "nodes": [1000, None, 400], "times": [10.0, 2.5, 40.0],
    "clocks": [3723456.0, 990.0, 60000.0], "memory": [
        {"games": 1, "resident": 9, "growth": 0}, {"games": 4, "resident": 9, "growth": 7}],
    "faults": [],
}


def game(number, white, black, result, reason="checkmate", **more):
    """The second game of a pair has an even number."""
    return {**copy.deepcopy(MATE), "game": number, "pair": (number - 1) // 2, "white": white,
            "black": black, "result": result, "reason": reason, **more}


class StandingsTest(unittest.TestCase):
    def standings(self, *games, names=("A", "B")):
        made = Standings(names)
        for each in games:
            made.add(each)
        return made

    def test_games_and_pairs(self):
        made = self.standings(
            game(1, "A", "B", "1-0"), game(2, "B", "A", "0-1"),
            game(3, "A", "B", "0-1"), game(4, "B", "A", "1/2-1/2"),
            game(5, "A", "B", "1/2-1/2"),
        )
        self.assertEqual(made.totals["A"].words(), "+2 =2 -1")
        self.assertEqual(made.meetings["B", "A"].words(), "+1 =2 -2")
        self.assertEqual((made.pairs, made.totals["B"].pairs), ([0, 1, 0, 0, 1], [1, 0, 0, 1, 0]))

    def test_the_order_of_games_is_of_no_account(self):
        games = [game(n, *("AB" if n % 2 else "BA"), result) for n, result in enumerate(
            ("1-0", "0-1", "1/2-1/2", "1-0", "0-1", "1-0", "1-0", "1/2-1/2"), 1)]
        one, other = self.standings(*games), self.standings(*games[::-1])
        self.assertEqual(report.standings_table(one), report.standings_table(other))

    def test_pairs_of_different_matches_do_not_meet(self):
        made = Standings()
        made.add(game(1, "A", "B", "1-0"), 0)
        made.add(game(2, "B", "A", "0-1"), 1)
        self.assertEqual(made.totals["A"].pairs, [0] * 5)
        made.add(game(2, "B", "A", "0-1"), 0)
        self.assertEqual(made.totals["A"].pairs, [0, 0, 0, 0, 1])

    def test_work(self):
        # Black begins behind an opening of one half-move.
        made = self.standings(game(1, "A", "B", "0-1"))
        white, black = made.work["A"], made.work["B"]
        self.assertEqual((white.depth, black.depth), (3, 9))
        self.assertEqual((white.speed, black.speed), (None, 1000 * 1400 / 50))
        self.assertEqual((white.growth, black.growth, black.process_games), (0, 7, 4))

    def test_growth_of_memory_after_the_third_game(self):
        # White has played one game, Black four.
        made = self.standings(game(1, "A", "B", "0-1"))
        self.assertIn("growth of memory    A -, B 7 KiB\n", report.text(made))
        figures = {each["engine"]: each for each in json.loads(report.json_text(made))["engines"]}
        growths = (figures["A"]["memory_growth"], figures["B"]["memory_growth"])
        self.assertEqual(growths, (None, 7))

    def test_faults_and_time(self):
        fault = {"kind": "time", "engine": "B", "detail": "x", "file": "f"}
        made = self.standings(
            game(1, "A", "B", "1-0", "time forfeit", faults=[fault]), game(2, "B", "A", "1-0"))
        self.assertEqual((made.work["A"].time_losses, made.work["B"].time_losses), (0, 1))
        self.assertEqual(made.work["B"].faults["time"], 1)
        self.assertIn("  B: time: x: f", report.text(made))

    def test_searches_beyond_their_nodes(self):
        made = self.standings(game(1, "A", "B", "1-0", overruns=[0, 3]))
        self.assertNotIn(" over |", report.text(self.standings(game(1, "A", "B", "1-0"))))
        text = report.text(made)
        self.assertRegex(text, r"faults \| over \|\n")
        self.assertRegex(text, r"\| B .*\|    3 \|\n")
        figures = {each["engine"]: each for each in json.loads(report.json_text(made))["engines"]}
        self.assertEqual((figures["A"]["overruns"], figures["B"]["overruns"]), (0, 3))

    def test_tables(self):
        made = self.standings(
            game(1, "A", "B", "1-0"), game(2, "B", "A", "0-1"), game(3, "C", "A", "1-0"),
            game(4, "A", "C", "1-0"), names=("A", "B", "C"))
        text = report.text(made)
        self.assertIn("| A |        - | +1 =0 -1 | +2 =0 -0 |", text)
        self.assertIn("| C | +1 =0 -1 |        - |        - |", text)
        rows = [line.split()[1] for line in text.splitlines()[2:5]]
        self.assertEqual(rows, ["A", "C", "B"])

    def test_a_difference_without_an_error(self):
        made = self.standings(game(1, "A", "B", "1-0"))
        self.assertIn("| 100.0 % |  inf |  - |        - |", report.text(made))
        made.add(game(2, "B", "A", "1-0"))
        self.assertIn("| 50.0 % | 0.0 |  - |        - |", report.text(made))

    def test_infinite_and_unknown_figures_differ(self):
        names = ("elo", "low", "high", "superiority")
        for results, expected, cells in (
            ((), (None,) * 4, "| - | - | - |"),
            (("1-0",), ("inf", None, None, None), "| inf | - | - |"),
            (("0-1", "1-0"), ("-inf", None, None, None), "| -inf | - | - |"),
            (("1-0", "1-0"), (0.0, None, None, None), "| 0.0 | - | - |"),
        ):
            made = self.standings(*(
                game(n, *("AB" if n % 2 else "BA"), result) for n, result in enumerate(results, 1)))
            figures = json.loads(report.json_text(made))["engines"]
            (row,) = (each for each in figures if each["engine"] == "A")
            self.assertEqual(tuple(row[name] for name in names), expected)
            self.assertNotIn("-0.0", report.json_text(made))
            rows = report.standings_table(made).splitlines()
            (line,) = (line for line in rows if line.startswith("| A "))
            self.assertIn(cells, " ".join(line.split()))
        made = self.standings(*(game(n, *("AB" if n % 2 else "BA"), "1/2-1/2") for n in range(1, 5)))
        self.assertIn("| 0.0 | - | - |", " ".join(report.standings_table(made).split()))

    def test_sprt_and_json(self):
        made = self.standings(game(1, "A", "B", "1-0"), game(2, "B", "A", "0-1"),
                              game(3, "A", "B", "1/2-1/2"), game(4, "B", "A", "0-1"))
        test = Sprt(0, 5)
        self.assertRegex(report.progress(made, 9, test), r", LLR 0\.\d\d of -2.94 to 2.94, ")
        self.assertIn("SPRT of Elo 0 and 5: LLR 0.", report.text(made, test))
        record = json.loads(report.json_text(made, test))
        self.assertEqual(record["sprt"]["taken"], None)
        self.assertEqual(record["engines"][0]["wins"], 3)
        self.assertEqual(record["engines"][0]["high"], "inf")
        self.assertRegex(report.text(made), r"\| \+338\.0 \| +inf \| ")
        self.assertAlmostEqual(record["engines"][0]["elo"], 338.04, 2)


class PgnTest(ScratchTest):
    def test_text(self):
        text = pgn_text(game(3, "A", 'B "\\"', "0-1"), {"A": "10+0.1", 'B "\\"': "nodes 5"})
        self.assertIn('[Black "B \\"\\\\\\""]\n', text)
        for words in ('[Round "2.1"]', '[Result "0-1"]', '[WhiteTimeControl "10+0.1"]', '[BlackTimeControl "nodes 5"]',
                      '[PlyCount "4"]', '[Termination "normal"]'):
            self.assertIn(words + "\n", text)
        self.assertEqual(" ".join(text.split("\n\n")[1].split()), (
            "1. f3 e5 {+0.35/9 0.010s n=1000 [%clk 1:02:03.456]} "
            "2. g4 {-M1/3 0.003s [%clk 0:00:00.990]} "
            "2... Qh4# {+M1/0 0.040s n=400 [%clk 0:01:00.000]} {checkmate} 0-1"))

    def test_what_the_engines_call_themselves(self):
        text = " ".join(pgn_text({**MATE, "titles": ["Ada 1.0 {x}", "B"]}).split())
        self.assertIn('[Termination "normal"] {A is Ada 1.0 {x)} 1. f3 e5', text)
        text = " ".join(pgn_text({**MATE, "titles": ["Ada 1.0", "Bob 2"]}).split())
        self.assertIn("{A is Ada 1.0; B is Bob 2} 1. f3", text)
        self.assertIn('[White "A"] [Black "B"]', text)

    def test_one_clock_for_both(self):
        text = pgn_text(MATE, {"A": "40/60", "B": "40/60"})
        self.assertIn('[TimeControl "40/60"]', text)

    def test_other_starts_and_ends(self):
        fen = "4k3/8/8/8/8/8/8/R4KR1 b AG - 7 30"
        record = game(1, "A", "B", "1-0", "illegal move", fen=fen, chess960=True, opening=[],
                      moves=["e8d7", "f1g1"], scores=[None, -5], depths=[None, 1],
                      nodes=[None, None], times=[1, 1], clocks=[None, None])
        text = pgn_text(record)
        for words in ('[Variant "Chess960"]', f'[FEN "{fen}"]', '[SetUp "1"]',
                      '[Termination "rules infraction"]'):
            self.assertIn(words, text)
        self.assertIn("30... Kd7 {0.001s} 31. O-O {-0.05/1 0.001s} {illegal move} 1-0", text)
        self.assertNotIn("TimeControl", text)

    def test_ends_by_adjudication(self):
        for reason in ("draw by adjudication", "win by adjudication", "length"):
            text = pgn_text(game(1, "A", "B", "1-0", reason))
            self.assertIn('[Termination "adjudication"]', text)
            self.assertIn(f"{{{reason}}} 1-0", " ".join(text.split()))

    def games(self):
        yield game(1, "A", "B", "0-1", titles=["Ada 1.0", "Bob 2"])
        long = [move for _ in range(20) for move in ("g1f3", "g8f6", "f3g1", "f6g8")]
        empty = [None] * len(long)
        yield game(2, "B", "A", "1/2-1/2", opening=[], moves=long, scores=empty, depths=empty,
                   nodes=empty, clocks=empty, times=[1.0] * len(long))

    def test_our_reader_reads_it(self):
        text = "".join(map(pgn_text, self.games()))
        self.assertLess(max(map(len, text.splitlines())), 81)
        read = [check_game(raw, 1) for raw in raw_games(text.splitlines())]
        self.assertEqual([len(each.moves) for each in read], [4, 80])
        self.assertEqual(read[0].moves[-1].san, "Qh4#")

    def test_pgn_extract_reads_it(self):
        name = self.file("games.pgn", "".join(map(pgn_text, self.games())))
        path = os.environ["PATH"] + ":/usr/games"
        run = subprocess.run(["pgn-extract", "-r", name], capture_output=True, text=True,
                             check=False, env={**os.environ, "PATH": path})
        self.assertEqual(run.returncode, 0, run.stderr)
        self.assertIn("2 games", run.stderr)
        self.assertNotIn("Unknown", run.stderr)
        self.assertNotIn("error", run.stderr.lower())


if __name__ == "__main__":
    unittest.main()
