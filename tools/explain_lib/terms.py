"""The 47 terms of the evaluation in the order of the engine, each in a few chess words."""

TERMS = {
    "material": "pieces, bishop pair and imbalances",
    "mobility": "safe squares of all pieces together",
    "knight_mobility": "safe squares of the knights",
    "bishop_mobility": "safe squares of the bishops",
    "rook_mobility": "safe squares of the rooks",
    "queen_mobility": "safe squares of the queens",
    "development": "minor pieces at home, blocked centre pawns, rooks on open files",
    "space": "nothing: always 0",
    "pst_pawn": "where the pawns stand",
    "pst_knight": "where the knights stand",
    "pst_bishop": "where the bishops stand",
    "pst_rook": "where the rooks stand",
    "pst_queen": "where the queens stand",
    "pst_king": "where the kings stand",
    "pawn_shield": "own pawns before the king",
    "king_attack": "attacks on the squares around the enemy king",
    "castling_rights": "a right to castle",
    "pawn_storm": "pawns before the enemy king",
    "open_files_on_king": "own open files at the enemy king",
    "safe_queencheck": "safe squares from which the queen gives check",
    "knight_king_contact": "a knight beside the enemy king",
    "bishop_king_contact": "a bishop beside the enemy king",
    "rook_king_contact": "a rook beside the enemy king",
    "queen_king_contact": "a queen beside the enemy king",
    "knight_battlefield_contact": "a knight in the zone before the enemy king",
    "bishop_battlefield_contact": "a bishop in the zone before the enemy king",
    "rook_battlefield_contact": "a rook in the zone before the enemy king",
    "queen_battlefield_contact": "a queen in the zone before the enemy king",
    "knight_battlefield_attack": "squares of the zone before the enemy king that knights attack",
    "bishop_battlefield_attack": "squares of the zone before the enemy king that bishops attack",
    "rook_battlefield_attack": "squares of the zone before the enemy king that rooks attack",
    "queen_battlefield_attack": "squares of the zone before the enemy king that queens attack",
    "king_activity": "the way of the king to weak and passed pawns, or to the centre",
    "locked_up_rook": "a rook shut in by its own king",
    "undefended_pieces": "pieces that nothing defends",
    "own_hanging_material": "pieces attacked and not well defended",
    "rookpawn": "pawns on the a- and h-file",
    "doubled_pawns": "pawns of a side on one file",
    "weak_pawns": "pawns that no neighbour can support",
    "isolated_pawns": "pawns without a neighbour",
    "blocked_pawns": "pawns with a piece directly before them",
    "passed_pawns": "passed pawns",
    "pawn_islands": "groups of pawns",
    "pinned_pieces": "pinned pieces",
    "bad_bishop": "pawns on the colour of a lone bishop",
    "opposite_colored_bishops": "bishops of opposite colours, which also halve the score",
    "stm": "the right to move",
}

# What the engine adds for a pawn, in its own units: 100 times the weights of material.
PAWN_MIDDLE_GAME = 250.148
PAWN_END_GAME = 205.895

# What a piece counts for the phase; the pieces of the start make 62.
PHASE_COUNTS = {"Q": 9, "R": 5, "B": 3, "N": 3}
FULL_PHASE = 62

# Material for which the engine takes another function instead of the sum of the terms.
ENDGAMES = ("KQK", "KRK", "KNNK", "KBNK", "KBBK", "KBPK", "KPK", "KRPKR", "KQKR")
