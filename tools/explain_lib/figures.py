"""Figures with a sign, how long their bars are, and text in lines."""

import math
import textwrap

MINUS = "\N{MINUS SIGN}"


def signed(number, digits=2):
    """With a plain hyphen, for terminals; a zero has no sign."""
    text = f"{number:+.{digits}f}"
    return text if text.strip("+-0.") else text[1:]


def typeset(text):
    """The text of a figure with a true minus sign, for pages and pictures."""
    return text.replace("-", MINUS)


def share_of_reach(pawns, reach):
    """How far the bar of a score goes, -1 to 1. The steps shrink as the score grows: small
    differences decide while a game is open."""
    pawns = min(max(pawns, -reach), reach)
    return math.asinh(2 * pawns) / math.asinh(2 * reach)


def wrapped(text, width):
    """The words of a text in lines of at most so many characters."""
    words = " ".join(text.split())
    return textwrap.wrap(words, width, break_long_words=False, break_on_hyphens=False) or [""]
