"""The command orvelin-suite."""

import contextlib
import hashlib
import json
import os
import shutil
import signal
import sys
import time

from measure_lib import machine
from suite_lib import arguments, report
from suite_lib.epd import read_suite
from suite_lib.hosts_run import HostsRun, read_chunk
from suite_lib.local_run import LocalRun
from suite_lib.player import Player, Stop
from uci_lib.engine import EngineFailure
from uci_lib.journal import Journal

PROGRESS_SECONDS = 2


def _say(words):
    print(f"orvelin-suite: {words}", file=sys.stderr, flush=True)


class _Interrupts:
    """Stops a run at the first signal, and forgets it at the second."""

    def __init__(self, run):
        self._run = run
        self.seen = False
        for number in (signal.SIGINT, signal.SIGTERM, signal.SIGHUP):
            signal.signal(number, self._on_signal)

    def _on_signal(self, _number, _frame):
        if not self.seen:
            self.seen = True
            self._run.stop()


def _read(name):
    if name == "-":
        return read_suite(sys.stdin, "standard input")
    with open(name, encoding="utf-8") as file:
        return read_suite(file, name)


def _probe(settings):
    """Starts every engine once; ValueError when one does not start or lacks an option."""
    for entrant in settings.entrants:
        player = Player(entrant, settings, Stop())
        try:
            player.start()
        except EngineFailure as failure:
            raise ValueError(f"{entrant.name}: {failure}") from None
        finally:
            player.close()


def _journal(options, settings, positions):
    """(journal, entries so far); ValueError when the journal is that of another run."""
    if options.journal is None:
        if options.resume:
            raise ValueError("--resume needs a --journal")
        return None, []
    lines = "\n".join(position.line for position in positions)
    head = {**settings.as_dict(), "suite": hashlib.sha256(lines.encode()).hexdigest()}
    if not (options.resume and os.path.exists(options.journal)):
        return Journal.create(options.journal, head), []
    journal, old, entries = Journal.resume(options.journal)
    if old != head:
        journal.close()
        raise ValueError(f"{options.journal} belongs to other positions or settings")
    return journal, entries


def _default_engine(folder):
    """The one installed beside this program, or what the repository builds."""
    beside = os.path.join(folder, "orvelin")
    if os.access(beside, os.X_OK):
        return beside
    return machine.built_engine(os.path.dirname(folder))


def _prepare(options, folder):
    """(settings, results, journal); ValueError or OSError for bad usage."""
    if options.suite is None:
        raise ValueError("no file of test positions")
    if not options.parallel and (options.sshlogin or options.joblog or options.retries):
        raise ValueError("--sshlogin, --joblog and --retries need --parallel")
    if options.parallel and shutil.which("parallel") is None:
        raise ValueError("--parallel needs GNU parallel: apt-get install parallel")
    positions = _read(options.suite)
    if not options.engines:
        options.engines = [
            {"command": (_default_engine(folder),), "name": "orvelin", "options": []}
        ]
    settings = arguments.settings_of(options)
    if not options.parallel:
        _probe(settings)
    journal, entries = _journal(options, settings, positions)
    results = report.Results(settings, positions)
    for entry in entries:
        results.add(entry)
    return settings, results, journal


def _collect(run, results, journal):
    """Takes all records in; True when the run was interrupted."""
    interrupts = _Interrupts(run)
    shown = time.monotonic()
    end = "\r" if sys.stderr.isatty() else "\n"
    for entry in run.entries():
        if results.add(entry) and journal is not None:
            journal.write(entry)
        if time.monotonic() - shown >= PROGRESS_SECONDS:
            shown = time.monotonic()
            print(f"orvelin-suite: {results.progress()}", end=end, file=sys.stderr, flush=True)
    _say(results.progress())
    return interrupts.seen


def _run_chunk(text):
    """One job on a host: the records go to standard output."""
    settings, tasks = read_chunk(text)
    run = LocalRun(settings, tasks, 1)
    interrupts = _Interrupts(run)
    for entry in run.entries():
        print(json.dumps(entry), flush=True)
    return 130 if interrupts.seen else 0


def _finish(options, settings, results, interrupted):
    """Prints and writes what came out; the exit status."""
    print(report.text(results), flush=True)
    if options.csv:
        report.write_csv(options.csv, results)
    if options.json:
        report.write_json(options.json, results, settings, options.suite)
    if interrupted:
        if options.journal:
            _say(f"interrupted; go on with --resume --journal {options.journal}")
        return 130
    if results.missing():
        _say("some positions have no result")
        return 1
    enough = [
        arguments.reached(options.threshold, summary["solved"], summary["positions"])
        for summary in results.summaries()
    ]
    return 0 if all(enough) else 1


def main(folder, words):
    """Runs the command; its exit status."""
    options = arguments.parser().parse_args(words)
    try:
        if options.run_chunk:
            return _run_chunk(options.run_chunk)
        settings, results, journal = _prepare(options, folder)
    except (OSError, ValueError) as error:
        _say(error)
        return 2
    except machine.MissingProgram as error:
        _say(error)
        return 1
    program = os.path.join(folder, "orvelin-suite")
    tasks = results.missing()
    with contextlib.closing(journal) if journal else contextlib.nullcontext():
        if options.parallel:
            run = HostsRun(settings, tasks, options, program)
        else:
            run = LocalRun(settings, tasks, options.jobs or 1)
        interrupted = _collect(run, results, journal)
    return _finish(options, settings, results, interrupted)
