"""The bill of materials of a release: SPDX 2.3 as JSON.

python3 -m release_lib.bill FOLDER VERSION    writes orvelin-VERSION.spdx.json into the folder
"""

import hashlib
import json
import os
import re
import sys
import time
from urllib.parse import quote

from orvelin_lib.files import write_file
from release_lib.components import NSIS, OTHER_LICENCES, OWN_LICENCE, SYSTEM_LIBRARIES, is_program, linked
from release_lib.contents import contents, needed

OWN_COPYRIGHT = "Copyright 2026 the Orvelin authors"
NAMESPACE = "https://orvelin.example.org/spdx"
# What tells of the packages and is none.
NOT_PACKAGES = (".spdx.json", "SHA256SUMS")


def _digest(kind, content):
    return hashlib.new(kind, content).hexdigest()


def _identifier(*words):
    return "SPDXRef-" + re.sub(r"[^A-Za-z0-9.-]+", "-", "-".join(words))


def _and(licences):
    """All of these together; each once."""
    words = dict.fromkeys(word for licence in licences for word in licence.split(" AND "))
    return " AND ".join(words)


def _relation(one, kind, other):
    return {"spdxElementId": one, "relationshipType": kind, "relatedSpdxElement": other}


def _library(identifier, name, licence, owner):
    return {
        "SPDXID": identifier,
        "name": name,
        "downloadLocation": "NOASSERTION",
        "filesAnalyzed": False,
        "licenseConcluded": licence,
        "licenseDeclared": licence,
        "copyrightText": owner,
    }


class Bill:
    """The document while it grows."""

    def __init__(self, folder, version):
        self._folder = folder
        self._version = version
        self._packages = []
        self._files = []
        self._relations = []
        self._components = {}

    def document(self, seconds):
        """The whole of it, for the files in the folder."""
        names = [name for name in sorted(os.listdir(self._folder)) if not name.endswith(NOT_PACKAGES)]
        for name in names:
            self._add_package(name)
        self._packages += self._components.values()
        told = "".join(package["checksums"][0]["checksumValue"] for package in self._packages if "checksums" in package)
        name = f"orvelin-{self._version}"
        return {
            "spdxVersion": "SPDX-2.3",
            "dataLicense": "CC0-1.0",
            "SPDXID": "SPDXRef-DOCUMENT",
            "name": name,
            "documentNamespace": f"{NAMESPACE}/{name}-{_digest('sha256', told.encode())}",
            "creationInfo": {
                "created": time.strftime("%Y-%m-%dT%H:%M:%SZ", time.gmtime(seconds)),
                "creators": ["Organization: the Orvelin authors", "Tool: tools/make-release"],
            },
            "hasExtractedLicensingInfos": [
                {"licenseId": licence, "name": licence.removeprefix("LicenseRef-"), "extractedText": text}
                for licence, text in OTHER_LICENCES.items()
            ],
            "packages": self._packages,
            "files": self._files,
            "relationships": self._relations,
        }

    def _component(self, component):
        """The identifier of a component, which stands in the list once it is asked for."""
        identifier = _identifier("Library", component.name)
        if identifier not in self._components:
            version = component.version()
            place = f"pkg:deb/debian/{quote(component.package)}@{quote(version)}?distro=bookworm"
            self._components[identifier] = {
                **_library(identifier, component.name, component.licence, component.copyright),
                "versionInfo": version,
                "externalRefs": [
                    {
                        "referenceCategory": "PACKAGE-MANAGER",
                        "referenceType": "purl",
                        "referenceLocator": place,
                    }
                ],
            }
        return identifier

    def _system_library(self, name):
        """The same of a library that Debian's packages need, in whatever version is there."""
        identifier = _identifier("System", name)
        self._components[identifier] = _library(
            identifier, name, SYSTEM_LIBRARIES[name], "NOASSERTION"
        )
        return identifier

    def _add_package(self, name):
        path = os.path.join(self._folder, name)
        with open(path, "rb") as file:
            content = file.read()
        identifier = _identifier("Package", name)
        files = contents(path)
        licences = [OWN_LICENCE]
        libraries = {}
        for number, (inner, inside) in enumerate(files):
            parts = linked(inner, inside)
            libraries.update(dict.fromkeys(parts))
            self._add_file(identifier, f"{name}-{number}", inner, inside, parts)
        if NSIS in libraries:
            # The installer has packed what the zip has.
            libraries.update(dict.fromkeys(self._of_windows()))
        licences += [component.licence for component in libraries]
        sums = sorted(_digest("sha1", inside) for _, inside in files)
        self._packages.append(
            {
                "SPDXID": identifier,
                "name": "orvelin",
                "versionInfo": self._version,
                "packageFileName": name,
                "supplier": "Organization: the Orvelin authors",
                "downloadLocation": "NOASSERTION",
                "filesAnalyzed": True,
                "packageVerificationCode": {
                    "packageVerificationCodeValue": _digest("sha1", "".join(sums).encode())
                },
                "checksums": [
                    {"algorithm": "SHA256", "checksumValue": _digest("sha256", content)},
                    {"algorithm": "SHA1", "checksumValue": _digest("sha1", content)},
                ],
                "licenseConcluded": _and(licences),
                "licenseInfoFromFiles": sorted(set(" AND ".join(licences).split(" AND "))),
                "licenseDeclared": OWN_LICENCE,
                "copyrightText": OWN_COPYRIGHT,
            }
        )
        self._relations.append(_relation("SPDXRef-DOCUMENT", "DESCRIBES", identifier))
        for component in libraries:
            self._relations.append(_relation(identifier, "STATIC_LINK", self._component(component)))
        for library in needed(path):
            self._relations.append(_relation(identifier, "DYNAMIC_LINK", self._system_library(library)))

    def _of_windows(self):
        found = []
        for name in sorted(os.listdir(self._folder)):
            if name.endswith("-windows-x64.zip"):
                for inner, inside in contents(os.path.join(self._folder, name)):
                    found += linked(inner, inside)
        return found

    def _add_file(self, package, number, name, content, parts):
        identifier = _identifier("File", number)
        licence = _and([OWN_LICENCE] + [component.licence for component in parts])
        self._files.append(
            {
                "SPDXID": identifier,
                "fileName": "./" + name,
                "fileTypes": ["BINARY" if is_program(content) else "OTHER"],
                "checksums": [
                    {"algorithm": "SHA1", "checksumValue": _digest("sha1", content)},
                    {"algorithm": "SHA256", "checksumValue": _digest("sha256", content)},
                ],
                "licenseConcluded": licence,
                "licenseInfoInFiles": licence.split(" AND "),
                "copyrightText": OWN_COPYRIGHT,
            }
        )
        self._relations.append(_relation(package, "CONTAINS", identifier))


def main(folder, version):
    """Writes the bill of the packages in a folder."""
    document = Bill(folder, version).document(int(os.environ["SOURCE_DATE_EPOCH"]))
    text = json.dumps(document, indent=1, ensure_ascii=True) + "\n"
    write_file(os.path.join(folder, f"orvelin-{version}.spdx.json"), text)


if __name__ == "__main__":
    main(*sys.argv[1:])
