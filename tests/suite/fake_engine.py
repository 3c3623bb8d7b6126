#!/usr/bin/env python3
"""A UCI engine that answers by a script, and misbehaves where the script says so.

fake_engine.py SCRIPT LOG: the script is JSON: "answers" holds a list of lines for each position,
found by its pieces, and under "otherwise" those for all others. A line that begins with an
exclamation mark is no line, but what the engine does. LOG takes what it was told.
"""

import json
import os
import signal
import sys
import time


def say(line):
    print(line, flush=True)


class FakeEngine:
    """Knows nothing of chess."""

    def __init__(self, script):
        self._script = script
        self._men = None
        # What is said before the next answer to isready.
        self._late = []

    def _act(self, words):
        if words[0] == "!crash":
            os.kill(os.getpid(), signal.SIGSEGV)
        elif words[0] == "!exit":
            sys.exit(int(words[1]))
        elif words[0] == "!stall":
            signal.pause()
        elif words[0] == "!sleep":
            time.sleep(float(words[1]))
        elif words[0] == "!late":
            self._late.append(" ".join(words[1:]))
        elif words[0] == "!flood":
            while True:
                sys.stdout.write("info string " + "x" * 4096 + "\n")
        else:
            raise ValueError(words[0])

    def _play(self, name):
        for line in self._script["answers"].get(name, self._script["answers"]["otherwise"]):
            if line.startswith("!"):
                self._act(line.split())
            else:
                say(line)

    def obey(self, line):
        words = line.split()
        if words[0] == "uci":
            say(f"id name {self._script.get('name', 'Fake')}")
            for option in self._script.get("options", []):
                say(f"option name {option} type string")
            say("uciok")
        elif words[0] == "isready":
            for late in self._late:
                say(late)
            self._late = []
            say("readyok")
        elif words[0] == "position":
            self._men = words[2]
        elif words[0] == "go":
            self._play(self._men)


def main():
    with open(sys.argv[1], encoding="utf-8") as file:
        engine = FakeEngine(json.load(file))
    with open(sys.argv[2], "a", encoding="utf-8") as log:
        print(f"pid {os.getpid()}", file=log, flush=True)
        for line in sys.stdin:
            print(line.strip(), file=log, flush=True)
            if line == "quit\n":
                return
            engine.obey(line)


if __name__ == "__main__":
    main()
