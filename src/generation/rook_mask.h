#pragma once

#include "position/bit_board.h"
#include "position/square.h"

namespace orvelin {

/// For each square the squares whose occupation can change a rook's attack set: its file without
/// the first and the last rank and its rank without the outer files, without the square itself.
/// Immutable after construction.
class RookMask {
 public:
    RookMask();

    /// The mask of `square`; empty for no square.
    BitBoard const& get_mask(Square square) const { return mask_[square.id()]; }

 private:
    BitBoard mask_[65];
};

}  // namespace orvelin
