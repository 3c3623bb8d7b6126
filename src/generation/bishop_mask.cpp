#include "generation/bishop_mask.h"

#include <cstdlib>

#include "position/masks.h"

namespace orvelin {

BishopMask::BishopMask() {
    for (int s = 0; s < 64; ++s) {
        Square const square(s);
        for (int t = 0; t < 64; ++t) {
            Square const other(t);
            int const files = std::abs(square.file_number() - other.file_number());
            int const ranks = std::abs(square.rank_number() - other.rank_number());
            if (files == ranks && s != t) {
                mask_[s].set_square(other);
            }
        }
        mask_[s] &= ~border;
    }
}

}  // namespace orvelin
