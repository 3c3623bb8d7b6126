"""Positions shared out by GNU parallel: on this machine, and over ssh to a server of the test's
own on the loopback interface, with keys that live as long as the test."""

import json
import os
import signal
import subprocess
import sys
import time
import unittest

from orvelin_lib.tool_main import ToolError
from ssh_server import WITHOUT_SERVER, SshServer, has_server, needed
from suite_lib.epd import parse_line
from suite_lib.hosts_run import MAX_CHUNK_BYTES, chunks, read_chunk
from suite_lib.settings import Entrant, Settings
from support import ENGINE, FORK, MATE, THREE, TOOL, SuiteTest

SECONDS = 60


class ChunkTest(unittest.TestCase):
    SETTINGS = Settings(
        (Entrant("a", ("x", "y z"), (("Hash", "1"),)), Entrant("b", ("x",))),
        "depth", 5, 10.0, 300.0, False,
    )

    def tasks(self, count, name="n"):
        positions = [
            parse_line(f'{MATE} w - - dm 1; id "{name} {n}";', n) for n in range(1, count + 1)
        ]
        return [(position, engine) for position in positions for engine in ("a", "b")]

    def read(self, texts):
        found = []
        for text in texts:
            settings, tasks = read_chunk(text)
            self.assertEqual(settings, self.SETTINGS)
            found.append(tasks)
        return found

    def test_all_tasks_in_their_order(self):
        tasks = self.tasks(7)
        found = self.read(chunks(self.SETTINGS, tasks, 3))
        self.assertEqual([len(part) for part in found], [6, 6, 2])
        self.assertEqual(sum(found, []), tasks)

    def test_long_lines_make_small_chunks(self):
        tasks = self.tasks(9, "x" * 6000)
        texts = chunks(self.SETTINGS, tasks, 100)
        self.assertGreater(len(texts), 4)
        self.assertLessEqual(max(len(text) for text in texts), MAX_CHUNK_BYTES)
        self.assertEqual(sum(self.read(texts), []), tasks)

    def test_a_position_that_is_too_long(self):
        tasks = self.tasks(3, "x" * MAX_CHUNK_BYTES)
        for count in (1, 2, 5):
            for size in (1, 2, 10):
                with self.assertRaisesRegex(ToolError, "position 1 is too long"):
                    chunks(self.SETTINGS, tasks[:count], size)

    def test_refused(self):
        for text in ("", "x", "{}", "[]", '{"settings": {}, "tasks": []}'):
            with self.assertRaises(ToolError, msg=text):
                read_chunk(text)


class HostsTest(SuiteTest):
    def setUp(self):
        super().setUp()
        needed("parallel")
        self.joblog = self.file("joblog")

    def parallel(self, *further, engine=None):
        """The arguments of a run in jobs of one position each."""
        return (
            *("--engine", engine or self.fake(), "--name", "one", "--movetime", "50"),
            *("--parallel", "--jobs", "2", "--chunk", "1", "--joblog", self.joblog, *further),
        )

    def jobs(self):
        """(host, exit status) of all jobs of the log."""
        with open(self.joblog, encoding="utf-8") as file:
            rows = [line.split("\t") for line in file.read().splitlines()[1:]]
        return [(row[1], row[6]) for row in rows]


