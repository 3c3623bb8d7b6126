"""`cmake --install` into an empty prefix, and the programs run from there."""

import glob
import os
import tempfile
import unittest

from served_board import BOARD_KINDS
from support import BUILD, DISCOVERED, PROGRAMS, SCRIPTS, SOURCE, PackageTest, bench_nodes, run

DOCUMENTS = ("README.md", "NEWS.md", "LICENSE", "docs/match.md", "docs/uci.md")
DOCUMENTS += ("docs/board.md", "docs/images/report.png", "docs/images/xboard.png")
SCALE_SCRIPTS = ("analyse.slurm", "analyse-parallel")


def installed(folder):
    """The files below a folder, by their names from there."""
    found = set()
    for place, _, files in os.walk(folder):
        found.update(os.path.relpath(os.path.join(place, file), folder) for file in files)
    return found


def read(*names):
    with open(os.path.join(*names), "rb") as file:
        return file.read()


class InstallTest(PackageTest):
    @classmethod
    def setUpClass(cls):
        cls.place = tempfile.TemporaryDirectory()
        cls.addClassCleanup(cls.place.cleanup)
        cls.prefix = os.path.join(cls.place.name, "prefix")
        run("cmake", "--install", BUILD, "--prefix", cls.prefix)
        cls.games = os.path.join(cls.prefix, "games")

    def test_everything_is_installed_where_it_belongs(self):
        files = installed(self.prefix)
        expected = {"games/orvelin.files/Orvelin.bin", *DISCOVERED}
        for program in PROGRAMS + SCRIPTS:
            expected |= {f"games/{program}", f"share/man/man6/{program}.6.gz"}
        expected |= {f"share/doc/orvelin/{name}" for name in DOCUMENTS}
        for name in glob.glob("suites/*.epd", root_dir=SOURCE):
            expected.add(f"share/orvelin/{name}")
        for name in glob.glob("openings/*.txt", root_dir=SOURCE):
            expected.add(f"share/orvelin/{name}")
        expected |= {f"share/orvelin/scale/{name}" for name in SCALE_SCRIPTS}
        expected |= {f"share/orvelin/board/{name or 'index.html'}" for name in BOARD_KINDS}
        self.assertEqual(expected - files, set())
        folders = ("games/", "share/doc/", "share/games/", "share/man/", "share/orvelin/")
        self.assertEqual([file for file in files if not file.startswith(folders)], [])
        self.assertEqual([file for file in files if "__pycache__" in file], [])

    def test_the_discovery_files_have_these_bytes(self):
        for name, text in DISCOVERED.items():
            self.assertEqual(read(self.prefix, name), text)

    def test_both_engines_search_the_same(self):
        said = run(os.path.join(self.games, "orvelin-play"), "bench")
        nodes = sum(bench_nodes(os.path.join(self.games, "orvelin")))
        self.assertIn(f"\nNodes searched: {nodes}\n", said)

    def test_the_installed_engine_searches_what_the_built_one_does(self):
        built = bench_nodes(os.path.join(BUILD, "orvelin"))
        self.assertEqual(bench_nodes(os.path.join(self.games, "orvelin")), built)
        self.assertEqual(len(built), 3)

    def test_the_engine_plays_from_the_book_beside_it(self):
        folder = os.path.join(self.games, "orvelin.files")
        book = os.path.join(folder, "Orvelin.bin")
        run(os.path.join(self.games, "orvelin-book"), "verify", book)
        self.assert_plays(os.path.join(self.games, "orvelin"), book=book, folder=folder)

    def test_the_tools_run_from_the_prefix(self):
        self.assertEqual(run(os.path.join(self.games, "orvelin-perft"), "3"), "8902\n")
        tables = run(os.path.join(self.games, "orvelin-tables"), "--help")
        self.assertIn("KBNK", run(os.path.join(self.games, "orvelin-tables"), "build", "--help"))
        self.assertIn("stats", tables)
        self.assert_python_tools_run(self.games, os.path.join(self.prefix, "share/orvelin/suites"))

    def test_what_developers_read_stays_with_the_sources(self):
        self.assertNotIn("share/doc/orvelin/CONTRIBUTING.md", installed(self.prefix))
        self.assertIn("share/orvelin/board_lib/server.py", installed(self.prefix))
        self.assertNotIn("share/orvelin/board_lib/assemble.py", installed(self.prefix))
        text = read(self.prefix, "share/doc/orvelin/README.md").decode()
        self.assertEqual(text, read(SOURCE, "packaging/README.md").decode())

    def test_the_links_hold(self):
        self.assert_links_hold(self.prefix)
        self.assert_document_links_hold(os.path.join(self.prefix, "share/doc/orvelin"))


class InstallWithoutToolsTest(PackageTest):
    """The engine is there already: the build folder is only configured again."""

    @classmethod
    def setUpClass(cls):
        cls.addClassCleanup(run, "cmake", "-B", BUILD, "-DORVELIN_BUILD_TOOLS=ON", folder=SOURCE)
        run("cmake", "-B", BUILD, "-DORVELIN_BUILD_TOOLS=OFF", folder=SOURCE)

    def test_engines_documents_and_manuals_alone_are_installed(self):
        run("cmake", "--build", BUILD, "--target", "installed_files")
        with tempfile.TemporaryDirectory() as prefix:
            run("cmake", "--install", BUILD, "--prefix", prefix)
            files = {file for file in installed(prefix) if not file.startswith("share/doc/")}
            self.assertEqual(
                files,
                {
                    "games/orvelin",
                    "games/orvelin-play",
                    "share/man/man6/orvelin.6.gz",
                    "share/man/man6/orvelin-play.6.gz",
                    *DISCOVERED,
                },
            )
            self.assertIn("share/doc/orvelin/README.md", installed(prefix))
            nodes = bench_nodes(os.path.join(prefix, "games/orvelin"))
            self.assertEqual(len(nodes), 3)


class ManualTest(PackageTest):
    def test_every_manual_is_well_formed(self):
        pages = sorted(glob.glob(os.path.join(SOURCE, "packaging/man/*.6")))
        self.assertEqual(
            {os.path.basename(page) for page in pages}, {f"{name}.6" for name in PROGRAMS + SCRIPTS}
        )
        for page in pages:
            with self.subTest(page=page):
                # Ends with another status than 0 when there is a warning.
                self.assertEqual(run("mandoc", "-T", "lint", "-W", "warning", page), "")
                run("sh", "-c", 'test -z "$(man --warnings -l "$1" 2>&1 >/dev/null)"', "sh", page)

    def test_the_manuals_know_every_option_of_their_engines(self):
        for engine in ("orvelin", "orvelin-play"):
            replies = run(os.path.join(BUILD, engine), input="uci\nquit\n")
            options = [
                line.split(" type ")[0][len("option name ") :]
                for line in replies.splitlines()
                if line.startswith("option name ")
            ]
            page = read(SOURCE, f"packaging/man/{engine}.6").decode()
            self.assertIn("Hash", options)
            self.assertEqual([name for name in options if f".It Cm {name}\n" not in page], [])


if __name__ == "__main__":
    unittest.main()
