"""What ./check runs in which order, what it builds beside, and how it ends: in a tree of its own,
where all that it starts only writes down that it was started."""

import os
import re
import shutil
import signal
import subprocess
import tempfile
import time
import unittest

ROOT = os.path.dirname(os.environ["MEASURE_TOOLS"])
TESTS_OF = "ctest --preset {} -j %d --repeat until-pass:3" % (len(os.sched_getaffinity(0)) + 1)
# Where a test takes longer, something is wrong.
PATIENCE = 120
# Each writes down its name and its words, how it was started and what is stuck beside it.
WORKER = """#!/usr/bin/env bash
name=$(basename "$0")
words="$name $*"
echo "begins $words" >>"$LOG"
[ "$(nice)" -gt "$NICE" ] || echo "normal $words" >>"$LOG"
[ -z "${ORVELIN_WHOLE_TESTS-}" ] || echo "whole $words" >>"$LOG"
for process in $(sed -n 's/^process //p' "$LOG"); do
    ! kill -0 "$process" 2>/dev/null || echo "beside $words" >>"$LOG"
done
if [ "$name" = "$WAITS" ]; then
    until grep -q "^$UNTIL" "$LOG"; do sleep 0.05; done
fi
[ "$words" != "$STUCK" ] || { echo "process $$" >>"$LOG"; exec sleep 1000; }
echo "ends $words" >>"$LOG"
[ "$words" != "$FAILS" ]
"""
# Only a little lower: on a machine that is busy what is told to be idle would not be run at all.
CHRT = """#!/usr/bin/env bash
[ "${*:1:3}" = "--idle --pid 0" ] && exec renice -n 1 -p "$4" >/dev/null
"""
PROGRAMS = ("cmake", "ctest", "git", "clang-format-16", "apt-get")
TOOLS = (
    "coverage",
    "fuzz",
    "check-arm64",
    "check-board",
    "check-cluster",
    "check-interfaces",
    "check-packages",
    "check-pages",
    "check-release",
    "check-wasm",
    "check-windows",
)


