"""The processes of this machine, as far as the user may look at them."""

import contextlib
import os


def _with(file_name):
    """(process, bytes of this file of its folder) of all of them."""
    for name in filter(str.isdigit, os.listdir("/proc")):
        with contextlib.suppress(OSError), open(f"/proc/{name}/{file_name}", "rb") as file:
            yield int(name), file.read()


def _is_same(process, link, path):
    with contextlib.suppress(OSError):
        return os.path.samefile(f"/proc/{process}/{link}", path)
    return False


def running(program, *words):
    """Those that run a program, with these words somewhere in their command line."""
    return [
        process
        for process, line in _with("cmdline")
        if all(word.encode() in line for word in words) and _is_same(process, "exe", program)
    ]


def with_variables(**variables):
    """Those that were started with these variables in their environment."""
    wanted = {f"{name}={value}".encode() for name, value in variables.items()}
    return [process for process, text in _with("environ") if wanted <= set(text.split(b"\0"))]


def working_in(folder, process):
    return _is_same(process, "cwd", folder)


def parent_of(process):
    """0 when the process is gone."""
    with contextlib.suppress(OSError), open(f"/proc/{process}/stat", encoding="ascii") as file:
        return int(file.read().rpartition(")")[2].split()[1])
    return 0
