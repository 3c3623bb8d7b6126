// The steps of Mobility::compute() by themselves.

#include "evaluation/mobility.h"
#include "evaluation/mobility_find.h"

namespace orvelin {

template <int Side>
void Mobility::add_share(std::int32_t mobility, std::int32_t& share) {
    std::int32_t const signed_mobility = Side == 1 ? mobility : -mobility;
    share += signed_mobility;
    mobility_.all += signed_mobility;
}

void Mobility::compute_white_king_neighbourhood(ChessPosition const& position) {
    find_king_maps<white>(position);
}

void Mobility::compute_black_king_neighbourhood(ChessPosition const& position) {
    find_king_maps<black>(position);
}

void Mobility::compute_white_pawn_attacks(ChessPosition const& position) {
    find_pawn_attacks<white>(position);
}

void Mobility::compute_black_pawn_attacks(ChessPosition const& position) {
    find_pawn_attacks<black>(position);
}

void Mobility::compute_white_knight_attacks(ChessPosition const& position) {
    add_share<white>(find_knight_attacks<white>(position), mobility_.knight);
}

void Mobility::compute_black_knight_attacks(ChessPosition const& position) {
    add_share<black>(find_knight_attacks<black>(position), mobility_.knight);
}

void Mobility::compute_white_bishop_attacks(ChessPosition const& position) {
    add_share<white>(find_bishop_attacks<white>(position), mobility_.bishop);
}

void Mobility::compute_black_bishop_attacks(ChessPosition const& position) {
    add_share<black>(find_bishop_attacks<black>(position), mobility_.bishop);
}

void Mobility::compute_white_rook_attacks(ChessPosition const& position) {
    add_share<white>(find_rook_attacks<white>(position), mobility_.rook);
}

void Mobility::compute_black_rook_attacks(ChessPosition const& position) {
    add_share<black>(find_rook_attacks<black>(position), mobility_.rook);
}

void Mobility::compute_white_queen_attacks(ChessPosition const& position) {
    add_share<white>(find_queen_attacks<white>(position), mobility_.queen);
}

void Mobility::compute_black_queen_attacks(ChessPosition const& position) {
    add_share<black>(find_queen_attacks<black>(position), mobility_.queen);
}

void Mobility::compute_white_safe_queen_checks(ChessPosition const& position) {
    find_safe_queen_checks<white>(position);
}

void Mobility::compute_black_safe_queen_checks(ChessPosition const& position) {
    find_safe_queen_checks<black>(position);
}

void Mobility::compute_white_king_attacks(ChessPosition const& position) {
    add_king_attacks<white>(position);
}

void Mobility::compute_black_king_attacks(ChessPosition const& position) {
    add_king_attacks<black>(position);
}

}  // namespace orvelin
