"""The command line of a match."""

import argparse
import re

from match_lib.adjudication import Rule
from match_lib.clocks import AMOUNTS, Limit
from match_lib.players import MOST_MARGIN, read_words
from match_lib.sprt import Sprt
from orvelin_lib.arguments import (
    MOST_JOBS,
    Parser,
    decimal,
    file_name,
    number,
    seconds,
)
from orvelin_lib.tool_main import UsageError

DESCRIPTION = """
Plays matches between UCI engines, referees them, and tells what the results say of their strength.
After --engine and --each stand words such as cmd=stockfish name=weak option.Hash=16 tc=10+0.1:
cmd, name, dir (where it works), option.NAME, its own tc, movetime, nodes or depth, and pawn (what
it calls a pawn, if not 100), margin (its own). What is said after --each holds for all engines.
"""
EPILOG = """
Other commands: `orvelin-match merge FILE... -o FILE` makes one file of those of all shards,
`orvelin-match report FILE...` tells again what such files hold, and `orvelin-match keep FILE... -o
FILE` keeps little of them, compressed; each has --help. The table goes to
standard output, progress to standard error; as FILE, - is standard output. The exit status is 0
when the match came to its end, 1 when --faults found a fault, an engine cannot be started, or a file
cannot be read or written, 2 for bad usage, 130, 143 or 129 when it was interrupted by
Ctrl-C, SIGTERM or SIGHUP.
"""
MOST_GAMES = 10000000
DEFAULT_GAMES = 100
# Parts of one match.
MOST_SHARDS = 100000


class _Words(argparse.Action):
    """Reads KEY=VALUE words; all of them belong to one engine."""

    def __call__(self, parser, namespace, words, option=None):
        try:
            values = read_words(words)
        except (ValueError, argparse.ArgumentTypeError) as error:
            parser.error(f"{option}: {error}")
        if option == "--engine":
            namespace.engines = [*(namespace.engines or []), values]
        elif "cmd" in values or "name" in values:
            parser.error("--each: an engine has its cmd= and name= for itself")
        else:
            namespace.each = values


class _Parsed(argparse.Action):
    """Reads KEY=VALUE words by what `const` makes of them."""

    def __call__(self, parser, namespace, words, option=None):
        try:
            setattr(namespace, self.dest, self.const(words))
        except ValueError as error:
            parser.error(f"{option}: {error}")


class _LimitAction(argparse.Action):
    """One limit for all engines that have none of their own."""

    def __call__(self, parser, namespace, text, option=None):
        if namespace.limit is not None:
            parser.error(f"{option}: there is another limit already")
        try:
            namespace.limit = Limit.parse(option.removeprefix("--"), text)
        except ValueError as error:
            parser.error(str(error))


def shard(text):
    """(which, of how many)."""
    match = re.fullmatch(r"(\d{1,6})/(\d{1,6})", text, re.ASCII)
    which, count = (int(match[1]), int(match[2])) if match else (0, 0)
    if not 1 <= which <= count <= MOST_SHARDS:
        raise argparse.ArgumentTypeError(f"{text!r} is no shard such as 3/32")
    return which, count


def parser():
    """The whole command line."""
    made = Parser(prog="orvelin-match", description=DESCRIPTION, epilog=EPILOG)
    made.set_defaults(engines=None, limit=None, each=read_words([]))
    words = {"action": _Words, "nargs": "+", "metavar": "KEY=VALUE", "default": argparse.SUPPRESS}
    _add_play(made.add_argument_group("the match").add_argument, words)
    _add_decisions(made.add_argument_group("decisions").add_argument)
    _add_runs(made.add_argument_group("the run").add_argument)
    _add_output(made.add_argument_group("output").add_argument)
    return made


