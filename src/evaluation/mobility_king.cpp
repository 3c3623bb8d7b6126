#include "evaluation/mobility.h"
#include "position/side.h"

namespace orvelin {

static_assert(Mobility::attack_weights.front() == 0);
static_assert(Mobility::attack_weights[2] == 128);
static_assert(Mobility::attack_weights.back() == 256);

template <int Side>
std::int32_t Mobility::attackweight_king() const {
    side_maps_t const& other = maps_[enemy_of<Side>];
    BitBoard const near = maps_[Side].neighbourhood;
    std::size_t const types = std::size_t{(near & other.pawn_attacks) ? 1U : 0U} +
                              std::size_t{(near & other.knight_attacks) ? 1U : 0U} +
                              std::size_t{(near & other.bishop_attacks) ? 1U : 0U} +
                              std::size_t{(near & other.rook_attacks) ? 1U : 0U} +
                              std::size_t{(near & other.queen_attacks) ? 1U : 0U};
    return attack_weights[types];
}

template <int Side>
std::int32_t Mobility::attacks_on_king() const {
    side_maps_t const& other = maps_[enemy_of<Side>];
    BitBoard const near = maps_[Side].neighbourhood;
    return 10 * (near & other.pawn_attacks).popcount() +
           20 * (near & other.knight_attacks).popcount() +
           20 * (near & other.bishop_attacks).popcount() +
           40 * (near & other.rook_attacks).popcount() +
           80 * (near & other.queen_attacks).popcount();
}

std::int32_t Mobility::attackweight_white_king() const {
    return attackweight_king<side::white>();
}

std::int32_t Mobility::attackweight_black_king() const {
    return attackweight_king<side::black>();
}

std::int32_t Mobility::attacks_on_white_king() const {
    return attacks_on_king<side::white>();
}

std::int32_t Mobility::attacks_on_black_king() const {
    return attacks_on_king<side::black>();
}

// One kind of attacker alone has weight 0 (oddity 107).
std::int32_t Mobility::king_safety() const {
    return attackweight_black_king() * attacks_on_black_king() -
           attackweight_white_king() * attacks_on_white_king();
}

}  // namespace orvelin
