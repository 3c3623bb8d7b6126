"""Options, commands and presets: the tables of the documents against the engine and the build."""

import glob
import json
import os
import re
import subprocess
import tempfile
import unittest

from orvelin_lib.engine import UciEngine
from project import DOCUMENTS, ENGINE, PLAY, PROGRAMS, ROOT

UCI, BUILDING = DOCUMENTS["docs/uci.md"], DOCUMENTS["docs/building.md"]
PLAY_PAGE = DOCUMENTS["docs/play.md"]
OPTION = re.compile(
    r"option name (.+) type (\w+)(?: default (.+?))?(?: min (\S+) max (\S+)| var .*)?$"
)


def announced_options(program=ENGINE):
    """(name, type, default, min, max) as the engine tells them."""
    with tempfile.TemporaryDirectory() as directory:
        with UciEngine([program], directory, patience=60.0) as engine:
            engine.send("uci")
            lines = [line for _, line in engine.wait_for("uciok")]
    return [OPTION.match(line).groups() for line in lines if line.startswith("option ")]


def announced_rows(program):
    """The two first columns of a table of options."""
    rows = []
    for name, kind, default, least, most in announced_options(program):
        limits = f", {least} to {most}" if least else ""
        rows.append([f"`{name}`", f"{kind} {default or ''}".strip() + limits])
    return rows


def source(name, folder="protocol"):
    """A file of one of the two engines."""
    with open(os.path.join(ROOT, "src", folder, name), encoding="utf-8") as file:
        return file.read()


class OptionsTest(unittest.TestCase):
    def test_the_page_on_uci_tells_what_the_engine_announces(self):
        written = [row[:2] for row in UCI.table("Option", "Announced")]
        self.assertEqual(written, announced_rows(ENGINE))

    def test_the_page_on_orvelin_play_tells_what_that_announces(self):
        rows = PLAY_PAGE.table("Option", "Announced")
        written = [[name, announced.replace("\\", "")] for name, announced, _ in rows]
        self.assertEqual(written, announced_rows(PLAY))

    def test_all_options_that_are_read_are_announced(self):
        read = re.findall(r'\{"(\w+)", &Engine::option_', source("engine_options.cpp"))
        self.assertEqual([option[0] for option in announced_options()], read)


class CommandsTest(unittest.TestCase):
    def test_all_commands_are_described(self):
        commands = re.findall(r'\{"(\w+)", &Engine::command_', source("engine.cpp"))
        self.assertGreater(len(commands), 5)
        named = {span.split(" ")[0] for span in UCI.spans}
        self.assertEqual(set(commands) - named, set())

    def test_all_words_behind_go_are_described(self):
        words = re.findall(r'\{"(\w+)", &Analysis::', source("engine_search.cpp"))
        words += re.findall(r'token == "(\w+)"', source("engine_search.cpp"))
        self.assertGreater(len(words), 10)
        described = " ".join(row[0] for row in UCI.table("Word", "What it does"))
        self.assertEqual([word for word in words if f"`{word}`" not in described], [])


class PlayTest(unittest.TestCase):
    """The page on orvelin-play against its sources."""

    def test_all_commands_are_described(self):
        commands = re.findall(r'\{"(\S+)", &Front::command_', source("front.cpp", "play"))
        self.assertGreater(len(commands), 10)
        named = " ".join(row[0] for row in PLAY_PAGE.table("Command", "What it does"))
        words = {span.split(" ")[0] for span in re.findall(r"`([^`]*)`", named)}
        self.assertEqual(words, {*commands, "quit"})

    def test_all_words_behind_go_are_described(self):
        text = source("go_reader.cpp", "play")
        words = re.findall(r'\{"(\w+)", *\d', text) + re.findall(r'word == "(\w+)"', text)
        named = " ".join(row[0] for row in PLAY_PAGE.table("Word", "What it does"))
        self.assertEqual(set(re.findall(r"`(\w+)`", named)), set(words))

    def test_every_message_is_described(self):
        """By its first words, those between two values."""
        told = " ".join(row[0] for row in PLAY_PAGE.table("Message", "Meaning"))
        texts = []
        for name in glob.glob("front*.cpp", root_dir=os.path.join(ROOT, "src", "play")):
            texts += re.findall(r'remark\(\s*(?:std::string\()?"([^"]+)"', source(name, "play"))
        self.assertGreater(len(texts), 7)
        parts = [re.split(r" $|'$", text)[0] for text in texts]
        self.assertEqual([part for part in parts if part not in told], [])

    def test_the_score_is_that_of_the_code(self):
        header = source("win_chance.h", "play")
        constants = re.findall(r"constexpr double \w+ = ([\d.]+);", header)
        self.assertEqual(len(constants), 2)
        self.assertIn("`a` is {} and `b` is {}.".format(*constants), text_of("docs", "play.md"))

    def test_the_levels_are_those_of_the_code(self):
        rows = re.findall(r"\{(\d+), \{(\d+), (\d+), \d+\}\}", source("strength.cpp", "play"))
        written = numbers(
            "docs/play.md", r"from (\d+) nodes and eight lines at (\d+) to (\d+) nodes and one"
        )
        self.assertEqual(written, [int(rows[0][1]), int(rows[0][0]), int(rows[-1][1])])
        self.assertEqual((rows[0][2], rows[-1][2]), ("8", "1"))


