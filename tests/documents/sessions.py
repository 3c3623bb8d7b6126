"""Sessions in documents: what is sent to the engine, and what it is said to answer.

Lines with `> ` are sent. A block without any, which begins with `$ ./run`, `$ orvelin` or with
`$ orvelin-play`, has the lines that begin with a command sent. `...` stands for any lines; times
and speeds may differ."""

import re

from orvelin_lib.engine import UciEngine

COMMANDS = frozenset(
    "uci isready ucinewgame position usermove go stop ponderhit setoption eval d bench quit".split()
)
CHANGING = re.compile(r"\b(time|nps)([=: ]\s*)[\d.]+")
ANY_LINES = "..."


def steps_of(text):
    """(line that is sent, lines that are expected) in their order."""
    marked = "\n> " in "\n" + text
    steps = []
    for line in text.split("\n"):
        if line.startswith("$ "):
            continue
        if line.startswith("> ") or (not marked and line.split(" ")[0] in COMMANDS):
            steps.append((line.removeprefix("> "), []))
        elif not steps:
            raise ValueError(f"an answer before the first command: {line}")
        else:
            steps[-1][1].append(line)
    return steps


def unlike(expected, answers):
    """None when the answers are as expected, else a text that shows both."""
    pattern = ""
    for line in expected:
        if line.strip() == ANY_LINES:
            pattern += r"(?:.*\n)*?"
        else:
            pattern += re.escape(comparable(line)) + "\n"
    text = "".join(comparable(answer) + "\n" for answer in answers)
    if re.fullmatch(pattern, text):
        return None
    return "expected:\n" + "\n".join(expected) + "\nanswered:\n" + "\n".join(answers)


def comparable(line):
    """The line without what differs from run to run. Blanks at its ends do not count."""
    return CHANGING.sub(r"\1\2*", line.strip())


class Replay:
    """Plays sessions, each on an engine of its own."""

    def __init__(self, engine, directory):
        self._engine, self._directory = engine, directory

    def faults(self, text):
        """What was answered otherwise than it is written."""
        with UciEngine([self._engine], self._directory, patience=60.0) as engine:
            for line, expected in steps_of(text):
                answers = self._answers(engine, line)
                # A command whose answers are not shown at all may answer what it will.
                if expected and (fault := unlike(expected, answers)):
                    yield f"> {line}\n{fault}"
            engine.quit()

    @staticmethod
    def _answers(engine, line):
        word, *rest = line.split()
        if word == "quit":
            return []
        engine.send(line)
        searches = word == "go" and "perft" not in rest
        waits = not {"infinite", "ponder"} & set(rest)
        if word == "uci":
            last = "uciok"
        elif word in ("stop", "ponderhit") or (searches and waits):
            last = "bestmove"
        elif searches:
            return []
        else:
            last = "readyok"
            if word != "isready":
                engine.send("isready")
        answers = [answer for _, answer in engine.wait_for(last)]
        if last == "readyok" and word != "isready":
            answers.pop()
        return answers
