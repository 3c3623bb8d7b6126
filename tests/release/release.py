"""Where the release that is tested lies, and the files within what is in it."""

import json
import os

from release_lib.contents import contents

FOLDER = os.environ["RELEASE_FOLDER"]
# The same, made once more.
OTHER = os.environ["RELEASE_OTHER"]
SOURCE = os.environ["RELEASE_SOURCE"]


def names(end=""):
    return sorted(name for name in os.listdir(FOLDER) if name.endswith(end))


def path(end):
    """The one file that ends in this way."""
    (name,) = names(end)
    return os.path.join(FOLDER, name)


def packages():
    """What is given away, without what tells of it."""
    return [name for name in names() if not name.endswith((".spdx.json", "SHA256SUMS"))]


def files_within(end):
    return dict(contents(path(end)))


def bill():
    with open(path(".spdx.json"), encoding="utf-8") as file:
        return json.load(file)
