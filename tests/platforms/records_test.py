"""Records of orvelin-analyse that were written on this machine are those of another system or
processor."""

import os
import tempfile
import unittest

from program import PATIENCE, Conversation, command, file_size, native, run, wait_until

POSITIONS = """\
rnbqkbnr/pppppppp/8/8/8/8/PPPPPPPP/RNBQKBNR w KQkq - 0 1
r1bqkb1r/pppp1ppp/2n2n2/4p2Q/2B1P3/8/PPPP1PPP/RNB1K1NR w KQkq - 4 4
r4rk1/1pp1qppp/p1np1n2/2b1p1B1/2B1P1b1/P1NP1N2/1PP1QPPP/R4RK1 w - - 0 10
8/2p5/3p4/KP5r/1R3p1k/8/4P1P1/8 w - - 0 1
"""


class RecordsTest(unittest.TestCase):
    def setUp(self):
        folder = tempfile.TemporaryDirectory()
        self.addCleanup(folder.cleanup)
        self.folder = folder.name
        self.records = os.path.join(self.folder, "records.jsonl")
        with open(os.path.join(self.folder, "positions.epd"), "w", encoding="ascii") as file:
            file.write(POSITIONS)

    def analyse(self, words, *arguments):
        return run([*words, "positions.epd", "--limit", "depth=7", *arguments], folder=self.folder)

    def verify(self):
        return run(command("orvelin-analyse", "verify", self.records))

    def test_records_of_this_machine_are_verified(self):
        _, error, status = self.analyse(
            native("orvelin-analyse"), "--lines", "2", "--jsonl", self.records
        )
        self.assertEqual(status, 0, error)
        out, error, status = self.verify()
        self.assertEqual(status, 0, out + error)
        # Another score of the first line, wherever it stands, is found.
        with open(self.records, encoding="utf-8") as file:
            text = file.read()
        begin = text.index('"score":') + len('"score":')
        end = min(text.index(letter, begin) for letter in ",}")
        with open(self.records, "w", encoding="utf-8") as file:
            file.write(text[:begin] + str(int(text[begin:end]) + 1) + text[end:])
        self.assertNotEqual(self.verify()[2], 0)

    def test_the_same_records_are_written(self):
        _, error, status = self.analyse(native("orvelin-analyse"), "--jsonl", self.records)
        self.assertEqual(status, 0, error)
        other = os.path.join(self.folder, "other.jsonl")
        _, error, status = self.analyse(command("orvelin-analyse"), "--jsonl", other)
        self.assertEqual(status, 0, error)
        with open(self.records, "rb") as one, open(other, "rb") as two:
            self.assertEqual(one.read(), two.read())

    def test_a_run_is_taken_up(self):
        whole = self.analyse(native("orvelin-analyse"))[0]
        # A name in letters of no code page, and a line that a kill has broken off.
        other = os.path.join(self.folder, "Stück ♞.jsonl")
        lines = whole.splitlines(True)
        with open(other, "w", encoding="utf-8", newline="") as file:
            file.write("".join(lines[:2]) + lines[2][:50])
        _, error, status = self.analyse(
            command("orvelin-analyse"), "--resume", "--jsonl", os.path.basename(other)
        )
        self.assertEqual(status, 0, error)
        with open(other, "rb") as file:
            self.assertEqual(file.read().decode(), whole)

    def test_two_do_not_write_one_file(self):
        words = command("orvelin-analyse", "-", "--limit", "static", "--jsonl", self.records)
        with Conversation(words) as first:
            first.send(POSITIONS)
            self.assertTrue(wait_until(lambda: file_size(self.records) > 0))
            _, error, status = self.analyse(
                command("orvelin-analyse"), "--resume", "--jsonl", self.records
            )
            self.assertEqual(status, 1)
            self.assertIn("another process is writing it", error)
            first.process.stdin.close()
            self.assertEqual(first.process.wait(PATIENCE), 0)

    def test_positions_are_piped_through(self):
        words = ("-", "--limit", "static", "--csv", "-")
        expected = run(native("orvelin-analyse", *words), POSITIONS)
        self.assertEqual(expected[2], 0)
        out, _, status = run(command("orvelin-analyse", *words), POSITIONS)
        self.assertEqual((out, status), (expected[0], 0))

    def test_that_there_is_no_sqlite_is_told(self):
        _, error, status = self.analyse(command("orvelin-analyse"), "--sqlite", "x.sqlite")
        self.assertNotEqual(status, 0)
        self.assertIn("cannot open x.sqlite: this program was built without SQLite", error)


if __name__ == "__main__":
    unittest.main()
