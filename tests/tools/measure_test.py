"""The measurements, with the real engine in short form and with engines that misbehave.

Times are held to wide bounds only: what is tested is that they are taken, and their order.
"""

import json
import os
import unittest

from fake_engines import TOOLS, FakeEngines
from limits import small_files
from measure_lib import machine
from measure_lib.instructions import Instructions, read_costs, short_name
from measure_lib.searches import Growth, HashSizes, Lines, read_positions, some
from measure_lib.start import hash_sizes
from measure_lib.uci import MeasuredEngine
from orvelin_lib.board import Position, other
from orvelin_lib.engine import number_after
from orvelin_lib.rules import legal_moves
from orvelin_lib.tool_main import ToolError

ENGINE = os.environ["MEASURE_ENGINE"]
ANALYSE = os.environ["MEASURE_ANALYSE"]
POSITIONS = os.path.join(os.path.dirname(TOOLS), "bench", "positions.txt")
TWO_POSITIONS = """# a remark

open: r1bqk2r/1pppbppp/p1n2n2/4p3/B3P3/5N2/PPPP1PPP/RNBQ1RK1 w kq - 4 6
late: 3r1k2/1pR5/p5pb/P1p4p/2N2r1P/1P1P1K2/2P5/8 w - - 0 36
"""
SECONDS = 60


class MeasureTest(FakeEngines):
    def measure(self, *arguments, engine=ENGINE, status=0):
        name = self.file("record.json")
        with open(self.file("positions.txt"), "w", encoding="ascii") as file:
            file.write(TWO_POSITIONS)
        self.run_of_tool = self.tool(
            "measure",
            *("--engine", engine, "--positions", self.file("positions.txt"), "--json", name),
            *arguments,
            status=status,
        )
        if status != 0:
            return None
        with open(name, encoding="utf-8") as file:
            return json.load(file)


class EngineTest(MeasureTest):
    def assert_seconds(self, values, count):
        self.assertEqual(len(values), count)
        self.assertGreater(min(values), 0)
        self.assertLess(max(values), SECONDS)

    def test_start(self):
        record = self.measure(
            *("start", "--samples", "2", "--movetime", "300", "--sizes", "6,64,999999999")
        )["start"]
        self.assert_seconds(record["starts"], 2)
        self.assert_seconds(record["ends"], 2)
        self.assert_seconds(record["ready"], 11)
        memory = record["memory"]
        self.assertGreater(memory["start"], 1000)
        self.assertGreaterEqual(memory["search"], memory["start"])
        self.assertEqual([entry["size"] for entry in record["sizes"]], [6, 64])
        for entry in record["sizes"]:
            self.assert_seconds([entry["change"], entry["first"], entry["again"]], 3)
        # All of the table is in memory.
        self.assertGreater(record["sizes"][1]["memory"], 64 * 1024)
        self.assertIn("no 999999999 MiB of hash", self.run_of_tool.stderr)
        self.assertIn("| start: exec to `uciok` ", self.run_of_tool.stdout)

    def test_latency(self):
        record = self.measure("latency", "--samples", "2", "--patience", str(SECONDS))["latency"]
        self.assertEqual(len(record["samples"]), 6)
        for values in record["samples"].values():
            self.assert_seconds(values, 2)
        self.assertEqual(self.run_of_tool.stdout.count("`stop` to `bestmove`"), 3)

    def test_growth(self):
        records = [self.measure("growth", "--depth", "7")["growth"] for _ in range(2)]
        for first, second in zip(*records):
            # Too short a search tells no nodes, and whether it does is chance.
            self.assertEqual(first["nodes"][5:], second["nodes"][5:], first["name"])
            self.assertGreater(first["nodes"][6], first["nodes"][5])
            self.assertGreater(first["nodes"][5], 0)
            self.assertEqual(len(first["seconds"]), 7)
            self.assertLess(max(first["seconds"]), SECONDS)
        self.assertEqual([entry["name"] for entry in records[0]], ["open", "late"])
        self.assertEqual(self.run_of_tool.stdout.count("branching factor"), 2)

    def test_several_lines_cost_more(self):
        record = self.measure("multipv", "--depth", "4", "--lines", "1,3")["multipv"]
        self.assertEqual([entry["lines"] for entry in record], [1, 3])
        self.assertGreater(sum(record[1]["nodes"]), sum(record[0]["nodes"]))
        self.assertIn("| 1 ", self.run_of_tool.stdout)

    def test_an_analysis_beside_the_engine(self):
        arguments = ("analysis", "--depth", "6", "--rounds", "1", "--analyse", ANALYSE)
        record = self.measure(*arguments)["analysis"]
        (each,) = record["rounds"]
        self.assertGreater(each["nodes"], 1000)
        self.assert_seconds([each["engine"], each["analysis"]], 2)
        self.assertIn("to depth 6", self.run_of_tool.stdout)
        # Another search is no measure.
        arguments = (*arguments[:-1], f"{ANALYSE} --lines 2")
        self.measure(*arguments, status=1)
        self.assertIn("not the same search", self.run_of_tool.stderr)

    def test_hash_sizes(self):
        record = self.measure(
            *("hash", "--sizes", "6,16", "--movetime", "400", "--rounds", "2")
        )["hash"]
        self.assertEqual([entry["size"] for entry in record], [6, 16])
        for entry in record:
            self.assertEqual(len(entry["rates"]), 2)
            self.assertGreater(min(entry["rates"]), 100)

    def test_several_measurements_at_once(self):
        record = self.measure("multipv", "growth", "--depth", "2", "--lines", "1")
        self.assertEqual(list(record), ["multipv", "growth"])


