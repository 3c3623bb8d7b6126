#include "generation/rook_mask.h"

#include "position/masks.h"

namespace orvelin {

RookMask::RookMask() {
    for (int s = 0; s < 64; ++s) {
        Square const square(s);
        BitBoard const file = BitBoard(to_ull(a_file) << square.file_number()) & ~hborder;
        BitBoard const rank = BitBoard(to_ull(rank1) << (8 * square.rank_number())) & ~vborder;
        mask_[s] = file | rank;
        mask_[s].reset_square(square);
    }
}

}  // namespace orvelin
