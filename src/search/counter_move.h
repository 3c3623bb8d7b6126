#pragma once

#include <cstddef>
#include <cstdint>

#include "position/move.h"
#include "search/history_table.h"
#include "search/zeroed_pages.h"

namespace orvelin {

/// How often a quiet move gave a cut-off as the answer to an earlier move, by piece and
/// destination of both. One table serves the opponent's last move and the own move before it.
///
/// Owns 8 MiB, which the system gives zeroed when they are first touched. Owned by the search
/// object and touched by the analysis thread only. Values wrap around rather than overflow.
class CounterMove {
 public:
    /// All values 0. Throws std::bad_alloc when there is no memory.
    CounterMove();

    /// Sets all values to 0.
    void clear();

    /// Ages all values: arithmetic shift right by 3.
    void divide_by_8();

    /// Adds 2^(depth mod 64) to the value of `answer` after `earlier`.
    void increment(Move const& earlier, Move const& answer, int depth) {
        add(earlier, answer, weight(depth));
    }
    /// Subtracts 2^(depth mod 64) from the value of `answer` after `earlier`.
    void decrement(Move const& earlier, Move const& answer, int depth) {
        add(earlier, answer, 0 - weight(depth));
    }

    std::int64_t value(Move const& earlier, Move const& answer) const {
        return value(earlier.piece_id(), earlier.to().id(), answer);
    }
    /// The earlier move as piece id, 0 to 15, and destination, 0 to 63, or 64 with piece 0, which
    /// is the empty move.
    std::int64_t value(int const& piece, int const& destination, Move const& answer) const {
        return values_[row(piece, destination) + HistoryTable::index(answer)];
    }
    /// The values of all answers to a move that is not empty, by HistoryTable::index().
    std::int64_t const* answers(Move const& earlier) const {
        return values_ + row(earlier.piece_id(), earlier.to().id());
    }

 private:
    static constexpr std::size_t pieces = 16;
    static constexpr std::size_t squares = 64;

    static std::uint64_t weight(int depth) {
        return std::uint64_t{1} << (static_cast<unsigned int>(depth) & 63U);
    }

    /// The array is flat so that the empty move, whose destination is 64, stays inside.
    static std::size_t row(int piece, int destination) {
        return (static_cast<std::size_t>(piece) * squares + static_cast<std::size_t>(destination)) *
               pieces * squares;
    }

    void add(Move const& earlier, Move const& answer, std::uint64_t amount) {
        std::int64_t& value =
            values_[row(earlier.piece_id(), earlier.to().id()) + HistoryTable::index(answer)];
        value = static_cast<std::int64_t>(static_cast<std::uint64_t>(value) + amount);
    }

    static constexpr std::size_t count = pieces * squares * pieces * squares;

    ZeroedPages memory_;
    std::int64_t* values_;
};

}  // namespace orvelin
