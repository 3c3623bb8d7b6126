"""The engine with the book of its own in its working directory."""

import collections
import os
import unittest

from built_book import BuiltBookTest
from opening_lines import read_lines
from orvelin_lib.board import Position
from orvelin_lib.engine import UciEngine
from orvelin_lib.notation import parse_move

ENGINE = os.environ["OPENINGS_ENGINE"]
# The engine takes a book from here before that of its working directory.
INSTALLED = [f"{folder}/orvelin.files/Orvelin.bin" for folder in ("/usr/local/games", "/usr/games")]
SECONDS = 60
# No line is shorter.
PLIES = 8
GAMES = 6
STARTS = (
    "",
    "e2e4",
    "d2d4",
    "c2c4",
    "e2e4 c7c5",
    "e2e4 e7e6",
    "d2d4 g8f6",
    "e2e4 e7e5 g1f3",
    "d2d4 d7d5 c2c4",
    "e2e4 c7c5 g1f3 d7d6 d2d4 c5d4 f3d4 g8f6 b1c3",
)


class KnownMoves:
    """The moves of all lines by the position in which they are played."""

    def __init__(self, lines):
        self._moves = collections.defaultdict(set)
        self._positions = {(): Position()}
        for line in lines:
            for ply, text in enumerate(line.moves):
                position = self.behind(line.moves[:ply])
                self._moves[self._key(position)].add(text)

    def behind(self, moves):
        """The position behind these moves."""
        if moves not in self._positions:
            before = self.behind(moves[:-1])
            self._positions[moves] = before.after(parse_move(moves[-1], before))
        return self._positions[moves]

    def of(self, moves):
        return self._moves[self._key(self.behind(moves))]

    @staticmethod
    def _key(position):
        return "".join(position.board), position.side, position.rooks


class EngineTest(BuiltBookTest):
    @classmethod
    def setUpClass(cls):
        super().setUpClass()
        cls.known = KnownMoves(read_lines())

    def setUp(self):
        # The tests are started in a view without it, where the system gives one.
        self.assertFalse(any(map(os.path.exists, INSTALLED)), "another book is installed")
        self.engine = UciEngine([ENGINE], directory=self.directory, patience=SECONDS)
        self.addCleanup(self.engine.kill)
        self.engine.handshake()
        self.use_book("true")

    def use_book(self, value):
        self.assertTrue(self.engine.set_option("OwnBook", value))
        self.engine.ready()

    def answer(self, moves):
        """The engine's move behind these moves, and whether it has searched."""
        self.engine.send("ucinewgame")
        self.engine.send(" ".join(["position startpos", *(["moves", *moves] if moves else [])]))
        self.engine.send("go depth 3")
        lines = [line for _, line in self.engine.wait_for("bestmove")]
        return lines[-1].split()[1], any(line.startswith("info ") for line in lines)

    def assert_book_move(self, moves):
        """The engine's move, which it has to take from the book."""
        move, searched = self.answer(moves)
        self.assertFalse(searched, moves)
        self.assertIn(move, self.known.of(moves), moves)
        return move

    def test_plays_games_out_of_the_book(self):
        for _ in range(GAMES):
            moves = ()
            while len(moves) < PLIES:
                moves += (self.assert_book_move(moves),)

    def test_answers_other_openings(self):
        for start in STARTS:
            self.assert_book_move(tuple(start.split()))

    def test_knows_every_opening_of_the_lines(self):
        # Both colours: the positions behind three and four plies of some lines of every file.
        for line in read_lines()[::20]:
            for plies in (3, 4):
                self.assert_book_move(line.moves[:plies])

    def test_searches_off_the_book(self):
        moves = ("a2a4", "h7h5", "a4a5")
        self.assertEqual(self.known.of(moves), set())
        self.assertTrue(self.answer(moves)[1])

    def test_searches_when_the_book_is_not_asked_for(self):
        self.use_book("false")
        self.assertTrue(self.answer(())[1])


if __name__ == "__main__":
    unittest.main()
