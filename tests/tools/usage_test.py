"""How the shell scripts take their arguments: all of them before they install or build anything."""

import glob
import os
import shutil
import subprocess
import tempfile
import unittest

TOOLS = os.environ["MEASURE_TOOLS"]
ROOT = os.path.dirname(TOOLS)
# What a script would start if it went to work.
WORKERS = ("apt-get", "cmake", "ctest", "debootstrap", "dpkg-query", "git", "mktemp", "sudo")
# Of each script words that it cannot take.
WRONG_WORDS = {
    "check": "nosuch",
    "run": "nosuch",
    "tools/build-ahead": "one two",
    "tools/build-profiled": "nosuch",
    "tools/check-arm64": "nosuch",
    "tools/check-board": "one two",
    "tools/check-cluster": "one two",
    "tools/check-interfaces": "one two",
    "tools/check-packages": "--made --made",
    "tools/check-pages": "one two",
    "tools/check-release": "--whole --whole",
    "tools/check-wasm": "nosuch",
    "tools/check-windows": "nosuch",
    "tools/compare-signatures": "nosuch",
    "tools/coverage": "nosuch",
    "tools/fuzz": "nosuch",
    "tools/lint": "nosuch",
    "tools/make-arm64-packages": "one two",
    "tools/make-container": "one two",
    "tools/make-board": "one two",
    "tools/make-packages": "one two",
    "tools/make-release": "one two",
    "tools/make-screenshot": "one two three",
    "tools/make-web-engine": "one two",
    "tools/make-windows-packages": "one two",
}
WORKER = '#!/bin/sh\necho "$0 $*" >>"$(dirname "$0")/started"\nexit 1\n'


def shell_scripts():
    """The names of all scripts in bash that a user starts, from the root of the tree."""
    names = []
    for path in (os.path.join(ROOT, "check"), os.path.join(ROOT, "run"), *glob.glob(f"{TOOLS}/*")):
        if os.path.isfile(path) and os.access(path, os.X_OK):
            with open(path, "rb") as file:
                if file.readline() == b"#!/usr/bin/env bash\n":
                    names.append(os.path.relpath(path, ROOT))
    return sorted(names)


class UsageTest(unittest.TestCase):
    """The scripts in a tree of their own, where nothing that they start does anything."""

    def setUp(self):
        place = tempfile.TemporaryDirectory()
        self.addCleanup(place.cleanup)
        self.tree = os.path.join(place.name, "tree")
        self.programs = os.path.join(place.name, "bin")
        os.makedirs(os.path.join(self.tree, "tools"))
        os.mkdir(self.programs)
        for name in (*shell_scripts(), "tools/setup.sh"):
            shutil.copy(os.path.join(ROOT, name), os.path.join(self.tree, name))
        for name in WORKERS:
            path = os.path.join(self.programs, name)
            with open(path, "w", encoding="ascii") as file:
                file.write(WORKER)
            os.chmod(path, 0o755)

    def run_script(self, name, *arguments):
        done = subprocess.run(
            [os.path.join(self.tree, name), *arguments],
            cwd=self.programs,
            env={"PATH": f"{self.programs}:/usr/bin:/bin", "HOME": self.programs},
            stdin=subprocess.DEVNULL,
            capture_output=True,
            text=True,
            timeout=60,
            check=False,
        )
        return done.returncode, done.stdout, done.stderr

    def started(self):
        """What was started of the programs that do the work."""
        path = os.path.join(self.programs, "started")
        if not os.path.exists(path):
            return ""
        with open(path, encoding="utf-8") as file:
            return file.read()

    def assert_usage_error(self, name, *arguments):
        with self.subTest(script=name, arguments=arguments):
            status, output, errors = self.run_script(name, *arguments)
            self.assertEqual((status, output), (2, ""), errors)
            self.assertTrue(errors.startswith("orvelin: "), errors)
            self.assertEqual(errors.split("\n", 1)[1], self.run_script(name, "--help")[1])
            self.assertEqual(self.started(), "")

    def test_all_scripts_are_known(self):
        self.assertLessEqual({"check", "run", "tools/lint", "tools/fuzz"}, set(shell_scripts()))

    def test_help_tells_the_usage_and_does_nothing(self):
        for name in shell_scripts():
            for arguments in (["--help"], ["--nosuch", "--help"]):
                with self.subTest(script=name, arguments=arguments):
                    status, output, errors = self.run_script(name, *arguments)
                    self.assertEqual((status, errors), (0, ""))
                    called = name if name.startswith("tools/") else f"./{name}"
                    self.assertRegex(output, rf"(?m)^{called}( |$)")
                    self.assertNotIn("#", output)
                    self.assertNotIn("set -euo", output)
                    self.assertEqual(self.started(), "")

    def test_an_unknown_option_is_an_error(self):
        for name in shell_scripts():
            self.assert_usage_error(name, "--nosuch")

    def test_a_word_that_is_unknown_or_too_many_is_an_error(self):
        self.assertEqual(sorted(WRONG_WORDS), shell_scripts())
        for name, words in WRONG_WORDS.items():
            self.assert_usage_error(name, *words.split())
        self.assert_usage_error("check", "format", "nosuch")

    def test_an_option_without_its_value_is_an_error(self):
        self.assert_usage_error("tools/build-profiled", "--folder")
        self.assert_usage_error("tools/coverage", "--min-lines")
        self.assert_usage_error("tools/coverage", "--min-lines", "many")
        self.assert_usage_error("tools/fuzz", "--seconds", "0")

    def test_what_is_built_once_cannot_be_verified(self):
        self.assert_usage_error("tools/make-release", "--again")

    def test_without_arguments_there_is_work(self):
        # The engine is missing in this tree: it would be built.
        status, output, errors = self.run_script("run")
        self.assertEqual((status, output), (1, ""))
        self.assertIn("installing", errors)
        self.assertIn("apt-get install", self.started())


if __name__ == "__main__":
    unittest.main()
