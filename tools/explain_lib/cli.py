"""The command line of orvelin-explain."""

import argparse
import signal
import sys

from explain_lib import terminal
from explain_lib.bars_picture import position_picture
from explain_lib.drawing import as_text
from explain_lib.fen import BadInput, read_fen
from explain_lib.game import follow, notes_for, words_for
from explain_lib.game_picture import game_picture
from explain_lib.page import game_page, position_page
from explain_lib.pgn import read_game
from explain_lib.session import EngineMissing, Limit, Line, Session, find_engine
from orvelin_lib.board import START_FEN
from orvelin_lib.engine import EngineFailure
from orvelin_lib.notation import parse_move
from orvelin_lib.output import print_whole

DESCRIPTION = """
Draws what the evaluation of a position is made of: the 47 terms as bars, the biggest first,
White's to the right and Black's to the left. With --pgn it follows a game instead: the score
move by move, and the term that changed most at each move.
"""
EPILOG = """
Without --html and --svg all goes to the terminal. The exit status is 0, 1 when the input or the
engine is at fault, the sums do not agree with the engine's own total, or a drawing cannot be
written, 2 for bad usage.
"""
ALL_HELP = f"draw also the terms below {terminal.LEAST_PAWNS} pawns (terminal)"
# In seconds; the system cannot wait much longer.
MOST_PATIENCE = 1000000


def _positive(text):
    value = int(text)
    if value < 1:
        raise argparse.ArgumentTypeError(f"{text} is below 1")
    return value


def _parser():
    parser = argparse.ArgumentParser(prog="orvelin-explain", description=DESCRIPTION, epilog=EPILOG)
    add = parser.add_argument
    add("fen", nargs="*", help="the position; quotes around it may be left out")
    add("--startpos", action="store_true", help="the position that games begin with")
    add("--moves", nargs="+", default=[], metavar="MOVE", help="made first, as e4 or e2e4")
    add("--pgn", metavar="FILE", help="follow a game of this file")
    add("--game", type=_positive, metavar="N", help="which of the games (default 1)")
    add("--depth", type=_positive, metavar="N", help="score the game by searches of this depth")
    add("--nodes", type=_positive, metavar="N", help="score the game by searches of so many nodes")
    add("--html", metavar="FILE", help="write a page")
    add("--svg", metavar="FILE", help="write a picture")
    add("--engine", metavar="FILE", help="(default: beside the tool, else of the repository)")
    add("--patience", type=float, default=60, metavar="S", help="s for an answer (default 60)")
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
    if not 0 < options.patience <= MOST_PATIENCE:
        parser.error(f"--patience must be above 0 and at most {MOST_PATIENCE}")


def _complain(words):
    print(f"orvelin-explain: {words}", file=sys.stderr)


def _write(file_name, text):
    try:
        with open(file_name, "w", encoding="utf-8") as file:
            file.write(text)
    except OSError as error:
        raise BadInput(f"{file_name}: {error.strerror}") from None


def _print(text):
    try:
        print_whole(text)
    except OSError as error:
        raise BadInput(f"standard output: {error.strerror}") from None


def _deliver(options, picture, page, drawing):
    """Writes picture and page where they are wanted, and else the drawing to the terminal."""
    if options.svg:
        _write(options.svg, as_text(picture))
    if options.html:
        _write(options.html, page())
    if options.svg or options.html:
        return
    if sys.stdout is None:
        raise BadInput("standard output: closed")
    _print(drawing(terminal.Style.of(sys.stdout, options.ascii)))


def _read_line(options):
    """The position that is to be explained, with the moves to it."""
    fen, position = read_fen(START_FEN if options.startpos else " ".join(options.fen))
    line = Line(fen, position)
    for text in options.moves:
        try:
            line.play(parse_move(text, line.position))
        except ValueError as problem:
            raise BadInput(f"--moves: {problem}") from None
    return line, " ".join([fen, *(["moves", *options.moves] if options.moves else [])])


def _explain(options, command):
    line, fen = _read_line(options)
    with Session(command, options.patience) as session:
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


def _progress(done, count):
    if sys.stderr.isatty():
        end = "" if done < count else "\n"
        print(f"\rhalf-move {done} of {count}", end=end, file=sys.stderr)


def _follow(options, command):
    game = read_game(options.pgn, options.game or 1)
    limit = None
    if options.depth or options.nodes:
        limit = Limit("depth", options.depth) if options.depth else Limit("nodes", options.nodes)
    with Session(command, options.patience) as session:
        steps = follow(session, game, limit, _progress)
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
    parser = _parser()
    options = parser.parse_intermixed_args(arguments)
    _check_usage(parser, options)
    signal.signal(signal.SIGTERM, lambda *_: sys.exit(143))
    try:
        command = find_engine(options.engine, folder)
        alarms = (_follow if options.pgn is not None else _explain)(options, command)
    except (BadInput, EngineMissing) as problem:
        _complain(problem)
        return 1
    except EngineFailure as failure:
        _complain(f"engine: {failure}")
        return 1
    except KeyboardInterrupt:
        _complain("interrupted")
        return 130
    for alarm in alarms:
        _complain(alarm)
    return 1 if alarms else 0
