"""The page around the picture of a position: one file without scripts, nothing is loaded."""

import xml.etree.ElementTree as ET

from explain_lib.drawing import FONTS, add
from explain_lib.evaluation import NO_MATE_TITLE
from explain_lib.figures import signed, typeset
from explain_lib.terms import TERMS

STYLE = f"""
:root {{ color-scheme: light dark; }}
body {{ margin: 2rem auto; max-width: 62rem; padding: 0 1rem; font: 16px/1.5 {FONTS};
  background: #ffffff; color: #1d2128; }}
h1 {{ font-size: 1.5rem; line-height: 1.25; margin: 0 0 .25rem; }}
p {{ margin: .25rem 0 1rem; }}
code {{ font-size: .875em; overflow-wrap: anywhere; }}
.picture {{ overflow-x: auto; margin: 1.5rem 0; }}
.picture svg {{ min-width: 40rem; max-width: 100%; height: auto; display: block; }}
.table {{ overflow-x: auto; }}
table {{ border-collapse: collapse; font-size: .875rem; font-variant-numeric: tabular-nums;
  width: 100%; }}
th, td {{ padding: .2rem .6rem; text-align: right; border-bottom: 1px solid #d5d9df; }}
th {{ font-weight: 600; vertical-align: bottom; }}
.name, .words {{ text-align: left; }}
.words {{ color: #5c6470; }}
.alarm {{ color: #b3261e; font-weight: 600; }}
@media (max-width: 40rem) {{
.words {{ display: none; }}
}}
@media (prefers-color-scheme: dark) {{
body {{ background: #16181c; color: #e6e8ec; }}
th, td {{ border-color: #3a4049; }}
.words {{ color: #9aa2ae; }}
.alarm {{ color: #ff8a80; }}
}}
"""


def _page(title):
    """(root, body) of a page that has a heading."""
    root = ET.Element("html", {"lang": "en"})
    head = add(root, "head")
    add(head, "meta", charset="utf-8")
    add(head, "meta", name="viewport", content="width=device-width, initial-scale=1")
    add(head, "title", title)
    add(head, "style", STYLE)
    body = add(root, "body")
    add(body, "h1", title)
    return root, body


def _table(body, heads):
    """The body of a table; heads are (text, class)."""
    table = add(add(body, "div", kind="table"), "table")
    row = add(add(table, "thead"), "tr")
    for text, kind in heads:
        add(row, "th", text, kind=kind)
    return add(table, "tbody")


def _row(table, cells):
    row = add(table, "tr")
    for text, kind in cells:
        add(row, "td", text, kind=kind)


def _show(body, picture):
    add(body, "div", kind="picture").append(picture)


def _finish(root):
    return "<!DOCTYPE html>\n" + ET.tostring(root, encoding="unicode") + "\n"


def position_page(evaluation, picture, side, fen, engine):
    """A position: the picture, and all 47 terms with their figures."""
    pawns = evaluation.pawns
    title = typeset(signed(pawns(evaluation.total))) + " pawns for White"
    root, body = _page(NO_MATE_TITLE if evaluation.is_drawn else title)
    mover = "White" if side == "w" else "Black"
    line = add(body, "p", f"Static evaluation by {engine}, {mover} to move: ")
    add(line, "code", fen)
    _show(body, picture)
    percent = round(100 * evaluation.middle_share)
    add(
        body,
        "p",
        "All 47 terms, the biggest first; positive is good for White. Middle game and end game "
        "are what the engine prints for a term, in its units; in this phase they count "
        f"{percent} % and {100 - percent} %, and a pawn is {evaluation.pawn:.0f} units.",
    )
    table = _table(
        body,
        [
            ("Term", "name"),
            ("What it counts", "words"),
            ("Middle game", "figure"),
            ("End game", "figure"),
            ("Blend", "figure"),
            ("Pawns", "figure"),
        ],
    )
    for part in evaluation.biggest_first():
        cells = [(part.name, "name"), (TERMS[part.name].meaning, "words")]
        for figure in (part.middle_game, part.end_game, part.net):
            cells.append((typeset(signed(figure, 1)), "figure"))
        cells.append((typeset(signed(pawns(part.net))), "figure"))
        _row(table, cells)
    for note in evaluation.notes():
        add(body, "p", typeset(note))
    add(body, "p", typeset(evaluation.check_text()), kind="check" if evaluation.agrees else "alarm")
    return _finish(root)

