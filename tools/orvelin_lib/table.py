"""Tables of text that are also Markdown, so that they can be pasted into the documents, and the
figures in them."""


def table(head, rows):
    """The first column to the left, all others to the right."""
    cells = [[str(cell) for cell in row] for row in (head, *rows)]
    widths = [max(len(row[column]) for row in cells) for column in range(len(head))]

    def line(row):
        first, *others = zip(row, widths)
        return (
            "| "
            + " | ".join([first[0].ljust(first[1]), *(cell.rjust(width) for cell, width in others)])
            + " |"
        )

    rule = "|" + "|".join(
        "-" * (width + 1) + ("-" if column == 0 else ":") for column, width in enumerate(widths)
    )
    return "\n".join([line(cells[0]), rule + "|", *(line(row) for row in cells[1:])])


def milliseconds(seconds):
    return f"{seconds * 1000:.1f}"


def mebibytes(kibibytes):
    return f"{kibibytes / 1024:.1f}"


def thousands(rate):
    """A rate in thousands."""
    return f"{rate / 1000:.0f}"


def counted(number, noun):
    """The number with the right form of a noun."""
    return f"{number} {noun}" if number == 1 else f"{number} {noun}s"
