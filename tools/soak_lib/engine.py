"""An engine process: its pipes, its session and its end."""

import collections
import os
import select
import signal
import subprocess
import time

MAX_SESSION_LINES = 20000
MAX_LINE = 1 << 16
# An engine writes some 200 lines a second at most; this much for one move is a fault.
MAX_BYTES_A_MOVE = 1 << 24
ANSWERS = ("bestmove", "readyok", "uciok")


class Fault(Exception):
    """Something that an engine must never do."""

    def __init__(self, kind, engine, detail):
        super().__init__(f"{kind}: {engine.name}: {detail}")
        self.kind, self.engine, self.detail = kind, engine, detail


class EngineProcess:
    """One engine. Answers wait in the order of their arrival until they are taken."""

    def __init__(self, command, name):
        self.name = name
        self.games = 0
        self.settled_memory = 0
        self._started = time.monotonic()
        self._session = collections.deque(maxlen=MAX_SESSION_LINES)
        self._answers = collections.deque()
        self._rest = b""
        self._bytes = 0
        # A session of its own: an interrupt from the terminal is for the script alone.
        self._process = subprocess.Popen(
            [command],
            stdin=subprocess.PIPE,
            stdout=subprocess.PIPE,
            stderr=subprocess.STDOUT,
            bufsize=0,
            start_new_session=True,
        )
        self.output = self._process.stdout.fileno()
        os.set_blocking(self.output, False)

    def _note(self, mark, line):
        self._session.append(f"{(time.monotonic() - self._started) * 1000:11.1f} {mark} {line}")

    def send(self, line):
        self._note(">", line)
        self._bytes = 0
        try:
            self._process.stdin.write(line.encode() + b"\n")
        except OSError:
            self._ended()

    def receive(self):
        """Takes in what the engine has written so far."""
        try:
            data = os.read(self.output, 1 << 16)
        except BlockingIOError:
            return
        now = time.monotonic()
        if not data:
            self._ended()
        self._bytes += len(data)
        *lines, self._rest = (self._rest + data).split(b"\n")
        for line in lines:
            text = line.decode(errors="replace")
            self._note("<", text)
            words = text.split()
            if words and words[0] in ANSWERS:
                self._answers.append((now, words))
        if self._bytes > MAX_BYTES_A_MOVE or len(self._rest) > MAX_LINE:
            raise Fault("flood", self, f"{self._bytes} bytes since the last command")

    def _ended(self):
        try:
            code = self._process.wait(5)
        except subprocess.TimeoutExpired:
            raise Fault("crash", self, "closed its output") from None
        raise Fault("crash", self, self._end_text(code))

    @staticmethod
    def _end_text(code):
        if code < 0:
            return f"ended by {signal.Signals(-code).name}"
        return f"ended with status {code}"

    def answer(self, word):
        """(time, words) of the next answer, None when there is none yet."""
        if not self._answers:
            return None
        arrived, words = self._answers.popleft()
        if words[0] != word:
            raise Fault("stray answer", self, f"{' '.join(words)} where {word} was due")
        return arrived, words

    def expect_silence(self):
        """Fails when an answer has come that nobody asked for."""
        self.receive()
        if self._answers:
            raise Fault("stray answer", self, " ".join(self._answers[0][1]))

    def memory(self):
        """Resident memory in KiB."""
        with open(f"/proc/{self._process.pid}/status", encoding="ascii") as status:
            for line in status:
                if line.startswith("VmRSS:"):
                    return int(line.split()[1])
        return 0

    def quit(self, seconds):
        """Asks the engine to end; a fault when it does not end well."""
        self.send("quit")
        deadline = time.monotonic() + seconds
        try:
            while time.monotonic() < deadline:
                select.select([self.output], [], [], max(deadline - time.monotonic(), 0))
                self.receive()
        except Fault as fault:
            if fault.detail != self._end_text(0):
                raise
            return
        raise Fault("crash", self, "did not end on quit")

    def kill(self):
        """Ends the process at once, whatever it does."""
        self._process.kill()
        self._process.wait()
        self._process.stdin.close()
        self._process.stdout.close()

    def session(self):
        """What was said, a line each: milliseconds, direction, text."""
        return "\n".join(self._session) + "\n"


class Interrupted(Exception):
    """The run is to end now."""


class Listener:
    """Waits for answers, and empties the pipes of all engines meanwhile."""

    def __init__(self, stop_wanted):
        self._stop_wanted = stop_wanted

    def wait(self, engine, word, seconds, engines):
        """The answer of the engine; a fault when it does not come in time."""
        deadline = time.monotonic() + seconds
        by_output = {each.output: each for each in engines}
        while (answer := engine.answer(word)) is None:
            left = deadline - time.monotonic()
            if left <= 0:
                raise Fault(f"lost {word}", engine, f"none within {seconds:.1f} s")
            if self._stop_wanted():
                raise Interrupted
            for output in select.select(list(by_output), [], [], min(left, 0.5))[0]:
                by_output[output].receive()
        return answer
