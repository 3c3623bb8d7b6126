"""The page of a game or a position: one file, nothing is loaded. What it says is in it without a
script too; the script steps through it."""

import json
import os
import xml.etree.ElementTree as ET

from explain_lib.board_picture import piece_symbols
from explain_lib.drawing import FONTS, SVG_NAMESPACE, add
from explain_lib.figures import typeset
from explain_lib.game import NOT_JUDGED
from explain_lib.judgement import MARK_NAMES
from orvelin_lib.table import counted

FOLDER = os.path.dirname(os.path.realpath(__file__))
POLICY = "default-src 'none'; style-src 'unsafe-inline'; script-src 'unsafe-inline'; img-src data:"
CLASSES = {mark: name.split()[0] for mark, name in MARK_NAMES.items()}
# What src/analyse/move_judgement.h has, in points of 100.
MARKS_WORDS = (
    "A mark is for what a move gives away of the chances: ?! from 5 points on, ? from 10, ?? from "
    "20. ! is for the best move where the best of all others gives away 20 points, which only "
    "records with a search of the others can tell. Accuracy is the mean over a side's moves that "
    "were not forced: 100 for one that gives nothing away, half as much for each 17 points given "
    "away. "
)
# Half-moves between two numbers below the graph, at least so many of them on the page.
TICKS = (2, 4, 10, 20, 40, 100, 200, 400, 1000)
MOST_TICKS = 12
# How wide a mark may be in hundredths of the graph, on a telephone.
MARK_WIDTH = 6
STYLE_PLACE, DATA_PLACE, SCRIPT_PLACE = "@style@", "@data@", "@script@"


def _file(name):
    with open(os.path.join(FOLDER, name), encoding="utf-8") as file:
        return file.read()


def _panel(parent, title, **attributes):
    panel = add(parent, "section", kind="panel", **attributes)
    if title:
        add(panel, "h2", title)
    return panel


def _button(parent, text, name, words=None):
    attributes = {"aria_label": words, "title": words} if words else {}
    return add(parent, "button", text, type="button", id=name, **attributes)


def _head(title):
    root = ET.Element("html", {"lang": "en"})
    head = add(root, "head")
    add(head, "meta", charset="utf-8")
    add(head, "meta", name="viewport", content="width=device-width, initial-scale=1")
    meta = add(head, "meta", content=POLICY)
    meta.set("http-equiv", "Content-Security-Policy")
    add(head, "link", rel="icon", href="data:,")
    # Before all that a game says.
    add(head, "style", STYLE_PLACE)
    add(head, "title", title)
    return root


def _heading(body, report):
    head = add(body, "header", kind="head")
    words = add(head, "div")
    add(words, "h1", report.title)
    result = report.result if report.result not in ("", "*") else ""
    add(words, "p", ". ".join(filter(None, (result, report.words))) + ".", kind="faint small")
    scheme = _button(head, "Colours", "scheme")
    scheme.set("class", "scheme needs-script")
    scheme.set("hidden", "hidden")


def _sides(main, report):
    box = add(main, "div", kind="sides")
    for name, player, side in zip(("White", "Black"), report.players, report.sides):
        panel = _panel(box, f"{name}: {player}" if player != "?" else name)
        line = add(panel, "p")
        accuracy = "–" if side.accuracy is None else f"{side.accuracy:.1f} %"
        add(line, "strong", accuracy)
        line[-1].tail = " accuracy"
        counts = add(panel, "ul", kind="counts")
        for mark, noun in (("??", "blunder"), ("?", "mistake"), ("?!", "inaccuracy"), ("!", "")):
            count = side.marks[mark]
            if not noun and not count:
                continue
            item = add(counts, "li")
            add(item, "span", mark, kind=f"mark {CLASSES[mark]}")
            words = counted(count, noun) if noun else f"{count} only good"
            item[-1].tail = " " + words.replace("inaccuracys", "inaccuracies")


def _places(positions):
    """(place from the left, place from the top) of each position on the graph, in per cent."""
    steps = max(len(positions) - 1, 1)
    return [(100 * i / steps, 100 - each["chances"]) for i, each in enumerate(positions)]


