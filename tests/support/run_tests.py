"""Runs the tests in the files of a folder whose names match a pattern: run_tests.py FOLDER PATTERN.

As `python3 -m unittest discover -v` does, but where nothing is tested this fails: a pattern that
matches no file any more would pass for ever.
"""

import sys
import unittest


def main():
    folder, pattern = sys.argv[1:]
    tests = unittest.defaultTestLoader.discover(folder, pattern)
    result = unittest.TextTestRunner(verbosity=2).run(tests)
    if result.testsRun == len(result.skipped):
        sys.exit(f"nothing is tested in {folder} by {pattern}")
    sys.exit(not result.wasSuccessful())


if __name__ == "__main__":
    main()
