"""The tests of documents find what they look for."""

import os
import tempfile
import textwrap
import unittest

from blocks import Classification
from commands import CommandChecker, simple_commands
from manuals import Manual
from markdown import Document
from project import ENGINE, PROGRAMS, ROOT
from sandbox import Sandbox
from sessions import Replay, steps_of, unlike

PAGE = """\
# A page: `code` in it

Text with `a
span` and [a link](other.md#a-place), and `[no](link.md)`.

    indented | block

    goes on

- an item

      code of the item

- another
  item

    text of the item

```
fenced
```

| A | B |
|---|---|
| `x\\|y` | 2 |
<!-- [hidden](gone.md) -->
"""


class MarkdownTest(unittest.TestCase):
    def setUp(self):
        self.page = Document(PAGE)

    def test_blocks(self):
        texts = [block.text for block in self.page.blocks]
        self.assertEqual(texts, ["indented | block\n\ngoes on", "code of the item", "fenced"])
        self.assertEqual([block.line for block in self.page.blocks], [6, 12, 19])

    def test_spans_links_and_headings(self):
        self.assertEqual(self.page.spans, ["code", "a span", "[no](link.md)", "x|y"])
        self.assertEqual(self.page.links, ["other.md#a-place"])
        self.assertEqual(self.page.anchors, {"a-page-code-in-it"})

    def test_tables(self):
        self.assertEqual(self.page.table("A"), [["`x\\|y`", "2"]])
        with self.assertRaises(LookupError):
            self.page.table("B")

    def test_a_block_without_an_end(self):
        with self.assertRaises(ValueError):
            Document("```\ntext\n")


class ClassificationTest(unittest.TestCase):
    def test_rows_are_found_and_the_others_told(self):
        table = Classification("[a.md]\nrun  ls  -l\ntext gone\n")
        blocks = Document("    ls  -l\n\ntext\n\n    new\n").blocks
        self.assertEqual([table.kind("a.md", block) for block in blocks], ["run", None])
        self.assertIsNone(table.kind("b.md", blocks[0]))
        self.assertEqual(table.unused(), [("a.md", "gone")])

    def test_bad_rows(self):
        for text in ("run x", "[a.md]\nwalk x", "[a.md]\nrun x\ntext x"):
            with self.assertRaises(ValueError, msg=text):
                Classification(text)


class CommandsTest(unittest.TestCase):
    def test_a_line_is_split_into_its_programs(self):
        line = "A=1 sudo x --y 'a b' <in >out && z | w # v"
        self.assertEqual(list(simple_commands(line)), [["x", "--y", "a b"], ["z"], ["w"]])

    def test_faults_are_found(self):
        checker = CommandChecker(ROOT, PROGRAMS)
        good = [
            "./check format check",
            "cmake --preset debug && ctest --preset debug -R Notation",
            "printf 'e2e4\\n' | orvelin-book make - -o FILE",
            "tools/orvelin-match --games 6 --jobs=2",
            "tools/measure start latency",
            "build/release/orvelin",
            "./orvelin-analyse merge -o all.jsonl part.jsonl",
            "export X=1 && ./analyse-parallel x.jsonl 4 --sshlogin : -- x.pgn",
            "cmake --preset release -DORVELIN_WERROR=ON",
            "cmake --preset check -B build/mine && build/mine/orvelin",
        ]
        bad = [
            "./gone",
            "./check formats",
            "cmake --preset gone",
            "cmake --build --preset base",
            "ctest --preset release",
            "orvelin-book make --gone",
            "orvelin-book gone",
            "orvelin-gone",
            "./orvelin-gone",
            "./analyse-parallel x.jsonl 4 --gone -- x.pgn",
            "tools/orvelin-match --gome 6",
            "tools/measure gone",
            "build/gone/orvelin",
            "build/release/gone",
            "gone-program",
            "cmake --preset release -DORVELIN_GONE=ON",
            "cmake --install build/gone",
            "apt-get install ./orvelin_0.1.0-1_amd64.deb",
        ]
        for line in good:
            self.assertEqual(list(checker.faults(line)), [], line)
        for line in bad:
            self.assertEqual(len(list(checker.faults(line))), 1, line)


class ManualTest(unittest.TestCase):
    def test_blocks_and_options(self):
        page = (
            ".Sh DESCRIPTION\n.Fl -gone\n.Bl -tag\n.It Fl a , Fl -all\nText.\n"
            ".It Fl -one Ar file , Fl -two\n.El\n"
            ".Bd -literal -offset indent\n$ a \\e\n    b\n.Ed\n.Pp\n.Bd -literal\ngo\n.Ed\n"
        )
        with tempfile.TemporaryDirectory() as directory:
            path = os.path.join(directory, "name.6")
            with open(path, "w", encoding="utf-8") as file:
                file.write(page)
            manual = Manual(path)
        self.assertEqual(manual.program, "name")
        self.assertEqual(manual.blocks, ["$ a \\\n    b\n", "go\n"])
        self.assertEqual(manual.listed, {"all", "one", "two"})


class SessionsTest(unittest.TestCase):
    def test_what_is_sent_is_told_from_what_is_answered(self):
        self.assertEqual(steps_of("> go\nx\n> uci\ny\nz"), [("go", ["x"]), ("uci", ["y", "z"])])
        self.assertEqual(steps_of("$ ./run\nuci\nx\ngo"), [("uci", ["x"]), ("go", [])])
        with self.assertRaises(ValueError):
            steps_of("x\n> uci")

    def test_answers_are_compared_but_for_times(self):
        answers = ["info time 5 nodes 7 nps 1000", "more", "bestmove e2e4"]
        self.assertIsNone(unlike(["info time 9 nodes 7 nps 12", "...", "bestmove e2e4"], answers))
        self.assertIsNone(unlike(["...", "bestmove e2e4"], answers))
        for expected in (
            ["info time 5 nodes 8 nps 1000", "...", "bestmove e2e4"],
            ["bestmove e2e4"],
            ["...", "more"],
            ["...", "bestmove e2e4", "more"],
        ):
            self.assertIsNotNone(unlike(expected, answers), expected)

    def test_the_engine_is_asked(self):
        text = "> position startpos\n> go depth 6\n...\nbestmove {}\n> isready\nreadyok"
        with tempfile.TemporaryDirectory() as directory:
            replay = Replay(ENGINE, directory)
            self.assertEqual(list(replay.faults("> isready\nreadyok")), [])
            self.assertEqual(len(list(replay.faults(text.format("a2a3")))), 1)


class SandboxTest(unittest.TestCase):
    def test_commands_run_in_a_copy(self):
        with tempfile.TemporaryDirectory() as directory:
            sandbox = Sandbox(ROOT, PROGRAMS, directory)
            good = ["pwd | grep ^" + directory, "$ echo a; echo b\na\nb", "test -x tools/orvelin-match"]
            good.append("touch ~/x; test -e " + os.path.join(directory, "home", "x"))
            # Nothing is built: the engine is newer than its sources.
            good.append("printf 'uci\\nquit\\n' | ./run | grep uciok")
            good.append("printf 'uci\\nquit\\n' | ./run play | grep 'Move Overhead'")
            good.append("./run play --version | grep Orvelin && ./run play perft 2 | grep 400")
            bad = ["false", "false\ntrue", "$ echo a\nb", "orvelin-book gone"]
            for text in good:
                self.assertEqual(list(sandbox.faults(textwrap.dedent(text))), [], text)
            for text in bad:
                self.assertEqual(len(list(sandbox.faults(text))), 1, text)


if __name__ == "__main__":
    unittest.main()
