"""Plays one game between two engines and keeps their clocks."""

import time
from dataclasses import asdict, dataclass, field

from orvelin_lib.board import BLACK, START_FEN, WHITE
from orvelin_lib.rules import Referee
from soak_lib.clock import Clock, go_words
from soak_lib.engine import Fault, Listener


@dataclass
class GameRecord:
    """What is kept of a game."""

    game: int
    fen: str
    chess960: bool
    control: str
    ponder: bool
    swapped: bool
    opening: int
    result: str = "*"
    reason: str = "fault"
    plies: int = 0
    seconds: float = 0.0
    ponder_hits: int = 0
    ponder_misses: int = 0
    # For each move beyond the clock: the clock before the move, and what was taken too much.
    forfeits: list = field(default_factory=list)
    # How often a clock had no budget left.
    no_budget: int = 0
    memory: list = field(default_factory=list)

    def as_dict(self):
        return {"kind": "game", **asdict(self)}


class Match:
    """One game; the engines are those of White and of Black."""

    def __init__(self, plan, engines, limits, stop_wanted):
        self.record = GameRecord(
            plan.number,
            plan.fen,
            plan.chess960,
            plan.control.name,
            plan.ponder,
            plan.swapped,
            len(plan.opening),
        )
        self._plan = plan
        self._engines = engines
        self._limits = limits
        self._listener = Listener(stop_wanted)
        self._referee = Referee(plan.fen, plan.chess960)
        self._moves = list(plan.opening)
        for text in plan.opening:
            self._referee.play(text)
        self._clocks = (Clock(plan.control), Clock(plan.control))
        # The move that each engine ponders on, if it does.
        self._pondered = [None, None]

    def play(self):
        """Plays to the end of the game; raises Fault."""
        started = time.monotonic()
        try:
            self._prepare()
            while (verdict := self._referee.verdict() or self._play_move()) is None:
                pass
            self.record.result, self.record.reason = verdict
            for index in (0, 1):
                if self._pondered[index] is not None:
                    self._end_pondering(index)
            for engine in self._engines:
                engine.expect_silence()
        finally:
            self.record.seconds = round(time.monotonic() - started, 3)

    def _prepare(self):
        value = "true" if self._plan.chess960 else "false"
        for engine in self._engines:
            engine.expect_silence()
            engine.send(f"setoption name UCI_Chess960 value {value}")
            engine.send("ucinewgame")
            engine.send("isready")
            self._wait(engine, "readyok", self._limits.patience)

    def _wait(self, engine, word, seconds):
        return self._listener.wait(engine, word, seconds, self._engines)

    def _play_move(self):
        """One move; the verdict when it, or the clock, ends the game."""
        side = self._referee.position.side
        index = 0 if side == WHITE else 1
        clock, lost = self._clocks[index], "0-1" if side == WHITE else "1-0"
        pondered = self._pondered[index]
        hit = pondered is not None and self._moves[-1] == pondered
        if pondered is not None and not hit:
            self._end_pondering(index)
            self.record.ponder_misses += 1
        if not hit and not clock.has_budget():
            self.record.no_budget += 1
            if not self._limits.refill:
                return lost, "no budget"
            clock.refill()
        words, elapsed = self._best_move(index, side, hit)
        if not self._spend(clock, elapsed):
            return lost, "time forfeit"
        engine = self._engines[index]
        move = words[1] if len(words) > 1 else ""
        if not self._referee.play(move):
            raise Fault("illegal move", engine, f"'{' '.join(words)}' after {self._line([])}")
        self._moves.append(move)
        self.record.plies += 1
        if self.record.plies >= self._limits.max_plies:
            return self._referee.verdict() or ("1/2-1/2", "length")
        self._start_pondering(index, words)
        return None

    def _spend(self, clock, elapsed):
        """False when the time of the move loses the game."""
        overrun = elapsed - clock.remaining
        late = overrun > self._limits.tolerance
        if late:
            self.record.forfeits.append((round(clock.remaining, 1), round(overrun, 1)))
        clock.spend(elapsed)
        if late and self._limits.refill:
            clock.refill()
        return not late or self._limits.refill

    def _best_move(self, index, side, hit):
        """(words of the answer, milliseconds that it took)."""
        engine = self._engines[index]
        engine.expect_silence()
        if hit:
            self._pondered[index] = None
            self.record.ponder_hits += 1
            started = time.monotonic()
            engine.send("ponderhit")
        else:
            engine.send(self._line([]))
            started = time.monotonic()
            engine.send("go " + go_words(self._plan.control, self._clocks, side))
        seconds = self._clocks[index].remaining / 1000 + self._limits.patience
        arrived, words = self._wait(engine, "bestmove", seconds)
        return words, (arrived - started) * 1000

    def _line(self, further):
        start = "startpos" if self._plan.fen == START_FEN else f"fen {self._plan.fen}"
        moves = self._moves + further
        return f"position {start}" + (" moves " + " ".join(moves) if moves else "")

    def _start_pondering(self, index, words):
        if not self._plan.ponder or len(words) < 4 or words[2] != "ponder":
            return
        expected, engine = words[3], self._engines[index]
        if expected not in self._referee.moves:
            raise Fault("illegal ponder move", engine, f"{expected} after {self._line([])}")
        # A hit on a clock without a budget would end the engine, which is by design.
        if self._referee.ends_with(expected) or not self._clocks[index].has_budget():
            return
        self._pondered[index] = expected
        engine.send(self._line([expected]))
        side = WHITE if index == 0 else BLACK
        engine.send("go ponder " + go_words(self._plan.control, self._clocks, side))

    def _end_pondering(self, index):
        engine = self._engines[index]
        self._pondered[index] = None
        engine.expect_silence()
        engine.send("stop")
        self._wait(engine, "bestmove", self._limits.patience)
