"""The container: small, and its engine answers what comes on the input."""

import json
import os
import subprocess
import tarfile
import tempfile
import unittest

from release import files_within, path

LARGEST = 8_000_000


class ContainerTest(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        cls.path = path("-container.tar")
        with tarfile.open(cls.path) as archive:
            def read(name):
                return json.load(archive.extractfile(name))

            (entry,) = read("index.json")["manifests"]
            manifest = read("blobs/" + entry["digest"].replace(":", "/"))
            cls.image = read("blobs/" + manifest["config"]["digest"].replace(":", "/"))
        cls.settings = cls.image["config"]

    def test_it_is_small_and_has_nothing_but_the_engine(self):
        files = files_within("-container.tar")
        self.assertEqual(set(files), {"orvelin-play", "Orvelin.bin", "LICENSE"})
        self.assertLess(sum(map(len, files.values())), LARGEST)
        self.assertLess(os.path.getsize(self.path), LARGEST)

    def test_it_tells_what_it_is(self):
        labels = self.settings["Labels"]
        version = os.path.basename(self.path).removeprefix("orvelin-").removesuffix("-container.tar")
        self.assertEqual(labels["org.opencontainers.image.version"], version)
        self.assertEqual(self.settings["Entrypoint"], ["/orvelin-play"])
        self.assertEqual(self.settings["User"], "65534:65534")
        self.assertEqual((self.image["os"], self.image["architecture"]), ("linux", "amd64"))

    def test_its_engine_answers_what_comes_on_the_input(self):
        asked = "setoption name OwnBook value true\ngo depth 1\nisready\n"
        with tempfile.TemporaryDirectory() as place:
            def buildah(*words, **more):
                storage = ["--root", f"{place}/storage", "--runroot", f"{place}/run", "--storage-driver", "vfs"]
                environment = {**os.environ, "TMPDIR": place}
                return subprocess.run(
                    ["buildah", *storage, *words],
                    capture_output=True, text=True, timeout=300, check=True, env=environment, **more
                ).stdout

            name = buildah("from", "--quiet", f"oci-archive:{self.path}").strip()
            entry = self.settings["Entrypoint"]
            said = buildah("run", "--isolation", "chroot", name, "--", *entry, input=asked)
            self.assertIn("info string book move\n", said)
            self.assertIn("readyok\n", said)
            said = buildah("run", "--isolation", "chroot", name, "--", *entry, "bench")
            self.assertIn("Nodes searched: 2030223\n", said)
            buildah("rm", name)


if __name__ == "__main__":
    unittest.main()
