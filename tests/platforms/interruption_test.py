"""Ctrl-C, Ctrl-Break and a console that is closed end the programs for Windows as the documents tell."""

import os
import pty
import re
import select
import subprocess
import tempfile
import termios
import time
import unittest

from program import PATIENCE, RUNNER, Conversation, command, file_size, wait_until

ENGINES = ("orvelin", "orvelin-play")
# What the system calls the event, and the status behind it.
EVENTS = {"Ctrl-C": (0, 130), "Ctrl-Break": (1, 143), "closed console": (2, 129)}
INPUT_MODES = 0
CURSOR = re.compile(rb"\x1b\[[?0-9;]*[A-Za-z]")


def inside(path):
    """The name of a file in the Windows of the tests."""
    return "Z:" + path.replace("/", "\\")


class Console:
    """A program on a console, whose keys are pressed by the test."""

    def __init__(self, words):
        master, slave = pty.openpty()
        # The key Enter stays what it is; of Ctrl-C the terminal makes a signal, and Wine an event.
        modes = termios.tcgetattr(slave)
        modes[INPUT_MODES] &= ~termios.ICRNL
        termios.tcsetattr(slave, termios.TCSANOW, modes)
        self.process = subprocess.Popen(words, preexec_fn=lambda: os.login_tty(slave))
        os.close(slave)
        self.keyboard = master

    def press(self, keys):
        os.write(self.keyboard, keys)

    def until(self, text):
        heard = b""
        end = time.monotonic() + PATIENCE
        while text not in CURSOR.sub(b"", heard):
            if time.monotonic() > end:
                raise TimeoutError(f"no {text} in {heard}")
            heard += self.read()

    def status(self):
        """The status at the end; until then all that comes is taken."""
        end = time.monotonic() + PATIENCE
        while self.process.poll() is None and time.monotonic() < end:
            self.read()
        return self.process.poll()

    def read(self):
        """What comes within a moment; nothing behind the end."""
        if not select.select([self.keyboard], [], [], 0.05)[0]:
            return b""
        try:
            return os.read(self.keyboard, 1 << 16)
        except OSError:
            return b""

    def __enter__(self):
        return self

    def __exit__(self, *_):
        self.process.kill()
        self.process.wait()
        os.close(self.keyboard)


class InterruptionTest(unittest.TestCase):
    def test_control_c_ends_a_program_that_reads_the_console(self):
        for engine in ENGINES:
            with self.subTest(engine=engine), Console(command(engine)) as console:
                console.press(b"isready\r")
                console.until(b"readyok")
                console.press(b"\x03")
                self.assertEqual(console.status(), 130)

    def test_each_event_has_its_status(self):
        for engine in ENGINES:
            for name, (event, status) in EVENTS.items():
                with self.subTest(engine=engine, event=name):
                    self.assertEqual(self.status_behind(event, engine), status)

    def test_an_analysis_is_ended_with_whole_records(self):
        fen = "rnbqkbnr/pppppppp/8/8/8/8/PPPPPPPP/RNBQKBNR w KQkq - 0 1\n"
        for name, (event, _) in EVENTS.items():
            with self.subTest(event=name), tempfile.TemporaryDirectory() as folder:
                file, records = (os.path.join(folder, end) for end in ("now", "records.jsonl"))
                analysis = command("orvelin-analyse", "-", "--limit", "static", "--jsonl", records)
                words = command("console_event", str(event), inside(file), *analysis[len(RUNNER) :])
                with Conversation(words) as program:
                    program.send(fen)
                    self.assertTrue(wait_until(lambda: file_size(records) > 0))
                    with open(file, "wb"):
                        pass
                    self.assertEqual(program.process.wait(PATIENCE), 130)
                with open(records, "rb") as written:
                    self.assertTrue(written.read().endswith(b"}\n"))

    def status_behind(self, event, engine):
        """The status of an engine that an event comes to in a search."""
        with tempfile.TemporaryDirectory() as folder:
            file = os.path.join(folder, "now")
            words = command("console_event", str(event), inside(file), *command(engine)[len(RUNNER) :])
            with Conversation(words) as program:
                program.send("position startpos\ngo infinite\n")
                program.until("info ")
                with open(file, "wb"):
                    pass
                return program.process.wait(PATIENCE)


if __name__ == "__main__":
    unittest.main()
