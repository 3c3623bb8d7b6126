#pragma once

#include <cstddef>
#include <cstdint>

#include "platform/population_count.h"
#include "position/bit_board.h"

/// Counting of squares for the evaluation: by the processor where it can, which is one instruction
/// and reads nothing, and else on the table of BitBoard::m_popcnt16.
///
/// The sums are taken in one byte, as the table holds bytes: a look-up and its addition are then
/// one instruction. No count exceeds 64, so nothing is lost.
namespace orvelin {

/// Number of set bits of the low 16 bits.
inline std::uint8_t bits_of_quarter(std::uint64_t word) {
    return static_cast<std::uint8_t>(BitBoard::m_popcnt16[static_cast<std::uint16_t>(word)]);
}

/// Number of set bits of any word, by the table. Out of line, so that count() is small where it is
/// used.
[[gnu::noinline]] inline int count_by_table(std::uint64_t word) {
    auto sum = bits_of_quarter(word);
    word >>= 16;
    sum = static_cast<std::uint8_t>(sum + bits_of_quarter(word));
    word >>= 16;
    sum = static_cast<std::uint8_t>(sum + bits_of_quarter(word));
    word >>= 16;
    return static_cast<std::uint8_t>(sum + bits_of_quarter(word));
}

/// Number of squares of any set.
[[gnu::always_inline]] inline int count(BitBoard set) {
    if (counts_in_hardware) [[likely]] {
        return count_in_hardware(to_ull(set));
    }
    return count_by_table(to_ull(set));
}

/// The set holds exactly one square.
inline bool single(BitBoard set) {
    std::uint64_t const word = to_ull(set);
    return word != 0 && (word & (word - 1)) == 0;
}

/// The set holds two squares or more.
inline bool several(BitBoard set) {
    std::uint64_t const word = to_ull(set);
    return (word & (word - 1)) != 0;
}

/// 1 when the set meets the zone, else 0: only presence counts, not the number.
inline int presence(BitBoard set, BitBoard zone) {
    return (set & zone) ? 1 : 0;
}

}  // namespace orvelin
