"""Files as the tools read and write them: `-`, encodings, whole files only, and one set of words
for what goes wrong."""

import codecs
import contextlib
import os
import secrets
import stat
import sys

from orvelin_lib.tool_main import ToolError, print_whole

# The longest line that is read: no line of a position, a game or a log comes near it.
MOST_LINE = 1 << 20
MEBIBYTE = 1 << 20


def _as_latin_1(error):
    """What is not UTF-8 is Latin-1, in which each byte is a character."""
    if not isinstance(error, UnicodeDecodeError):
        raise error
    return error.object[error.start : error.end].decode("latin-1"), error.end


codecs.register_error("orvelin-latin-1", _as_latin_1)


def input_title(name):
    """How a message calls what is read."""
    return "standard input" if name == "-" else name


def read_error(name, reason):
    return ToolError(f"cannot read {input_title(name)}: {reason}")


def write_error(name, error):
    return ToolError(f"cannot write {name}: {error.strerror}")


def _open_input(name):
    if name != "-":
        source, closes = name, True
    elif sys.stdin is None:
        raise read_error(name, "it is closed")
    else:
        source, closes = sys.stdin.fileno(), False
    # Some programs begin a file with a byte order mark.
    return open(source, encoding="utf-8-sig", errors="orvelin-latin-1", closefd=closes)


def read_lines(name, console=None):
    """The lines of a file, or of standard input for `-`, one by one and without their ends: UTF-8,
    and Latin-1 where it is none. Reading shows its progress on the console."""
    title = input_title(name)
    size = place = number = 0
    try:
        with _open_input(name) as file:
            status = os.fstat(file.fileno())
            size = status.st_size if stat.S_ISREG(status.st_mode) else 0
            while line := file.readline(MOST_LINE + 1):
                number += 1
                place += len(line)
                if len(line) > MOST_LINE:
                    raise read_error(name, f"line {number} has more than {MOST_LINE} characters")
                if console is not None:
                    console.progress(lambda: f"reading {title}: {_how_far(place, size)}")
                yield line.rstrip("\n")
    except OSError as error:
        raise read_error(name, error.strerror) from None


def _how_far(place, size):
    if size:
        return f"{min(100 * place // size, 100)} %"
    return f"{place // MEBIBYTE} MiB"


class _Target:
    """Where a file is written: a file is replaced as a whole, anything else is written to."""

    def __init__(self, name):
        # Behind a symbolic link it is the file that is meant, not the link.
        self._path = os.path.realpath(name)
        try:
            self._mode = os.stat(self._path).st_mode
        except FileNotFoundError:
            self._mode = None
        self.is_special = self._mode is not None and not stat.S_ISREG(self._mode)
        # The rename would not ask.
        if self._mode is not None and not os.access(self._path, os.W_OK):
            raise PermissionError(13, os.strerror(13))

    def write(self, data):
        if self.is_special:
            with open(self._path, "wb") as file:
                file.write(data)
        else:
            self._replace(data)

    def _replace(self, data):
        with self.temporary() as (file, name):
            if self._mode is not None:
                os.chmod(name, stat.S_IMODE(self._mode))
            file.write(data)
            file.close()
            os.replace(name, self._path)

    @contextlib.contextmanager
    def temporary(self):
        """(file, name) of a new file in the same folder, which is removed if it is still there."""
        name = os.path.join(os.path.dirname(self._path), f".{secrets.token_hex(8)}.tmp")
        # Not a private file: the permissions are those of any new file of this user.
        file = open(name, "xb")
        try:
            yield file, name
        finally:
            with contextlib.suppress(OSError):
                file.close()
            with contextlib.suppress(FileNotFoundError):
                os.unlink(name)


def is_same_file(name, other):
    """Whether two names, neither of them standard input or output, are those of one file."""
    try:
        return "-" not in (name, other) and os.path.samefile(name, other)
    except OSError:
        return False


def write_file(name, text):
    """Writes a file whole or not at all: when it cannot be written the old one stays. `-` is
    standard output."""
    if name == "-":
        print_whole(text)
    else:
        write_bytes(name, text.encode("utf-8", "replace"))


def write_bytes(name, data):
    """Writes a file, as write_file does, of bytes."""
    try:
        _Target(name).write(data)
    except OSError as error:
        raise write_error(name, error) from None


def write_new_file(stem, end, text):
    """Writes a file under a name that nothing has yet: the stem, or the stem with the first free
    number from 2 on. Its name."""
    number = 1
    while True:
        name = stem + (f"-{number}" if number > 1 else "") + end
        try:
            # Whoever else writes there at this moment gets another name.
            with open(name, "xb"):
                pass
            break
        except FileExistsError:
            number += 1
        except OSError as error:
            raise write_error(name, error) from None
    try:
        write_file(name, text)
    except BaseException:
        with contextlib.suppress(OSError):
            os.unlink(name)
        raise
    return name


def check_writable(name):
    """An error now instead of one at the end of a long run."""
    if name == "-":
        return
    try:
        target = _Target(name)
        if target.is_special:
            with open(name, "ab"):
                pass
        else:
            with target.temporary():
                pass
    except OSError as error:
        raise write_error(name, error) from None


def make_folder(name):
    """A folder with all those above it, if it is not there yet."""
    try:
        os.makedirs(name, exist_ok=True)
    except OSError as error:
        raise write_error(name, error) from None
