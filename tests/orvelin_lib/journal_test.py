"""The log of a run: whole lines only, whatever happens to it."""

import os
import subprocess
import sys
import unittest

from limits import limit_own_files
from orvelin_lib.journal import Journal
from orvelin_lib.tool_main import ToolError, UsageError
from scratch import ScratchTest


class JournalTest(ScratchTest):
    def setUp(self):
        super().setUp()
        self.name = self.file("log")

    def create(self, *entries):
        journal = Journal.create(self.name, {"seed": 1})
        for entry in entries:
            journal.write(entry)
        return journal

    def resumed(self):
        journal, head, entries = Journal.resume(self.name)
        journal.close()
        return head, entries

    def test_what_was_written_is_read_again(self):
        self.create({"a": 1}, {"b": "é"}).close()
        self.assertEqual(self.resumed(), ({"seed": 1}, [{"a": 1}, {"b": "é"}]))

    def test_two_runs_do_not_share_a_log(self):
        code = "import sys; from orvelin_lib.journal import Journal; Journal.resume(sys.argv[1])"
        journal = self.create({"a": 1})
        for _ in range(2):
            run = subprocess.run(
                [sys.executable, "-c", code, self.name], capture_output=True, text=True, check=False
            )
            self.assertIn(f"another run is writing {self.name}", run.stderr)
            journal.close()
            journal, _, entries = Journal.resume(self.name)
            self.assertEqual(entries, [{"a": 1}])
        journal.close()
        run = subprocess.run([sys.executable, "-c", code, self.name], check=False)
        self.assertEqual(run.returncode, 0)

    def test_half_a_line_is_cut_off(self):
        self.create({"a": 1}).close()
        with open(self.name, "ab") as file:
            file.write(b'{"b": ')
        journal, _, entries = Journal.resume(self.name)
        journal.write({"c": 3})
        journal.close()
        self.assertEqual(entries, [{"a": 1}])
        self.assertEqual(self.resumed()[1], [{"a": 1}, {"c": 3}])

    def test_half_a_first_line_begins_anew(self):
        self.create().close()
        with open(self.name, "rb") as file:
            line = file.read()
        for length in range(len(line)):
            with open(self.name, "wb") as file:
                file.write(line[:length])
            journal, head, entries = Journal.resume(self.name)
            self.assertEqual((head, entries), (None, []))
            journal.begin({"seed": 2})
            journal.write({"a": 1})
            journal.close()
            self.assertEqual(self.resumed(), ({"seed": 2}, [{"a": 1}]))
        # Anything else is no log, and stays.
        for text in ("kept", '{"kind": "game"', line.decode().replace("run", "ran")):
            self.file("log", text)
            with self.assertRaisesRegex(ToolError, "is not the log of a run"):
                self.resumed()
            with open(self.name, encoding="ascii") as file:
                self.assertEqual(file.read(), text)

    def test_a_full_disk_leaves_whole_lines(self):
        journal = self.create({"a": 1})
        limit_own_files(self, os.path.getsize(self.name) + 4)
        with self.assertRaisesRegex(ToolError, f"cannot write {self.name}: File too large"):
            journal.write({"b": 2})
        journal.close()
        with open(self.name, "rb") as file:
            self.assertTrue(file.read().endswith(b'{"a": 1}\n'))
        self.assertEqual(self.resumed()[1], [{"a": 1}])

    def test_a_head_that_does_not_fit_leaves_no_file(self):
        limit_own_files(self, 4)
        with self.assertRaises(ToolError):
            self.create()
        self.assertEqual(os.listdir(self.directory), [])

    def test_what_is_there_is_kept(self):
        self.file("log", "kept")
        with self.assertRaisesRegex(UsageError, "log exists: go on with --resume"):
            self.create()
        with open(self.name, encoding="ascii") as file:
            self.assertEqual(file.read(), "kept")

    def test_other_files_are_refused_and_kept(self):
        deep = "[" * 100000 + "\n"
        for text in ("kept", "[]\n", "{}\n", "\xff\n", '{"kind": "game"}\n', deep):
            self.file("log", text)
            with self.assertRaisesRegex(ToolError, "log is not the log of a run", msg=text[:20]):
                Journal.resume(self.name)
            with open(self.name, encoding="utf-8") as file:
                self.assertEqual(file.read(), text)
        with self.assertRaisesRegex(ToolError, "^/dev/zero is not the log of a run: line 1$"):
            Journal.resume("/dev/zero")


if __name__ == "__main__":
    unittest.main()
