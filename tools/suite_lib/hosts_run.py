"""The positions of a run on several hosts, by GNU parallel.

A chunk of positions travels as one argument of JSON, and its records come back as lines on
standard output: nothing has to be copied to the hosts or fetched from there.
"""

import contextlib
import json
import os
import shlex
import signal
import subprocess
import tempfile

from orvelin_lib.tool_main import ToolError
from suite_lib.epd import parse_line
from suite_lib.report import is_record
from suite_lib.settings import Settings

# The kernel takes no longer argument, and the quotes for two shells make it grow.
MAX_CHUNK_BYTES = 30000


def chunk_text(settings, tasks):
    """One argument for some tasks."""
    return json.dumps(
        {
            "settings": settings.as_dict(),
            "tasks": [[position.number, position.line, name] for position, name in tasks],
        }
    )


def read_chunk(text):
    """(settings, tasks) of such an argument; an error when it is none."""
    try:
        record = json.loads(text)
        settings = Settings.from_dict(record["settings"])
        tasks = [(parse_line(line, number), name) for number, line, name in record["tasks"]]
    except (KeyError, TypeError, ValueError, RecursionError) as error:
        raise ToolError(f"not a chunk: {error}") from None
    return settings, tasks


def chunks(settings, tasks, size):
    """All tasks, cut into arguments of so many positions or fewer."""
    texts, begin = [], 0
    while begin < len(tasks):
        end = min(begin + size * len(settings.entrants), len(tasks))
        while len(text := chunk_text(settings, tasks[begin:end])) > MAX_CHUNK_BYTES:
            if end - begin <= 1:
                raise ToolError(f"position {tasks[begin][0].number} is too long for a host")
            end = begin + (end - begin) // 2
        texts.append(text)
        begin = end
    return texts


class HostsRun:
    """The same as LocalRun, by one process of GNU parallel."""

    def __init__(self, settings, tasks, options, program, console):
        self._console = console
        self._texts = chunks(settings, tasks, options.chunk)
        self._command = self._parallel(options, program)
        self._process = None
        self._stopped = False

    @staticmethod
    def _parallel(options, program):
        # Profiles of the user would change what is meant here; each line is whole when it comes.
        command = ["parallel", "--plain", "--line-buffer"]
        if options.jobs:
            command += ["--jobs", str(options.jobs)]
        for host in options.sshlogin:
            command += ["--sshlogin", host]
        if options.joblog:
            # After an interruption the jobs are others: the log only goes on.
            command += ["--joblog", "+" + options.joblog if options.resume else options.joblog]
        if options.retries:
            command += ["--retries", str(options.retries)]
        return [*command, f"{options.program or shlex.quote(program)} --run-chunk {{}}"]

    def stop(self):
        """Ends parallel and its jobs."""
        self._stopped = True
        if self._process is not None and self._process.poll() is None:
            # The first only keeps it from beginning more.
            self._process.send_signal(signal.SIGTERM)
            self._process.send_signal(signal.SIGTERM)

    def entries(self):
        """All records; what else the hosts write goes to standard error."""
        try:
            self._process = self._start()
        except OSError as error:
            raise ToolError(f"cannot run parallel: {error.strerror}") from None
        if self._stopped:
            self.stop()
        with self._process, contextlib.ExitStack() as stack:
            # Whoever takes no more entries waits for the jobs no longer.
            stack.callback(self.stop)
            for line in self._process.stdout:
                try:
                    entry = json.loads(line)
                except ValueError:
                    entry = None
                if is_record(entry):
                    yield entry
                else:
                    self._console.say(f"a host says: {line.rstrip()}")

    def _start(self):
        with tempfile.TemporaryFile("w+", encoding="ascii") as arguments:
            arguments.write("".join(text + "\n" for text in self._texts))
            arguments.flush()
            arguments.seek(0)
            # A session of its own: an interrupt from the terminal is for this program alone.
            return subprocess.Popen(
                self._command,
                stdin=arguments,
                stdout=subprocess.PIPE,
                text=True,
                errors="replace",
                start_new_session=True,
                env={**os.environ, "PARALLEL": ""},
            )
