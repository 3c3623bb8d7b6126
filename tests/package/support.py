"""What the tests of the packages have in common: where things are, and how an engine is asked."""

import glob
import os
import re
import subprocess

from orvelin_lib.engine import UciEngine
from served_board import PATIENCE, ServedBoardTest

SOURCE = os.environ["PACKAGE_SOURCE"]
BUILD = os.environ["PACKAGE_BUILD"]
OUTPUT = os.environ["PACKAGE_OUTPUT"]
BOOK_TOOL = os.path.join(BUILD, "orvelin-book")
PROGRAMS = (
    "orvelin",
    "orvelin-play",
    "orvelin-analyse",
    "orvelin-book",
    "orvelin-perft",
    "orvelin-tables",
)
SCRIPTS = ("orvelin-board", "orvelin-explain", "orvelin-match", "orvelin-suite")
# Code, in which nothing is a link, and links in Markdown to files.
CODE = re.compile(r"`[^`]*`|^ {4,}.*$", re.MULTILINE)
LINK = re.compile(r"\]\((?![a-z]+:)([^)#\s]+)")
MATE_IN_ONE = '6k1/5ppp/8/8/8/8/8/R5K1 w - - dm 1; id "back rank";\n'
# The programs that GUIs discover, by their files.
DISCOVERED = {
    f"share/games/plugins/uci/{name}.eng": f"plugin spec 0.0\n{name}\nchess,fischerandom\n".encode()
    for name in ("orvelin-play", "orvelin")
}


def run(*command, status=0, folder=None, text=True, **more):
    """The standard output of a command, which has to end with this status."""
    done = subprocess.run(
        command, capture_output=True, text=text, cwd=folder, timeout=600, check=False, **more
    )
    if done.returncode != status:
        raise AssertionError(
            f"{' '.join(command)} ended with {done.returncode}\n{done.stdout}\n{done.stderr}"
        )
    return done.stdout


def the_only(pattern):
    """The one file of this pattern in the folder of the packages."""
    found = glob.glob(os.path.join(OUTPUT, pattern))
    if len(found) != 1:
        raise AssertionError(f"{pattern} in {OUTPUT} is {found}")
    return found[0]


def reference_nodes():
    """The nodes that the tests hold every build of the engine to."""
    with open(os.path.join(SOURCE, "tests", "data", "bench.txt"), encoding="ascii") as file:
        return [int(line.split()[3]) for line in file if line.startswith("bench ")]


def bench_nodes(*command, folder=None):
    """The nodes of the searches of `bench`."""
    nodes = []
    with UciEngine(list(command), folder, PATIENCE) as engine:
        engine.send("bench")
        for _, line in engine.wait_for("nps:"):
            nodes += [int(word[6:]) for word in line.split() if word.startswith("nodes=")]
        engine.quit()
    return nodes


def book_moves(book):
    """The moves that a book has for the start position."""
    return {line.split()[0] for line in run(BOOK_TOOL, "look", book).splitlines()}


def answer(*command, own_book, folder=None):
    """The lines of an engine's answer in the start position."""
    with UciEngine(list(command), folder, PATIENCE) as engine:
        engine.handshake()
        if not engine.set_option("OwnBook", "true" if own_book else "false"):
            raise AssertionError("the engine has no option OwnBook")
        engine.send("position startpos")
        engine.send("go depth 3")
        lines = [line for _, line in engine.wait_for("bestmove")]
        engine.quit()
    return lines


def readelf(*arguments):
    return run("readelf", "--wide", *arguments)


class PackageTest(ServedBoardTest):
    """A test with some more questions."""

    maxDiff = None

    def assert_plays(self, *command, book, folder=None):
        """The engine searches what it always does, and answers from this book."""
        self.assertEqual(bench_nodes(*command, folder=folder), reference_nodes())
        searched = answer(*command, own_book=False, folder=folder)
        self.assertTrue(any(line.startswith("info ") for line in searched), searched)
        played = answer(*command, own_book=True, folder=folder)
        self.assertEqual(len(played), 1, "a move of the book comes without a search")
        self.assertIn(played[0].split()[1], book_moves(book))

    def assert_stripped(self, file):
        self.assertNotIn(".symtab", readelf("--sections", file), file)

    def assert_links_hold(self, folder):
        """No symbolic link of the folder leads nowhere, or out of it."""
        links = 0
        for place, folders, files in os.walk(folder):
            for name in folders + files:
                link = os.path.join(place, name)
                if os.path.islink(link):
                    links += 1
                    self.assertFalse(os.path.isabs(os.readlink(link)), link)
                    self.assertTrue(os.path.realpath(link).startswith(folder + os.sep), link)
                    self.assertTrue(os.path.exists(link), link)
        # Beside those to the scripts: the engine and orvelin-analyse, where the scripts look for them.
        self.assertEqual(links, len(SCRIPTS) + 2)

    def assert_document_links_hold(self, folder):
        """Every file that a document of the folder links to is there."""
        dead, count = set(), 0
        for name in glob.glob("**/*.md", root_dir=folder, recursive=True):
            with open(os.path.join(folder, name), encoding="utf-8") as file:
                links = LINK.findall(CODE.sub("", file.read()))
            for link in links:
                count += 1
                path = os.path.normpath(os.path.join(os.path.dirname(name), link))
                if path.startswith("..") or not os.path.exists(os.path.join(folder, path)):
                    dead.add(path)
        self.assertGreater(count, 20)
        self.assertEqual(dead, set())

    def assert_board_is_served(self, command):
        """The installed board is that of the build."""
        name = os.path.basename(the_only("orvelin-*-linux-x86_64.tar.gz"))
        book = os.path.join(BUILD, "Orvelin.bin")
        self.assert_board_is_served_by(command, name.split("-")[1], book)

    def assert_python_tools_run(self, folder, suites):
        """The Python tools find their library, the engine and the suites."""
        environment = dict(os.environ, PATH=f"{folder}:/usr/bin:/bin")
        environment.pop("PYTHONPATH")
        drawn = run("orvelin-explain", "--startpos", "--ascii", folder="/", env=environment)
        self.assertIn("r n b q k b n r", drawn)
        lines = run("orvelin-explain", "--startpos", "--depth", "3", folder="/", env=environment)
        self.assertIn("1. ", lines)
        command = ("orvelin-suite", "--engine", "orvelin", "--depth", "4", "-")
        solved = run(*command, input=MATE_IN_ONE, folder="/", env=environment)
        self.assertIn("100.0 %", solved)
        engines = ("--engine", "cmd=orvelin", "--engine", "cmd=orvelin-play", "--depth", "1")
        command = ("orvelin-match", *engines, "--games", "2", "--max-moves", "3", "--faults")
        self.assertIn("| orvelin-play |", run(*command, folder="/tmp", env=environment))
        self.assertTrue(glob.glob(os.path.join(suites, "*.epd")), f"no suite in {suites}")
        self.assert_board_is_served(os.path.join(folder, "orvelin-board"))
