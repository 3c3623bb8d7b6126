#pragma once

#include <cstdint>
#include <string>

#include "position/move.h"
#include "position/piece.h"
#include "position/square.h"

namespace orvelin {

class ChessPosition;

/// The part of a move that the transposition table keeps: the low 16 bits of a Move.
///
/// Destination in bits 0 to 5, origin in 6 to 11, code (move_t) in 12 to 14, check bit in
/// 15; the word 0 is no move. Moving and captured piece are not stored: they come back from
/// the position that the move is made in.
class TTmove {
 public:
    TTmove() = default;
    explicit TTmove(std::uint16_t word) : word_(word) {}
    /// Keeps the low 16 bits of the move.
    explicit TTmove(Move const& move) : word_(low_word(move)) {}

    TTmove& operator=(Move const& move) {
        word_ = low_word(move);
        return *this;
    }

    bool operator==(TTmove const& other) const { return word_ == other.word_; }
    bool operator!=(TTmove const& other) const { return word_ != other.word_; }

    /// True for the word 0.
    bool nomove() const { return word_ == 0; }

    /// Origin; no square for the word 0.
    Square from() const { return Square(nomove() ? no_square_id : (word_ >> from_shift) & 63); }
    /// Destination; no square for the word 0.
    Square to() const { return Square(nomove() ? no_square_id : word_ & 63); }
    /// Sets the origin to a square id, 0 to 63.
    void from(char square_id) { set_square(square_id, from_shift); }
    /// Sets the destination to a square id, 0 to 63.
    void to(char square_id) { set_square(square_id, 0); }

    /// Move class, a move_t value.
    unsigned int code() const { return (static_cast<unsigned int>(word_) >> code_shift) & 7U; }
    /// The whole word.
    std::uint16_t id() const { return word_; }
    void clear() { word_ = 0; }

    /// The piece on the origin square; no piece for a word without code and check bit.
    Piece piece(ChessPosition const& position) const;
    /// The piece that the move captures: for en passant the pawn, otherwise what stands on the
    /// destination, which for castling is the own rook. No piece for a word without code and
    /// check bit. An en passant word with the check bit is not told apart (oddity 79).
    Piece capture(ChessPosition const& position) const;

    /// The whole move in this position, its class hashtable_move; the word 0 gives the empty
    /// move.
    Move operator()(ChessPosition const& position) const;

    /// The move as standard UCI text; "0000" for no move and for code 0.
    std::string algebraic(ChessPosition const& position) const;

 private:
    static constexpr int no_square_id = 64;
    static constexpr int from_shift = 6;
    static constexpr int code_shift = 12;
    static constexpr int check_shift = 15;
    static constexpr std::uint16_t first_coded_word = 1U << code_shift;

    static std::uint16_t low_word(Move const& move) {
        return static_cast<std::uint16_t>(move.word());
    }

    void set_square(char square_id, int shift) {
        auto const kept = static_cast<unsigned int>(word_) & ~(63U << shift);
        auto const id = static_cast<unsigned int>(static_cast<unsigned char>(square_id)) & 63U;
        word_ = static_cast<std::uint16_t>(kept | (id << shift));
    }

    std::uint16_t word_ = 0;
};

}  // namespace orvelin
