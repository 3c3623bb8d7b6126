"""A UCI engine as a process: every line of its output with the moment at which it came."""

import array
import collections
import fcntl
import os
import select
import signal
import subprocess
import termios
import time
from dataclasses import dataclass

# An engine that writes more than this for one command is out of order.
MAX_BYTES = 1 << 24


class EngineFailure(Exception):
    """The engine died, hangs or does not say what is needed."""


@dataclass(frozen=True)
class Search:
    """What one search gave by the last line that tells nodes. Milliseconds as the engine counts
    them, or None; seconds by the clock on the wall and of the processor, from `go` to that line."""

    nodes: int
    milliseconds: int | None
    line_seconds: float
    line_processor_seconds: float
    hashfull: int

    @property
    def rate(self):
        """Nodes a second. The engine's own time counts while the clock on the wall bears it out:
        some engines tell the time of the processor, or none."""
        wall = self.line_seconds * 1000
        own = self.milliseconds
        if not own or abs(own - wall) > 50 + 0.2 * wall:
            own = wall
        return self.nodes * 1000 / own

    @property
    def processor_rate(self):
        """Nodes for a second of the processor, which other programs hardly change."""
        return self.nodes / max(self.line_processor_seconds, 1e-6)


@dataclass(frozen=True)
class Moment:
    """When a line came: by the clock on the wall, and by what the engine had used by then."""

    clock: float
    processor: float


def number_after(words, key):
    """The number behind a word of an info line, None when there is none."""
    if key not in words:
        return None
    index = words.index(key) + 1
    try:
        return int(words[index])
    except (IndexError, ValueError):
        return None


class UciEngine:
    """One engine process. Whoever waits also empties its pipe; nobody else does."""

    def __init__(self, command, directory=None, patience=10.0, pipe_bytes=None):
        self.patience = patience
        self.name = os.path.basename(command[0])
        self._options = {}
        self._lines = collections.deque()
        self._rest = b""
        self._bytes = 0
        try:
            # A session of its own: an interrupt from the terminal is for the script alone.
            self._process = subprocess.Popen(
                command,
                stdin=subprocess.PIPE,
                stdout=subprocess.PIPE,
                stderr=subprocess.DEVNULL,
                bufsize=0,
                cwd=directory,
                start_new_session=True,
            )
        except OSError as error:
            raise EngineFailure(f"cannot be started: {error.strerror}") from None
        self._output = self._process.stdout.fileno()
        os.set_blocking(self._output, False)
        if pipe_bytes is not None:
            fcntl.fcntl(self._output, fcntl.F_SETPIPE_SZ, pipe_bytes)

    def __enter__(self):
        return self

    def __exit__(self, *_):
        self.kill()

    def send(self, line):
        self._bytes = 0
        try:
            self._process.stdin.write(line.encode() + b"\n")
        except OSError:
            self._ended()

    def _receive(self):
        try:
            data = os.read(self._output, 1 << 16)
        except BlockingIOError:
            return
        now = Moment(time.monotonic(), self._processor_seconds())
        if not data:
            self._ended()
        self._bytes += len(data)
        if self._bytes > MAX_BYTES:
            raise EngineFailure("writes without end")
        *lines, self._rest = (self._rest + data).split(b"\n")
        self._lines += [(now, line.decode(errors="replace").strip()) for line in lines]

    def _ended(self):
        try:
            code = self._process.wait(5)
        except subprocess.TimeoutExpired:
            raise EngineFailure("closed its output") from None
        if code < 0:
            raise EngineFailure(f"ended by {signal.Signals(-code).name}")
        raise EngineFailure(f"ended with status {code}")

    def wait_for(self, word, seconds=None):
        """All (moment, line) up to the first line that begins with the word."""
        seconds = self.patience if seconds is None else seconds
        deadline = time.monotonic() + seconds
        taken = []
        while True:
            while self._lines:
                taken.append(self._lines.popleft())
                if taken[-1][1].split(" ")[0] == word:
                    return taken
            left = deadline - time.monotonic()
            if left <= 0:
                raise EngineFailure(f"no {word} within {seconds:.1f} s")
            if select.select([self._output], [], [], left)[0]:
                self._receive()

    def ask(self, line, word, seconds=None):
        """Sends a line; the seconds until the answer that begins with the word."""
        began = time.monotonic()
        self.send(line)
        return self.wait_for(word, seconds)[-1][0].clock - began

    def handshake(self):
        """Asks for the name and the options."""
        self.send("uci")
        for _, line in self.wait_for("uciok"):
            if line.startswith("id name "):
                self.name = line[len("id name ") :]
            elif line.startswith("option name "):
                option = line[len("option name ") :].split(" type ")[0]
                self._options[option.lower()] = option

    def set_option(self, name, value):
        """Sets an option if the engine has it; whether it has."""
        known = self._options.get(name.lower())
        if known is not None:
            self.send(f"setoption name {known} value {value}")
        return known is not None

    def ready(self, seconds=None):
        """The seconds until the engine is ready again."""
        return self.ask("isready", "readyok", seconds)

    def new_game(self):
        """The seconds until the engine is ready for another game."""
        began = time.monotonic()
        self.send("ucinewgame")
        self.ready()
        return time.monotonic() - began

    def search(self, fen, limit, seconds=0.0):
        """Searches a position; patience counts from so many seconds on. A search too short for an
        info line gives None."""
        self.send(f"position fen {fen}")
        began = Moment(time.monotonic(), self._processor_seconds())
        self.send(f"go {limit}")
        lines = self.wait_for("bestmove", seconds + self.patience)
        nodes = milliseconds = moment = None
        hashfull = 0
        for arrival, line in lines:
            words = line.split()
            if not words or words[0] != "info" or "string" in words:
                continue
            hashfull = number_after(words, "hashfull") or hashfull
            if number_after(words, "nodes"):
                nodes, milliseconds = number_after(words, "nodes"), number_after(words, "time")
                moment = arrival
        if nodes is None:
            return None
        return Search(
            nodes,
            milliseconds,
            moment.clock - began.clock,
            moment.processor - began.processor,
            hashfull,
        )

    def _processor_seconds(self):
        """What all threads of the engine have used of the processor so far."""
        total = 0
        tasks = f"/proc/{self._process.pid}/task"
        try:
            for task in os.listdir(tasks):
                with open(f"{tasks}/{task}/schedstat", encoding="ascii") as file:
                    total += int(file.read().split()[0])
        except OSError:
            # A thread, or the process, has just ended; the kernel may also keep no such count.
            pass
        return total / 1e9

    def memory(self, field="VmRSS"):
        """Resident KiB now, or at most so far with VmHWM."""
        with open(f"/proc/{self._process.pid}/status", encoding="ascii") as status:
            for line in status:
                if line.startswith(field + ":"):
                    return int(line.split()[1])
        return 0

    def waiting_bytes(self):
        """What lies in the pipe and was not read yet."""
        count = array.array("i", [0])
        fcntl.ioctl(self._output, termios.FIONREAD, count)
        return count[0]

    def quit(self):
        """The seconds from `quit` to the end of the process."""
        began = time.monotonic()
        self.send("quit")
        try:
            code = self._process.wait(self.patience)
        except subprocess.TimeoutExpired:
            raise EngineFailure("does not end on quit") from None
        if code != 0:
            raise EngineFailure(f"ended with status {code} on quit")
        return time.monotonic() - began

    def kill(self):
        """Ends the process at once, whatever it does."""
        self._process.kill()
        self._process.wait()
        self._process.stdin.close()
        self._process.stdout.close()
