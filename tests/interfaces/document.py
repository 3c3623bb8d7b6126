"""The commands of docs/interfaces.md, so that those are run that are told to the reader."""

import os
import shlex

DOCUMENT = os.environ["INTERFACE_DOCUMENT"]


# The program that the document names; the exact engine is run in its place too.
DOCUMENTED = "orvelin-play"


def documented(*needed, engine=DOCUMENTED):
    """The arguments of the shortest command in the document that starts XBoard with these words,
    for this engine."""
    with open(DOCUMENT, encoding="utf-8") as file:
        lines = file.read().split("\n")
    commands = [shlex.split(line)[1:] for line in lines if line.startswith("    xboard ")]
    found = [words for words in commands if set(needed) <= set(words)]
    if not found:
        raise AssertionError(f"no command in {DOCUMENT} with {' '.join(needed)}")
    return [engine if word == DOCUMENTED else word for word in min(found, key=len)]