def _dot(graph, place, text, kind, beside=False):
    left, top = place
    height = f"{min(max(top, 6), 94):.1f}%"
    if beside:
        # As far as a mark is high, whatever the height of the graph.
        height = f"calc({height} {'+' if top < 50 else '-'} 1.5rem)"
    style = f"left:{min(max(left, 1), 99):.2f}%;top:{height}"
    add(graph, "span", text, kind=f"dot {kind}", style=style, aria_hidden="true")


def _mates(positions):
    """(index, text) of where a mate comes into sight, and of the mate itself."""
    found = []
    for index, each in enumerate(positions):
        if each["score"] == "mate":
            found.append((index, "#"))
        elif each["mate"] and not (index and positions[index - 1]["mate"]):
            found.append((index, each["score"].lstrip("+-")))
    return found


def _graph(main, report, data):
    panel = _panel(main, "Chances through the game")
    positions = data["positions"]
    places = _places(positions)
    graph = add(
        panel,
        "div",
        kind="graph",
        id="graph",
        role="slider",
        tabindex=0,
        aria_label="Position in the game",
        aria_valuemin=0,
        aria_valuemax=len(positions) - 1,
        aria_valuenow=0,
    )
    picture = add(graph, "svg", viewBox="0 0 100 100", preserveAspectRatio="none")
    picture.set("xmlns", SVG_NAMESPACE)
    picture.set("aria-hidden", "true")
    line = " ".join(f"L{left:.2f} {top:.1f}" for left, top in places)
    add(picture, "path", kind="area", d=f"M0 100 {line} L{places[-1][0]:.2f} 100 Z")
    even = add(picture, "path", kind="even", d="M0 50 H100", fill="none")
    even.set("vector-effect", "non-scaling-stroke")
    marked = []
    for index, judged in enumerate(report.judged, 1):
        if judged.mark:
            marked.append(places[index][0])
            _dot(graph, places[index], judged.mark, CLASSES[judged.mark])
    for index, text in _mates(positions):
        left = places[index][0]
        # Neither over the mark of the move that allowed it nor over that of a neighbour.
        is_marked = any(abs(left - other) < MARK_WIDTH for other in marked)
        _dot(graph, places[index], text, "mate", beside=is_marked)
    _ticks(graph, report, len(positions))
    add(graph, "div", kind="cursor", id="cursor", aria_hidden="true", style="left:0")
    note = "Light is White's share, dark is Black's. Click, or use the arrow keys."
    add(panel, "p", note, kind="faint small screen")


def _ticks(graph, report, count):
    step = next((each for each in TICKS if count / each <= MOST_TICKS), TICKS[-1])
    for index, judged in enumerate(report.judged):
        if index and index % step == 0 and judged.white:
            left = 100 * index / max(count - 1, 1)
            style = f"left:{left:.2f}%"
            number = judged.label.rstrip(".")
            add(graph, "span", number, kind="tick", style=style, aria_hidden="true")


def _board_panel(columns, is_game):
    panel = _panel(columns, None, aria_label="Board")
    row = add(panel, "div", kind="board-row")
    balance = add(row, "div", kind="balance", id="balance", aria_hidden="true")
    add(balance, "div", id="white-share", style="height:50%")
    add(row, "div", kind="board", id="board")
    steps = add(panel, "div", kind="steps needs-script", hidden="hidden")
    if is_game:
        _button(steps, "|◀", "first", "To the start")
    _button(steps, "◀", "previous", "One move back")
    _button(steps, "▶", "next", "One move on")
    if is_game:
        _button(steps, "▶|", "last", "To the end")
    _button(steps, "⇅", "flip", "Turn the board")
    add(panel, "p", kind="where faint", id="where", aria_live="polite")
    back = _button(panel, "Back to the game" if is_game else "Back to the position", "back")
    back.set("hidden", "hidden")
    keys = "Keys: ← → step, F turns the board, Esc leaves a line."
    if is_game:
        keys = keys[:-1] + ", Home and End, N and P go to the next and the previous mark."
    add(panel, "p", keys, kind="faint small screen")


def _detail_panel(columns, is_game):
    panel = _panel(columns, None, aria_label="Explanation")
    add(panel, "h2", "" if is_game else "Lines", id="headline")
    add(panel, "p", id="sentence", aria_live="polite")
    add(panel, "div", id="lines")
    choice = add(panel, "div", kind="choice needs-script", hidden="hidden")
    if is_game:
        _button(choice, "Played against best", "difference")
    _button(choice, "The position", "position")
    if not is_game:
        add(choice, "button", id="difference", hidden="hidden", type="button")
    add(panel, "p", kind="faint small", id="chart-words")
    add(panel, "div", id="bars")


