"""The manual pages: the code blocks in them, and the options that they describe."""

import glob
import os
import re
import subprocess

BLOCK = re.compile(r"^\.Bd -literal.*?\n(.*?)^\.Ed$", re.MULTILINE | re.DOTALL)
OPTION = re.compile(r"\bFl -([a-z][\w-]+)")
TOLD = re.compile(r"(?<![\w-])--([a-z][\w-]+)")
# In the list of commands that CLI11 prints, and argparse never does.
COMMAND = re.compile(r"^  ([a-z]+) {2,}\S", re.MULTILINE)


class Manual:
    """The page of one program."""

    def __init__(self, path):
        self.program = os.path.basename(path).removesuffix(".6")
        with open(path, encoding="utf-8") as file:
            text = file.read()
        self.blocks = [block.replace("\\e", "\\") for block in BLOCK.findall(text)]
        self.listed = set()
        for line in re.findall(r"^\.It (Fl .*)$", text, re.MULTILINE):
            self.listed.update(OPTION.findall(line))


def read_manuals(root):
    """All pages, by the name of their program."""
    pages = map(Manual, sorted(glob.glob(os.path.join(root, "packaging", "man", "*.6"))))
    return {page.program: page for page in pages}


def told_options(path):
    """The options that a program and its commands tell, without their dashes."""
    text = _help(path)
    if "Subcommands:" in text:
        for command in COMMAND.findall(text.split("Subcommands:")[1]):
            text += _help(path, command)
    return set(TOLD.findall(text))


def _help(path, *words):
    return subprocess.run(
        [path, *words, "--help"], capture_output=True, text=True, timeout=60, check=True
    ).stdout
