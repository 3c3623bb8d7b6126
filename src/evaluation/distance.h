#pragma once

#include <array>
#include <cstddef>
#include <cstdint>

#include "position/bit_board.h"
#include "position/square.h"

namespace orvelin {

/// King distances between squares and from a square to a set of squares.
///
/// Owns its two tables, which are filled by the constructor and constant from then on, so any
/// thread may read them. No square (id 64) has a row of its own: it is as far from everything as
/// an empty set is from any square, at distance 8.
class Distance {
 public:
    /// The distance to an empty set, one more than any distance on the board.
    static constexpr int unreachable = 8;

    Distance();

    /// King steps from `from` to `to`: the larger of file and rank difference, 0 to 7; 8 when
    /// either is no square.
    int operator()(Square const& from, Square const& to) const {
        return squares_[index(from)][index(to)];
    }

    /// The least number of king steps from `from` to a member of `set`; 8 for an empty set.
    int operator()(Square const& from, BitBoard const& set) const {
        // Each ring holds the smaller ones, so the rings that miss the set are the first ones:
        // three probes find how many of the first seven do. The last ring is the whole board, and
        // empty for no square.
        auto const& rings = rings_[index(from)];
        std::size_t missing = (rings[3] & set) ? 0 : 4;
        missing += (rings[missing + 1] & set) ? 0 : 2;
        missing += (rings[missing] & set) ? 0 : 1;
        missing += (rings[7] & set) ? 0 : 1;
        return static_cast<int>(missing);
    }

 private:
    static constexpr std::size_t rows = 65;
    static constexpr std::size_t ring_count = 8;

    static std::size_t index(Square const& square) { return static_cast<std::size_t>(square.id()); }

    std::array<std::array<std::uint8_t, rows>, rows> squares_{};
    /// Ring j of a square holds all squares at distance j or less; ring 0 is the square itself.
    std::array<std::array<BitBoard, ring_count>, rows> rings_{};
};

}  // namespace orvelin
