#include "evaluation/mobility.h"

#include "evaluation/side_men.h"
#include "generation/attacks.h"
#include "position/chess_position.h"
#include "position/set_steps.h"

namespace orvelin {

namespace {

// Rows of the mobility table.
constexpr std::size_t knight_row = 0;
constexpr std::size_t bishop_row = knight_row + 9;
constexpr std::size_t rook_row = bishop_row + 14;
constexpr std::size_t queen_row = rook_row + 15;

static_assert(queen_row + 28 == Mobility::mobility_table.size());
static_assert(Mobility::mobility_table[knight_row] == -68);
static_assert(Mobility::mobility_table[bishop_row] == -64);
static_assert(Mobility::mobility_table[rook_row] == -40);
static_assert(Mobility::mobility_table[queen_row] == -22);
static_assert(Mobility::mobility_table[queen_row + 27] == 30);

/// What the pieces of one type of a side add up to.
struct piece_sum_t {
    std::int32_t mobility = 0;
    BitBoard attacks;
    BitBoard safe_squares;
};

/// Sums the pieces of one type up; `attacks_from` gives the attack set of a square.
template <typename LookUp>
piece_sum_t sum_over(BitBoard pieces, std::size_t row, BitBoard const& unsafe,
                     LookUp attacks_from) {
    piece_sum_t sum;
    while (pieces) {
        BitBoard const targets = attacks_from(pieces.get_reset_square().get_unique_square());
        BitBoard const safe = targets & ~unsafe;
        sum.attacks |= targets;
        sum.safe_squares |= safe;
        sum.mobility += Mobility::mobility_table[row + static_cast<std::size_t>(safe.popcount())];
    }
    return sum;
}

}  // namespace

Mobility::Mobility(Attacks const& attacks) : attacks_(attacks) {}

void Mobility::compute(ChessPosition const& position) {
    safe_mobility_ = 0;
    safe_knight_mobility_ = 0;
    safe_bishop_mobility_ = 0;
    safe_rook_mobility_ = 0;
    safe_queen_mobility_ = 0;
    battlefield_attack_ = {};
    compute_white_king_neighbourhood(position);
    compute_black_king_neighbourhood(position);
    compute_white_pawn_attacks(position);
    compute_black_pawn_attacks(position);
    compute_white_knight_attacks(position);
    compute_black_knight_attacks(position);
    compute_white_bishop_attacks(position);
    compute_black_bishop_attacks(position);
    compute_white_rook_attacks(position);
    compute_black_rook_attacks(position);
    compute_white_queen_attacks(position);
    compute_black_queen_attacks(position);
    compute_white_safe_queen_checks(position);
    compute_black_safe_queen_checks(position);
    compute_white_king_attacks(position);
    compute_black_king_attacks(position);
}

template <int Side>
void Mobility::compute_pawn_attacks(ChessPosition const& position) {
    BitBoard const attacks = pawn_attacks<Side>(SideMen<Side>::pawns(position));
    maps_[Side].pawn_attacks = attacks;
    attacked_[Side] = attacks;
}

template <int Side>
void Mobility::join(std::size_t type, BitBoard const& attacks, std::int32_t mobility,
                    std::int32_t& share) {
    attacked_[Side] |= attacks;
    battlefield_attack_[Side][type] = attacks & battlefield_[SideMen<Side>::enemy];
    std::int32_t const signed_mobility = Side == 1 ? mobility : -mobility;
    share += signed_mobility;
    safe_mobility_ += signed_mobility;
}

template <int Side>
void Mobility::compute_knight_attacks(ChessPosition const& position) {
    using men = SideMen<Side>;
    BitBoard const unsafe = men::pawns(position) | maps_[men::enemy].pawn_attacks;
    piece_sum_t const sum = sum_over(men::knights(position), knight_row, unsafe,
                                     [&](Square const& square) { return attacks_.knight(square); });
    maps_[Side].knight_attacks = sum.attacks;
    join<Side>(knight, sum.attacks, sum.mobility, safe_knight_mobility_);
}

template <int Side>
void Mobility::compute_bishop_attacks(ChessPosition const& position) {
    using men = SideMen<Side>;
    BitBoard const occupied = position.pieces() & ~men::queens(position);
    BitBoard const unsafe = men::pawns(position) | maps_[men::enemy].pawn_attacks;
    piece_sum_t const sum =
        sum_over(men::bishops(position), bishop_row, unsafe,
                 [&](Square const& square) { return attacks_.bishop(square, occupied); });
    maps_[Side].bishop_attacks = sum.attacks;
    join<Side>(bishop, sum.attacks, sum.mobility, safe_bishop_mobility_);
}

template <int Side>
void Mobility::compute_rook_attacks(ChessPosition const& position) {
    using men = SideMen<Side>;
    BitBoard const occupied = position.pieces() & ~(men::rooks(position) | men::queens(position));
    side_maps_t const& other = maps_[men::enemy];
    BitBoard const unsafe =
        men::pawns(position) | other.pawn_attacks | other.knight_attacks | other.bishop_attacks;
    piece_sum_t const sum =
        sum_over(men::rooks(position), rook_row, unsafe,
                 [&](Square const& square) { return attacks_.rook(square, occupied); });
    maps_[Side].rook_attacks = sum.attacks;
    join<Side>(rook, sum.attacks, sum.mobility, safe_rook_mobility_);
}

template <int Side>
void Mobility::compute_queen_attacks(ChessPosition const& position) {
    using men = SideMen<Side>;
    BitBoard const occupied = position.pieces();
    side_maps_t const& other = maps_[men::enemy];
    BitBoard const unsafe = men::pawns(position) | other.pawn_attacks | other.knight_attacks |
                            other.bishop_attacks | other.rook_attacks;
    piece_sum_t const sum =
        sum_over(men::queens(position), queen_row, unsafe,
                 [&](Square const& square) { return attacks_.queen(square, occupied); });
    maps_[Side].queen_attacks = sum.attacks;
    maps_[Side].queen_safe_squares = sum.safe_squares;
    join<Side>(queen, sum.attacks, sum.mobility, safe_queen_mobility_);
}

void Mobility::compute_white_pawn_attacks(ChessPosition const& position) {
    compute_pawn_attacks<white>(position);
}

void Mobility::compute_black_pawn_attacks(ChessPosition const& position) {
    compute_pawn_attacks<black>(position);
}

void Mobility::compute_white_knight_attacks(ChessPosition const& position) {
    compute_knight_attacks<white>(position);
}

void Mobility::compute_black_knight_attacks(ChessPosition const& position) {
    compute_knight_attacks<black>(position);
}

void Mobility::compute_white_bishop_attacks(ChessPosition const& position) {
    compute_bishop_attacks<white>(position);
}

void Mobility::compute_black_bishop_attacks(ChessPosition const& position) {
    compute_bishop_attacks<black>(position);
}

void Mobility::compute_white_rook_attacks(ChessPosition const& position) {
    compute_rook_attacks<white>(position);
}

void Mobility::compute_black_rook_attacks(ChessPosition const& position) {
    compute_rook_attacks<black>(position);
}

void Mobility::compute_white_queen_attacks(ChessPosition const& position) {
    compute_queen_attacks<white>(position);
}

void Mobility::compute_black_queen_attacks(ChessPosition const& position) {
    compute_queen_attacks<black>(position);
}

}  // namespace orvelin
