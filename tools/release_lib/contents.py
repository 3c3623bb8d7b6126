"""The files within what is given away."""

import io
import json
import re
import subprocess
import tarfile
import zipfile


def _of_tar(file):
    with tarfile.open(fileobj=file, mode="r:*") as archive:
        for member in archive:
            if member.isfile():
                yield member.name.removeprefix("./"), archive.extractfile(member).read()


def _of_image(path):
    """Those of all layers of an OCI archive."""
    with tarfile.open(path) as archive:
        def read(digest):
            return archive.extractfile("blobs/" + digest.replace(":", "/")).read()

        index = json.load(archive.extractfile("index.json"))
        for entry in index["manifests"]:
            for layer in json.loads(read(entry["digest"]))["layers"]:
                yield from _of_tar(io.BytesIO(read(layer["digest"])))


def contents(path):
    """(name, bytes) of all files in a package, in the order of the names. An installer is itself its
    only file: those within are what the zip beside it has."""
    if path.endswith(".deb"):
        files = subprocess.run(["dpkg-deb", "--fsys-tarfile", path], capture_output=True, check=True).stdout
        found = _of_tar(io.BytesIO(files))
    elif path.endswith("-container.tar"):
        found = _of_image(path)
    elif re.search(r"\.(tar\.gz|tgz)$", path):
        with open(path, "rb") as file:
            return sorted(_of_tar(file))
    elif path.endswith(".zip"):
        with zipfile.ZipFile(path) as archive:
            return sorted((name, archive.read(name)) for name in archive.namelist() if not name.endswith("/"))
    else:
        with open(path, "rb") as file:
            return [(re.sub(r".*/", "", path), file.read())]
    return sorted(found)


def needed(path):
    """The names of the libraries that a package of Debian needs; others need none."""
    if not path.endswith(".deb"):
        return []
    told = subprocess.run(["dpkg-deb", "--field", path, "Depends"], capture_output=True, text=True, check=True)
    return [name for name in re.findall(r"(?:^|, )([^ ,\n]+)", told.stdout) if name.startswith("lib")]
