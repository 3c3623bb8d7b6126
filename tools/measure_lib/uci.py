"""An engine whose searches are measured: by its own figures, the clock and the processor."""

import array
import fcntl
import os
import termios
import time
from dataclasses import dataclass

from orvelin_lib.engine import UciEngine, number_after


@dataclass(frozen=True)
class Search:
    """What one search gave by the last line that tells nodes. Milliseconds as the engine counts
    them, or None; seconds by the clock on the wall and of the processor, from `go` to that line."""

    nodes: int
    milliseconds: int | None
    line_seconds: float
    line_processor_seconds: float
    hashfull: int

    @property
    def rate(self):
        """Nodes a second. The engine's own time counts while the clock on the wall bears it out:
        some engines tell the time of the processor, or none."""
        wall = self.line_seconds * 1000
        own = self.milliseconds
        if not own or abs(own - wall) > 50 + 0.2 * wall:
            own = wall
        return self.nodes * 1000 / own

    @property
    def processor_rate(self):
        """Nodes for a second of the processor, which other programs hardly change."""
        return self.nodes / max(self.line_processor_seconds, 1e-6)


class Moment(float):
    """When a line came by the clock on the wall, and what the engine had used by then."""

    processor = 0.0


class MeasuredEngine(UciEngine):
    """An engine that keeps what its searches took."""

    def __init__(self, command, directory=None, patience=10.0, pipe_bytes=None):
        super().__init__(command, directory, patience)
        if pipe_bytes is not None:
            fcntl.fcntl(self.output, fcntl.F_SETPIPE_SZ, pipe_bytes)

    def moment(self):
        moment = Moment(time.monotonic())
        moment.processor = self._processor_seconds()
        return moment

    def search(self, fen, limit, seconds=0.0):
        """Searches a position; patience counts from so many seconds on. A search too short for an
        info line gives None."""
        self.send(f"position fen {fen}")
        began = self.moment()
        self.send(f"go {limit}")
        lines = self.wait_for("bestmove", seconds + self.patience)
        nodes = milliseconds = moment = None
        hashfull = 0
        for arrival, line in lines:
            words = line.split()
            if not words or words[0] != "info" or "string" in words:
                continue
            hashfull = number_after(words, "hashfull") or hashfull
            if number_after(words, "nodes"):
                nodes, milliseconds = number_after(words, "nodes"), number_after(words, "time")
                moment = arrival
        if nodes is None:
            return None
        return Search(
            nodes, milliseconds, moment - began, moment.processor - began.processor, hashfull
        )

    def _processor_seconds(self):
        """What all threads of the engine have used of the processor so far."""
        total = 0
        tasks = f"/proc/{self.pid}/task"
        try:
            for task in os.listdir(tasks):
                with open(f"{tasks}/{task}/schedstat", encoding="ascii") as file:
                    total += int(file.read().split()[0])
        except OSError:
            # A thread, or the process, has just ended; the kernel may also keep no such count.
            pass
        return total / 1e9

    def waiting_bytes(self):
        """What lies in the pipe and was not read yet."""
        count = array.array("i", [0])
        fcntl.ioctl(self.output, termios.FIONREAD, count)
        return count[0]
