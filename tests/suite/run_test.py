"""Runs as a whole: engines and options, thresholds, files, interruption and resumption."""

import csv
import json
import os
import signal
import subprocess
import sys
import time
import unittest

from support import ARRAY, ENGINE, FORK, MATE, THREE, TOOL, SuiteTest

WRONG_FORK = {FORK: ["info depth 2 nodes 7 score cp 1 pv d5b4", "bestmove d5b4"]}


class EngineTest(SuiteTest):
    def test_own_names_and_options(self):
        self.suite(
            *("--engine", self.fake("one", options=["Hash", "Skill Level"]), "--name", "one"),
            *("--option", "hash=32", "--option", "Skill Level=a=b"),
            *("--engine", self.fake("two", options=["Hash"]), "--name", "two", "--nodes", "500"),
        )
        told = self.told("one")
        self.assertIn("setoption name Hash value 32", told)
        self.assertIn("setoption name Skill Level value a=b", told)
        self.assertEqual(told.count("go nodes 500"), 3)
        self.assertIn(f"position fen {FORK} w - - 0 1", told)
        self.assertFalse([line for line in self.told("two") if line.startswith("setoption")])

    def test_limits(self):
        for words, go in (
            (("--depth", "7"), "go depth 7"),
            (("--movetime", "70"), "go movetime 70"),
            ((), "go movetime 1000"),
        ):
            engine = "limit" + "".join(words)
            self.suite("--engine", self.fake(engine), *words)
            self.assertEqual(self.told(engine).count(go), 3)

    def test_each_position_is_a_new_game_and_a_new_process_if_wanted(self):
        self.suite("--engine", self.fake("lasting"), "--movetime", "50")
        # One start to see that it can be started.
        self.assertEqual(self.told("lasting").count("uci"), 2)
        self.assertEqual(self.told("lasting").count("ucinewgame"), 3)
        self.suite("--engine", self.fake("fresh"), "--movetime", "50", "--fresh")
        self.assertEqual(self.told("fresh").count("uci"), 4)
        self.assertEqual(self.told("fresh").count("quit"), 4)

    def test_chess960_is_switched_on_and_off(self):
        text = THREE + f"4k3/8/8/8/8/8/8/5K1R w H - bm O-O;\n{MATE} w - - dm 1;\n"
        answers = {"4k3/8/8/8/8/8/8/5K1R": ["bestmove f1h1"]}
        self.suite("--engine", self.fake(answers=answers, options=["UCI_Chess960"]), text=text)
        lines = [line for line in self.told() if "Chess960" in line]
        self.assertEqual(
            lines, [f"setoption name UCI_Chess960 value {value}" for value in ("true", "false")]
        )

    def test_the_engine_itself(self):
        text = THREE + "4k3/8/8/8/8/8/8/5K1R w H - am Ke1; id \"free\";\n"
        record = self.record(
            *("--engine", ENGINE, "--option", "Hash=16", "--depth", "8"), text=text
        )
        (summary,) = record["engines"]
        self.assertTrue(summary["title"].startswith("Orvelin"))
        self.assertEqual(summary["solved"], 4)
        self.assertGreater(summary["nodes"], 1000)
        self.assertLess(summary["average_seconds"], 60)

    def test_bad_usage(self):
        good = self.fake()
        for arguments, words in (
            (("--engine", good, "--engine", good), "two engines are called"),
            (("--option", "Hash=1", "--engine", good), "stands before every --engine"),
            (("--engine", good, "--depth", "3", "--nodes", "3"), "not allowed with"),
            (("--engine", good, "--depth", "0"), "0 is not between 1 and"),
            (("--engine", good, "--threshold", "101%"), "'101' is not between 0 and 100"),
            (("--engine", good, "--threshold", "-1"), "--threshold"),
            (("--engine", good, "--resume"), "needs a --journal"),
            (("--engine", good, "--sshlogin", ":"), "need --parallel"),
            (("--engine", good, "--patience", "nan"), "'nan' is not between 0 and"),
            (("--engine", good, "--longest", "0"), "'0' is no time to wait"),
            (("--engine", good, "--csv", "-", "--json", "-"), "cannot both go"),
            (("--engine", good, "--nonsense"), "unrecognized"),
        ):
            run = self.suite(*arguments, status=2)
            self.assertIn(words, run.stderr)
            self.assertEqual(run.stdout, "")
        self.assertFalse(os.path.exists(self.file("fake.log")))

    def test_what_fails_before_the_first_search(self):
        good = self.fake()
        nowhere = self.file("nowhere")
        missing = "No such file or directory"
        for arguments, words in (
            (("--engine", good, "--option", "Hash=1"), "python3: has no option Hash"),
            (("--engine", nowhere), f"cannot run {nowhere}: {missing}"),
            (("--engine", self.directory), f"cannot run {self.directory}: Is a directory"),
            (("--engine", "no-such-engine"), f"cannot run no-such-engine: {missing}"),
            (("--engine", good, "--csv", nowhere + "/x"), f"cannot write {nowhere}/x: {missing}"),
            (("--engine", good, "--json", nowhere + "/x"), f"cannot write {nowhere}/x: {missing}"),
        ):
            run = self.suite(*arguments, status=1)
            self.assertEqual(run.stdout, "")
            self.assertEqual(run.stderr.splitlines()[-1], f"orvelin-suite: {words}")
        run = self.suite("--engine", good, status=1, text="nothing\n")
        self.assertIn("test.epd, line 1: no position", run.stderr)
        # Such a run would search all, and then lose what it found.
        self.assertEqual([line for line in self.told() if line.startswith("go ")], [])


