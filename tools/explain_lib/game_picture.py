"""The picture of a game: a column for each half-move, its moves and terms below."""

from explain_lib.drawing import add, picture
from explain_lib.figures import share_of_reach, signed, typeset, wrapped

WIDTH, MARGIN = 960, 24
LEFT = 62
# Half-moves in one row of the picture; a longer game goes on in the row below.
MOVES_A_ROW = 40
STEP = (WIDTH - MARGIN - LEFT) / MOVES_A_ROW
PLOT, LABELS = 150, 62
# The longest name of a term, turned.
TERMS = 156
RULES = (0, 0.5, 1, 2, 5, 10)
HEAD = 74


def _reach(steps):
    """The rule that all scores keep below, if there is one."""
    most = max(abs(step.score.pawns) for step in steps)
    return next((rule for rule in RULES[2:] if rule >= most), RULES[-1])


def _height(pawns, reach):
    return share_of_reach(pawns, reach) * PLOT / 2


def _rules(root, reach, top, right):
    middle = top + PLOT / 2
    for rule in RULES:
        if rule > reach:
            break
        for pawns in {rule, -rule}:
            y = middle - _height(pawns, reach)
            kind = "rule" if pawns else "axis"
            add(root, "line", kind=kind, x1=LEFT, y1=y, x2=right, y2=y, stroke_width=1)
            text = typeset(f"{pawns:+g}") if pawns else "0"
            add(root, "text", text, kind="faint tiny right", x=LEFT - 6, y=y + 3.5)


def _turned(root, text, kind, x, y):
    add(root, "text", text, kind=kind, transform=f"translate({x:.1f} {y:.1f}) rotate(-90)")


def _column(root, step, reach, left, top):
    middle = top + PLOT / 2
    height = _height(step.score.pawns, reach)
    kind = "white" if height >= 0 else "black"
    column = add(
        root,
        "rect",
        kind=kind,
        x=float(left + 2),
        y=float(middle - max(height, 0)),
        width=STEP - 4,
        height=float(max(abs(height), 0.8)),
    )
    change = typeset(signed(step.change))
    words = f"{step.number} {step.san}{step.mark}: {typeset(step.score.text)}; {step.term} {change}"
    add(column, "title", words)
    x = left + STEP / 2 + 3.5
    white = not step.number.endswith("...")
    san = step.san + step.mark
    label = f"{step.number} {san}" if white else san
    # Turned text ends where the plot begins, so that it stands by its column.
    kind = "ink small right" if white else "faint small right"
    _turned(root, label, kind, x, top + PLOT + 8)
    kind = "white" if step.change > 0 else "black"
    _turned(root, step.term, f"{kind} tiny right", x, top + PLOT + 8 + LABELS)


def _row_of_moves(root, steps, reach, top):
    right = LEFT + len(steps) * STEP
    _rules(root, reach, top, right)
    for index, step in enumerate(steps):
        _column(root, step, reach, LEFT + index * STEP, top)


def game_picture(title, steps, words, notes):
    """The whole picture."""
    row_height = PLOT + LABELS + TERMS + 24
    rows = [steps[i : i + MOVES_A_ROW] for i in range(0, len(steps), MOVES_A_ROW)]
    lines = [line for note in notes for line in wrapped(note, 150)]
    root = picture(WIDTH, HEAD + len(rows) * row_height + 15 * len(lines), title)
    add(root, "text", title, kind="ink strong", x=MARGIN, y=28)
    add(root, "text", words, kind="faint small", x=MARGIN, y=46)
    reach = _reach(steps)
    for index, row in enumerate(rows):
        _row_of_moves(root, row, reach, HEAD + index * row_height)
    y = HEAD + len(rows) * row_height
    for index, line in enumerate(lines):
        add(root, "text", line, kind="faint small", x=MARGIN, y=y + 15 * index)
    return root
