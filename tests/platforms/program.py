"""Programs of another system or processor, started by what runs them here."""

import contextlib
import os
import queue
import re
import subprocess
import threading
import time

# The machine may be busy with anything, and what runs the programs is slow.
PATIENCE = 240
CHANGING = re.compile(r" (?:time|nps) \d+")

FOLDER = os.environ["PLATFORM_FOLDER"]
RUNNER = os.environ["PLATFORM_RUNNER"].split()
SUFFIX = os.environ.get("PLATFORM_SUFFIX", "")
# The folder of a build for this machine.
NATIVE = os.environ["PLATFORM_NATIVE"]
DATA = os.environ["PLATFORM_DATA"]


def command(name, *arguments):
    return [*RUNNER, os.path.join(FOLDER, name + SUFFIX), *arguments]


def native(name, *arguments):
    return [os.path.join(NATIVE, name), *arguments]


def run(words, text="", folder=None):
    """What the program has put out, and its status."""
    done = subprocess.run(
        words,
        input=text.encode(),
        stdout=subprocess.PIPE,
        stderr=subprocess.PIPE,
        timeout=PATIENCE,
        cwd=folder,
        check=False,
    )
    return done.stdout.decode(), done.stderr.decode(), done.returncode


def file_size(name):
    """The bytes in a file; none where there is none."""
    return os.path.getsize(name) if os.path.exists(name) else 0


def wait_until(met):
    """Whether a condition is met before patience ends."""
    end = time.monotonic() + PATIENCE
    while not met() and time.monotonic() < end:
        time.sleep(0.01)
    return met()


class Conversation:
    """A process that lines are sent to; what it answers is read by a thread."""

    def __init__(self, words, folder=None):
        self.process = subprocess.Popen(
            words,
            stdin=subprocess.PIPE,
            stdout=subprocess.PIPE,
            stderr=subprocess.DEVNULL,
            cwd=folder,
        )
        self.lines = queue.Queue()
        self.reader = threading.Thread(target=self._read, daemon=True)
        self.reader.start()

    def _read(self):
        for line in self.process.stdout:
            self.lines.put(line.decode())
        self.lines.put(None)

    def send(self, text):
        self.process.stdin.write(text.encode())
        self.process.stdin.flush()

    def until(self, begin):
        """The lines to the first that begins so, without what changes from run to run, and without
        those of long searches, which come each second."""
        heard = []
        end = time.monotonic() + PATIENCE
        while True:
            line = self.lines.get(timeout=max(end - time.monotonic(), 0.01))
            if line is None:
                raise EOFError(f"no {begin} behind {heard}")
            if " currmove " not in line:
                heard.append(CHANGING.sub("", line))
            if line.startswith(begin):
                return heard

    def end(self):
        """The status of the process behind `quit`."""
        with contextlib.suppress(OSError):
            self.send("quit\n")
        return self.process.wait(PATIENCE)

    def __enter__(self):
        return self

    def __exit__(self, *_):
        self.process.kill()
        self.process.wait()
        self.reader.join()
        with contextlib.suppress(OSError):
            self.process.stdin.close()
        self.process.stdout.close()
