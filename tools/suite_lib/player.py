"""Lets one engine solve one position after the other, and starts it again when it fails."""

import time

from orvelin_lib.engine import EngineFailure, UciEngine
from orvelin_lib.process import program
from suite_lib.watch import Watch, expect_silence

# An engine that was good to the end gets so long to leave.
LEAVING_SECONDS = 2


class Interrupted(Exception):
    """The run is to end now."""


class Stop:
    """Whether the run is to end. An event of the library must not be set in a signal's handler."""

    wanted = False

    def stop(self):
        self.wanted = True


class WatchedEngine(UciEngine):
    """An engine that nobody waits for once the run is to end."""

    def __init__(self, command, patience, stop):
        self._stop = stop
        super().__init__(command, patience=patience)

    def listen(self, seconds):
        super().listen(min(seconds, 0.2))
        if self._stop.wanted:
            raise Interrupted


class Player:
    """One process of an engine of the run."""

    def __init__(self, entrant, settings, stop):
        self._entrant = entrant
        self._settings = settings
        self._stop = stop
        self._engine = None
        self._chess960 = False
        self.title = None

    def start(self):
        """Starts the engine if it does not run; a failure when it has not all the options."""
        if self._engine is not None:
            return
        name, *words = self._entrant.command
        self._engine = WatchedEngine(
            [program(name), *words], self._settings.patience, self._stop
        )
        self._chess960 = False
        self._engine.handshake()
        self.title = self._engine.name
        for name, value in self._entrant.options:
            if not self._engine.set_option(name, value):
                raise EngineFailure(f"has no option {name}", "start")
        self._engine.ready()

    def solve(self, position):
        """The record of one position."""
        watch = None
        seconds = fault = None
        try:
            self._prepare(position)
            engine = self._engine
            engine.send(f"position fen {position.fen}")
            began = time.monotonic()
            watch = Watch(position, began)
            engine.send(f"go {self._settings.limit} {self._settings.amount}")
            watch.read(engine.wait_for("bestmove", self._settings.search_seconds))
            seconds = watch.verdict()
            # A second answer comes before the next one that is asked for.
            engine.send("isready")
            expect_silence(engine.wait_for("readyok")[:-1])
        except EngineFailure as failure:
            self.kill()
            seconds, fault = None, {"kind": failure.kind, "detail": failure.detail}
        if self._settings.fresh:
            self.close()
        return {
            "engine": self._entrant.name,
            "title": self.title,
            "number": position.number,
            "name": position.name,
            "goal": position.goal,
            "solved": seconds is not None,
            "seconds": seconds,
            **(watch or Watch(position, 0)).figures(),
            "fault": fault,
        }

    def _prepare(self, position):
        self.start()
        engine = self._engine
        if position.chess960 != self._chess960:
            if not engine.set_option("UCI_Chess960", str(position.chess960).lower()):
                raise EngineFailure("does not play Chess960", "start")
            self._chess960 = position.chess960
        engine.send("ucinewgame")
        engine.send("isready")
        expect_silence(engine.wait_for("readyok")[:-1])

    def close(self):
        """Ends the engine as a GUI does; what it does wrong then harms no position."""
        if self._engine is not None:
            try:
                self._engine.quit(LEAVING_SECONDS)
            except (EngineFailure, Interrupted):
                pass
        self.kill()

    def kill(self):
        if self._engine is not None:
            self._engine.kill()
            self._engine = None
