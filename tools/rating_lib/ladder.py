"""Plays the matches of the ladder in small parts, so that it can be ended and gone on with at any
time."""

import contextlib
import os
import signal
import subprocess
import sys

from match_lib import kept
from match_lib.pairing import Schedule
from match_lib.results import read
from orvelin_lib.arguments import Parser, file_name
from orvelin_lib.files import make_folder, write_bytes
from orvelin_lib.table import table
from orvelin_lib.tool_main import ToolError, print_whole, run_tool, take_signals
from rating_lib.plan import GAMES, SHARDS, plan

HERE = os.path.dirname(os.path.dirname(os.path.realpath(__file__)))
ENGINE = "orvelin-play"
# About what a game costs beside its nodes.
NODES_BESIDE = 2000000
# Weak players find no end.
MOST_MOVES = "250"
DESCRIPTION = """
Plays the matches that place the levels of orvelin-play. FOLDER holds the engine, orvelin-play, and
gets a file of orvelin-match for each part of each match. The next part is always one of the match
that has cost least so far. A signal ends the run, and the same command goes on with it.
"""


class Part:
    """One shard of a match, with what there is of it."""

    def __init__(self, folder, match, shard):
        self.match, self.shard = match, shard
        self.file = os.path.join(folder, f"{match.name}.{shard}.jsonl")
        self.games = self.nodes = 0
        self.look()

    def look(self):
        """Counts what was played."""
        if not os.path.lexists(self.file) or os.path.getsize(self.file) == 0:
            return
        _, records = read(self.file)
        self.games = len(records)
        self.nodes = sum(sum(filter(None, record["nodes"])) for record in records)

    @property
    def cost(self):
        """Of the games, in nodes. Not the time, which tells of the other work of the machine."""
        return self.nodes + self.games * NODES_BESIDE

    @property
    def is_whole(self):
        return self.games == len(Schedule(2, False, GAMES, (self.shard, SHARDS)).numbers())

    def command(self, openings):
        words = [sys.executable, os.path.join(HERE, "orvelin-match")]
        for player in self.match.players:
            words += ["--engine", *player]
        words += ["--each", "option.Hash=16", "--games", str(GAMES)]
        words += ["--shard", f"{self.shard}/{SHARDS}", "--longest", "300", "--max-moves", MOST_MOVES]
        # At the lowest priority an engine may get no time for long.
        words += ["--patience", "60"]
        words += ["--openings", openings, "--order", "random", "--seed", str(self.match.seed)]
        return [*words, "--jsonl", self.file, "--resume", "--quiet"]


class Ladder:
    """The state is that of the files alone."""

    def __init__(self, folder, matches):
        self._openings = os.path.join(os.path.dirname(HERE), "openings")
        self.parts = {
            match.name: [Part(folder, match, shard) for shard in range(1, SHARDS + 1)]
            for match in matches
        }

    def next_part(self):
        """None when all is played."""
        open_parts = [
            (sum(part.cost for part in parts), next(part for part in parts if not part.is_whole))
            for parts in self.parts.values()
            if not all(part.is_whole for part in parts)
        ]
        return min(open_parts, key=lambda each: each[0])[1] if open_parts else None

    def command(self, part):
        return part.command(self._openings)

    def table(self):
        rows = []
        for name, parts in self.parts.items():
            nodes = sum(part.nodes for part in parts)
            rows.append([name, sum(part.games for part in parts), GAMES, f"{nodes / 1e6:.1f}"])
        return table(("match", "played", "of", "million nodes"), rows)


class _Runner:
    """Starts orvelin-match, and hands on the signals that end it."""

    def __init__(self):
        self.signalled = None
        self._process = None
        take_signals(self._end)

    def _end(self, number, _frame):
        self.signalled = number
        if self._process is not None:
            with contextlib.suppress(ProcessLookupError):
                self._process.send_signal(signal.SIGTERM)

    def run(self, command):
        """The exit status."""
        with subprocess.Popen(command, stdout=subprocess.DEVNULL, start_new_session=True) as process:
            self._process = process
            if self.signalled is not None:
                process.terminate()
            status = process.wait()
        self._process = None
        return status


def _run(words, console):
    parser = Parser(prog="run-ladder", description=DESCRIPTION)
    parser.add_argument("folder", type=file_name, metavar="FOLDER")
    choice = parser.add_mutually_exclusive_group()
    choice.add_argument("--list", action="store_true", help="tells what was played, and ends")
    name = {"type": file_name, "metavar": "FOLDER"}
    choice.add_argument("--keep", **name, help="writes there what is kept of each match, and ends")
    options = parser.parse_args(words)
    if not options.list:
        make_folder(options.keep or options.folder)
    ladder = Ladder(options.folder, plan(os.path.join(os.path.abspath(options.folder), ENGINE)))
    if options.list:
        print_whole(ladder.table() + "\n")
        return 0
    if options.keep:
        keep(ladder, options.keep)
        return 0
    return play(ladder, console)


def keep(ladder, folder):
    """Writes a kept file of each match that has begun."""
    for name, parts in ladder.parts.items():
        if files := [part.file for part in parts if part.games]:
            data = kept.data(*kept.of_files(files))
            write_bytes(os.path.join(folder, name + kept.END), data)


def play(ladder, console):
    """Plays until all is played or a signal comes; the exit status."""
    runner = _Runner()
    while runner.signalled is None and (part := ladder.next_part()) is not None:
        before = part.games
        status = runner.run(ladder.command(part))
        if runner.signalled is not None:
            break
        part.look()
        console.say(f"{part.match.name}: {sum(p.games for p in ladder.parts[part.match.name])}")
        if status != 0 or part.games == before:
            raise ToolError(f"{part.file}: orvelin-match ended with {status}")
    return 0 if runner.signalled is None else 128 + runner.signalled


def main(words):
    """Runs the command; its exit status."""
    return run_tool("run-ladder", lambda console: _run(words, console))
