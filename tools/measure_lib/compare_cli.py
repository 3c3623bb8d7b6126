"""The command line of the comparison."""

import argparse
import functools
import json

from measure_lib import machine, speed
from orvelin_lib.arguments import Parser, command, file_name, positive, seconds
from orvelin_lib.engines import ENGINE_HELP, checked, default_engine
from orvelin_lib.files import check_writable, write_file
from orvelin_lib.tool_main import UsageError, print_whole, run_tool

DESCRIPTION = """
Compares nodes a second with Debian's classical engines: each searches the three positions of the
command bench for a fixed time, on one thread and with the same hash table, from an empty table,
turn by turn and in several rounds. Rates are the nodes and the time of the last info line that
tells them; where an engine's own time is not that of the clock on the wall, the latter counts.
Every engine counts nodes in its own way, so a ratio says how fast an engine goes through its own
kind of tree, and not which is better. Packages that are missing are installed.
"""
EPILOG = """
The median over the rounds stands for a position, the geometric mean of the three for the engine.
The spread is the way from the slowest to the fastest round: smaller differences mean nothing. The
exit status is 0 when all engines gave their figures, 1 when one is missing, died or hangs, or the
figures cannot be written, 2 for bad usage, 130 when it was interrupted.
"""


def _named_program(text):
    name, mark, words = text.partition("=")
    if not (name and mark and words):
        raise argparse.ArgumentTypeError(f"{text!r} is not NAME=CMD")
    return name, command(words)


def _peers(text):
    names = [] if text in ("", "none") else text.split(",")
    for name in names:
        if name not in speed.PEERS:
            raise argparse.ArgumentTypeError(
                f"{name} is not one of {', '.join(speed.PEERS)}, none"
            )
    return names


def _parser():
    parser = Parser(
        prog="compare-speed", description=DESCRIPTION, epilog=EPILOG
    )
    add = parser.add_argument
    add("--rounds", type=positive, default=3, help="rounds (default %(default)s)")
    add(
        "--movetime",
        type=positive,
        default=2000,
        metavar="MS",
        help="time for a position (default %(default)s)",
    )
    add(
        "--engines",
        type=_peers,
        default=list(speed.DEFAULT_PEERS),
        metavar="LIST",
        help=f"of {','.join(speed.PEERS)}, or none (default: all but stockfish-nnue)",
    )
    add("--engine", type=command, metavar="CMD", help=ENGINE_HELP)
    add(
        "--also",
        action="append",
        default=[],
        type=_named_program,
        metavar="NAME=CMD",
        help="one more UCI engine, such as the build before a change; may come again",
    )
    add("--hash", type=positive, default=128, metavar="MiB", help="(default %(default)s)")
    add("--reference", default="stockfish", help="engine of ratio 1 (default %(default)s)")
    add("--patience", type=seconds, default=10, help="s beyond the time (default %(default)s)")
    add(
        "--processor-time",
        action="store_true",
        help="counts what an engine had of the processor, for a machine that is busy",
    )
    add("--no-install", action="store_true", help="installs nothing")
    add("--json", type=file_name, metavar="FILE", help="all rates; with - in place of the table")
    return parser


def _candidates(options, tools):
    ours = checked(options.engine or (default_engine(tools),))
    candidates = [speed.Candidate("orvelin", ours)]
    candidates += [speed.Candidate(name, words) for name, words in options.also]
    candidates += [speed.PEERS[name] for name in options.engines]
    names = [candidate.name for candidate in candidates]
    if len(set(names)) != len(names):
        raise UsageError("two engines have the same name")
    return candidates


def _run(tools, arguments, console):
    options = _parser().parse_args(arguments)
    if options.json:
        check_writable(options.json)
    packages = [speed.PEERS[name].package for name in options.engines]
    if packages and not options.no_install:
        machine.install(tools, packages)
    comparison = speed.Comparison(_candidates(options, tools), options, console.say)
    comparison.run()
    contenders = comparison.contenders
    if options.json != "-":
        print_whole(f"{machine.description()}\n\n{speed.text(contenders, options.reference)}\n")
    if options.json:
        write_file(
            options.json, json.dumps(speed.record(contenders, options), indent=2) + "\n"
        )
    return 0 if all(contender.complete for contender in contenders) else 1


def main(tools, arguments):
    """Runs the command; its exit status. The tool itself lies in the folder of the tools."""
    return run_tool("compare-speed", functools.partial(_run, tools, arguments))
