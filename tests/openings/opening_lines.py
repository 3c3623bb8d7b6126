"""The lines of the opening book as they are written."""

import os
from dataclasses import dataclass

FOLDER = os.environ["OPENINGS_FOLDER"]


@dataclass(frozen=True)
class OpeningLine:
    """A line of moves, where it is written, and the comment above its group."""

    place: str
    group: str
    games: int
    moves: tuple


def file_names():
    """The files that the book is made of, in the order in which they are read."""
    names = sorted(name for name in os.listdir(FOLDER) if name.endswith(".txt"))
    return [os.path.join(FOLDER, name) for name in names]


def read_text():
    """The text of all files, as it is given to orvelin-book."""
    texts = []
    for name in file_names():
        with open(name, encoding="ascii") as file:
            texts.append(file.read())
    return "\n".join(texts)


def read_lines():
    """All lines of all files."""
    return [line for name in file_names() for line in _lines_of(name)]


def _lines_of(name):
    group = ""
    with open(name, encoding="ascii") as file:
        # The first comment is about the file and stands alone: it is no name of a group.
        for number, text in enumerate(file, 1):
            if not text.strip():
                group = ""
            elif text.startswith("#"):
                group = text.lstrip("# ").strip()
            else:
                games, moves = text.split(":")
                place = f"{os.path.basename(name)}:{number}"
                yield OpeningLine(place, group, int(games), tuple(moves.split()))
