"""The log of a soak run: its head holds the settings."""

import dataclasses

from orvelin_lib.journal import Journal
from orvelin_lib.tool_main import ToolError
from soak_lib.runner import Settings


def create(name, settings):
    """A new log; UsageError when there is one already."""
    return Journal.create(name, dataclasses.asdict(settings))


def resume(name):
    """(journal, settings, entries) of a log."""
    journal, head, entries = Journal.resume(name)
    try:
        commands = tuple(tuple(words) for words in head["commands"])
        lists = {"commands": commands, "controls": tuple(head["controls"])}
        return journal, Settings(**{**head, **lists}), entries
    except (KeyError, TypeError) as error:
        journal.close()
        raise ToolError(f"{name} has other settings: {error}") from None
