"""The shards of an analysis by GNU parallel: on this machine, and over ssh to a server of the
test's own. The records are in the end those of a run without shards."""

import contextlib
import os
import re
import signal
import subprocess
import time
import unittest
from collections import Counter

from analysed_positions import analysed_positions
from processes import running, working_in
from scratch import ScratchTest
from ssh_server import WITHOUT_SERVER, SshServer, has_server, needed

ROOT = os.environ["SCALE_ROOT"]
PROGRAM = os.environ["SCALE_ANALYSE"]
SCRIPT = os.path.join(ROOT, "tools", "scale", "analyse-parallel")
INPUT = "positions.fen"
POSITIONS = 120
SHARDS = 4
LIMIT = ("--limit", "nodes=40000")
SECONDS = 120
# Notes that it was started, and becomes the program.
NOTING = """\
#!/bin/sh
printf '%s\\n' "$*" >>'{starts}'
{more}
exec '{program}' "$@"
"""
UNWILLING = 'case "$*" in *"--shard 2/4"*) exit 1 ;; esac'


class ParallelTest(ScratchTest):
    def setUp(self):
        super().setUp()
        needed("parallel")
        text = analysed_positions(os.path.join(ROOT, "tests", "data"), POSITIONS)
        # Names that mean nothing where ssh begins.
        self.file(INPUT, text)
        self.records = "all.jsonl"
        self.noting = self.program("noting")

    def program(self, name, more=""):
        text = NOTING.format(starts=self.file("starts"), program=PROGRAM, more=more)
        os.chmod(path := self.file(name, text), 0o755)
        return path

    def starts(self):
        """How often each shard was started."""
        with open(self.file("starts"), encoding="utf-8") as file:
            found = Counter(re.findall(r" --shard (\d+)/", file.read()))
        return [found[str(shard)] for shard in range(1, SHARDS + 1)]

    def start(self, *options, records=None, program=None, limit=LIMIT):
        command = [SCRIPT, records or self.records, str(SHARDS), *options, "--", INPUT, *limit]
        process = subprocess.Popen(
            command,
            stdin=subprocess.DEVNULL,
            stdout=subprocess.PIPE,
            stderr=subprocess.STDOUT,
            text=True,
            cwd=self.directory,
            env=self.environment(program or self.noting),
            start_new_session=True,
        )
        self.addCleanup(process.stdout.close)
        self.addCleanup(process.wait)
        self.addCleanup(process.kill)
        return process

    def environment(self, program):
        return {**os.environ, "PARALLEL_HOME": self.directory, "ORVELIN_ANALYSE": program}

    def finish(self, process, status=0):
        said, _ = process.communicate(timeout=SECONDS)
        self.assertEqual(process.returncode, status, said)
        return said

    def whole(self, limit=LIMIT):
        """What a run without shards writes."""
        command = [PROGRAM, INPUT, *limit, "--quiet"]
        run = subprocess.run(
            command, cwd=self.directory, capture_output=True, timeout=SECONDS, check=True
        )
        self.assertEqual(run.stdout.count(b"\n"), POSITIONS)
        return run.stdout

    def assert_whole(self, records=None, limit=LIMIT):
        # Not by assertEqual, which would explain all of it.
        self.assertTrue(self.content(records or self.records) == self.whole(limit))

    def content(self, name):
        with contextlib.suppress(FileNotFoundError), open(self.file(name), "rb") as file:
            return file.read()
        return b""

    def part(self, shard):
        return f"{self.records}.parts/{shard}-of-{SHARDS}.jsonl"

    def wait_until(self, condition):
        deadline = time.monotonic() + SECONDS
        while not (found := condition()):
            self.assertLess(time.monotonic(), deadline)
            time.sleep(0.02)
        return found

    def wait_for_the_middle(self, shard):
        """Until some records of the shard are there, but not all."""
        self.wait_until(lambda: self.content(self.part(shard)).count(b"\n") >= 3)
        self.assertLess(self.content(self.part(shard)).count(b"\n"), POSITIONS // SHARDS)

    def processes(self, program, *words):
        """Those of a program in this folder with these words in their command line."""
        found = running(program, *words)
        return [process for process in found if working_in(self.directory, process)]

    def workers(self, shard):
        return self.processes(PROGRAM, f"{shard}/{SHARDS}\0")

    def kill_a_shard(self, *options):
        process = self.start(*options)
        self.wait_for_the_middle(2)
        (worker,) = self.workers(2)
        os.kill(worker, signal.SIGKILL)
        self.finish(process)
        self.assert_whole()
        self.assertEqual(self.starts(), [1, 2, 1, 1])

    def jobs(self):
        """(host, exit status) of all jobs of the log, as they ended at last."""
        with open(self.file("joblog"), encoding="utf-8") as file:
            rows = [line.split("\t") for line in file.read().splitlines()[1:]]
        return [(row[1], row[6]) for row in rows]


class LocalTest(ParallelTest):
    def test_a_shard_that_is_killed(self):
        self.kill_a_shard("--jobs", "2")

    def test_names_with_marks_of_the_shell_and_of_parallel(self):
        name = "it's {} $HOME `x` \\ * {#} é\n.jsonl"
        static = ("--limit", "static")
        self.finish(self.start(records=name, limit=static))
        self.assert_whole(name, static)

    def test_what_fails_can_be_gone_on_with(self):
        unwilling = self.program("unwilling", UNWILLING)
        said = self.finish(self.start("--retries", "2", program=unwilling), status=1)
        self.assertIn("not all shards have come to their end", said)
        self.assertEqual(self.starts(), [1, 2, 1, 1])
        self.assertFalse(os.path.exists(self.file(self.records)))
        before = os.stat(self.file(self.part(3))).st_mtime_ns
        self.finish(self.start())
        self.assert_whole()
        self.assertEqual(os.stat(self.file(self.part(3))).st_mtime_ns, before)

    def test_interrupted_and_taken_up_again(self):
        process = self.start("--jobs", "2")
        self.wait_for_the_middle(1)
        os.killpg(process.pid, signal.SIGINT)
        process.communicate(timeout=SECONDS)
        self.assertNotEqual(process.returncode, 0)
        self.wait_until(lambda: not self.processes(PROGRAM))
        self.assertFalse(os.path.exists(self.file(self.records)))
        self.finish(self.start())
        self.assert_whole()

    def test_bad_usage(self):
        bad = {
            "RECORDS and N are missing": ["x.jsonl"],
            "no name of a file: -x": ["-x", "4", "--", "x.fen"],
            "no number of shards: 0": ["x.jsonl", "0", "--", "x.fen"],
            "no number of shards: x.fen": ["x.jsonl", "x.fen", "--"],
            "-- is missing": ["x.jsonl", "4", "x.fen"],
            "standard input cannot be shared out": ["x.jsonl", "4", "--", "-"],
            "which games or positions": ["x.jsonl", "4", "--"],
        }
        for reason, arguments in bad.items():
            with self.subTest(reason):
                run = subprocess.run(
                    [SCRIPT, *arguments],
                    stdin=subprocess.DEVNULL,
                    capture_output=True,
                    text=True,
                    cwd=self.directory,
                    env=self.environment(PROGRAM),
                    timeout=SECONDS,
                    check=False,
                )
                self.assertEqual(run.returncode, 2)
                self.assertIn(reason, run.stderr)
                self.assertIn("--sshlogin", run.stderr)
        self.assertEqual(sorted(os.listdir(self.directory)), ["noting", INPUT])

    def test_without_the_programs(self):
        said = self.finish(self.start(program="/gone/analyse"), status=1)
        self.assertIn("/gone/analyse is not there", said)


@unittest.skipUnless(has_server(), WITHOUT_SERVER)
class SshTest(ParallelTest):
    def setUp(self):
        super().setUp()
        self.server = SshServer(self)
        self.hosts = [self.server.login(name) for name in ("ada", "grace")]
        self.options = ("--jobs", "1", "--joblog", self.file("joblog"))
        for host in self.hosts:
            self.options += ("--sshlogin", host)

    def test_two_machines(self):
        self.finish(self.start(*self.options))
        self.assert_whole()
        self.assertEqual({job[0] for job in self.jobs()}, set(self.hosts))
        self.assertEqual([job[1] for job in self.jobs()], ["0"] * SHARDS)

    def test_a_shard_that_is_killed(self):
        self.kill_a_shard(*self.options)

    def test_interrupted_and_taken_up_again_by_one_machine(self):
        process = self.start(*self.options)
        self.wait_for_the_middle(1)
        os.killpg(process.pid, signal.SIGINT)
        process.communicate(timeout=SECONDS)
        self.assertNotEqual(process.returncode, 0)
        self.wait_until(lambda: not self.processes(PROGRAM))
        self.finish(self.start())
        self.assert_whole()

    def test_machines_that_are_lost(self):
        # Until a machine has noticed, its shards are still in its hands.
        process = self.start(*self.options, "--retries", "20")
        self.wait_for_the_middle(1)
        clients = self.processes(needed("ssh"))
        self.assertEqual(len(clients), 2)
        for client in clients:
            os.kill(client, signal.SIGKILL)
        self.finish(process)
        self.assert_whole()
        starts = self.starts()
        self.assertGreater(min(starts[:2]), 1)
        self.assertEqual(starts[2:], [1, 1])


if __name__ == "__main__":
    unittest.main()
