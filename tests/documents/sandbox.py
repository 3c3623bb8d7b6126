"""A copy of the tree in which the commands of the documents run."""

import os
import shutil
import subprocess

from sessions import unlike

SECONDS = 120


class Sandbox:
    """The tree as somebody has it who has just built the engine with `./run`."""

    def __init__(self, root, programs, directory):
        self._tree = os.path.join(directory, "orvelin")
        self._path = os.path.join(directory, "bin")
        # GNU parallel, for one, keeps files there.
        self._home = os.path.join(directory, "home")
        shutil.copytree(
            root, self._tree, symlinks=True, ignore=shutil.ignore_patterns("build", ".git")
        )
        # What a reader has of his own: the files that the commands name.
        shutil.copytree(
            os.path.join(root, "tests", "documents", "given"), self._tree, dirs_exist_ok=True
        )
        # Copied last and without its old time: newer than all sources, so that nothing is built.
        built = os.path.join(self._tree, "build", "engine")
        os.makedirs(built)
        for name in ("orvelin", "orvelin-play"):
            shutil.copy(os.path.join(programs, name), built)
        os.mkdir(self._home)
        os.mkdir(self._path)
        for folder in (programs, os.path.join(self._tree, "tools")):
            for name in os.listdir(folder):
                path = os.path.join(folder, name)
                if name.startswith("orvelin") and os.path.isfile(path) and os.access(path, os.X_OK):
                    os.symlink(path, os.path.join(self._path, name))

    def run(self, script):
        """Runs lines of bash up to the first that fails."""
        return subprocess.run(
            ["bash", "-euo", "pipefail", "-c", script],
            cwd=self._tree,
            env=os.environ
            | {"HOME": self._home, "PATH": self._path + os.pathsep + os.environ["PATH"]},
            stdin=subprocess.DEVNULL,
            capture_output=True,
            text=True,
            timeout=SECONDS,
            check=False,
        )

    def faults(self, text):
        """Runs a block. When it has prompts, only the lines behind them are commands, and the
        others are what they print."""
        lines = text.split("\n")
        prompts = any(line.startswith("$ ") for line in lines)
        commands, expected = lines, []
        if prompts:
            commands = [line[2:] for line in lines if line.startswith("$ ")]
            expected = [line for line in lines if not line.startswith("$ ")]
        run = self.run("\n".join(commands))
        if run.returncode != 0:
            yield f"ended with {run.returncode}\n{run.stdout}{run.stderr}"
        elif expected and (fault := unlike(["...", *expected, "..."], run.stdout.split("\n"))):
            yield fault
