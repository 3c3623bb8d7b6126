"""The commands of docs/interfaces.md, so that those are run that are told to the reader."""

import os
import shlex

DOCUMENT = os.environ["INTERFACE_DOCUMENT"]


def documented(*needed):
    """The arguments of the shortest command in the document that starts XBoard with these words."""
    with open(DOCUMENT, encoding="utf-8") as file:
        lines = file.read().split("\n")
    commands = [shlex.split(line)[1:] for line in lines if line.startswith("    xboard ")]
    found = [words for words in commands if set(needed) <= set(words)]
    if not found:
        raise AssertionError(f"no command in {DOCUMENT} with {' '.join(needed)}")
    return min(found, key=len)
