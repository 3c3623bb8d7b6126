"""Which game has which start: fixed by the seed and the number of the game alone."""

import random
from dataclasses import dataclass

from orvelin_lib.board import START_FEN
from orvelin_lib.rules import Referee
from soak_lib.clock import Control

ENDINGS_AND_TACTICS = (
    "r3k2r/p1ppqpb1/bn2pnp1/3PN3/1p2P3/2N2Q1p/PPPBBPPP/R3K2R w KQkq - 0 1",
    "r4rk1/1pp1qppp/p1np1n2/2b1p1B1/2B1P1b1/P1NP1N2/1PP1QPPP/R4RK1 w - - 0 10",
    "8/2p5/3p4/KP5r/1R3p1k/8/4P1P1/8 w - - 0 1",
    "4k3/pppppppp/8/8/8/8/PPPPPPPP/4K3 w - - 0 1",
    "8/k7/3p4/p2P1p2/P2P1P2/8/8/K7 w - - 0 1",
    "8/8/8/3k4/8/3K4/8/Q7 w - - 0 1",
    "8/8/3k4/8/8/3K4/8/R6r b - - 0 1",
    "2b1k3/8/8/8/8/8/8/4KBN1 w - - 60 80",
    "3k4/8/8/8/8/8/8/3KQ2r w - - 0 1",
    "n1n5/PPPk4/8/8/8/8/4Kppp/5N1N b - - 0 1",
)


@dataclass(frozen=True)
class Plan:
    """One game before it is played."""

    number: int
    fen: str
    chess960: bool
    opening: tuple
    control: Control
    ponder: bool
    swapped: bool


def chess960_array(chance):
    """The FEN of a random start of Chess960, castling by letters or by files."""
    files = [""] * 8
    files[chance.randrange(0, 8, 2)] = "B"
    files[chance.randrange(1, 8, 2)] = "B"
    for piece in "QNN":
        files[chance.choice([file for file in range(8) if not files[file]])] = piece
    free = [file for file in range(8) if not files[file]]
    for file, piece in zip(free, "RKR"):
        files[file] = piece
    pieces = "".join(files)
    rights = "KQ" if chance.random() < 0.5 else "ABCDEFGH"[free[2]] + "ABCDEFGH"[free[0]]
    return f"{pieces.lower()}/pppppppp/8/8/8/8/PPPPPPPP/{pieces} w {rights}{rights.lower()} - 0 1"


def _random_opening(fen, chess960, plies, chance):
    referee = Referee(fen, chess960)
    moves = []
    while len(moves) < plies:
        lasting = [text for text in referee.moves if not referee.ends_with(text)]
        if not lasting:
            break
        moves.append(chance.choice(lasting))
        referee.play(moves[-1])
        if referee.verdict() is not None:
            return tuple(moves[:-1])
    return tuple(moves)


def plan_game(seed, number, controls, ponder_share):
    """The plan of a game; the same arguments give the same plan."""
    chance = random.Random(f"{seed}:{number}")
    chess960 = False
    draw = chance.random()
    if draw < 0.4:
        fen, plies = START_FEN, chance.randrange(11)
    elif draw < 0.8:
        fen, plies, chess960 = chess960_array(chance), chance.randrange(7), True
    else:
        fen, plies = chance.choice(ENDINGS_AND_TACTICS), chance.randrange(5)
    opening = _random_opening(fen, chess960, plies, chance)
    # Long clocks take long games: they come less often.
    weights = [control.base**-0.5 for control in controls]
    control = chance.choices(controls, weights)[0]
    ponder = chance.random() < ponder_share
    return Plan(number, fen, chess960, opening, control, ponder, chance.random() < 0.5)
