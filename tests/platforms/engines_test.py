"""Both engines as they are built for another system or processor: they search and answer as those
of this machine do."""

import os
import shutil
import tempfile
import time
import unittest

from program import DATA, Conversation, command, native, run

# What ends a session's answers stands behind what is sent.
SESSIONS = [
    ("uci\n", "uciok"),
    ("position startpos moves e2e4 c7c5\ngo depth 9\n", "bestmove"),
    ("setoption name MultiPV value 3\ngo depth 6\nsetoption name MultiPV value 1\n", "bestmove"),
    ("position fen 4k3/8/8/8/8/8/4P3/4K3 w - - 0 1\ngo depth 12\n", "bestmove"),
    (
        "setoption name UCI_Chess960 value true\n"
        "position fen bqnb1rkr/pp3ppp/3ppn2/2p5/5P2/P2P4/NPP1P1PP/BQ1BNRKR w HFhf - 2 9\n"
        "go depth 7\nsetoption name UCI_Chess960 value false\n",
        "bestmove",
    ),
    ("position fen 8/8/8/8 w - -\ngo depth 3\n", "bestmove"),
    ("position startpos\ngo nodes 20000\n", "bestmove"),
    ("setoption name UCI_LimitStrength value true\ngo depth 5\n", "bestmove"),
    ("setoption name UCI_LimitStrength value false\nd\neval\nisready\n", "readyok"),
    ("go perft 4\nisready\n", "readyok"),
    ("hello\nsetoption name Hash value x\ngo depth\nisready\n", "readyok"),
]
EXACT_SESSIONS = [
    ("uci\n", "uciok"),
    ("position startpos moves d2d4\ngo depth 8\n", "bestmove"),
    ("ucinewgame\nposition fen 8/8/4k3/8/8/4K3/4P3/8 w - - 0 1\ngo depth 10\n", "bestmove"),
    ("isready\n", "readyok"),
]


def answers(words, sessions, line_end="\n"):
    """What is heard in all sessions; of the exact engine the lines that its clock does not choose."""
    heard = []
    with Conversation(words) as engine:
        for text, last in sessions:
            engine.send(text.replace("\n", line_end))
            heard += engine.until(last)
        status = engine.end()
    return heard, status


class EnginesTest(unittest.TestCase):
    maxDiff = None

    def test_the_search_is_the_one_on_record(self):
        out, error, status = run(command("orvelin-signature", os.path.join(DATA, "signature.txt")))
        self.assertEqual((error, status), ("", 0))
        self.assertEqual(out.split(), ["765566", "e424c16217d2885d"])

    def test_bench_searches_the_same_nodes(self):
        out, _, status = run(command("orvelin-play", "bench"))
        self.assertEqual(status, 0)
        self.assertIn("Nodes searched: 2030223", out.splitlines())
        self.assertNotIn("\r", out)

    def test_sessions_are_answered_as_on_this_machine(self):
        expected = answers(native("orvelin-play"), SESSIONS)
        self.assertGreater(len(expected[0]), 100)
        self.assertEqual(answers(command("orvelin-play"), SESSIONS), expected)

    def test_ends_of_lines_may_be_those_of_windows(self):
        expected = answers(native("orvelin-play"), SESSIONS)
        self.assertEqual(answers(command("orvelin-play"), SESSIONS, "\r\n"), expected)

    def test_the_exact_engine_plays_the_same_moves(self):
        def moves(words):
            heard, status = answers(words, EXACT_SESSIONS)
            told = ("id", "option", "uciok", "bestmove", "readyok")
            return [line for line in heard if line.startswith(told)], status

        self.assertEqual(moves(command("orvelin")), moves(native("orvelin")))

    def test_a_search_is_stopped_soon(self):
        with Conversation(command("orvelin-play")) as engine:
            engine.send("go infinite\n")
            engine.until("info depth 5 ")
            begin = time.monotonic()
            engine.send("stop\n")
            engine.until("bestmove")
            self.assertLess(time.monotonic() - begin, 5)
            self.assertEqual(engine.end(), 0)

    def test_the_end_of_the_input_ends_the_process(self):
        out, _, status = run(command("orvelin-play"), "isready\n")
        self.assertEqual((out, status), ("readyok\n", 0))

    def test_a_book_is_read_wherever_it_lies(self):
        with tempfile.TemporaryDirectory() as folder:
            os.mkdir(os.path.join(folder, "Bücher und mehr"))
            book = os.path.join("Bücher und mehr", "Öffnungen.bin")
            shutil.copy(os.path.join(os.environ["PLATFORM_BOOK"]), os.path.join(folder, book))
            with Conversation(command("orvelin-play"), folder) as engine:
                engine.send("setoption name OwnBook value true\n")
                engine.send(f"setoption name Book File value {book}\n")
                # A late entry of the file: a byte that is lost or added would be found out.
                for line in ("", " moves d2d4 d7d5 c2c4 e7e6", " moves e2e4 c7c5 g1f3 d7d6 d2d4"):
                    engine.send(f"position startpos{line}\ngo depth 1\n")
                    self.assertIn("info string book move\n", engine.until("bestmove"))


if __name__ == "__main__":
    unittest.main()