def _add_play(add, words):
    add("--engine", **words, help="an engine; the first is the one that is judged")
    add("--each", **words, help="the same for all engines")
    limit = {"action": _LimitAction, "default": argparse.SUPPRESS}
    add("--tc", **limit, metavar="TIME", help="a clock in seconds: 10+0.1, 40/60, 40/1:30+0.5")
    for word, unit in zip(AMOUNTS, ("MS", "N", "N")):
        add(f"--{word}", **limit, metavar=unit, help="of each move")
    late = decimal(0, MOST_MARGIN)
    add("--margin", type=late, default=10.0, metavar="MS", help="lateness forgiven (default 10)")
    games = f"of each two who meet, an even number (default {DEFAULT_GAMES})"
    add("--games", type=number(2, MOST_GAMES), default=DEFAULT_GAMES, metavar="N", help=games)
    add("--gauntlet", action="store_true", help="the first engine against each of the others")
    openings = "PGN, EPD, FEN or lines of moves, or a folder of such lines (default: random moves)"
    add("--openings", type=file_name, metavar="FILE", help=openings)
    orders = ("sequential", "random")
    add("--order", choices=orders, default=orders[0], help="of the openings (default sequential)")
    add("--plies", type=number(0, 1000), metavar="N", help="half-moves of an opening, at most")
    add("--seed", type=number(0), default=1, metavar="N", help="of all chance (default 1)")
    variants = ("standard", "chess960")
    add("--variant", choices=variants, default=variants[0], help="(default standard)")
    add("--ponder", action="store_true", help="engines think while the opponent does")


def _add_decisions(add):
    def rule(*keys):
        return lambda words: Rule.parse(words, keys)

    def parsed(name, made, words, text):
        words = {"nargs": "+", "metavar": "KEY=VALUE", "help": f"{words}: {text}"}
        add(name, action=_Parsed, const=made, **words)

    parsed(
        "--draw",
        rule("moves", "count", "score"),
        "moves=40 count=8 score=10",
        "from move 40 on both report at most 10 for 8 moves",
    )
    parsed(
        "--resign",
        rule("count", "score"),
        "count=4 score=600",
        "for 4 moves one reports 600 or more, and the other -600 or less",
    )
    parsed(
        "--sprt",
        Sprt.parse,
        "elo0=0 elo1=5 alpha=0.05 beta=0.05",
        "ends when the results tell the two apart",
    )
    add("--max-moves", type=number(1), default=0, metavar="N", help="a longer game is drawn")


def _add_runs(add):
    jobs = {"type": number(1, MOST_JOBS), "default": 1, "metavar": "N"}
    add("--concurrency", "--jobs", **jobs, help="games at the same time (default 1)")
    count = {"type": number(1), "default": 0, "metavar": "N"}
    add("--restart", **count, help="games of a process (default all)")
    wait = {"type": seconds, "metavar": "S"}
    add("--patience", **wait, default=10, help="to wait for an answer (default 10)")
    add("--longest", **wait, default=300, help="for a search by nodes or depth (default 300)")
    add("--faults", action="store_true", help="ends at the first fault, with 1")
    add("--shard", type=shard, default=(1, 1), metavar="I/N", help="only these pairs of games")
    add("--resume", action="store_true", help="leaves out what the --jsonl file has already")


def _add_output(add):
    name = {"type": file_name, "metavar": "FILE"}
    add("--jsonl", **name, help="a line for each game when it is over")
    add("--pgn", **name, help="the games, with score, depth and clock")
    add("--json", **name, help="all figures of the table")
    folder = "what was said before a fault (default: FILE-faults, or orvelin-match-faults)"
    add("--dialogues", type=file_name, metavar="DIR", help=folder)
    add("--quiet", action="store_true", help="no progress")


def check(options):
    """UsageError when the arguments make no sense together."""
    engines = options.engines or []
    if len(engines) < 2:
        raise UsageError("a match needs two --engine or more; see --help")
    if options.games % 2:
        words = "an odd game has no second one with swapped colours"
        raise UsageError(f"--games {options.games}: {words}")
    if options.sprt and len(engines) > 2:
        raise UsageError("--sprt is for two engines")
    if options.sprt and options.shard != (1, 1):
        raise UsageError("--sprt has to see all games: not with --shard")
    if options.resume and options.jsonl is None:
        raise UsageError("--resume needs a --jsonl")
    if options.jsonl == "-" or options.pgn == "-":
        raise UsageError("--jsonl and --pgn grow while the match goes on, and need names of files")
    if options.openings is None and options.order == "random":
        raise UsageError("--order random needs --openings")
