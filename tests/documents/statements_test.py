"""What docs/uci.md says of the engine, and no session in it and no other test shows."""

import os
import signal
import subprocess
import tempfile
import time
import unittest

from orvelin_lib.engine import EngineFailure, UciEngine
from orvelin_lib.process import dies_with
from project import ENGINE

WEAK = ("UCI_LimitStrength", "true"), ("UCI_Elo", "1500")


class StatementsTest(unittest.TestCase):
    def setUp(self):
        directory = tempfile.TemporaryDirectory()
        self.addCleanup(directory.cleanup)
        self.directory = directory.name
        self.start()

    def start(self, *options):
        """A new engine with a small table and these options."""
        self.engine = UciEngine([ENGINE], self.directory, patience=60.0)
        self.addCleanup(self.engine.kill)
        for name, value in (("Hash", "6"), *options):
            self.engine.send(f"setoption name {name} value {value}")

    def say(self, *lines):
        for line in lines:
            self.engine.send(line)

    def answers(self, line, word="bestmove"):
        self.engine.send(line)
        return [answer for _, answer in self.engine.wait_for(word)]

    def silent(self):
        """All that comes until the engine has worked off its lines and half a second more."""
        time.sleep(0.5)
        return self.answers("isready", "readyok")[:-1]

    def hold_end(self, *lines):
        """The engine ends by itself, as it does when it is told nonsense."""
        self.say(*lines)
        with self.assertRaisesRegex(EngineFailure, "ended by SIGABRT"):
            self.engine.wait_for("nothing")

    def test_uci_and_quit_stand_alone_on_their_line(self):
        self.say("uci ", "uci\r", "uci now", "quit now", "quit\r")
        self.assertEqual(self.silent(), [])
        self.assertEqual(self.answers("uci", "uciok")[0].split()[:2], ["id", "name"])

    def test_the_end_of_input_without_quit_does_not_end_it_at_once(self):
        with subprocess.Popen(
            [ENGINE],
            stdin=subprocess.DEVNULL,
            stdout=subprocess.PIPE,
            cwd=self.directory,
            preexec_fn=dies_with(os.getpid()),
        ) as process:
            with self.assertRaises(subprocess.TimeoutExpired):
                process.wait(1)
            process.send_signal(signal.SIGKILL)

    def test_unknown_lines_are_dropped(self):
        self.say("debug on", "register later", "hello", "", "   ")
        self.say("setoption name Foo value 1", "setoption name Hash", "setoption NAME Hash value 1")
        self.assertEqual(self.silent(), [])

    def test_only_the_word_true_is_true(self):
        self.say("setoption name Debug value TRUE", "setoption name Debug value on")
        self.assertEqual(self.silent(), [])
        self.assertEqual(os.listdir(self.directory), [])
        self.say("setoption name debug value true further")
        self.assertEqual(self.silent(), [])
        names = sorted(name.split("_")[0] for name in os.listdir(self.directory))
        self.assertEqual(names, ["analysis", "eval", "uci"])

    def test_a_missing_value_counts_as_zero_and_a_missing_word_leaves_the_option(self):
        for words, several in (("MultiPV value", False), ("MultiPV", True)):
            self.start(("MultiPV", "3"))
            self.say(f"setoption name {words}", "position startpos")
            told = any(" multipv 3 " in answer for answer in self.answers("go depth 8"))
            self.assertEqual(told, several, words)

    def test_several_lines_are_one_to_fifty(self):
        for value, lines in (("0", 0), ("text", 0), ("3", 3)):
            self.start(("MultiPV", "2"), ("MultiPV", value))
            self.say("position startpos")
            last = [line.split() for line in self.answers("go depth 8") if " pv " in line][-1]
            number = int(last[last.index("multipv") + 1]) if "multipv" in last else 0
            self.assertEqual(number, lines, value)

    def test_moves_behind_a_short_fen_are_lost(self):
        board = "4k3/8/8/8/8/8/4P3/4K3"
        self.say(f"position fen {board} w - - moves e2e4")
        first = self.answers("go nodes 1000")[-1]
        self.start()
        self.say(f"position fen {board} w - - 0 1")
        self.assertEqual(self.answers("go nodes 1000")[-1], first)

    def test_moves_without_a_move_end_it(self):
        self.hold_end("position startpos", "position startpos moves")

    def test_words_behind_searchmoves_are_moves(self):
        self.hold_end("position startpos", "go searchmoves e2e4 depth 2")

    def test_an_empty_move_is_not_read(self):
        self.hold_end("position startpos moves 0000")

    def test_a_search_of_so_many_nodes_ends_at_just_so_many(self):
        self.say("position startpos")
        lines = self.answers("go nodes 200000")
        self.assertIn(" nodes 200000 ", [line for line in lines if " pv " in line][-1])

    def test_mate_is_another_word_for_depth(self):
        self.say("position startpos")
        by_mate = self.answers("go mate 8")[-1]
        self.start()
        self.say("position startpos")
        self.assertEqual(self.answers("go depth 8")[-1], by_mate)

    def test_no_depth_and_no_nodes_give_no_move(self):
        for limit in ("depth 0", "depth -1", "depth many", "mate 0", "nodes 0"):
            self.start()
            self.say("position startpos")
            self.assertEqual(self.answers(f"go {limit}")[-1], "bestmove 0000", limit)

    def test_without_a_clock_a_weakened_engine_waits_for_stop(self):
        for limit in ("depth 1", "nodes 900000000"):
            self.start(*WEAK)
            self.say("position startpos", f"go {limit}")
            self.assertNotIn("bestmove", " ".join(self.silent()), limit)
            self.assertNotIn("ponder", self.answers("stop")[-1])

    def test_a_weakened_engine_with_one_line_plays_the_same_each_time(self):
        moves = set()
        for _ in range(3):
            self.start(*WEAK)
            self.say("position startpos")
            moves.add(self.answers("go movetime 900")[-1])
        self.assertEqual(len(moves), 1)

    def test_behind_stop_a_go_without_position_gives_the_old_move(self):
        self.say("position startpos", "go infinite")
        time.sleep(0.3)
        first = self.answers("stop")[-1]
        self.assertEqual(self.silent(), [])
        self.assertEqual(self.answers("go movetime 600000")[-1], first)

    def test_a_position_under_a_search_leaves_go_refused_until_stop(self):
        self.say("position startpos", "go wtime 600000 btime 600000")
        time.sleep(0.2)
        self.say("position startpos moves e2e4")
        self.silent()
        self.say("go depth 1")
        self.assertEqual(self.silent(), [])
        self.assertTrue(self.answers("stop")[-1].startswith("bestmove"))
        self.say("position startpos moves e2e4")
        self.assertRegex(self.answers("go depth 6")[-1], "^bestmove [a-h][78]")

    def test_a_ponderhit_without_a_search_leaves_go_refused_until_stop(self):
        self.say("ponderhit", "position startpos", "go depth 1")
        self.assertEqual(self.silent(), [])
        self.assertEqual(self.answers("stop")[-1], "bestmove 0000")

    def test_a_second_go_takes_the_limit_of_the_first(self):
        self.say("position startpos", "go movetime 1500")
        time.sleep(0.1)
        self.say("go movetime 1500")
        time.sleep(1.5)
        self.assertNotIn("bestmove", " ".join(self.silent()))
        self.answers("stop")


if __name__ == "__main__":
    unittest.main()
