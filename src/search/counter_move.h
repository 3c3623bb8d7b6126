#pragma once

#include <array>
#include <cstddef>
#include <cstdint>

#include "position/move.h"
#include "search/history_table.h"
#include "search/zeroed_pages.h"

namespace orvelin {

/// How often a quiet move gave a cut-off as the answer to an earlier move, by piece and
/// destination of both. One table serves the opponent's last move and the own move before it.
///
/// Owns 8 MiB of values, which the system gives zeroed when they are first touched. Owned by the
/// search object and touched by the analysis thread only. Values wrap around rather than overflow.
///
/// The answers to each earlier move are marked when one is written, so that clear() and
/// divide_by_8() cost what was written since the last clear(): all others are 0. A search to a
/// small depth takes little longer than going over all of them.
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
        return values_[place(row(piece, destination)) + HistoryTable::index(answer)];
    }
    /// The answers to one earlier move, by HistoryTable::index().
    struct answers_t {
        std::int64_t const* values;
        /// A bit for each value that is above 0.
        std::uint64_t const* above_zero;

        /// Whether the value is above 0, as a whole or by what its low 32 bits say.
        bool is_above_zero(std::size_t index) const {
            return (above_zero[index / word_bits] >> (index % word_bits) & 1U) != 0;
        }
    };
    /// Those to the empty move are not asked for: none is above 0.
    answers_t answers(Move const& earlier) const {
        if (earlier == Move()) {
            return {nullptr, none_.data()};
        }
        std::size_t const first = place(row(earlier.piece_id(), earlier.to().id()));
        return {values_ + first, above_zero_.data() + first / word_bits};
    }

 private:
    static constexpr std::size_t pieces = 16;
    static constexpr std::size_t squares = 64;

    static std::uint64_t weight(int depth) {
        return std::uint64_t{1} << (static_cast<unsigned int>(depth) & 63U);
    }

    /// The number of an earlier move. The array is flat so that the empty move, whose destination
    /// is 64, stays inside.
    static std::size_t row(int piece, int destination) {
        return static_cast<std::size_t>(piece) * squares + static_cast<std::size_t>(destination);
    }
    static std::size_t place(std::size_t row) { return row * answers_count; }

    void add(Move const& earlier, Move const& answer, std::uint64_t amount) {
        std::size_t const changed = row(earlier.piece_id(), earlier.to().id());
        written_[changed] = true;
        std::size_t const at = place(changed) + HistoryTable::index(answer);
        std::int64_t& value = values_[at];
        value = static_cast<std::int64_t>(static_cast<std::uint64_t>(value) + amount);
        std::uint64_t const bit = std::uint64_t{1} << (at % word_bits);
        std::uint64_t& word = above_zero_[at / word_bits];
        word = is_above_zero(value) ? word | bit : word & ~bit;
    }
    static bool is_above_zero(std::int64_t value) {
        return value > 0 || static_cast<std::int32_t>(static_cast<std::uint32_t>(value)) > 0;
    }

    static constexpr std::size_t answers_count = pieces * squares;
    static constexpr std::size_t rows = pieces * squares;
    static constexpr std::size_t word_bits = 64;
    static constexpr std::size_t words_of_row = answers_count / word_bits;
    static constexpr std::array<std::uint64_t, words_of_row> none_{};

    ZeroedPages memory_;
    std::int64_t* values_;
    /// By row, whether a value of it can be other than 0.
    std::array<bool, rows> written_{};
    /// By value. Few are above 0, and whoever looks for the highest ones need not fetch the others,
    /// which lie far apart.
    std::array<std::uint64_t, rows * words_of_row> above_zero_{};
};

}  // namespace orvelin