def text_of(*names):
    """A file of the project."""
    with open(os.path.join(ROOT, *names), encoding="utf-8") as file:
        return file.read()


def without_remarks(text):
    """The lines of openings and suites that are none."""
    return [line for line in text.split("\n") if line.strip() and not line.startswith("#")]


def numbers(document, pattern):
    """The numbers in the one place of a document where the pattern, in which a blank may be the
    end of a line, is found."""
    found = re.findall(pattern.replace(" ", r"\s+"), text_of(document))
    if len(found) != 1:
        raise AssertionError(f"{document}: {pattern}: {found}")
    return [int(number) for number in ([found[0]] if isinstance(found[0], str) else found[0])]


class OpeningsTest(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        names = sorted(glob.glob("openings/*.txt", root_dir=ROOT))
        cls.lines = [line for name in names for line in without_remarks(text_of(name))]

    def test_the_number_of_variations(self):
        self.assertEqual(numbers("docs/tools.md", r"made from (\d+) variations"), [len(self.lines)])

    def test_the_size_of_the_book(self):
        tool = os.path.join(PROGRAMS, "orvelin-book")
        with tempfile.TemporaryDirectory() as directory:
            book = os.path.join(directory, "book.bin")
            text = "\n".join(self.lines) + "\n"
            for words in (("make", "-", "-o", book), ("verify", book)):
                run = subprocess.run(
                    [tool, *words], input=text, capture_output=True, text=True, check=True
                )
        written = numbers("docs/packaging.md", r"(\d+) entries for (\d+) positions")
        self.assertEqual([int(number) for number in re.findall(r"\d+", run.stdout)], written)


class SuitesTest(unittest.TestCase):
    def test_the_page_on_suites_has_all_and_their_positions(self):
        rows = DOCUMENTS["docs/suite.md"].table("File", "What it holds")
        written = {row[0].strip("`"): int(row[1].split(" ")[0]) for row in rows}
        names = glob.glob("suites/*.epd", root_dir=ROOT)
        self.assertEqual(written, {name: len(without_remarks(text_of(name))) for name in names})

    def test_the_table_of_a_run_has_all_positions(self):
        count = len(without_remarks(text_of("suites", "tactics.epd")))
        found = numbers("docs/suite.md", r"\| orvelin \| (\d+) \| (\d+) \|")
        self.assertEqual(found, [count, count])


class BuildTest(unittest.TestCase):
    def test_the_page_on_building_has_all_presets(self):
        with open(os.path.join(ROOT, "CMakePresets.json"), encoding="utf-8") as file:
            presets = json.load(file)["configurePresets"]
        known = {preset["name"] for preset in presets if not preset.get("hidden")}
        written = {row[0].strip("`") for row in BUILDING.table("Preset", "What it is")}
        self.assertEqual(written, known)

    def test_the_page_on_building_has_all_stages(self):
        with open(os.path.join(ROOT, "check"), encoding="utf-8") as file:
            stages = re.search(r"\|\| stages=\((.*)\)", file.read()).group(1).split()
        written = [row[0].strip("`") for row in BUILDING.table("Stage", "What it proves")]
        self.assertEqual(written, stages)

    def test_the_news_are_of_this_version(self):
        with open(os.path.join(ROOT, "CMakeLists.txt"), encoding="utf-8") as file:
            version = re.search(r"project\(orvelin VERSION (\S+)", file.read()).group(1)
        self.assertIn(version, next(h for h in DOCUMENTS["NEWS.md"].headings if h[-1].isdigit()))
        self.assertIn(f'"id name Orvelin {version}"', source("main.cpp"))
        self.assertIn(f'version = "{version}"', source("version.h", "play"))


if __name__ == "__main__":
    unittest.main()
