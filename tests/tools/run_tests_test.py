"""What runs the tests of a stage fails where a test does, and where there is none."""

import os
import subprocess
import sys
import tempfile
import unittest

RUNNER = os.path.join(os.path.dirname(os.environ["MEASURE_TOOLS"]), "tests/support/run_tests.py")
CASE = """\
import unittest
class Case(unittest.TestCase):
    {}
    def test_it(self):
        self.{}
"""


class RunTestsTest(unittest.TestCase):
    def setUp(self):
        place = tempfile.TemporaryDirectory()
        self.addCleanup(place.cleanup)
        self.folder = place.name

    def write(self, name, statement, decoration=""):
        with open(os.path.join(self.folder, name), "w", encoding="ascii") as file:
            file.write(CASE.format(decoration, statement))

    def run_tests(self):
        done = subprocess.run(
            [sys.executable, "-B", RUNNER, self.folder, "*_test.py"],
            capture_output=True,
            text=True,
            timeout=60,
            check=False,
        )
        return done.returncode, done.stderr

    def test_a_test_that_passes_passes(self):
        self.write("one_test.py", "assertTrue(True)")
        status, text = self.run_tests()
        self.assertEqual(status, 0, text)
        self.assertIn("Ran 1 test", text)

    def test_a_test_that_fails_fails(self):
        self.write("one_test.py", "assertTrue(True)")
        self.write("other_test.py", "fail()")
        self.assertEqual(self.run_tests()[0], 1)

    def test_no_test_at_all_fails(self):
        self.write("one.py", "assertTrue(True)")
        status, text = self.run_tests()
        self.assertEqual(status, 1)
        self.assertIn(f"nothing is tested in {self.folder} by *_test.py", text)

    def test_tests_that_are_all_skipped_fail(self):
        self.write("one_test.py", "assertTrue(True)", "@unittest.skip('never')")
        status, text = self.run_tests()
        self.assertEqual(status, 1)
        self.assertIn("nothing is tested", text)


if __name__ == "__main__":
    unittest.main()
