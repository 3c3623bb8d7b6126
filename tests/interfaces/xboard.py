"""XBoard as a process, in a folder of its own, with logs of all that it and polyglot say."""

import glob
import os
import re
import shutil
import signal
import subprocess
import tempfile
import time

from orvelin_lib.process import program

ENGINES = [program("orvelin-play"), program("orvelin")]
BOOK = os.path.join(os.path.dirname(ENGINES[0]), "orvelin.files", "Orvelin.bin")
# polyglot writes the log NAME.log of the engine with this name.
ADAPTER = 'polyglot -noini -ec "%fcp" -ed "%fd" -log true -lf %fcp.log'
# Without sound, animation, and messages that somebody has to click away.
QUIET = (
    *("-soundMove", "", "-xanimate", "-highlightMoveWithArrow", "false", "-popupExitMessage"),
    *("false", "-debug", "-nameOfDebugFile", "xboard.debug", "-adapterCommand", ADAPTER),
)
# A line of thinking: depth, score, time, nodes, and the moves somewhere behind them.
THINKING = re.compile(r"^\d+ <first : +\d+ [+-]\d+ \d+ \d+ ", re.MULTILINE)
MOVE = re.compile(r"^\d+ <first : move \S+", re.MULTILINE)


class XBoard:
    """One run. The folder is removed at the end."""

    def __init__(self, *words):
        self._folder = tempfile.TemporaryDirectory()
        self.folder = self._folder.name
        # Of the places where the engine looks for its book this is the only one free to take.
        shutil.copy(BOOK, self.folder)
        environment = {**os.environ, "PATH": os.environ["PATH"] + ":/usr/games"}
        self._process = subprocess.Popen(
            [program("xboard"), *words, *QUIET],
            cwd=self.folder,
            env=environment,
            stdin=subprocess.DEVNULL,
            stdout=subprocess.DEVNULL,
            stderr=subprocess.DEVNULL,
            start_new_session=True,
        )

    def __enter__(self):
        return self

    def __exit__(self, *_):
        if self._process.poll() is None:
            os.killpg(self._process.pid, signal.SIGKILL)
        self._process.wait()
        self._folder.cleanup()

    def path(self, name):
        return os.path.join(self.folder, name)

    def text(self, name):
        """A file of the run as it is now."""
        if not os.path.exists(self.path(name)):
            return ""
        with open(self.path(name), encoding="utf-8", errors="replace") as file:
            return file.read()

    def debug(self):
        return self.text("xboard.debug")

    def wait_for(self, pattern, seconds):
        """Waits until the pattern is in the log."""
        deadline = time.monotonic() + seconds
        while not pattern.search(self.debug()):
            if time.monotonic() > deadline or self._process.poll() is not None:
                raise AssertionError(f"no {pattern.pattern}\n{self.debug()[-3000:]}")
            time.sleep(0.1)

    def wait(self, seconds):
        """Waits until XBoard ends by itself."""
        try:
            self._process.wait(seconds)
        except subprocess.TimeoutExpired:
            raise AssertionError(f"XBoard did not end\n{self.debug()[-3000:]}") from None

    def close(self, seconds=30):
        """Ends XBoard as its user does, with Ctrl-Q."""
        window = ("search", "--onlyvisible", "--name", "^xboard:| vs[.] ")
        subprocess.run(["xdotool", *window, "windowfocus", "key", "ctrl+q"], timeout=30, check=True)
        self.wait(seconds)

    def engines_left(self, seconds=30):
        """The engines of this run that do not end within the time."""
        deadline = time.monotonic() + seconds
        while (left := self._engines()) and time.monotonic() < deadline:
            time.sleep(0.2)
        return left

    def _engines(self):
        left = []
        for process in glob.glob("/proc/[0-9]*"):
            try:
                if any(os.path.samefile(f"{process}/exe", engine) for engine in ENGINES):
                    if os.readlink(f"{process}/cwd").startswith(self.folder):
                        left.append(process)
            except OSError:
                continue  # ended meanwhile, or of another user
        return left
