"""The board, with pieces of simple shapes: no font has to have them."""

from explain_lib.drawing import add

BASE = "M10 33.5 Q10 30 13.5 30 H26.5 Q30 30 30 33.5 Z"
# Shapes on a square of 40 by 40, and strokes on them.
SHAPES = {
    "P": [
        "M20 8 A5 5 0 0 1 23 17 C24 21 25.5 24 26 28.5 H14 C14.5 24 16 21 17 17 A5 5 0 0 1 20 8Z"
    ],
    "R": ["M11 8 H15.2 V11 H18 V8 H22 V11 H24.8 V8 H29 V15.5 L25.8 18 V28.5 H14.2 V18 L11 15.5 Z"],
    "N": [
        "M14 28.5 C13.5 23 18 20.5 18.5 17.5 C16 18.6 14.5 21.4 12 20.9 C9.8 20.4 9.8 17.6 11.2 16 "
        "L15.8 10.6 L16.6 6.4 L20.2 9 C27.6 10 29.6 18 27.6 28.5 Z"
    ],
    "B": [
        "M20 4.6 A2.4 2.4 0 0 1 21.4 9 C27.4 13.6 28 21.4 24.4 28.5 H15.6 "
        "C12 21.4 12.6 13.6 18.6 9 A2.4 2.4 0 0 1 20 4.6 Z"
    ],
    "Q": [
        "M9.4 10.4 L14.6 18.4 L16 8.4 L20 17 L24 8.4 L25.4 18.4 L30.6 10.4 L27 28.5 H13 Z",
        "M9.4 7.6 a1.9 1.9 0 1 1 -.01 0 Z M16 5.4 a1.9 1.9 0 1 1 -.01 0 Z "
        "M24 5.4 a1.9 1.9 0 1 1 -.01 0 Z M30.6 7.6 a1.9 1.9 0 1 1 -.01 0 Z",
    ],
    "K": [
        "M18.6 4 H21.4 V6.4 H23.8 V9.2 H21.4 V13 C27 10.6 32.6 15 29.6 20.6 L26.4 28.5 H13.6 "
        "L10.4 20.6 C7.4 15 13 10.6 18.6 13 V9.2 H16.2 V6.4 H18.6 Z"
    ],
}
STROKES = {"N": "M17.6 12.6 v1.6", "B": "M20 13 v7 M17 16.4 h6", "K": "M14.6 24.6 H25.4"}
PIECES = {
    True: {"fill": "#fbfaf7", "stroke": "#24262b"},
    False: {"fill": "#33363d", "stroke": "#0c0d0f"},
}
MARKS = {True: "#24262b", False: "#e4e2dc"}


def _piece(parent, piece, left, top, size):
    white, kind = piece.isupper(), piece.upper()
    group = add(
        parent,
        "g",
        transform=f"translate({left:g} {top:g}) scale({size / 40:g})",
        stroke_width=1.3,
        stroke_linejoin="round",
        **PIECES[white],
    )
    for shape in [*SHAPES[kind], BASE]:
        add(group, "path", d=shape)
    if kind in STROKES:
        add(group, "path", d=STROKES[kind], stroke=MARKS[white], fill="none", stroke_width=1.5)


def piece_symbols(parent):
    """The pieces as symbols `piece-K` and so on, for pages whose script draws boards."""
    for kind in SHAPES:
        for piece in (kind, kind.lower()):
            symbol = add(parent, "symbol", id=f"piece-{piece}", viewBox="0 0 40 40")
            _piece(symbol, piece, 0, 0, 40)


def draw_board(parent, board, side, left, top, size):
    """A board of 8 squares of the size, letters and numbers outside, and who is to move."""
    for square, piece in enumerate(board):
        file, rank = square % 8, square // 8
        x, y = left + file * size, top + (7 - rank) * size
        kind = "dark" if (file + rank) % 2 == 0 else "light"
        add(parent, "rect", kind=kind, x=x, y=y, width=size, height=size)
        if piece != ".":
            _piece(parent, piece, x, y, size)
    for index in range(8):
        middle = (index + 0.5) * size
        add(
            parent,
            "text",
            "abcdefgh"[index],
            kind="faint small middle-anchor",
            x=left + middle,
            y=top + 8 * size + 14,
        )
        y = top + 8 * size - middle + 4
        add(parent, "text", str(index + 1), kind="faint small right", x=left - 6, y=y)
    y = top + (7.5 if side == "w" else 0.5) * size
    mark = add(
        parent,
        "circle",
        cx=left + 8 * size + 11,
        cy=y,
        r=5.5,
        stroke_width=1.3,
        **PIECES[side == "w"],
    )
    add(mark, "title", ("White" if side == "w" else "Black") + " to move")