class LocalTest(HostsTest):
    def test_the_parts_make_one_table(self):
        record = self.record(
            *self.parallel("--sshlogin", ":"), "--engine", ENGINE, "--name", "two", "--fresh"
        )
        for summary in record["engines"]:
            self.assertEqual((summary["solved"], summary["positions"]), (3, 3))
        self.assertEqual([entry["number"] for entry in record["positions"]], [1, 2, 3] * 2)
        self.assertEqual(self.jobs(), [(":", "0")] * 3)
        self.assert_gone()

    def test_the_same_as_without_parallel(self):
        arguments = ("--engine", ENGINE, "--depth", "7", "--fresh")
        records = [
            self.record(*arguments, *further)
            for further in ((), ("--parallel", "--jobs", "2", "--chunk", "2"))
        ]
        for one, two in zip(*(record["positions"] for record in records), strict=True):
            for key in ("number", "name", "move", "solved", "fault"):
                self.assertEqual(one[key], two[key])

    def test_faults_come_back(self):
        engine = self.fake(answers={FORK: ["!crash"]})
        record = self.record(*self.parallel(engine=engine), status=1)
        self.assertEqual(record["positions"][1]["fault"]["detail"], "ended by SIGSEGV")
        self.assertEqual(record["engines"][0]["solved"], 2)

    def test_words_with_marks_of_the_shell_and_of_parallel(self):
        text = f"""{MATE} w - - dm 1; id "it's {{}} $HOME `x` \\ * {{#}} é";\n"""
        record = self.record(*self.parallel(), text=text)
        self.assertEqual(record["positions"][0]["name"], "it's {} $HOME `x` \\ * {#} é")

    def test_hosts_that_do_not_answer(self):
        run = self.suite(
            *self.parallel("--program", "/bin/false", "--threshold", "0", "--retries", "2"),
            status=1,
        )
        self.assertIn("not finished: 3", run.stdout)
        self.assertIn("some positions have no result", run.stderr)

    def test_hosts_that_talk(self):
        run = self.suite(*self.parallel("--program", f"echo welcome; echo 5; {TOOL}"))
        self.assertIn("a host says: welcome", run.stderr)
        self.assertIn("a host says: 5", run.stderr)
        self.assertIn("| one    |      3 |  3 |", run.stdout)

    def test_interrupted_and_taken_up_again(self):
        stalling = self.fake(answers={FORK: ["!stall"]})
        arguments = self.parallel(
            *("--patience", "200", "--journal", self.file("journal")), engine=stalling
        )
        command = [sys.executable, TOOL, self.file("test.epd", THREE), *arguments]
        with subprocess.Popen(
            command,
            stdout=subprocess.PIPE,
            stderr=subprocess.PIPE,
            text=True,
            env=self.environment(),
        ) as run:
            deadline = time.monotonic() + SECONDS
            while len(self.journal()) < 2:
                self.assertLess(time.monotonic(), deadline)
                time.sleep(0.05)
            run.send_signal(signal.SIGINT)
            output, errors = run.communicate(timeout=SECONDS)
        self.assertEqual(run.returncode, 130, errors)
        self.assertIn("not finished: 1", output)
        deadline = time.monotonic() + SECONDS
        while any(os.path.exists(f"/proc/{pid}/fd") for pid in self.processes()):
            self.assertLess(time.monotonic(), deadline)
            time.sleep(0.05)
        jobs = len(self.jobs())
        # The same command; the engine has recovered.
        self.fake()
        record = self.record(*arguments, "--resume")
        self.assertEqual(record["engines"][0]["solved"], 3)
        # The log goes on.
        self.assertEqual(self.jobs()[jobs:], [(":", "0")])

    def processes(self):
        return [line.split()[1] for line in self.told() if line.startswith("pid ")]

    def journal(self):
        if not os.path.exists(self.file("journal")):
            return []
        with open(self.file("journal"), encoding="utf-8") as file:
            return [json.loads(line) for line in file][1:]

    def test_a_position_that_is_too_long_is_refused(self):
        text = f'{MATE} w - - dm 1; id "{"x" * MAX_CHUNK_BYTES}";\n'
        further = ("--chunk", "10", "--journal", self.file("log"))
        run = self.suite(*self.parallel(*further), status=1, text=text)
        self.assertIn("too long for a host", run.stderr)
        self.assertFalse(os.path.exists(self.file("log")))

    def test_without_parallel(self):
        run = self.suite(*self.parallel(), status=1, environment={"PATH": self.directory})
        self.assertIn("apt-get install parallel", run.stderr)


@unittest.skipUnless(has_server(), WITHOUT_SERVER)
class SshTest(HostsTest):
    def setUp(self):
        super().setUp()
        self.server = SshServer(self)

    def test_over_ssh(self):
        host = self.server.login("suite-host")
        record = self.record(*self.parallel("--sshlogin", host, engine=ENGINE))
        self.assertEqual(record["engines"][0]["solved"], 3)
        self.assertEqual(self.jobs(), [(host, "0")] * 3)
        self.assertIn("Accepted publickey", self.server.log())

    def test_two_hosts_of_which_one_is_this_machine(self):
        host = "1/" + self.server.login("suite-host")
        slow = {"otherwise": ["!sleep 1", "bestmove e2e4"]}
        slow |= {MATE: ["!sleep 1", "bestmove a1a8"], FORK: ["!sleep 1", "bestmove d5f6"]}
        engine = self.fake(answers=slow)
        arguments = self.parallel("--sshlogin", host, "--sshlogin", "1/:", engine=engine)
        record = self.record(*arguments)
        self.assertEqual(record["engines"][0]["solved"], 3)
        self.assertEqual(len(self.jobs()), 3)
        self.assertEqual(len({host for host, _ in self.jobs()}), 2)


if __name__ == "__main__":
    unittest.main()
