#pragma once

#include "position/bit_board.h"

namespace orvelin {

/// What the pieces of one side attack. Slider sets may reach through own pieces, so that they are
/// bounds for moves: what is not in them is out of reach.
struct attack_sets_t {
    BitBoard knight_attacks;
    BitBoard bishop_attacks;
    BitBoard rook_attacks;
    BitBoard queen_attacks;
    /// Union of all attacks, of pawns and one king too.
    BitBoard attacked;
};

/// Bounds of whoever knows nothing.
inline constexpr attack_sets_t unknown_attacks{~BitBoard(), ~BitBoard(), ~BitBoard(), ~BitBoard(),
                                               ~BitBoard()};

}  // namespace orvelin
