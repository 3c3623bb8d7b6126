#include "generation/magic_number.h"

#include "generation/magic_number_table.h"

namespace orvelin {

MagicNumber::MagicNumber() {
    for (int s = 0; s < 64; ++s) {
        bishop_[s] = bishop_magics[s];
        rook_[s] = rook_magics[s];
    }
}

}  // namespace orvelin
