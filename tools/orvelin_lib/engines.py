"""Which engine a tool runs: the one that is named, or the one that lies nearest."""

import errno
import os
import subprocess

from orvelin_lib.process import program
from orvelin_lib.tool_main import ToolError

ENGINE_HELP = "a command, found as a shell finds it (default: Orvelin, built if it has to be)"


def checked(command):
    """The command with its program where it lies; an error when that is none."""
    path = program(command[0])
    if not os.path.exists(path):
        code = errno.ENOENT
    elif os.path.isdir(path):
        code = errno.EISDIR
    elif not os.access(path, os.X_OK):
        code = errno.EACCES
    else:
        return (path, *command[1:])
    raise ToolError(f"cannot run {command[0]}: {os.strerror(code)}")


def default_engine(folder):
    """The engine beside the tools in their folder, else what the repository around them builds."""
    beside = os.path.join(folder, "orvelin")
    if os.path.isfile(beside) and os.access(beside, os.X_OK):
        return beside
    root = os.path.dirname(folder)
    if not os.path.exists(os.path.join(root, "run")):
        raise ToolError(f"no engine found: there is no {beside}; name one with --engine")
    return built_engine(root)


def built_engine(root):
    """The engine that ./run builds and becomes, wherever that is."""
    run = os.path.join(root, "run")
    engine = None
    try:
        with subprocess.Popen(
            [run], stdin=subprocess.PIPE, stdout=subprocess.PIPE, bufsize=0
        ) as process:
            process.stdin.write(b"uci\n")
            if any(line.strip() == b"uciok" for line in process.stdout):
                engine = os.readlink(f"/proc/{process.pid}/exe")
            process.stdin.write(b"quit\n")
            process.stdout.read()
    except OSError:
        # It cannot be started, or ended before it was told anything.
        pass
    if engine is None:
        raise ToolError(f"{run} could not build the engine")
    return engine
