"""The command line: engines with options of their own, limits, thresholds."""

import argparse
import os

from orvelin_lib.arguments import (
    MOST_JOBS,
    Parser,
    command,
    decimal,
    file_name,
    number,
    positive,
    seconds,
)
from orvelin_lib.engines import ENGINE_HELP
from orvelin_lib.tool_main import UsageError
from suite_lib.settings import Entrant, Settings

DESCRIPTION = """
Runs a file of test positions (EPD with the operations bm, am, dm and id) on one or several UCI
engines, and tells for each how many it solved, after which time, and with how many nodes.
"""
EPILOG = """
--name and --option belong to the --engine before them. The table goes to standard output,
progress to standard error; as FILE, - is standard input or output. The exit status is 0 when every
engine reaches the threshold, 1 when one does not, cannot be started, or a file cannot be read or
written, 2 for bad usage, 130 when the run was interrupted.
"""
DEFAULT_MOVETIME = 1000


class _EngineAction(argparse.Action):
    """Collects engines, and what was said of the last of them."""

    def __call__(self, parser, namespace, value, option=None):
        engines = list(namespace.engines or [])
        if self.const == "engine":
            engines.append({"command": value, "options": []})
        elif not engines:
            parser.error(f"{option} stands before every --engine")
        elif self.const == "name":
            engines[-1]["name"] = value
        else:
            engines[-1]["options"].append(value)
        namespace.engines = engines


def _option(text):
    name, mark, value = text.partition("=")
    if not (name and mark):
        raise argparse.ArgumentTypeError(f"{text!r} is not NAME=VALUE")
    return name, value


def threshold(text):
    """(share, count), of which one is None."""
    if text.endswith("%"):
        return decimal(0, 100)(text[:-1]) / 100, None
    return None, number(0)(text)


def reached(wanted, solved, positions):
    """True when so many solved positions are enough."""
    share, count = wanted
    return solved >= (count if share is None else share * positions)


def parser():
    """The whole command line."""
    made = Parser(prog="orvelin-suite", description=DESCRIPTION, epilog=EPILOG)
    add = made.add_argument
    add("suite", nargs="?", type=file_name, metavar="FILE", help="test positions")
    engine = {"action": _EngineAction, "dest": "engines"}
    add("--engine", **engine, const="engine", type=command, metavar="CMD", help=ENGINE_HELP)
    named = {"metavar": "NAME", "help": "of the engine (default: that of its program)"}
    add("--name", **engine, const="name", **named)
    add("--option", **engine, const="option", type=_option, metavar="NAME=VALUE", help="of it")
    limit = made.add_mutually_exclusive_group()
    for word, unit in (("movetime", "MS"), ("nodes", "N"), ("depth", "N")):
        note = f" (default {DEFAULT_MOVETIME})" if word == "movetime" else ""
        limit.add_argument(f"--{word}", type=positive, metavar=unit, help=f"of a search{note}")
    wait = {"type": seconds, "metavar": "S"}
    add("--patience", **wait, default=10, help="to wait for an answer (default 10)")
    add("--longest", **wait, default=300, help="for a search by nodes or depth (default 300)")
    add("--fresh", action="store_true", help="a new process for each position")
    jobs = "searches at the same time (default 1; with --parallel one for each core)"
    add("--jobs", type=number(1, MOST_JOBS), metavar="N", help=jobs)
    add(
        "--threshold",
        type=threshold,
        default="100%",
        metavar="N|N%",
        help="positions or share that every engine has to solve (default 100%%)",
    )
    add("--csv", type=file_name, metavar="FILE", help="a row for each engine and position")
    add("--json", type=file_name, metavar="FILE", help="all figures")
    add("--journal", type=file_name, metavar="FILE", help="notes each position when it is finished")
    add("--resume", action="store_true", help="leaves out what the journal has already")
    hosts = made.add_argument_group("several hosts")
    add = hosts.add_argument
    add("--parallel", action="store_true", help="share the positions out by GNU parallel")
    add("--sshlogin", action="append", default=[], metavar="HOSTS", help="as parallel has it")
    add("--joblog", metavar="FILE", help="as parallel has it")
    add("--retries", type=positive, metavar="N", help="as parallel has it")
    add("--chunk", type=positive, default=10, metavar="N", help="positions of a job (default 10)")
    add("--program", metavar="CMD", help="orvelin-suite on the hosts (default: its path here)")
    add("--run-chunk", metavar="JSON", help=argparse.SUPPRESS)
    return made


def settings_of(options):
    """The settings; UsageError when two engines have one name."""
    entrants = []
    for engine in options.engines:
        name = engine.get("name") or os.path.basename(engine["command"][0])
        if name in [entrant.name for entrant in entrants]:
            raise UsageError(f"two engines are called {name}: give one a --name")
        entrants.append(Entrant(name, engine["command"], tuple(engine["options"])))
    amounts = {word: getattr(options, word) for word in ("movetime", "nodes", "depth")}
    limit = next((word for word, amount in amounts.items() if amount), "movetime")
    return Settings(
        tuple(entrants),
        limit,
        amounts[limit] or DEFAULT_MOVETIME,
        options.patience,
        options.longest,
        options.fresh,
    )