class ThresholdTest(SuiteTest):
    def test_exit_status(self):
        one = ("--engine", self.fake("one"), "--name", "one")
        two = ("--engine", self.fake("two", answers=WRONG_FORK), "--name", "two")
        for engines, threshold, status in (
            (one, "100%", 0),
            (two, "100%", 1),
            (two, "66%", 0),
            (two, "67%", 1),
            (two, "2", 0),
            (two, "3", 1),
            (two, "0", 0),
            ((*one, *two), "2", 0),
            ((*one, *two), "3", 1),
        ):
            self.suite(*engines, "--movetime", "50", "--threshold", threshold, status=status)

    def test_all_have_to_be_solved_when_nothing_is_said(self):
        self.suite("--engine", self.fake(answers=WRONG_FORK), status=1)


class FileTest(SuiteTest):
    def run_two(self, *arguments):
        return self.record(
            *("--engine", self.fake("one"), "--name", "one", "--movetime", "50"),
            *("--engine", self.fake("two", answers=WRONG_FORK), "--name", "two", *arguments),
            status=1,
        )

    def test_json(self):
        record = self.run_two()
        self.assertEqual(record["settings"]["limit"], "movetime")
        self.assertEqual(record["settings"]["amount"], 50)
        one, two = record["engines"]
        self.assertEqual((one["name"], one["title"], one["solved"]), ("one", "Fake", 3))
        self.assertEqual((two["solved"], two["positions"], two["faults"]), (2, 3, 0))
        self.assertEqual((one["nodes"], two["nodes"]), (60, 47))
        entries = [(entry["engine"], entry["number"]) for entry in record["positions"]]
        self.assertEqual(entries, [(name, n) for name in ("one", "two") for n in (1, 2, 3)])
        fork = record["positions"][4]
        self.assertEqual((fork["name"], fork["goal"], fork["move"]), ("fork", "bm d5f6", "d5b4"))
        self.assertEqual((fork["solved"], fork["seconds"], fork["depth"]), (False, None, 2))

    def test_csv(self):
        name = self.file("out.csv")
        self.run_two("--csv", name)
        with open(name, encoding="utf-8", newline="") as file:
            rows = list(csv.DictReader(file))
        self.assertEqual(len(rows), 6)
        mate = rows[0]
        self.assertEqual((mate["engine"], mate["name"]), ("one", "mate"))
        self.assertEqual(mate["goal"], "bm a1a8; dm 1")
        self.assertEqual((mate["solved"], mate["move"], mate["mate"]), ("1", "a1a8", "1"))
        self.assertEqual((mate["nodes"], mate["depth"], mate["fault"]), ("10", "1", ""))
        self.assertGreaterEqual(float(mate["seconds"]), 0)
        self.assertEqual((rows[4]["solved"], rows[4]["seconds"]), ("0", ""))

    def test_the_table(self):
        self.run_two()
        lines = self.run_of_tool.stdout.splitlines()
        cells = [[cell.strip() for cell in line.split("|")[1:-1]] for line in lines[:4]]
        self.assertEqual(cells[0][:5], ["engine", "solved", "of", "share", "faults"])
        self.assertEqual(cells[2][:5], ["one", "3", "3", "100.0 %", "0"])
        self.assertEqual(cells[3][:5], ["two", "2", "3", "66.7 %", "0"])
        self.assertEqual((cells[2][6], cells[3][6]), ("60", "47"))
        self.assertIn("two: fork: wanted bm d5f6, answered d5b4", lines)
        self.assertIn("6 of 6 done, solved: one 3 of 3, two 2 of 3", self.run_of_tool.stderr)


