"""An engine of the soak run: what was said is kept, and so are the answers that are due."""

import collections
import select
import subprocess
import time

from orvelin_lib.process import EngineFailure, EngineProcess

MAX_SESSION_LINES = 20000
ANSWERS = ("bestmove", "readyok", "uciok")


class Fault(EngineFailure):
    """Something that an engine must never do."""

    def __init__(self, kind, engine, detail):
        super().__init__(detail, kind)
        self.engine = engine

    def __str__(self):
        return f"{self.kind}: {self.engine.name}: {self.detail}"


class SoakEngine(EngineProcess):
    """One engine. Answers wait in the order of their arrival until they are taken."""

    def __init__(self, command, name):
        self.name = name
        self.games = 0
        self.settled_memory = 0
        self._started = time.monotonic()
        self._session = collections.deque(maxlen=MAX_SESSION_LINES)
        self._answers = collections.deque()
        super().__init__(command, errors=subprocess.STDOUT)

    def failure(self, kind, detail):
        return Fault(kind, self, detail)

    def _note(self, mark, line):
        self._session.append(f"{(time.monotonic() - self._started) * 1000:11.1f} {mark} {line}")

    def send(self, line):
        self._note(">", line)
        super().send(line)

    def take(self, moment, line):
        self._note("<", line)
        words = line.split()
        if words and words[0] in ANSWERS:
            self._answers.append((moment, words))

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
