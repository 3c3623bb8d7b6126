"""The command line of orvelin-explain."""

import sys

from explain_lib import terminal
from explain_lib.bars_picture import position_picture
from explain_lib.drawing import as_text
from explain_lib.game import follow, notes_for, words_for
from explain_lib.game_picture import game_picture
from explain_lib.page import game_page, position_page
from explain_lib.pgn import read_game
from explain_lib.session import Limit, Line, Session
from orvelin_lib.arguments import Parser, command, file_name, positive, seconds
from orvelin_lib.board import START_FEN, Position
from orvelin_lib.engines import ENGINE_HELP, checked, default_engine
from orvelin_lib.fen import Fen, FenError
from orvelin_lib.files import check_writable, write_file
from orvelin_lib.notation import parse_move
from orvelin_lib.tool_main import ToolError, print_whole, run_tool

DESCRIPTION = """
Draws what the evaluation of a position is made of: the 47 terms as bars, the biggest first,
White's to the right and Black's to the left. With --pgn it follows a game instead: the score
move by move, and the term that changed most at each move.
"""
EPILOG = """
Without --html and --svg all goes to the terminal; as FILE, - is standard input or output. The exit
status is 0, 1 when the input or the engine is at fault, the sums do not agree with the engine's own
total, or a drawing cannot be written, 2 for bad usage, 130 when it was interrupted.
"""
ALL_HELP = f"draw also the terms below {terminal.LEAST_PAWNS} pawns (terminal)"


def _parser():
    parser = Parser(prog="orvelin-explain", description=DESCRIPTION, epilog=EPILOG)
    add = parser.add_argument
    add("fen", nargs="*", help="the position; quotes around it may be left out")
    add("--startpos", action="store_true", help="the position that games begin with")
    add("--moves", nargs="+", default=[], metavar="MOVE", help="made first, as e4 or e2e4")
    pgn = "follow a game of this file; - is standard input"
    add("--pgn", type=file_name, metavar="FILE", help=pgn)
    add("--game", type=positive, metavar="N", help="which of the games (default 1)")
    add("--depth", type=positive, metavar="N", help="score the game by searches of this depth")
    add("--nodes", type=positive, metavar="N", help="score the game by searches of so many nodes")
    add("--html", type=file_name, metavar="FILE", help="write a page")
    add("--svg", type=file_name, metavar="FILE", help="write a picture")
    add("--engine", type=command, metavar="CMD", help=ENGINE_HELP)
    add("--patience", type=seconds, default=60, metavar="S", help="s for an answer (default 60)")
    add("--all", action="store_true", help=ALL_HELP)
    add("--ascii", action="store_true", help="plain characters only")
    return parser


def _check_usage(parser, options):
    sources = [bool(options.fen), options.startpos, options.pgn is not None]
    if sum(sources) != 1:
        parser.error("one of FEN, --startpos and --pgn is needed")
    if options.pgn is None:
        for name in ("game", "depth", "nodes"):
            if getattr(options, name) is not None:
                parser.error(f"--{name} goes with --pgn")
    elif options.moves or options.all:
        parser.error("--moves and --all go with a position")
    if options.all and (options.svg or options.html):
        parser.error("--all is for the terminal: it goes with neither --svg nor --html")
    if options.depth and options.nodes:
        parser.error("--depth and --nodes exclude each other")
    if options.svg == options.html == "-":
        parser.error("--svg and --html cannot both go to standard output")


def _deliver(options, picture, page, drawing):
    """Writes picture and page where they are wanted, and else the drawing to the terminal."""
    if options.svg:
        write_file(options.svg, as_text(picture))
    if options.html:
        write_file(options.html, page())
    if not (options.svg or options.html):
        print_whole(drawing(terminal.Style.of(sys.stdout, options.ascii)))


def _read_line(options):
    """The position that is to be explained, with the moves to it."""
    text = START_FEN if options.startpos else " ".join(options.fen)
    try:
        fen = str(Fen.parse(text))
        line = Line(fen, Position(text))
    except FenError as problem:
        raise ToolError(f"not a FEN: {problem}: {text!r}") from None
    for move in options.moves:
        try:
            line.play(parse_move(move, line.position))
        except ValueError as problem:
            raise ToolError(f"--moves: {problem}") from None
    return line, " ".join([fen, *(["moves", *options.moves] if options.moves else [])])


def _session(options, folder):
    return Session(checked(options.engine or (default_engine(folder),)), options.patience)


def _explain(options, folder):
    line, fen = _read_line(options)
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


def _follow(options, folder, console):
    game = read_game(options.pgn, options.game or 1, console)
    limit = None
    if options.depth or options.nodes:
        limit = Limit("depth", options.depth) if options.depth else Limit("nodes", options.nodes)
    with _session(options, folder) as session:
        steps = follow(session, game, limit, console)
        words = words_for(limit, session.name)
    notes = notes_for(steps, limit)
    title = game.title() or "Game"
    picture = game_picture(title, steps, words, notes)
    _deliver(
        options,
        picture,
        lambda: game_page(title, picture, steps, words, notes),
        lambda style: terminal.follow(f"{title}. {words}", steps, notes, style),
    )
    return [note for note, alarm in notes if alarm]


def main(folder, arguments):
    """Runs the command; its exit status. The tool itself lies in the folder."""

    def body(console):
        parser = _parser()
        options = parser.parse_intermixed_args(arguments)
        _check_usage(parser, options)
        for name in filter(None, (options.svg, options.html)):
            check_writable(name)
        is_game = options.pgn is not None
        alarms = _follow(options, folder, console) if is_game else _explain(options, folder)
        for alarm in alarms:
            console.say(alarm)
        return 1 if alarms else 0

    return run_tool("orvelin-explain", body)
