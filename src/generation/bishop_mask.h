#pragma once

#include "position/bit_board.h"
#include "position/square.h"

namespace orvelin {

/// For each square the squares whose occupation can change a bishop's attack set: its diagonals
/// without the border and without the square itself. Immutable after construction.
class BishopMask {
 public:
    BishopMask();

    /// The mask of `square`; empty for no square.
    BitBoard const& get_mask(Square square) const { return mask_[square.id()]; }

 private:
    BitBoard mask_[65];
};

}  // namespace orvelin
