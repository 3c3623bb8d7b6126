"""A table at which one game is played after the other, with engines of its own."""

import os
import time

from match_lib.engine import Fault, Interrupted, Listener, MatchEngine
from match_lib.game import WON, Game
from match_lib.standings import SETTLING_GAMES
from orvelin_lib.engines import checked
from orvelin_lib.files import make_folder, write_new_file
from orvelin_lib.tool_main import ToolError, UsageError

# An engine that loses on time in every game would fill the disk.
MOST_DIALOGUES = 100
# A batch system ends the engines together with the tool, which may hear of it later than they.
ENDING_SECONDS = 1


def start_engine(player, settings, listener):
    """The engine, with its options set; ToolError when that cannot be, UsageError when it is for
    an option that it has not, or not with this value."""
    command = checked(player.command)
    engine = None
    try:
        engine = MatchEngine(player, command)
        listener.seat([engine])
        engine.send("uci")
        listener.need(engine, "uciok", settings.patience)
        wanted = [*player.options]
        if settings.chess960:
            wanted.append(("UCI_Chess960", "true"))
        for name, value in wanted:
            if problem := engine.set_option(name, value):
                raise UsageError(f"{player.name}: {problem}")
        if "ponder" not in dict(wanted):
            engine.set_option("Ponder", "true" if settings.ponder else "false")
        engine.send("isready")
        listener.need(engine, "readyok", settings.patience)
    except Fault as fault:
        if engine is not None:
            engine.kill()
        raise ToolError(f"{player.name}: {fault.detail}") from None
    except BaseException:
        if engine is not None:
            engine.kill()
        raise
    return engine


class Table:
    """Engines are started when they are first needed, and again after a fault; those that do not
    play are asked to quit."""

    def __init__(self, settings, folder, stop):
        self._settings = settings
        self._folder = folder
        self._listener = Listener(stop)
        self._engines = {}
        self._saved_dialogues = 0

    def play(self, plan, opening):
        """The record of one game. A fault loses it, unless it was over."""
        sides = (plan.white, plan.black)
        players = [self._settings.players[index] for index in sides]
        faults = self._make_room(plan.number, sides)
        engines = [self._started(index) for index in sides]
        game = Game(self._settings, players, engines, opening, self._listener)
        date = time.strftime("%Y.%m.%d")
        loser = None
        try:
            game.play()
        except Fault as fault:
            if fault.kind == "crash" and self._listener.ends_within(ENDING_SECONDS):
                raise Interrupted from None
            loser = engines.index(fault.engine)
            game.verdict = game.verdict or (WON[1 - loser], fault.kind)
            faults.append(self._saved(fault, plan.number, engines))
        faults += [self._saved(fault, plan.number, engines) for fault in game.remarks]
        if loser is not None:
            # The other one may be in the middle of a search.
            self.kill()
        memory = None if loser is not None else [self._memory(engine) for engine in engines]
        faults += self._end_worn(plan.number)
        return {
            "kind": "game",
            "game": plan.number,
            "pair": plan.pair,
            "white": players[0].name,
            "black": players[1].name,
            "titles": [engine.title for engine in engines],
            "date": date,
            "fen": opening.fen,
            "chess960": self._settings.chess960,
            "result": game.verdict[0],
            "reason": game.verdict[1],
            **game.record(),
            "memory": memory,
            "faults": faults,
        }

    def _started(self, index):
        if index not in self._engines:
            player = self._settings.players[index]
            self._engines[index] = start_engine(player, self._settings, self._listener)
        return self._engines[index]

    def _make_room(self, number, sides):
        """Ends the engines that do not play; their faults."""
        idle = [index for index in self._engines if index not in sides]
        return [fault for index in idle for fault in self._end(index, number)]

    def _end_worn(self, number):
        """Ends the engines that have played their games; their faults."""
        most = self._settings.restart
        worn = [index for index, engine in self._engines.items() if 0 < most <= engine.games]
        return [fault for index in worn for fault in self._end(index, number)]

    def _end(self, index, number):
        """Ends an engine as a GUI does; the fault when it does not end well."""
        engine = self._engines.pop(index)
        try:
            engine.quit(self._settings.patience)
            return []
        except Fault as fault:
            return [self._saved(fault, number, [engine])]
        finally:
            engine.kill()

    @staticmethod
    def _memory(engine):
        """Resident KiB now, and how far that is above what the first games took."""
        engine.games += 1
        resident = engine.memory()
        if engine.games <= SETTLING_GAMES:
            engine.settled_memory = resident
        growth = resident - engine.settled_memory
        return {"games": engine.games, "resident": resident, "growth": growth}

    def _saved(self, fault, number, engines):
        """Writes what was said into a file: the fault as the record has it."""
        kind, engine = fault.kind, fault.engine
        texts = [f"game {number}: {engine.name}: {kind}: {fault.detail}\n"]
        texts += [f"{each.name} ({each.title})\n{each.session()}" for each in engines]
        if self._saved_dialogues >= MOST_DIALOGUES:
            name = f"not saved: there are {MOST_DIALOGUES} already"
        else:
            try:
                make_folder(self._folder)
                name = os.path.join(self._folder, f"game-{number}-{kind.replace(' ', '-')}")
                name = write_new_file(name, ".txt", "\n".join(texts))
                self._saved_dialogues += 1
            except ToolError as error:
                name = f"not saved: {error}"
        return {"kind": kind, "engine": engine.name, "detail": fault.detail, "file": name}

    def close(self, number):
        """Ends all engines as a GUI does; their faults."""
        return [fault for index in list(self._engines) for fault in self._end(index, number)]

    def kill(self):
        for engine in self._engines.values():
            engine.kill()
        self._engines = {}
