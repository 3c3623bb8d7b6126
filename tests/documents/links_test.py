"""What the documents link to and name exists."""

import glob
import os
import re
import unittest

from project import DOCUMENTS, ROOT

FOLDERS = "bench|cmake|docs|fuzz|openings|packaging|src|suites|tests|tools"
PATH_SPAN = re.compile(rf"^(?:{FOLDERS})/[\w./*+-]*$")
# It is installed where the README of the sources lies, and links from there.
INSTALLED = "packaging/README.md"


class LinksTest(unittest.TestCase):
    def test_links_lead_somewhere(self):
        count = 0
        for name, document in DOCUMENTS.items():
            for link in document.links:
                if re.match(r"^[a-z]+:", link):
                    continue
                count += 1
                with self.subTest(document=name, link=link):
                    self.hold_link(name, document, link)
        self.assertGreater(count, 10)

    def hold_link(self, name, document, link):
        path, _, anchor = link.partition("#")
        if path:
            folder = "" if name == INSTALLED else os.path.dirname(name)
            path = os.path.normpath(os.path.join(folder, path))
            self.assertTrue(os.path.exists(os.path.join(ROOT, path)), "does not exist")
            document = DOCUMENTS.get(path)
        if anchor and document is not None:
            self.assertIn(anchor, document.anchors)

    def test_named_files_exist(self):
        count = 0
        for name, document in DOCUMENTS.items():
            for span in document.spans:
                if not PATH_SPAN.match(span):
                    continue
                count += 1
                with self.subTest(document=name, path=span):
                    self.assertTrue(glob.glob(os.path.join(ROOT, span)), "does not exist")
        self.assertGreater(count, 40)

    def test_every_document_is_linked(self):
        """Who begins with the README finds all others."""
        found, waiting = set(), ["README.md"]
        while waiting:
            name = waiting.pop()
            if name in found:
                continue
            found.add(name)
            for link in DOCUMENTS[name].links:
                path = os.path.join(os.path.dirname(name), link.partition("#")[0])
                if os.path.normpath(path) in DOCUMENTS:
                    waiting.append(os.path.normpath(path))
        docs = {name for name in DOCUMENTS if os.path.dirname(name) in ("", "docs")}
        self.assertEqual(docs - found, set())

    def test_installed_documents_link_to_installed_ones(self):
        with open(os.path.join(ROOT, "cmake", "orvelin_install.cmake"), encoding="utf-8") as file:
            pages = re.search(r"^set\(orvelin_pages (.*)\)$", file.read(), re.MULTILINE)
        names = [f"docs/{page}.md" for page in pages.group(1).split()]
        self.assertGreater(len(names), 5)
        installed = {*names, "NEWS.md", "README.md"}
        for name in (*names, "NEWS.md", INSTALLED):
            folder = "docs" if name in names else ""
            for link in DOCUMENTS[name].links:
                path = os.path.normpath(os.path.join(folder, link.partition("#")[0]))
                with self.subTest(document=name, link=link):
                    if path.endswith(".md"):
                        self.assertIn(path, installed)


if __name__ == "__main__":
    unittest.main()
