"""What a level plays like, counted from the records of an analysis."""

import json
import unittest

from orvelin_lib.tool_main import ToolError
from rating_lib.play import HEAD, counted_play, read_rows
from scratch import ScratchTest

WHITE, BLACK = "4k3/8/8/8/8/8/4P3/4K3 w - - 0 1", "4k3/8/8/8/8/8/4P3/4K3 b - - 0 1"


def record(fen, lost, mark="", number=1, white="orvelin-play-800", black="orvelin-play-950"):
    source = {"file": "games.pgn", "game": number, "white": white, "black": black}
    judgement = {"mark": mark, "lost": lost, "accuracy": 50, "sentence": "A sentence."}
    return {"source": source, "fen": fen, "played": {"judgement": judgement}}


class PlayTest(ScratchTest):
    def rows(self, *records):
        text = "".join(json.dumps(each) + "\n" for each in records)
        counted = counted_play([self.file("a.jsonl", text)])
        self.assertEqual(counted.splitlines()[0], HEAD)
        return read_rows(self.file("play.csv", counted))

    def test_moves_count_for_the_side_that_made_them(self):
        rows = self.rows(
            record(WHITE, 100, "?"), record(WHITE, 20.5), record(BLACK, 300, "??"),
            record(BLACK, 60, "?!", number=2), record(BLACK, 0, "!", number=2),
        )
        self.assertEqual(rows, [
            [800, 1, 2, "6.0", "0.00", "1.00", "0.00"],
            [950, 2, 3, "12.0", "0.50", "0.00", "0.50"],
        ])

    def test_what_is_no_move_of_a_level(self):
        forced = record(WHITE, 0)
        forced["played"]["judgement"]["accuracy"] = None
        unjudged, last, no_game = record(WHITE, 7), record(WHITE, 7), record(WHITE, 7, white=None)
        unjudged["played"]["judgement"] = None
        last["played"] = None
        other = record(WHITE, 5, white="stockfish-1350")
        self.assertEqual(self.rows(forced, unjudged, last, no_game, other), [])

    def test_a_foreign_file(self):
        with self.assertRaisesRegex(ToolError, "does not begin with"):
            read_rows(self.file("play.csv", "a,b\n"))


if __name__ == "__main__":
    unittest.main()
