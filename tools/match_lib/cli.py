"""The command orvelin-match."""

import contextlib
import functools
import signal

from match_lib import arguments, commands, report
from match_lib.match import Match
from orvelin_lib.files import write_file
from orvelin_lib.tool_main import ToolError, print_whole, run_tool, take_signals


class _Interruption(KeyboardInterrupt):
    """A signal ends the run before a game was begun."""

    def __init__(self, number):
        super().__init__()
        self.number = number


def _interrupt(number, _frame):
    raise _Interruption(number)


def _end(console, number, options=None):
    """Tells which signal it was; the exit status."""
    name = f" by {signal.Signals(number).name}" if number != signal.SIGINT else ""
    console.say(f"interrupted{name}{_hint(options) if options else ''}")
    return 128 + number


def _hint(options):
    return f"; go on with --resume --jsonl {options.jsonl}" if options.jsonl else ""


def _put_out(options, standings):
    if options.json:
        write_file(options.json, report.json_text(standings, options.sprt))
    if options.json != "-":
        print_whole(report.text(standings, options.sprt))


def _play(words, console):
    options = arguments.parser().parse_args(words)
    arguments.check(options)
    match = Match(options, console)
    with contextlib.closing(match):
        try:
            signalled = match.play()
        except ToolError as error:
            raise ToolError(f"{error}{_hint(options)}") from None
    _put_out(options, match.standings)
    if signalled is not None:
        return _end(console, signalled, options)
    return 1 if options.faults and match.standings.faults else 0


def _run(words, console):
    take_signals(_interrupt)
    try:
        return _chosen(words, console)
    except _Interruption as interruption:
        return _end(console, interruption.number)


def _chosen(words, console):
    if words[:1] == ["merge"]:
        return commands.merge(words[1:])
    if words[:1] == ["report"]:
        return commands.report_files(words[1:])
    if words[:1] == ["keep"]:
        return commands.keep(words[1:])
    return _play(words, console)


def main(words):
    """Runs the command; its exit status."""
    return run_tool("orvelin-match", functools.partial(_run, words))
