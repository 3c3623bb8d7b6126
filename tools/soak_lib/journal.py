"""The log of a run: JSON, one line for the settings and one for each game."""

import dataclasses
import json

from soak_lib.runner import Settings


class Journal:
    """Appends entries to the log, so that a run can be taken up again."""

    def __init__(self, name, mode):
        self._file = open(name, mode, encoding="utf-8")

    @staticmethod
    def create(name, settings):
        """A new log; FileExistsError when there is one already."""
        journal = Journal(name, "x")
        journal.write({"kind": "run", **dataclasses.asdict(settings)})
        return journal

    @staticmethod
    def resume(name):
        """(journal, settings, entries) of a log; ValueError when it is none."""
        with open(name, encoding="utf-8") as file:
            text = file.read()
        whole = text[: text.rfind("\n") + 1]
        head, *entries = [json.loads(line) for line in whole.splitlines()] or [{}]
        if head.pop("kind", None) != "run":
            raise ValueError(f"{name} is not the log of a run")
        try:
            lists = {key: tuple(head[key]) for key in ("engines", "controls")}
            settings = Settings(**{**head, **lists})
        except (KeyError, TypeError) as error:
            raise ValueError(f"{name} has other settings: {error}") from None
        journal = Journal(name, "r+")
        # A run that was killed may have left half a line.
        journal._file.truncate(len(whole.encode()))
        journal._file.seek(0, 2)
        return journal, settings, entries

    def write(self, entry):
        self._file.write(json.dumps(entry) + "\n")
        self._file.flush()

    def close(self):
        self._file.close()