class ResumeTest(SuiteTest):
    def arguments(self, *further, answers=None):
        """Always the same command, whatever the engine answers."""
        engine = self.fake(answers=answers)
        return (
            *("--engine", engine, "--name", "fake", "--movetime", "50", "--patience", "100"),
            *("--journal", self.file("journal"), *further),
        )

    def journal(self):
        with open(self.file("journal"), encoding="utf-8") as file:
            return [json.loads(line) for line in file]

    def wait_for_entries(self, count):
        deadline = time.monotonic() + 60
        while not os.path.exists(self.file("journal")) or len(self.journal()) <= count:
            self.assertLess(time.monotonic(), deadline)
            time.sleep(0.05)

    def interrupt(self, number):
        command = [sys.executable, TOOL, self.file("test.epd", THREE)]
        command += self.arguments(answers={ARRAY: ["!stall"]})
        with subprocess.Popen(
            command, stdout=subprocess.PIPE, stderr=subprocess.PIPE, text=True
        ) as run:
            self.wait_for_entries(2)
            run.send_signal(number)
            output, errors = run.communicate(timeout=60)
        self.assertEqual(run.returncode, 130, errors)
        self.assertIn("not finished: 1", output)
        self.assertIn(f"--resume --journal {self.file('journal')}", errors)
        self.assert_gone()

    def test_interrupted_and_taken_up_again(self):
        self.interrupt(signal.SIGINT)
        # As a run that was killed leaves it.
        with open(self.file("journal"), "a", encoding="ascii") as file:
            file.write('{"engine": "fa')
        searches = self.told().count("go movetime 50")
        record = self.record(*self.arguments("--resume"))
        self.assertEqual(self.told().count("go movetime 50"), searches + 1)
        self.assertEqual(record["engines"][0]["solved"], 3)
        self.assertEqual(sorted(entry["number"] for entry in self.journal()[1:]), [1, 2, 3])
        # Once more there is nothing to do.
        again = self.record(*self.arguments("--resume"))
        self.assertEqual(again["positions"], record["positions"])
        self.assertEqual(self.told().count("go movetime 50"), searches + 1)

    def test_terminated(self):
        self.interrupt(signal.SIGTERM)

    def test_other_settings_or_positions_are_refused(self):
        arguments = self.arguments("--resume")
        self.suite(*arguments)
        for further, text in ((("--patience", "7"), THREE), ((), THREE.replace("am f4", "am h4"))):
            run = self.suite(*arguments, *further, text=text, status=2)
            self.assertIn("belongs to other positions or settings", run.stderr)

    def test_a_line_that_is_no_record(self):
        arguments = self.arguments("--resume")
        self.suite(*arguments)
        with open(self.file("journal"), encoding="utf-8") as file:
            good = file.read()
        for line in ('{"a": 1}', "5", good.splitlines()[1].replace('"number": 1', '"number": []')):
            self.file("journal", f"{good}{line}\n")
            run = self.suite(*arguments, status=1)
            self.assertIn(f"journal: not a record: {line[:80]}", run.stderr)

    def test_a_journal_is_not_overwritten(self):
        self.file("journal", "kept")
        run = self.suite(*self.arguments(), status=2)
        self.assertIn("journal exists: go on with --resume, or name another", run.stderr)
        self.assertFalse(os.path.exists(self.file("fake.log")))
        self.suite(*self.arguments("--resume"), status=1)
        with open(self.file("journal"), encoding="ascii") as file:
            self.assertEqual(file.read(), "kept")


if __name__ == "__main__":
    unittest.main()
