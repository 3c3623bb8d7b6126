"""Checks a command line without running it: its programs, their options, presets and stages."""

import functools
import glob
import itertools
import json
import os
import re
import shlex
import subprocess

OPERATORS = ("&&", "||", "|", ";", "&")
REDIRECTION = re.compile(r"^[<>]+&?$")
ASSIGNMENT = re.compile(r"^[A-Z_][A-Z0-9_]*=")
PLAIN_WORD = re.compile(r"^[a-z][a-z0-9-]*$")
# Programs in front of others.
PREFIXES = ("sudo", "nice", "exec", "time", "export")
# Programs of the system that a document may name; they need not be installed here.
SYSTEM = frozenset(
    "apt apt-get callgrind_annotate cat cd chmod clang-format-16 clang-tidy-14 cp cutechess-cli "
    "curl docker dpkg dpkg-deb echo find git head install less lintian ls make man mkdir ninja "
    "parallel perf polyglot printf pychess python3 rm sbatch sh sha256sum sleep ssh tail tar valgrind "
    "wget xargs xboard xdg-open".split()
)
# What lies in an unpacked tarball of the project, and the names of its packages.
UNPACKED = re.compile(r"^orvelin-[\d.]+-linux-x86_64/")
VERSION = re.compile(r"orvelin[-_](\d+(?:\.\d+)+)")


def joined_lines(text):
    """The command lines of a block, those that go on behind a backslash made one."""
    lines = text.replace("\\\n", " ").split("\n")
    return [line.removeprefix("$ ") for line in lines if line.strip()]


def simple_commands(line):
    """The words of each program in a line, without assignments and redirections."""
    lexer = shlex.shlex(line, posix=True, punctuation_chars=True)
    lexer.whitespace_split = True
    command, skip = [], False
    for word in lexer:
        if word in OPERATORS or set(word) <= set("()"):
            if command:
                yield command
            command = []
        elif REDIRECTION.match(word):
            skip = True
        elif skip:
            skip = False
        elif command or not (ASSIGNMENT.match(word) or word in PREFIXES):
            command.append(word)
    if command:
        yield command


class CommandChecker:
    """Knows the tree and the built programs."""

    def __init__(self, root, programs):
        self._root, self._programs = root, programs
        with open(os.path.join(root, "CMakePresets.json"), encoding="utf-8") as file:
            self._presets = json.load(file)
        with open(os.path.join(root, "CMakeLists.txt"), encoding="utf-8") as file:
            self._version = re.search(r"project\(\w+ VERSION (\S+)", file.read()).group(1)

    def faults(self, text):
        """What is wrong with the commands of a block."""
        for version in VERSION.findall(text):
            if version != self._version:
                yield f"version {version} is not this one"
        made = set(re.findall(r"cmake --preset \S+ -B build/([\w-]+)", text))
        for line in joined_lines(text):
            for command in simple_commands(line):
                yield from self._faults_of(command, made)

    def _faults_of(self, command, made):
        program, arguments = command[0], command[1:]
        for word in command:
            if word.startswith("build/") and word.split("/")[1] not in made:
                yield from self._folder_faults(word)
        if program in ("cmake", "ctest"):
            yield from self._preset_faults(program, arguments)
        elif program.startswith("build/"):
            if not re.search(rf"\b{os.path.basename(program)}\b", self._build_files()):
                yield f"{program}: nothing builds this"
        elif UNPACKED.match(program):
            yield from ()
        elif path := self.own_program(program):
            yield from self._argument_faults(program, path, arguments)
        elif program not in SYSTEM and not re.match(r"^[A-Z]+(/|$)", program):
            yield f"{program}: no such program"

    def own_program(self, name):
        """The path of one of our programs, None when it is none of them."""
        places = (self._root,) if "/" in name else (self._programs, f"{self._root}/tools")
        if name.startswith("./"):
            # What a reader has copied to where he works.
            places = (self._root, self._programs, f"{self._root}/tools/scale")
        for place in places:
            path = os.path.normpath(os.path.join(place, name))
            if os.path.isfile(path) and os.access(path, os.X_OK):
                return path
        return None

    def _preset_faults(self, program, arguments):
        kind = {"cmake": "configurePresets", "ctest": "testPresets"}[program]
        if "--build" in arguments:
            kind = "buildPresets"
        known = {preset["name"] for preset in self._presets[kind] if not preset.get("hidden")}
        for word, value in zip(arguments, arguments[1:]):
            if word == "--preset" and value not in known:
                yield f"{program}: no preset {value} in {kind}"
        for word in arguments:
            name = re.match(r"-D(ORVELIN_\w+)", word)
            if name and not re.search(rf"\b{name.group(1)}\b", self._build_files()):
                yield f"{program}: no option {name.group(1)}"

    def _folder_faults(self, path):
        """What lies in build/ is made by a preset or by a tool that names the folder."""
        folder = path.split("/")[1]
        presets = {preset["name"] for preset in self._presets["configurePresets"]}
        named = re.search(rf"build[/\", ]+{folder}\b", self._tool_sources())
        if folder not in presets and not named:
            yield f"{path}: nothing makes build/{folder}"

    @functools.cache
    def _tool_sources(self):
        return self._read(("run", "tools/*", "tools/*_lib/*.py"))

    @functools.cache
    def _build_files(self):
        return self._read(("CMakeLists.txt", "*/CMakeLists.txt", "cmake/*.cmake"))

    def _read(self, patterns):
        text = ""
        for pattern in patterns:
            for path in sorted(glob.glob(os.path.join(self._root, pattern))):
                if os.path.isfile(path):
                    with open(path, encoding="utf-8") as file:
                        text += file.read()
        return text

    def _argument_faults(self, program, path, arguments):
        text = self._help(path, next((a for a in arguments if PLAIN_WORD.match(a)), None))
        # Sub-commands stand in front; plain words behind an option are its values.
        leading = itertools.takewhile(PLAIN_WORD.match, arguments)
        options = (argument for argument in arguments if re.match(r"^\[?--?[a-z]", argument))
        for argument in itertools.chain(leading, options):
            word = argument.split("=")[0].strip("[]")
            if not re.search(rf"(?<![\w-]){re.escape(word)}(?![\w-])", text):
                yield f"{program}: does not know {word}"

    @functools.cache
    def _help(self, path, subcommand):
        """What a program tells of itself; a shell script is asked by its own text."""
        with open(path, "rb") as file:
            head = file.read(64)
        if b"bash" in head:
            with open(path, encoding="utf-8") as file:
                return file.read() + json.dumps(self._presets)
        text = ""
        for words in ([], [subcommand] if subcommand else []):
            run = subprocess.run(
                [path, *words, "--help"], capture_output=True, text=True, timeout=60, check=False
            )
            text += run.stdout
        return text
