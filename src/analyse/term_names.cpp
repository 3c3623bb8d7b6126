#include "analyse/term_names.h"

namespace orvelin::analyse {

namespace {

using enum term_group;

constexpr std::array<TermName, term::count> names{{
    {"material", "material", "the values of the pieces, the bishop pair and imbalances", material},
    {"mobility", "mobility", "safe squares of all pieces together", piece_activity},
    {"knight_mobility", "knight mobility", "safe squares of the knights", piece_activity},
    {"bishop_mobility", "bishop mobility", "safe squares of the bishops", piece_activity},
    {"rook_mobility", "rook mobility", "safe squares of the rooks", piece_activity},
    {"queen_mobility", "queen mobility", "safe squares of the queens", piece_activity},
    {"development", "development",
     "minor pieces at home, blocked centre pawns, rooks on open files", development},
    {"space", "space", "nothing: always 0", pawn_structure},
    {"pst_pawn", "pawn placement", "the squares on which the pawns stand", pawn_structure},
    {"pst_knight", "knight placement", "the squares on which the knights stand", piece_activity},
    {"pst_bishop", "bishop placement", "the squares on which the bishops stand", piece_activity},
    {"pst_rook", "rook placement", "the squares on which the rooks stand", piece_activity},
    {"pst_queen", "queen placement", "the squares on which the queens stand", piece_activity},
    {"pst_king", "king placement", "the squares on which the kings stand", king_safety},
    {"pawn_shield", "pawn shield", "own pawns before the king", king_safety},
    {"king_attack", "king attack", "attacks on the squares around the enemy king", king_safety},
    {"castling_rights", "castling rights", "whether a side may still castle", king_safety},
    {"pawn_storm", "pawn storm", "pawns that advance on the enemy king", king_safety},
    {"open_files_on_king", "open files at the king", "own open files at the enemy king",
     king_safety},
    {"safe_queencheck", "safe queen checks", "safe squares from which a queen gives check",
     king_safety},
    {"knight_king_contact", "knight next to the king", "a knight beside the enemy king",
     king_safety},
    {"bishop_king_contact", "bishop next to the king", "a bishop beside the enemy king",
     king_safety},
    {"rook_king_contact", "rook next to the king", "a rook beside the enemy king", king_safety},
    {"queen_king_contact", "queen next to the king", "a queen beside the enemy king", king_safety},
    {"knight_battlefield_contact", "knight near the king",
     "a knight in the zone before the enemy king", king_safety},
    {"bishop_battlefield_contact", "bishop near the king",
     "a bishop in the zone before the enemy king", king_safety},
    {"rook_battlefield_contact", "rook near the king", "a rook in the zone before the enemy king",
     king_safety},
    {"queen_battlefield_contact", "queen near the king",
     "a queen in the zone before the enemy king", king_safety},
    {"knight_battlefield_attack", "knight pressure on the king",
     "squares of the zone before the enemy king that knights attack", king_safety},
    {"bishop_battlefield_attack", "bishop pressure on the king",
     "squares of the zone before the enemy king that bishops attack", king_safety},
    {"rook_battlefield_attack", "rook pressure on the king",
     "squares of the zone before the enemy king that rooks attack", king_safety},
    {"queen_battlefield_attack", "queen pressure on the king",
     "squares of the zone before the enemy king that queens attack", king_safety},
    {"king_activity", "king activity",
     "the way of the king to weak and passed pawns, or to the centre", endgame},
    {"locked_up_rook", "trapped rook", "a rook shut in by its own king", piece_activity},
    {"undefended_pieces", "loose pieces", "pieces that nothing defends", threats},
    {"own_hanging_material", "hanging pieces", "pieces attacked and not well defended", threats},
    {"rookpawn", "rook pawns", "pawns on the a- and h-file", pawn_structure},
    {"doubled_pawns", "doubled pawns", "pawns of a side on one file", pawn_structure},
    {"weak_pawns", "weak pawns", "pawns that no neighbour can support", pawn_structure},
    {"isolated_pawns", "isolated pawns", "pawns without a neighbour", pawn_structure},
    {"blocked_pawns", "blocked pawns", "pawns with a piece directly before them", pawn_structure},
    {"passed_pawns", "passed pawns", "pawns that no enemy pawn can stop", passed_pawns},
    {"pawn_islands", "pawn islands", "groups of pawns with files between them", pawn_structure},
    {"pinned_pieces", "pins", "pieces pinned to their king", threats},
    {"bad_bishop", "bad bishop", "own pawns on the colour of a lone bishop", piece_activity},
    {"opposite_colored_bishops", "opposite-coloured bishops",
     "each side's lone bishop on the other colour, which also halves the score", endgame},
    {"stm", "right to move", "the side that is to move", development},
}};

constexpr std::array<std::string_view, term_group_count> group_names{
    "material",     "king safety", "piece activity", "pawn structure",
    "passed pawns", "threats",     "development",    "endgame"};

}  // namespace

std::array<TermName, term::count> const& term_names() {
    return names;
}

std::string_view group_name(term_group group) {
    return group_names[static_cast<std::size_t>(group)];
}

}  // namespace orvelin::analyse
