"""Runs orvelin-analyse: what is explained comes from its records and from nowhere else."""

import glob
import os
import shlex
import subprocess
import tempfile

from explain_lib.records import records_of
from orvelin_lib.engines import checked
from orvelin_lib.process import dies_with, program
from orvelin_lib.tool_main import ToolError

NAME = "orvelin-analyse"
ANALYSE_HELP = f"{NAME}, as a command (default: the one that is installed or built)"
GAME_DEPTH = 12


def default_analyser(folder):
    """The program beside the tools in their folder, else the newest that the repository around
    them has built, else one that the shell finds."""
    beside = os.path.join(folder, NAME)
    if os.access(beside, os.X_OK):
        return beside
    built = glob.glob(os.path.join(glob.escape(os.path.dirname(folder)), "build", "*", NAME))
    built = [path for path in built if os.access(path, os.X_OK)]
    if built:
        return max(built, key=os.path.getmtime)
    found = program(NAME)
    if os.path.exists(found):
        return found
    raise ToolError(f"there is no {NAME}; build the tools, or name one with --analyse")


def _tag(name, value):
    value = value.replace("\\", "\\\\").replace('"', '\\"')
    return f'[{name} "{value}"]\n'


def pgn_text(game):
    """The main line of a game, in a form that needs no tolerance."""
    tags = dict(game.tags)
    tags.setdefault("Result", "*")
    text = "".join(_tag(name, value) for name, value in tags.items())
    words = [word for move in game.moves for word in (move.number, move.san)]
    result = tags["Result"] if tags["Result"] in ("1-0", "0-1", "1/2-1/2") else "*"
    return f"{text}\n" + "\n".join([*words, result]) + "\n\n"


def _complaint(errors):
    """The last line on standard error that is not empty."""
    errors.seek(0)
    lines = errors.read().decode(errors="replace").split("\n")
    lines = [line.split("\r")[-1].strip() for line in lines]
    last = next((line for line in reversed(lines) if line), "")
    return last.removeprefix(NAME + ": ") or "it gives no reason"


def analyse(command, text, arguments, total, console=None):
    """The records of a game or of positions."""
    command = [*checked(command), "-", *arguments, "--jsonl", "-", "--quiet"]
    records = []
    with tempfile.TemporaryFile() as source, tempfile.TemporaryFile() as errors:
        source.write(text.encode())
        source.seek(0)
        try:
            process = subprocess.Popen(
                command,
                stdin=source,
                stdout=subprocess.PIPE,
                stderr=errors,
                start_new_session=True,
                preexec_fn=dies_with(os.getpid()),
            )
        except OSError as error:
            raise ToolError(f"cannot run {shlex.join(command[:1])}: {error.strerror}") from None
        try:
            lines = (line.decode(errors="replace") for line in process.stdout)
            for record in records_of(lines, NAME):
                records.append(record)
                if console is not None:
                    console.progress(f"position {len(records)} of {total}")
            status = process.wait()
        finally:
            process.kill()
            process.stdout.close()
            process.wait()
        if status != 0 or len(records) != total:
            raise ToolError(f"{NAME} failed: {_complaint(errors)}")
    return records


def limit_words(depth, nodes):
    """The limit as the program takes it; neither is the static evaluation."""
    if nodes:
        return f"nodes={nodes}"
    return f"depth={depth}" if depth else "static"


def game_records(command, game, limit, lines, console=None):
    """A record for each position of the game, the moves that were played searched too, and
    beside a best move the rest."""
    arguments = ["--limit", limit, "--lines", str(lines)]
    if limit != "static":
        arguments += ["--moves", "best,played,rest"]
    return analyse(command, pgn_text(game), arguments, len(game.moves) + 1, console)


def position_record(command, game, limit, lines):
    """The record of the position behind the moves of a game, as one without a game."""
    last = len(game.moves)
    arguments = ["--limit", limit, "--lines", str(lines), "--plies", f"{last}-{last}"]
    (record,) = analyse(command, pgn_text(game), arguments, 1)
    record["source"] = {"file": "-", "line": 1}
    return record