class CheckTest(unittest.TestCase):
    def setUp(self):
        place = tempfile.TemporaryDirectory()
        self.addCleanup(place.cleanup)
        self.tree = os.path.join(place.name, "tree")
        self.programs = os.path.join(place.name, "bin")
        self.log = os.path.join(place.name, "log")
        os.makedirs(os.path.join(self.tree, "tools"))
        os.mkdir(self.programs)
        for name in ("check", "tools/setup.sh", "tools/build-ahead"):
            shutil.copy(os.path.join(ROOT, name), os.path.join(self.tree, name))
        for name in PROGRAMS:
            self.write(os.path.join(self.programs, name), WORKER)
        for name in TOOLS:
            self.write(os.path.join(self.tree, "tools", name), WORKER)
        self.write(os.path.join(self.programs, "chrt"), CHRT)
        self.write(os.path.join(self.programs, "dpkg-query"), "#!/bin/sh\necho installed\n")

    @staticmethod
    def write(path, text):
        with open(path, "w", encoding="ascii") as file:
            file.write(text)
        os.chmod(path, 0o755)

    def start(self, *arguments, waits="check-interfaces", traced=False, **what):
        """./check in a session of its own; `what` tells which worker is stuck or fails, and for
        which line of the log the one that waits does so."""
        environment = {
            "PATH": f"{self.programs}:/usr/bin:/bin",
            "LOG": self.log,
            "NICE": str(os.nice(0)),
            "TMPDIR": self.programs,
        }
        for name in ("STUCK", "FAILS", "UNTIL"):
            environment[name] = what.get(name.lower(), "")
        environment["WAITS"] = waits if "until" in what else ""
        # Not by SHELLOPTS: all that is started would take over the job control of the script as well.
        shell = ["bash", "-x"] if traced else []
        return subprocess.Popen(
            [*shell, os.path.join(self.tree, "check"), *arguments],
            env=environment,
            stdin=subprocess.DEVNULL,
            stdout=subprocess.DEVNULL,
            stderr=subprocess.PIPE,
            text=True,
            start_new_session=True,
        )

    def run_check(self, *arguments, status=0, **what):
        """What it says."""
        with self.start(*arguments, **what) as process:
            errors = process.communicate(timeout=PATIENCE)[1]
        self.assertEqual(process.returncode, status, errors)
        return errors

    def logged(self, what=""):
        if not os.path.exists(self.log):
            return []
        with open(self.log, encoding="utf-8") as file:
            lines = file.read().splitlines()
        return [line.removeprefix(what) for line in lines if line.startswith(what)]

    def wait_for(self, condition):
        end = time.monotonic() + PATIENCE
        while not condition():
            self.assertLess(time.monotonic(), end, self.logged())
            time.sleep(0.02)

    def assert_order(self, *lines):
        logged = self.logged()
        places = [logged.index(line) for line in lines]
        self.assertEqual(places, sorted(places), logged)

    def assert_nothing_goes_on(self):
        for process in self.logged("process "):
            self.wait_for(lambda number=process: not os.path.exists(f"/proc/{number}"))

    def test_all_stages_are_run_in_their_order(self):
        errors = self.run_check()
        with open(os.path.join(self.tree, "check"), encoding="utf-8") as file:
            stages = re.search(r"\|\| stages=\((.*)\)", file.read()).group(1).split()
        told = re.findall(r"(?m)^orvelin: == (\S+) passed in ", errors)
        self.assertEqual(told, stages)
        self.assertIn("orvelin: all passed in ", errors.splitlines()[-1])
        self.assert_order(
            f"begins {TESTS_OF.format('check')}",
            "begins check-interfaces ",
            "begins check-cluster ",
            "begins check-pages ",
            "begins coverage --min-lines 97.5",
            "begins fuzz --seconds 6 --fresh",
            f"begins {TESTS_OF.format('tsan')}",
            "begins check-wasm ",
            "begins check-board ",
            "begins check-arm64 ",
            "begins check-windows ",
            "begins check-release ",
        )
        self.assertEqual(self.logged("whole "), [])

    def test_a_builder_is_started_for_all_stages(self):
        self.assertIn("+ start_builder", self.run_check(traced=True))

    def test_what_comes_later_is_built_beside_and_takes_no_time(self):
        # This stage waits long enough.
        self.run_check(until="ends cmake --build --preset windows")
        normal = self.logged("normal ")
        for part in ("coverage", "fuzz", "windows"):
            self.assertIn(f"cmake --build --preset {part}", self.logged("ends "))
            self.assertNotIn(f"cmake --build --preset {part}", normal)
        self.assertIn("cmake --build --preset tsan", normal)
        self.assertIn("cmake --build --preset check", normal)
        self.assertEqual(self.logged("begins ").count("cmake --build --preset check"), 1)
        self.assertNotIn("check-packages --make", normal)
        self.assertIn("check-packages --made", normal)

    def test_nobody_builds_what_a_stage_builds(self):
        stuck = "cmake --build --preset coverage"
        # The rest is gone on with.
        self.run_check(stuck=stuck, waits="coverage", until="begins cmake --build --preset fuzz")
        self.assertEqual(self.logged("begins ").count(stuck), 1)
        self.assertIn("check-pages ", self.logged("beside "))
        self.assertNotIn("coverage --min-lines 97.5", self.logged("beside "))
        self.assert_nothing_goes_on()

    def test_what_fails_beside_is_left_to_its_stage(self):
        windows = "ends cmake --build --preset windows"
        errors = self.run_check(fails="check-packages --make", until=windows)
        self.assertIn("== package passed", errors)
        self.assertIn("check-packages ", self.logged("ends "))

    def test_a_stage_that_fails_is_named_and_ends_all(self):
        stuck = "cmake --build --preset coverage"
        errors = self.run_check(status=1, fails="check-cluster ", stuck=stuck, until="process")
        self.assertEqual(
            errors.splitlines()[-2:],
            ["orvelin: == cluster", "orvelin: an analysis in shards does not get through on Slurm"],
        )
        self.assertNotIn("begins check-pages ", self.logged())
        self.assert_nothing_goes_on()

    def test_an_interruption_ends_both(self):
        for sent in (signal.SIGINT, signal.SIGTERM):
            with self.subTest(signal=sent):
                if os.path.exists(self.log):
                    os.remove(self.log)
                stuck = "cmake --build --preset coverage"
                with self.start(stuck=stuck, until="nothing") as process:
                    self.wait_for(lambda: self.logged("process "))
                    self.wait_for(lambda: "begins check-interfaces " in self.logged())
                    os.killpg(process.pid, sent)
                    process.communicate(timeout=PATIENCE)
                self.assertNotEqual(process.returncode, 0)
                self.assertNotIn("begins check-cluster ", self.logged())
                self.assert_nothing_goes_on()

    def test_the_whole_of_it(self):
        self.run_check("--whole", until="ends check-packages --make --whole")
        begun = self.logged("begins ")
        self.assertIn("fuzz --seconds 15 --fresh", begun)
        self.assertIn("check-packages --make --whole", begun)
        self.assertIn("check-release --whole", begun)
        self.assertIn("coverage --min-lines 97.5", self.logged("whole "))

    def test_stages_that_are_named_are_run_alone(self):
        # A builder might be ended before it leaves a trace of its own.
        self.assertNotIn("+ start_builder", self.run_check("pages", "package", traced=True))
        self.assertEqual(self.logged("begins "), ["check-pages ", "check-packages "])
        os.remove(self.log)
        self.run_check("--whole", "package", "fuzz")
        self.assertEqual(
            self.logged("begins "), ["check-packages --whole", "fuzz --seconds 15 --fresh"]
        )


if __name__ == "__main__":
    unittest.main()
