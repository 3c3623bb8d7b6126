"""One game: lets two engines move, keeps their clocks, and says how it ends."""

import math
import time

from match_lib.adjudication import Adjudicator
from match_lib.clocks import Clock, go_words
from match_lib.engine import Fault
from orvelin_lib.board import START_FEN, WHITE
from orvelin_lib.rules import Referee

# An engine looks at its nodes now and then only; beyond so many times its limit it has none.
NODES_FACTOR = 4
WON = {0: "1-0", 1: "0-1"}


def is_overrun(limit, nodes):
    """True when a search told far more nodes than it was given."""
    return limit.kind == "nodes" and nodes is not None and nodes > NODES_FACTOR * limit.amount


class Game:
    """The engines are those of White and of Black, and so are the players. `verdict` is (result,
    reason) as soon as the game is over; `remarks` are faults that do not end an engine."""

    def __init__(self, settings, players, engines, opening, listener):
        self.verdict = None
        self.remarks = []
        self._settings = settings
        self._engines = engines
        self._listener = listener
        self._opening = opening
        self._referee = Referee(opening.fen, settings.chess960)
        start = "startpos" if opening.fen == START_FEN else f"fen {opening.fen}"
        self._start = f"position {start}"
        self._line = " moves" if opening.moves else ""
        for text in opening.moves:
            self._referee.play(text)
            self._line += f" {text}"
        margins = [settings.margin if own.margin is None else own.margin for own in players]
        self._clocks = tuple(Clock(own.limit, each) for own, each in zip(players, margins))
        pawns = [player.pawn for player in players]
        self._adjudicator = Adjudicator(settings.draw, settings.resign, pawns)
        # The move that each engine ponders on, if it does.
        self._pondered = [None, None]
        # Searches of each engine far beyond its nodes.
        self._overruns = [0, 0]
        self._columns = {
            name: [] for name in ("moves", "scores", "depths", "nodes", "times", "clocks")
        }

    def play(self):
        """Plays to the end of the game; raises Fault, maybe after the end."""
        self._listener.seat(self._engines)
        for engine in self._engines:
            engine.expect_silence()
            engine.send("ucinewgame")
        self._synchronise()
        while self.verdict is None:
            self.verdict = self._referee.verdict() or self._play_move()
        for index in (0, 1):
            self._end_pondering(index)
        # A second answer comes before the next one that is asked for.
        self._synchronise()

    def record(self):
        """What is kept of the moves, half-move by half-move."""
        opening = list(self._opening.moves)
        return {"opening": opening, **self._columns, "overruns": self._overruns}

    def _synchronise(self):
        for engine in self._engines:
            engine.send("isready")
        for engine in self._engines:
            self._listener.need(engine, "readyok", self._settings.patience)

    def _play_move(self):
        """One move; the verdict when it, or the clock, ends the game."""
        index = 0 if self._referee.position.side == WHITE else 1
        words, elapsed = self._best_move(index)
        clock, engine = self._clocks[index], self._engines[index]
        if elapsed > clock.allowed:
            detail = f"{elapsed:.1f} ms on a clock of {clock.remaining:.1f} ms"
            self.remarks.append(Fault("time", engine, detail))
            return WON[1 - index], "time forfeit"
        move = words[1] if len(words) > 1 else ""
        if not self._referee.play(move):
            detail = f"{' '.join(words)[:40]!r} after {self._position()}"
            raise Fault("illegal move", engine, detail)
        self._line += f" {move}" if self._line else f" moves {move}"
        clock.spend(elapsed)
        report = engine.report()
        self._note(move, report, elapsed, clock)
        self._overruns[index] += is_overrun(clock.limit, report.nodes)
        number = (len(self._opening.moves) + len(self._columns["moves"]) + 1) // 2
        verdict = self._adjudicator.report(index, report.score, report.mate, number)
        if verdict is None and number >= self._settings.max_moves > 0 and index == 1:
            verdict = "1/2-1/2", "length"
        # The rules go before any agreement.
        verdict = verdict and (self._referee.verdict() or verdict)
        if verdict is None:
            self._start_pondering(index, words)
        return verdict

    def _note(self, move, report, elapsed, clock):
        left = round(clock.remaining, 1) if clock.limit.is_clock else None
        for name, value in (
            ("moves", move),
            ("scores", report.text),
            ("depths", report.depth),
            ("nodes", report.nodes),
            ("times", round(elapsed, 1)),
            ("clocks", left),
        ):
            self._columns[name].append(value)

    def _best_move(self, index):
        """(words of the answer, milliseconds that it took)."""
        engine, settings = self._engines[index], self._settings
        hit = self._is_hit(index)
        if not hit:
            self._end_pondering(index)
        engine.expect_silence()
        if hit:
            self._pondered[index] = None
            started = time.monotonic()
            engine.send("ponderhit")
        else:
            engine.send(self._position())
            go = f"go {go_words(self._clocks, index)}"
            started = time.monotonic()
            engine.send(go)
        is_timed = math.isfinite(self._clocks[index].allowed)
        allowed = self._clocks[index].allowed / 1000 if is_timed else settings.longest
        answer = self._listener.wait(engine, "bestmove", started + allowed)
        if answer is None and not is_timed:
            detail = f"no bestmove within {allowed:g} s"
            nodes, limit = engine.report().nodes, self._clocks[index].limit
            if is_overrun(limit, nodes):
                self._overruns[index] += 1
                detail += f", {nodes} nodes instead of {limit.amount}"
            raise Fault("stall", engine, detail)
        if answer is None:
            # The game is lost; the engine is given the chance to be there for the next one.
            engine.send("stop")
            answer = self._listener.need(engine, "bestmove", settings.patience)
        arrived, words = answer
        return words, (arrived - started) * 1000

    def _is_hit(self, index):
        pondered = self._pondered[index]
        return pondered is not None and self._columns["moves"][-1] == pondered

    def _position(self, further=""):
        return self._start + self._line + further

    def _start_pondering(self, index, words):
        if not self._settings.ponder or len(words) < 4 or words[2] != "ponder":
            return
        expected, engine = words[3], self._engines[index]
        if not self._referee.allows(expected):
            # No move was asked for, and none is made: the game goes on.
            detail = f"{expected[:20]!r} after {self._position()}"
            self.remarks.append(Fault("illegal ponder move", engine, detail))
            return
        if self._referee.ends_with(expected):
            return
        self._pondered[index] = expected
        engine.send(self._position(f" {expected}"))
        engine.send(f"go ponder {go_words(self._clocks, index)}")

    def _end_pondering(self, index):
        if self._pondered[index] is None:
            return
        engine = self._engines[index]
        self._pondered[index] = None
        engine.expect_silence()
        engine.send("stop")
        self._listener.need(engine, "bestmove", self._settings.patience)
