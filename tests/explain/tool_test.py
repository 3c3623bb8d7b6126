"""The program as a user runs it: outputs, where the engine is found, and how it fails."""

import os
import shutil
import subprocess
import sys
import unittest
import xml.etree.ElementTree as ET

from limits import little_memory, small_files
from explain_lib.terms import TERMS
from support import ANALYSE, ENGINE, PATIENCE, ROOT, START, SVG, TOOL, ToolTest, table

PICTURE = "5rk1/1b3ppp/1q2p3/p1bpP1N1/1p3P2/3B2Q1/PPP3PP/5R1K w - - 0 21"
# Reads commands and answers those that have to be answered; `eval` prints a file.
FAKE = """
while read -r command rest; do
  case $command in
    uci) echo "id name Fake & Co"; echo uciok;;
    isready) echo readyok;;
    eval) cat "$0.table";;
    go) echo "bestmove e2e4";;
    quit) exit 0;;
  esac
done
"""


class OutputTest(ToolTest):
    def test_terminal(self):
        run = self.explain(*PICTURE.split())
        self.assertIn("material", run.stdout)
        self.assertIn("this agrees", run.stdout)
        self.assertIn("█", self.explain(PICTURE, PYTHONIOENCODING="utf-8").stdout)
        self.assertTrue(self.explain(PICTURE, "--ascii").stdout.isascii())
        self.assertTrue(self.explain(PICTURE, PYTHONIOENCODING="ascii").stdout.isascii())
        self.assertNotIn("\x1b", run.stdout)

    def test_moves_lead_to_the_position(self):
        after = "rnbqkbnr/pppp1ppp/8/4p3/4P3/5N2/PPPP1PPP/RNBQKB1R b KQkq - 1 2"
        direct = self.explain(after).stdout
        self.assertEqual(self.explain("--startpos", "--moves", "e4", "e7e5", "Nf3").stdout, direct)
        self.assertNotEqual(self.explain("--startpos").stdout, direct)

    def test_page_and_picture(self):
        run = self.explain(PICTURE, "--svg", self.file("a.svg"), "--html", self.file("a.html"))
        self.assertEqual(run.stdout, "")
        self.assertEqual(ET.fromstring(self.read("a.svg")).tag, SVG + "svg")
        page = ET.fromstring(self.read("a.html"))
        self.assertEqual(page.find(".//code").text, PICTURE)
        self.assertEqual(len(page.find(".//tbody")), len(TERMS))
        self.assertIn("pawns for White", page.find(".//h1").text)
        self.explain("8/8/4k3/8/8/2KN4/8/8 w - - 0 1", "--html", self.file("a.html"))
        self.assertIn("Drawn", ET.fromstring(self.read("a.html")).find(".//h1").text)

    def test_the_picture_of_the_document_is_that_of_its_command(self):
        with open(os.path.join(ROOT, "docs", "explain.md"), encoding="utf-8") as file:
            document = file.read()
        self.assertIn(f'--svg docs/images/explain.svg \\\n        "{PICTURE}"', document)
        self.explain(PICTURE, "--svg", self.file("a.svg"))
        name = os.path.join(ROOT, "docs", "images", "explain.svg")
        with open(name, encoding="utf-8") as file:
            self.assertEqual(file.read(), self.read("a.svg"), "make it again: docs/explain.md")
        self.assertLess(os.path.getsize(name), 150000)


class PlacesTest(ToolTest):
    def repository(self):
        """A folder with the tool and its packages in it, and nothing that is built."""
        tools = self.file("tree/tools")
        os.makedirs(tools)
        shutil.copy(TOOL, tools)
        for name in ("explain_lib", "orvelin_lib"):
            os.symlink(os.path.join(ROOT, "tools", name), os.path.join(tools, name))
        return tools


