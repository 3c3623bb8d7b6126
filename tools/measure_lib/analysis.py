"""What an analysis costs beside the search of the engine: the same nodes, in the same units."""

import json
import os
import statistics
import subprocess
import tempfile

from measure_lib.searches import LONG_SEARCH, some
from measure_lib.uci import MeasuredEngine
from orvelin_lib.engine import EngineFailure
from orvelin_lib.table import table, thousands
from orvelin_lib.tool_main import ToolError


def analysed(command, name, *arguments):
    """(nodes, seconds of the processor) of an analysis of the positions in a file."""
    command = [*command, name, "--quiet", *arguments]
    with tempfile.TemporaryFile() as output:
        process = subprocess.Popen(command, stdin=subprocess.DEVNULL, stdout=output)
        _, status, usage = os.wait4(process.pid, 0)
        process.returncode = os.waitstatus_to_exitcode(status)
        if process.returncode != 0:
            raise ToolError(f"{command[0]} ended with status {process.returncode}")
        output.seek(0)
        nodes = sum(json.loads(line)["nodes"] for line in output)
    return nodes, usage.ru_utime + usage.ru_stime


class Analysis:
    """Nodes for a second of the processor in orvelin-analyse and in the engine, in rounds turn by
    turn, and what the leaves of the lines take beside that."""

    default_depth = 12

    def __init__(self, settings, report):
        self._settings = settings
        self._report = report
        self._depth = settings.depth or self.default_depth

    def run(self):
        rounds = []
        with tempfile.TemporaryDirectory() as folder:
            name = os.path.join(folder, "positions.fen")
            with open(name, "w", encoding="ascii") as file:
                file.writelines(f"{fen}\n" for _, fen in some(self._settings.positions))
            for number in range(self._settings.rounds):
                self._report(f"analysis: round {number + 1}")
                rounds.append(self._round(name))
        return {"depth": self._depth, "rounds": rounds}

    def _round(self, name):
        limit = ("--limit", f"depth={self._depth}")
        searched, seconds = self._search()
        program = self._settings.analyse
        # The start of the program is not the search of a position.
        _, start = analysed(program, name, "--limit", "static")
        nodes, plain = analysed(program, name, *limit, "--no-leaves")
        _, explained = analysed(program, name, *limit)
        if nodes != searched:
            raise ToolError(f"not the same search: {searched} nodes, {nodes} in the analysis")
        return {
            "nodes": nodes,
            "engine": seconds,
            "analysis": max(plain - start, 1e-6),
            "leaves": explained - plain,
        }

    def _search(self):
        nodes = 0
        with MeasuredEngine(self._settings.engine, patience=self._settings.patience) as engine:
            engine.handshake()
            began = engine.moment().processor
            for _, fen in some(self._settings.positions):
                # Both begin each search by clearing what the last one has written.
                engine.new_game()
                search = engine.search(fen, f"depth {self._depth}", LONG_SEARCH)
                if search is None:
                    raise EngineFailure("tells no nodes")
                nodes += search.nodes
            return nodes, engine.moment().processor - began

    def text(self, record):
        rows = []
        for each in record["rounds"]:
            engine, analysis = each["nodes"] / each["engine"], each["nodes"] / each["analysis"]
            share = 100 * each["leaves"] / each["analysis"]
            ratio = f"{analysis / engine:.3f}"
            rows.append([thousands(engine), thousands(analysis), ratio, f"{share:.1f} %"])
        ratio = statistics.median(each["engine"] / each["analysis"] for each in record["rounds"])
        share = statistics.median(each["leaves"] / each["analysis"] for each in record["rounds"])
        rows.append(["median", "", f"{ratio:.3f}", f"{100 * share:.1f} %"])
        head = [f"to depth {record['depth']}: engine, kn/s", "orvelin-analyse, kn/s", "ratio"]
        return table([*head, "leaves"], rows)
