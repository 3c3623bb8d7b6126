#pragma once

#include <array>
#include <cstddef>
#include <cstdint>

#include "position/move.h"

namespace orvelin {

/// How often quiet moves gave a cut-off, by moving piece and destination.
///
/// Owned by the search object and touched by the analysis thread only. The values grow by
/// powers of two, of the depth modulo 64, without a guard; they wrap around rather than overflow
/// (oddity 53). Castling counts as a move to the square of the rook (oddity 52).
class HistoryTable {
 public:
    /// Sets all values to 0.
    void clear();

    /// Ages all values: arithmetic shift right by 3.
    void divide_by_8();

    /// Adds 2^(depth mod 64) to the move's value.
    void increment(Move const& move, unsigned int const& depth) { add(move, weight(depth)); }
    /// Subtracts 2^(depth mod 64) from the move's value.
    void decrement(Move const& move, unsigned int const& depth) { add(move, 0 - weight(depth)); }

    std::int64_t value(Move const& move) const { return value(index(move)); }
    std::int64_t value(std::size_t index) const { return values_[index]; }

    /// Piece and destination of a move as one number. The empty move, whose destination is 64,
    /// shares a number of no piece, so that it stays inside the array.
    static std::size_t index(Move const& move) {
        return static_cast<std::size_t>(move.piece_id()) * squares +
               static_cast<std::size_t>(move.to().id());
    }

 private:
    static constexpr std::size_t pieces = 16;
    static constexpr std::size_t squares = 64;

    static std::uint64_t weight(unsigned int depth) { return std::uint64_t{1} << (depth & 63U); }

    void add(Move const& move, std::uint64_t amount) {
        std::int64_t& value = values_[index(move)];
        value = static_cast<std::int64_t>(static_cast<std::uint64_t>(value) + amount);
    }

    std::array<std::int64_t, pieces * squares> values_{};
};

}  // namespace orvelin
