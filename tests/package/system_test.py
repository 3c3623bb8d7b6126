"""The Debian package in the life of a system: installed, upgraded, removed."""

import os
import tempfile
import unittest

from debian_system import new_system
from support import PackageTest, run, the_only


class SystemTest(PackageTest):
    def setUp(self):
        self.system = new_system()
        self.addCleanup(self.system.remove)
        self.package = the_only("orvelin_*_amd64.deb")
        self.version = run("dpkg-deb", "--field", self.package, "Version").strip()

    def older_package(self, folder):
        """The same package with a lower version and a file that the new one does not have."""
        tree = os.path.join(folder, "tree")
        run("dpkg-deb", "--raw-extract", self.package, tree)
        control = os.path.join(tree, "DEBIAN/control")
        with open(control, encoding="utf-8") as file:
            text = file.read()
        with open(control, "w", encoding="utf-8") as file:
            file.write(text.replace(f"Version: {self.version}\n", "Version: 0.1-1\n"))
        with open(os.path.join(tree, "usr/games/orvelin-old"), "w", encoding="ascii"):
            pass
        older = os.path.join(folder, "orvelin_0.1-1_amd64.deb")
        run("dpkg-deb", "--root-owner-group", "--build", tree, older)
        return older

    def test_the_engine_plays_and_nothing_is_left_after_it(self):
        before = self.system.files()
        self.system.install(self.package)
        self.assertEqual(self.system.status(), f"installed {self.version}")
        added = set(self.system.files()) - set(before)
        self.assertIn("usr/games/orvelin", added)
        book = os.path.join(self.system.root, "usr/games/orvelin.files/Orvelin.bin")
        self.assert_plays(*self.system.engine, book=book, folder=self.system.folder)
        self.system.purge()
        self.assertIsNone(self.system.status())
        self.assertEqual(self.system.leftovers(), [])
        after = self.system.files()
        both = before.keys() | after.keys()
        self.assertEqual([name for name in both if before.get(name) != after.get(name)], [])

    def test_an_upgrade_takes_the_old_files_away(self):
        with tempfile.TemporaryDirectory() as folder:
            self.system.install(self.older_package(folder))
        self.assertEqual(self.system.status(), "installed 0.1-1")
        self.assertIn("usr/games/orvelin-old", self.system.files())
        self.system.install(self.package)
        self.assertEqual(self.system.status(), f"installed {self.version}")
        self.assertNotIn("usr/games/orvelin-old", self.system.files())
        self.assertIn("usr/games/orvelin", self.system.files())


if __name__ == "__main__":
    unittest.main()