class EngineTest(PlacesTest):
    def wrapper(self, path, text=""):
        os.makedirs(os.path.dirname(path), exist_ok=True)
        self.program(os.path.relpath(path, self.directory), f"{text}\nexec '{ENGINE}'\n")

    def test_where_the_engine_is_found(self):
        tools = self.repository()
        tool = os.path.join(tools, "orvelin-explain")
        missing = self.explain("--startpos", engine=None, tool=tool, status=1).stderr
        self.assertIn("no engine found", missing)
        # Each place goes before those that were filled before.
        for place in ("run", "tools/orvelin"):
            mark = self.file(place.replace("/", "-"))
            self.wrapper(self.file("tree/" + place), f"touch '{mark}'")
            self.explain("--startpos", engine=None, tool=tool)
            self.assertTrue(os.path.exists(mark), place)
            os.remove(mark)

    def test_installed(self):
        share = self.file("prefix/share/orvelin")
        os.makedirs(os.path.dirname(share))
        shutil.move(self.repository(), share)
        games = self.file("prefix/games")
        self.wrapper(os.path.join(games, "orvelin"))
        tool = os.path.join(games, "orvelin-explain")
        os.symlink("../share/orvelin/orvelin-explain", tool)
        os.symlink("../../games/orvelin", os.path.join(share, "orvelin"))
        run = self.explain("--startpos", engine=None, tool=tool)
        self.assertIn("this agrees", run.stdout)

    def fake(self, name, lines, text=FAKE):
        self.file(name + ".table", "\n".join(lines) + "\n")
        return self.program(name, text)

    def test_sums_that_do_not_agree(self):
        engine = self.fake("wrong", table(500, material=(100, 100)))
        run = self.explain("--startpos", engine=engine, status=1)
        self.assertIn("DO NOT AGREE", run.stdout)
        self.assertIn("DO NOT AGREE", run.stderr)
        self.explain("--startpos", "--html", self.file("a.html"), engine=engine, status=1)
        page = ET.fromstring(self.read("a.html"))
        self.assertIn("Fake & Co", "".join(page.itertext()))
        (alarm,) = [p for p in page.iter("p") if p.get("class") == "alarm"]
        self.assertIn("DO NOT AGREE", alarm.text)
        good = self.fake("good", table(100, material=(100.4, 100.4)))
        self.explain("--startpos", engine=good)

    def test_engines_that_fail(self):
        good = table(14, stm=(14, 14))
        for engine, arguments, reason in (
            (self.file("none"), ["--startpos"], "cannot run "),
            (self.directory, ["--startpos"], "Is a directory"),
            (self.program("dies", "exit 3\n"), ["--startpos"], "ended with status 3"),
            (self.program("mute", "cat >/dev/null\n"), ["--startpos"], "no uciok within"),
            (self.program("dead", "kill -9 $$\n"), ["--startpos"], "SIGKILL"),
            (
                self.fake("ends", good, FAKE.replace('cat "$0.table"', "exit 4")),
                ["--startpos"],
                "status 4",
            ),
            (self.fake("poor", good[2:]), ["--startpos"], f"2 of {len(TERMS)} terms are missing"),
        ):
            run = self.explain("--patience", "5", *arguments, engine=engine, status=1)
            self.assertIn(reason, run.stderr)
            self.assertNotIn("Traceback", run.stderr)


class AnalyserTest(PlacesTest):
    def test_where_it_is_found(self):
        tools = self.repository()
        tool = os.path.join(tools, "orvelin-explain")
        question = ["--startpos", "--depth", "1"]
        run = self.explain(*question, analyse=None, tool=tool, status=1, PATH="/usr/bin:/bin")
        self.assertIn("there is no orvelin-analyse", run.stderr)
        # Each place goes before those that were filled before.
        for place in ("bin", "tree/build/check", "tree/tools"):
            os.makedirs(self.file(place), exist_ok=True)
            mark = self.file("mark")
            self.program(f"{place}/orvelin-analyse", f"touch '{mark}'; exec '{ANALYSE}' \"$@\"\n")
            path = self.file("bin") + ":" + os.environ["PATH"]
            self.explain(*question, analyse=None, tool=tool, PATH=path)
            self.assertTrue(os.path.exists(mark), place)
            os.remove(mark)

    def test_analysers_that_fail(self):
        game = self.file("a.pgn", "1. e4 *")
        for analyse, reason in (
            (self.file("none"), "cannot run "),
            (self.directory, "Is a directory"),
            (self.program("dies", "echo 'orvelin-analyse: a reason' >&2\nexit 3\n"), ": a reason"),
            (self.program("mute", "exit 0\n"), "it gives no reason"),
            (self.program("odd", "echo '{'\n"), "line 1 is no JSON"),
            (self.program("old", "echo '{\"schema\":2}'\n"), "its schema is 2"),
        ):
            for arguments in (["--startpos", "--depth", "1"], ["--pgn", game]):
                run = self.explain(*arguments, analyse=analyse, status=1)
                self.assertIn(reason, run.stderr)
                self.assertEqual(len(run.stderr.splitlines()), 1)


