"""The command fit-ratings."""

import os

from match_lib import kept
from orvelin_lib.arguments import Parser, file_name
from orvelin_lib.table import table
from orvelin_lib.tool_main import UsageError, print_whole, run_tool
from rating_lib.document import document
from rating_lib.games import read_matches, results_of
from rating_lib.play import FILE, counted_play, read_rows
from rating_lib.ratings import rated

DESCRIPTION = """
Fits the strengths of all players to the results of all their games, and prints a rating of each
with its error. What is read are files that orvelin-match keep has written, all of them in a folder,
or files of matches as they are. The scale is tied to the levels of stockfish, which say of
themselves how strong they are.
"""
EPILOG = f"""
`fit-ratings play FILE...` counts what the levels play like from lines of JSON of orvelin-analyse,
for the {FILE} beside the results.
"""


def _names(paths):
    names = []
    for path in paths:
        names += kept.files_in(path) if os.path.isdir(path) else [path]
    if not names:
        raise UsageError(f"{paths[0]}: there is no file with results")
    return names


def _text(matches):
    ratings = rated(results_of(matches))
    rows = sorted(ratings.ratings.items(), key=lambda each: -each[1].elo)
    cells = [
        [label, f"{rating.elo:.0f}", f"{rating.error:.0f}", rating.games]
        for label, rating in rows
    ]
    lines = [table(("engine, what it is given", "rating", "+-", "games"), cells), ""]
    advantage, error = ratings.advantage
    lines.append(f"White's advantage   {advantage:+.0f} +- {error:.0f}")
    lines.append(f"tied to             {', '.join(sorted(ratings.anchors)) or 'the mean of all'}")
    lines += [f"left out            {label}: {why}" for label, why in ratings.left_out.items()]
    return "\n".join(lines) + "\n"


def _play(words):
    parser = Parser(prog="fit-ratings play", description=counted_play.__doc__)
    parser.add_argument("files", nargs="+", type=file_name, metavar="FILE")
    print_whole(counted_play(parser.parse_args(words).files))
    return 0


def _run(words):
    if words[:1] == ["play"]:
        return _play(words[1:])
    parser = Parser(prog="fit-ratings", description=DESCRIPTION, epilog=EPILOG)
    words_of_files = {"nargs": "+", "type": file_name, "metavar": "FILE"}
    parser.add_argument("files", **words_of_files, help="results, or a folder with them")
    page = "prints the page docs/strength.md instead"
    parser.add_argument("--document", action="store_true", help=page)
    options = parser.parse_args(words)
    matches = read_matches(_names(options.files))
    if not options.document:
        print_whole(_text(matches))
        return 0
    places = [os.path.join(path, FILE) for path in options.files]
    rows = [row for place in places if os.path.isfile(place) for row in read_rows(place)]
    print_whole(document(matches, rows))
    return 0


def main(words):
    """Runs the command; its exit status."""
    return run_tool("fit-ratings", lambda _: _run(words))
