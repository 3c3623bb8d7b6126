"""Bars in a terminal, with blocks or with plain characters, with colour or without."""

import os
import shutil
from dataclasses import dataclass

from explain_lib.evaluation import NO_MATE_TITLE
from explain_lib.figures import share_of_reach, signed, wrapped
from explain_lib.terms import GROUPS, TERMS
from orvelin_lib.board import Position

# A half is the only part of a cell that has a mirror image.
BLOCKS = {"full": "█", "right_half": "▌", "left_half": "▐", "axis": "│", "line": "─"}
PLAIN = {"full": "#", "right_half": "", "left_half": "", "axis": "|", "line": "-"}
BLUE, ORANGE, BOLD, DIM, OFF = "\x1b[34m", "\x1b[33m", "\x1b[1m", "\x1b[2m", "\x1b[0m"
LEAST_WIDTH, MOST_WIDTH = 48, 140
# Terms that count less than this, in pawns, are named but not drawn.
LEAST_PAWNS = 0.005
# A bar of a game is no longer than for this score.
MOST_PAWNS = 10.0


@dataclass(frozen=True)
class Style:
    """What the terminal can show."""

    width: int
    signs: dict
    colour: bool

    @classmethod
    def of(cls, stream, plain):
        """The style of standard output, None when that is closed."""
        if stream is None:
            return cls(LEAST_WIDTH, PLAIN, False)
        try:
            "".join(BLOCKS.values()).encode(stream.encoding or "ascii")
        except (LookupError, UnicodeEncodeError):
            plain = True
        colour = stream.isatty() and not os.environ.get("NO_COLOR")
        colour = colour and os.environ.get("TERM") != "dumb"
        width = shutil.get_terminal_size((80, 24)).columns
        return cls(max(LEAST_WIDTH, min(width, MOST_WIDTH)), PLAIN if plain else BLOCKS, colour)

    def paint(self, code, text):
        return f"{code}{text}{OFF}" if self.colour and text.strip() else text

    def bar(self, value, greatest, cells):
        """A bar from the axis in the middle: to the right for White, to the left for Black."""
        length = min(abs(value) / greatest, 1) * cells if greatest else 0
        halves = round(length * 2) if self.signs["left_half"] else 2 * round(length)
        full = self.signs["full"] * (halves // 2)
        left = right = ""
        if value < 0:
            left = (self.signs["left_half"] if halves % 2 else "") + full
        else:
            right = full + (self.signs["right_half"] if halves % 2 else "")
        return (
            " " * (cells - len(left))
            + self.paint(ORANGE, left)
            + self.signs["axis"]
            + self.paint(BLUE, right)
            + " " * (cells - len(right))
        )


def board_lines(board, side):
    """The board as letters, the side to move marked."""
    lines = []
    for rank in range(7, -1, -1):
        pieces = " ".join(board[8 * rank : 8 * rank + 8])
        mark = {("w", 0): " <", ("b", 7): " <"}.get((side, rank), "")
        lines.append(f" {rank + 1}  {pieces}{mark}")
    return [*lines, "    a b c d e f g h"]


def _headline(evaluation):
    if evaluation.is_drawn:
        return NO_MATE_TITLE
    pawns = evaluation.pawns(evaluation.total)
    share = round(100 * evaluation.middle_share)
    return (
        f"For White {signed(pawns)} pawns ({signed(evaluation.total, 0)} units). "
        f"Phase: {share} % middle game, {100 - share} % end game."
    )


def explain(evaluation, position, style, show_all):
    """The board, the bars and the sum."""
    rows = [*board_lines(position.board, position.side), ""]
    rows += [*wrapped(_headline(evaluation), style.width), ""]
    parts = evaluation.biggest_first()
    drawn = [p for p in parts if show_all or abs(evaluation.pawns(p.net)) >= LEAST_PAWNS]
    # The halves of the phase are shown where there is room for them and for bars.
    wide = style.width >= 80
    name_width = max(len(name) for name in TERMS)
    head = " " * name_width + ("  mid game  end game" if wide else "") + "   pawns  "
    cells = max((style.width - len(head) - 1) // 2, 5)
    rows.append(style.paint(DIM, head + "Black".rjust(cells) + " " + "White"))
    greatest = max((abs(part.net) for part in drawn), default=0)
    for part in drawn:
        text = part.name.ljust(name_width)
        if wide:
            halves = (part.middle_part, part.end_part)
            text += "".join(f"{signed(evaluation.pawns(half)):>10}" for half in halves)
        text += f"{signed(evaluation.pawns(part.net)):>8}  "
        rows.append(text + style.bar(part.net, greatest, cells))
    pad = name_width + (20 if wide else 0)
    rows.append(" " * pad + " " + style.signs["line"] * 7)
    total = signed(evaluation.pawns(evaluation.sum))
    rows.append(style.paint(BOLD, f"{'sum':<{pad}}{total:>8}"))
    rest = [part.name for part in parts if part not in drawn]
    if rest:
        rows += ["", *wrapped(" ".join([f"Less than {LEAST_PAWNS} pawns:", *rest]), style.width)]
    rows.append("")
    for note in [*evaluation.notes(), evaluation.check_text()]:
        rows += wrapped(note, style.width)
    return "\n".join(row.rstrip() for row in rows) + "\n"


def follow(title, steps, notes, style):
    """The game: a row a move, with the term that changed most."""
    san_width = max(len(step.san + step.mark) for step in steps)
    name_width = max(len(step.term) for step in steps)
    head_width = 7 + san_width + 9
    tail_width = name_width + 8
    cells = max((style.width - head_width - tail_width - 3) // 2, 5)
    reach = min(max([1.0, *(abs(step.score.pawns) for step in steps)]), MOST_PAWNS)
    head = " " * head_width + "Black".rjust(cells) + " " + "White".ljust(cells)
    rows = [*wrapped(title, style.width), ""]
    rows.append(style.paint(DIM, head + "  changed most"))
    for step in steps:
        text = f"{step.number:>6} {step.san + step.mark:<{san_width}}{step.score.text:>8} "
        bar = style.bar(share_of_reach(step.score.pawns, reach), 1, cells)
        rows.append(f"{text}{bar}  {step.term:<{name_width}}{signed(step.change):>7}")
    for note in notes:
        rows += ["", *wrapped(note, style.width)]
    return "\n".join(row.rstrip() for row in rows) + "\n"


def lines_of(report, style):
    """The lines of a position with the groups of their leaves."""
    data = report.data()
    record = report.records[0]
    position = Position(record["fen"])
    rows = [*board_lines(position.board, position.side), ""]
    rows += wrapped(f"{report.words}.", style.width)
    if not data["lines"]:
        rows += ["", f"No line. For White {data['positions'][0]['score']} pawns."]
    for number, line in enumerate(data["lines"], 1):
        bound = "at least " if line["bound"] else ""
        words = f"{number}. {bound}{line['score']}, {line['chances']:.0f} % for White: "
        rows += ["", *wrapped(words + " ".join(line["san"]), style.width)]
        if line["groups"] is None:
            rows += wrapped("   " + line["why"], style.width)
            continue
        rows += wrapped(f"   leaf: {line['leafFen']}", style.width)
        greatest = max(abs(change) for _, change, _ in line["groups"])
        cells = max((style.width - 28) // 2, 5)
        for group, change, _ in line["groups"]:
            if abs(change) >= LEAST_PAWNS:
                text = f"   {GROUPS[group]:<15}{signed(change):>7}  "
                rows.append(text + style.bar(change, greatest, cells))
    return "\n".join(row.rstrip() for row in rows) + "\n"
