"""The edges of a run: positions that are read, output that cannot be written, and an interruption
before the first search."""

import json
import os
import shlex
import signal
import subprocess
import sys
import time
import unittest

from limits import little_memory, small_files
from support import ENGINE, THREE, TOOL, SuiteTest


class ReadingTest(SuiteTest):
    def test_a_byte_order_mark(self):
        engine = ("--engine", self.fake(), "--movetime", "50")
        self.assertEqual(self.record(*engine, text="\ufeff" + THREE)["engines"][0]["solved"], 3)

    def test_other_encodings(self):
        name = self.file("latin.epd")
        with open(name, "wb") as file:
            file.write(THREE.replace("fork", "Gabel f\xfcr alle").encode("latin-1"))
        out = self.file("out.csv")
        for source in (name, "-"):
            with open(name, "rb") as file:
                run = subprocess.run(
                    [sys.executable, TOOL, source, "--engine", self.fake(), "--csv", out],
                    stdin=file,
                    capture_output=True,
                    text=True,
                    timeout=60,
                    check=False,
                )
            self.assertEqual(run.returncode, 0, run.stderr)
            with open(out, encoding="utf-8") as file:
                self.assertIn(",Gabel f\xfcr alle,", file.read())

    def test_a_file_that_cannot_be_read(self):
        name = self.file("none.epd")
        run = self.run_tool(name)
        words = f"orvelin-suite: cannot read {name}: No such file or directory\n"
        self.assertEqual((run.returncode, run.stderr), (1, words))

    def run_tool(self, *arguments, **further):
        return subprocess.run(
            [sys.executable, TOOL, *arguments],
            capture_output=True,
            text=True,
            timeout=120,
            check=False,
            **further,
        )

    def test_a_stream_without_end_takes_little_memory(self):
        # 1 GiB of remarks, and more positions than are taken.
        remark = "# " + "x" * 65533 + "\n"
        for line, count, words in (
            (remark, 1 << 14, "standard input: no positions"),
            ("x" * 600 + "\n", 1 << 20, "cannot read standard input: more than 100000 positions"),
        ):
            with subprocess.Popen(
                [sys.executable, "-c", "import sys\nfor i in range(int(sys.argv[2])):\n"
                 "    sys.stdout.write(sys.argv[1])", line, str(count)],
                stdout=subprocess.PIPE, stderr=subprocess.DEVNULL,
            ) as source:
                run = self.run_tool(
                    "-", "--engine", "true", stdin=source.stdout, preexec_fn=little_memory(1 << 28)
                )
            self.assertEqual(run.returncode, 1)
            self.assertIn(words, run.stderr)
            self.assertNotIn("Traceback", run.stderr)


class WritingTest(SuiteTest):
    def test_what_cannot_be_written(self):
        engine = ("--engine", self.fake(), "--movetime", "50")
        # What can be written is written all the same.
        for option in ("--csv", "--json"):
            run = self.suite(*engine, option, "/dev/full", status=1)
            self.assertIn("orvelin-suite: cannot write /dev/full: No space left", run.stderr)
            self.assertIn("python3: Fake", run.stdout)
        name = self.file("out.csv")
        with open("/dev/full", "w", encoding="ascii") as full:
            run = self.suite(*engine, "--csv", name, status=1, output=full)
        self.assertIn("cannot write to standard output: No space left", run.stderr)
        self.assertNotIn("Exception ignored", run.stderr)
        self.assertGreater(os.path.getsize(name), 100)


    def test_a_full_disk_leaves_no_half_files(self):
        engine = ("--engine", ENGINE, "--depth", "8")
        for option in ("--csv", "--json"):
            name = self.file("out", "old")
            run = self.suite(*engine, option, name, status=1, limit=small_files(100))
            self.assertIn(f"orvelin-suite: cannot write {name}: File too large\n", run.stderr)
            self.assertIn("orvelin: Orvelin", run.stdout)
            with open(name, encoding="ascii") as file:
                self.assertEqual(file.read(), "old")
        self.assertFalse([name for name in os.listdir(self.directory) if name.endswith(".tmp")])

    def test_a_full_disk_ends_a_journal_at_a_whole_line(self):
        name = self.file("journal")
        engine = ("--engine", ENGINE, "--depth", "8", "--journal", name)
        run = self.suite(*engine, status=1, limit=small_files(600))
        self.assertIn(f"orvelin-suite: cannot write {name}: File too large\n", run.stderr)
        self.assertIn("not finished: 1", run.stdout)
        with open(name, encoding="ascii") as file:
            lines = file.read().split("\n")
        self.assertEqual(lines.pop(), "")
        self.assertGreater(len(lines), 1)
        for line in lines:
            json.loads(line)
        self.assertIn("3 of 3 done", self.suite(*engine, "--resume").stderr)

    def test_figures_on_standard_output(self):
        engine = ("--engine", self.fake(), "--movetime", "50")
        record = json.loads(self.suite(*engine, "--json", "-").stdout)
        self.assertEqual(record["engines"][0]["solved"], 3)
        self.assertTrue(self.suite(*engine, "--csv", "-").stdout.startswith("engine,number,"))


class InterruptionTest(SuiteTest):
    def test_interrupted_before_the_first_search(self):
        mark = self.file("started")
        engine = shlex.join(
            ["sh", "-c", f"echo $$ >'{mark}.new'; mv '{mark}.new' '{mark}'; exec sleep 100"]
        )
        for number in (signal.SIGINT, signal.SIGTERM):
            command = [sys.executable, TOOL, self.file("test.epd", THREE), "--engine", engine]
            with subprocess.Popen(
                [*command, "--patience", "90"], stderr=subprocess.PIPE, text=True
            ) as run:
                deadline = time.monotonic() + 60
                while not os.path.exists(mark):
                    self.assertLess(time.monotonic(), deadline)
                    time.sleep(0.05)
                run.send_signal(number)
                _, errors = run.communicate(timeout=60)
            self.assertEqual((run.returncode, errors), (130, "orvelin-suite: interrupted\n"))
            with open(mark, encoding="ascii") as file:
                self.assertFalse(os.path.exists(f"/proc/{file.read().strip()}/fd"))
            os.remove(mark)


if __name__ == "__main__":
    unittest.main()
