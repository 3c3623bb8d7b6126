"""The tarball of static programs: unpacked anywhere, and that is all."""

import os
import subprocess
import tarfile
import tempfile
import unittest

from program import RUNNER, native, run

PACKAGES = os.environ.get("PLATFORM_PACKAGES", "")
PROGRAMS = ["orvelin", "orvelin-analyse", "orvelin-play"]


class TarballTest(unittest.TestCase):
    def setUp(self):
        folder = tempfile.TemporaryDirectory()
        self.addCleanup(folder.cleanup)
        (name,) = (name for name in os.listdir(PACKAGES) if name.endswith(".tar.gz"))
        with tarfile.open(os.path.join(PACKAGES, name)) as archive:
            self.members = archive.getmembers()
            archive.extractall(folder.name)
        self.top = name.removesuffix(".tar.gz")
        self.folder = os.path.join(folder.name, self.top)

    def program(self, name, *arguments):
        return [*RUNNER, os.path.join(self.folder, name), *arguments]

    def test_it_has_programs_book_and_documents_of_nobody(self):
        self.assertEqual(
            sorted(os.listdir(self.folder)), sorted([*PROGRAMS, "LICENSE", "Orvelin.bin", "START.txt", "docs"])
        )
        for member in self.members:
            self.assertEqual((member.uid, member.gid, member.uname), (0, 0, ""), member.name)
            self.assertTrue((member.name + "/").startswith(self.top + "/"))
        with open(os.path.join(self.folder, "START.txt"), encoding="ascii") as file:
            text = file.read()
        for name in (*PROGRAMS, "Orvelin.bin", "LICENSE", "docs"):
            self.assertIn(name, text)

    def test_each_program_is_static_and_of_the_processor(self):
        for name in PROGRAMS:
            with self.subTest(program=name):
                path = os.path.join(self.folder, name)
                self.assertTrue(os.access(path, os.X_OK))
                told = subprocess.run(
                    ["readelf", "-hl", path], capture_output=True, text=True, check=True
                ).stdout
                self.assertIn("AArch64", told)
                self.assertNotIn("INTERP", told)

    def test_the_engine_plays_from_its_folder_with_the_book(self):
        out, _, status = run(
            self.program("orvelin-play"),
            "setoption name OwnBook value true\ngo depth 1\nisready\n",
            self.folder,
        )
        self.assertIn("info string book move\n", out)
        self.assertEqual(status, 0)

    def test_the_other_programs_work(self):
        out, _, status = run(self.program("orvelin"), "uci\nquit\n")
        self.assertIn("uciok\n", out)
        self.assertEqual(status, 0)
        words = ("--limit", "static")
        fen = "rnbqkbnr/pppppppp/8/8/8/8/PPPPPPPP/RNBQKBNR w KQkq - 0 1\n"
        expected = run(native("orvelin-analyse", *words), fen)[0]
        self.assertTrue(expected)
        self.assertEqual(run(self.program("orvelin-analyse", *words), fen)[0], expected)


if __name__ == "__main__":
    unittest.main()