def _moves(main, report):
    if not report.judged:
        return
    panel = _panel(main, "Moves")
    rows = add(panel, "ol", kind="moves")
    item = None
    for ply, judged in enumerate(report.judged, 1):
        if judged.white or item is None:
            item = add(rows, "li")
            add(item, "span", judged.label.rstrip(".") + ".", kind="faint")
            if not judged.white:
                add(item, "span", "…", kind="faint")
        button = add(item, "button", judged.san, type="button", id=f"move-{ply}", data_ply=ply)
        if judged.mark:
            add(button, "span", judged.mark, kind=f"mark {CLASSES[judged.mark]}")


def _moments(main, report):
    marked = [(ply, each) for ply, each in enumerate(report.judged, 1) if each.mark]
    panel = _panel(main, "Where the game turned")
    if not marked:
        words = "No move is marked." if report.is_judged else NOT_JUDGED
        add(panel, "p", words)
        return
    rows = add(panel, "ol", kind="moments")
    for ply, judged in marked:
        item = add(rows, "li")
        link = add(item, "a", judged.written, href=f"#ply-{ply}")
        add(link, "span", judged.mark, kind=f"mark {CLASSES[judged.mark]}")
        # The link is the move, with which most sentences begin.
        link.tail = " " + typeset(judged.sentence.removeprefix(judged.written + " "))
        if judged.best and not judged.is_best:
            san = " ".join(judged.best["san"].split()[:8])
            add(item, "p", f"Better: {judged.label}{san}", kind="faint small")


def _about(main, is_game):
    panel = _panel(main, "How to read this")
    text = (
        "Chances are points of 100: a win counts 100, a draw 50, by a model fitted to games of the "
        "engine with itself. Scores and bars are in pawns of the phase of the position. "
    )
    if is_game:
        text += MARKS_WORDS
    text += "The bars of a group open to its terms, each with the name the engine has for it."
    add(panel, "p", text, kind="small")


def _position_lines(main, report, data):
    """What a reader without scripts has of a position."""
    block = add(main, "noscript")
    for line in data["lines"]:
        add(block, "p", f"{typeset(line['score'])}: {' '.join(line['san'])}")


def _symbols(body):
    picture = add(body, "svg", width=0, height=0, aria_hidden="true", style="position:absolute")
    picture.set("xmlns", SVG_NAMESPACE)
    piece_symbols(picture)


def report_page(report):
    """The page as a text."""
    data = report.data()
    root = _head(report.title)
    body = add(root, "body")
    _symbols(body)
    _heading(body, report)
    main = add(body, "main")
    if report.is_game:
        _sides(main, report)
        _graph(main, report, data)
    else:
        line = add(main, "p")
        add(line, "code", report.records[0]["fen"])
    columns = add(main, "div", kind="columns")
    _board_panel(columns, report.is_game)
    _detail_panel(columns, report.is_game)
    if report.is_game:
        _moves(main, report)
        _moments(main, report)
    else:
        _position_lines(main, report, data)
    _about(main, report.is_game)
    add(body, "script", DATA_PLACE, type="application/json", id="data")
    add(body, "script", SCRIPT_PLACE)
    text = ET.tostring(root, encoding="unicode", short_empty_elements=False)
    for empty in ("meta", "link"):
        text = text.replace(f"></{empty}>", " />")
    written = json.dumps(data, separators=(",", ":"), allow_nan=False)
    for sign in "<>&":
        written = written.replace(sign, f"\\u{ord(sign):04x}")
    # In a script and a style HTML takes all as it stands; for readers of XML it is marked to be
    # taken so.
    script = f"//<![CDATA[\n{_file('report.js')}//]]>"
    style = f"/*<![CDATA[*/\n{_file('report.css').replace('FONTS', FONTS)}/*]]>*/"
    above, _, text = text.partition(STYLE_PLACE)
    head, _, rest = text.rpartition(DATA_PLACE)
    between, _, tail = rest.partition(SCRIPT_PLACE)
    return f"<!DOCTYPE html>\n{above}{style}{head}{written}{between}{script}{tail}\n"
