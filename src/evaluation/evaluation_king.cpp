#include <array>
#include <cstddef>
#include <cstdint>

#include "evaluation/evaluation.h"
#include "evaluation/side_men.h"
#include "position/chess_position.h"
#include "position/masks.h"
#include "position/set_steps.h"

namespace orvelin {

namespace {

/// The attack weights are in 1/256.
constexpr double king_attack_scale = 0.00390625;

/// The open files are those of the pawn record as it stands, empty for a board without pawns.
template <int Side>
int pawn_shield(ChessPosition const& position, BitBoard const& neighbourhood,
                BitBoard const& open_files) {
    using men = SideMen<Side>;
    if (men::kings(position) & open_files) return 0;
    return (men::pawns(position) & (neighbourhood | ahead<Side>(neighbourhood, 1))).popcount();
}

float castling_rights_term(unsigned rights) {
    bool const white_keeps = (rights & 0x00FFU) != 0;
    bool const black_keeps = (rights & 0xFF00U) != 0;
    if (white_keeps == black_keeps) return 0.0F;
    return white_keeps ? 20.0F : -20.0F;
}

/// Pieces in the order of the terms: knights, bishops, rooks, queens.
template <int Side>
std::array<BitBoard, 4> pieces_by_type(ChessPosition const& position) {
    using men = SideMen<Side>;
    return {men::knights(position), men::bishops(position), men::rooks(position),
            men::queens(position)};
}

/// Only presence counts, not the number.
int presence(BitBoard const& men, BitBoard const& zone) {
    return (men & zone) ? 1 : 0;
}

/// Squares of the enemy battlefields attacked by each type, white minus black.
std::array<int, 4> battlefield_attack_counts(Mobility const& maps) {
    return {maps.white_knight_battlefield_attack().popcount() -
                maps.black_knight_battlefield_attack().popcount(),
            maps.white_bishop_battlefield_attack().popcount() -
                maps.black_bishop_battlefield_attack().popcount(),
            maps.white_rook_battlefield_attack().popcount() -
                maps.black_rook_battlefield_attack().popcount(),
            maps.white_queen_battlefield_attack().popcount() -
                maps.black_queen_battlefield_attack().popcount()};
}

/// Where a king of an end game without pawns stands: the middle is good, the edge is bad.
int king_centralisation(BitBoard const& king) {
    return presence(king, centre) + presence(king, bigcentre) - presence(king, border);
}

}  // namespace

void Evaluation::compute_king_safety() {
    auto& terms = variable_vector_;
    BitBoard const white_near = mobility_.white_king_neighbourhood();
    BitBoard const black_near = mobility_.black_king_neighbourhood();
    BitBoard const white_field = mobility_.white_king_battlefield();
    BitBoard const black_field = mobility_.black_king_battlefield();

    int const white_shield = pawn_shield<1>(position_, white_near, white_open_files_);
    int const black_shield = pawn_shield<0>(position_, black_near, black_open_files_);
    white_pawn_shield_ = static_cast<std::uint32_t>(white_shield);
    black_pawn_shield_ = static_cast<std::uint32_t>(black_shield);
    terms[term::pawn_shield] = static_cast<float>((white_shield - black_shield) * 10);
    terms[term::castling_rights] =
        castling_rights_term(static_cast<unsigned>(position_.castlingrights()));
    terms[term::pawn_storm] =
        static_cast<float>(((position_.white_pawn() & black_field).popcount() -
                            (position_.black_pawn() & white_field).popcount()) *
                           5);
    terms[term::open_files_on_king] =
        static_cast<float>(((black_near & white_open_files_).popcount() -
                            (white_near & black_open_files_).popcount()) *
                           15);
    terms[term::king_attack] = static_cast<float>(mobility_.king_safety() * king_attack_scale);

    auto const white_men = pieces_by_type<1>(position_);
    auto const black_men = pieces_by_type<0>(position_);
    for (std::size_t type = 0; type < white_men.size(); ++type) {
        terms[term::knight_king_contact + type] = static_cast<float>(
            presence(white_men[type], black_near) - presence(black_men[type], white_near));
        terms[term::knight_battlefield_contact + type] = static_cast<float>(
            presence(white_men[type], black_field) - presence(black_men[type], white_field));
    }
    std::array<int, 4> const battlefield_attacks = battlefield_attack_counts(mobility_);
    for (std::size_t type = 0; type < battlefield_attacks.size(); ++type) {
        terms[term::knight_battlefield_attack + type] =
            static_cast<float>(battlefield_attacks[type]);
    }
}

void Evaluation::compute_king_activity() {
    int white = 0;
    int black = 0;
    if (position_.white_pawn() | position_.black_pawn()) {
        Square const white_king = position_.white_kingsfield();
        Square const black_king = position_.black_kingsfield();
        white = -2 * distance_(white_king, black_weak_) - 3 * distance_(white_king, white_ahead_);
        black = -2 * distance_(black_king, white_weak_) - 3 * distance_(black_king, black_ahead_);
    } else {
        white = king_centralisation(position_.white_king());
        black = king_centralisation(position_.black_king());
    }
    variable_vector_[term::king_activity] = static_cast<float>(white - black) * eg_phase_;
}

void Evaluation::compute_pinned_pieces() {
    BitBoard const pinned = position_.pinned_pieces();
    variable_vector_[term::pinned_pieces] =
        static_cast<float>((pinned & position_.black_pieces()).popcount() -
                           (pinned & position_.white_pieces()).popcount());
}

void Evaluation::compute_opposite_colored_bishops() {
    BitBoard const white = position_.white_bishop();
    BitBoard const both = white | position_.black_bishop();
    bool const opposite =
        both.popcount() == 2 && white.popcount() == 1 && (both & white_squares).popcount() == 1;
    variable_vector_[term::opposite_colored_bishops] = opposite ? 1.0F : 0.0F;
}

int Evaluation::king_safety() const {
    return static_cast<int>(variable_vector_[term::king_attack]);
}

}  // namespace orvelin
