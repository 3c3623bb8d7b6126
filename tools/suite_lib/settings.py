"""All that makes a run what it is."""

import dataclasses
from dataclasses import dataclass


@dataclass(frozen=True)
class Entrant:
    """An engine before it is started; options are pairs of name and value."""

    name: str
    command: tuple
    options: tuple = ()


@dataclass(frozen=True)
class Settings:
    """The engines, what a search is given, and how long an engine may take to answer."""

    entrants: tuple
    limit: str
    amount: int
    patience: float
    longest: float
    fresh: bool

    @property
    def search_seconds(self):
        """So long the answer of a search is waited for."""
        if self.limit == "movetime":
            return self.amount / 1000 + self.patience
        return self.longest

    def entrant(self, name):
        return next(entrant for entrant in self.entrants if entrant.name == name)

    def as_dict(self):
        """As JSON has it: the same settings give the same."""
        record = dataclasses.asdict(self)
        record["entrants"] = [
            {
                "name": entrant.name,
                "command": list(entrant.command),
                "options": [list(pair) for pair in entrant.options],
            }
            for entrant in self.entrants
        ]
        return record

    @staticmethod
    def from_dict(record):
        entrants = tuple(
            Entrant(
                entry["name"],
                tuple(entry["command"]),
                tuple((name, value) for name, value in entry["options"]),
            )
            for entry in record["entrants"]
        )
        return Settings(**{**record, "entrants": entrants})
