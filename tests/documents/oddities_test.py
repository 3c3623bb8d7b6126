"""docs/oddities.md, the code and the tests tell of the same oddities."""

import glob
import os
import re
import unittest
from dataclasses import dataclass

from project import DOCUMENTS, ROOT

SPAN = re.compile(r"`([^`]+)`")
NAMED = re.compile(r"\b[Oo]ddit(?:y|ies) (\d+(?:(?:, | and )\d+)*)")
CPP_TEST = re.compile(r"\bTEST(?:_[FP])?\(\s*(\w+),\s*(\w+)")
PYTHON_TEST = re.compile(r"\bdef (test_\w+)")


@dataclass(frozen=True)
class Oddity:
    """A row of the page."""

    number: int
    file: str
    function: str
    tests: list


def read_oddities():
    """All rows, in the order of the page."""
    oddities = []
    for rows in DOCUMENTS["docs/oddities.md"].tables():
        if rows[0][0] != "No.":
            continue
        for number, _, where, held_by in rows[1:]:
            file, function = SPAN.findall(where)
            oddities.append(Oddity(int(number), file, function, SPAN.findall(held_by)))
    return oddities


def sources(*patterns):
    """The texts of the files of these patterns, by their paths."""
    texts = {}
    for pattern in patterns:
        for path in glob.glob(pattern, root_dir=ROOT, recursive=True):
            with open(os.path.join(ROOT, path), encoding="utf-8") as file:
                texts[path] = file.read()
    return texts


def named_numbers(text):
    """The numbers of the oddities that a text names. A comment may break the line anywhere."""
    flat = re.sub(r"\s*\n\s*(?://+<?|#|\*)?\s*", " ", text)
    return {int(n) for numbers in NAMED.findall(flat) for n in re.findall(r"\d+", numbers)}


ODDITIES = read_oddities()
CODE = sources("src/**/*.h", "src/**/*.cpp")
TESTS = sources("tests/**/*.h", "tests/**/*.cpp", "tests/**/*_test.py")


class NamedNumbersTest(unittest.TestCase):
    def test_numbers_are_found_across_lines_and_in_lists(self):
        self.assertEqual(named_numbers("// Oddity 4: x\n/// see\n/// oddity\n/// 12."), {4, 12})
        self.assertEqual(named_numbers("(oddities 1, 2 and 30) oddity 5"), {1, 2, 30, 5})
        self.assertEqual(named_numbers("an oddity, 7 of them"), set())


class OdditiesTest(unittest.TestCase):
    maxDiff = None

    def test_each_number_stands_once(self):
        numbers = [oddity.number for oddity in ODDITIES]
        self.assertGreater(len(numbers), 100)
        self.assertEqual(sorted(numbers), list(range(1, len(numbers) + 1)))

    def test_each_place_exists(self):
        for oddity in ODDITIES:
            with self.subTest(number=oddity.number):
                found = oddity.function in CODE.get(oddity.file, "")
                self.assertTrue(found, f"{oddity.function} in {oddity.file}")

    def test_each_test_exists(self):
        known = set()
        for path, text in TESTS.items():
            if path.endswith(".py"):
                known.update(PYTHON_TEST.findall(text))
            else:
                known.update(f"{suite}.{name}" for suite, name in CPP_TEST.findall(text))
        for oddity in ODDITIES:
            with self.subTest(number=oddity.number):
                self.assertNotEqual(oddity.tests, [])
                self.assertEqual([name for name in oddity.tests if name not in known], [])

    def test_the_code_names_each_oddity(self):
        named = set().union(*map(named_numbers, CODE.values()))
        self.assertEqual({oddity.number for oddity in ODDITIES} - named, set())

    def test_code_and_tests_name_no_other(self):
        known = {oddity.number for oddity in ODDITIES}
        for path, text in (CODE | TESTS).items():
            if path != "tests/documents/oddities_test.py":
                self.assertEqual(named_numbers(text) - known, set(), path)

    def test_the_code_says_by_design_by_number_only(self):
        words = re.compile(r"\bby\s+(//+\s+)?design\b", re.IGNORECASE)
        self.assertEqual([path for path, text in CODE.items() if words.search(text)], [])


class GlossaryTest(unittest.TestCase):
    def test_each_word_is_in_its_file(self):
        count = 0
        for rows in DOCUMENTS["docs/glossary.md"].tables():
            for word, _, where in rows[1:]:
                count += 1
                (file,) = SPAN.findall(where)
                with self.subTest(word=word):
                    found = word.strip("`").lower() in CODE.get(file, "").lower()
                    self.assertTrue(found, f"{word} in {file}")
        self.assertGreater(count, 50)


if __name__ == "__main__":
    unittest.main()