class RefusalTest(ToolTest):
    def test_output_that_cannot_be_written(self):
        game = self.file("a.pgn", "1. e4 *")
        for arguments in (["--startpos"], ["--pgn", game]):
            with open("/dev/full", "w", encoding="ascii") as full:
                run = self.explain(*arguments, status=1, output=full)
            message = "orvelin-explain: cannot write to standard output: No space left on device"
            self.assertEqual(run.stderr.splitlines()[-1], message)
            reading, writing = os.pipe()
            os.close(reading)
            with open(writing, "wb") as closed:
                run = self.explain(*arguments, status=1, output=closed)
            message = "orvelin-explain: cannot write to standard output: Broken pipe"
            self.assertEqual(run.stderr.splitlines()[-1], message)

    def test_output_that_is_closed(self):
        command = [sys.executable, "-B", TOOL, "--engine", ENGINE, "--startpos"]
        closed = ["sh", "-c", 'exec "$@" >&-', "sh", *command]
        run = subprocess.run(closed, stderr=subprocess.PIPE, text=True, timeout=PATIENCE)
        message = "orvelin-explain: cannot write to standard output: it is closed\n"
        self.assertEqual(run.stderr, message)
        self.assertEqual(run.returncode, 1)
        picture = self.file("a.svg")
        run = subprocess.run([*closed, "--svg", picture], timeout=PATIENCE)
        self.assertEqual(run.returncode, 0)
        self.assertIn("<svg", self.read("a.svg"))

    def test_a_full_disk_leaves_no_half_files(self):
        for option in ("--svg", "--html"):
            name = self.file("out", "old")
            run = self.explain("--startpos", option, name, status=1, limit=small_files(2000))
            words = f"orvelin-explain: cannot write {name}: File too large\n"
            self.assertEqual(run.stderr, words)
            self.assertEqual(self.read("out"), "old")
        self.assertEqual(os.listdir(self.directory), ["out"])

    def test_standard_input_and_output(self):
        with open(self.file("a.pgn", "1. e4 *"), encoding="ascii") as game:
            run = self.explain("--pgn", "-", "--svg", "-", stdin=game)
        self.assertEqual(ET.fromstring(run.stdout).tag, SVG + "svg")

    def test_a_long_game_file_takes_little_memory(self):
        # Half a GiB of comments, and of moves that never end.
        for line, count, reason in (
            ("; " + "x" * 65533 + "\n", 1 << 13, "standard input has 0 games; there is no game 2"),
            ("Nf3 " * 1000 + "\n", 1 << 17, "line 21 of the PGN: a game of more than 20000 moves"),
        ):
            writer = "import sys\nfor _ in range(int(sys.argv[2])): sys.stdout.write(sys.argv[1])"
            with subprocess.Popen(
                [sys.executable, "-c", writer, line, str(count)],
                stdout=subprocess.PIPE,
                stderr=subprocess.DEVNULL,
            ) as source:
                run = self.explain(
                    *("--pgn", "-", "--game", "2"),
                    status=1,
                    stdin=source.stdout,
                    limit=little_memory(1 << 28),
                )
            # A busy machine shows progress before.
            self.assertEqual(run.stderr.splitlines()[-1], f"orvelin-explain: {reason}")

    def test_bad_input(self):
        missing = self.file("none.pgn")
        illegal = self.file("a.pgn", "1. e4 e5 2. Nf6 *")
        for arguments, reason in (
            (["nonsense"], "not a FEN"),
            (["--startpos", "--moves", "e4", "e4"], "'e4'"),
            (["--pgn", illegal], "game 1, move 2. not a legal move: 'Nf6'"),
            (["--pgn", illegal, "--game", "2"], "no game 2"),
            (["--pgn", missing], f"cannot read {missing}: No such file or directory"),
            (["--startpos", "--svg", self.file("no/folder.svg")], "cannot write "),
        ):
            run = self.explain(*arguments, status=1)
            self.assertIn(reason, run.stderr)
            self.assertTrue(run.stderr.startswith("orvelin-explain: "), run.stderr)
            self.assertEqual(len(run.stderr.splitlines()), 1)

    def test_bad_usage(self):
        for arguments in (
            [],
            ["--startpos", START],
            ["--startpos", "--pgn", "a.pgn"],
            ["--startpos", "--lines", "3"],
            ["--startpos", "--depth", "3", "--lines", "51"],
            ["--startpos", "--depth", "101"],
            ["--startpos", "--depth", "3", "--svg", "a.svg"],
            ["--startpos", "--depth", "3", "--all"],
            ["--startpos", "--records", "a.jsonl"],
            ["--records", "a.jsonl", "--depth", "3"],
            ["--records", "a.jsonl", "--moves", "e4"],
            ["--pgn", "a.pgn", "--lines", "2"],
            ["--startpos", "--game", "2"],
            ["--pgn", "a.pgn", "--depth", "3", "--nodes", "3"],
            ["--pgn", "a.pgn", "--moves", "e4"],
            ["--pgn", "a.pgn", "--game", "0"],
            ["--startpos", "--patience", "0"],
            ["--startpos", "--patience", "nan"],
            ["--startpos", "--patience", "inf"],
            ["--startpos", "--patience", "1e300"],
            ["--startpos", "--all", "--svg", "a.svg"],
            ["--startpos", "--all", "--html", "a.html"],
            ["--startpos", "--svg", "-", "--html", "-"],
            ["--startpos", "--svg", ""],
            ["--startpos", "--unknown"],
        ):
            run = self.explain(*arguments, status=2)
            self.assertEqual(len(run.stderr.splitlines()), 1)
            self.assertTrue(run.stderr.endswith("; see --help\n"), run.stderr)
        self.assertIn(f"{len(TERMS)} terms", self.explain("--help").stdout)

    def test_what_is_read_is_not_written(self):
        name = self.file("a.pgn", "1. e4 e5 *")
        for option in ("--html", "--svg"):
            for other in (name, self.file("./a.pgn")):
                run = self.explain("--pgn", name, option, other, status=2)
                self.assertIn("is read, and cannot be written too", run.stderr)
            self.explain("--records", name, option, name, status=2)
        self.assertEqual(self.read("a.pgn"), "1. e4 e5 *")


if __name__ == "__main__":
    unittest.main()
