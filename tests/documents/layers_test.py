"""What the folders of the engine know of each other, by the includes of their files."""

import os
import re
import tempfile
import unittest

from project import ROOT

# From the bottom up: a folder uses those before it and itself.
LAYERS = ["platform", "time", "position", "book", "generation", "endgame", "evaluation", "search"]
# Two fronts on top, each a program.
LAYERS += ["protocol", "play"]
# Programs beside the engine that take what they need of the front for players.
LAYERS += ["analyse"]
# What a board in a page asks of all of them.
LAYERS += ["board"]
# The arrows upward that are meant. `Tables` holds everything that is made once, and so the
# transposition table and the reductions; docs/architecture.md tells why.
ARROWS_UPWARD = {
    ("generation/tables.h", "search/lmr_table.h"),
    ("generation/tables.h", "search/transposition_table.h"),
}
# Those that may know the search from below, and nobody else through them.
KNOWS_THE_SEARCH = {"generation/tables.h", "generation/tables.cpp"}
BELOW_THE_SEARCH = LAYERS[: LAYERS.index("search")]

INCLUDE = re.compile(r'^\s*#\s*include\s*"([^"]+)"', re.MULTILINE)


def read_includes(folder):
    """The own headers that each source file under the folder includes, by its path from there."""
    includes = {}
    for directory, _, names in os.walk(folder):
        for name in names:
            if name.endswith((".h", ".cpp")):
                path = os.path.join(directory, name)
                with open(path, encoding="utf-8") as file:
                    found = INCLUDE.findall(file.read())
                includes[os.path.relpath(path, folder)] = found
    return includes


def layer(path):
    return LAYERS.index(path.split("/")[0])


def arrows_upward(includes):
    """The includes of a file in a folder above."""
    return {
        (path, header)
        for path, headers in includes.items()
        for header in headers
        if layer(header) > layer(path)
    }


def reached(includes, start):
    """Every file that including the start brings with it."""
    found = set()
    waiting = list(includes[start])
    while waiting:
        path = waiting.pop()
        if path not in found:
            found.add(path)
            waiting.extend(includes[path])
    return found


def in_a_circle(includes):
    """The files that include themselves by way of others."""
    return {path for path in includes if path in reached(includes, path)}


class ReaderTest(unittest.TestCase):
    def test_includes_of_files_are_found(self):
        with tempfile.TemporaryDirectory() as folder:
            os.mkdir(os.path.join(folder, "time"))
            with open(os.path.join(folder, "time", "a.h"), "w", encoding="utf-8") as file:
                file.write('#include <vector>\n\n#include "time/b.h"\n  # include "book/c.h"\n')
            self.assertEqual(read_includes(folder), {"time/a.h": ["time/b.h", "book/c.h"]})

    def test_a_circle_is_found(self):
        includes = {"a": ["b"], "b": ["c", "d"], "c": ["a"], "d": []}
        self.assertEqual(in_a_circle(includes), {"a", "b", "c"})

    def test_an_arrow_upward_is_found(self):
        includes = {"time/a.h": ["book/b.h"], "book/b.h": ["time/c.h", "book/d.h"]}
        self.assertEqual(arrows_upward(includes), {("time/a.h", "book/b.h")})


class LayersTest(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        cls.includes = read_includes(os.path.join(ROOT, "src"))

    def test_every_folder_has_its_layer(self):
        self.assertEqual({path.split("/")[0] for path in self.includes}, set(LAYERS))

    def test_every_header_is_there(self):
        named = {header for headers in self.includes.values() for header in headers}
        self.assertEqual(named - set(self.includes), set())

    def test_no_file_includes_itself(self):
        self.assertEqual(in_a_circle(self.includes), set())

    def test_no_other_arrow_goes_upward(self):
        self.assertEqual(arrows_upward(self.includes), ARROWS_UPWARD)

    def test_the_two_engines_do_not_know_each_other(self):
        arrows = {
            (path, header)
            for path, headers in self.includes.items()
            for header in headers
            if {path.split("/")[0], header.split("/")[0]} == {"protocol", "play"}
        }
        self.assertEqual(arrows, set())

    def test_nothing_below_the_search_knows_it(self):
        knowing = {
            path
            for path in self.includes
            if path.split("/")[0] in BELOW_THE_SEARCH
            and any(other.startswith("search/") for other in reached(self.includes, path))
        }
        self.assertEqual(knowing, KNOWS_THE_SEARCH)


if __name__ == "__main__":
    unittest.main()
