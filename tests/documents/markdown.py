"""The Markdown that the project's documents are written in: code blocks, headings, links, tables.

Python brings no reader of Markdown, and those of Debian are not seen by every Python. What the
documents use is little, and what is not understood shows as a failing test."""

import os
import re
import textwrap
from dataclasses import dataclass

FENCE = re.compile(r"^\s*(```|~~~)")
HEADING = re.compile(r"^#{1,6}\s+(.*?)\s*#*$")
LIST_ITEM = re.compile(r"^\s*([-*+]|\d+[.)])\s")
CODE_SPAN = re.compile(r"(?<!`)`([^`]+)`(?!`)")
LINK = re.compile(r"!?\[[^\]]*\]\(\s*<?([^)>\s]+)>?[^)]*\)")
SOURCE = re.compile(r"""\b(?:src|href)=["']([^"']+)["']""")
COMMENT = re.compile(r"<!--.*?-->", re.DOTALL)
CELL_BORDER = re.compile(r"(?<!\\)\|")
# An indented block needs four blanks, and within a list so many that it is no text of an item.
INDENT, INDENT_IN_LIST = 4, 6


@dataclass(frozen=True)
class Block:
    """A code block, without its indentation."""

    line: int
    text: str

    @property
    def first_line(self):
        return self.text.split("\n", 1)[0].rstrip()


class Document:
    """One Markdown file, taken apart."""

    def __init__(self, text):
        # As many lines as before, so that the numbers stay right.
        text = COMMENT.sub(lambda comment: "\n" * comment.group().count("\n"), text)
        self.blocks = []
        self.prose = []
        self._split(text.split("\n"))
        flat = "\n".join(self.prose)
        self.spans = [" ".join(span.replace("\\|", "|").split()) for span in spans_of(flat)]
        without_code = CODE_SPAN.sub("", flat)
        self.links = LINK.findall(without_code) + SOURCE.findall(without_code)
        self.headings = [m.group(1) for line in self.prose if (m := HEADING.match(line))]

    @property
    def anchors(self):
        """The names of the headings, as they are linked to."""
        return {slug(heading) for heading in self.headings}

    def tables(self):
        """Each table as a list of rows, the head first."""
        rows = []
        for line in [*self.prose, ""]:
            if line.startswith("|"):
                cells = CELL_BORDER.split(line.strip().strip("|"))
                rows.append([cell.strip() for cell in cells])
            elif rows:
                yield [rows[0], *rows[2:]]
                rows = []

    def table(self, *head):
        """The table whose head begins with these words."""
        for rows in self.tables():
            if rows[0][: len(head)] == list(head):
                return rows[1:]
        raise LookupError(f"no table {head}")

    def _split(self, lines):
        number, in_list, after_blank = 0, False, True
        while number < len(lines):
            line = lines[number]
            end = self._block_end(lines, number, in_list, after_blank)
            if end > number:
                self._add_block(lines, number, end)
                number, after_blank = end, True
                continue
            if LIST_ITEM.match(line):
                in_list = True
            elif line and not line[0].isspace():
                in_list = in_list and not after_blank
            self.prose.append(line)
            after_blank = not line.strip()
            number += 1

    @staticmethod
    def _block_end(lines, number, in_list, after_blank):
        """The line behind the code block that begins here; the line itself when none does."""
        if fence := FENCE.match(lines[number]):
            for end in range(number + 1, len(lines)):
                if lines[end].strip() == fence.group(1):
                    return end + 1
            raise ValueError(f"line {number + 1}: the block does not end")
        indent = " " * (INDENT_IN_LIST if in_list else INDENT)
        if not after_blank or not lines[number].startswith(indent) or not lines[number].strip():
            return number
        end = number
        while end < len(lines) and (lines[end].startswith(indent) or not lines[end].strip()):
            end += 1
        return end

    def _add_block(self, lines, number, end):
        body = lines[number:end]
        if FENCE.match(body[0]):
            body = body[1:-1]
        self.blocks.append(Block(number + 1, textwrap.dedent("\n".join(body)).strip("\n")))
        self.prose.append("")


def spans_of(prose):
    """The code spans, paragraph by paragraph, so that a lost backquote does no harm further on."""
    for paragraph in re.split(r"\n\s*\n", prose):
        yield from CODE_SPAN.findall(paragraph)


def slug(heading):
    """The name under which a heading is linked to."""
    words = re.sub(r"[^\w\- ]", "", heading.replace("`", "").lower())
    return words.strip().replace(" ", "-")


def read_all(root):
    """All documents under the root, by their path from there."""
    documents = {}
    for folder, folders, files in os.walk(root):
        folders[:] = sorted(f for f in folders if f != "build" and not f.startswith("."))
        for name in sorted(files):
            if name.endswith(".md"):
                path = os.path.join(folder, name)
                with open(path, encoding="utf-8") as file:
                    documents[os.path.relpath(path, root)] = Document(file.read())
    return documents