class FaultTest(MeasureTest):
    def failure_of(self, kind, what, *further):
        engine = self.fake("bad", 1000, kind)
        self.measure(what, "--patience", "1", *further, engine=engine, status=1)
        self.assert_gone("bad")
        return self.run_of_tool.stderr.splitlines()[-1].removeprefix("measure: ")

    def test_an_engine_that_never_answers(self):
        self.assertEqual(self.failure_of("mute", "start"), "engine: no uciok within 1.0 s")

    def test_an_engine_that_is_killed(self):
        self.assertEqual(self.failure_of("killed", "growth"), "engine: ended by SIGKILL")

    def test_an_engine_that_leaves(self):
        self.assertEqual(self.failure_of("leaving", "multipv"), "engine: ended with status 3")

    def test_an_engine_that_does_not_stop(self):
        self.assertEqual(
            self.failure_of("hanging", "latency"), "engine: no bestmove within 1.0 s"
        )

    def test_an_engine_that_tells_no_nodes(self):
        self.assertEqual(
            self.failure_of("silent", "hash", "--sizes", "16", "--movetime", "50"),
            "engine: tells no nodes",
        )

    def test_a_missing_engine(self):
        nowhere = self.file("nowhere")
        self.measure("growth", engine=nowhere, status=1)
        words = f"measure: cannot run {nowhere}: No such file or directory\n"
        self.assertEqual(self.run_of_tool.stderr, words)

    def test_bad_usage(self):
        engine = self.fake("good")
        self.measure("nonsense", engine=engine, status=2)
        self.measure("growth", "--depth", "0", engine=engine, status=2)
        self.measure("hash", "--sizes", "6,x", engine=engine, status=2)
        self.tool("measure", status=2)

    def test_files_that_cannot_be_read_or_written(self):
        nowhere = self.file("nowhere")
        reason = "No such file or directory\n"
        run = self.tool("measure", "growth", "--positions", nowhere, status=1)
        self.assertEqual(run.stderr, f"measure: cannot read {nowhere}: {reason}")
        name = nowhere + "/out.json"
        run = self.tool("measure", "growth", "--json", name, "--engine", ENGINE, status=1)
        self.assertEqual(run.stderr, f"measure: cannot write {name}: {reason}")

    def test_a_full_disk_leaves_no_half_files(self):
        name = self.file("out.json")
        with open(name, "w", encoding="ascii") as file:
            file.write("old")
        with open(self.file("positions.txt"), "w", encoding="ascii") as file:
            file.write(TWO_POSITIONS)
        arguments = ("--positions", self.file("positions.txt"), "--engine", ENGINE, "--depth", "2")
        limit = small_files(100)
        run = self.tool("measure", "growth", *arguments, "--json", name, status=1, limit=limit)
        self.assertIn(f"measure: cannot write {name}: File too large\n", run.stderr)
        self.assertIn("to depth 2", run.stdout)
        with open(name, encoding="ascii") as file:
            self.assertEqual(file.read(), "old")

    def test_positions_and_figures_by_standard_input_and_output(self):
        run = self.tool(
            *("measure", "growth", "--positions", "-", "--json", "-"),
            *("--engine", ENGINE, "--depth", "1"),
            text=TWO_POSITIONS,
        )
        names = [entry["name"] for entry in json.loads(run.stdout)["growth"]]
        self.assertEqual(names, ["open", "late"])

    def test_a_full_pipe_is_seen(self):
        command = [self.fake("flood", 1000, "flooding")]
        with MeasuredEngine(command, pipe_bytes=4096) as engine:
            engine.handshake()
            engine.send("go infinite")
            engine.wait_for("info")
            waiting = 0
            while waiting < 2048:
                waiting = engine.waiting_bytes()
            self.assertLessEqual(waiting, 4096)


