"""PGN files: what is read, and what is refused with which reason."""

import unittest

from orvelin_lib.pgn import check_game, raw_games, read_game
from orvelin_lib.tool_main import ToolError
from scratch import ScratchTest

TWO_GAMES = """[Event "A \\"first\\" one"]
[White "Weiß"]
[Black "Noir"]
[Result "1-0"]

{opening} 1. e4 $1 e5 ; the rest of the line Nf6
% an escaped line
2. Nf3! (2. f4 exf4 (2... d5) 3. Nf3) 2... Nc6?! 3.Bb5 a6 4 Ba4 Nf6
5. O-O Be7 1-0

[Event "Second"]
[SetUp "1"]
[FEN "4k3/P7/8/8/3pP3/8/8/4K3 b - e3 0 7"]

7... dxe3 8. a8=Q+ Kd7 *
"""


class PgnTest(ScratchTest):
    def games(self, text):
        return list(raw_games(text.splitlines()))

    def write(self, data):
        name = self.file("games.pgn")
        with open(name, "wb") as file:
            file.write(data)
        return name

    def test_the_main_line_alone(self):
        first, second = self.games(TWO_GAMES)
        self.assertEqual(first.tags["Event"], 'A "first" one')
        self.assertEqual(" ".join(first.moves), "e4 e5 Nf3 Nc6 Bb5 a6 Ba4 Nf6 O-O Be7")
        self.assertEqual(" ".join(second.moves), "dxe3 a8=Q+ Kd7")

    def test_comments_go_on_over_lines(self):
        (game,) = self.games("1. e4 {one\nNf6 two\n} e5 {three} 2. Nf3 {\n\n} *")
        self.assertEqual(game.moves, ["e4", "e5", "Nf3"])

    def test_numbers_and_positions(self):
        name = self.write(TWO_GAMES.encode())
        game = read_game(name, 1)
        numbers = [move.number for move in game.moves]
        self.assertEqual(numbers[:3] + numbers[-2:], ["1.", "1...", "2.", "5.", "5..."])
        self.assertTrue(game.moves[8].move.castling)
        self.assertEqual(game.title(), 'Weiß - Noir, A "first" one, 1-0')
        game = read_game(name, 2)
        self.assertEqual([move.number for move in game.moves], ["7...", "8.", "8..."])
        self.assertTrue(game.moves[0].move.en_passant)
        self.assertEqual(game.moves[1].move.promotion, "q")

    def test_other_bytes(self):
        game = read_game(self.write(TWO_GAMES.replace("\n", "\r\n").encode("latin-1")), 1)
        self.assertEqual((game.tags["White"], len(game.moves)), ("Weiß", 10))
        game = read_game(self.write(b"\xef\xbb\xbf" + TWO_GAMES.encode()), 2)
        self.assertEqual(len(game.moves), 3)

    def test_games_without_tags_or_result(self):
        games = self.games("1. e4 e5 1/2-1/2 1. d4 0-1\n1... c5")
        self.assertEqual([game.moves for game in games], [["e4", "e5"], ["d4"], ["c5"]])
        self.assertEqual(self.games("1. 0-0 0-0-0 *")[0].moves, ["0-0", "0-0-0"])
        self.assertEqual(self.games(""), [])

    def test_illegal_moves_are_named(self):
        for text, expected in (
            ("1. e4 e5 2. Ke3 *", ("game 4", "2.", "Ke3")),
            ("1. e4 Nd7 *", ("game 4", "1...", "Nd7")),
            ("1. e5 *", ("1.", "e5")),
            ("1. e4 e5 2. Nf3 Nc6 3. O-O *", ("3.", "O-O")),
            ("1. Nf3 d6 2. d4 d5 3. Nd2 *", ("3.", "Nd2", "more than one")),
            ("1. nonsense *", ("1.", "nonsense")),
        ):
            with self.assertRaises(ToolError, msg=text) as refusal:
                check_game(self.games(text)[0], 4)
            for words in expected:
                self.assertIn(words, str(refusal.exception))

    def test_other_refusals(self):
        name = self.write(TWO_GAMES.encode())
        for call, reason in (
            (lambda: read_game(name, 3), "has 2 games;"),
            (lambda: read_game(self.write(b"1. e4 *"), 2), "has 1 game;"),
            (lambda: read_game(name + "x", 1), "No such file"),
            (lambda: read_game(self.write(b""), 1), "has 0 games"),
            (lambda: read_game(self.write(b'[Event "x"]\n\n*'), 1), "no moves"),
            (lambda: read_game(self.write(b"1. e4 {never closed"), 1), "line 1"),
            (lambda: read_game(self.write(b'[FEN "4k3 w - -"]\n1. e4 *'), 1), "not a FEN"),
        ):
            with self.assertRaises(ToolError) as refusal:
                call()
            self.assertIn(reason, str(refusal.exception))


if __name__ == "__main__":
    unittest.main()
