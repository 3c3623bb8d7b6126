"""The log of a long run: JSON, one line for the head and one for each thing done."""

import contextlib
import fcntl
import json
import os

from orvelin_lib.files import MOST_LINE, read_error, write_error
from orvelin_lib.tool_main import ToolError, UsageError


class Journal:
    """Appends entries to the log, so that a run can be taken up again. The file always consists of
    whole lines, but for the last one of a run that was killed while it wrote."""

    def __init__(self, name, file):
        self._name, self._file = name, file

    @staticmethod
    def create(name, head):
        """A new log; UsageError when there is one already."""
        try:
            file = open(name, "xb", buffering=0)
        except FileExistsError:
            raise UsageError(f"{name} exists: go on with --resume, or name another") from None
        except OSError as error:
            raise write_error(name, error) from None
        _lock(name, file)
        journal = Journal(name, file)
        try:
            journal.begin(head)
        except ToolError:
            journal.close()
            os.unlink(name)
            raise
        return journal

    @staticmethod
    def resume(name):
        """(journal, head, entries) of a log; the head is None where a run was killed before it had
        written its first line, which is then still to be written."""
        try:
            file = open(name, "r+b", buffering=0)
        except OSError as error:
            raise read_error(name, error.strerror) from None
        try:
            _lock(name, file)
            head, entries, end = (None, [], 0) if _is_begun(name) else _parted(name)
            # To have read the file has given the lock away.
            _lock(name, file)
            # A run that was killed may have left half a line.
            file.truncate(end)
            file.seek(end)
        except BaseException:
            file.close()
            raise
        return Journal(name, file), head, entries

    def begin(self, head):
        """Writes the first line."""
        self.write({"kind": "run", **head})

    def write(self, entry):
        data = json.dumps(entry).encode() + b"\n"
        begin = self._file.tell()
        try:
            written = self._file.write(data)
            # A full disk takes the beginning of a line, and fails only at its rest.
            while written < len(data):
                written += self._file.write(data[written:])
        except OSError as error:
            self._file.truncate(begin)
            self._file.seek(begin)
            raise write_error(self._name, error) from None

    def close(self):
        self._file.close()


def _lock(name, file):
    """Keeps others out until the process ends: two runs would mix their lines."""
    # Some file systems have no locks.
    with contextlib.suppress(OSError):
        try:
            fcntl.lockf(file, fcntl.LOCK_EX | fcntl.LOCK_NB)
        except (BlockingIOError, PermissionError):
            file.close()
            raise ToolError(f"another run is writing {name}") from None


def read_journal(name):
    """(head, entries) of a log that nobody goes on with."""
    head, entries, _ = _parted(name)
    return head, entries


def _is_begun(name):
    """True when there is no more than the beginning of a first line: nothing else is ever taken for
    a log."""
    start = b'{"kind": "run"'
    try:
        with open(name, "rb") as file:
            line = file.read(MOST_LINE)
    except OSError as error:
        raise read_error(name, error.strerror) from None
    return b"\n" not in line and (line.startswith(start) or start.startswith(line))


def _parted(name):
    """(head, entries, where the last whole line ends)."""
    records, end = _read(name)
    head, *entries = records or [{}]
    if not isinstance(head, dict) or head.pop("kind", None) != "run":
        raise ToolError(f"{name} is not the log of a run")
    return head, entries, end


def _read(name):
    """(records, where the last whole line ends)."""
    records, end = [], 0
    try:
        with open(name, "rb") as file:
            while (line := file.readline(MOST_LINE)).endswith(b"\n"):
                records.append(json.loads(line))
                end += len(line)
    except OSError as error:
        raise read_error(name, error.strerror) from None
    except (ValueError, RecursionError):
        raise ToolError(f"{name} is not the log of a run: line {len(records) + 1}") from None
    if len(line) == MOST_LINE:
        raise ToolError(f"{name} is not the log of a run: line {len(records) + 1}")
    return records, end
