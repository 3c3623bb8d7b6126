"""The command line of the soak run."""

import argparse
import contextlib
import functools
import os
import random

from orvelin_lib.arguments import (
    MOST_JOBS,
    MOST_SECONDS,
    Parser,
    command,
    decimal,
    file_name,
    number,
    seconds,
)
from orvelin_lib.engines import ENGINE_HELP, checked, default_engine
from orvelin_lib.files import make_folder
from orvelin_lib.tool_main import INTERRUPTED, ToolError, print_whole, run_tool, take_signals
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
engine was at fault, 1 when one was, cannot be started, or a file cannot be read or written, 2 for
bad usage, 130 when the run was interrupted.
"""


MOST_PLIES = 100000
MOST_GAMES = 1000000


def _parser():
    parser = Parser(prog="soak", description=DESCRIPTION, epilog=EPILOG)
    add = parser.add_argument
    add("--engine", type=command, metavar="CMD", help=f"engine 1: {ENGINE_HELP}")
    add("--opponent", type=command, metavar="CMD", help="engine 2 (default: engine 1)")
    add("--games", type=number(1, MOST_GAMES), default=1000, help="(default %(default)s)")
    jobs = number(1, MOST_JOBS)
    add("--jobs", type=jobs, default=1, help="games at the same time (default %(default)s)")
    add("--seed", type=int, help="the same seed gives the same starts (default: random)")
    add(
        "--controls",
        type=_controls,
        metavar="LIST",
        default=",".join(DEFAULT_CONTROLS),
        help="time controls in ms, BASE[+INC] or MOVES/BASE[+INC] (default %(default)s)",
    )
    share = decimal(0, 1)
    add("--ponder-share", type=share, default=0.5, help="games with pondering (default 0.5)")
    add("--restart", type=number(1), default=100, help="games of one process (default 100)")
    add("--hash", type=number(1), default=8, help="hash table in MiB (default %(default)s)")
    late = decimal(0, 1000 * MOST_SECONDS)
    add("--tolerance", type=late, default=10, help="ms beyond the clock forgiven (default 10)")
    add("--patience", type=seconds, default=10, help="s to wait for an answer (default 10)")
    plies = number(1, MOST_PLIES)
    add("--max-plies", type=plies, default=600, help="a longer game is drawn (default 600)")
    add("--refill", action="store_true", help="play on with a full clock where time is lost")
    name = {"type": file_name, "metavar": "FILE"}
    add("--log", **name, help="JSON lines (default build/soak/SEED.jsonl)")
    add("--resume", **name, help="take up the run of this log with its own settings")
    name["metavar"] = "DIR"
    add("--faults", **name, help="sessions of faults (default: beside the log)")
    return parser


def _controls(text):
    controls = tuple(text.split(","))
    try:
        for control in controls:
            Control.parse(control)
    except ValueError as error:
        raise argparse.ArgumentTypeError(str(error)) from None
    return controls


def _settings(options, tools):
    engine = options.engine or (default_engine(tools),)
    commands = (engine, options.opponent or engine)
    if options.seed is None:
        options.seed = random.SystemRandom().randrange(1 << 31)
    return Settings(
        commands=commands,
        seed=options.seed,
        games=options.games,
        controls=options.controls,
        ponder_share=options.ponder_share,
        restart_every=options.restart,
        hash=options.hash,
        tolerance=options.tolerance,
        patience=options.patience,
        max_plies=options.max_plies,
        refill=options.refill,
    )


def _open(options, tools):
    """(name of the log, journal, settings, entries so far)."""
    if options.resume:
        return options.resume, *journals.resume(options.resume)
    settings = _settings(options, tools)
    _require_engines(settings)
    name = options.log
    if name is None:
        root = os.path.dirname(tools)
        name = os.path.join(root, "build", "soak", f"{settings.seed}.jsonl")
    make_folder(os.path.dirname(os.path.abspath(name)))
    return name, journals.create(name, settings), settings, []


def _require_engines(settings):
    for words in settings.commands:
        checked(words)


def _play(workers, journal, summary, planned, console):
    """Takes the entries of the workers in; True when the run was interrupted."""
    interrupted = False

    def on_signal(_number, _frame):
        nonlocal interrupted
        # Once only: a second signal could meet the first inside the lock of stop().
        if not interrupted:
            interrupted = True
            workers.stop()

    take_signals(on_signal)
    for entry in workers.entries():
        summary.add(entry)
        if entry["kind"] == "game" or entry["faults"]:
            journal.write(entry)
        for fault in entry["faults"]:
            console.say(f"{fault['kind']}: {fault['detail']}: {fault['file']}")
        console.progress(lambda: summary.progress(planned))
    return interrupted


def _run(tools, arguments, console):
    options = _parser().parse_args(arguments)
    name, journal, settings, entries = _open(options, tools)
    with contextlib.closing(journal):
        _require_engines(settings)
        summary = Summary()
        for entry in entries:
            summary.add(entry)
        played = {entry["game"] for entry in entries if entry["kind"] == "game"}
        numbers = [number for number in range(1, settings.games + 1) if number not in played]
        console.say(f"seed {settings.seed}, {len(numbers)} games, log {name}")
        faults = options.faults or os.path.splitext(name)[0] + "-faults"
        workers = Workers(settings, faults, numbers, min(options.jobs, max(len(numbers), 1)))
        try:
            interrupted = _play(workers, journal, summary, settings.games, console)
        except ToolError as error:
            raise ToolError(f"{error}; go on with --resume {name}") from None
        finally:
            workers.stop()
    print_whole(summary.text(settings.games))
    if interrupted:
        console.say(f"interrupted; go on with --resume {name}")
    return 1 if not summary.clean else INTERRUPTED if interrupted else 0


def main(tools, arguments):
    """Runs the command; its exit status. The tool itself lies in the folder of the tools."""
    return run_tool("soak", functools.partial(_run, tools, arguments))
