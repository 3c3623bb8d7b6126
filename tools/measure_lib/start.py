"""Start, end and memory of the engine, and what the options cost."""

import statistics
import time

from measure_lib.machine import available_mebibytes
from measure_lib.uci import MeasuredEngine
from orvelin_lib.table import mebibytes, milliseconds, table

REPEATS = 11


def hash_sizes(sizes, report):
    """Those of the sizes for which the machine has the memory."""
    available = available_mebibytes()
    fitting = [size for size in sizes if size * 1.2 + 200 < available]
    for size in sizes:
        if size not in fitting:
            report(f"no {size} MiB of hash: only {available} MiB of memory are free")
    return fitting


class StartMeasurement:
    """From exec to `uciok`, resident memory, `ucinewgame` and changes of the hash size."""

    def __init__(self, settings, report):
        self._settings = settings
        self._report = report

    def _engine(self):
        return MeasuredEngine(self._settings.engine, patience=self._settings.patience)

    def run(self):
        """The measurement as a record."""
        self._report(f"{self._settings.samples} starts")
        starts, ends = [], []
        for _ in range(self._settings.samples):
            began = time.monotonic()
            with self._engine() as engine:
                engine.send("uci")
                starts.append(engine.wait_for("uciok")[-1][0] - began)
                ends.append(engine.quit())
        fen = self._settings.positions[0][1]
        with self._engine() as engine:
            engine.handshake()
            engine.ready()
            memory = {"start": engine.memory()}
            ready = [engine.ready() for _ in range(REPEATS)]
            self._report("a search")
            limit = self._settings.movetime
            engine.search(fen, f"movetime {limit}", limit / 1000)
            memory["search"] = engine.memory()
            engine.new_game()
            memory["ucinewgame"] = engine.memory()
        return {
            "starts": starts,
            "ends": ends,
            "ready": ready,
            "memory": memory,
            "sizes": self._sizes(fen),
        }

    def _sizes(self, fen):
        """For each size: how long the change takes, and `ucinewgame` after a search."""
        entries = []
        for size in hash_sizes(self._settings.sizes, self._report):
            self._report(f"{size} MiB of hash")
            with self._engine() as engine:
                engine.handshake()
                engine.ready()
                began = time.monotonic()
                engine.set_option("Hash", size)
                engine.ready()
                change = time.monotonic() - began
                games = []
                for _ in range(3):
                    engine.search(fen, "depth 6")
                    games.append(engine.new_game())
                entries.append(
                    {
                        "size": size,
                        "change": change,
                        "first": games[0],
                        "again": statistics.median(games[1:]),
                        "memory": engine.memory(),
                    }
                )
        return entries

    def text(self, record):
        times = [
            [name, milliseconds(statistics.median(values)), milliseconds(max(values)), len(values)]
            for name, values in (
                ("start: exec to `uciok`", record["starts"]),
                ("end: `quit` to the end of the process", record["ends"]),
                ("`isready` to `readyok`, idle", record["ready"]),
            )
        ]
        searched = f"after a search of {self._settings.movetime / 1000:g} s"
        memory = [
            [name, mebibytes(record["memory"][key])]
            for name, key in (
                ("after the start", "start"),
                (searched, "search"),
                ("after `ucinewgame`", "ucinewgame"),
            )
        ]
        sizes = [
            [
                entry["size"],
                milliseconds(entry["change"]),
                milliseconds(entry["first"]),
                milliseconds(entry["again"]),
                mebibytes(entry["memory"]),
            ]
            for entry in record["sizes"]
        ]
        size_head = ["Hash, MiB", "`setoption`, ms", "first `ucinewgame`, ms"]
        size_head += ["`ucinewgame`, ms", "resident, MiB"]
        return "\n\n".join(
            (
                table(["time", "median, ms", "worst, ms", "samples"], times),
                table(["resident memory", "MiB"], memory),
                table(size_head, sizes),
            )
        )
