"""The options that an engine tells of itself, and the values that they take."""

import re
from dataclasses import dataclass

LINE = re.compile(r"option name (?P<name>.+?) type (?P<kind>\w+)(?P<rest>.*)")
# The words of the rest of a line; a value goes on until the next of them.
REST = re.compile(r"(?:^|\s)(default|min|max|var)(?=\s|$)")


@dataclass(frozen=True)
class EngineOption:
    """An option as its line has it; bounds are None where the engine tells none."""

    name: str
    kind: str
    least: int | None = None
    most: int | None = None
    choices: tuple = ()

    @staticmethod
    def parse(line):
        """The option of a line; None when it is none."""
        match = LINE.fullmatch(line)
        if match is None:
            return None
        words = REST.split(match["rest"])
        values = [(word, text.strip()) for word, text in zip(words[1::2], words[2::2])]
        bounds = {word: int(text) for word, text in values if _is_whole(text)}
        choices = tuple(text for word, text in values if word == "var")
        return EngineOption(
            match["name"], match["kind"], bounds.get("min"), bounds.get("max"), choices
        )

    def problem(self, value):
        """What is wrong with a value, None when the engine takes it."""
        if self.kind == "check" and value not in ("true", "false"):
            return "is not true or false"
        if self.kind == "button" and value:
            return "is too much: a button has no value"
        if self.kind == "combo" and self.choices and not self._has(value):
            return f"is not one of {', '.join(self.choices)}"
        if self.kind == "spin":
            return self._spin_problem(value)
        return None

    def _has(self, value):
        # Engines may compare as they do names, without upper and lower case.
        return value.casefold() in map(str.casefold, self.choices)

    def _spin_problem(self, value):
        if not _is_whole(value):
            return "is not a whole number"
        if self.least is not None and int(value) < self.least:
            return f"is below {self.least}"
        if self.most is not None and int(value) > self.most:
            return f"is above {self.most}"
        return None

    def command(self, value):
        """The line that sets it."""
        return f"setoption name {self.name}" + (f" value {value}" if self.kind != "button" else "")


def _is_whole(text):
    return re.fullmatch(r"-?[0-9]{1,18}", text) is not None
