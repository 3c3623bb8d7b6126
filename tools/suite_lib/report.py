"""What a run gave: the table, and the files for other programs."""

import csv
import io
import json
from collections import Counter

from orvelin_lib.table import milliseconds, table

COLUMNS = ("engine", "number", "name", "goal", "solved", "seconds", "move", "mate", "nodes")
COLUMNS += ("depth", "elapsed", "fault")


def is_record(entry):
    """True for what a player says of a position, which may have come through a file or a host."""
    return (
        isinstance(entry, dict)
        and entry.keys() >= {*COLUMNS, "title"}
        and isinstance(entry["engine"], str)
        and isinstance(entry["number"], int)
    )


class Results:
    """The records of all engines; the first of several for the same position counts."""

    def __init__(self, settings, positions):
        self._settings = settings
        self._positions = positions
        self._entries = {}

    def add(self, entry):
        """Takes a record in; False when there is one already."""
        key = entry["engine"], entry["number"]
        is_new = key not in self._entries
        self._entries.setdefault(key, entry)
        return is_new

    def missing(self):
        """(position, name of the engine) of all that is still to do."""
        return [
            (position, entrant.name)
            for position in self._positions
            for entrant in self._settings.entrants
            if (entrant.name, position.number) not in self._entries
        ]

    def of(self, name):
        """The records of an engine in the order of the file."""
        return [entry for key, entry in sorted(self._entries.items()) if key[0] == name]

    def all(self):
        return [entry for entrant in self._settings.entrants for entry in self.of(entrant.name)]

    def summary(self, name):
        """The counts of an engine."""
        entries = self.of(name)
        times = [entry["seconds"] for entry in entries if entry["solved"]]
        return {
            "name": name,
            "title": next((entry["title"] for entry in entries if entry["title"]), None),
            "positions": len(self._positions),
            "finished": len(entries),
            "solved": len(times),
            "faults": sum(entry["fault"] is not None for entry in entries),
            "average_seconds": round(sum(times) / len(times), 4) if times else None,
            "nodes": sum(entry["nodes"] or 0 for entry in entries),
        }

    def summaries(self):
        return [self.summary(entrant.name) for entrant in self._settings.entrants]

    def progress(self):
        """One line while the run goes on."""
        done = Counter(entry["engine"] for entry in self._entries.values())
        solved = Counter(entry["engine"] for entry in self._entries.values() if entry["solved"])
        faults = sum(entry["fault"] is not None for entry in self._entries.values())
        parts = [
            f"{entrant.name} {solved[entrant.name]} of {done[entrant.name]}"
            for entrant in self._settings.entrants
        ]
        total = len(self._positions) * len(self._settings.entrants)
        return f"{len(self._entries)} of {total} done, solved: {', '.join(parts)}; {faults} faults"


def text(results):
    """The table, who the engines say they are, and what was not solved."""
    head = ["engine", "solved", "of", "share", "faults", "to the solution, ms", "nodes"]
    rows, lines = [], []
    for summary in results.summaries():
        average = summary["average_seconds"]
        rows.append(
            [
                summary["name"],
                summary["solved"],
                summary["positions"],
                f"{100 * summary['solved'] / summary['positions']:.1f} %",
                summary["faults"],
                "-" if average is None else milliseconds(average),
                summary["nodes"],
            ]
        )
        lines.append(f"{summary['name']}: {summary['title'] or 'never started'}")
    lines += [_unsolved(entry) for entry in results.all() if not entry["solved"]]
    if missing := len(results.missing()):
        lines.append(f"not finished: {missing}")
    return "\n".join([table(head, rows), "", *lines])


def _unsolved(entry):
    where = f"{entry['engine']}: {entry['name']}"
    if entry["fault"]:
        return f"{where}: fault: {entry['fault']['kind']}: {entry['fault']['detail']}"
    mate = "" if entry["mate"] is None else f" with mate {entry['mate']}"
    return f"{where}: wanted {entry['goal']}, answered {entry['move']}{mate}"


def csv_text(results):
    """A row for each engine and position."""
    text = io.StringIO(newline="")
    writer = csv.DictWriter(text, COLUMNS, extrasaction="ignore")
    writer.writeheader()
    for entry in results.all():
        fault = entry["fault"]
        words = f"{fault['kind']}: {fault['detail']}" if fault else ""
        writer.writerow({**entry, "solved": int(entry["solved"]), "fault": words})
    return text.getvalue()


def json_text(results, settings, suite):
    """Settings, counts and all records."""
    record = {
        "suite": suite,
        "settings": settings.as_dict(),
        "engines": results.summaries(),
        "positions": results.all(),
    }
    return json.dumps(record, indent=2) + "\n"
