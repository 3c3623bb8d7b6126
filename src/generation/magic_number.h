#pragma once

#include <cstdint>

namespace orvelin {

/// Multiplier and shift that turn a masked occupancy into a table index.
struct magic_t {
    std::uint64_t magic = 0;
    /// 64 minus the number of index bits. The spare default of no square keeps the shift defined.
    alignas(8) std::uint32_t shift = 63;
};

/// The magic numbers of all squares, copied from constant tables of the program.
/// Entry 64 (no square) maps every occupancy to index 0. Immutable after construction.
class MagicNumber {
 public:
    MagicNumber();

    /// The bishop's record of the square with this id, 0 to 64.
    magic_t const& bishop(int square) const { return bishop_[square]; }
    /// The rook's record of the square with this id, 0 to 64.
    magic_t const& rook(int square) const { return rook_[square]; }

 private:
    magic_t bishop_[65];
    magic_t rook_[65];
};

}  // namespace orvelin
