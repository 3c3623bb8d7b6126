"""The command orvelin-suite."""

import contextlib
import functools
import hashlib
import json
import os
import shutil
import signal

from orvelin_lib.engine import EngineFailure
from orvelin_lib.engines import checked, default_engine
from orvelin_lib.files import check_writable, write_file
from orvelin_lib.journal import Journal
from orvelin_lib.tool_main import (
    INTERRUPTED,
    ToolError,
    UsageError,
    print_whole,
    run_tool,
    take_signals,
)
from suite_lib import arguments, report
from suite_lib.epd import read_suite
from suite_lib.hosts_run import HostsRun, read_chunk
from suite_lib.local_run import LocalRun
from suite_lib.player import Interrupted, Player, Stop


class _Interrupts:
    """Stops a run at the first signal, and forgets it at the second."""

    def __init__(self, run):
        self._run = run
        self.seen = False
        take_signals(self._on_signal)

    def _on_signal(self, _number, _frame):
        if not self.seen:
            self.seen = True
            self._run.stop()


def _probe(settings):
    """Starts every engine once; an error when one does not start or lacks an option."""
    stop = Stop()
    # An exception could leave an engine behind that is just being started.
    take_signals(lambda *_: stop.stop())
    for entrant in settings.entrants:
        checked(entrant.command)
        player = Player(entrant, settings, stop)
        try:
            player.start()
        except EngineFailure as failure:
            raise ToolError(f"{entrant.name}: {failure}") from None
        except Interrupted:
            break
        finally:
            player.close()
    take_signals(signal.default_int_handler)
    if stop.wanted:
        raise KeyboardInterrupt


def _head(settings, positions):
    """What a journal says of the run that it belongs to."""
    lines = "\n".join(position.line for position in positions)
    return {**settings.as_dict(), "suite": hashlib.sha256(lines.encode()).hexdigest()}


def _resumed(options, head):
    """(journal, entries so far), (None, []) when there is no journal yet; an error when it is not
    that of this run."""
    name = options.journal
    if name is None and options.resume:
        raise UsageError("--resume needs a --journal")
    if name is None or not os.path.lexists(name):
        return None, []
    if not options.resume:
        raise UsageError(f"{name} exists: go on with --resume, or name another")
    journal, old, entries = Journal.resume(name)
    if old is None:
        journal.begin(head)
        return journal, entries
    strange = [entry for entry in entries if not report.is_record(entry)]
    if old != head or strange:
        journal.close()
    if old != head:
        raise UsageError(f"{name} belongs to other positions or settings")
    if strange:
        raise ToolError(f"{name}: not a record: {json.dumps(strange[0])[:80]}")
    return journal, entries


def _check_usage(options):
    if options.suite is None:
        raise UsageError("no file of test positions; see --help")
    if not options.parallel and (options.sshlogin or options.joblog or options.retries):
        raise UsageError("--sshlogin, --joblog and --retries need --parallel")
    if options.csv == options.json == "-":
        raise UsageError("--csv and --json cannot both go to standard output")
    if options.parallel and shutil.which("parallel") is None:
        raise ToolError("--parallel needs GNU parallel: apt-get install parallel")


def _run(options, folder, settings, tasks, console):
    if options.parallel:
        return HostsRun(settings, tasks, options, os.path.join(folder, "orvelin-suite"), console)
    return LocalRun(settings, tasks, options.jobs or 1)


def _prepare(options, folder, console):
    """(settings, results, run, journal)."""
    _check_usage(options)
    positions = read_suite(options.suite, console)
    if not options.engines:
        options.engines = [
            {"command": (default_engine(folder),), "name": "orvelin", "options": []}
        ]
    settings = arguments.settings_of(options)
    head = _head(settings, positions)
    journal, entries = _resumed(options, head)
    results = report.Results(settings, positions)
    for entry in entries:
        results.add(entry)
    run = _run(options, folder, settings, results.missing(), console)
    if not options.parallel:
        _probe(settings)
    for name in filter(None, (options.csv, options.json)):
        check_writable(name)
    if options.journal and journal is None:
        journal = Journal.create(options.journal, head)
    return settings, results, run, journal


def _collect(run, results, journal, console):
    """Takes all records in; True when the run was interrupted."""
    interrupts = _Interrupts(run)
    with contextlib.closing(run.entries()) as entries:
        for entry in entries:
            if results.add(entry) and journal is not None:
                journal.write(entry)
            console.progress(results.progress)
    console.say(results.progress())
    return interrupts.seen


def _run_chunk(text):
    """One job on a host: the records go to standard output."""
    settings, tasks = read_chunk(text)
    run = LocalRun(settings, tasks, 1)
    interrupts = _Interrupts(run)
    with contextlib.closing(run.entries()) as entries:
        for entry in entries:
            print_whole(json.dumps(entry) + "\n")
    return INTERRUPTED if interrupts.seen else 0


def _put_out(options, settings, results, console):
    """Prints and writes what came out; True when all of it could be written."""
    outputs = []
    if "-" not in (options.csv, options.json):
        outputs.append(lambda: print_whole(report.text(results) + "\n"))
    if options.csv:
        outputs.append(lambda: write_file(options.csv, report.csv_text(results)))
    if options.json:
        outputs.append(
            lambda: write_file(options.json, report.json_text(results, settings, options.suite))
        )
    is_whole = True
    for write in outputs:
        try:
            write()
        except ToolError as error:
            console.say(error)
            is_whole = False
    return is_whole


def _finish(options, settings, results, interrupted, console):
    """Tells what came out; the exit status."""
    is_whole = _put_out(options, settings, results, console)
    if interrupted:
        if options.journal:
            console.say(f"interrupted; go on with --resume --journal {options.journal}")
        return INTERRUPTED
    if results.missing():
        console.say("some positions have no result")
        return 1
    enough = [
        arguments.reached(options.threshold, summary["solved"], summary["positions"])
        for summary in results.summaries()
    ]
    return 0 if is_whole and all(enough) else 1


def _run_tool(folder, words, console):
    options = arguments.parser().parse_args(words)
    if options.run_chunk:
        return _run_chunk(options.run_chunk)
    settings, results, run, journal = _prepare(options, folder, console)
    with contextlib.closing(journal) if journal else contextlib.nullcontext():
        try:
            interrupted = _collect(run, results, journal, console)
        except ToolError as error:
            # The journal cannot take more: what was found so far is told all the same.
            console.say(error)
            _finish(options, settings, results, False, console)
            return 1
    return _finish(options, settings, results, interrupted, console)


def main(folder, words):
    """Runs the command; its exit status. The tool itself lies in the folder."""
    return run_tool("orvelin-suite", functools.partial(_run_tool, folder, words))
