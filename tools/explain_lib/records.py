"""Records of orvelin-analyse, as docs/analyse.md has them: read, checked, and picked."""

import json
import math

from explain_lib.judgement import MARK_NAMES
from explain_lib.terms import TERMS
from orvelin_lib.fen import Fen, FenError
from orvelin_lib.files import input_title, read_lines
from orvelin_lib.table import counted
from orvelin_lib.tool_main import ToolError

SCHEMA = 1
_SCORES = ("win", "draw", "loss", "score")


class BadRecord(Exception):
    """What is wrong with a record."""


def _is_number(value):
    return not isinstance(value, bool) and isinstance(value, (int, float)) and math.isfinite(value)


def _number(holder, name):
    value = holder.get(name)
    if not _is_number(value):
        raise BadRecord(f"{name} is no number")
    return value


def _check_terms(holder):
    terms = holder.get("terms")
    if not isinstance(terms, list) or len(terms) != len(TERMS):
        raise BadRecord(f"terms are not {len(TERMS)} numbers")
    if not all(map(_is_number, terms)):
        raise BadRecord("a term is no number")


def _check_scores(holder):
    for name in _SCORES:
        _number(holder, name)
    if holder.get("mate") is not None:
        _number(holder, "mate")


def _check_line(line):
    if not isinstance(line, dict):
        raise BadRecord("a line is no object")
    _check_scores(line)
    for name in ("moves", "san"):
        if not isinstance(line.get(name), str):
            raise BadRecord(f"{name} of a line is no text")
    leaf = line.get("leaf")
    if leaf is not None:
        if not isinstance(leaf, dict) or not isinstance(leaf.get("moves"), str):
            raise BadRecord("a leaf has no moves")
        _number(leaf, "score")
        _check_terms(leaf)


def _check_judgement(judgement):
    if not isinstance(judgement, dict):
        raise BadRecord("judgement is no object")
    if judgement.get("mark") not in ("", *MARK_NAMES):
        raise BadRecord("mark is none")
    _number(judgement, "lost")
    if judgement.get("accuracy") is not None:
        _number(judgement, "accuracy")
    if not isinstance(judgement.get("sentence"), str):
        raise BadRecord("sentence is no text")


def _check_played(played):
    if not isinstance(played, dict):
        raise BadRecord("played is no object")
    if not all(isinstance(played.get(name), str) for name in ("move", "san")):
        raise BadRecord("played has no move")
    if played.get("line") is not None:
        _check_line(played["line"])
    if played.get("judgement") is not None:
        _check_judgement(played["judgement"])


def check_record(record):
    """Raises BadRecord unless all that is read of a record here is there."""
    if not isinstance(record, dict):
        raise BadRecord("it is no object")
    if record.get("schema") != SCHEMA:
        raise BadRecord(f"its schema is {record.get('schema')!r}; version {SCHEMA} is read here")
    fen = record.get("fen") if isinstance(record.get("fen"), str) else ""
    try:
        Fen.parse(fen)
        if len(fen.split()) != 6:
            raise FenError("it has not six fields")
    except FenError as problem:
        raise BadRecord(f"fen is none: {problem}") from None
    for name in ("source", "receipt"):
        if not isinstance(record.get(name), dict):
            raise BadRecord(f"{name} is missing")
    _check_scores(record)
    _number(record, "static")
    _check_terms(record)
    if not isinstance(record.get("lines"), list):
        raise BadRecord("lines are missing")
    for line in record["lines"]:
        _check_line(line)
    if record.get("rest") is not None:
        _check_line(record["rest"])
    if record.get("played") is not None:
        _check_played(record["played"])


def records_of(lines, title):
    """The records of some lines of JSON, one by one."""
    for number, text in enumerate(lines, 1):
        try:
            record = json.loads(text)
            check_record(record)
        except (ValueError, RecursionError):
            raise ToolError(f"{title}: line {number} is no JSON") from None
        except BadRecord as problem:
            raise ToolError(f"{title}: line {number} is no record: {problem}") from None
        yield record


def _check_order(records, title):
    plies = [record["source"].get("ply") for record in records]
    first = plies[0] if isinstance(plies[0], int) else None
    if first is None or plies != list(range(first, first + len(plies))):
        raise ToolError(f"{title}: positions of the game are missing, or in another order")


def pick(records, number, title):
    """Game or position `number` of some records, counted from 1: the list of its records. A position
    without a game is a list of one. Games count as in their files, with those that could not be
    read; those of a further file count on."""
    chosen, count, before, base, file = [], 0, None, 0, None
    for record in records:
        source = record["source"]
        game = (source.get("file"), source["game"]) if source.get("game") else None
        if game is None or game != before:
            if chosen:
                break
            if game is None:
                base, count = base + 1, count + 1
            else:
                base = base if game[0] == file else count
                file, count = game[0], base + game[1]
        before = game
        if count == number:
            chosen.append(record)
    if not chosen:
        left_out = ", or it was left out" if number < count else ""
        raise ToolError(
            f"the last game or position of {title} has number {count}; there is no number "
            f"{number}{left_out}"
        )
    if chosen[0]["source"].get("game"):
        _check_order(chosen, title)
    return chosen


def read_records(name, number, console=None):
    """Game or position `number` of a file of records."""
    title = input_title(name)
    return pick(records_of(read_lines(name, console), title), number, title)


def is_searched(record):
    """Whether there are lines: without a search there is none."""
    return record["receipt"].get("limit") != "static"


def how(record):
    """In words how a record was come by."""
    receipt = record["receipt"]
    limit = str(receipt.get("limit", "?")).replace("=", " ")
    limit = "static evaluation" if limit == "static" else f"search of {limit}"
    lines = receipt.get("lines", 1)
    text = f"Orvelin {receipt.get('version', '?')}, {limit}"
    return text + (f", {counted(lines, 'line')}" if isinstance(lines, int) and lines > 1 else "")
