"""Growth with depth, and what hash size and number of lines do to a search."""

import math
import statistics

from measure_lib.start import hash_sizes
from measure_lib.uci import MeasuredEngine
from orvelin_lib.board import Position
from orvelin_lib.engine import EngineFailure
from orvelin_lib.fen import FenError
from orvelin_lib.files import input_title, read_error, read_lines
from orvelin_lib.table import milliseconds, table, thousands
from orvelin_lib.tool_main import ToolError

# A search that takes longer than this is not waited for.
LONG_SEARCH = 3600.0
# To measure more would take weeks.
MOST_POSITIONS = 10000


def read_positions(name, console=None):
    """(name, FEN) of each line; lines with '#' are remarks."""
    title = input_title(name)
    positions = []
    for row, line in enumerate(read_lines(name, console), 1):
        if not (line := line.strip()) or line.startswith("#"):
            continue
        place, mark, fen = line.partition(": ")
        if not mark:
            raise ToolError(f"{title}, line {row}: not NAME: FEN")
        if len(positions) == MOST_POSITIONS:
            raise read_error(name, f"more than {MOST_POSITIONS} positions")
        try:
            Position(fen)
        except FenError as problem:
            raise ToolError(f"{title}, line {row}: not a FEN: {problem}") from None
        positions.append((place, fen))
    if not positions:
        raise ToolError(f"{title}: no positions")
    return positions


def some(positions):
    """Every fifth one: the file goes from openings to endings."""
    return positions[2::5] or positions


def search_from_start(settings, fen, limit, options=()):
    """A search by an engine that was just started, which alone gives the same nodes every time."""
    with MeasuredEngine(settings.engine, patience=settings.patience) as engine:
        engine.handshake()
        for name, value in options:
            engine.set_option(name, value)
        engine.ready()
        return engine.search(fen, limit, LONG_SEARCH)


def _nodes_of(search):
    """What too short a search does not tell counts as nothing."""
    return 0 if search is None else search.nodes


def _seconds_of(search):
    """The engine's own time: its commands wait their turn, which would weigh on short searches."""
    if search is None:
        return 0
    if search.milliseconds is None:
        return search.line_seconds
    return search.milliseconds / 1000


def _figures(searches):
    """What a record keeps of several searches."""
    return {
        "nodes": [_nodes_of(search) for search in searches],
        "seconds": [_seconds_of(search) for search in searches],
    }


class Growth:
    """Nodes and time to each depth on all positions."""

    default_depth = 12

    def __init__(self, settings, report):
        self._settings = settings
        self._report = report
        self._depth = settings.depth or self.default_depth

    def run(self):
        entries = []
        for name, fen in self._settings.positions:
            self._report(f"growth: {name}")
            searches = [
                search_from_start(self._settings, fen, f"depth {depth}")
                for depth in range(1, self._depth + 1)
            ]
            entries.append({"name": name, "fen": fen, **_figures(searches)})
        return entries

    def text(self, record):
        by_depth, before = [], []
        for index in range(self._depth):
            nodes = [entry["nodes"][index] for entry in record]
            seconds = [entry["seconds"][index] for entry in record]
            factor = "-"
            ratios = [now / then for now, then in zip(nodes, before) if now and then]
            if ratios:
                factor = f"{statistics.geometric_mean(ratios):.2f}"
            by_depth.append(
                [
                    index + 1,
                    sum(nodes),
                    milliseconds(sum(seconds)),
                    milliseconds(statistics.median(seconds)),
                    milliseconds(max(seconds)),
                    factor,
                ]
            )
            before = nodes
        by_position = []
        for entry in record:
            nodes, seconds = entry["nodes"][-1], entry["seconds"][-1]
            by_position.append(
                [
                    entry["name"],
                    nodes,
                    milliseconds(seconds),
                    thousands(nodes / seconds) if seconds > 0 else "-",
                    f"{self._branching(entry['nodes']):.2f}",
                ]
            )
        depth_head = ["depth", "nodes", "time of all, ms", "median, ms", "longest, ms"]
        position_head = [f"to depth {self._depth}", "nodes", "time, ms", "kn/s", "branching factor"]
        return (
            table([*depth_head, "branching factor"], by_depth)
            + "\n\n"
            + table(position_head, by_position)
        )

    @staticmethod
    def _branching(nodes):
        """The mean factor from one depth to the next over the last four steps, or all of them."""
        steps = min(4, len(nodes) - 1)
        if steps == 0 or nodes[-1 - steps] == 0:
            return math.nan
        return (nodes[-1] / nodes[-1 - steps]) ** (1 / steps)


class HashSizes:
    """Nodes a second with tables of several sizes, turn by turn and in several rounds."""

    def __init__(self, settings, report):
        self._settings = settings
        self._report = report

    def run(self):
        sizes = hash_sizes(self._settings.sizes, self._report)
        searches = {size: [] for size in sizes}
        for number in range(self._settings.rounds):
            for size in sizes:
                self._report(f"hash: round {number + 1}, {size} MiB")
                searches[size].append(self._round(size))
        return [
            {
                "size": size,
                "rates": [
                    statistics.median(search.rate for search in of_position)
                    for of_position in zip(*rounds)
                ],
                "hashfull": max(search.hashfull for row in rounds for search in row),
            }
            for size, rounds in searches.items()
        ]

    def _round(self, size):
        """A search of each position."""
        searches = []
        with MeasuredEngine(self._settings.engine, patience=self._settings.patience) as engine:
            engine.handshake()
            engine.set_option("Hash", size)
            engine.ready()
            # Brings every page of the table into memory: after a search all of it is cleared.
            engine.search(self._settings.positions[0][1], "depth 5")
            for _, fen in some(self._settings.positions):
                engine.new_game()
                limit = self._settings.movetime
                search = engine.search(fen, f"movetime {limit}", limit / 1000)
                if search is None:
                    raise EngineFailure("tells no nodes")
                searches.append(search)
        return searches

    def text(self, record):
        if not record:
            return "no table fits into the memory"
        means = [statistics.geometric_mean(entry["rates"]) for entry in record]
        rows = [
            [
                entry["size"],
                thousands(mean),
                f"{mean / means[0]:.3f}",
                f"{entry['hashfull'] / 10:.1f} %",
            ]
            for entry, mean in zip(record, means)
        ]
        return table(["Hash, MiB", "kn/s", f"to {record[0]['size']} MiB", "in use at most"], rows)


class Lines:
    """Time and nodes to the same depth for one line and for several."""

    default_depth = 10

    def __init__(self, settings, report):
        self._settings = settings
        self._report = report
        self._depth = settings.depth or self.default_depth

    def run(self):
        entries = []
        for lines in self._settings.lines:
            self._report(f"multipv: {lines} lines")
            searches = [
                search_from_start(
                    self._settings, fen, f"depth {self._depth}", (("MultiPV", lines),)
                )
                for _, fen in some(self._settings.positions)
            ]
            entries.append({"lines": lines, **_figures(searches)})
        return entries

    def text(self, record):
        rows = []
        first = record[0]
        for entry in record:
            nodes, seconds = sum(entry["nodes"]), sum(entry["seconds"])
            rows.append(
                [
                    entry["lines"],
                    nodes,
                    milliseconds(seconds),
                    f"{nodes / sum(first['nodes']):.2f}",
                    f"{seconds / max(sum(first['seconds']), 0.001):.2f}",
                ]
            )
        head = [f"lines, to depth {self._depth}", "nodes", "time, ms"]
        relation = "1 line" if first["lines"] == 1 else f"{first['lines']} lines"
        return table([*head, f"nodes to {relation}", f"time to {relation}"], rows)
