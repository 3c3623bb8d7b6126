"""The shards of an analysis on a real cluster: what is lost on the way is queued again, and the
records are in the end those of a run without shards."""

import contextlib
import os
import signal
import subprocess
import unittest

from analysed_positions import analysed_positions
from cluster import Cluster, wait_until
from processes import running

DATA = os.environ["SLURM_TEST_DATA"]
PREFIX = os.environ["SLURM_TEST_PREFIX"]
PROGRAM = os.path.join(PREFIX, "games", "orvelin-analyse")
SCRIPT = os.path.join(PREFIX, "share", "orvelin", "scale", "analyse.slurm")
POSITIONS = 300
SHARDS = 6
LIMIT = ("--limit", "nodes=40000")


class SlurmTest(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        # Whoever ends the tests ends the cluster too.
        signal.signal(signal.SIGTERM, signal.default_int_handler)
        cls.cluster = Cluster()
        cls.addClassCleanup(cls.cluster.close)
        with open(os.path.join(cls.cluster.work, "positions.fen"), "w", encoding="ascii") as file:
            file.write(analysed_positions(DATA, POSITIONS))
        command = [PROGRAM, "positions.fen", *LIMIT, "--quiet", "--jobs", "2"]
        run = subprocess.run(
            command, cwd=cls.cluster.work, stdout=subprocess.PIPE, timeout=600, check=True
        )
        cls.whole = run.stdout

    def setUp(self):
        self.records = f"{self.id().rpartition('.')[2]}.jsonl"
        self.assertEqual(self.whole.count(b"\n"), POSITIONS)

    def path(self, name):
        return os.path.join(self.cluster.work, name)

    def part(self, shard, shards=SHARDS):
        return self.path(f"{self.records}.parts/{shard}-of-{shards}.jsonl")

    def content(self, name):
        with contextlib.suppress(FileNotFoundError), open(name, "rb") as file:
            return file.read()
        return b""

    def submit(self, *arguments, array=f"1-{SHARDS}", options=(), **environment):
        """Queues shards, and gives the number of the array."""
        environment = {"PATH": f"{PREFIX}/games:{self.cluster.environment['PATH']}", **environment}
        arguments = arguments or ("positions.fen", *LIMIT)
        command = ("sbatch", "--parsable", f"--array={array}", *options)
        command += (SCRIPT, self.records, *arguments)
        return self.cluster.run(*command, **environment).strip()

    def submit_with_merge(self, **environment):
        """The same, with a job behind it that merges when all have succeeded."""
        array = self.submit(**environment)
        merge = f"{PROGRAM} merge -o {self.records} {self.records}.parts/*-of-{SHARDS}.jsonl"
        merge += f" --positions {POSITIONS}"
        self.cluster.run("sbatch", f"--dependency=afterok:{array}", "--wrap", merge)
        return array

    def wait_for_the_middle(self, shard):
        """Until some records of the shard are there."""
        wait_until(lambda: self.content(self.part(shard)).count(b"\n") >= 3, self.cluster.logs)

    def assert_in_the_middle(self, shard):
        self.assertLess(self.content(self.part(shard)).count(b"\n"), POSITIONS // SHARDS)

    def processes(self, shard):
        """Those that work on a shard of this test."""
        return running(PROGRAM, f"{shard}/{SHARDS}\0", f"{self.records}.parts")

    def said(self, array, shard):
        """What a task wrote in all its lives."""
        return self.content(self.path(f"slurm-{array}_{shard}.out")).decode()

    def assert_whole(self, array):
        """All has come to a good end."""
        self.cluster.wait_for_jobs()
        states = self.cluster.states(array)
        self.assertEqual(set(states.values()), {"COMPLETED"}, self.cluster.logs())
        # Not by assertEqual, which would explain half a megabyte.
        self.assertTrue(self.content(self.path(self.records)) == self.whole, self.cluster.logs())

    def test_a_shard_that_is_killed(self):
        array = self.submit_with_merge()
        self.wait_for_the_middle(2)
        (process,) = self.processes(2)
        os.kill(process, signal.SIGKILL)
        self.assert_in_the_middle(2)
        self.assert_whole(array)
        self.assertIn("shard 2 ended with 137; it is queued again", self.said(array, 2))
        self.assertIn("start 2", self.said(array, 2))
        self.assertNotIn("start 2", self.said(array, 3))
        verify = [PROGRAM, "verify", self.path(self.records), "--sample", "5%"]
        subprocess.run(verify, stdout=subprocess.DEVNULL, timeout=600, check=True)

    def test_a_shard_that_is_taken_away(self):
        array = self.submit_with_merge()
        self.wait_for_the_middle(3)
        self.cluster.run("scontrol", "requeue", f"{array}_3")
        self.assert_in_the_middle(3)
        self.assert_whole(array)
        self.assertIn("start 2", self.said(array, 3))

    def test_a_node_that_dies(self):
        array = self.submit_with_merge()
        shard = wait_until(lambda: self.shard_on("n2"), self.cluster.logs)
        self.wait_for_the_middle(shard)
        self.cluster.kill_node("n2")
        self.assert_in_the_middle(shard)
        self.assertEqual(self.processes(shard), [])
        self.assert_whole(array)
        self.assertRegex(self.said(array, shard), r"(?s)on n2, start 1\n.*on n1, start 2\n")
        self.cluster.start_node("n2")

    def shard_on(self, node):
        """A shard that a node works on, None when it works on none."""
        options = ("--noheader", "--states", "running", "--format", "%K")
        tasks = self.cluster.run("squeue", "--nodelist", node, *options).split()
        return int(tasks[0]) if tasks else None

    def test_a_shard_that_is_told_that_its_time_is_over(self):
        array = self.submit_with_merge()
        self.wait_for_the_middle(1)
        # What Slurm sends a minute before the end.
        (process,) = self.processes(1)
        os.kill(process, signal.SIGTERM)
        self.assert_whole(array)
        self.assertIn("shard 1 ended with 130; it is queued again", self.said(array, 1))

    def test_what_is_cancelled_stays_so(self):
        array = self.submit()
        self.wait_for_the_middle(1)
        self.cluster.run("scancel", array)
        self.cluster.wait_for_jobs()
        self.assertEqual(set(self.cluster.states(array).values()), {"CANCELLED"})
        self.assertNotIn("queued again", self.said(array, 1))

    def test_a_shard_that_always_fails(self):
        array = self.submit(array="1-2", ORVELIN_ANALYSE="/bin/false", ATTEMPTS="2")
        self.cluster.wait_for_jobs()
        self.assertEqual(self.cluster.states(array), {1: "FAILED", 2: "FAILED"})
        self.assertIn("start 2", self.said(array, 1))
        self.assertIn("shard 1 ended with 1 for the last time", self.said(array, 1))

    def test_wrong_arguments_are_not_tried_again(self):
        array = self.submit("positions.fen", "--limit", "gone", array="1-2")
        self.cluster.wait_for_jobs()
        self.assertEqual(self.cluster.states(array), {1: "FAILED", 2: "FAILED"})
        self.assertIn("--limit is static", self.said(array, 1))
        self.assertNotIn("queued again", self.said(array, 1))

    def test_what_the_program_is_given(self):
        array = self.submit(
            *("a b.pgn", "--lines", "2"),
            array="1-2",
            options=("--cpus-per-task=2",),
            ORVELIN_ANALYSE="/bin/echo",
        )
        self.cluster.wait_for_jobs()
        for shard in (1, 2):
            words = f"a b.pgn --lines 2 --quiet --resume --jobs 2 --shard {shard}/2 --jsonl "
            words += f"{self.records}.parts/{shard}-of-2.jsonl\n"
            self.assertIn(words, self.said(array, shard))

    def test_standard_input_is_refused(self):
        array = self.submit("-", array="1")
        self.cluster.wait_for_jobs()
        self.assertEqual(self.cluster.states(array), {1: "FAILED"})
        self.assertIn("standard input cannot be shared out", self.said(array, 1))

    def test_some_of_the_shards_again(self):
        quick = ("positions.fen", "--limit", "static")
        self.submit(*quick, array="1-4")
        self.cluster.wait_for_jobs()
        parts = [self.content(self.part(shard, 4)) for shard in range(1, 5)]
        self.assertEqual(sum(part.count(b"\n") for part in parts), POSITIONS)
        os.remove(self.part(2, 4))
        os.truncate(self.part(4, 4), len(parts[3]) // 2)
        self.submit(*quick, array="2,4", SHARDS="4")
        self.cluster.wait_for_jobs()
        self.assertTrue(parts == [self.content(self.part(shard, 4)) for shard in range(1, 5)])

    def test_numbers_that_are_no_shards(self):
        array = self.submit(array="0,7")
        self.cluster.wait_for_jobs()
        self.assertEqual(self.cluster.states(array), {0: "FAILED", 7: "FAILED"})
        self.assertIn("there is no shard 0 of 2", self.said(array, 0))
        self.assertIn("there is no shard 7 of 2", self.said(array, 7))
        self.assertFalse(os.path.exists(self.path(f"{self.records}.parts")))


if __name__ == "__main__":
    unittest.main()
