"""The picture of one position: the board, the total, the phase, and the terms as bars."""

from explain_lib.board_picture import draw_board
from explain_lib.drawing import add, picture
from explain_lib.evaluation import NO_MATE_TITLE
from explain_lib.figures import signed, typeset, wrapped

WIDTH, MARGIN = 960, 24
SQUARE = 36
COLUMN = 356  # where the names begin
BARS_LEFT, BARS_RIGHT = 560, 884
ROW, BAR = 20, 12
HEAD = 62
# Terms that count less than this, in pawns, are named but not drawn.
LEAST_PAWNS = 0.005


class _Scale:
    """Pawns to places on the axis; the bars of both sides share one scale."""

    def __init__(self, evaluation, parts):
        self._evaluation = evaluation
        reach = [0.1]
        for part in parts:
            low, high = _ends(part)
            reach += [abs(evaluation.pawns(low)), abs(evaluation.pawns(high))]
        self._reach = max(reach)
        self.zero = (BARS_LEFT + BARS_RIGHT) / 2

    def place(self, units):
        pawns = self._evaluation.pawns(units)
        return self.zero + pawns / self._reach * (BARS_RIGHT - BARS_LEFT) / 2

    def ticks(self):
        """(pawns, place) of the rules on both sides."""
        step = next(s for s in (0.05, 0.1, 0.25, 0.5, 1, 2, 5, 10, 20, 50) if self._reach / s < 4)
        half = (BARS_RIGHT - BARS_LEFT) / 2
        count = int(self._reach / step)
        return [
            (i * step, self.zero + i * step / self._reach * half) for i in range(-count, count + 1)
        ]


def _ends(part):
    """From where to where the two halves of a term reach, laid end to end or to both sides."""
    halves = (part.middle_part, part.end_part)
    return sum(min(half, 0) for half in halves), sum(max(half, 0) for half in halves)


def _segment(root, kind, scale, start, end, y):
    left, right = sorted((scale.place(start), scale.place(end)))
    if right - left >= 0.3:
        add(root, "rect", kind=kind, x=left, y=y, width=right - left, height=BAR)


def _bar(root, part, scale, y):
    middle, end = part.middle_part, part.end_part
    _segment(root, "white" if middle > 0 else "black", scale, 0, middle, y)
    together = middle * end > 0
    start = middle if together else 0
    _segment(root, ("white" if end > 0 else "black") + "-end", scale, start, start + end, y)
    if not together and min(abs(middle), abs(end)) > 0.05 * abs(part.net):
        x = scale.place(part.net)
        add(root, "line", kind="net", x1=x, y1=y - 2, x2=x, y2=y + BAR + 2, stroke_width=2)


def _legend(root):
    """What the two tints are."""
    y = 34
    for kinds, text, x in (
        (("white", "black"), "middle game", BARS_LEFT + 40),
        (("white-end", "black-end"), "end game", BARS_LEFT + 188),
    ):
        for index, kind in enumerate(kinds):
            add(root, "rect", kind=kind, x=x + 11 * index, y=y - 9, width=10, height=10)
        add(root, "text", text, kind="faint small", x=x + 28, y=y)


def _axis(root, scale, bottom):
    top = HEAD + 6
    for pawns, x in scale.ticks():
        kind, width = ("axis", 1.2) if pawns == 0 else ("rule", 1)
        add(root, "line", kind=kind, x1=x, y1=top, x2=x, y2=bottom, stroke_width=width)
        text = typeset(f"{pawns:+g}") if pawns else "0"
        add(root, "text", text, kind="faint tiny middle-anchor", x=x, y=bottom + 13)
    add(root, "text", "◀ Black", kind="black strong right", x=scale.zero - 8, y=HEAD)
    add(root, "text", "White ▶", kind="white strong", x=scale.zero + 8, y=HEAD)
    add(root, "text", "pawns", kind="faint small right", x=WIDTH - MARGIN, y=HEAD)


def _phase(root, share, top):
    """The blend of middle game and end game as one bar."""
    left, width = MARGIN + 16, 8 * SQUARE
    shown = min(max(share, 0), 1)
    add(root, "rect", kind="end", x=left, y=top, width=width, height=10)
    add(root, "rect", kind="middle", x=left, y=top, width=float(width * shown), height=10)
    percent = round(100 * share)
    text = f"middle game {percent} %"
    add(root, "text", text, kind="faint small", x=left, y=top + 24)
    text = f"end game {100 - percent} %"
    add(root, "text", text, kind="faint small right", x=left + width, y=top + 24)


def _total(root, evaluation, left, y):
    """The score; where no side can give mate it decides nothing."""
    if evaluation.is_drawn:
        add(root, "text", NO_MATE_TITLE, kind="ink strong", x=left, y=y)
        return
    pawns = evaluation.pawns(evaluation.total)
    kind = "white" if pawns > 0 else "black" if pawns < 0 else "ink"
    right = left + 8 * SQUARE
    add(root, "text", typeset(signed(pawns)), kind=f"large {kind}", x=left, y=y)
    add(root, "text", "pawns for White", kind="ink right", x=right, y=y - 12)
    text = typeset(signed(evaluation.total, 0)) + " units of the engine"
    add(root, "text", text, kind="faint small right", x=right, y=y + 3)


def _left_column(root, evaluation, board, side, notes):
    """The board and what is said below it; where that ends."""
    left = MARGIN + 16
    draw_board(root, board, side, left, 30, SQUARE)
    y = 30 + 8 * SQUARE + 62
    _total(root, evaluation, left, y)
    _phase(root, evaluation.middle_share, y + 22)
    y += 72
    for note, alarm in notes:
        for line in wrapped(typeset(note), 53):
            add(root, "text", line, kind=("alarm" if alarm else "faint") + " small", x=left, y=y)
            y += 15
        y += 4
    return y


def position_picture(evaluation, board, side, fen):
    """The whole picture."""
    parts = evaluation.biggest_first()
    drawn = [part for part in parts if abs(evaluation.pawns(part.net)) >= LEAST_PAWNS]
    rest = [part.name for part in parts if part not in drawn]
    notes = [(note, False) for note in evaluation.notes()]
    notes.append((evaluation.check_text(), not evaluation.agrees))
    bottom = HEAD + 12 + len(drawn) * ROW
    lines = wrapped(f"Less than {LEAST_PAWNS} pawns: " + ", ".join(rest), 104) if rest else []
    scratch = picture(1, 1, "")
    left_bottom = _left_column(scratch, evaluation, board, side, notes)
    height = max(bottom + 66 + 14 * len(lines), left_bottom + 20)
    root = picture(WIDTH, height, f"Evaluation of {fen}")
    _left_column(root, evaluation, board, side, notes)
    scale = _Scale(evaluation, drawn)
    _legend(root)
    _axis(root, scale, bottom)
    for index, part in enumerate(drawn):
        y = HEAD + 12 + index * ROW
        add(root, "text", part.name, kind="ink", x=COLUMN, y=y + 10.5)
        _bar(root, part, scale, y)
        text = typeset(signed(evaluation.pawns(part.net)))
        add(root, "text", text, kind="ink right", x=WIDTH - MARGIN, y=y + 10.5)
    y = bottom + 36
    text = typeset(signed(evaluation.pawns(evaluation.sum)))
    add(root, "text", "sum of all 47 terms", kind="ink strong", x=COLUMN, y=y)
    add(root, "text", text, kind="ink strong right", x=WIDTH - MARGIN, y=y)
    for index, line in enumerate(lines):
        add(root, "text", line, kind="faint small", x=COLUMN, y=y + 22 + 14 * index)
    return root
