"""Workers that play the games of a run, each with two engines of its own."""

import dataclasses
import mmap
import multiprocessing
import os
import queue
import signal

from orvelin_lib.engines import checked
from orvelin_lib.files import make_folder, write_file
from orvelin_lib.tool_main import ToolError, take_signals
from soak_lib.clock import Control
from soak_lib.engine import Fault, Interrupted, Listener, SoakEngine
from soak_lib.match import Match
from soak_lib.schedule import plan_game

# Games of a process after which its memory should not grow any more.
SETTLING_GAMES = 3


@dataclasses.dataclass(frozen=True)
class Settings:
    """All that makes a run what it is; kept in the head of its log."""

    commands: tuple
    seed: int
    games: int
    controls: tuple
    ponder_share: float
    restart_every: int
    hash: int
    tolerance: float
    patience: float
    max_plies: int
    refill: bool


class Table:
    """Two engines that play game upon game."""

    def __init__(self, settings, fault_directory, stop_wanted):
        self._settings = settings
        self._fault_directory = fault_directory
        self._stop_wanted = stop_wanted
        self._controls = tuple(Control.parse(text) for text in settings.controls)
        self._engines = [None, None]

    def play(self, number):
        """The record of one game; an engine at fault is ended and started again for the next."""
        settings = self._settings
        plan = plan_game(settings.seed, number, self._controls, settings.ponder_share)
        faults = []
        record = None
        try:
            self._start_engines()
            white_first = self._engines[::-1] if plan.swapped else self._engines
            match = Match(plan, white_first, settings, self._stop_wanted)
            record = match.record
            match.play()
            record.memory = [self._memory(engine) for engine in self._engines]
            if self._engines[0].games >= settings.restart_every:
                self.quit()
        except Fault as fault:
            faults.append(self._saved(fault, number))
        entry = record.as_dict() if record else {"kind": "game", "game": number}
        return {**entry, "faults": faults}

    def _start_engines(self):
        for index, command in enumerate(self._settings.commands):
            if self._engines[index] is None:
                engine = SoakEngine(checked(command), f"engine {index + 1}")
                self._engines[index] = engine
                engine.send("uci")
                listener = Listener(self._stop_wanted)
                listener.wait(engine, "uciok", self._settings.patience, [engine])
                engine.send(f"setoption name Hash value {self._settings.hash}")

    @staticmethod
    def _memory(engine):
        """Resident KiB now, and how far that is above what the first games took."""
        engine.games += 1
        resident = engine.memory()
        if engine.games <= SETTLING_GAMES:
            engine.settled_memory = resident
        growth = resident - engine.settled_memory
        return {"games": engine.games, "resident": resident, "growth": growth}

    def _saved(self, fault, number):
        """Writes the sessions of both engines into a file and ends both."""
        kind = fault.kind.replace(" ", "-")
        name = os.path.join(self._fault_directory, f"game-{number}-{kind}.txt")
        sessions = [f"game {number}: {fault}\n"]
        for engine in self._engines:
            if engine is not None:
                sessions.append(f"{engine.name}\n{engine.session()}")
        try:
            make_folder(self._fault_directory)
            write_file(name, "\n".join(sessions))
        except ToolError as error:
            name = f"the session is lost: {error}"
        self.kill()
        return {
            "kind": fault.kind,
            "engine": fault.engine.name,
            "detail": fault.detail,
            "file": name,
        }

    def quit(self):
        """Ends the engines as a GUI does; raises Fault when one does not end well."""
        for index, engine in enumerate(self._engines):
            if engine is not None:
                engine.quit(self._settings.patience)
                engine.kill()
                self._engines[index] = None

    def close(self, number):
        """As quit; the faults as the record has them."""
        try:
            self.quit()
            return []
        except Fault as fault:
            return [self._saved(fault, number)]

    def kill(self):
        for index, engine in enumerate(self._engines):
            if engine is not None:
                engine.kill()
                self._engines[index] = None


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


def _work(settings, fault_directory, numbers, counter, entries, stop):
    # The terminal's interrupt reaches every process; the first one decides for all.
    take_signals(signal.SIG_IGN)
    signal.signal(signal.SIGTERM, signal.SIG_DFL)
    parent = os.getppid()

    def stop_wanted():
        return stop.is_set() or os.getppid() != parent

    table = Table(settings, fault_directory, stop_wanted)
    number = 0
    try:
        while not stop_wanted():
            index = counter.take()
            if index >= len(numbers):
                break
            number = numbers[index]
            entries.put(table.play(number))
        entries.put({"kind": "end", "faults": table.close(number)})
    except Interrupted:
        entries.put({"kind": "end", "faults": []})
    except (ToolError, OSError, MemoryError) as error:
        entries.put({"kind": "broken", "reason": str(error) or "not enough memory"})
    finally:
        table.kill()


class Workers:
    """The processes of a run; their entries come in the order in which games end."""

    def __init__(self, settings, fault_directory, numbers, jobs):
        context = multiprocessing.get_context("fork")
        self._entries = context.Queue()
        self._stop = context.Event()
        counter = _Counter(context.Lock())
        arguments = (settings, fault_directory, numbers, counter, self._entries, self._stop)
        self._processes = [context.Process(target=_work, args=arguments) for _ in range(jobs)]
        for process in self._processes:
            process.start()

    def stop(self):
        """Asks the workers to leave their games."""
        self._stop.set()

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
