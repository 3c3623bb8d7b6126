"""What the tests of orvelin-explain have in common."""

import os
import subprocess
import sys

from explain_lib.session import Line
from explain_lib.terms import TERMS
from orvelin_lib.board import Position
from orvelin_lib.fen import Fen
from scratch import ScratchTest

ROOT = os.environ["EXPLAIN_ROOT"]
ENGINE = os.environ["EXPLAIN_ENGINE"]
ANALYSE = os.environ["EXPLAIN_ANALYSE"]
TOOL = os.path.join(ROOT, "tools", "orvelin-explain")
PATIENCE = 120
SVG = "{http://www.w3.org/2000/svg}"
START = "rnbqkbnr/pppppppp/8/8/8/8/PPPPPPPP/RNBQKBNR w KQkq - 0 1"


def line_of(text):
    """The line without moves from a position."""
    return Line(str(Fen.parse(text)), Position(text))


def table(total, **terms):
    """Lines as the engine prints them; terms that are not given are 0."""
    lines = []
    for name in TERMS:
        middle_game, end_game = terms.get(name, (0, 0))
        lines.append(f"{name:<30}{middle_game:>20g}     {end_game:>20g}")
    return [*lines, "", "", f"Total score: {total}     (white's point of view)"]


def score(units=0, win=300, loss=300, mate=None):
    """The fields of a score in a record."""
    chances = {"win": win, "draw": 1000 - win - loss, "loss": loss}
    return {"score": units, "centipawns": units // 3, "mate": mate, **chances}


def line(moves, san, terms=None, **fields):
    """A line of a record; the terms are those of its leaf."""
    leaf = None
    if terms is not None:
        leaf = {"moves": moves, "fen": START, "score": 0, "fading": 1, "terms": all_terms(terms)}
    found = {"moves": moves, "san": san, "leaf": leaf, "unexplained": None if leaf else "not found"}
    return {"depth": 9, "at_least": False, **found, **score(**fields)}


def all_terms(terms):
    return [terms.get(name, 0) for name in TERMS]


def record(fen=START, ply=None, lines=(), played=None, terms=None, **fields):
    """A record as orvelin-analyse writes it; with a ply it belongs to a game."""
    source = {"file": "a.pgn", "line": 1}
    if ply is not None:
        source |= {"game": 1, "ply": ply, "white": "A & B", "black": "<C>", "result": "1-0"}
        source |= {"event": "", "date": "????.??.??"}
    receipt = {"limit": "depth=9", "lines": 1, "leaves": True, "played": True, "version": "1.2.3"}
    found = {"schema": 1, "number": 1, "source": source, "fen": fen, "chess960": False}
    found |= {"nodes": 1, "depth": 9, **score(**fields), "static": 0}
    found |= {"terms": all_terms(terms or {}), "lines": list(lines)}
    return {**found, "rest": None, "played": played, "receipt": receipt}


class ToolTest(ScratchTest):
    """Tests that run the program itself, in a folder of their own."""

    def read(self, name):
        with open(self.file(name), encoding="utf-8") as file:
            return file.read()

    def program(self, name, text):
        """A shell script that can be run."""
        path = self.file(name, "#!/bin/sh\n" + text)
        os.chmod(path, 0o755)
        return path

    def run_program(self, name):
        subprocess.run([self.file(name)], cwd=self.directory, timeout=PATIENCE, check=True)

    def explain(
        self,
        *arguments,
        status=0,
        engine=ENGINE,
        analyse=ANALYSE,
        tool=TOOL,
        output=subprocess.PIPE,
        stdin=None,
        limit=None,
        **variables,
    ):
        chosen = ["--engine", engine] if engine else []
        chosen += ["--analyse", analyse] if analyse else []
        environment = {**os.environ, "COLUMNS": "100", **variables}
        # As an installed tool: the packages are found from where it lies.
        environment.pop("PYTHONPATH", None)
        run = subprocess.run(
            [sys.executable, tool, *chosen, "--patience", str(PATIENCE), *arguments],
            stdin=stdin,
            stdout=output,
            stderr=subprocess.PIPE,
            text=True,
            encoding="utf-8",
            timeout=240,
            check=False,
            cwd=self.directory,
            env=environment,
            preexec_fn=limit,
        )
        self.assertEqual(run.returncode, status, (run.stdout or "") + run.stderr)
        return run
