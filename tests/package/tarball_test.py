"""The tarball of static programs, unpacked somewhere."""

import glob
import os
import tarfile
import tempfile
import unittest

from support import PROGRAMS, SCRIPTS, PackageTest, readelf, run, the_only


class TarballTest(PackageTest):
    @classmethod
    def setUpClass(cls):
        cls.place = tempfile.TemporaryDirectory()
        cls.addClassCleanup(cls.place.cleanup)
        cls.tarball = the_only("orvelin-*-linux-x86_64.tar.gz")
        cls.name = os.path.basename(cls.tarball)[: -len(".tar.gz")]
        run("tar", "-C", cls.place.name, "-xf", cls.tarball)
        cls.folder = os.path.join(cls.place.name, cls.name)

    def test_all_lies_in_one_folder_of_the_name_of_the_tarball(self):
        self.assertEqual(os.listdir(self.place.name), [self.name])
        files = set(os.listdir(self.folder))
        self.assertLessEqual(
            {"Orvelin.bin", "START.txt", "README.md", "LICENSE", "copyright", "docs", "man"}, files
        )
        self.assertLessEqual(set(PROGRAMS + SCRIPTS), files)
        manuals = set(os.listdir(os.path.join(self.folder, "man")))
        self.assertEqual(manuals, {f"{name}.6" for name in PROGRAMS + SCRIPTS})

    def test_the_tarball_does_not_tell_who_made_it(self):
        with tarfile.open(self.tarball) as tarball:
            members = tarball.getmembers()
        owners = {(member.uid, member.gid, member.uname) for member in members}
        self.assertEqual(owners, {(0, 0, "")})
        self.assertEqual(len({member.mtime for member in members}), 1)
        for member in members:
            if not member.issym():
                executable = member.isdir() or member.mode & 0o111
                self.assertEqual(member.mode, 0o755 if executable else 0o644, member.name)

    def test_the_programs_need_nothing_of_the_system(self):
        for program in PROGRAMS:
            file = os.path.join(self.folder, program)
            self.assertNotIn("INTERP", readelf("--program-headers", file), program)
            self.assertNotIn("(NEEDED)", readelf("--dynamic", file), program)
            self.assertIn("GNU_RELRO", readelf("--program-headers", file), program)
            self.assertIn("DYN (Position-Independent", readelf("--file-header", file), program)
            self.assert_stripped(file)

    def test_the_engine_plays_from_the_book_in_its_folder(self):
        book = os.path.join(self.folder, "Orvelin.bin")
        self.assert_plays(os.path.join(self.folder, "orvelin"), book=book, folder=self.folder)

    def test_the_tools_run_in_the_folder(self):
        self.assertEqual(run(os.path.join(self.folder, "orvelin-perft"), "3"), "8902\n")
        suites = os.path.join(self.folder, "share/orvelin/suites")
        self.assert_python_tools_run(self.folder, suites)
        self.assert_links_hold(self.folder)
        self.assert_document_links_hold(self.folder)
        self.assertEqual(glob.glob(self.folder + "/**/__pycache__", recursive=True), [])


if __name__ == "__main__":
    unittest.main()
