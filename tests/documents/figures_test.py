"""Options, commands and presets: the tables of the documents against the engine and the build."""

import json
import os
import re
import tempfile
import unittest

from project import DOCUMENTS, ENGINE, ROOT
from uci_lib.engine import UciEngine

README, UCI = DOCUMENTS["README.md"], DOCUMENTS["docs/uci.md"]
OPTION = re.compile(r"option name (\S+) type (\S+) default (\S+)(?: min (\S+) max (\S+))?$")


def announced_options():
    """(name, type, default, min, max) as the engine tells them."""
    with tempfile.TemporaryDirectory() as directory:
        with UciEngine([ENGINE], directory, patience=60.0) as engine:
            engine.send("uci")
            lines = [line for _, line in engine.wait_for("uciok")]
    return [OPTION.match(line).groups() for line in lines if line.startswith("option ")]


def source(name):
    """A file of the protocol."""
    with open(os.path.join(ROOT, "src", "protocol", name), encoding="utf-8") as file:
        return file.read()


class OptionsTest(unittest.TestCase):
    def test_the_page_on_uci_tells_what_the_engine_announces(self):
        written = [row[:2] for row in UCI.table("Option", "Announced")]
        expected = []
        for name, kind, default, least, most in announced_options():
            limits = f", {least} to {most}" if least else ""
            expected.append([f"`{name}`", f"{kind} {default}{limits}"])
        self.assertEqual(written, expected)

    def test_the_readme_has_all_options_and_their_defaults(self):
        written = [row[:2] for row in README.table("Option", "Default")]
        expected = [[f"`{name}`", default] for name, _, default, _, _ in announced_options()]
        self.assertEqual(written, expected)

    def test_all_options_that_are_read_are_announced(self):
        read = re.findall(r'\{"(\w+)", &Engine::option_', source("engine_options.cpp"))
        self.assertEqual([option[0] for option in announced_options()], read)


class CommandsTest(unittest.TestCase):
    def test_all_commands_are_described(self):
        commands = re.findall(r'\{"(\w+)", &Engine::command_', source("engine.cpp"))
        self.assertGreater(len(commands), 5)
        for document in (README, UCI):
            named = {span.split(" ")[0] for span in document.spans}
            self.assertEqual(set(commands) - named, set())

    def test_all_words_behind_go_are_described(self):
        words = re.findall(r'\{"(\w+)", &Analysis::', source("engine_search.cpp"))
        words += re.findall(r'token == "(\w+)"', source("engine_search.cpp"))
        self.assertGreater(len(words), 10)
        described = " ".join(row[0] for row in UCI.table("Word", "What it does"))
        self.assertEqual([word for word in words if f"`{word}`" not in described], [])


class BuildTest(unittest.TestCase):
    def test_the_readme_has_all_presets(self):
        with open(os.path.join(ROOT, "CMakePresets.json"), encoding="utf-8") as file:
            presets = json.load(file)["configurePresets"]
        known = {preset["name"] for preset in presets if not preset.get("hidden")}
        written = {row[0].strip("`") for row in README.table("Preset", "What it is")}
        self.assertEqual(written, known)

    def test_the_readme_has_all_stages(self):
        with open(os.path.join(ROOT, "check"), encoding="utf-8") as file:
            stages = re.search(r"\|\| stages=\((.*)\)", file.read()).group(1).split()
        written = [row[0].strip("`") for row in README.table("Stage", "What it proves")]
        self.assertEqual(written, stages)

    def test_the_news_are_of_this_version(self):
        with open(os.path.join(ROOT, "CMakeLists.txt"), encoding="utf-8") as file:
            version = re.search(r"project\(orvelin VERSION (\S+)", file.read()).group(1)
        self.assertIn(version, next(h for h in DOCUMENTS["NEWS.md"].headings if h[-1].isdigit()))
        self.assertIn(f'"id name Orvelin {version}"', source("main.cpp"))


if __name__ == "__main__":
    unittest.main()
