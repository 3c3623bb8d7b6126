"""The edges of a run: positions that are read, output that cannot be written, and an interruption
before the first search."""

import os
import shlex
import signal
import subprocess
import sys
import time
import unittest

from support import THREE, TOOL, SuiteTest


class ReadingTest(SuiteTest):
    def test_a_byte_order_mark(self):
        engine = ("--engine", self.fake(), "--movetime", "50")
        self.assertEqual(self.record(*engine, text="\ufeff" + THREE)["engines"][0]["solved"], 3)

    def test_other_encodings(self):
        name = self.file("latin.epd")
        with open(name, "wb") as file:
            file.write(THREE.replace("fork", "Gabel f\xfcr alle").encode("latin-1"))
        for source, said in ((name, name), ("-", "standard input")):
            with open(name, "rb") as file:
                run = subprocess.run(
                    [sys.executable, TOOL, source, "--engine", self.fake()],
                    stdin=file,
                    capture_output=True,
                    text=True,
                    timeout=60,
                    check=False,
                )
            expected = (2, f"orvelin-suite: {said}: not UTF-8\n")
            self.assertEqual((run.returncode, run.stderr), expected)


class WritingTest(SuiteTest):
    def test_what_cannot_be_written(self):
        engine = ("--engine", self.fake(), "--movetime", "50")
        # What can be written is written all the same.
        for option in ("--csv", "--json"):
            run = self.suite(*engine, option, "/dev/full", status=1)
            self.assertIn("/dev/full: No space left", run.stderr)
            self.assertIn("python3: Fake", run.stdout)
        name = self.file("out.csv")
        with open("/dev/full", "w", encoding="ascii") as full:
            run = self.suite(*engine, "--csv", name, status=1, output=full)
        self.assertIn("standard output: No space left", run.stderr)
        self.assertNotIn("Exception ignored", run.stderr)
        self.assertGreater(os.path.getsize(name), 100)


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
