"""The log of a long run: JSON, one line for the head and one for each thing done."""

import json


class Journal:
    """Appends entries to the log, so that a run can be taken up again."""

    def __init__(self, name, mode):
        self._file = open(name, mode, encoding="utf-8")

    @staticmethod
    def create(name, head):
        """A new log; FileExistsError when there is one already."""
        journal = Journal(name, "x")
        journal.write({"kind": "run", **head})
        return journal

    @staticmethod
    def resume(name):
        """(journal, head, entries) of a log; ValueError when it is none."""
        with open(name, encoding="utf-8") as file:
            text = file.read()
        whole = text[: text.rfind("\n") + 1]
        head, *entries = [json.loads(line) for line in whole.splitlines()] or [{}]
        if not isinstance(head, dict) or head.pop("kind", None) != "run":
            raise ValueError(f"{name} is not the log of a run")
        journal = Journal(name, "r+")
        # A run that was killed may have left half a line.
        journal._file.truncate(len(whole.encode()))
        journal._file.seek(0, 2)
        return journal, head, entries

    def write(self, entry):
        self._file.write(json.dumps(entry) + "\n")
        self._file.flush()

    def close(self):
        self._file.close()
