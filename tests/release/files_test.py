"""What a release consists of, and that it is the same each time."""

import hashlib
import os
import subprocess
import tarfile
import unittest

from release_lib.components import is_program
from release import FOLDER, OTHER, SOURCE, files_within, names, packages, path

ENDS = (
    "-source.tar.gz",
    "_amd64.deb",
    "_arm64.deb",
    "-linux-x86_64.tar.gz",
    "-linux-aarch64.tar.gz",
    "-windows-x64.zip",
    "-windows-x64-setup.exe",
    "-container.tar",
    ".tgz",
)


def read(*place):
    with open(os.path.join(*place), "rb") as file:
        return file.read()


class FilesTest(unittest.TestCase):
    def test_there_is_one_of_each_kind_and_nothing_else(self):
        for end in ENDS:
            path(end)
        self.assertEqual(len(packages()), len(ENDS), packages())
        self.assertEqual(len(names()), len(ENDS) + 2, names())

    def test_the_sums_are_those_of_all_other_files(self):
        lines = read(FOLDER, "SHA256SUMS").decode().splitlines()
        told = dict(reversed(line.split("  ")) for line in lines)
        self.assertEqual(list(told), [name for name in names() if name != "SHA256SUMS"])
        for name, digest in told.items():
            self.assertEqual(hashlib.sha256(read(FOLDER, name)).hexdigest(), digest, name)

    def test_the_second_time_every_byte_is_the_same(self):
        self.assertEqual(sorted(os.listdir(OTHER)), names())
        different = [name for name in names() if read(FOLDER, name) != read(OTHER, name)]
        self.assertEqual(different, [])

    def test_the_sources_are_those_that_are_kept(self):
        files = files_within("-source.tar.gz")
        top = os.path.basename(path("-source.tar.gz")).removesuffix("-source.tar.gz")
        kept = subprocess.run(
            ["git", "-C", SOURCE, "ls-files", "-z"], capture_output=True, text=True, check=True
        ).stdout.split("\0")[:-1]
        self.assertEqual(set(files), {f"{top}/{name}" for name in (*kept, "SOURCE_DATE")})
        self.assertEqual(files[f"{top}/check"], read(SOURCE, "check"))

    def test_no_archive_tells_who_made_it(self):
        with tarfile.open(path("-source.tar.gz")) as archive:
            when = int(archive.extractfile(archive.next().name + "/SOURCE_DATE").read())
        for end in (".tar.gz", "-container.tar"):
            for name in names(end):
                with tarfile.open(os.path.join(FOLDER, name)) as archive:
                    for member in archive:
                        told = (member.uid, member.gid, member.uname, member.gname, member.mtime)
                        self.assertEqual(told, (0, 0, "", "", when), f"{name}: {member.name}")
                        self.assertIn(member.mode & 0o777, (0o644, 0o755, 0o777), member.name)

    def test_no_program_names_the_folder_that_it_was_built_in(self):
        for end in ENDS:
            for name, content in files_within(end).items():
                if is_program(content):
                    self.assertNotIn(os.fsencode(SOURCE) + b"/", content, f"{end}: {name}")


if __name__ == "__main__":
    unittest.main()
