#pragma once

#include "position/bit_board.h"
#include "position/masks.h"
#include "position/piece.h"

namespace orvelin {

/// Piece ids and directions of one side, for code that is written once for both. `Side` is the
/// number of the side as side to move: 1 White, 0 Black.
template <int Side>
struct SideIds {
    static constexpr bool white = Side == 1;
    static constexpr int pawn = white ? white_pawn : black_pawn;
    static constexpr int knight = white ? white_knight : black_knight;
    static constexpr int bishop = white ? white_bishop : black_bishop;
    static constexpr int rook = white ? white_rook : black_rook;
    static constexpr int queen = white ? white_queen : black_queen;
    static constexpr int king = white ? white_king : black_king;
    /// Id of a1 or a8.
    static constexpr int home_rank = white ? 0 : 56;
    /// From a square to the one in front of it.
    static constexpr int forward = white ? 8 : -8;
    /// The rank that a pawn reaches with its first single step.
    static constexpr BitBoard third_rank = white ? rank3 : rank6;
    static constexpr BitBoard last_rank = white ? rank8 : rank1;
};

}  // namespace orvelin
