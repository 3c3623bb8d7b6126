#pragma once

#include <array>
#include <bit>
#include <compare>
#include <cstddef>
#include <cstdint>
#include <initializer_list>
#include <string>
#include <vector>

#include "position/square.h"

namespace orvelin {

namespace bit_scan {

/// Not a de Bruijn sequence of six bits: the top seven bits of the product tell the squares apart.
inline constexpr std::uint64_t multiplier = 0x0DB8F3FB14C8C21D;
inline constexpr int shift = 57;

/// Index of a one-bit word in the table of ids, 0 for the empty word alone.
constexpr std::size_t index(std::uint64_t bit) {
    return static_cast<std::size_t>((bit * multiplier) >> shift);
}

constexpr std::array<std::int8_t, 128> make_table() {
    std::array<std::int8_t, 128> table{};
    for (int i = 0; i < 64; ++i) {
        table[index(std::uint64_t{1} << i)] = static_cast<std::int8_t>(i);
    }
    table[0] = 64;
    return table;
}

}  // namespace bit_scan

/// A set of squares in one 64-bit word, bit n for square id n: a1 is the lowest bit.
///
/// A plain word, copied freely and used by every thread. The scan of a set known to have one square
/// and the count read two constant tables and take no branch.
class BitBoard {
 public:
    /// Entry i is the number of set bits of i.
    static const std::array<std::int8_t, 65536> m_popcnt16;
    /// Square id by the index of the multiplicative scan; entry 0, which no one-square word
    /// reaches, is no square.
    static constexpr std::array<std::int8_t, 128> m_first_square_id = bit_scan::make_table();

    /// The empty set.
    constexpr BitBoard() = default;
    constexpr explicit BitBoard(std::uint64_t const& word) : word_(word) {}
    /// The set of the squares, their ids taken modulo 64.
    constexpr BitBoard(std::initializer_list<Square> squares) {
        for (Square const& square : squares) {
            word_ |= std::uint64_t{1} << (square.id() & 63);
        }
    }

    constexpr void clear() { word_ = 0; }
    /// Adds a square; no square adds nothing.
    void set_square(Square const& square) { word_ |= square.bitboard().word_; }
    /// Takes a square out; no square takes nothing.
    void reset_square(Square const& square) { word_ &= ~square.bitboard().word_; }

    /// Mirrors the set top to bottom, in place.
    constexpr BitBoard& flip() {
        word_ = ((word_ >> 8) & 0x00FF00FF00FF00FF) | ((word_ & 0x00FF00FF00FF00FF) << 8);
        word_ = ((word_ >> 16) & 0x0000FFFF0000FFFF) | ((word_ & 0x0000FFFF0000FFFF) << 16);
        word_ = (word_ >> 32) | (word_ << 32);
        return *this;
    }
    /// Mirrors the set left to right, in place.
    constexpr BitBoard& flop() {
        constexpr std::uint64_t file = 0x0101010101010101;
        word_ = ((word_ & file) << 7) | ((word_ & (file << 1)) << 5) |
                ((word_ & (file << 2)) << 3) | ((word_ & (file << 3)) << 1) |
                ((word_ & (file << 4)) >> 1) | ((word_ & (file << 5)) >> 3) |
                ((word_ & (file << 6)) >> 5) | ((word_ & (file << 7)) >> 7);
        return *this;
    }

    /// The lowest square, no square for the empty set.
    constexpr Square get_first_square() const { return Square(first_id(word_)); }
    /// The square of a set of exactly one, no square for the empty set. With more than one square
    /// the answer is some id in 0..64.
    constexpr Square get_unique_square() const {
        return Square(m_first_square_id[bit_scan::index(word_)]);
    }
    /// Takes the lowest square out and returns it as a set; empty for the empty set.
    constexpr BitBoard get_reset_square() {
        BitBoard const lowest(word_ & (0 - word_));
        word_ &= word_ - 1;
        return lowest;
    }
    /// Takes the lowest square out and returns it; no square for the empty set.
    constexpr Square take_first_square() {
        Square const first = get_first_square();
        word_ &= word_ - 1;
        return first;
    }
    /// Takes the lowest bit out of a raw word and returns its square id, 64 for the empty word.
    static constexpr int get_reset_square(std::uint64_t& word) {
        int const id = first_id(word);
        word &= word - 1;
        return id;
    }
    /// All squares, ascending.
    std::vector<Square> get_squares() const;

    /// Number of squares.
    int popcount() const { return popcount(word_); }
    /// Number of set bits of a raw word.
    static int popcount(std::uint64_t word) {
        return m_popcnt16[word & 0xFFFF] + m_popcnt16[(word >> 16) & 0xFFFF] +
               m_popcnt16[(word >> 32) & 0xFFFF] + m_popcnt16[word >> 48];
    }

    /// True when the set is not empty.
    constexpr explicit operator bool() const { return word_ != 0; }
    constexpr bool operator==(BitBoard const& other) const = default;
    /// Compares the unsigned words.
    constexpr std::strong_ordering operator<=>(BitBoard const& other) const {
        return word_ <=> other.word_;
    }

    constexpr BitBoard& operator&=(BitBoard const& other) { return *this &= other.word_; }
    constexpr BitBoard& operator|=(BitBoard const& other) { return *this |= other.word_; }
    constexpr BitBoard& operator^=(BitBoard const& other) { return *this ^= other.word_; }
    constexpr BitBoard& operator&=(std::uint64_t word) {
        word_ &= word;
        return *this;
    }
    constexpr BitBoard& operator|=(std::uint64_t word) {
        word_ |= word;
        return *this;
    }
    constexpr BitBoard& operator^=(std::uint64_t word) {
        word_ ^= word;
        return *this;
    }
    /// Logical shifts by 0..63.
    constexpr BitBoard& operator>>=(int count) {
        word_ >>= count;
        return *this;
    }
    constexpr BitBoard& operator<<=(int count) {
        word_ <<= count;
        return *this;
    }
    constexpr BitBoard operator~() const { return BitBoard(~word_); }

    /// The raw word.
    friend constexpr std::uint64_t to_ull(BitBoard const& board) { return board.word_; }

    /// The word in hexadecimal, then eight lines of '0' and '1', rank 8 first.
    std::string dump() const;
    /// Prints an empty line and dump() to standard output, each line flushed.
    void write() const;

 private:
    static constexpr int first_id(std::uint64_t word) { return std::countr_zero(word); }

    std::uint64_t word_ = 0;
};

constexpr BitBoard operator&(BitBoard left, BitBoard const& right) {
    return left &= right;
}

constexpr BitBoard operator|(BitBoard left, BitBoard const& right) {
    return left |= right;
}

constexpr BitBoard operator^(BitBoard left, BitBoard const& right) {
    return left ^= right;
}

constexpr BitBoard operator<<(BitBoard board, int count) {
    return board <<= count;
}

constexpr BitBoard operator>>(BitBoard board, int count) {
    return board >>= count;
}

static_assert(BitBoard::m_first_square_id.front() == 64);
static_assert(BitBoard::m_first_square_id[4] == 50 && BitBoard::m_first_square_id.back() == 22);

inline BitBoard const& Square::bitboard() const {
    return bb[static_cast<std::size_t>(square_)];
}

}  // namespace orvelin
