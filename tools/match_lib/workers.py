"""The processes of a match: each plays one game at a time. They share nothing but the number of the
next game, so that none of them makes another wait while a clock runs."""

import mmap
import multiprocessing
import os
import queue
import signal

from match_lib.engine import Interrupted
from match_lib.table import Table
from orvelin_lib.tool_main import ToolError, take_signals


class _Counter:
    """Counts from 0 over all processes that are forked from this one."""

    def __init__(self, lock):
        self._lock = lock
        self._memory = mmap.mmap(-1, 8)

    def take(self):
        with self._lock:
            value = int.from_bytes(self._memory[:8], "little")
            self._memory[:8] = (value + 1).to_bytes(8, "little")
        return value


class StopSignal:
    """A pipe whose end tells all who listen to it that the run is to end; it also ends with the
    process that made it."""

    def __init__(self):
        self.output, self._input = os.pipe()

    def forget_input(self):
        """Called by each child: while any process holds the input the pipe does not end."""
        self.give()

    def give(self):
        """May be called again, and by the handler of a signal."""
        end, self._input = self._input, None
        if end is not None:
            os.close(end)


def _work(settings, folder, tasks, counter, entries, stop):
    # A terminal, `timeout` or a batch system tells every process; the first one decides for all.
    take_signals(signal.SIG_IGN)
    stop.forget_input()
    parent = os.getppid()
    table = Table(settings, folder, stop.output)
    number = 0
    try:
        while (index := counter.take()) < len(tasks):
            plan, opening = tasks[index]
            number = plan.number
            entries.put(table.play(plan, opening))
        entries.put({"kind": "end", "faults": table.close(number)})
    except Interrupted:
        entries.put({"kind": "end", "faults": []})
    except (ToolError, OSError, MemoryError) as error:
        entries.put({"kind": "broken", "reason": str(error) or "not enough memory"})
    finally:
        table.kill()
        if os.getppid() != parent:
            # Nobody is left to take what is still in the queue.
            entries.cancel_join_thread()


class Workers:
    """The processes of a run; their entries come in the order in which games end. A task is (plan,
    opening)."""

    def __init__(self, settings, folder, tasks, count, stop):
        context = multiprocessing.get_context("fork")
        self._entries = context.Queue()
        self._stop = stop
        counter = _Counter(context.Lock())
        arguments = (settings, folder, tasks, counter, self._entries, self._stop)
        self._processes = [context.Process(target=_work, args=arguments) for _ in range(count)]
        for process in self._processes:
            process.start()

    def stop(self):
        """Asks the workers to leave their games."""
        self._stop.give()

    def entries(self):
        """All entries until the last worker has ended; raises when one has broken down."""
        running = len(self._processes)
        while running > 0:
            try:
                entry = self._entries.get(timeout=1)
            except queue.Empty:
                if any(process.exitcode for process in self._processes):
                    self.stop()
                    raise ToolError("a worker has broken down") from None
                continue
            if entry["kind"] == "broken":
                self.stop()
                raise ToolError(entry["reason"])
            if entry["kind"] == "end":
                running -= 1
            yield entry
        for process in self._processes:
            process.join()
