"""The command line of the measurements."""

import argparse
import json
import os
import signal
import sys

from measure_lib import machine
from measure_lib.instructions import Instructions
from measure_lib.latency import LatencyMeasurement
from measure_lib.searches import Growth, HashSizes, Lines, read_positions
from measure_lib.start import StartMeasurement
from orvelin_lib.arguments import positive, positive_list
from orvelin_lib.engine import EngineFailure
from orvelin_lib.engines import MissingProgram, built_engine

DESCRIPTION = """
Measures the engine from outside, as an interface meets it. start: from exec to uciok, resident
memory, ucinewgame, change of the hash size. latency: stop to bestmove and isready to readyok
during a search, also with a pipe full of info lines. growth: nodes, time and branching factor by
depth on twenty positions. hash: nodes a second by size of the table. multipv: what several lines
cost. instructions: those of the command bench by folder, function and file, under callgrind; it
wants a build with -g, and does not belong to "all".
"""
EPILOG = """
Tables go to standard output as Markdown, progress to standard error. The exit status is 0 when
all was measured, 1 when the engine died or did not answer, 2 for bad usage.
"""

MEASUREMENTS = {
    "start": StartMeasurement,
    "latency": LatencyMeasurement,
    "growth": Growth,
    "hash": HashSizes,
    "multipv": Lines,
    "instructions": Instructions,
}
ALL = ("start", "latency", "growth", "hash", "multipv")


def _parser(root):
    positions = os.path.join(root, "bench", "positions.txt")
    parser = argparse.ArgumentParser(prog="measure", description=DESCRIPTION, epilog=EPILOG)
    add = parser.add_argument
    add("what", nargs="+", choices=[*MEASUREMENTS, "all"], help="what to measure")
    add("--engine", metavar="FILE", help="(default: what ./run builds)")
    add("--positions", metavar="FILE", default=positions, help="(default bench/positions.txt)")
    add(
        "--samples",
        type=positive,
        default=50,
        help="starts, and moments of a search (default %(default)s)",
    )
    add(
        "--depth",
        type=positive,
        help=f"of growth (default {Growth.default_depth}) and multipv ({Lines.default_depth})",
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
        type=positive_list,
        default=[6, 16, 64, 128, 512, 1024, 4096],
        metavar="LIST",
        help="MiB for hash and start (default 6,16,64,128,512,1024,4096)",
    )
    add("--rounds", type=positive, default=3, help="for hash (default %(default)s)")
    add(
        "--lines",
        type=positive_list,
        default=[1, 2, 4, 8],
        metavar="LIST",
        help="for multipv (default 1,2,4,8)",
    )
    add("--before", metavar="FILE", help="an older build with -g, for instructions")
    add("--patience", type=float, default=30, help="s to wait for an answer (default 30)")
    add("--json", metavar="FILE", help="writes all figures there too")
    return parser


def _report(words):
    print(f"measure: {words}", file=sys.stderr)


def _prepare(options, root):
    """Replaces what the options name by what it is."""
    options.positions = read_positions(options.positions)
    if "instructions" in options.what:
        machine.install(root, ["valgrind"])
    if options.engine is None:
        debug = options.what == ["instructions"]
        options.engine = machine.profiling_engine(root) if debug else built_engine(root)
    options.engine = os.path.abspath(options.engine)
    if "all" in options.what:
        options.what = list(ALL)


def main(root, arguments):
    """Runs the command; its exit status."""
    options = _parser(root).parse_args(arguments)
    signal.signal(signal.SIGTERM, lambda *_: sys.exit(143))
    try:
        _prepare(options, root)
    except (OSError, ValueError) as error:
        _report(error)
        return 2
    except MissingProgram as error:
        _report(error)
        return 1
    print(machine.description())
    records = {}
    try:
        for what in dict.fromkeys(options.what):
            measurement = MEASUREMENTS[what](options, _report)
            records[what] = measurement.run()
            print(f"\n{measurement.text(records[what])}", flush=True)
    except EngineFailure as failure:
        _report(f"engine: {failure}")
        return 1
    except KeyboardInterrupt:
        _report("interrupted")
        return 130
    if options.json:
        with open(options.json, "w", encoding="utf-8") as file:
            json.dump(records, file, indent=2)
            file.write("\n")
    return 0
