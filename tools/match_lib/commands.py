"""What is done with the files of matches that are over: merge, report and keep."""

import os

from match_lib import kept, report, results
from match_lib.arguments import EPILOG
from match_lib.pgn_text import pgn_text
from match_lib.sprt import Sprt
from match_lib.standings import Standings
from orvelin_lib.arguments import Parser, file_name
from orvelin_lib.files import write_bytes, write_file
from orvelin_lib.tool_main import UsageError, print_whole

STATUS = EPILOG[EPILOG.index("The exit") :].replace("came to its end", "is whole")


def merge(arguments):
    """Makes one file of those of all shards."""
    parser = Parser(prog="orvelin-match merge", description=merge.__doc__)
    parser.add_argument("files", nargs="+", type=file_name, metavar="FILE", help="of all shards")
    name = {"type": file_name, "required": True, "metavar": "FILE"}
    parser.add_argument("-o", dest="output", **name, help="takes all games; - is standard output")
    words = "a file that is there is replaced"
    parser.add_argument("--overwrite", action="store_true", help=words)
    options = parser.parse_args(arguments)
    text = results.lines(*results.merged(options.files))
    if not options.overwrite:
        _check_kept(options.output, text)
    write_file(options.output, text)
    return 0


def keep(arguments):
    """Writes what is worth to be kept of a match: players, openings, results, and a few figures of
    each game, compressed. The files are of one match: the whole, or any of its shards."""
    parser = Parser(prog="orvelin-match keep", description=keep.__doc__)
    parser.add_argument("files", nargs="+", type=file_name, metavar="FILE", help="of one match")
    name = {"type": file_name, "required": True, "metavar": f"NAME{kept.END}"}
    parser.add_argument("-o", dest="output", **name, help="is replaced when it is there")
    options = parser.parse_args(arguments)
    if not options.output.endswith(kept.END):
        raise UsageError(f"-o: {options.output}: the name ends with {kept.END}")
    write_bytes(options.output, kept.data(*kept.of_files(options.files)))
    return 0


def _check_kept(name, text):
    """UsageError when something else would be lost; a merge may be done again."""
    if name == "-" or not os.path.isfile(name):
        return
    try:
        with open(name, "rb") as file:
            is_same = file.read() == text.encode()
    except OSError:
        is_same = False
    if not is_same:
        raise UsageError(f"{name} exists: give --overwrite, or name another")


def report_files(arguments):
    """Tells what the files of one or several matches hold, all games together."""
    parser = Parser(prog="orvelin-match report", description=report_files.__doc__)
    name = {"type": file_name, "metavar": "FILE"}
    parser.add_argument("files", nargs="+", **name, help="which orvelin-match has written")
    parser.add_argument("--pgn", **name, help="the games")
    parser.add_argument("--json", **name, help="all figures of the table")
    sprt = {"nargs": "+", "metavar": "KEY=VALUE"}
    parser.add_argument("--sprt", **sprt, help="elo0=0 elo1=5: the test of two engines")
    options = parser.parse_args(arguments)
    standings, games = _gathered(options.files)
    test = _sprt(options.sprt, standings)
    if options.pgn:
        write_file(options.pgn, "".join(games()))
    if options.json:
        write_file(options.json, report.json_text(standings, test))
    if "-" not in (options.pgn, options.json):
        print_whole(report.text(standings, test))
    return 0


def _sprt(words, standings):
    if words is None:
        return None
    try:
        test = Sprt.parse(words)
    except ValueError as error:
        raise UsageError(f"--sprt: {error}") from None
    if len(standings.names) != 2:
        raise UsageError("--sprt is for two engines")
    return test


def _gathered(names):
    """(standings, function that gives the games as PGN)."""
    standings, matches, seen = Standings(), [], results.Seen()
    for index, name in enumerate(names):
        head, records = results.read(name)
        seen.add(name, head, records)
        for player in head["players"]:
            if player["name"] not in standings.names:
                standings.names.append(player["name"])
        for record in sorted(records, key=lambda record: record["game"]):
            standings.add(record, index)
        matches.append((results.controls_of(head), records))

    def games():
        for controls, records in matches:
            for record in sorted(records, key=lambda record: record["game"]):
                yield pgn_text(record, controls)

    return standings, games
