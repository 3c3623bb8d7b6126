"""Searches the same positions with several engines in turn, and compares nodes a second."""

import statistics
import tempfile
from dataclasses import dataclass, field

from measure_lib.uci import MeasuredEngine
from orvelin_lib.engine import EngineFailure
from orvelin_lib.process import program
from orvelin_lib.table import table, thousands

# Those of the command `bench`.
POSITIONS = (
    ("start", "rnbqkbnr/pppppppp/8/8/8/8/PPPPPPPP/RNBQKBNR w KQkq - 0 1"),
    ("no castling", "rnbqkbnr/pppppppp/8/8/8/8/PPPPPPPP/RNBQKBNR w - - 0 1"),
    ("middle game", "r2q2k1/pp1rbppp/4pn2/2P5/1P3B2/6P1/P3QPBP/1R3RK1 w - - 0 1"),
)

NO_BOOK = (("OwnBook", "false"),)


@dataclass(frozen=True)
class Candidate:
    """An engine before it is started."""

    name: str
    command: tuple
    options: tuple = NO_BOOK
    package: str | None = None


PEERS = {
    candidate.name: candidate
    for candidate in (
        # Its network would spend the time outside of what is compared.
        Candidate("stockfish", ("stockfish",), (("Use NNUE", "false"),), "stockfish"),
        Candidate("stockfish-nnue", ("stockfish",), (("Use NNUE", "true"),), "stockfish"),
        Candidate("ethereal-chess", ("ethereal-chess",), NO_BOOK, "ethereal-chess"),
        Candidate("toga2", ("toga2",), NO_BOOK, "toga2"),
        Candidate("glaurung", ("glaurung",), NO_BOOK, "glaurung"),
        Candidate("gnuchess", ("gnuchess", "--uci"), NO_BOOK, "gnuchess"),
    )
}
DEFAULT_PEERS = ("stockfish", "ethereal-chess", "toga2", "glaurung", "gnuchess")


@dataclass
class Contender:
    """An engine in the comparison, and what it gave: for each position the rate of each round."""

    candidate: Candidate
    engine: MeasuredEngine | None = None
    title: str = "-"
    rates: list = field(default_factory=lambda: [[] for _ in POSITIONS])
    failure: str | None = None

    @property
    def name(self):
        return self.candidate.name

    @property
    def complete(self):
        return self.failure is None and all(self.rates)

    @property
    def medians(self):
        return [statistics.median(rates) for rates in self.rates]

    @property
    def overall(self):
        """The geometric mean: the ratio of two of these is the mean of the ratios."""
        return statistics.geometric_mean(self.medians)

    @property
    def spread(self):
        """From the slowest to the fastest round of a position, at worst, as a share."""
        return max((max(rates) - min(rates)) / statistics.median(rates) for rates in self.rates)

    def fail(self, failure):
        self.failure = str(failure)
        self.close()

    def close(self):
        if self.engine is not None:
            self.engine.kill()
            self.engine = None


class Comparison:
    """Plays the rounds: in each, every engine searches every position once, turn by turn, so that
    whatever else the machine does meets all of them."""

    def __init__(self, candidates, settings, report):
        self._settings = settings
        self._report = report
        self.contenders = [Contender(candidate) for candidate in candidates]

    def run(self):
        with tempfile.TemporaryDirectory() as directory:
            try:
                for contender in self.contenders:
                    self._attempt(contender, self._start, directory)
                for number in range(self._settings.rounds):
                    self._round(number)
            finally:
                for contender in self.contenders:
                    contender.close()

    def _round(self, number):
        for index, (place, fen) in enumerate(POSITIONS):
            self._report(f"round {number + 1} of {self._settings.rounds}, {place}")
            # Nobody always follows the same neighbour.
            turn = (number + index) % max(len(self.contenders), 1)
            for contender in self.contenders[turn:] + self.contenders[:turn]:
                if contender.failure is None:
                    self._attempt(contender, self._measure, index, fen)

    def _attempt(self, contender, action, *arguments):
        try:
            action(contender, *arguments)
        except EngineFailure as failure:
            self._report(f"{contender.name}: {failure}")
            contender.fail(failure)

    def _start(self, contender, directory):
        """Starts an engine and lets it search once for nothing: its memory is in use then."""
        command = contender.candidate.command
        contender.engine = engine = MeasuredEngine(
            [program(command[0]), *command[1:]], directory, self._settings.patience
        )
        engine.handshake()
        contender.title = engine.name
        for name in ("Threads", "Number of Threads"):
            engine.set_option(name, 1)
        engine.set_option("Hash", self._settings.hash)
        for name, value in contender.candidate.options:
            engine.set_option(name, value)
        engine.ready()
        self._search(engine, POSITIONS[-1][1])

    def _measure(self, contender, index, fen):
        search = self._search(contender.engine, fen)
        contender.rates[index].append(
            search.processor_rate if self._settings.processor_time else search.rate
        )

    def _search(self, engine, fen):
        engine.new_game()
        milliseconds = self._settings.movetime
        search = engine.search(fen, f"movetime {milliseconds}", milliseconds / 1000)
        if search is None:
            raise EngineFailure("tells no nodes")
        return search


def _reference(contenders, name):
    """The overall rate to which all others are put into relation, None when there is none."""
    for contender in contenders:
        if contender.name == name and contender.complete:
            return contender.overall
    return None


def ratio_of(contender, contenders, reference):
    rate = _reference(contenders, reference)
    return None if rate is None else contender.overall / rate


def text(contenders, reference):
    """The table, and under it who the engines say they are."""
    head = ["engine", *(f"{name}, kn/s" for name, _ in POSITIONS)]
    head += ["overall, kn/s", f"ratio to {reference}", "spread"]
    rows = []
    for contender in contenders:
        if not contender.complete:
            rows.append([contender.name, *"-" * (len(POSITIONS) + 3)])
            continue
        ratio = ratio_of(contender, contenders, reference)
        rows.append(
            [
                contender.name,
                *(thousands(rate) for rate in contender.medians),
                thousands(contender.overall),
                "-" if ratio is None else f"{ratio:.2f}",
                f"{contender.spread * 100:.1f} %",
            ]
        )
    lines = [table(head, rows), ""]
    for contender in contenders:
        words = f"failed: {contender.failure}" if contender.failure else contender.title
        lines.append(f"{contender.name}: {words}")
    return "\n".join(lines)


def record(contenders, settings):
    """The same for a program."""
    entries = []
    for contender in contenders:
        entry = {
            "name": contender.name,
            "title": contender.title,
            "rates": contender.rates,
            "failure": contender.failure,
        }
        if contender.complete:
            entry["medians"] = contender.medians
            entry["overall"] = contender.overall
            entry["ratio"] = ratio_of(contender, contenders, settings.reference)
            entry["spread"] = contender.spread
        entries.append(entry)
    return {
        "rounds": settings.rounds,
        "movetime": settings.movetime,
        "hash": settings.hash,
        "processor_time": settings.processor_time,
        "reference": settings.reference,
        "positions": [fen for _, fen in POSITIONS],
        "engines": entries,
    }
