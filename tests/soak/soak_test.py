"""The soak run as a program, with engines that misbehave and with the real one."""

import json
import os
import signal
import subprocess
import sys
import time
import unittest

from limits import small_files
from scratch import ScratchTest

SOAK = os.path.join(os.environ["SOAK_TOOLS"], "soak")
SHORT = os.environ.get("SOAK_SHORT") == "1"
FAKE = os.path.join(os.path.dirname(os.path.realpath(__file__)), "fake_engine.py")


class SoakTest(ScratchTest):
    def setUp(self):
        super().setUp()
        self.log = self.file("run.jsonl")

    def fake(self, kind):
        """An engine with this habit."""
        name = os.path.join(self.directory, f"fake-{kind}")
        with open(name, "w", encoding="ascii") as file:
            file.write(f"#!{sys.executable} -S\n")
            with open(FAKE, encoding="ascii") as source:
                file.write(source.read())
        os.chmod(name, 0o755)
        return name

    def arguments(self, *further):
        return [sys.executable, SOAK, "--seed", "1", "--patience", "5", *further]

    def soak(self, *arguments, status, limit=None):
        run = subprocess.run(
            self.arguments(*arguments),
            capture_output=True,
            text=True,
            timeout=120,
            check=False,
            preexec_fn=limit,
        )
        self.assertEqual(run.returncode, status, run.stdout + run.stderr)
        return run

    def entries(self):
        with open(self.log, encoding="utf-8") as file:
            return [json.loads(line) for line in file]

    def fault_of(self, kind, *further):
        """The fault that is found in one game of this engine against itself."""
        self.soak(
            *("--engine", self.fake(kind), "--games", "1", "--log", self.log),
            *("--controls", "60000", "--ponder-share", "0", *further),
            status=1,
        )
        faults = self.entries()[-1]["faults"]
        self.assertEqual(len(faults), 1)
        with open(faults[0]["file"], encoding="utf-8") as file:
            self.session = file.read()
        self.assertIn(" > go wtime ", self.session)
        return faults[0]["kind"], faults[0]["detail"]


class FaultTest(SoakTest):
    def test_illegal_move(self):
        kind, detail = self.fault_of("illegal")
        self.assertEqual(kind, "illegal move")
        self.assertIn("'bestmove a1a1' after position", detail)
        self.assertIn("< bestmove a1a1", self.session)

    def test_illegal_ponder_move(self):
        kind, detail = self.fault_of("ponder", "--ponder-share", "1")
        self.assertEqual(kind, "illegal ponder move")
        self.assertIn("a1a1", detail)

    def test_crash_by_a_signal(self):
        self.assertEqual(self.fault_of("crash"), ("crash", "ended by SIGSEGV"))

    def test_early_exit(self):
        self.assertEqual(self.fault_of("exit"), ("crash", "ended with status 3"))

    def test_bad_end_on_quit(self):
        self.assertEqual(
            self.fault_of("badquit", "--max-plies", "2"), ("crash", "ended with status 5")
        )

    def test_no_end_on_quit(self):
        self.assertEqual(
            self.fault_of("clinging", "--max-plies", "2", "--patience", "2"),
            ("crash", "did not end on quit"),
        )

    def test_output_closed(self):
        self.assertEqual(self.fault_of("mute"), ("crash", "closed its output"))

    def test_stalling(self):
        started = time.monotonic()
        kind, _ = self.fault_of("stall", "--controls", "500", "--patience", "2")
        self.assertEqual(kind, "lost bestmove")
        self.assertGreater(time.monotonic() - started, 2)

    def test_flood(self):
        self.assertEqual(self.fault_of("flood")[0], "flood")

    def test_two_answers(self):
        kind, detail = self.fault_of("twice")
        self.assertIn(kind, ("illegal move", "stray answer"))
        self.assertIn("bestmove", detail)

    def test_answer_before_the_end_of_pondering(self):
        self.assertEqual(self.fault_of("impatient", "--ponder-share", "1")[0], "stray answer")

    def test_a_fault_does_not_end_the_run(self):
        self.soak(
            *("--engine", self.fake("crash"), "--games", "3", "--log", self.log),
            *("--controls", "60000", "--opponent", self.fake("good"), "--ponder-share", "0"),
            status=1,
        )
        games = self.entries()[1:]
        self.assertEqual(sorted(game["game"] for game in games), [1, 2, 3])
        for game in games:
            self.assertEqual([fault["engine"] for fault in game["faults"]], ["engine 1"])


