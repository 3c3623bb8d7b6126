"""The page on strength, and the results that it is made from."""

import difflib
import os
import re
import subprocess
import sys
import unittest

from match_lib import kept
from orvelin_lib.files import write_bytes
from rating_lib.document import document
from rating_lib.games import read_matches
from rating_lib.plan import LEVELS
from scratch import ScratchTest

ROOT = os.environ["RATING_ROOT"]
RESULTS = os.path.join(ROOT, "results")
TOOL = os.path.join(ROOT, "tools", "fit-ratings")
MOST_BYTES = 2 << 20


def run_tool(*arguments, status=0):
    run = subprocess.run([sys.executable, TOOL, *arguments], cwd=ROOT, capture_output=True,
                         text=True, timeout=240, check=False)
    assert run.returncode == status, run.stderr
    assert "Traceback" not in run.stderr, run.stderr
    return run


class KeptResultsTest(unittest.TestCase):
    def test_the_page_is_what_the_results_say(self):
        with open(os.path.join(ROOT, "docs", "strength.md"), encoding="utf-8") as file:
            page = file.read()
        made = run_tool("--document", "results").stdout
        change = difflib.unified_diff(page.splitlines(), made.splitlines(), lineterm="")
        self.assertEqual(page, made, "\n".join(change))

    def test_they_are_small(self):
        sizes = [os.path.getsize(name) for name in kept.files_in(RESULTS)]
        self.assertGreater(len(sizes), 2)
        self.assertLess(sum(sizes), MOST_BYTES)

    def test_each_file_has_a_word_on_how_it_was_played(self):
        with open(os.path.join(RESULTS, "README.md"), encoding="utf-8") as file:
            text = file.read()
        for name in kept.files_in(RESULTS):
            place = os.path.relpath(name, RESULTS)
            self.assertIn(f"`{os.path.dirname(place) or place}`", text)


def player(name, title, program=None, **options):
    return {"name": name, "title": title, "program": program or name, "options": list(options.items()),
            "limit": {"kind": "nodes", "amount": 9, "increment": 0, "moves": 0}}


def level(elo):
    return player(f"orvelin-play-{elo}", "Orvelin 1", UCI_LimitStrength="true", UCI_Elo=str(elo))


def claimed(elo):
    return player(f"stockfish-{elo}", "Stockfish 1", UCI_LimitStrength="true", UCI_Elo=str(elo))


