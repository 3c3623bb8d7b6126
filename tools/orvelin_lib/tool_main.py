"""How a tool begins and ends: signals, one line of error, and the exit status."""

import contextlib
import os
import signal
import sys
import time

from orvelin_lib.process import EngineFailure

SUCCESS, FAILURE, USAGE, INTERRUPTED = 0, 1, 2, 130
SIGNALS = (signal.SIGINT, signal.SIGTERM, signal.SIGHUP)
# Whatever takes longer than this shows how far it has come, and as often.
PROGRESS_SECONDS = 2


class ToolError(Exception):
    """What a tool cannot do, in one line for its user."""

    status = FAILURE


class UsageError(ToolError):
    """Arguments that make no sense together."""

    status = USAGE


class Console:
    """What a tool says on standard error, each line with its name before it."""

    def __init__(self, name):
        self._name = name
        self._shown = time.monotonic()
        self._open_line = False

    def say(self, words):
        self._write(f"{self._name}: {words}", "\n")

    def progress(self, words):
        """Shows how far the tool has come, if that was not shown just now. The words may be a
        function, which is then called only where they are shown."""
        now = time.monotonic()
        if now - self._shown < PROGRESS_SECONDS:
            return
        self._shown = now
        words = words() if callable(words) else words
        is_terminal = sys.stderr is not None and sys.stderr.isatty()
        self._write(f"{self._name}: {words}", "" if is_terminal else "\n")

    def _write(self, text, end):
        if sys.stderr is None:
            return
        # A line of progress stays until the next line takes its place.
        start = "\r\x1b[K" if self._open_line else ""
        self._open_line = not end
        # Nobody may be there any more to whom it could be said.
        with contextlib.suppress(OSError):
            print(start + text, end=end, file=sys.stderr, flush=True)


def _close_output():
    """The interpreter writes what is left when it ends, and would fail once more."""
    with open(os.devnull, "wb") as nothing:
        os.dup2(nothing.fileno(), sys.stdout.fileno())


def print_whole(text):
    """Prints a text and waits until it is written."""
    if sys.stdout is None:
        raise ToolError("cannot write to standard output: it is closed")
    try:
        print(text, end="", flush=True)
    except OSError as error:
        _close_output()
        raise ToolError(f"cannot write to standard output: {error.strerror}") from None


def take_signals(handler):
    """Lets the handler take what ends a tool; what `nohup` has switched off stays off."""
    for number in SIGNALS:
        if number != signal.SIGHUP or signal.getsignal(number) != signal.SIG_IGN:
            signal.signal(number, handler)


def run_tool(name, body):
    """Runs body(console), which returns the exit status; the exit status of the tool."""
    console = Console(name)
    take_signals(signal.default_int_handler)
    if sys.stdout is not None:
        # A sign that the terminal does not have is no reason to end.
        sys.stdout.reconfigure(errors="replace")
    try:
        status = body(console)
        if sys.stdout is not None:
            print_whole("")
        return status
    except SystemExit as end:
        # The reader of the command line has said what there was to say.
        with contextlib.suppress(ToolError):
            print_whole("")
        return end.code
    except ToolError as error:
        console.say(error)
        return error.status
    except EngineFailure as failure:
        console.say(f"engine: {failure}")
    except OSError as error:
        # What the system could not give, such as room for a temporary file or one more process.
        console.say(error.strerror or error)
    except MemoryError:
        console.say("not enough memory")
    except KeyboardInterrupt:
        console.say("interrupted")
        return INTERRUPTED
    return FAILURE
