#include "generation/attacks.h"

#include "position/masks.h"
#include "position/set_steps.h"

namespace orvelin {

Attacks::Attacks() {
    for (int s = 0; s < 64; ++s) {
        knight_[s] = knight_moves(Square(s).bitboard());
    }
    for (int s = 0; s < 64; ++s) {
        king_[s] = king_moves(Square(s).bitboard());
    }
}

BitBoard Attacks::knight_moves(BitBoard const& b) {
    return (((b << 17) | (b >> 15)) & not_a_file) | (((b << 15) | (b >> 17)) & not_h_file) |
           (((b << 10) | (b >> 6)) & not_ab_file) | (((b << 6) | (b >> 10)) & not_gh_file);
}

BitBoard Attacks::king_moves(BitBoard const& b) {
    return king_block(b) & ~b;
}

}  // namespace orvelin
