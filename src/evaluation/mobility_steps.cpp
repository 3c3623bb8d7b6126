// The steps of Mobility::compute() by themselves.

#include "evaluation/mobility.h"
#include "evaluation/mobility_find.h"
#include "position/side.h"

namespace orvelin {

template <int Side>
void Mobility::add_share(std::int32_t mobility, std::int32_t& share) {
    std::int32_t const signed_mobility = Side == side::white ? mobility : -mobility;
    share += signed_mobility;
    mobility_.all += signed_mobility;
}

void Mobility::compute_white_king_neighbourhood(ChessPosition const& position) {
    find_king_maps<side::white>(position);
}

void Mobility::compute_black_king_neighbourhood(ChessPosition const& position) {
    find_king_maps<side::black>(position);
}

void Mobility::compute_white_pawn_attacks(ChessPosition const& position) {
    find_pawn_attacks<side::white>(position);
}

void Mobility::compute_black_pawn_attacks(ChessPosition const& position) {
    find_pawn_attacks<side::black>(position);
}

void Mobility::compute_white_knight_attacks(ChessPosition const& position) {
    add_share<side::white>(find_knight_attacks<side::white>(position), mobility_.knight);
}

void Mobility::compute_black_knight_attacks(ChessPosition const& position) {
    add_share<side::black>(find_knight_attacks<side::black>(position), mobility_.knight);
}

void Mobility::compute_white_bishop_attacks(ChessPosition const& position) {
    add_share<side::white>(find_bishop_attacks<side::white>(position), mobility_.bishop);
}

void Mobility::compute_black_bishop_attacks(ChessPosition const& position) {
    add_share<side::black>(find_bishop_attacks<side::black>(position), mobility_.bishop);
}

void Mobility::compute_white_rook_attacks(ChessPosition const& position) {
    add_share<side::white>(find_rook_attacks<side::white>(position), mobility_.rook);
}

void Mobility::compute_black_rook_attacks(ChessPosition const& position) {
    add_share<side::black>(find_rook_attacks<side::black>(position), mobility_.rook);
}

void Mobility::compute_white_queen_attacks(ChessPosition const& position) {
    add_share<side::white>(find_queen_attacks<side::white>(position), mobility_.queen);
}

void Mobility::compute_black_queen_attacks(ChessPosition const& position) {
    add_share<side::black>(find_queen_attacks<side::black>(position), mobility_.queen);
}

void Mobility::compute_white_safe_queen_checks(ChessPosition const& position) {
    find_safe_queen_checks<side::white>(position);
}

void Mobility::compute_black_safe_queen_checks(ChessPosition const& position) {
    find_safe_queen_checks<side::black>(position);
}

void Mobility::compute_white_king_attacks(ChessPosition const& position) {
    add_king_attacks<side::white>(position);
}

void Mobility::compute_black_king_attacks(ChessPosition const& position) {
    add_king_attacks<side::black>(position);
}

}  // namespace orvelin
