#include "evaluation/mobility.h"
#include "evaluation/side_men.h"
#include "generation/attacks.h"
#include "position/chess_position.h"
#include "position/set_steps.h"

namespace orvelin {

static_assert(Mobility::attack_weights.front() == 0);
static_assert(Mobility::attack_weights[2] == 128);
static_assert(Mobility::attack_weights.back() == 256);

template <int Side>
void Mobility::compute_king_neighbourhood(ChessPosition const& position) {
    BitBoard const block = king_block(SideMen<Side>::kings(position));
    neighbourhood_[Side] = block;
    battlefield_[Side] = block | ahead<Side>(block, 2) | ahead<Side>(block, 3);
}

template <int Side>
void Mobility::compute_safe_queen_checks(ChessPosition const& position) {
    Square const king = SideMen<1 - Side>::king(position);
    maps_[Side].safe_queen_checks =
        attacks_.queen(king, position.pieces()) & maps_[Side].queen_safe_squares;
}

template <int Side>
void Mobility::compute_king_attacks(ChessPosition const& position) {
    attacked_[Side] |= attacks_.king(SideMen<Side>::king(position));
}

int Mobility::safe_queen_checks() const {
    return maps_[white].safe_queen_checks.popcount() - maps_[black].safe_queen_checks.popcount();
}

int Mobility::undefended_pieces(ChessPosition const& position) const {
    return (position.black_pieces() & ~attacked_[black]).popcount() -
           (position.white_pieces() & ~attacked_[white]).popcount();
}

template <int Side>
BitBoard Mobility::hanging(ChessPosition const& position) const {
    using men = SideMen<Side>;
    side_maps_t const& other = maps_[men::enemy];
    BitBoard const by_minor = other.pawn_attacks | other.knight_attacks | other.bishop_attacks;
    return (men::all(position) & attacked_[men::enemy] & ~attacked_[Side]) |
           ((men::knights(position) | men::bishops(position)) & other.pawn_attacks) |
           (men::rooks(position) & by_minor) |
           (men::queens(position) & (by_minor | other.rook_attacks));
}

int Mobility::hanging_pieces(ChessPosition const& position) const {
    return hanging<black>(position).popcount() - hanging<white>(position).popcount();
}

template <int Side>
std::int32_t Mobility::attackweight_king() const {
    side_maps_t const& other = maps_[1 - Side];
    BitBoard const near = neighbourhood_[Side];
    std::size_t const types = std::size_t{(near & other.pawn_attacks) ? 1U : 0U} +
                              std::size_t{(near & other.knight_attacks) ? 1U : 0U} +
                              std::size_t{(near & other.bishop_attacks) ? 1U : 0U} +
                              std::size_t{(near & other.rook_attacks) ? 1U : 0U} +
                              std::size_t{(near & other.queen_attacks) ? 1U : 0U};
    return attack_weights[types];
}

template <int Side>
std::int32_t Mobility::attacks_on_king() const {
    side_maps_t const& other = maps_[1 - Side];
    BitBoard const near = neighbourhood_[Side];
    return 10 * (near & other.pawn_attacks).popcount() +
           20 * (near & other.knight_attacks).popcount() +
           20 * (near & other.bishop_attacks).popcount() +
           40 * (near & other.rook_attacks).popcount() +
           80 * (near & other.queen_attacks).popcount();
}

std::int32_t Mobility::attackweight_white_king() const {
    return attackweight_king<white>();
}

std::int32_t Mobility::attackweight_black_king() const {
    return attackweight_king<black>();
}

std::int32_t Mobility::attacks_on_white_king() const {
    return attacks_on_king<white>();
}

std::int32_t Mobility::attacks_on_black_king() const {
    return attacks_on_king<black>();
}

std::int32_t Mobility::king_safety() const {
    return attackweight_black_king() * attacks_on_black_king() -
           attackweight_white_king() * attacks_on_white_king();
}

void Mobility::compute_white_king_neighbourhood(ChessPosition const& position) {
    compute_king_neighbourhood<white>(position);
}

void Mobility::compute_black_king_neighbourhood(ChessPosition const& position) {
    compute_king_neighbourhood<black>(position);
}

void Mobility::compute_white_safe_queen_checks(ChessPosition const& position) {
    compute_safe_queen_checks<white>(position);
}

void Mobility::compute_black_safe_queen_checks(ChessPosition const& position) {
    compute_safe_queen_checks<black>(position);
}

void Mobility::compute_white_king_attacks(ChessPosition const& position) {
    compute_king_attacks<white>(position);
}

void Mobility::compute_black_king_attacks(ChessPosition const& position) {
    compute_king_attacks<black>(position);
}

}  // namespace orvelin
