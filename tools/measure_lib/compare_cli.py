"""The command line of the comparison."""

import argparse
import json
import os
import signal
import sys

from measure_lib import machine, speed
from orvelin_lib.arguments import positive
from orvelin_lib.engines import MissingProgram, built_engine

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
exit status is 0 when all engines gave their figures, 1 when one is missing, died or hangs, 2 for
bad usage.
"""


def _named_program(text):
    name, mark, path = text.partition("=")
    if not (name and mark and path):
        raise argparse.ArgumentTypeError(f"{text} is not NAME=PATH")
    return name, path


def _peers(text):
    names = [] if text in ("", "none") else text.split(",")
    for name in names:
        if name not in speed.PEERS:
            raise argparse.ArgumentTypeError(
                f"{name} is not one of {', '.join(speed.PEERS)}, none"
            )
    return names


def _parser():
    parser = argparse.ArgumentParser(
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
    add("--ours", metavar="FILE", help="this engine (default: what ./run builds)")
    add(
        "--also",
        action="append",
        default=[],
        type=_named_program,
        metavar="NAME=FILE",
        help="one more UCI engine, such as the build before a change; may come again",
    )
    add("--hash", type=positive, default=128, metavar="MiB", help="(default %(default)s)")
    add("--reference", default="stockfish", help="engine of ratio 1 (default %(default)s)")
    add("--patience", type=float, default=10, help="s beyond the time (default %(default)s)")
    add(
        "--processor-time",
        action="store_true",
        help="counts what an engine had of the processor, for a machine that is busy",
    )
    add("--no-install", action="store_true", help="installs nothing")
    add("--json", metavar="FILE", help="writes all rates there too")
    return parser


def _candidates(options, root):
    ours = options.ours or built_engine(root)
    candidates = [speed.Candidate("orvelin", (os.path.abspath(ours),))]
    candidates += [speed.Candidate(name, (os.path.abspath(path),)) for name, path in options.also]
    candidates += [speed.PEERS[name] for name in options.engines]
    names = [candidate.name for candidate in candidates]
    if len(set(names)) != len(names):
        raise ValueError("two engines have the same name")
    return candidates


def _report(words):
    print(f"compare-speed: {words}", file=sys.stderr)


def main(root, arguments):
    """Runs the command; its exit status."""
    options = _parser().parse_args(arguments)
    signal.signal(signal.SIGTERM, lambda *_: sys.exit(143))
    try:
        packages = [speed.PEERS[name].package for name in options.engines]
        if packages and not options.no_install:
            machine.install(root, packages)
        candidates = _candidates(options, root)
    except ValueError as error:
        _report(error)
        return 2
    except MissingProgram as error:
        _report(error)
        return 1
    comparison = speed.Comparison(candidates, options, _report)
    try:
        comparison.run()
    except KeyboardInterrupt:
        _report("interrupted")
        return 130
    contenders = comparison.contenders
    print(f"{machine.description()}\n\n{speed.text(contenders, options.reference)}")
    if options.json:
        with open(options.json, "w", encoding="utf-8") as file:
            json.dump(speed.record(contenders, options), file, indent=2)
            file.write("\n")
    return 0 if all(contender.complete for contender in contenders) else 1
