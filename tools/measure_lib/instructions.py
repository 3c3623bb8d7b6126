"""Instructions a node, by folder, function and file, as callgrind counts them."""

import os
import re
import subprocess
import tempfile
from collections import Counter
from dataclasses import dataclass, field

from orvelin_lib.engine import EngineFailure
from orvelin_lib.table import table

SESSION = "bench\nquit\n"
# Nothing else is counted: the start of the process does not belong to a search.
COUNTED = "orvelin::Engine::command_bench*"
OUTSIDE = "not in src"


@dataclass
class Costs:
    """Instructions by what they are counted for. An inlined function counts for the file in which
    it is written, but for the folder and the name of the function into which it was inlined."""

    folders: Counter = field(default_factory=Counter)
    functions: Counter = field(default_factory=Counter)
    files: Counter = field(default_factory=Counter)

    def record(self):
        return {kind: dict(getattr(self, kind)) for kind in ("folders", "functions", "files")}


def short_name(name):
    """A function without its arguments, so that its templates and clones are one."""
    name = re.sub(r" ?\[clone [^]]*\]|\(anonymous namespace\)::", "", name)
    # What stands in brackets is taken away from the inside out.
    bare = None
    while bare != name:
        bare, name = name, re.sub(r"<[^<>]*>|\([^()]*\)", "", name)
    bare = re.sub(r"( const|'[0-9]+)+$", "", bare)
    return bare.split(" ")[-1].replace("orvelin::", "") or name


def read_costs(lines, root="/src/"):
    """What callgrind has written, by folder, function and file below src/."""
    files, functions, costs = {}, {}, Costs()
    home = current = function = OUTSIDE
    skip = False

    def full(names, text):
        """A name is written out once and is a number from then on."""
        number, _, name = text.partition(" ")
        if name:
            names[number] = name
        return names.get(number, number)

    def source(text):
        path = full(files, text)
        return path.rpartition(root)[2] if root in path else OUTSIDE

    for line in lines:
        kind, mark, rest = line.rstrip("\n").partition("=")
        if mark and kind == "fl":
            home = current = source(rest)
        elif mark and kind in ("fi", "fe"):
            current = source(rest)
        elif mark and kind == "fn":
            function = short_name(full(functions, rest))
        elif mark and kind in ("cfi", "cfl"):
            full(files, rest)
        elif mark and kind == "cfn":
            full(functions, rest)
        elif mark and kind == "calls":
            # The next line holds what the called function took.
            skip = True
        elif re.match(r"[0-9+*-]", line):
            words = line.split()
            if not skip and len(words) > 1:
                cost = int(words[1])
                # The standard library has no place of its own: it works for its user.
                costs.files[home if current == OUTSIDE else current] += cost
                costs.folders[(current if home == OUTSIDE else home).partition("/")[0]] += cost
                costs.functions[function] += cost
            skip = False
    return costs


class Instructions:
    """The command `bench` under callgrind, for one build or for two."""

    def __init__(self, settings, report):
        self._settings = settings
        self._report = report

    def run(self):
        entries = []
        if self._settings.before:
            entries.append({"name": "before", **self._count(self._settings.before)})
        entries.append({"name": "now", **self._count(self._settings.engine)})
        return entries

    def _count(self, engine):
        self._report(f"instructions: bench of {engine[0]} under callgrind, which takes minutes")
        with tempfile.TemporaryDirectory() as directory:
            out = os.path.join(directory, "callgrind.out")
            command = ["valgrind", "--tool=callgrind", f"--callgrind-out-file={out}"]
            command += [f"--toggle-collect={COUNTED}", *engine]
            try:
                run = subprocess.run(
                    command, input=SESSION, capture_output=True, text=True, check=False
                )
            except OSError as error:
                raise EngineFailure(f"valgrind cannot be started: {error.strerror}") from None
            match = re.search(r"^nodes:\s+(\d+)$", run.stdout, re.MULTILINE)
            if run.returncode != 0 or match is None:
                raise EngineFailure(f"ended with status {run.returncode} under callgrind")
            with open(out, encoding="utf-8", errors="replace") as file:
                costs = read_costs(file)
        if set(costs.files) <= {OUTSIDE}:
            raise EngineFailure("has no debug information; build it with -g")
        return {"nodes": int(match[1]), **costs.record()}

    def text(self, record):
        head = [entry["name"] for entry in record]
        if len(record) > 1:
            head.append("now to before")
        parts = []
        for title, kind in (
            ("by folder of the function", "folders"),
            ("by function", "functions"),
            ("by file in which it is written", "files"),
        ):
            shares = [
                {name: cost / entry["nodes"] for name, cost in entry[kind].items()}
                for entry in record
            ]
            totals = [sum(share.values()) for share in shares]
            # What hardly counts is in the sum alone.
            names = [
                name
                for name in {**shares[-1], **shares[0]}
                if any(share.get(name, 0) > 0.005 * total for share, total in zip(shares, totals))
            ]
            names.sort(key=lambda name, last=shares[-1]: -last.get(name, 0))
            rows = [self._row(name, [share.get(name, 0) for share in shares]) for name in names]
            parts.append(table([title, *head], [*rows, self._row("all", totals)]))
        nodes = ", ".join(f"{entry['name']} {entry['nodes']} nodes" for entry in record)
        return "\n\n".join(["instructions a node", *parts, nodes])

    @staticmethod
    def _row(name, values):
        row = [name, *(f"{value:.1f}" for value in values)]
        if len(values) > 1:
            row.append(f"{values[-1] / values[0]:.2f}" if values[0] else "-")
        return row
