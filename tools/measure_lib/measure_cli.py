"""The command line of the measurements."""

import functools
import json
import os

from explain_lib.analysis import ANALYSE_HELP, default_analyser
from measure_lib import machine
from measure_lib.analysis import Analysis
from measure_lib.instructions import Instructions
from measure_lib.latency import LatencyMeasurement
from measure_lib.searches import Growth, HashSizes, Lines, read_positions
from measure_lib.start import StartMeasurement
from orvelin_lib.arguments import Parser, command, file_name, number, numbers, positive, seconds
from orvelin_lib.engines import ENGINE_HELP, checked, default_engine
from orvelin_lib.files import check_writable, write_file
from orvelin_lib.tool_main import print_whole, run_tool

DESCRIPTION = """
Measures the engine from outside, as a GUI meets it. start: from exec to uciok, resident
memory, ucinewgame, change of the hash size. latency: stop to bestmove and isready to readyok
during a search, also with a pipe full of info lines. growth: nodes, time and branching factor by
depth on twenty positions. hash: nodes a second by size of the table. multipv: what several lines
cost. analysis: nodes a second of orvelin-analyse beside the engine, and what the leaves take; give
both programs of one build. instructions: those of the command bench by folder, function and file,
under callgrind; it needs a build with -g. The last two do not belong to "all".
"""
EPILOG = """
Tables go to standard output as Markdown, progress to standard error. The exit status is 0 when
all was measured, 1 when the engine cannot be started, died or did not answer, or a file cannot be
read or written, 2 for bad usage, 130 when it was interrupted.
"""

MEASUREMENTS = {
    "start": StartMeasurement,
    "latency": LatencyMeasurement,
    "growth": Growth,
    "hash": HashSizes,
    "multipv": Lines,
    "analysis": Analysis,
    "instructions": Instructions,
}
ALL = ("start", "latency", "growth", "hash", "multipv")


# A search is no deeper.
MOST_DEPTH = 100


def _parser(tools):
    positions = os.path.join(os.path.dirname(tools), "bench", "positions.txt")
    parser = Parser(prog="measure", description=DESCRIPTION, epilog=EPILOG)
    add = parser.add_argument
    add("what", nargs="+", choices=[*MEASUREMENTS, "all"], help="what to measure")
    add("--engine", type=command, metavar="CMD", help=ENGINE_HELP)
    add("--analyse", type=command, metavar="CMD", help=ANALYSE_HELP)
    add("--positions", metavar="FILE", default=positions, help="(default bench/positions.txt)")
    add(
        "--samples",
        type=positive,
        default=50,
        help="starts, and moments of a search (default %(default)s)",
    )
    add(
        "--depth",
        type=number(1, MOST_DEPTH),
        help=f"of growth (default {Growth.default_depth}), multipv ({Lines.default_depth}) and "
        f"analysis ({Analysis.default_depth})",
    )
    add(
        "--movetime",
        type=positive,
        default=2000,
        metavar="MS",
        help="of a search for hash and start (default %(default)s)",
    )
    add(
        "--sizes",
        type=numbers,
        default=[6, 16, 64, 128, 512, 1024, 4096],
        metavar="LIST",
        help="MiB for hash and start (default 6,16,64,128,512,1024,4096)",
    )
    add("--rounds", type=positive, default=3, help="for hash and analysis (default %(default)s)")
    add(
        "--lines",
        type=numbers,
        default=[1, 2, 4, 8],
        metavar="LIST",
        help="for multipv (default 1,2,4,8)",
    )
    add("--before", type=command, metavar="CMD", help="an older build with -g, for instructions")
    add("--patience", type=seconds, default=30, help="s to wait for an answer (default 30)")
    add("--json", type=file_name, metavar="FILE", help="all figures; with - in place of the tables")
    return parser


def _engine(options, tools):
    if options.engine is None and options.what == ["instructions"]:
        return (machine.profiling_engine(tools),)
    return checked(options.engine or (default_engine(tools),))


def _prepare(options, tools, console):
    """Replaces what the options name by what it is."""
    options.positions = read_positions(options.positions, console)
    if options.json:
        check_writable(options.json)
    if "instructions" in options.what:
        machine.install(tools, ["valgrind"])
    options.engine = _engine(options, tools)
    if "analysis" in options.what:
        options.analyse = checked(options.analyse or (default_analyser(tools),))
    if options.before is not None:
        options.before = checked(options.before)
    if "all" in options.what:
        options.what = list(ALL)


def _run(tools, arguments, console):
    options = _parser(tools).parse_args(arguments)
    _prepare(options, tools, console)
    put_out = (lambda _: None) if options.json == "-" else print_whole
    put_out(machine.description() + "\n")
    records = {}
    for what in dict.fromkeys(options.what):
        measurement = MEASUREMENTS[what](options, console.say)
        records[what] = measurement.run()
        put_out(f"\n{measurement.text(records[what])}\n")
    if options.json:
        write_file(options.json, json.dumps(records, indent=2) + "\n")
    return 0


def main(tools, arguments):
    """Runs the command; its exit status. The tool itself lies in the folder of the tools."""
    return run_tool("measure", functools.partial(_run, tools, arguments))
