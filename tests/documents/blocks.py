"""The table of all code blocks, blocks.txt: how each is tested.

    [DOCUMENT]
    KIND    FIRST LINE OF THE BLOCK

run      run by bash in a copy of the tree; must end with 0. The built programs are at hand, and
         the files of given/, which stand for those of a reader
check    not run, as it takes long or changes the machine: programs and options must exist
session  lines for the engine and its answers, played again on the built engine
play     the same with orvelin-play
text     no command
"""

KINDS = ("run", "check", "session", "play", "text")


class Classification:
    """The rows of the table by document and first line."""

    def __init__(self, text):
        self._rows = {}
        self._used = set()
        document = None
        for number, line in enumerate(text.split("\n"), 1):
            if not line.strip() or line.startswith("#"):
                continue
            if line.startswith("["):
                document = line.strip().strip("[]")
                continue
            kind, first_line = line.split(maxsplit=1)
            key = document, first_line.rstrip()
            if kind not in KINDS or document is None or key in self._rows:
                raise ValueError(f"line {number}: {line}")
            self._rows[key] = kind

    def kind(self, document, block):
        """The kind of a block, None when nobody has told."""
        key = document, block.first_line
        self._used.add(key)
        return self._rows.get(key)

    def unused(self):
        """Rows that no block has asked for."""
        return sorted(set(self._rows) - self._used)


def of_kind(classification, documents, kind):
    """(document, block) of all blocks of this kind."""
    return [
        (name, block)
        for name, document in documents.items()
        for block in document.blocks
        if classification.kind(name, block) == kind
    ]
