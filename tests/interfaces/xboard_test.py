"""Whole games and analysis in XBoard, with the commands of docs/interfaces.md, of both engines."""

import os
import re
import time
import unittest

from document import documented
from orvelin_lib.pgn import read_game
from orvelin_lib.rules import Referee
from xboard import MOVE, THINKING, XBoard

# Enough for any game here on a busy machine.
PATIENCE = 150
# What takes a whole game to its end in a few seconds, far from the end of any clock.
SHALLOW = ("-tc", "10", "-depth", "8")
OPPONENT = ("-scp", "stockfish", "-sUCI", "-mg", "1", "-sgf", "game.pgn")
# White wins the queen by castling, as the rook cannot pass its king otherwise.
CASTLING = "3q4/7p/3k4/8/8/8/7P/RK6 w Q - 0 1"
VIEW = os.environ["INTERFACE_VIEW"] != "0"


class XBoardTest(unittest.TestCase):
    engine = "orvelin-play"

    def documented(self, *needed):
        return documented(*needed, engine=self.engine)

    def start(self, *words):
        board = XBoard(*words)
        self.addCleanup(board.__exit__)
        return board

    def play(self, *words):
        """A match of one game, held to the rules to its end: (XBoard, game)."""
        board = self.start(*words)
        board.wait(PATIENCE)
        self.assertEqual(board.engines_left(), [])
        game = read_game(board.path("game.pgn"), 1)
        self.assertEqual(game.tags["White"][:7], "Orvelin")
        referee = Referee(game.fen, chess960=True)
        for played in game.moves:
            # A game that goes on behind its end would have moves that this refuses.
            self.assertTrue(referee.play(played.move.text(True)), played)
        verdict = referee.verdict()
        self.assertIsNotNone(verdict, board.text("game.pgn")[-300:])
        self.assertEqual(game.tags["Result"], verdict[0], verdict[1])
        self.assertNotIn("llegal", board.debug())
        self.assertEqual(len(MOVE.findall(board.debug())), (len(game.moves) + 1) // 2)
        self.assertGreater(len(THINKING.findall(board.debug())), len(game.moves) // 2)
        return board, game

    def told_engine(self, board):
        """What polyglot told the engine."""
        lines = board.text(f"{self.engine}.log").split("\n")
        return [line.split("->Engine: ")[1] for line in lines if "->Engine: " in line]


class GameTest(XBoardTest):
    def test_a_game_on_the_clock(self):
        command = self.documented("-mg")
        try:
            board, game = self.play(*command, "-xponder")
        except AssertionError:
            # The clocks are short, and the machine may have been busy with something else.
            board, game = self.play(*command, "-xponder")
        self.assertTrue(any("movestogo" in line for line in self.told_engine(board)))
        self.assertGreater(len(game.moves), 20)

    def test_a_game_with_pondering(self):
        board, _ = self.play(*self.documented("-mg"), *SHALLOW, "-ponder")
        told = self.told_engine(board)
        self.assertTrue(any(line.startswith("go ") and line.endswith(" ponder") for line in told))
        self.assertIn("ponderhit", told)

    def test_a_game_of_chess960(self):
        words = (*self.documented("-variant"), *OPPONENT)
        board, game = self.play(*words, *SHALLOW, "-defaultFrcPosition", "300")
        self.assertEqual(game.tags["Variant"], "fischerandom")
        self.assertNotEqual(game.fen.split("/")[0], "rnbqkbnr")
        self.assertIn("setoption name UCI_Chess960 value true", self.told_engine(board))

    def test_castling_in_chess960(self):
        words = (*self.documented("-variant"), *OPPONENT)
        position = os.path.join(os.getcwd(), "castling.fen")
        with open(position, "w", encoding="ascii") as file:
            file.write(CASTLING + "\n")
        _, game = self.play(*words, *SHALLOW, "-loadPositionFile", position)
        self.assertEqual(game.fen.split()[0], CASTLING.split()[0])
        self.assertTrue(game.moves[0].move.castling, game.moves[0].san)


class ExactGameTest(GameTest):
    engine = "orvelin"


class SessionTest(XBoardTest):
    def test_it_plays(self):
        board = self.start(*self.documented("-fcp"), "-mode", "MachineWhite", "-tc", "0:10")
        board.wait_for(MOVE, 60)
        self.assertGreater(len(THINKING.findall(board.debug())), 3)
        board.close()
        self.assertEqual(board.engines_left(), [])

    def test_it_plays_with_the_book(self):
        board = self.start(*self.documented("-firstOptions"), "-mode", "MachineWhite")
        board.wait_for(MOVE, 60)
        self.assertIn("setoption name OwnBook value true", self.told_engine(board))
        self.assertIn("setoption name UCI_Elo value 1700", self.told_engine(board))
        # A move of the book comes without a search: where polyglot tells a line, it is of one node
        # or none.
        thinking = THINKING.findall(board.debug())
        self.assertEqual([line for line in thinking if int(line.split()[-1]) > 1], [])
        board.close()
        self.assertEqual(board.engines_left(), [])

    def test_it_analyses(self):
        board = self.start(*self.documented("-mode"))
        board.wait_for(THINKING, 60)
        time.sleep(1)
        self.assertEqual(MOVE.findall(board.debug()), [])
        self.assertGreater(len(THINKING.findall(board.debug())), 3)
        board.close()
        self.assertEqual(board.engines_left(), [])


class ExactSessionTest(SessionTest):
    engine = "orvelin"


@unittest.skipUnless(VIEW, "no private view of the file system")
class DiscoveryTest(XBoardTest):
    """The two starts of XBoard after an installation."""

    def test_the_second_start_knows_both_engines(self):
        settings = os.environ["INTERFACE_SETTINGS"]
        first = self.start("-fcp", "stockfish", "-fUCI")
        first.wait_for(re.compile('feature myname="Stockfish'), 60)
        first.close()
        with open(settings, encoding="utf-8") as file:
            known = file.read()
        for engine in ("orvelin-play", "orvelin"):
            self.assertIn(f"\n{engine} -fUCI\n", known)
        second = self.start(*self.documented("-fe"), "-mode", "MachineWhite")
        second.wait_for(MOVE, 60)
        self.assertIn('feature myname="Orvelin', second.debug())
        second.close()


if __name__ == "__main__":
    unittest.main()
