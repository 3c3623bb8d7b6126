#!/usr/bin/env python3
"""A UCI engine with a known speed, or with a fault; for the tests of the tools that measure.

fake_uci_engine.py RATE KIND LOG: searches RATE nodes a second and notes in LOG what it was told.
"""

import os
import signal
import sys
import time

RATE, KIND, LOG = int(sys.argv[1]), sys.argv[2], sys.argv[3]


def say(line):
    print(line, flush=True)


def search(milliseconds):
    """Takes so long, and tells its nodes as this kind of engine does."""
    time.sleep(milliseconds / 1000)
    nodes = RATE * milliseconds // 1000
    if KIND == "lying":
        say(f"info depth 9 time 1 nodes {nodes} score cp 0 pv e2e4")
    elif KIND == "timeless":
        say(f"info depth 9 nodes {nodes} nps 1 score cp 0 pv e2e4")
    elif KIND != "silent":
        say(f"info depth 9 time {milliseconds} nodes {nodes} nps 1 score cp 0 pv e2e4")
        say("info string nodes 5 time 5")
        say("info hashfull 12")
    say("bestmove e2e4")


def flood():
    """Info lines until the pipe takes no more, and then as they go."""
    while True:
        say("info depth 1 time 1 nodes 1 score cp 0 pv " + "e2e4 " * 20)


def obey(line):
    words = line.split()
    if words[0] == "uci" and KIND != "mute":
        say(f"id name Fake {RATE}")
        say("option name Hash type spin default 16 min 1 max 4096")
        say("option name Number of Threads type spin default 4 min 1 max 16")
        say("option name Use NNUE type check default true")
        say("uciok")
    elif words[0] == "isready":
        say("readyok")
    elif words[0] == "go":
        if KIND == "killed":
            os.kill(os.getpid(), signal.SIGKILL)
        elif KIND == "leaving":
            sys.exit(3)
        elif KIND == "flooding":
            flood()
        elif KIND != "hanging":
            search(int(words[2]))


def main():
    with open(LOG, "a", encoding="utf-8") as log:
        print(f"pid {os.getpid()}", file=log, flush=True)
        for line in sys.stdin:
            print(line.strip(), file=log, flush=True)
            if line == "quit\n":
                return
            obey(line)


if __name__ == "__main__":
    main()
