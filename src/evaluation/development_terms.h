#pragma once

#include <array>
#include <cstddef>
#include <cstdint>

#include "evaluation/counting.h"
#include "position/bit_board.h"
#include "position/chess_position.h"
#include "position/masks.h"
#include "position/set_steps.h"
#include "position/side.h"

namespace orvelin::development_terms {

/// Penalty for blocked pawns on the c, d and e files, in this order of bits.
inline constexpr std::array<int, 8> blocked_centre{0, 10, 20, 30, 20, 30, 40, 50};

/// What one side's development is worth from its own view. `open_files` are the files without its
/// pawns as they stand on the board, which is not what the pawn record says of a board without
/// pawns.
template <int Side>
inline int development_of(ChessPosition const& position, BitBoard open_files) {
    using own = SideOf<Side>;
    constexpr int home = Side == side::white ? 0 : 56;
    constexpr int c_pawn = Side == side::white ? 10 : 50;
    BitBoard const minors = own::knights(position) | own::bishops(position);
    BitBoard const blocked = own::pawns(position) & ahead<own::enemy>(position.pieces(), 1);
    std::uint64_t const at_home = (to_ull(minors) >> home) & 0xFF;
    auto const centre_pawns = static_cast<std::size_t>((to_ull(blocked) >> c_pawn) & 7);

    return 20 * (count(own::rooks(position) & open_files) - bits_of_quarter(at_home)) -
           blocked_centre[centre_pawns];
}

}  // namespace orvelin::development_terms
