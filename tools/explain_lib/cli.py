"""The command line of orvelin-explain."""

import sys

from explain_lib import terminal
from explain_lib.analysis import (
    ANALYSE_HELP,
    GAME_DEPTH,
    default_analyser,
    game_records,
    limit_words,
    position_record,
)
from explain_lib.bars_picture import position_picture
from explain_lib.drawing import as_text
from explain_lib.game import notes_for, steps_of, words_for
from explain_lib.game_picture import game_picture
from explain_lib.page import position_page
from explain_lib.records import read_records
from explain_lib.report_data import Report
from explain_lib.report_page import report_page
from explain_lib.session import Line, Session
from orvelin_lib.arguments import Parser, command, file_name, number, positive, seconds
from orvelin_lib.board import START_FEN, Position
from orvelin_lib.engines import ENGINE_HELP, checked, default_engine
from orvelin_lib.fen import Fen, FenError
from orvelin_lib.files import check_writable, is_same_file, write_file
from orvelin_lib.notation import parse_move
from orvelin_lib.pgn import Game, Played, read_game
from orvelin_lib.tool_main import ToolError, print_whole, run_tool

DESCRIPTION = """
Explains scores. Of a position: the 47 terms of its evaluation as bars, the biggest first, White's
to the right and Black's to the left; with --depth, --nodes or --lines the best lines, and what the
positions are made of that gave their scores. Of a game, with --pgn: the score move by move; with
--html a page to step through, with the mistakes, the better moves and why they are better.
--records explains a file of records that orvelin-analyse has written.
"""
EPILOG = """
Without --html and --svg all goes to the terminal; as FILE, - is standard input or output. The exit
status is 0, 1 when the input or a program is at fault, the sums do not agree with the engine's own
total, or a drawing cannot be written, 2 for bad usage, 130 when it was interrupted.
"""
ALL_HELP = f"draw also the terms below {terminal.LEAST_PAWNS} pawns (terminal)"


# What orvelin-analyse takes.
MOST_LINES, MOST_DEPTH = 50, 100
LINES_HELP = f"so many best lines, 1 to {MOST_LINES} (default 1); a game shows the best one alone"


def _parser():
    parser = Parser(prog="orvelin-explain", description=DESCRIPTION, epilog=EPILOG)
    add = parser.add_argument
    add("fen", nargs="*", help="the position; quotes around it may be left out")
    add("--startpos", action="store_true", help="the position that games begin with")
    add("--moves", nargs="+", default=[], metavar="MOVE", help="made first, as e4 or e2e4")
    pgn = "follow a game of this file; - is standard input"
    add("--pgn", type=file_name, metavar="FILE", help=pgn)
    add("--records", type=file_name, metavar="FILE", help="explain records; - is standard input")
    add("--game", type=positive, metavar="N", help="which of the games (default 1)")
    depth = f"search so deep (default for the page of a game: {GAME_DEPTH})"
    add("--depth", type=number(1, MOST_DEPTH), metavar="N", help=depth)
    add("--nodes", type=positive, metavar="N", help="search so many nodes")
    add("--lines", type=number(1, MOST_LINES), metavar="K", help=LINES_HELP)
    add("--html", type=file_name, metavar="FILE", help="write a page")
    add("--svg", type=file_name, metavar="FILE", help="write a picture")
    add("--analyse", type=command, metavar="CMD", help=ANALYSE_HELP)
    add("--engine", type=command, metavar="CMD", help=ENGINE_HELP)
    add("--patience", type=seconds, default=60, metavar="S", help="s for an answer (default 60)")
    add("--all", action="store_true", help=ALL_HELP)
    add("--ascii", action="store_true", help="plain characters only")
    return parser


def _check_usage(parser, options):
    sources = [bool(options.fen), options.startpos, options.pgn is not None]
    if sum(sources) + (options.records is not None) != 1:
        parser.error("one of FEN, --startpos, --pgn and --records is needed")
    if options.game is not None and options.pgn is None and options.records is None:
        parser.error("--game goes with --pgn and --records")
    if (options.moves or options.all) and (options.pgn or options.records):
        parser.error("--moves and --all go with a position")
    if options.records and (options.depth or options.nodes or options.lines):
        parser.error("--depth, --nodes and --lines do not go with --records")
    if options.all and (options.svg or options.html):
        parser.error("--all is for the terminal: it goes with neither --svg nor --html")
    if options.depth and options.nodes:
        parser.error("--depth and --nodes exclude each other")
    if options.lines and not (options.depth or options.nodes or (options.pgn and options.html)):
        parser.error("--lines needs --depth or --nodes")
    if _searches_position(options) and options.svg:
        parser.error("lines have no picture: --svg goes without --depth and --nodes")
    if _searches_position(options) and options.all:
        parser.error("--all goes without --depth and --nodes")
    if options.svg == options.html == "-":
        parser.error("--svg and --html cannot both go to standard output")
    for name in filter(None, (options.svg, options.html)):
        if any(is_same_file(name, read) for read in (options.pgn, options.records) if read):
            parser.error(f"{name} is read, and cannot be written too")


