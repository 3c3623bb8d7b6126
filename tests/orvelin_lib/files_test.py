"""Reading by lines with little memory, and writing whole files or none."""

import os
import stat
import subprocess
import sys
import threading
import unittest

from limits import limit_own_files, little_memory
from orvelin_lib import files
from orvelin_lib.tool_main import Console, ToolError
from scratch import ScratchTest


class ReadTest(ScratchTest):
    def lines(self, data):
        name = self.file("text")
        with open(name, "wb") as file:
            file.write(data)
        return list(files.read_lines(name))

    def test_ends_of_lines(self):
        self.assertEqual(self.lines(b"a\nb\r\n\nc\rd"), ["a", "b", "", "c", "d"])
        self.assertEqual(self.lines(b""), [])

    def test_encodings(self):
        text = "Weiß\nÉmile"
        for data in (text.encode(), b"\xef\xbb\xbf" + text.encode(), text.encode("latin-1")):
            self.assertEqual(self.lines(data), text.split("\n"))
        # A file that somebody put together from both.
        self.assertEqual(self.lines(b"\xc3\xa9\n\xe9"), ["é", "é"])

    def assert_refused(self, name, words):
        with self.assertRaises(ToolError) as refusal:
            list(files.read_lines(name))
        self.assertEqual(str(refusal.exception), words)

    def test_what_cannot_be_read(self):
        name = self.file("none")
        self.assert_refused(name, f"cannot read {name}: No such file or directory")
        folder = self.directory
        self.assert_refused(folder, f"cannot read {folder}: Is a directory")
        long = f"line 1 has more than {files.MOST_LINE} characters"
        self.assert_refused("/dev/zero", f"cannot read /dev/zero: {long}")

    def test_a_line_without_end_takes_little_memory(self):
        script = "from orvelin_lib import files\nlist(files.read_lines('/dev/zero'))"
        run = subprocess.run(
            [sys.executable, "-c", script],
            stderr=subprocess.PIPE,
            text=True,
            timeout=60,
            check=False,
            preexec_fn=little_memory(1 << 27),
        )
        self.assertIn("ToolError: cannot read /dev/zero: line 1 has more", run.stderr)

    def test_a_long_input_shows_how_far_it_is_read(self):
        said = []

        class Patient(Console):
            def progress(self, words):
                said.append(words())

        name = self.file("text", "12345678\n\n")
        self.assertEqual(len(list(files.read_lines(name, Patient("test")))), 2)
        self.assertEqual(said, [f"reading {name}: 90 %", f"reading {name}: 100 %"])

    def test_a_pipe_is_read_as_a_stream(self):
        name = self.file("pipe")
        os.mkfifo(name)
        first_read = threading.Event()

        def write():
            with open(name, "w", encoding="ascii") as pipe:
                pipe.write("a" * 100000 + "\n")
                pipe.flush()
                # The rest comes only when the first line was taken.
                if first_read.wait(60):
                    pipe.write("b\n")

        writer = threading.Thread(target=write)
        writer.start()
        lines = files.read_lines(name)
        self.assertEqual(len(next(lines)), 100000)
        first_read.set()
        self.assertEqual(list(lines), ["b"])
        writer.join()


class WriteTest(ScratchTest):
    def setUp(self):
        super().setUp()
        self.name = self.file("out")

    def content(self):
        with open(self.name, encoding="utf-8") as file:
            return file.read()

    def assert_alone(self):
        """No other file is left in the folder."""
        self.assertEqual(os.listdir(self.directory), ["out"])

    def test_a_new_file_and_another_one(self):
        for text in ("first é\n", "second\n"):
            files.write_file(self.name, text)
            self.assertEqual(self.content(), text)
            self.assert_alone()

    def test_a_full_disk_leaves_what_was_there(self):
        files.write_file(self.name, "old")
        limit_own_files(self, 4096)
        # Below and above what is gathered before it is written.
        for size in (5000, 1 << 20):
            with self.assertRaises(ToolError) as refusal:
                files.write_file(self.name, "a" * size)
            self.assertEqual(str(refusal.exception), f"cannot write {self.name}: File too large")
            self.assertEqual(self.content(), "old")
            self.assert_alone()

    def test_a_name_that_nothing_has(self):
        stem = self.file("new")
        names = [files.write_new_file(stem, ".txt", text) for text in "abc"]
        self.assertEqual(names, [f"{stem}{end}.txt" for end in ("", "-2", "-3")])
        for name, text in zip(names, "abc"):
            with open(name, encoding="ascii") as file:
                self.assertEqual(file.read(), text)
        limit_own_files(self, 4)
        with self.assertRaisesRegex(ToolError, "cannot write .*new-4.txt: File too large"):
            files.write_new_file(stem, ".txt", "too long")
        self.assertEqual(len(os.listdir(self.directory)), 3)

    def test_a_full_disk_leaves_nothing_of_a_new_file(self):
        limit_own_files(self, 4096)
        with self.assertRaises(ToolError):
            files.write_file(self.name, "a" * 5000)
        self.assertEqual(os.listdir(self.directory), [])

    def test_permissions_are_handed_on(self):
        umask = os.umask(0o022)
        self.addCleanup(os.umask, umask)
        files.write_file(self.name, "")
        self.assertEqual(stat.S_IMODE(os.stat(self.name).st_mode), 0o644)
        os.chmod(self.name, 0o640)
        files.write_file(self.name, "a")
        self.assertEqual(stat.S_IMODE(os.stat(self.name).st_mode), 0o640)

    def test_the_file_behind_a_link_is_replaced(self):
        files.write_file(self.name, "old")
        link = self.file("link")
        os.symlink("out", link)
        files.write_file(link, "new")
        self.assertTrue(os.path.islink(link))
        self.assertEqual(self.content(), "new")

    def test_what_is_no_file_is_written_to(self):
        files.write_file("/dev/null", "a")
        with self.assertRaisesRegex(ToolError, "cannot write /dev/full: No space left on device"):
            files.write_file("/dev/full", "a")
        self.assertTrue(stat.S_ISCHR(os.stat("/dev/full").st_mode))

    def test_what_will_fail_is_told_before(self):
        for name, reason in (
            (self.directory, "Is a directory"),
            (self.file("none/out"), "No such file or directory"),
        ):
            with self.assertRaises(ToolError) as refusal:
                files.check_writable(name)
            self.assertEqual(str(refusal.exception), f"cannot write {name}: {reason}")
        files.check_writable(self.name)
        files.check_writable("-")
        self.assertEqual(os.listdir(self.directory), [])


if __name__ == "__main__":
    unittest.main()
