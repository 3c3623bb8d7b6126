"""What the Debian package holds and says of itself."""

import os
import tempfile
import unittest

from support import DISCOVERED, PROGRAMS, SCRIPTS, SOURCE, PackageTest, readelf, run, the_only


def changelog_field(name):
    """What the last entry of the package's changelog says."""
    changelog = os.path.join(SOURCE, "packaging/debian/changelog")
    return run("dpkg-parsechangelog", "-l", changelog, "-S", name).strip()


class DebianPackageTest(PackageTest):
    @classmethod
    def setUpClass(cls):
        cls.place = tempfile.TemporaryDirectory()
        cls.addClassCleanup(cls.place.cleanup)
        cls.package = the_only("orvelin_*_amd64.deb")
        cls.root = os.path.join(cls.place.name, "root")
        run("dpkg-deb", "--extract", cls.package, cls.root)

    def field(self, name):
        return run("dpkg-deb", "--field", self.package, name).strip()

    def path(self, name):
        return os.path.join(self.root, name)

    def test_lintian_has_nothing_to_say(self):
        # Not even of little weight, such as an override without need.
        found = run("lintian", "--display-info", "--fail-on=none", "--allow-root", self.package)
        self.assertEqual([line for line in found.splitlines() if not line.startswith("N:")], [])

    def test_the_fields(self):
        self.assertEqual(self.field("Section"), "games")
        self.assertEqual(self.field("Architecture"), "amd64")
        self.assertEqual(self.field("Recommends"), "python3")
        self.assertEqual(self.field("Suggests"), "xboard, pychess, parallel, www-browser")
        self.assertRegex(self.field("Maintainer"), r"^.+ <.+@.+>$")
        needed = {word.split()[0] for word in self.field("Depends").split(", ")}
        self.assertEqual(needed, {"libc6", "libgcc-s1", "libstdc++6"})

    def test_version_changelog_and_handshake_are_of_the_same_release(self):
        version = self.field("Version")
        self.assertEqual(changelog_field("Version"), version)
        self.assertEqual(os.path.basename(self.package), f"orvelin_{version}_amd64.deb")
        for engine in ("orvelin", "orvelin-play"):
            said = run(self.path(f"usr/games/{engine}"), input="uci\nquit\n")
            self.assertIn(f"id name Orvelin {version.split('-')[0]}\n", said)

    def test_the_publisher_is_the_same_in_the_changelog(self):
        self.assertEqual(changelog_field("Maintainer"), self.field("Maintainer"))

    def test_the_files_lie_where_debian_wants_them(self):
        names = ["games/orvelin.files/Orvelin.bin", *DISCOVERED]
        names += [f"games/{name}" for name in PROGRAMS + SCRIPTS]
        names += [f"share/man/man6/{name}.6.gz" for name in PROGRAMS + SCRIPTS]
        names += ["share/doc/orvelin/copyright", "share/doc/orvelin/changelog.Debian.gz"]
        for name in names:
            self.assertTrue(os.path.isfile(self.path(f"usr/{name}")), name)
        self.assertEqual(os.listdir(self.root), ["usr"])
        for name, text in DISCOVERED.items():
            with open(self.path(f"usr/{name}"), "rb") as file:
                self.assertEqual(file.read(), text)
        self.assert_links_hold(self.root)
        self.assert_document_links_hold(self.path("usr/share/doc/orvelin"))

    def test_the_board_is_served(self):
        self.assert_board_is_served(self.path("usr/games/orvelin-board"))
        with open(self.path("usr/share/orvelin/orvelin-board"), "rb") as file:
            self.assertEqual(file.readline(), b"#!/usr/bin/python3\n")

    def test_the_programs_are_hardened_and_stripped(self):
        for program in PROGRAMS:
            with self.subTest(program=program):
                file = self.path(f"usr/games/{program}")
                self.assertIn("GNU_RELRO", readelf("--program-headers", file))
                self.assertIn("INTERP", readelf("--program-headers", file))
                dynamic = readelf("--dynamic", file)
                self.assertIn("BIND_NOW", dynamic)
                self.assertRegex(dynamic, r"FLAGS_1.*NOW PIE")
                self.assertIn("DYN (Position-Independent", readelf("--file-header", file))
                self.assertIn("__stack_chk_fail@GLIBC", readelf("--dyn-syms", file))
                self.assert_stripped(file)

    def test_owner_and_time_of_the_files_do_not_depend_on_the_build(self):
        lines = run("dpkg-deb", "--contents", self.package).splitlines()
        self.assertEqual({line.split()[1] for line in lines}, {"root/root"})
        self.assertEqual(len({tuple(line.split()[3:5]) for line in lines}), 1)


if __name__ == "__main__":
    unittest.main()
