"""An engine at the board: all that was said is kept, and so are the answers that are due."""

import collections
import select
import subprocess
import time

from match_lib.engine_options import EngineOption
from orvelin_lib.engine import number_after
from orvelin_lib.process import EngineFailure, EngineProcess

# What was said is kept as it came, several lines of information together: some games of it.
MOST_MESSAGES = 5000
ANSWERS = ("bestmove", "readyok", "uciok")


class Fault(EngineFailure):
    """Something that an engine must never do."""

    def __init__(self, kind, engine, detail):
        super().__init__(detail, kind)
        self.engine = engine


class Interrupted(Exception):
    """The run is to end now."""


class Report:
    """What an engine says of its search, as far as a match wants it; None for what it does not."""

    def __init__(self, scored, counted):
        words = scored.split()
        self.depth = number_after(words, "depth")
        self.score = number_after(words, "cp")
        self.mate = number_after(words, "mate")
        self.nodes = number_after(counted.split(), "nodes")

    @property
    def text(self):
        """The score as records have it: hundredths, or moves to the mate behind a #."""
        return self.score if self.mate is None else f"#{self.mate}"


class MatchEngine(EngineProcess):
    """One engine. Answers wait in the order of their arrival until they are taken."""

    def __init__(self, player, command):
        self.name = player.name
        self.title = None
        self.games = 0
        self.settled_memory = 0
        self.options = {}
        self._started = time.monotonic()
        self._session = collections.deque(maxlen=MOST_MESSAGES)
        self._answers = collections.deque()
        super().__init__(command, player.folder, errors=subprocess.STDOUT)

    def failure(self, kind, detail):
        return Fault(kind, self, detail)

    def send(self, line):
        self._session.append((time.monotonic(), ">", line))
        super().send(line)

    def take_whole(self, moment, data):
        """Most of what comes are lines of information, of which only the last ones are looked at,
        when a search has ended: they are kept together, as they came."""
        is_info = data.endswith(b"\n") and data.startswith(b"info ")
        if is_info and data.count(b"\n") == data.count(b"\ninfo ") + 1:
            self._session.append((moment, "<", data.decode(errors="replace").rstrip()))
            return True
        return False

    def take(self, moment, line):
        self._session.append((moment, "<", line))
        if line.startswith(ANSWERS):
            self._answers.append((moment, line.split()))
        elif option := EngineOption.parse(line):
            self.options[option.name.lower()] = option
        elif line.startswith("id name "):
            self.title = line[len("id name ") :]

    def report(self):
        """Of the search that has ended: what the last of its lines say."""
        scored = counted = ""
        for line in self._last_lines():
            if not line.startswith("info ") or line.startswith("info string"):
                continue
            if not counted and " nodes " in line:
                counted = line
            is_first = " multipv " not in line or " multipv 1 " in line
            if not scored and is_first and " score " in line:
                scored = line
            if scored and counted:
                break
        return Report(scored, counted)

    def _last_lines(self):
        """What came since the last `go`, the last line first."""
        for _, mark, text in reversed(self._session):
            if mark == ">" and text.startswith("go "):
                return
            if mark == "<":
                yield from reversed(text.split("\n"))

    def set_option(self, name, value):
        """Sets an option; what is wrong with it, or None."""
        option = self.options.get(name.lower())
        if option is None:
            return f"has no option {name}"
        if problem := option.problem(value):
            return f"option {name}: {value!r} {problem}"
        self.send(option.command(value))
        return None

    def answer(self, word):
        """(moment, words) of the next answer, None when there is none yet."""
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
        return "".join(
            f"{(moment - self._started) * 1000:11.1f} {mark} {line}\n"
            for moment, mark, text in self._session
            for line in text.split("\n")
        )


class Listener:
    """Waits for answers, and empties the pipes of all engines at the board meanwhile. `stop` is a
    file that can be read, or has ended, as soon as the run is to end."""

    def __init__(self, stop):
        self._stop = stop
        self._poll = select.poll()
        self._poll.register(stop, select.POLLIN)
        self._engines = {}

    def seat(self, engines):
        """From now on these engines are at the board."""
        for output in self._engines:
            self._poll.unregister(output)
        self._engines = {engine.output: engine for engine in engines}
        for output in self._engines:
            self._poll.register(output, select.POLLIN)

    def wait(self, engine, word, deadline):
        """(moment, words) of the answer of the engine, None when it has not come in time."""
        while (answer := engine.answer(word)) is None:
            left = deadline - time.monotonic()
            if left <= 0:
                return None
            for output, _ in self._poll.poll(min(left * 1000, 1e9)):
                if output == self._stop:
                    raise Interrupted
                self._engines[output].receive()
        return answer

    def ends_within(self, seconds):
        """Waits: True when the run is to end."""
        return bool(select.select([self._stop], [], [], seconds)[0])

    def need(self, engine, word, seconds):
        """The same; a fault when it does not come."""
        answer = self.wait(engine, word, time.monotonic() + seconds)
        if answer is None:
            raise Fault("stall", engine, f"no {word} within {seconds:g} s")
        return answer
