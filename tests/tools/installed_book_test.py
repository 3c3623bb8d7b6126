"""The tests with a book where the package has its own: none of them may meet it."""

import os
import subprocess
import sys
import tempfile
import unittest

ENGINE = os.environ["INSTALLED_BOOK_ENGINE"]
BOOK_TOOL = os.environ["INSTALLED_BOOK_TOOL"]
TESTS = os.environ["INSTALLED_BOOK_TESTS"]
ROOT = os.environ["INSTALLED_BOOK_ROOT"]
PLACES = ("/usr/local/games", "/usr/games")
# A view of the file system with the book in a place, whose other files stay.
INSTALL = """
set -e
place=$1 scratch=$2 book=$3
shift 3
mkdir "$scratch/old" "$scratch/new" "$scratch/new/orvelin.files"
mount --bind "$place" "$scratch/old"
for file in "$scratch/old"/*; do
    [ ! -e "$file" ] || ln -s "$file" "$scratch/new"
done
cp "$book" "$scratch/new/orvelin.files/Orvelin.bin"
mount --bind "$scratch/new" "$place"
exec "$@"
"""


def view():
    """The command that gives another one its own view; None where there is none."""
    command = ["unshare", "--mount"] + ([] if os.getuid() == 0 else ["--map-root-user"])
    try:
        subprocess.run([*command, "true"], check=True, capture_output=True)
    except (OSError, subprocess.CalledProcessError):
        return None
    return command


VIEW = view()


@unittest.skipIf(VIEW is None, "no private view of the file system here")
class InstalledBookTest(unittest.TestCase):
    def setUp(self):
        place = tempfile.TemporaryDirectory()
        self.addCleanup(place.cleanup)
        self.folder = place.name
        self.book = os.path.join(self.folder, "book.bin")
        # No test has such a book.
        lines = "a2a4 h7h5 h2h4\n"
        self.run_command([BOOK_TOOL, "make", "-", "-o", self.book], text=lines)

    def run_command(self, command, text=""):
        environment = dict(os.environ)
        environment.pop("WITHOUT_INSTALLED_BOOK", None)
        done = subprocess.run(
            command,
            cwd=self.folder,
            env=environment,
            input=text,
            capture_output=True,
            text=True,
            timeout=250,
            check=False,
        )
        self.assertEqual(done.returncode, 0, done.stdout[-4000:] + done.stderr[-4000:])
        return done.stdout + done.stderr

    def with_book(self, place, *command, text=""):
        """What a command prints where the book is installed in this place."""
        if not os.path.isdir(place):
            self.skipTest(f"there is no {place}")
        with tempfile.TemporaryDirectory() as scratch:
            return self.run_command(
                [*VIEW, "bash", "-c", INSTALL, "bash", place, scratch, self.book, *command], text
            )

    def test_the_engine_plays_from_the_installed_book(self):
        asked = "setoption name OwnBook value true\nposition startpos\ngo depth 1\nisready\nquit\n"
        for place in PLACES:
            with self.subTest(place=place):
                self.assertIn("bestmove a2a4\n", self.with_book(place, ENGINE, text=asked))

    def test_the_tests_of_the_engine_do_not_meet_it(self):
        for place, names in zip(PLACES, ("EngineBook*", "*Book*:EngineStress*")):
            with self.subTest(place=place):
                told = self.with_book(place, TESTS, f"--gtest_filter={names}")
                self.assertIn("[  PASSED  ]", told)
                self.assertNotIn("SKIPPED", told)

    def test_the_tests_in_python_do_not_meet_it(self):
        script = os.path.join(ROOT, "tests/support/without_installed_book")
        test = os.path.join(ROOT, "tests/openings/engine_test.py")
        told = self.with_book(PLACES[1], script, sys.executable, "-B", test)
        self.assertIn("\nOK\n", told)
        self.assertNotIn("skipped", told)


if __name__ == "__main__":
    unittest.main()
