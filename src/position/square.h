#pragma once

#include <array>
#include <compare>
#include <cstddef>
#include <string>

namespace orvelin {

class BitBoard;

/// A square of the board as a signed id: a1 = 0, b1 = 1, ... h1 = 7, a2 = 8, ... h8 = 63, so that
/// id = file + 8 * rank. Id 64 means no square.
///
/// A plain word, copied freely and used by every thread. Nothing tests the id that is stored, and
/// arithmetic may leave 0..64; only ids 0..64 may be looked up in `bb`.
class Square {
 public:
    /// The one-square set of each id; entry 64 is empty, so no square needs no test.
    static const std::array<BitBoard, 65> bb;

    /// No square.
    constexpr Square() = default;
    /// Any id, stored as it is.
    constexpr explicit Square(int id) : square_(id) {}
    /// A square from a text such as "e4". Only the id that the two characters add up to is
    /// tested: "i1" reads as a2 (oddity 80).
    /// @throws std::logic_error when the length is not 2 or the id not in 0..63.
    explicit Square(std::string const& text);

    /// 0..63, 64 for no square.
    constexpr int id() const { return square_; }
    /// 'a'..'h', 'a' for no square.
    constexpr char file() const { return static_cast<char>('a' + file_number()); }
    /// '1'..'8', '9' for no square.
    constexpr char rank() const { return static_cast<char>('1' + rank_number()); }
    /// 0..7, 0 for no square.
    constexpr int file_number() const { return square_ & 7; }
    /// 0..7, 8 for no square.
    constexpr int rank_number() const { return square_ >> 3; }
    /// File letter and rank digit, "no_square" for no square.
    /// @throws std::logic_error for an id below 0 or above 64.
    std::string name() const;
    /// 1 for a light square, 0 for a dark one and for every id off the board.
    constexpr int color() const {
        return (square_ & ~63) == 0 ? (file_number() + rank_number()) & 1 : 0;
    }
    /// The entry of `bb`. The id must be in 0..64. Needs position/bit_board.h.
    BitBoard const& bitboard() const;

    constexpr bool operator==(Square const& other) const = default;
    /// Compares the signed ids.
    constexpr std::strong_ordering operator<=>(Square const& other) const {
        return square_ <=> other.square_;
    }

    constexpr Square& operator+=(int steps) {
        square_ += steps;
        return *this;
    }
    constexpr Square& operator-=(int steps) {
        square_ -= steps;
        return *this;
    }
    constexpr Square& operator++() { return *this += 1; }
    constexpr Square& operator--() { return *this -= 1; }
    constexpr Square operator++(int) {
        Square const before = *this;
        ++*this;
        return before;
    }
    constexpr Square operator--(int) {
        Square const before = *this;
        --*this;
        return before;
    }

 private:
    int square_ = 64;
};

/// The id of a square 0..64 as an index of arrays.
constexpr std::size_t index(Square const& square) {
    return static_cast<std::size_t>(square.id());
}

constexpr Square operator+(Square square, int steps) {
    return square += steps;
}

constexpr Square operator+(int steps, Square square) {
    return square += steps;
}

constexpr Square operator-(Square square, int steps) {
    return square -= steps;
}

/// Difference of the ids.
constexpr int operator-(Square left, Square right) {
    return left.id() - right.id();
}

/// The square's id minus the integer, whatever the order of the operands suggests (oddity 81).
constexpr Square operator-(int steps, Square square) {
    return square -= steps;
}

/// Mirrors top to bottom: e2 becomes e7.
constexpr Square flip(Square const& square) {
    return Square(square.id() ^ 56);
}

/// Mirrors left to right: e2 becomes d2.
constexpr Square flop(Square const& square) {
    return Square((square.id() & 56) + 7 - (square.id() & 7));
}

}  // namespace orvelin
