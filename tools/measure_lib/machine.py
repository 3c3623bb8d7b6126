"""What the tools need of the machine: packages, the engine that was built, memory."""

import os
import subprocess
import sys


class MissingProgram(Exception):
    """Something could not be installed or built."""


def install(root, packages):
    """Installs those Debian packages that are missing; by setup.sh, as the scripts do."""
    script = '. "$1/tools/setup.sh"; shift; install_packages "$@"'
    command = ["bash", "-c", script, "bash", root, *packages]
    if subprocess.run(command, stdout=sys.stderr, check=False).returncode != 0:
        raise MissingProgram("could not install: " + " ".join(packages))


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


def profiling_engine(root):
    """The engine as ./run builds it, but with the lines of the source in it."""
    build = os.path.join(root, "build", "instructions")
    install(root, ["cmake", "ninja-build", "g++"])
    configure = ["cmake", "-S", root, "-B", build, "-G", "Ninja", "-DCMAKE_BUILD_TYPE=Release"]
    for command in (
        [*configure, "-DCMAKE_CXX_FLAGS=-g"],
        ["cmake", "--build", build, "--target", "orvelin"],
    ):
        if subprocess.run(command, stdout=sys.stderr, check=False).returncode != 0:
            raise MissingProgram(f"could not build in {build}")
    return os.path.join(build, "orvelin")


def available_mebibytes():
    """Memory that programs can still have."""
    with open("/proc/meminfo", encoding="ascii") as file:
        for line in file:
            if line.startswith("MemAvailable:"):
                return int(line.split()[1]) // 1024
    return 0


def description():
    """Processor, number of cores and load, for the head of a report."""
    model = "processor unknown"
    with open("/proc/cpuinfo", encoding="utf-8") as file:
        for line in file:
            if line.startswith("model name"):
                model = line.split(":", 1)[1].strip()
                break
    load = " ".join(f"{number:.1f}" for number in os.getloadavg())
    return f"{model}, {os.cpu_count()} cores, load {load}"
