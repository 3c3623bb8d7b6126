"""PyChess: what it knows of the engine, and moves that its own code asks for."""

import asyncio
import os
import unittest

from orvelin_lib.board import START_FEN
from orvelin_lib.process import program
from pychess.Utils.const import FISCHERRANDOMCHESS, NORMALCHESS
from pychess_player import Player, add_engine, read_discovery_files

VIEW = os.environ["INTERFACE_VIEW"] != "0"
# White wins the queen by castling alone.
CASTLING = "3q4/7p/3k4/8/8/8/7P/RK6 w Q - 0 1"


# One for all tests: what PyChess leaves waiting in a loop cannot be cancelled, nor the loop closed.
LOOP = asyncio.new_event_loop()
asyncio.set_event_loop(LOOP)


class PyChessTest(unittest.TestCase):
    program = program("orvelin-play")
    elo = 800, 2400
    levels = range(1, 21)

    @classmethod
    def setUpClass(cls):
        cls.parts = LOOP.run_until_complete(add_engine(cls.program))

    def play(self, *game, **settings):
        return LOOP.run_until_complete(self.play_in_loop(*game, **settings))

    async def play_in_loop(self, count, variant=NORMALCHESS, fen=START_FEN, **settings):
        player = Player(*self.parts, variant, fen)
        name = await player.start(**settings)
        self.assertEqual(name[:7], "Orvelin")
        try:
            return await player.play(count)
        finally:
            await player.stop()

    def test_the_engine_is_added_with_its_options(self):
        discoverer, engine = self.parts
        self.assertEqual((engine["command"], engine["protocol"]), (self.program, "uci"))
        self.assertFalse(engine["recheck"])
        options = {option["name"]: option for option in engine["options"]}
        self.assertEqual((options["UCI_Elo"]["min"], options["UCI_Elo"]["max"]), self.elo)
        self.assertIn(FISCHERRANDOMCHESS, discoverer.getEngineVariants(engine))
        self.assertIn(engine, discoverer.getAnalyzers())

    def test_it_plays_and_ponders(self):
        self.assertEqual(len(self.play(4)), 4)

    def test_it_plays_at_the_levels(self):
        for level in self.levels:
            with self.subTest(level=level):
                self.assertEqual(len(self.play(2, level=level)), 2)

    def test_it_castles_in_chess960(self):
        moves = self.play(3, FISCHERRANDOMCHESS, CASTLING, pondering=False)
        self.assertTrue(moves[0].castling)


class ExactPyChessTest(PyChessTest):
    program = program("orvelin")
    elo = 1500, 2200
    # With a level below 4 it answers on `stop` only.
    levels = (8,)


@unittest.skipUnless(VIEW, "no private view of the file system")
class DiscoveryTest(unittest.TestCase):
    def test_the_discovery_files_are_read(self):
        known = read_discovery_files()
        for name in ("orvelin-play", "orvelin"):
            self.assertEqual(known[name]["protocol"], "uci")


if __name__ == "__main__":
    unittest.main()