class PageTest(ScratchTest):
    def match(self, first, second, wins, draws, losses, faults=(), late=0):
        """A match of pairs: so many games of each kind for the first player with either colour."""
        games, names = [], (first["name"], second["name"])
        for turned in (False, True):
            results = ["1-0"] * wins + ["1/2-1/2"] * draws + ["0-1"] * losses
            for pair, result in enumerate(results):
                white, black = names[::-1] if turned else names
                mirrored = {"1-0": "0-1", "0-1": "1-0"}.get(result, result)
                is_late = not turned and len(results) - pair <= late
                games.append({
                    "game": 2 * pair + turned + 1, "pair": pair, "white": white, "black": black,
                    "result": mirrored if turned else result,
                    "reason": "time forfeit" if is_late else "checkmate",
                    "opening": "", "plies": 9, "depth": [4.0, 6.0], "left": [7, None],
                    "faults": list(faults) if not pair and not turned else []})
        head = {"kind": "kept", "players": [first, second], "margin": 10, "dates": None}
        name = f"{names[0]}-{names[1]}.jsonl.xz"
        write_bytes(self.file(name), kept.data(head, games))

    def page(self, rows=()):
        matches = read_matches(kept.files_in(self.directory))
        return document(matches, rows)

    def row(self, page, start):
        lines = [line for line in page.splitlines() if re.match(rf"\| {start} *\|", line)]
        self.assertEqual(len(lines), 1, page)
        return [cell.strip() for cell in lines[0].strip("|").split("|")]

    def test_a_level_inside_and_one_outside_of_its_error(self):
        self.match(level(1400), claimed(1400), 40, 20, 40)
        self.match(level(1550), claimed(1400), 40, 20, 40)
        page = self.page()
        self.assertEqual(self.row(page, "1400")[1], "1400")
        self.assertEqual(self.row(page, "1400")[3:], ["200", "yes", "stockfish-1400 (200)"])
        self.assertEqual(self.row(page, "1550")[1], "1400")
        self.assertEqual(self.row(page, "1550")[3:], ["200", "no", "stockfish-1400 (200)"])
        self.assertEqual(self.row(page, "800")[1:], ["-"] * 5)
        self.assertIn("are preliminary:** there are 400 games of levels", page)

    def test_all_levels_measured(self):
        for elo in LEVELS:
            self.match(level(elo), claimed(1400), 40, 20, 40)
        self.assertNotIn("preliminary", self.page())
        self.match(level(LEVELS[3]), claimed(1400), 40, 20, 39)
        self.assertIn("preliminary", self.page())

    def test_faults_are_told_by_side(self):
        faults = [["orvelin-play-1400", "crash", 2], ["stockfish-1400", "stall", 1],
                  ["orvelin-play-1400", "time", 1]]
        self.match(level(1400), claimed(1400), 40, 20, 40, faults, late=3)
        page = self.page()
        self.assertIn("In 200 games `orvelin-play` had crash 2 and lost 3 games on time", page)
        self.assertIn("the other engines had stall 1 and lost 0 games on time", page)
        row = self.row(page, "1400 - stockfish-1400")
        self.assertEqual(row[1:7], ["nodes 9", "10", "200", "80", "40", "80"])
        self.assertEqual((row[9], row[11]), ("5.0 / 5.0", "3 / 0"))

    def test_equal_engines_have_a_table_of_their_own(self):
        self.match(level(1400), claimed(1400), 40, 20, 40)
        self.assertNotIn("equal engines", self.page())
        self.match(player("orvelin-play", "Orvelin 1"), player("orvelin", "Orvelin 1"), 9, 9, 9)
        self.assertNotIn("equal engines", self.page())
        self.match(player("one", None, "same"), player("two", None, "same"), 10, 10, 10)
        page = self.page()
        before = page.index("## Two equal engines"), page.index("## All matches")
        self.assertTrue(before[0] < page.index("| one - two ") < before[1])

    def test_the_match_of_the_page_has_elo_of_its_own(self):
        self.match(level(1400), claimed(1400), 30, 0, 10)
        self.assertEqual(self.row(self.page(), "1400 - stockfish-1400")[7], "+191")

    def test_who_is_not_connected(self):
        self.match(level(1400), claimed(1400), 40, 20, 40)
        self.match(player("orvelin-play-full", "Orvelin 1"), player("other", "Other"), 1, 1, 1)
        page = self.page()
        self.assertEqual(self.row(page, "other, nodes 9")[1], "played nobody who is rated")
        self.assertIn("| orvelin-play-full, nodes 9 |      - |", page)

    def test_what_levels_play_like(self):
        self.match(level(1400), claimed(1400), 40, 20, 40)
        self.assertNotIn("plays like", self.page())
        page = self.page([[1400, 20, 800, "4.2", "2.00", "1.50", "0.85"]])
        self.assertIn("## What a level plays like", page)
        self.assertIn("| 1400    |    20 |   800 |         4.2 |", page)


class ToolTest(ScratchTest):
    def test_all_players_of_the_kept_results(self):
        text = run_tool("results").stdout
        self.assertIn("| orvelin-play, 1+0.01 ", text)
        self.assertIn("White's advantage", text)

    def test_what_levels_play_like(self):
        run = run_tool("play", self.file("none.jsonl", ""))
        self.assertEqual(run.stdout, "level,games,moves,lost,doubtful,mistakes,blunders\n")
        run_tool("play", status=2)

    def test_refused(self):
        run = run_tool(self.directory, status=2)
        self.assertIn("there is no file with results", run.stderr)
        self.assertIn("cannot read", run_tool(self.file("none.jsonl.xz"), status=1).stderr)


if __name__ == "__main__":
    unittest.main()
