"""Puts the folder of the board together: its sources, and what is made of other sources."""

import hashlib
import json
import os
import re
import shutil
import sys
import xml.etree.ElementTree as ET

from board_lib.opening_names import NamesError, names_text
from explain_lib.board_picture import piece_symbols
from explain_lib.drawing import FONTS, SVG_NAMESPACE

PIECES = "<!-- pieces -->"
WORKER = "service_worker.js"


def _pieces():
    picture = ET.Element("svg", {"xmlns": SVG_NAMESPACE, "class": "symbols", "aria-hidden": "true"})
    piece_symbols(picture)
    return ET.tostring(picture, encoding="unicode")


def _read(*place):
    with open(os.path.join(*place), encoding="utf-8") as file:
        return file.read()


def _write(text, *place):
    with open(os.path.join(*place), "w", encoding="utf-8", newline="\n") as file:
        file.write(text)


def _put(text, place, put):
    """The text with `put` in the one place."""
    if text.count(place) != 1:
        raise SystemExit(f"make-board: {place} is there {text.count(place)} times")
    return text.replace(place, put)


def _page(root, version):
    page = _put(_read(root, "web", "board", "index.html"), PIECES, _pieces())
    return _put(page, "<body>", f'<body data-version="{version}">')


def _all_files(folder):
    found = []
    for place, _, names in os.walk(folder):
        found += [os.path.relpath(os.path.join(place, name), folder) for name in names]
    return sorted(name.replace(os.sep, "/") for name in found)


def _worker(root, output):
    """The service worker, with the files to keep and a version that tells their content."""
    names = _all_files(output)
    digest = hashlib.sha256()
    for name in names:
        with open(os.path.join(output, name), "rb") as file:
            digest.update(f"{name}\n".encode() + hashlib.sha256(file.read()).digest())
    kept = ["./"] + [name for name in names if name != "index.html"]
    text = _put(_read(root, "web", "board", WORKER), "const FILES = [];", f"const FILES = {json.dumps(kept)};")
    return _put(text, 'const VERSION = "";', f'const VERSION = "{digest.hexdigest()[:16]}";')


def assemble(root, output, binaries):
    """Makes the folder. `binaries` are {name in the folder: file}."""
    version = re.search(r"project\(orvelin VERSION ([\d.]+)", _read(root, "CMakeLists.txt")).group(1)
    web = os.path.join(root, "web")
    # Types and documents are for developers.
    unused = shutil.ignore_patterns("*.d.ts", "*.md", "example.html", "package.json")
    shutil.copytree(os.path.join(web, "board"), output, ignore=unused)
    shutil.copytree(os.path.join(web, "engine"), os.path.join(output, "engine"), ignore=unused)
    os.remove(os.path.join(output, WORKER))
    shutil.copyfile(os.path.join(root, "LICENSE"), os.path.join(output, "LICENSE.txt"))
    for name, file in binaries.items():
        shutil.copyfile(file, os.path.join(output, name))
    try:
        _write(names_text(os.path.join(root, "openings", "names.list")), output, "openings.json")
    except NamesError as error:
        raise SystemExit(f"make-board: openings/names.list, {error}") from None
    styles = _read(root, "tools", "explain_lib", "report.css").replace("FONTS", FONTS)
    _write(styles, output, "report.css")
    _write(_page(root, version), output, "index.html")
    _write(_worker(root, output), output, WORKER)


if __name__ == "__main__":
    assemble(sys.argv[1], sys.argv[2], dict(each.split("=", 1) for each in sys.argv[3:]))