class CountTest(SoakTest):
    def test_time_forfeits_are_counted_apart(self):
        run = self.soak(
            *("--engine", self.fake("slow"), "--games", "2", "--log", self.log),
            *("--controls", "100+1", "--ponder-share", "0"),
            status=0,
        )
        self.assertIn("time forfeit 2", run.stdout)
        for game in self.entries()[1:]:
            self.assertEqual((game["reason"], game["no_budget"]), ("time forfeit", 0))
            ((clock, overrun),) = game["forfeits"]
            self.assertEqual(clock, 100)
            self.assertGreater(overrun, 150)

    def test_a_clock_without_budget_is_not_sent(self):
        run = self.soak(
            *("--engine", self.fake("slow"), "--games", "1", "--log", self.log),
            *("--controls", "340", "--ponder-share", "0"),
            status=0,
        )
        (game,) = self.entries()[1:]
        self.assertIn(game["reason"], ("no budget", "time forfeit"))
        self.assertIn(f"{game['reason']} 1", run.stdout)
        self.assertEqual(game["no_budget"] + len(game["forfeits"]), 1)

    def test_a_refilled_clock_goes_on(self):
        self.soak(
            *("--engine", self.fake("slow"), "--games", "1", "--log", self.log, "--refill"),
            *("--controls", "100+1", "--ponder-share", "0", "--max-plies", "6"),
            status=0,
        )
        (game,) = self.entries()[1:]
        self.assertEqual((game["plies"], len(game["forfeits"])), (6, 6))
        for clock, _ in game["forfeits"]:
            self.assertEqual(clock, 100)

    def test_pondering_hits_and_results(self):
        # Both play the first move by its text, and so it is what the other expects.
        run = self.soak(
            *("--engine", self.fake("good"), "--games", "2", "--log", self.log),
            *("--controls", "60000", "--ponder-share", "1", "--max-plies", "20"),
            status=0,
        )
        games = self.entries()[1:]
        self.assertGreater(sum(game["ponder_hits"] for game in games), 10)
        self.assertEqual(sum(game["ponder_misses"] for game in games), 0)
        self.assertIn("no faults", run.stdout)

    def test_growing_memory_shows(self):
        self.soak(
            *("--engine", self.fake("leak"), "--games", "6", "--log", self.log),
            *("--controls", "60000", "--ponder-share", "0", "--max-plies", "10"),
            *("--opponent", self.fake("good")),
            status=0,
        )
        leaking, steady = self.entries()[-1]["memory"]
        self.assertEqual((leaking["games"], steady["games"]), (6, 6))
        self.assertGreater(leaking["growth"], 4096)
        self.assertLess(steady["growth"], 2048)

    def test_processes_start_anew(self):
        self.soak(
            *("--engine", self.fake("good"), "--games", "5", "--restart", "2"),
            *("--controls", "60000", "--max-plies", "4", "--log", self.log),
            status=0,
        )
        games = [game["memory"][0]["games"] for game in self.entries()[1:]]
        self.assertEqual(games, [1, 2, 1, 2, 1])


