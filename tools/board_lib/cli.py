"""The command orvelin-board."""

import contextlib
import functools
import os
import threading
import webbrowser

from board_lib.server import BoardServer
from orvelin_lib.arguments import Parser, number
from orvelin_lib.tool_main import SUCCESS, ToolError, print_whole, run_tool

# The page, beside the tool in its different places: installed, and in the sources.
FOLDERS = ("board", "../build/board")


def _folder(home):
    for place in FOLDERS:
        folder = os.path.normpath(os.path.join(home, place))
        if os.path.isfile(os.path.join(folder, "index.html")):
            return folder
    raise ToolError("the board has not been built; tools/make-board builds it")


def _parser(home):
    parser = Parser(
        prog="orvelin-board",
        description="Shows the board in the browser: serves it on this machine alone, until Ctrl-C.",
    )
    parser.add_argument("--no-browser", action="store_true", help="only print the address")
    parser.add_argument(
        "--port",
        type=number(1, 65535),
        default=0,
        metavar="N",
        help="serve on this port, so that the browser finds the last game again; else any is taken",
    )
    parser.add_argument(
        "--folder", metavar="FOLDER", help="serve this folder, as tools/make-board makes it"
    )
    return parser


def _run(home, words, _console):
    options = _parser(home).parse_args(words)
    folder = options.folder or _folder(home)
    if not os.path.isfile(os.path.join(folder, "index.html")):
        raise ToolError(f"{folder}: there is no board in it")
    try:
        server = BoardServer(folder, options.port)
    except OSError as error:
        raise ToolError(f"port {options.port}: {error.strerror}") from None
    with server, contextlib.suppress(KeyboardInterrupt):
        print_whole(server.address + "\n")
        if not options.no_browser:
            # Some browsers do not come back before they are closed.
            threading.Thread(target=webbrowser.open, args=(server.address,), daemon=True).start()
        server.serve_forever()
    return SUCCESS


def main(home, words):
    """Runs the command; its exit status."""
    return run_tool("orvelin-board", functools.partial(_run, home, words))
