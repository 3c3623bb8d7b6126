#include "evaluation/distance.h"

#include <algorithm>
#include <cstdlib>

#include "position/set_steps.h"

namespace orvelin {

Distance::Distance() {
    constexpr int square_count = 64;
    for (auto& row : squares_) {
        row.fill(unreachable);
    }
    for (int from = 0; from < square_count; ++from) {
        auto& row = squares_[static_cast<std::size_t>(from)];
        for (int to = 0; to < square_count; ++to) {
            int const files = std::abs((from & 7) - (to & 7));
            int const ranks = std::abs((from >> 3) - (to >> 3));
            row[static_cast<std::size_t>(to)] = static_cast<std::uint8_t>(std::max(files, ranks));
        }
        auto& rings = rings_[static_cast<std::size_t>(from)];
        rings[0] = Square(from).bitboard();
        for (std::size_t ring = 1; ring < ring_count; ++ring) {
            rings[ring] = king_block(rings[ring - 1]);
        }
    }
}

}  // namespace orvelin
