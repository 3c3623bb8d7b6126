"""One run of a match: what is still to be played, and what came out so far."""

import os

from match_lib import report, results
from match_lib.display import Display
from match_lib.engine import EngineFailure, Listener
from match_lib.game import NODES_FACTOR
from match_lib.openings import OpeningFile, RandomOpenings
from match_lib.pairing import Schedule, opening_order
from match_lib.pgn_text import pgn_text
from match_lib.players import players_of
from match_lib.settings import Settings
from match_lib.standings import Standings
from match_lib.table import start_engine
from match_lib.workers import StopSignal, Workers
from orvelin_lib.files import check_writable, write_error, write_file
from orvelin_lib.table import counted
from orvelin_lib.tool_main import take_signals

# An engine that was only looked at gets so long to leave.
LEAVING_SECONDS = 2


def _openings(options):
    """The openings, and the index of the one that the n-th pair of two players gets."""
    chess960 = options.variant == "chess960"
    wanted = options.games // 2
    if options.openings is None:
        return RandomOpenings(chess960, options.plies, options.seed), range(wanted)
    openings = OpeningFile(options.openings, chess960, options.plies)
    return openings, opening_order(len(openings), wanted, options.order, options.seed)


def _settings(options, openings):
    return Settings(
        players=players_of(options.engines, options.each, options.limit),
        games=options.games,
        gauntlet=options.gauntlet,
        openings=openings.digest(),
        order=options.order,
        seed=options.seed,
        chess960=options.variant == "chess960",
        ponder=options.ponder,
        margin=options.margin,
        patience=options.patience,
        longest=options.longest,
        restart=options.restart,
        max_moves=options.max_moves,
        draw=options.draw,
        resign=options.resign,
        shard=options.shard,
    )


def _probe(settings):
    """Starts every engine once: an error when one does not start or lacks an option."""
    stop = StopSignal()
    try:
        for player in settings.players:
            engine = start_engine(player, settings, Listener(stop.output))
            try:
                engine.quit(LEAVING_SECONDS)
            except EngineFailure:
                pass
            finally:
                engine.kill()
    finally:
        stop.give()


class _PgnFile:
    """Games go to its end as they are over. A run that is taken up again writes it anew, since one
    that was killed may have left half a game."""

    def __init__(self, name, settings, records):
        self._name = name
        self._controls = results.controls_of(settings.as_dict())
        check_writable(name)
        write_file(name, "".join(pgn_text(record, self._controls) for record in records))

    def add(self, record):
        try:
            with open(self._name, "a", encoding="utf-8") as file:
                file.write(pgn_text(record, self._controls))
        except OSError as error:
            raise write_error(self._name, error) from None


class Match:
    """Made from the arguments; standings hold all games, those of an earlier run too."""

    def __init__(self, options, console):
        self._options = options
        openings, order = _openings(options)
        self._settings = _settings(options, openings)
        players = self._settings.players
        schedule = Schedule(len(players), options.gauntlet, options.games, options.shard)
        plans = [schedule.plan(number) for number in schedule.numbers()]
        known = {index: openings[index] for index in {order[plan.opening] for plan in plans}}
        self._tasks = [(plan, known[order[plan.opening]]) for plan in plans]
        self._planned = len(plans)
        _probe(self._settings)
        if options.json:
            check_writable(options.json)
        self._journal, records = results.opened(options, self._settings)
        self._pgn = _PgnFile(options.pgn, self._settings, records) if options.pgn else None
        played = {record["game"] for record in records}
        self._tasks = [task for task in self._tasks if task[0].number not in played]
        self.standings = Standings(player.name for player in players)
        for record in records:
            self.standings.add(record)
        self._display = Display(console, options.quiet)
        # Engines of which was said that they do not keep to their nodes.
        self._overrun = set()

    def _folder(self):
        if self._options.dialogues:
            return self._options.dialogues
        if self._options.jsonl:
            return os.path.splitext(self._options.jsonl)[0] + "-faults"
        return "orvelin-match-faults"

    def _is_over(self):
        """True when no more games are wanted, though some are left."""
        options, standings = self._options, self.standings
        if options.faults and standings.faults:
            return True
        return options.sprt is not None and options.sprt.verdict(standings.pairs) is not None

    def play(self):
        """Plays what is left; the signal that interrupted it, None without one."""
        if not self._tasks or self._is_over():
            return None
        count = min(self._options.concurrency, len(self._tasks))
        self._warn_of_few_cores(count)
        stop, signals = StopSignal(), []

        def on_signal(number, _frame):
            signals.append(number)
            stop.give()

        # Before there is a process that a signal would end without a word.
        take_signals(on_signal)
        workers = Workers(self._settings, self._folder(), self._tasks, count, stop)
        try:
            for entry in workers.entries():
                self._take(entry)
                if self._is_over():
                    workers.stop()
        finally:
            workers.stop()
            self._display.close()
        return signals[0] if signals else None

    def _warn_of_few_cores(self, games):
        """Where engines wait for each other their clocks run on."""
        settings = self._settings
        thinking = games * (2 if settings.ponder else 1)
        cores = len(os.sched_getaffinity(0))
        is_timed = any(player.limit.kind in ("tc", "movetime") for player in settings.players)
        if is_timed and thinking > cores:
            words = f"{counted(thinking, 'engine')} think at a time on {counted(cores, 'core')}"
            self._display.say(f"{words}: their clocks run while they wait for each other")

    def _tell_overruns(self, entry):
        """Once for each engine."""
        for name, count in zip((entry["white"], entry["black"]), entry["overruns"]):
            if count and name not in self._overrun:
                self._overrun.add(name)
                words = f"{name} tells more than {NODES_FACTOR} times the nodes that it is given"
                self._display.say(f"{words}: its games are of another strength than that")

    def _take(self, entry):
        self.standings.add(entry)
        if entry["kind"] == "game":
            self._tell_overruns(entry)
            if self._journal:
                self._journal.write(entry)
            if self._pgn:
                self._pgn.add(entry)
        for fault in entry["faults"]:
            words = f"{fault['engine']}: {fault['kind']}: {fault['detail'][:200]}: {fault['file']}"
            self._display.say(words)
        self._display.update(
            lambda: report.progress(self.standings, self._planned, self._options.sprt),
            lambda: report.standings_table(self.standings),
        )

    def close(self):
        if self._journal:
            self._journal.close()
