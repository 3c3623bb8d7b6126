"""The Debian package for the processor: into an empty system and out of it, true in what it says that
it needs, and its programs search as those of this machine."""

import os
import re
import subprocess
import tempfile
import unittest

from program import PATIENCE, RUNNER, Conversation, native, run
from served_board import ServedBoardTest

PACKAGES = os.environ.get("PLATFORM_PACKAGES", "")
PROGRAMS = ("orvelin", "orvelin-analyse", "orvelin-book", "orvelin-perft", "orvelin-play", "orvelin-tables")
SCRIPTS = ("orvelin-board", "orvelin-explain", "orvelin-match", "orvelin-suite")
# The libraries of Debian 12 for the processor.
LIBRARIES = "/usr/aarch64-linux-gnu"
# The package of each library, and how it names what it has grown by.
SOURCES = {
    "libc.so.6": ("libc6", "GLIBC"),
    "libm.so.6": ("libc6", "GLIBC"),
    "ld-linux-aarch64.so.1": ("libc6", "GLIBC"),
    "libgcc_s.so.1": ("libgcc-s1", "GCC"),
    "libstdc++.so.6": ("libstdc++6", "GLIBCXX"),
}
# Versions of the package of the C++ library, by the first name that each has brought.
GROWN = {"GLIBCXX_3.4.29": "11", "GLIBCXX_3.4.30": "12"}


def told(*words):
    return subprocess.run(words, capture_output=True, text=True, timeout=PATIENCE, check=True).stdout


def numbers(version):
    return [int(word) for word in version.split(".")]


class DebianPackageTest(ServedBoardTest):
    @classmethod
    def setUpClass(cls):
        place = tempfile.TemporaryDirectory()
        cls.addClassCleanup(place.cleanup)
        (name,) = (name for name in os.listdir(PACKAGES) if name.endswith("_arm64.deb"))
        cls.package = os.path.join(PACKAGES, name)
        cls.root = os.path.join(place.name, "root")
        cls.log = os.path.join(place.name, "log")
        for folder in ("info", "updates", "triggers"):
            os.makedirs(os.path.join(cls.root, "var/lib/dpkg", folder))
        for name in ("status", "available"):
            with open(os.path.join(cls.root, "var/lib/dpkg", name), "wb"):
                pass
        # What it needs is not there, and nothing of it is run.
        cls.dpkg("--force-depends", "--force-architecture", "--install", cls.package)

    @classmethod
    def dpkg(cls, *words):
        told("dpkg", f"--root={cls.root}", f"--log={cls.log}", "--force-not-root", *words)

    @classmethod
    def tearDownClass(cls):
        cls.dpkg("--purge", "orvelin")
        if os.path.exists(os.path.join(cls.root, "usr")):
            raise AssertionError("the package leaves files behind")

    def path(self, name):
        return os.path.join(self.root, "usr", name)

    def program(self, name, *arguments):
        return [*RUNNER, "-L", LIBRARIES, self.path(f"games/{name}"), *arguments]

    def test_it_is_for_the_processor_and_installed(self):
        self.assertEqual(told("dpkg-deb", "--field", self.package, "Architecture"), "arm64\n")
        form = "${Package}:${Architecture} ${db:Status-Status}"
        listed = told("dpkg-query", f"--admindir={self.root}/var/lib/dpkg", "-W", "-f", form)
        self.assertEqual(listed, "orvelin:arm64 installed")
        for name in (*PROGRAMS, *SCRIPTS, "orvelin.files/Orvelin.bin"):
            self.assertTrue(os.path.isfile(self.path(f"games/{name}")), name)

    def test_lintian_has_nothing_to_say(self):
        words = ("--display-info", "--fail-on=none", "--allow-root", self.package)
        found = told("lintian", *words).splitlines()
        self.assertEqual([line for line in found if not line.startswith("N:")], [])

    def test_the_board_is_served(self):
        # Debian's Python is that of this machine here.
        version = os.path.basename(self.package).split("_")[1].split("-")[0]
        book = native("Orvelin.bin")[0]
        self.assert_board_is_served_by(self.path("games/orvelin-board"), version, book)

    def test_the_programs_are_of_the_processor_and_hardened(self):
        for name in PROGRAMS:
            with self.subTest(program=name):
                shown = told("readelf", "-hldW", self.path(f"games/{name}"))
                self.assertIn("AArch64", shown)
                self.assertIn("INTERP", shown)
                self.assertIn("GNU_RELRO", shown)
                self.assertRegex(shown, r"FLAGS_1.*NOW PIE")

    def test_they_need_what_the_package_says_and_no_more(self):
        said = told("dpkg-deb", "--field", self.package, "Depends").strip()
        allowed = dict(re.fullmatch(r"(\S+) \(>= (\S+)\)", word).groups() for word in said.split(", "))
        needed = {}
        for name in PROGRAMS:
            shown = told("readelf", "-dVW", self.path(f"games/{name}"))
            for library in re.findall(r"\(NEEDED\).*\[(.+)\]", shown):
                package, grown = SOURCES[library]
                versions = needed.setdefault(package, set())
                versions.update(re.findall(rf"\b{grown}_[\d.]+", shown))
        self.assertEqual(set(needed), set(allowed))
        for package, versions in needed.items():
            newest = max(versions, key=lambda version: numbers(version.split("_")[1]))
            version = GROWN.get(newest, newest.split("_")[1])
            self.assertEqual(numbers(allowed[package]), numbers(version), (package, newest))

    def test_both_engines_search_as_those_of_this_machine(self):
        # The static programs of the same objects have the whole signature.
        for name in ("orvelin", "orvelin-play"):
            heard = []
            for words in (native(name), self.program(name)):
                with Conversation(words) as engine:
                    engine.send("position startpos moves e2e4 c7c5\ngo depth 8\n")
                    lines = engine.until("bestmove")
                    # The exact engine tells where it is by the clock.
                    heard.append(lines[-1:] if name == "orvelin" else lines)
                    self.assertEqual(engine.end(), 0)
            self.assertTrue(heard[0])
            self.assertEqual(heard[1], heard[0])

    def test_the_tools_work_with_the_installed_book(self):
        book = self.path("games/orvelin.files/Orvelin.bin")
        verified = run(self.program("orvelin-book", "verify", book))
        self.assertEqual(verified[2], 0, verified[1])
        self.assertEqual(run(self.program("orvelin-perft", "3"))[0], "8902\n")
        with open(native("Orvelin.bin")[0], "rb") as file:
            expected = file.read()
        with open(book, "rb") as file:
            self.assertEqual(file.read(), expected)


if __name__ == "__main__":
    unittest.main()
