"""The command orvelin-match."""

import contextlib
import functools

from match_lib import arguments, commands, report
from match_lib.match import Match
from orvelin_lib.files import write_file
from orvelin_lib.tool_main import INTERRUPTED, ToolError, print_whole, run_tool


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
            interrupted = match.play()
        except ToolError as error:
            hint = f"; go on with --resume --jsonl {options.jsonl}" if options.jsonl else ""
            raise ToolError(f"{error}{hint}") from None
    _put_out(options, match.standings)
    if interrupted:
        if options.jsonl:
            console.say(f"interrupted; go on with --resume --jsonl {options.jsonl}")
        return INTERRUPTED
    return 1 if options.faults and match.standings.faults else 0


def _run(words, console):
    if words[:1] == ["merge"]:
        return commands.merge(words[1:])
    if words[:1] == ["report"]:
        return commands.report_files(words[1:])
    return _play(words, console)


def main(words):
    """Runs the command; its exit status."""
    return run_tool("orvelin-match", functools.partial(_run, words))