def _searches_position(options):
    """Whether lines of one position are wanted."""
    is_position = options.pgn is None and options.records is None
    return is_position and bool(options.depth or options.nodes)


def _deliver(options, picture, page, drawing):
    """Writes picture and page where they are wanted, and else the drawing to the terminal."""
    if options.svg:
        write_file(options.svg, as_text(picture))
    if options.html:
        write_file(options.html, page())
    if not (options.svg or options.html):
        print_whole(drawing(terminal.Style.of(sys.stdout, options.ascii)))


def _read_position(options):
    """The position that is to be explained with the moves to it, as a game."""
    text = START_FEN if options.startpos else " ".join(options.fen)
    try:
        fen, position = Fen.parse(text), Position(text)
    except FenError as problem:
        raise ToolError(f"not a FEN: {problem}: {text!r}") from None
    start, moves, count = position, [], fen.move_number
    for word in options.moves:
        try:
            move = parse_move(word, position)
        except ValueError as problem:
            raise ToolError(f"--moves: {problem}") from None
        moves.append(Played(f"{count}." if position.side == "w" else f"{count}...", word, move))
        count += position.side == "b"
        position = position.after(move)
    tags = {"FEN": str(fen)}
    if any(letter in "ABCDEFGHabcdefgh" for letter in fen.rights):
        tags["Variant"] = "Chess960"
    return Game(tags, str(fen), start, moves)


def _analyser(options, folder):
    return options.analyse or (default_analyser(folder),)


def _session(options, folder):
    return Session(checked(options.engine or (default_engine(folder),)), options.patience)


def _explain(options, folder):
    game = _read_position(options)
    if _searches_position(options):
        limit = limit_words(options.depth, options.nodes)
        record = position_record(_analyser(options, folder), game, limit, options.lines or 1)
        return _show_position(options, record)
    line = Line(game.fen, game.start)
    for played in game.moves:
        line.play(played.move)
    fen = " ".join([game.fen, *(["moves", *options.moves] if options.moves else [])])
    with _session(options, folder) as session:
        evaluation = session.evaluation(line)
        engine = session.name
    board, side = line.position.board, line.position.side
    picture = position_picture(evaluation, board, side, fen)
    _deliver(
        options,
        picture,
        lambda: position_page(evaluation, picture, side, fen, engine),
        lambda style: terminal.explain(evaluation, line.position, style, options.all),
    )
    return [] if evaluation.agrees else [evaluation.check_text()]


def _show_position(options, record):
    report = Report([record])
    if options.svg:
        raise ToolError("a record of a position has no picture: use --html")
    _deliver(
        options,
        None,
        lambda: report_page(report),
        lambda style: terminal.lines_of(report, style),
    )
    return []


def _show_game(options, records, title):
    if len(records) < 2:
        raise ToolError(f"{title} has no move")
    steps = steps_of(records)
    words = words_for(records)
    notes = notes_for(steps, records)
    _deliver(
        options,
        game_picture(title, steps, words, notes),
        lambda: report_page(Report(records)),
        lambda style: terminal.follow(f"{title}. {words}", steps, notes, style),
    )
    return []


def _follow(options, folder, console):
    game = read_game(options.pgn, options.game or 1, console)
    depth = options.depth
    if options.html and not options.nodes:
        depth = depth or GAME_DEPTH
    limit = limit_words(depth, options.nodes)
    records = game_records(_analyser(options, folder), game, limit, options.lines or 1, console)
    return _show_game(options, records, game.title() or "Game")


def _read(options, console):
    records = read_records(options.records, options.game or 1, console)
    if records[0]["source"].get("game"):
        return _show_game(options, records, Report(records).title)
    return _show_position(options, records[0])


def main(folder, arguments):
    """Runs the command; its exit status. The tool itself lies in the folder."""

    def body(console):
        parser = _parser()
        options = parser.parse_intermixed_args(arguments)
        _check_usage(parser, options)
        for name in filter(None, (options.svg, options.html)):
            check_writable(name)
        if options.records is not None:
            alarms = _read(options, console)
        elif options.pgn is not None:
            alarms = _follow(options, folder, console)
        else:
            alarms = _explain(options, folder)
        for alarm in alarms:
            console.say(alarm)
        return 1 if alarms else 0

    return run_tool("orvelin-explain", body)
