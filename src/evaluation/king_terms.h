#pragma once

#include <array>
#include <cstddef>
#include <cstdint>

#include "evaluation/counting.h"
#include "evaluation/king_zone.h"
#include "evaluation/linear_model.h"
#include "evaluation/mobility.h"
#include "evaluation/pht_record.h"
#include "position/bit_board.h"
#include "position/chess_position.h"
#include "position/side.h"

/// What is counted around the two kings.
namespace orvelin::king_terms {

/// The attack weights are in 1/256.
inline constexpr float king_attack_scale = 0.00390625F;

/// 20 for White's rights, -20 for Black's; those of both sides cancel, however many there are
/// (oddity 109).
inline int castling_rights(unsigned rights) {
    bool const white_keeps = (rights & 0x00FFU) != 0;
    bool const black_keeps = (rights & 0xFF00U) != 0;
    return 20 * ((white_keeps ? 1 : 0) - (black_keeps ? 1 : 0));
}

/// Pieces in the order of the terms: knights, bishops, rooks, queens.
using by_type_t = std::array<BitBoard, 4>;

template <int Side>
by_type_t pieces_by_type(ChessPosition const& position) {
    using own = SideOf<Side>;
    return {own::knights(position), own::bishops(position), own::rooks(position),
            own::queens(position)};
}

inline BitBoard all_types(by_type_t const& pieces) {
    return pieces[0] | pieces[1] | pieces[2] | pieces[3];
}

/// Pieces that stand next to the enemy king or in its battlefield.
template <bool OneKing>
[[gnu::always_inline]] inline void find_contacts(terms_t& terms, ChessPosition const& position,
                                                 KingZone<side::white, OneKing> const& white,
                                                 KingZone<side::black, OneKing> const& black) {
    by_type_t const white_pieces = pieces_by_type<side::white>(position);
    by_type_t const black_pieces = pieces_by_type<side::black>(position);
    for (std::size_t type = 0; type < white_pieces.size(); ++type) {
        terms.integers[term::knight_battlefield_contact + type] =
            presence(white_pieces[type], black.field()) -
            presence(black_pieces[type], white.field());
    }
    // In a loop of its own, which becomes one store: the blend loads four terms at a time, and four
    // stores before would hold it up.
    for (std::size_t type = 0; type < white_pieces.size(); ++type) {
        terms.integers[term::knight_king_contact + type] = 0;
    }
    // Pieces next to the enemy king are rare.
    if ((all_types(white_pieces) & black.near()) | (all_types(black_pieces) & white.near())) {
        for (std::size_t type = 0; type < white_pieces.size(); ++type) {
            terms.integers[term::knight_king_contact + type] =
                presence(white_pieces[type], black.near()) -
                presence(black_pieces[type], white.near());
        }
    }
}

/// Squares of the enemy king's battlefield that the pieces attack.
[[gnu::always_inline]] inline void find_battlefield_attacks(terms_t& terms, Mobility const& maps) {
    terms.integers[term::knight_battlefield_attack] =
        count(maps.white_knight_battlefield_attack()) -
        count(maps.black_knight_battlefield_attack());
    terms.integers[term::bishop_battlefield_attack] =
        count(maps.white_bishop_battlefield_attack()) -
        count(maps.black_bishop_battlefield_attack());
    terms.integers[term::rook_battlefield_attack] =
        count(maps.white_rook_battlefield_attack()) - count(maps.black_rook_battlefield_attack());
    terms.integers[term::queen_battlefield_attack] =
        count(maps.white_queen_battlefield_attack()) - count(maps.black_queen_battlefield_attack());
}

/// The terms that the pawns around the kings decide.
inline void find_pawn_cover(king_relations_t& relations, ChessPosition const& position,
                            Mobility const& maps, PHTrecord const& pawns) {
    KingZone<side::white, false> const white(position, maps);
    KingZone<side::black, false> const black(position, maps);
    BitBoard const white_open = pawns.white_open_files;
    BitBoard const black_open = pawns.black_open_files;
    relations.pawn_shield = static_cast<std::int16_t>(
        (white.pawn_shield(position, white_open) - black.pawn_shield(position, black_open)) * 10);
    relations.open_files_on_king = static_cast<std::int16_t>(
        (black.count_near(white_open) - white.count_near(black_open)) * 15);
    relations.pawn_storm = static_cast<std::int16_t>(
        (black.count_field(position.white_pawn()) - white.count_field(position.black_pawn())) * 5);
}

/// All terms of the kings but their activity, on the maps and the relations of the position.
/// `OneKing` says that neither side has several kings, see KingZone.
template <bool OneKing>
[[gnu::always_inline]] inline void find(terms_t& terms, ChessPosition const& position,
                                        Mobility const& maps, king_relations_t const& relations) {
    KingZone<side::white, OneKing> const white(position, maps);
    KingZone<side::black, OneKing> const black(position, maps);

    terms.integers[term::locked_up_rook] =
        black.shut_in_rook(position) - white.shut_in_rook(position);
    terms.integers[term::castling_rights] =
        castling_rights(static_cast<unsigned>(position.castlingrights()));
    terms.integers[term::pawn_shield] = relations.pawn_shield;
    terms.integers[term::open_files_on_king] = relations.open_files_on_king;
    terms.set_float<term::king_attack>(
        static_cast<float>(black.pressure(maps) - white.pressure(maps)) * king_attack_scale);
    terms.integers[term::pawn_storm] = relations.pawn_storm;
    find_battlefield_attacks(terms, maps);
    find_contacts(terms, position, white, black);
}

}  // namespace orvelin::king_terms
