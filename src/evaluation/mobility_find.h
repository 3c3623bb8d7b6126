#pragma once

// The members of Mobility that find its maps, for the two sources that call them: inlined into
// compute(), where what one of them finds the next ones still have in registers, and once more in
// the steps by themselves.

#include <cstddef>
#include <cstdint>

#include "evaluation/battlefield.h"
#include "evaluation/counting.h"
#include "evaluation/mobility.h"
#include "generation/attacks.h"
#include "position/bit_board.h"
#include "position/chess_position.h"
#include "position/set_steps.h"
#include "position/side.h"
#include "position/square.h"

namespace orvelin {

namespace mobility_rows {

// Rows of the mobility table.
inline constexpr std::size_t knight_row = 0;
inline constexpr std::size_t bishop_row = knight_row + 9;
inline constexpr std::size_t rook_row = bishop_row + 14;
inline constexpr std::size_t queen_row = rook_row + 15;

static_assert(queen_row + 28 == Mobility::mobility_table.size());
static_assert(Mobility::mobility_table[knight_row] == -68);
static_assert(Mobility::mobility_table[bishop_row] == -64);
static_assert(Mobility::mobility_table[rook_row] == -40);
static_assert(Mobility::mobility_table[queen_row] == -22);
static_assert(Mobility::mobility_table[queen_row + 27] == 30);

/// Sums up the mobility of the pieces of one type; `attacks_from` gives the
/// attack set of a square. The sets come back by reference, which keeps them in
/// registers where a struct would not.
template <typename LookUp>
[[gnu::always_inline]] inline std::int32_t sum_over(BitBoard pieces, std::size_t row,
                                                    BitBoard allowed, BitBoard& attacks,
                                                    BitBoard& safe_squares, LookUp attacks_from) {
    std::int32_t mobility = 0;
    std::uint64_t attacked = 0;
    std::uint64_t all_safe = 0;
    while (pieces) {
        BitBoard const targets = attacks_from(pieces.take_first_square());
        BitBoard const safe = targets & allowed;
        attacked |= to_ull(targets);
        all_safe |= to_ull(safe);
        mobility += Mobility::mobility_table[row + static_cast<std::size_t>(count(safe))];
    }
    attacks = BitBoard(attacked);
    safe_squares = BitBoard(all_safe);
    return mobility;
}

}  // namespace mobility_rows

template <int Side>
[[gnu::always_inline]] inline void Mobility::find_king_maps(ChessPosition const& position) {
    BitBoard const block = king_block(SideOf<Side>::kings(position));
    maps_[Side].neighbourhood = block;
    maps_[Side].battlefield = battlefield<Side>(block);
}

template <int Side>
[[gnu::always_inline]] inline void Mobility::find_pawn_attacks(ChessPosition const& position) {
    BitBoard const attacks = pawn_attacks<Side>(SideOf<Side>::pawns(position));
    maps_[Side].pawn_attacks = attacks;
    maps_[Side].attacked = attacks;
}

template <int Side>
[[gnu::always_inline]] inline void Mobility::join(std::size_t type, BitBoard attacks) {
    maps_[Side].attacked |= attacks;
    maps_[Side].battlefield_attack[type] = attacks & maps_[SideOf<Side>::enemy].battlefield;
}

template <int Side>
[[gnu::always_inline]] inline std::int32_t Mobility::find_knight_attacks(
    ChessPosition const& position) {
    using own = SideOf<Side>;
    Attacks const& attacks = attacks_;
    BitBoard const unsafe = own::pawns(position) | maps_[own::enemy].pawn_attacks;
    BitBoard attacked;
    BitBoard safe;
    std::int32_t const mobility = mobility_rows::sum_over(
        own::knights(position), mobility_rows::knight_row, ~unsafe, attacked, safe,
        [&](Square square) { return attacks.knight(square); });
    maps_[Side].knight_attacks = attacked;
    join<Side>(knight, attacked);
    return mobility;
}

template <int Side>
[[gnu::always_inline]] inline std::int32_t Mobility::find_bishop_attacks(
    ChessPosition const& position) {
    using own = SideOf<Side>;
    Attacks const& attacks = attacks_;
    BitBoard const occupied = position.pieces() & ~own::queens(position);
    BitBoard const unsafe = own::pawns(position) | maps_[own::enemy].pawn_attacks;
    BitBoard attacked;
    BitBoard safe;
    std::int32_t const mobility = mobility_rows::sum_over(
        own::bishops(position), mobility_rows::bishop_row, ~unsafe, attacked, safe,
        [&](Square square) { return attacks.bishop(square, occupied); });
    maps_[Side].bishop_attacks = attacked;
    join<Side>(bishop, attacked);
    return mobility;
}

template <int Side>
[[gnu::always_inline]] inline std::int32_t Mobility::find_rook_attacks(
    ChessPosition const& position) {
    using own = SideOf<Side>;
    Attacks const& attacks = attacks_;
    BitBoard const occupied = position.pieces() & ~(own::rooks(position) | own::queens(position));
    side_maps_t const& other = maps_[own::enemy];
    BitBoard const unsafe =
        own::pawns(position) | other.pawn_attacks | other.knight_attacks | other.bishop_attacks;
    BitBoard attacked;
    BitBoard safe;
    std::int32_t const mobility = mobility_rows::sum_over(
        own::rooks(position), mobility_rows::rook_row, ~unsafe, attacked, safe,
        [&](Square square) { return attacks.rook(square, occupied); });
    maps_[Side].rook_attacks = attacked;
    join<Side>(rook, attacked);
    return mobility;
}

template <int Side>
[[gnu::always_inline]] inline std::int32_t Mobility::find_queen_attacks(
    ChessPosition const& position) {
    using own = SideOf<Side>;
    Attacks const& attacks = attacks_;
    BitBoard const occupied = position.pieces();
    side_maps_t const& other = maps_[own::enemy];
    BitBoard const unsafe = own::pawns(position) | other.pawn_attacks | other.knight_attacks |
                            other.bishop_attacks | other.rook_attacks;
    BitBoard attacked;
    BitBoard safe;
    std::int32_t const mobility = mobility_rows::sum_over(
        own::queens(position), mobility_rows::queen_row, ~unsafe, attacked, safe,
        [&](Square square) { return attacks.queen(square, occupied); });
    maps_[Side].queen_attacks = attacked;
    maps_[Side].queen_safe_squares = safe;
    join<Side>(queen, attacked);
    return mobility;
}

template <int Side>
[[gnu::always_inline]] inline void Mobility::find_safe_queen_checks(ChessPosition const& position) {
    using enemy = SideOf<enemy_of<Side>>;
    BitBoard const safe = maps_[Side].queen_safe_squares;
    BitBoard squares = Side == side::white ? position.white_queencheck_squares()
                                           : position.black_queencheck_squares();
    // The position knows them where each side has its one king.
    if (!single(position.white_king()) || !single(position.black_king()) ||
        position.board_is_inconsistent()) {
        squares = attacks_.queen(enemy::king_square(position), position.pieces());
    }
    maps_[Side].safe_queen_checks = safe & squares;
}

template <int Side>
[[gnu::always_inline]] inline void Mobility::add_king_attacks(ChessPosition const& position) {
    maps_[Side].attacked |= attacks_.king(SideOf<Side>::king_square(position));
}

}  // namespace orvelin
