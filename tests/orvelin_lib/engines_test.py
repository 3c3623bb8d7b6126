"""Which engine a tool runs."""

import os
import shlex
import unittest

from orvelin_lib.engines import built_engine, checked, default_engine
from orvelin_lib.tool_main import ToolError
from scratch import ScratchTest

ENGINE = os.environ["ORVELIN_ENGINE"]


class EnginesTest(ScratchTest):
    def program(self, name, text):
        path = self.file(name)
        os.makedirs(os.path.dirname(path), exist_ok=True)
        self.file(name, f"#!/bin/sh\n{text}\n")
        os.chmod(path, 0o755)
        return path

    def test_what_run_becomes(self):
        self.program("run", f"exec {shlex.quote(ENGINE)}")
        self.assertEqual(built_engine(self.directory), os.path.realpath(ENGINE))

    def test_the_engine_beside_the_tools_goes_first(self):
        self.program("run", f"exec {shlex.quote(ENGINE)}")
        tools = self.file("tools")
        os.mkdir(tools)
        self.assertEqual(default_engine(tools), os.path.realpath(ENGINE))
        beside = self.program("tools/orvelin", "")
        self.assertEqual(default_engine(tools), beside)

    def test_no_engine(self):
        run, beside = self.file("run"), self.file("tools/orvelin")
        with self.assertRaisesRegex(ToolError, f"^no engine found: there is no {beside}; name "):
            default_engine(self.file("tools"))
        self.program("run", "exit 1")
        with self.assertRaisesRegex(ToolError, f"^{run} could not build the engine$"):
            built_engine(self.directory)

    def test_programs(self):
        self.assertEqual(checked((ENGINE, "-x")), (ENGINE, "-x"))
        self.assertEqual(os.path.basename(checked(("sh",))[0]), "sh")
        self.assertTrue(os.path.isabs(checked(("sh",))[0]))
        for name, reason in (
            ("no-such-engine", "No such file or directory"),
            (self.directory, "Is a directory"),
            (self.file("text", "text"), "Permission denied"),
        ):
            with self.assertRaises(ToolError) as refusal:
                checked((name,))
            self.assertEqual(str(refusal.exception), f"cannot run {name}: {reason}")


if __name__ == "__main__":
    unittest.main()
