"""How long a searching engine takes to answer, also when nobody reads what it writes."""

import statistics
import time

from measure_lib.uci import MeasuredEngine
from orvelin_lib.engine import EngineFailure
from orvelin_lib.table import milliseconds, table

# The smallest pipe that the system has: a few dozen info lines fill it.
SMALL_PIPE = 4096
# A pipe to which nothing was added for so long is full, or the engine has nothing to say.
STILL_SECONDS = 0.3
FILLING_SECONDS = 5.0


class LatencyMeasurement:
    """From a command to its answer, by the clock of the GUI."""

    def __init__(self, settings, report):
        self._settings = settings
        self._report = report
        self._fens = [fen for _, fen in settings.positions]
        self._not_full = 0

    def run(self):
        """The measurement as a record: all samples by name."""
        record = {}
        for name, lines, full in (
            ("one line", 1, False),
            ("eight lines", 8, False),
            ("eight lines, pipe full", 8, True),
        ):
            self._report(name)
            ready, stop = self._samples(lines, full)
            record[f"`isready` to `readyok`, {name}"] = ready
            record[f"`stop` to `bestmove`, {name}"] = stop
        return {"samples": record, "not_full": self._not_full}

    def _samples(self, lines, full):
        ready, stop = [], []
        pipe = SMALL_PIPE if full else None
        with MeasuredEngine(
            self._settings.engine, patience=self._settings.patience, pipe_bytes=pipe
        ) as engine:
            engine.handshake()
            engine.set_option("MultiPV", lines)
            for number in range(self._settings.samples):
                engine.new_game()
                fen = self._fens[number % len(self._fens)]
                engine.send(f"position fen {fen}")
                engine.send("go infinite")
                if full:
                    self._fill(engine)
                else:
                    # At another moment of the search, and of the engine's own ticks, each time.
                    self._listen(engine, 0.05 + 0.0037 * (number % 50))
                ready.append(engine.ask("isready", "readyok"))
                if full:
                    self._fill(engine)
                stop.append(engine.ask("stop", "bestmove"))
        return ready, stop

    @staticmethod
    def _listen(engine, seconds):
        """Reads for so long, as a GUI does while it waits."""
        try:
            engine.wait_for("bestmove", seconds)
        except EngineFailure:
            return
        raise EngineFailure("gives its best move without being asked")

    def _fill(self, engine):
        """Leaves the output alone until the pipe is full."""
        deadline = time.monotonic() + FILLING_SECONDS
        waiting, since = engine.waiting_bytes(), time.monotonic()
        while time.monotonic() < deadline and time.monotonic() - since < STILL_SECONDS:
            time.sleep(0.01)
            if engine.waiting_bytes() != waiting:
                waiting, since = engine.waiting_bytes(), time.monotonic()
        # A line that does not fit is cut off or not written at all.
        if waiting < SMALL_PIPE // 2:
            self._not_full += 1

    def text(self, record):
        rows = [
            [name, milliseconds(statistics.median(values)), milliseconds(max(values)), len(values)]
            for name, values in record["samples"].items()
        ]
        lines = table(["from command to answer", "median, ms", "worst, ms", "samples"], rows)
        if record["not_full"]:
            lines += f"\n\nthe pipe was not full {record['not_full']} times"
        return lines
