"""Where a tool finds the engine that it is not told."""

import os
import subprocess


class MissingProgram(Exception):
    """Something could not be installed or built."""


def built_engine(root):
    """The engine that ./run builds and becomes, wherever that is."""
    with subprocess.Popen(
        [os.path.join(root, "run")], stdin=subprocess.PIPE, stdout=subprocess.PIPE, bufsize=0
    ) as process:
        engine = None
        try:
            process.stdin.write(b"uci\n")
            if any(line.strip() == b"uciok" for line in process.stdout):
                engine = os.readlink(f"/proc/{process.pid}/exe")
            process.stdin.write(b"quit\n")
            process.stdout.read()
        except OSError:
            # It ended before it was told anything.
            pass
    if engine is None:
        raise MissingProgram("./run could not build the engine")
    return engine
