"""Standard output that may not take what a tool prints."""

import os
import sys


def print_whole(text):
    """Prints a text and waits until it is written; OSError when it cannot be."""
    try:
        print(text, end="", flush=True)
    except OSError:
        # The interpreter writes what is left when it ends, and would fail once more.
        with open(os.devnull, "wb") as nothing:
            os.dup2(nothing.fileno(), sys.stdout.fileno())
        raise
