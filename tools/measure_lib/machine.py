"""What the measurements need of the machine: packages, a build for profiling, memory."""

import os
import subprocess
import sys

from orvelin_lib.tool_main import ToolError


def install(tools, packages):
    """Installs those Debian packages that are missing; by setup.sh, as the scripts do."""
    script = '. "$1/setup.sh"; shift; install_packages "$@"'
    command = ["bash", "-c", script, "bash", tools, *packages]
    if subprocess.run(command, stdout=sys.stderr, check=False).returncode != 0:
        raise ToolError("could not install: " + " ".join(packages))


def profiling_engine(tools):
    """The engine as ./run builds it, but with the lines of the source in it."""
    root = os.path.dirname(tools)
    build = os.path.join(root, "build", "instructions")
    install(tools, ["cmake", "ninja-build", "g++"])
    configure = ["cmake", "-S", root, "-B", build, "-G", "Ninja", "-DCMAKE_BUILD_TYPE=Release"]
    for command in (
        [*configure, "-DCMAKE_CXX_FLAGS=-g"],
        ["cmake", "--build", build, "--target", "orvelin"],
    ):
        if subprocess.run(command, stdout=sys.stderr, check=False).returncode != 0:
            raise ToolError(f"could not build in {build}")
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
