"""The command orvelin-suite."""

import contextlib
import hashlib
import json
import os
import shutil
import signal
import sys
import time

from orvelin_lib.engine import EngineFailure
from orvelin_lib.engines import MissingProgram, built_engine
from orvelin_lib.journal import Journal
from orvelin_lib.output import print_whole
from suite_lib import arguments, report
from suite_lib.epd import read_suite
from suite_lib.hosts_run import HostsRun, read_chunk
from suite_lib.local_run import LocalRun
from suite_lib.player import Player, Stop

PROGRESS_SECONDS = 2
SIGNALS = (signal.SIGINT, signal.SIGTERM, signal.SIGHUP)


def _say(words):
    print(f"orvelin-suite: {words}", file=sys.stderr, flush=True)


class _Interrupts:
    """Stops a run at the first signal, and forgets it at the second."""

    def __init__(self, run):
        self._run = run
        self.seen = False
        for number in SIGNALS:
            signal.signal(number, self._on_signal)

    def _on_signal(self, _number, _frame):
        if not self.seen:
            self.seen = True
            self._run.stop()


def _read(name):
    is_input = name == "-"
    title = "standard input" if is_input else name
    try:
        # Some programs begin a file with a byte order mark.
        source = sys.stdin.fileno() if is_input else name
        with open(source, encoding="utf-8-sig", closefd=not is_input) as file:
            return read_suite(file, title)
    except UnicodeDecodeError:
        raise ValueError(f"{title}: not UTF-8") from None


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


def _head(settings, positions):
    """What a journal says of the run that it belongs to."""
    lines = "\n".join(position.line for position in positions)
    return {**settings.as_dict(), "suite": hashlib.sha256(lines.encode()).hexdigest()}


def _resumed(options, head):
    """(journal, entries so far), (None, []) when there is no journal yet; ValueError when it is not
    that of this run."""
    name = options.journal
    if name is None and options.resume:
        raise ValueError("--resume needs a --journal")
    if name is None or not os.path.lexists(name):
        return None, []
    if not options.resume:
        raise ValueError(f"{name} exists: go on with --resume, or name another")
    journal, old, entries = Journal.resume(name)
    strange = [entry for entry in entries if not report.is_record(entry)]
    if old != head or strange:
        journal.close()
    if old != head:
        raise ValueError(f"{name} belongs to other positions or settings")
    if strange:
        raise ValueError(f"{name}: not a record: {json.dumps(strange[0])[:80]}")
    return journal, entries


def _default_engine(folder):
    """The one installed beside this program, or what the repository builds."""
    beside = os.path.join(folder, "orvelin")
    if os.access(beside, os.X_OK):
        return beside
    return built_engine(os.path.dirname(folder))


def _check_usage(options):
    if options.suite is None:
        raise ValueError("no file of test positions")
    if not options.parallel and (options.sshlogin or options.joblog or options.retries):
        raise ValueError("--sshlogin, --joblog and --retries need --parallel")
    if options.parallel and shutil.which("parallel") is None:
        raise ValueError("--parallel needs GNU parallel: apt-get install parallel")


def _run(options, folder, settings, tasks):
    if options.parallel:
        return HostsRun(settings, tasks, options, os.path.join(folder, "orvelin-suite"))
    return LocalRun(settings, tasks, options.jobs or 1)


def _prepare(options, folder):
    """(settings, results, run, journal); ValueError or OSError for bad usage."""
    _check_usage(options)
    positions = _read(options.suite)
    if not options.engines:
        options.engines = [
            {"command": (_default_engine(folder),), "name": "orvelin", "options": []}
        ]
    settings = arguments.settings_of(options)
    head = _head(settings, positions)
    journal, entries = _resumed(options, head)
    results = report.Results(settings, positions)
    for entry in entries:
        results.add(entry)
    run = _run(options, folder, settings, results.missing())
    if not options.parallel:
        _probe(settings)
    # A run of hours is not to end with a file that cannot be opened.
    for name in filter(None, (options.csv, options.json)):
        with open(name, "a", encoding="utf-8"):
            pass
    if options.journal and journal is None:
        journal = Journal.create(options.journal, head)
    return settings, results, run, journal


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
        print_whole(json.dumps(entry) + "\n")
    return 130 if interrupts.seen else 0


def _put_out(options, settings, results):
    """Prints and writes what came out; True when all of it could be written."""
    outputs = [("standard output", lambda _: print_whole(report.text(results) + "\n"))]
    if options.csv:
        outputs.append((options.csv, lambda name: report.write_csv(name, results)))
    if options.json:
        write_json = report.write_json
        outputs.append(
            (options.json, lambda name: write_json(name, results, settings, options.suite))
        )
    is_whole = True
    for name, write in outputs:
        try:
            write(name)
        except OSError as error:
            _say(f"{name}: {error.strerror}")
            is_whole = False
    return is_whole


def _finish(options, settings, results, interrupted):
    """Tells what came out; the exit status."""
    is_whole = _put_out(options, settings, results)
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
    return 0 if is_whole and all(enough) else 1


def main(folder, words):
    """Runs the command; its exit status."""
    options = arguments.parser().parse_args(words)
    # Until a run takes the signals over, there is nothing to bring to an end.
    for number in SIGNALS:
        signal.signal(number, signal.default_int_handler)
    try:
        if options.run_chunk:
            return _run_chunk(options.run_chunk)
        settings, results, run, journal = _prepare(options, folder)
    except (OSError, ValueError) as error:
        _say(error)
        return 2
    except MissingProgram as error:
        _say(error)
        return 1
    except KeyboardInterrupt:
        _say("interrupted")
        return 130
    with contextlib.closing(journal) if journal else contextlib.nullcontext():
        interrupted = _collect(run, results, journal)
    return _finish(options, settings, results, interrupted)
