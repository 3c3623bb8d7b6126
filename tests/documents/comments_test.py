"""Names in backticks in the comments of the sources: each must be one of the code.

A comment outlives what it explains: a parameter is renamed, a function goes, and the comment still
speaks of it. Every word of a text in backticks has to occur in the code of the sources, strings
and names of included files among it; so commands, options and files are held as well.
"""

import pathlib
import re
import unittest

from project import ROOT

# What can hold the beginning of a comment without one, and the comments.
PART = re.compile(
    r"""(?P<comment>//[^\n]*|/\*.*?\*/)
      | R"(?P<raw>[^(]*)\(.*?\)(?P=raw)"
      | "(?:\\.|[^"\\\n])*"
      | \b\d[\w']*
      | '(?:\\.|[^'\\\n])+'""",
    re.DOTALL | re.VERBOSE,
)
WORD = re.compile(r"[A-Za-z_]\w*")
QUOTED = re.compile(r"`([^`]*)`")


def divided(text):
    """The code of a source and its comments as (line, text), lines in a row joined."""
    code, comments = [], []
    end = last_line = 0
    for part in PART.finditer(text):
        if part["comment"] is None:
            continue
        code.append(text[end : part.start()])
        end = part.end()
        line = text.count("\n", 0, part.start()) + 1
        body = part["comment"].lstrip("/<* ").rstrip("*/ ")
        if comments and line == last_line + 1:
            comments[-1] = comments[-1][0], f"{comments[-1][1]} {body}"
        else:
            comments.append((line, body))
        last_line = line + part["comment"].count("\n")
    code.append(text[end:])
    return "".join(code), comments


def unknown_names(sources):
    """Texts in backticks with a word that no code has, and lone backticks, by place."""
    parts = {name: divided(text) for name, text in sources.items()}
    words = {word for code, _ in parts.values() for word in WORD.findall(code)}
    found = []
    for name, (_, comments) in sorted(parts.items()):
        for line, comment in comments:
            if comment.count("`") % 2:
                found.append(f"{name}:{line}: a backtick without its other one")
                continue
            for quoted in QUOTED.findall(comment):
                if not words.issuperset(WORD.findall(quoted)):
                    found.append(f"{name}:{line}: `{quoted}`")
    return found


class CommentsTest(unittest.TestCase):
    def test_every_name_in_a_comment_is_one_of_the_code(self):
        root = pathlib.Path(ROOT)
        sources = {
            str(path.relative_to(root)): path.read_text(encoding="utf-8")
            for path in root.glob("src/**/*")
            if path.suffix in (".h", ".cpp", ".in")
        }
        self.assertGreater(len(sources), 100)
        self.assertEqual(unknown_names(sources), [])

    def test_a_name_that_is_gone_is_found(self):
        text = 'int f(int here);  // `here` and `f()`,\n// `gone\nauto s = "// `s";\n'
        self.assertEqual(unknown_names({"f.h": text}), ["f.h:1: a backtick without its other one"])
        text = "/// `f(g)` and\n/// `f`.\nint f;\n"
        self.assertEqual(unknown_names({"f.h": text}), ["f.h:1: `f(g)`"])

    def test_names_of_other_sources_and_words_in_strings_are_known(self):
        sources = {
            "a.cpp": '#include "b_file.h"\nint g = 1\'000; char c = \'"\'; s = "go infinite";\n',
            "b_file.h": "/* `g`, `go infinite`\n * and `b_file.h` */\n",
        }
        self.assertEqual(unknown_names(sources), [])

    def test_strings_and_numbers_begin_no_comment(self):
        code, comments = divided('a = "//"; b = R"(/*)"; c = 1\'0; // d\'s\ne = \'/\';\n')
        self.assertEqual(comments, [(1, "d's")])
        self.assertEqual(WORD.findall(code), ["a", "b", "R", "c", "e"])


if __name__ == "__main__":
    unittest.main()
