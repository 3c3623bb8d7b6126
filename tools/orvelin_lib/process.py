"""An engine process: its pipes, its lines and its end."""

import ctypes
import os
import select
import shutil
import signal
import subprocess
import time

# Engines write a few hundred lines a second at most: whoever writes more than this for one
# command is out of order. A search of hours may write more, so the bound grows with time.
MAX_BYTES = 1 << 24
MAX_BYTES_A_SECOND = 1 << 18
MAX_LINE = 1 << 16
# In seconds; the system takes no more for one wait, after which a tool waits again.
LONGEST_WAIT = 1000000
# How long a process that has closed its output may take to end.
END_SECONDS = 5


# Found before any fork: between fork and exec as little as possible is done.
_prctl = ctypes.CDLL(None).prctl
_PR_SET_PDEATHSIG = 1


def dies_with(parent):
    """What a child calls first (preexec_fn) so that it is killed when its parent dies: an engine
    whose input has ended would spin for minutes. Here the parent is the thread that starts it."""

    def bind():
        _prctl(_PR_SET_PDEATHSIG, int(signal.SIGKILL), 0, 0, 0)
        # A parent that died before the call sends nothing.
        if os.getppid() != parent:
            os._exit(1)

    return bind


class EngineFailure(Exception):
    """The engine died, hangs, or does not say what is needed. The kind is one word for all that
    went wrong in the same way: start, crash, flood, stall, or answer."""

    def __init__(self, detail, kind="answer"):
        super().__init__(detail)
        self.detail, self.kind = detail, kind


def program(name):
    """Where a program is; Debian keeps games out of the path of root."""
    return shutil.which(name, path=os.environ.get("PATH", "") + ":/usr/games") or name


class EngineProcess:
    """The process alone. Whoever waits also empties its pipe; nobody else does."""

    def __init__(self, command, directory=None, errors=subprocess.DEVNULL):
        self._rest = b""
        self._bytes = 0
        self._asked = time.monotonic()
        try:
            # A session of its own: an interrupt from the terminal is for the script alone.
            self._process = subprocess.Popen(
                command,
                stdin=subprocess.PIPE,
                stdout=subprocess.PIPE,
                stderr=errors,
                bufsize=0,
                cwd=directory,
                start_new_session=True,
                preexec_fn=dies_with(os.getpid()),
            )
        except OSError as error:
            raise self.failure("start", f"cannot be started: {error.strerror}") from None
        self.pid = self._process.pid
        self.output = self._process.stdout.fileno()
        os.set_blocking(self.output, False)

    def failure(self, kind, detail):
        """What is raised when the engine fails."""
        return EngineFailure(detail, kind)

    def moment(self):
        """Now, as it is kept with each line: seconds of the clock."""
        return time.monotonic()

    def take(self, moment, line):
        """Called with each line when it comes."""
        raise NotImplementedError

    def take_whole(self, _moment, _data):
        """True when bytes that begin with a line need no look at each of their lines."""
        return False

    def send(self, line):
        self._bytes = 0
        self._asked = time.monotonic()
        try:
            self._process.stdin.write(line.encode() + b"\n")
        except OSError:
            self._ended()

    def receive(self):
        """Takes in what the engine has written so far."""
        try:
            data = os.read(self.output, 1 << 16)
        except BlockingIOError:
            return
        now = self.moment()
        if not data:
            self._ended()
        self._bytes += len(data)
        if self._rest or not self.take_whole(now, data):
            *lines, self._rest = (self._rest + data).split(b"\n")
            for line in lines:
                self.take(now, line.decode(errors="replace").strip())
        if len(self._rest) > MAX_LINE or (self._bytes > MAX_BYTES and self._writes_too_fast()):
            raise self.failure("flood", "writes without end")

    def _writes_too_fast(self):
        seconds = time.monotonic() - self._asked
        return self._bytes > MAX_BYTES + MAX_BYTES_A_SECOND * seconds

    def listen(self, seconds):
        """Takes in what comes first within the time, if anything does."""
        if select.select([self.output], [], [], min(max(seconds, 0), LONGEST_WAIT))[0]:
            self.receive()

    def _ended(self):
        try:
            code = self._process.wait(END_SECONDS)
        except subprocess.TimeoutExpired:
            raise self.failure("crash", "closed its output") from None
        raise self.failure("crash", self._end_text(code))

    @staticmethod
    def _end_text(code):
        if code < 0:
            return f"ended by {signal.Signals(-code).name}"
        return f"ended with status {code}"

    def memory(self, field="VmRSS"):
        """Resident KiB now, or at most so far with VmHWM."""
        with open(f"/proc/{self.pid}/status", encoding="ascii") as status:
            for line in status:
                if line.startswith(field + ":"):
                    return int(line.split()[1])
        return 0

    def quit(self, seconds):
        """Asks the engine to end, and waits for it; a failure when it does not end well."""
        self.send("quit")
        deadline = time.monotonic() + seconds
        try:
            while time.monotonic() < deadline:
                self.listen(deadline - time.monotonic())
        except EngineFailure as failure:
            if failure.detail != self._end_text(0):
                raise
            return
        raise self.failure("crash", "did not end on quit")

    def kill(self):
        """Ends the process, and those that it started, at once."""
        if self._process.poll() is None:
            os.killpg(self.pid, signal.SIGKILL)
        self._process.wait()
        self._process.stdin.close()
        self._process.stdout.close()
