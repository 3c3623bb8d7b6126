#pragma once

#include "position/bit_board.h"
#include "position/masks.h"
#include "position/side.h"

/// Steps of whole sets of squares: every member takes the step at once, and what would leave the
/// board is dropped. `Side` is the number of a side as side to move: 1 White, 0 Black.
namespace orvelin {

/// The squares left and right of each member.
constexpr BitBoard beside(BitBoard const& set) {
    return ((set << 1) & not_a_file) | ((set >> 1) & not_h_file);
}

/// The members and all squares a king step away from one of them.
constexpr BitBoard king_block(BitBoard const& set) {
    BitBoard const row = set | beside(set);
    return row | (row << 8) | (row >> 8);
}

/// The members and all squares above them on their files.
constexpr BitBoard fill_up(BitBoard set) {
    set |= set << 8;
    set |= set << 16;
    set |= set << 32;
    return set;
}

/// The members and all squares below them on their files.
constexpr BitBoard fill_down(BitBoard set) {
    set |= set >> 8;
    set |= set >> 16;
    set |= set >> 32;
    return set;
}

/// Every square of each file that holds a member.
constexpr BitBoard file_fill(BitBoard const& set) {
    return fill_up(set) | fill_down(set);
}

/// Moves the set by `ranks` ranks, 0 to 7, in the direction of the side's pawns.
template <int Side>
constexpr BitBoard ahead(BitBoard const& set, int ranks) {
    if constexpr (Side == side::white) {
        return set << (8 * ranks);
    } else {
        return set >> (8 * ranks);
    }
}

/// The members and all squares ahead of them as the side's pawns go.
template <int Side>
constexpr BitBoard fill_ahead(BitBoard const& set) {
    if constexpr (Side == side::white) {
        return fill_up(set);
    } else {
        return fill_down(set);
    }
}

/// The squares that the side's pawns on the members attack.
template <int Side>
constexpr BitBoard pawn_attacks(BitBoard const& set) {
    return beside(ahead<Side>(set, 1));
}

static_assert(beside(a_file) == b_file && beside(h_file) == g_file);
static_assert(pawn_attacks<side::white>(rank7) == rank8 &&
              pawn_attacks<side::black>(rank2) == rank1);

}  // namespace orvelin
