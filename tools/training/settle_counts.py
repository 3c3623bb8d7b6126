"""Takes out of the counts of a training what is not the same each time: settle_counts.py FOLDER.

Beside how often code ran, g++ 12 keeps for each copy of a block of memory which bits its addresses had,
to guess how they are aligned. Where memory lies is a matter of the system and of the names of folders:
without them g++ guesses nothing.
"""

import pathlib
import struct
import sys

MAGIC = b"adcg"
# Magic, version, stamp and checksum.
HEADER = 16
RECORD = struct.Struct("<Ii")
# The counters are kinds in this order: arcs, intervals, powers, values, calls, averages, addresses.
ADDRESSES = 0x01A10000 + (6 << 17)


def settled(counts):
    """The counts of a file with zeros in place of addresses."""
    if not counts.startswith(MAGIC):
        raise SystemExit("settle_counts.py: these are not the counts of g++ for this processor")
    result = bytearray(counts)
    place = HEADER
    while place + RECORD.size <= len(counts):
        tag, length = RECORD.unpack_from(counts, place)
        place += RECORD.size
        # Counters that are all zero are told by their number alone, below zero.
        size = max(length, 0)
        if tag == ADDRESSES:
            result[place : place + size] = bytes(size)
        place += size
    return bytes(result)


def main():
    for file in sorted(pathlib.Path(sys.argv[1]).rglob("*.gcda")):
        file.write_bytes(settled(file.read_bytes()))


if __name__ == "__main__":
    main()
