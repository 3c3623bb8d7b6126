"""What the command lines check alike."""

import argparse
import math
import os
import shlex

from orvelin_lib.tool_main import UsageError

# In seconds; the system cannot wait much longer.
MOST_SECONDS = 1000000
# What a UCI engine can read.
MOST_NUMBER = (1 << 63) - 1
# Engines that run at the same time.
MOST_JOBS = 1024


class Parser(argparse.ArgumentParser):
    """Reads a command line, and says in one line what is wrong with it."""

    def error(self, message):
        raise UsageError(f"{message}; see --help")


def file_name(text):
    """The name of a file: a variable of the shell that is not set gives an empty one."""
    if not text:
        raise argparse.ArgumentTypeError("no name of a file")
    return text


def number(least, most=MOST_NUMBER):
    """The type of a whole number within bounds."""

    def read(text):
        if not (text.isascii() and text.isdigit() and len(text) < 20):
            raise argparse.ArgumentTypeError(f"{text!r} is not a whole number from {least} on")
        if not least <= (value := int(text)) <= most:
            raise argparse.ArgumentTypeError(f"{text} is not between {least} and {most}")
        return value

    return read


positive = number(1)


def numbers(text):
    """Whole numbers with commas between them."""
    return [positive(word) for word in text.split(",")]


def decimal(least, most):
    """The type of a number within bounds that need not be whole."""

    def read(text):
        try:
            value = float(text)
        except ValueError:
            value = math.nan
        if not least <= value <= most:
            raise argparse.ArgumentTypeError(f"{text!r} is not between {least} and {most}")
        return value

    return read


def seconds(text):
    """A time to wait."""
    value = decimal(0, MOST_SECONDS)(text)
    if value == 0:
        raise argparse.ArgumentTypeError(f"{text!r} is no time to wait")
    return value


def command(text):
    """The words of a command; the name of a file may have spaces in it."""
    if "/" in text and os.path.isfile(text):
        words = [text]
    else:
        try:
            words = shlex.split(text)
        except ValueError as error:
            raise argparse.ArgumentTypeError(f"{text!r}: {error}") from None
    if not words:
        raise argparse.ArgumentTypeError(f"no command: {text!r}")
    # Hosts, jobs and engines may work in other folders.
    if "/" in words[0]:
        words[0] = os.path.abspath(words[0])
    return tuple(words)
