"""The 47 terms of the evaluation in the order of the engine: what players call them, a few chess
words on what they count, and the group that a player speaks of. The names are those of
src/analyse/term_names.cpp."""

from typing import NamedTuple


class Term(NamedTuple):
    """How a term is called."""

    full: str
    meaning: str
    group: str


# In the order in which they are told.
GROUPS = (
    "material",
    "king safety",
    "piece activity",
    "pawn structure",
    "passed pawns",
    "threats",
    "development",
    "endgame",
)

TERMS = {
    "material": Term(
        "material",
        "the values of the pieces, the bishop pair and imbalances",
        "material",
    ),
    "mobility": Term("mobility", "safe squares of all pieces together", "piece activity"),
    "knight_mobility": Term("knight mobility", "safe squares of the knights", "piece activity"),
    "bishop_mobility": Term("bishop mobility", "safe squares of the bishops", "piece activity"),
    "rook_mobility": Term("rook mobility", "safe squares of the rooks", "piece activity"),
    "queen_mobility": Term("queen mobility", "safe squares of the queens", "piece activity"),
    "development": Term(
        "development",
        "minor pieces at home, blocked centre pawns, rooks on open files",
        "development",
    ),
    "space": Term("space", "nothing: always 0", "pawn structure"),
    "pst_pawn": Term("pawn placement", "the squares on which the pawns stand", "pawn structure"),
    "pst_knight": Term(
        "knight placement",
        "the squares on which the knights stand",
        "piece activity",
    ),
    "pst_bishop": Term(
        "bishop placement",
        "the squares on which the bishops stand",
        "piece activity",
    ),
    "pst_rook": Term("rook placement", "the squares on which the rooks stand", "piece activity"),
    "pst_queen": Term("queen placement", "the squares on which the queens stand", "piece activity"),
    "pst_king": Term("king placement", "the squares on which the kings stand", "king safety"),
    "pawn_shield": Term("pawn shield", "own pawns before the king", "king safety"),
    "king_attack": Term(
        "king attack",
        "attacks on the squares around the enemy king",
        "king safety",
    ),
    "castling_rights": Term("castling rights", "whether a side may still castle", "king safety"),
    "pawn_storm": Term("pawn storm", "pawns that advance on the enemy king", "king safety"),
    "open_files_on_king": Term(
        "open files at the king",
        "own open files at the enemy king",
        "king safety",
    ),
    "safe_queencheck": Term(
        "safe queen checks",
        "safe squares from which a queen gives check",
        "king safety",
    ),
    "knight_king_contact": Term(
        "knight next to the king",
        "a knight beside the enemy king",
        "king safety",
    ),
    "bishop_king_contact": Term(
        "bishop next to the king",
        "a bishop beside the enemy king",
        "king safety",
    ),
    "rook_king_contact": Term(
        "rook next to the king",
        "a rook beside the enemy king",
        "king safety",
    ),
    "queen_king_contact": Term(
        "queen next to the king",
        "a queen beside the enemy king",
        "king safety",
    ),
    "knight_battlefield_contact": Term(
        "knight near the king",
        "a knight in the zone before the enemy king",
        "king safety",
    ),
    "bishop_battlefield_contact": Term(
        "bishop near the king",
        "a bishop in the zone before the enemy king",
        "king safety",
    ),
    "rook_battlefield_contact": Term(
        "rook near the king",
        "a rook in the zone before the enemy king",
        "king safety",
    ),
    "queen_battlefield_contact": Term(
        "queen near the king",
        "a queen in the zone before the enemy king",
        "king safety",
    ),
    "knight_battlefield_attack": Term(
        "knight pressure on the king",
        "squares of the zone before the enemy king that knights attack",
        "king safety",
    ),
    "bishop_battlefield_attack": Term(
        "bishop pressure on the king",
        "squares of the zone before the enemy king that bishops attack",
        "king safety",
    ),
    "rook_battlefield_attack": Term(
        "rook pressure on the king",
        "squares of the zone before the enemy king that rooks attack",
        "king safety",
    ),
    "queen_battlefield_attack": Term(
        "queen pressure on the king",
        "squares of the zone before the enemy king that queens attack",
        "king safety",
    ),
    "king_activity": Term(
        "king activity",
        "the way of the king to weak and passed pawns, or to the centre",
        "endgame",
    ),
    "locked_up_rook": Term("trapped rook", "a rook shut in by its own king", "piece activity"),
    "undefended_pieces": Term("loose pieces", "pieces that nothing defends", "threats"),
    "own_hanging_material": Term(
        "hanging pieces",
        "pieces attacked and not well defended",
        "threats",
    ),
    "rookpawn": Term("rook pawns", "pawns on the a- and h-file", "pawn structure"),
    "doubled_pawns": Term("doubled pawns", "pawns of a side on one file", "pawn structure"),
    "weak_pawns": Term("weak pawns", "pawns that no neighbour can support", "pawn structure"),
    "isolated_pawns": Term("isolated pawns", "pawns without a neighbour", "pawn structure"),
    "blocked_pawns": Term(
        "blocked pawns",
        "pawns with a piece directly before them",
        "pawn structure",
    ),
    "passed_pawns": Term("passed pawns", "pawns that no enemy pawn can stop", "passed pawns"),
    "pawn_islands": Term(
        "pawn islands",
        "groups of pawns with files between them",
        "pawn structure",
    ),
    "pinned_pieces": Term("pins", "pieces pinned to their king", "threats"),
    "bad_bishop": Term("bad bishop", "own pawns on the colour of a lone bishop", "piece activity"),
    "opposite_colored_bishops": Term(
        "opposite-coloured bishops",
        "each side's lone bishop on the other colour, which also halves the score",
        "endgame",
    ),
    "stm": Term("right to move", "the side that is to move", "development"),
}

# What the engine adds for a pawn, in its own units: 100 times the weights of material.
PAWN_MIDDLE_GAME = 250.148
PAWN_END_GAME = 205.895

# What a piece counts for the phase; the pieces of the start make 62.
PHASE_COUNTS = {"Q": 9, "R": 5, "B": 3, "N": 3}
FULL_PHASE = 62

# Material for which the engine takes another function instead of the sum of the terms.
ENDGAMES = ("KQK", "KRK", "KNNK", "KBNK", "KBBK", "KBPK", "KPK", "KRPKR", "KQKR")
