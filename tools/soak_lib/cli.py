"""The command line of the soak run."""

import argparse
import os
import random
import signal
import sys
import time

from soak_lib import journal as journals
from soak_lib.clock import DEFAULT_CONTROLS, Control
from soak_lib.runner import Settings, Workers
from soak_lib.summary import Summary

DESCRIPTION = """
Plays very fast games between two copies of the engine, referees them, and counts what must not
happen: illegal moves, crashes, answers that are lost or that nobody asked for, growing memory.
Games lost on time are counted apart, with their clock: on the shortest clocks the rules of the
engine's time budget lose on time, and a clock on which the budget would be zero ("no budget")
ends the game before the engine is asked. With --refill such games go on, so that games on the
shortest clocks are whole ones.
"""
EPILOG = """
Ctrl-C ends the run with its summary; --resume takes it up again. The exit status is 0 when no
engine was at fault, 1 when one was, 2 for bad usage, 130 when the run was interrupted.
"""


def _parser(root):
    default_engine = os.path.join(root, "build", "release", "orvelin")
    parser = argparse.ArgumentParser(prog="soak", description=DESCRIPTION, epilog=EPILOG)
    add = parser.add_argument
    add("--engine", metavar="FILE", default=default_engine, help="engine 1 (default %(default)s)")
    add("--opponent", metavar="FILE", help="engine 2 (default: the same as engine 1)")
    add("--games", type=_positive, default=1000, help="number of games (default %(default)s)")
    add("--jobs", type=_positive, default=1, help="games at the same time (default %(default)s)")
    add("--seed", type=int, help="the same seed gives the same starts (default: random)")
    add(
        "--controls",
        metavar="LIST",
        default=",".join(DEFAULT_CONTROLS),
        help="time controls in ms, BASE[+INC] or MOVES/BASE[+INC] (default %(default)s)",
    )
    add("--ponder-share", type=float, default=0.5, help="games with pondering (default 0.5)")
    add("--restart", type=_positive, default=100, help="games of one process (default 100)")
    add("--hash", type=_positive, default=8, help="hash table in MiB (default %(default)s)")
    add("--tolerance", type=float, default=10, help="ms beyond the clock forgiven (default 10)")
    add("--patience", type=float, default=10, help="s to wait for an answer (default 10)")
    add("--max-plies", type=_positive, default=600, help="a longer game is drawn (default 600)")
    add("--refill", action="store_true", help="play on with a full clock where time is lost")
    add("--log", metavar="FILE", help="JSON lines (default build/soak/SEED.jsonl)")
    add("--resume", metavar="FILE", help="take up the run of this log with its own settings")
    add("--faults", metavar="DIR", help="sessions of faults (default: beside the log)")
    return parser


def _positive(text):
    value = int(text)
    if value < 1:
        raise argparse.ArgumentTypeError(f"{text} is below 1")
    return value


def _settings(options):
    engines = (options.engine, options.opponent or options.engine)
    controls = tuple(options.controls.split(","))
    for control in controls:
        Control.parse(control)
    if options.seed is None:
        options.seed = random.SystemRandom().randrange(1 << 31)
    return Settings(
        engines=tuple(os.path.abspath(engine) for engine in engines),
        seed=options.seed,
        games=options.games,
        controls=controls,
        ponder_share=options.ponder_share,
        restart_every=options.restart,
        hash=options.hash,
        tolerance=options.tolerance,
        patience=options.patience,
        max_plies=options.max_plies,
        refill=options.refill,
    )


def _open(options, root):
    """(name of the log, journal, settings, entries so far)."""
    if options.resume:
        return options.resume, *journals.resume(options.resume)
    settings = _settings(options)
    name = options.log
    if name is None:
        name = os.path.join(root, "build", "soak", f"{settings.seed}.jsonl")
    os.makedirs(os.path.dirname(os.path.abspath(name)), exist_ok=True)
    _require_engines(settings)
    return name, journals.create(name, settings), settings, []


def _require_engines(settings):
    for engine in settings.engines:
        if not os.access(engine, os.X_OK):
            raise ValueError(f"{engine} is no program; build it or name another with --engine")


def _play(workers, journal, summary, planned):
    """Takes the entries of the workers in; True when the run was interrupted."""
    interrupted = False

    def on_signal(_number, _frame):
        nonlocal interrupted
        # Once only: a second signal could meet the first inside the lock of stop().
        if not interrupted:
            interrupted = True
            workers.stop()

    for number in (signal.SIGINT, signal.SIGTERM):
        signal.signal(number, on_signal)
    shown = 0.0
    for entry in workers.entries():
        summary.add(entry)
        if entry["kind"] == "game" or entry["faults"]:
            journal.write(entry)
        for fault in entry["faults"]:
            print(f"soak: {fault['kind']}: {fault['detail']}: {fault['file']}", file=sys.stderr)
        if time.monotonic() - shown >= 2:
            shown = time.monotonic()
            print(f"soak: {summary.progress(planned)}", file=sys.stderr)
    return interrupted


def main(root, arguments):
    """Runs the command; its exit status."""
    options = _parser(root).parse_args(arguments)
    try:
        name, journal, settings, entries = _open(options, root)
        _require_engines(settings)
    except (OSError, ValueError) as error:
        print(f"soak: {error}", file=sys.stderr)
        return 2
    summary = Summary()
    for entry in entries:
        summary.add(entry)
    played = {entry["game"] for entry in entries if entry["kind"] == "game"}
    numbers = [number for number in range(1, settings.games + 1) if number not in played]
    print(f"soak: seed {settings.seed}, {len(numbers)} games, log {name}", file=sys.stderr)
    faults = options.faults or os.path.splitext(name)[0] + "-faults"
    workers = Workers(settings, faults, numbers, options.jobs)
    try:
        interrupted = _play(workers, journal, summary, settings.games)
    except RuntimeError as error:
        print(f"soak: {error}; go on with --resume {name}", file=sys.stderr)
        return 1
    finally:
        workers.stop()
        journal.close()
    print(summary.text(settings.games), end="")
    if interrupted:
        print(f"soak: interrupted; go on with --resume {name}", file=sys.stderr)
    return 1 if not summary.clean else 130 if interrupted else 0