class RunTest(SoakTest):
    def short_run(self, engine, games):
        return (
            *("--engine", engine, "--games", str(games), "--log", self.log),
            *("--controls", "60000", "--max-plies", "6"),
        )

    def test_interrupted_and_taken_up_again(self):
        arguments = self.short_run(self.fake("slow"), 6)
        with subprocess.Popen(
            self.arguments(*arguments), stdout=subprocess.PIPE, stderr=subprocess.PIPE, text=True
        ) as run:
            self.wait_for_games(1)
            run.send_signal(signal.SIGINT)
            output, errors = run.communicate(timeout=60)
        self.assertEqual(run.returncode, 130, errors)
        self.assertIn("of 6", output)
        self.assertIn(f"--resume {self.log}", errors)
        played = len(self.entries()) - 1
        self.assertLess(played, 6)
        # As a run that was killed leaves it.
        with open(self.log, "a", encoding="ascii") as file:
            file.write('{"kind": "ga')
        run = self.soak("--resume", self.log, status=0)
        self.assertIn(f"{6 - played} games", run.stderr)
        self.assertIn("6 of 6", run.stdout)
        self.assertEqual(sorted(entry["game"] for entry in self.entries()[1:]), [1, 2, 3, 4, 5, 6])

    def test_a_worker_that_breaks_down(self):
        arguments = self.short_run(self.fake("slow"), 6)
        with subprocess.Popen(self.arguments(*arguments), stderr=subprocess.PIPE, text=True) as run:
            self.wait_for_games(1)
            with open(f"/proc/{run.pid}/task/{run.pid}/children", encoding="ascii") as children:
                (worker,) = children.read().split()
            os.kill(int(worker), signal.SIGKILL)
            _, errors = run.communicate(timeout=60)
        self.assertEqual(run.returncode, 1, errors)
        self.assertIn(f"a worker has broken down; go on with --resume {self.log}", errors)

    def lines_logged(self):
        if not os.path.exists(self.log):
            return 0
        with open(self.log, "rb") as file:
            return file.read().count(b"\n")

    def wait_for_games(self, count):
        deadline = time.monotonic() + 60
        while self.lines_logged() <= count:
            self.assertLess(time.monotonic(), deadline)
            time.sleep(0.05)

    def test_two_jobs(self):
        self.soak(*self.short_run(self.fake("good"), 4), "--jobs", "2", status=0)
        self.assertEqual(sorted(entry["game"] for entry in self.entries()[1:]), [1, 2, 3, 4])

    def test_bad_usage(self):
        good = self.fake("good")
        missing = os.path.join(self.directory, "missing")
        for arguments, message in (
            (("--engine", good, "--controls", "49"), "less than 50 ms"),
            (("--engine", good, "--controls", "soon"), "not a time control"),
            (("--engine", good, "--games", "0"), "0 is not between 1 and"),
            (("--engine", good, "--jobs", "1000000000"), "is not between 1 and 1024"),
            (("--engine", good, "--patience", "1e300"), "is not between 0 and"),
            (("--engine", good, "--ponder-share", "nan"), "is not between 0 and 1"),
        ):
            run = self.soak(*arguments, "--log", self.log, status=2)
            self.assertIn(message, run.stderr)
        self.assertFalse(os.path.exists(self.log))

    def test_what_cannot_be_run_or_read(self):
        missing = os.path.join(self.directory, "missing")
        reason = "No such file or directory"
        for arguments, message in (
            (("--engine", missing), f"cannot run {missing}: {reason}"),
            (("--resume", missing), f"cannot read {missing}: {reason}"),
            (("--resume", FAKE), f"{FAKE} is not the log of a run: line 1"),
            (("--resume", self.old_log()), f"{self.old_log()} has other settings: 'commands'"),
        ):
            run = self.soak(*arguments, "--log", self.log, status=1)
            self.assertEqual(run.stderr, f"soak: {message}\n")
        self.assertFalse(os.path.exists(self.log))

    def test_a_full_disk_ends_the_log_at_a_whole_line(self):
        engine = os.environ["SOAK_ENGINE"]
        arguments = ("--engine", engine, "--games", "5", "--controls", "50", "--log", self.log)
        run = self.soak(*arguments, status=1, limit=small_files(1000))
        words = f"cannot write {self.log}: File too large; go on with --resume {self.log}"
        self.assertEqual(run.stderr.splitlines()[-1], f"soak: {words}")
        self.assertNotIn("Traceback", run.stderr)
        with open(self.log, encoding="ascii") as file:
            self.assertTrue(file.read().endswith("}\n"))
        self.assertGreater(len(self.entries()), 1)
        self.soak("--resume", self.log, status=0)
        self.assertEqual(len(self.entries()), 6)

    def test_a_session_that_cannot_be_saved_does_not_end_the_run(self):
        good = ("--engine", self.fake("illegal"), "--games", "2", "--log", self.log)
        run = self.soak(*good, "--controls", "60000", "--faults", "/dev/null/x", status=1)
        self.assertIn("the session is lost: cannot write /dev/null/x: Not a dir", run.stdout)
        self.assertEqual(len(self.entries()), 3)
        self.assertNotIn("Traceback", run.stderr)

    def old_log(self):
        """A log whose settings are not those of today."""
        name = os.path.join(self.directory, "old.jsonl")
        with open(name, "w", encoding="ascii") as file:
            file.write('{"kind": "run", "engines": [], "controls": [], "fortune": 1}\n')
        return name

    def test_an_old_log_is_not_overwritten(self):
        with open(self.log, "w", encoding="ascii") as file:
            file.write("kept")
        run = self.soak(*self.short_run(self.fake("good"), 1), status=2)
        self.assertIn("exists", run.stderr)
        with open(self.log, encoding="ascii") as file:
            self.assertEqual(file.read(), "kept")

    def test_the_engine_itself(self):
        run = self.soak(
            *("--engine", os.environ["SOAK_ENGINE"], "--games", "4", "--log", self.log),
            *("--controls", "50+2,50+5", "--refill", "--max-plies", "10" if SHORT else "40"),
            *("--patience", "30"),
            status=0,
        )
        self.assertIn("no faults", run.stdout)
        self.assertEqual(len(self.entries()), 5)


if __name__ == "__main__":
    unittest.main()