class PositionsTest(FakeEngines):
    def test_twenty_legal_positions(self):
        positions = read_positions(POSITIONS)
        self.assertEqual(len(positions), 20)
        self.assertEqual(len(set(positions)), 20)
        kinds = [name.rsplit(" ", 1)[0] for name, _ in positions]
        self.assertEqual(set(kinds), {"opening", "middle game", "ending"})
        for name, fen in positions:
            position = Position(fen)
            self.assertEqual(position.board.count("K"), 1, name)
            self.assertEqual(position.board.count("k"), 1, name)
            self.assertFalse(position.in_check(other(position.side)), name)
            self.assertGreater(len(legal_moves(position)), 1, name)

    def test_some_of_them_are_of_all_kinds(self):
        kinds = {name.rsplit(" ", 1)[0] for name, _ in some(read_positions(POSITIONS))}
        self.assertEqual(kinds, {"opening", "middle game", "ending"})
        self.assertEqual(some([("one", "fen")]), [("one", "fen")])

    def test_refused_files(self):
        kingless = "name: 8/8/8/8/8/8/8/K7 w - - 0 1\n"
        for text in ("", "# nothing\n", "no position\n", "name: one two\n", kingless):
            with open(self.file("bad.txt"), "w", encoding="ascii") as file:
                file.write(text)
            with self.assertRaises(ToolError, msg=text):
                read_positions(self.file("bad.txt"))


CALLGRIND = """version: 1
positions: line
events: Ir
fl=(1) /home/me/src/search/a.cpp
fn=(1) orvelin::search()
10 100
+2 20
fi=(2) /home/me/src/position/b.h
5 30
fe=(1)
* 7
cfi=(3) /home/me/src/search/c.cpp
cfn=(2) orvelin::other()
calls=4 1
12 100000
fi=(4) /usr/include/c++/12/bits/stl_vector.h
99 3

fl=(3)
fn=(2)
1 40

ob=(2) /lib/libc.so.6
fl=(5) ???
fn=(3) memset
0 9
totals: 209
"""


