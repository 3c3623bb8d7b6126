"""The packages for Windows: the zip has what START.txt tells of, and the installer installs it for
one user, and takes it away."""

import os
import subprocess
import tempfile
import unittest
import zipfile

from program import PATIENCE, RUNNER, command, native, run

PACKAGES = os.environ.get("PLATFORM_PACKAGES", "")
FILES = ["LICENSE", "Orvelin.bin", "START.txt", "orvelin-analyse.exe", "orvelin-book.exe", "orvelin-play.exe", "orvelin.exe"]
KEY = r"HKCU\Software\Microsoft\Windows\CurrentVersion\Uninstall\Orvelin"


def package(end):
    (name,) = (name for name in os.listdir(PACKAGES) if name.endswith(end))
    return os.path.join(PACKAGES, name)


def windows(*words):
    return subprocess.run(
        [*RUNNER, *words], stdin=subprocess.DEVNULL, stdout=subprocess.DEVNULL, timeout=PATIENCE,
        check=False,
    ).returncode


@unittest.skipUnless(PACKAGES, "for Windows alone")
class PackagesTest(unittest.TestCase):
    def test_the_zip_has_all_files_and_its_engine_plays(self):
        with tempfile.TemporaryDirectory() as folder, zipfile.ZipFile(package(".zip")) as archive:
            archive.extractall(folder)
            (top,) = os.listdir(folder)
            self.assertEqual(sorted(os.listdir(os.path.join(folder, top))), sorted(FILES))
            # Its own book, which lies in the folder that it is started in.
            out, _, _ = run(
                [*RUNNER, os.path.join(folder, top, "orvelin-play.exe")],
                "setoption name OwnBook value true\ngo depth 1\nisready\n",
                os.path.join(folder, top),
            )
            self.assertIn("info string book move\n", out)

    def test_a_book_is_made_byte_for_byte(self):
        with tempfile.TemporaryDirectory() as folder:
            with open(os.path.join(folder, "lines.txt"), "w", encoding="ascii") as file:
                file.write("e2e4 e7e5 g1f3\nd2d4 d7d5 c2c4\n")
            # The second time there is one to replace.
            for _ in range(2):
                words = command("orvelin-book", "make", "lines.txt", "-o", "made.bin")
                made = run(words, folder=folder)
                self.assertEqual(made[2], 0, made[1])
            run(native("orvelin-book", "make", "lines.txt", "-o", "native.bin"), folder=folder)
            with open(os.path.join(folder, "made.bin"), "rb") as one:
                with open(os.path.join(folder, "native.bin"), "rb") as two:
                    self.assertEqual(one.read(), two.read())

    def test_the_installer_leaves_nothing_behind(self):
        with tempfile.TemporaryDirectory() as folder:
            place = os.path.join(folder, "Örvelin")
            inside = "Z:" + place.replace("/", "\\")
            # A place with blanks cannot be told here: Wine puts the word into quotation marks, and
            # the installer wants none.
            self.assertEqual(windows(package("-setup.exe"), "/S", "/D=" + inside), 0)
            self.assertEqual(sorted(os.listdir(place)), sorted([*FILES, "uninstall.exe"]))
            self.assertEqual(windows("reg", "query", KEY), 0)
            # Told its place, it does not go on from a copy that nobody waits for.
            remover = os.path.join(folder, "remover.exe")
            os.rename(os.path.join(place, "uninstall.exe"), remover)
            self.assertEqual(windows(remover, "/S", "_?=" + inside), 0)
            self.assertFalse(os.path.exists(place))
            self.assertNotEqual(windows("reg", "query", KEY), 0)


if __name__ == "__main__":
    unittest.main()
