"""A game against the engine with PyChess's own code: its engine list, its UCI player, its rules."""

import asyncio
import random

import gi

gi.require_version("Gtk", "3.0")

from pychess.Players.engineNest import EngineDiscoverer  # noqa: E402: the version goes first
from pychess.Utils.const import CASTLE_KR, FISCHERRANDOMCHESS, UNKNOWN_REASON, WHITE  # noqa: E402
from pychess.Utils.Move import parseAny, toAN  # noqa: E402
from pychess.Variants import variants  # noqa: E402

from orvelin_lib.board import Position  # noqa: E402
from orvelin_lib.notation import moves_by_text, parse_move  # noqa: E402

FULL_STRENGTH = 20


def read_discovery_files():
    """The engines that PyChess reads from discovery files, without having started any."""
    return {engine["name"]: engine for engine in EngineDiscoverer().engines}


async def add_engine(path):
    """Adds the engine as the dialog does, and asks all engines what they are."""
    discoverer = EngineDiscoverer()
    discoverer.engines = []
    discoverer.addEngine("Orvelin", path, "uci", None, None)
    done = asyncio.Event()
    discoverer.connect("all_engines_discovered", lambda _: done.set())
    discoverer.discover()
    await asyncio.wait_for(done.wait(), 120)
    return discoverer, discoverer.getEngineByName("Orvelin")


class Player:
    """The engine as the player of White; the other side moves at random."""

    def __init__(self, discoverer, engine, variant, fen):
        self._parts = discoverer, engine
        self._variant = variants[variant]
        self._chess960 = variant == FISCHERRANDOMCHESS
        self._board = self._variant(setup=fen)
        self._position = Position(fen)
        self._random = random.Random(1)
        self._player = None

    async def start(self, level=FULL_STRENGTH, pondering=True):
        discoverer, engine = self._parts
        self._player = await discoverer.initPlayerEngine(
            engine, WHITE, level, self._variant, secs=20, incr=0, forcePonderOff=not pondering
        )
        ready, dead = asyncio.Event(), set()
        self._player.start(ready, dead)
        await asyncio.wait_for(ready.wait(), 60)
        if dead:
            raise AssertionError("PyChess says that the engine is dead")
        return self._player.name

    async def play(self, count, seconds=60):
        """So many moves of the engine, as legal moves of our own rules."""
        moves, last = [], (self._board, None, None)
        for _ in range(count):
            # PyChess ends the game of an engine whose move is illegal by its own rules.
            move = await asyncio.wait_for(self._player.makeMove(*last), seconds)
            text = toAN(last[0], move, short=True, castleNotation=CASTLE_KR)
            moves.append(parse_move(text, self._position))
            board = last[0].move(move)
            self._position = self._position.after(moves[-1])
            reply = self._random.choice(sorted(moves_by_text(self._position, self._chess960)))
            self._position = self._position.after(parse_move(reply, self._position))
            answer = parseAny(board, reply)
            last = board.move(answer), answer, board
        return moves

    async def stop(self):
        """Ends the engine; PyChess's own end of a game cannot be had with Python 3.11."""
        self._player.kill(UNKNOWN_REASON)
        await asyncio.wait_for(self._player.engine.proc.wait(), 60)