class InstructionsTest(unittest.TestCase):
    def test_costs(self):
        costs = read_costs(CALLGRIND.splitlines(True))
        self.assertEqual(
            costs.files,
            {"search/a.cpp": 130, "position/b.h": 30, "search/c.cpp": 40, "not in src": 9},
        )
        self.assertEqual(costs.folders, {"search": 200, "not in src": 9})
        self.assertEqual(costs.functions, {"search": 160, "other": 40, "memset": 9})

    def test_short_names(self):
        for name, expected in (
            ("orvelin::Analysis::see(orvelin::Move const&)", "Analysis::see"),
            ("void orvelin::A::run<1, (b)2>(orvelin::B<int>::c const&) const", "A::run"),
            ("orvelin::A::make(int) [clone .isra.0]", "A::make"),
            ("orvelin::(anonymous namespace)::gain(int)", "gain"),
            ("orvelin::A::search(int)'2", "A::search"),
            ("orvelin::A::operator()()", "A::operator"),
            ("0x000000000010a000", "0x000000000010a000"),
        ):
            self.assertEqual(short_name(name), expected)

    def test_the_table(self):
        old = {"search/a.cpp": 300, "search/b.cpp": 100}
        new = {"search/a.cpp": 100, "search/c.cpp": 200}
        record = [
            {"name": "before", "folders": {"search": 400}, "files": old},
            {"name": "now", "folders": {"search": 300}, "files": new},
        ]
        for entry in record:
            entry.update(nodes=10, functions={})
        lines = Instructions(None, print).text(record).splitlines()
        rows = [[cell.strip() for cell in line.split("|")[1:-1]] for line in lines]
        self.assertEqual(rows[2][1:], ["before", "now", "now to before"])
        self.assertEqual(rows[4], ["search", "40.0", "30.0", "0.75"])
        self.assertEqual(rows[5], ["all", "40.0", "30.0", "0.75"])
        self.assertEqual(rows[13], ["search/c.cpp", "0.0", "20.0", "-"])
        self.assertEqual(rows[14], ["search/a.cpp", "30.0", "10.0", "0.33"])
        self.assertEqual(rows[15], ["search/b.cpp", "10.0", "0.0", "0.00"])
        self.assertEqual(lines[-1], "before 10 nodes, now 10 nodes")


class TextTest(unittest.TestCase):
    """The tables of records that are known."""

    def settings(self, **values):
        return type("Settings", (), {"depth": 3, **values})

    def cells(self, text):
        return [
            [cell.strip() for cell in line.split("|")[1:-1]]
            for line in text.splitlines()
            if line.startswith("|") and "---" not in line
        ]

    def test_growth(self):
        record = [
            {"name": "a", "nodes": [10, 40, 160], "seconds": [0.001, 0.002, 0.004]},
            {"name": "b", "nodes": [0, 10, 90], "seconds": [0, 0.001, 0.003]},
        ]
        rows = self.cells(Growth(self.settings(), print).text(record))
        self.assertEqual(rows[1], ["1", "10", "1.0", "0.5", "1.0", "-"])
        # The factor of b is not known: it told no nodes at depth 1.
        self.assertEqual(rows[2], ["2", "50", "3.0", "1.5", "2.0", "4.00"])
        self.assertEqual(rows[3], ["3", "250", "7.0", "3.5", "4.0", "6.00"])
        self.assertEqual(rows[5], ["a", "160", "4.0", "40", "4.00"])
        self.assertEqual(rows[6][:4], ["b", "90", "3.0", "30"])

    def test_lines(self):
        record = [
            {"lines": 1, "nodes": [100, 300], "seconds": [0.1, 0.1]},
            {"lines": 4, "nodes": [400, 1600], "seconds": [0.5, 0.5]},
        ]
        rows = self.cells(Lines(self.settings(), print).text(record))
        self.assertEqual(rows[1], ["1", "400", "200.0", "1.00", "1.00"])
        self.assertEqual(rows[2], ["4", "2000", "1000.0", "5.00", "5.00"])

    def test_hash(self):
        record = [
            {"size": 6, "rates": [1000000, 4000000], "hashfull": 500},
            {"size": 64, "rates": [1000000, 1000000], "hashfull": 7},
        ]
        rows = self.cells(HashSizes(self.settings(), print).text(record))
        self.assertEqual(rows[1], ["6", "2000", "1.000", "50.0 %"])
        self.assertEqual(rows[2], ["64", "1000", "0.500", "0.7 %"])
        self.assertEqual(
            HashSizes(self.settings(), print).text([]), "no table fits into the memory"
        )

    def test_sizes_for_which_there_is_memory(self):
        told = []
        self.assertEqual(hash_sizes([6, machine.available_mebibytes()], told.append), [6])
        self.assertEqual(len(told), 1)

    def test_numbers_of_an_info_line(self):
        words = "info depth 3 nodes 17 time x nps".split()
        self.assertEqual(number_after(words, "nodes"), 17)
        for key in ("time", "nps", "hashfull"):
            self.assertIsNone(number_after(words, key))

    def test_description(self):
        self.assertIn("cores, load ", machine.description())


if __name__ == "__main__":
    unittest.main()
