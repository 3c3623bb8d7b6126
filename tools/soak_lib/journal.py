"""The log of a soak run: its head holds the settings."""

import dataclasses

from orvelin_lib.journal import Journal
from soak_lib.runner import Settings


def create(name, settings):
    """A new log; FileExistsError when there is one already."""
    return Journal.create(name, dataclasses.asdict(settings))


def resume(name):
    """(journal, settings, entries) of a log; ValueError when it is none."""
    journal, head, entries = Journal.resume(name)
    try:
        lists = {key: tuple(head[key]) for key in ("engines", "controls")}
        settings = Settings(**{**head, **lists})
    except (KeyError, TypeError) as error:
        journal.close()
        raise ValueError(f"{name} has other settings: {error}") from None
    return journal, settings, entries
