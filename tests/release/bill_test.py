"""The bill of materials: well formed, and true of what lies beside it."""

import hashlib
import os
import re
import unittest

from release import FOLDER, bill, files_within, packages

IDENTIFIER = r"SPDXRef-[A-Za-z0-9.-]+"
GLIBC = "LGPL-2.1-or-later"
RUNTIME = "GPL-3.0-or-later WITH GCC-exception-3.1"
LLVM = "Apache-2.0 WITH LLVM-exception"
MINGW = {"ZPL-2.1", "LicenseRef-public-domain", "LicenseRef-Lucent", "BSD-3-Clause", RUNTIME}
NSIS = {"Zlib", "CPL-1.0 WITH LZMA-exception"}
SQLITE = "blessing"
# By the ends of their names: the licences of what is linked into each package, beside MIT.
LICENCES = {
    "-source.tar.gz": set(),
    "_amd64.deb": {"BSD-3-Clause", SQLITE, "CC0-1.0", LLVM},
    "_arm64.deb": {"BSD-3-Clause", "CC0-1.0", LLVM},
    "-linux-x86_64.tar.gz": {"BSD-3-Clause", SQLITE, GLIBC, RUNTIME, "CC0-1.0", LLVM},
    "-linux-aarch64.tar.gz": {"BSD-3-Clause", GLIBC, RUNTIME},
    "-windows-x64.zip": MINGW,
    "-windows-x64-setup.exe": MINGW | NSIS,
    "-container.tar": {GLIBC, RUNTIME},
    ".tgz": {"CC0-1.0", LLVM},
}


class BillTest(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        cls.bill = bill()
        cls.shipped = {
            package["packageFileName"]: package
            for package in cls.bill["packages"]
            if "packageFileName" in package
        }

    def known_licences(self):
        """All that may stand in an expression."""
        own = {entry["licenseId"] for entry in self.bill["hasExtractedLicensingInfos"]}
        return {"MIT"}.union(own, *LICENCES.values())

    def assert_licence(self, expression):
        self.assertLessEqual(set(expression.split(" AND ")), self.known_licences(), expression)

    def test_the_document_has_all_that_the_standard_asks_for(self):
        self.assertEqual(self.bill["spdxVersion"], "SPDX-2.3")
        self.assertEqual(self.bill["dataLicense"], "CC0-1.0")
        self.assertEqual(self.bill["SPDXID"], "SPDXRef-DOCUMENT")
        self.assertTrue(self.bill["name"])
        self.assertRegex(self.bill["documentNamespace"], r"^https://[^#]+$")
        creation = self.bill["creationInfo"]
        self.assertRegex(creation["created"], r"^\d{4}-\d\d-\d\dT\d\d:\d\d:\d\dZ$")
        for creator in creation["creators"]:
            self.assertRegex(creator, r"^(Tool|Organization|Person): .+")
        for entry in self.bill["hasExtractedLicensingInfos"]:
            self.assertRegex(entry["licenseId"], r"^LicenseRef-[A-Za-z0-9.-]+$")
            self.assertTrue(entry["extractedText"])

    def test_every_identifier_is_there_once_and_every_relation_finds_both(self):
        elements = [*self.bill["packages"], *self.bill["files"]]
        known = [element["SPDXID"] for element in elements]
        for identifier in known:
            self.assertRegex(identifier, f"^{IDENTIFIER}$")
        self.assertEqual(len(known), len(set(known)))
        reached = {"SPDXRef-DOCUMENT"}
        for relation in self.bill["relationships"]:
            self.assertIn(relation["relationshipType"], ("DESCRIBES", "CONTAINS", "STATIC_LINK", "DYNAMIC_LINK"))
            self.assertIn(relation["spdxElementId"], {"SPDXRef-DOCUMENT", *known})
            reached.add(relation["relatedSpdxElement"])
        self.assertEqual(reached, {"SPDXRef-DOCUMENT", *known})

    def test_packages_and_files_have_all_that_the_standard_asks_for(self):
        for package in self.bill["packages"]:
            for field in ("name", "downloadLocation", "copyrightText", "licenseDeclared"):
                self.assertTrue(package[field], package)
            self.assert_licence(package["licenseConcluded"])
            self.assertEqual("packageVerificationCode" in package, package["filesAnalyzed"])
        for file in self.bill["files"]:
            self.assertRegex(file["fileName"], r"^\./[^/]")
            self.assertIn("SHA1", [entry["algorithm"] for entry in file["checksums"]])
            self.assertTrue(file["copyrightText"])
            self.assert_licence(file["licenseConcluded"])

    def test_the_shipped_packages_are_all_there_with_their_sums(self):
        self.assertEqual(sorted(self.shipped), packages())
        for name, package in self.shipped.items():
            with open(os.path.join(FOLDER, name), "rb") as file:
                content = file.read()
            for entry in package["checksums"]:
                digest = hashlib.new(entry["algorithm"], content).hexdigest()
                self.assertEqual(entry["checksumValue"], digest, name)

    def test_each_package_tells_the_licences_of_what_is_in_it(self):
        for end, expected in LICENCES.items():
            (package,) = (package for name, package in self.shipped.items() if name.endswith(end))
            told = set(package["licenseConcluded"].split(" AND "))
            self.assertEqual(told, {"MIT"} | expected, end)

    def test_every_file_within_a_package_is_told(self):
        related = {}
        for relation in self.bill["relationships"]:
            if relation["relationshipType"] == "CONTAINS":
                related.setdefault(relation["spdxElementId"], set()).add(relation["relatedSpdxElement"])
        files = {file["SPDXID"]: file for file in self.bill["files"]}
        for end in LICENCES:
            (package,) = (package for name, package in self.shipped.items() if name.endswith(end))
            told = {files[identifier]["fileName"] for identifier in related[package["SPDXID"]]}
            within = files_within(end)
            self.assertEqual(told, {f"./{name}" for name in within}, end)
            sums = sorted(hashlib.sha1(content).hexdigest() for content in within.values())
            self.assertEqual(
                package["packageVerificationCode"]["packageVerificationCodeValue"],
                hashlib.sha1("".join(sums).encode()).hexdigest(),
            )

    def test_what_a_program_shows_of_a_library_is_told_of_it(self):
        # Texts that a library leaves in each program that it is linked into.
        shown = {
            SQLITE: rb"sqlite_autoindex_",
            GLIBC: rb"GLIBC_TUNABLES",
            "ZPL-2.1": rb"Mingw-w64 runtime failure",
            "Zlib": rb"Nullsoft",
        }
        for end in LICENCES:
            told = {
                file["fileName"]: file["licenseConcluded"].split(" AND ")
                for file in self.bill["files"]
                if re.match(rf"SPDXRef-File-.*{re.escape(end.replace('_', '-'))}-\d+$", file["SPDXID"])
            }
            for name, content in files_within(end).items():
                if content.startswith((b"\x7fELF", b"MZ")):
                    for licence, text in shown.items():
                        self.assertEqual(text in content, licence in told[f"./{name}"], f"{end} {name} {licence}")


if __name__ == "__main__":
    unittest.main()
