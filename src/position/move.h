#pragma once

#include <cstdint>
#include <string>

#include "position/piece.h"
#include "position/square.h"

namespace orvelin {

/// The code field of a Move.
enum move_t : std::uint8_t {
    nullmove = 0,
    normal_move = 1,
    promo_queen = 2,
    promo_rook = 3,
    promo_bishop = 4,
    promo_knight = 5,
    castling = 6,
    en_passant = 7
};

/// The ordering class of a Move; lower sorts first.
enum xmove_t : std::uint8_t {
    hashtable_move = 0,
    mate_attack = 1,
    promotion = 2,
    good_capture = 3,
    killer = 4,
    counter_move = 5,
    historical_move1 = 6,
    historical_move2 = 7,
    historical_move3 = 8,
    xnormal_move = 9,
    bad_move = 10,
    losing_capture = 11,
    no_xmove_t = 12
};

/// A move in one 32-bit word: to in bits 0-5, from in 6-11, code in 12-14, check in 15, capture
/// in 16-19, piece in 20-23 and the ordering class xcode in the top byte.
///
/// A plain word, copied freely. Word 0 is the empty move, which is also the null move; a move is
/// absent exactly when its word is 0. Castling has the square of the castling rook as to; a
/// promotion has the pawn as piece. The setters clear their field and OR the new value in, which
/// must fit.
class Move {
 public:
    /// The empty move.
    constexpr Move() = default;
    /// Class xnormal_move, no check. Squares are cut to six bits; the other fields must fit.
    constexpr Move(Square from, Square to, unsigned int code, Piece piece, Piece capture)
        : Move(from, to, code, bits(piece.id()), bits(capture.id())) {}
    constexpr Move(Square from, Square to, unsigned int code, piece_t piece, piece_t capture)
        : Move(from, to, code, bits(piece), bits(capture)) {}

    /// Origin square; no square for word 0 only.
    constexpr Square from() const {
        return word_ == 0 ? Square() : Square(static_cast<int>(field(from_shift, 0x3F)));
    }
    constexpr void from(Square const& square) { put(from_shift, 0x3F, bits(square.id())); }
    /// Target square, for castling the rook's; no square for word 0 only.
    constexpr Square to() const {
        return word_ == 0 ? Square() : Square(static_cast<int>(field(to_shift, 0x3F)));
    }
    constexpr void to(Square const& square) { put(to_shift, 0x3F, bits(square.id())); }

    /// The ids as they stand in the word, 0 to 63, those of the empty move 0: for moves that are
    /// known not to be empty, which then need not be asked for it.
    constexpr int from_id() const { return static_cast<int>(field(from_shift, 0x3F)); }
    constexpr int to_id() const { return static_cast<int>(field(to_shift, 0x3F)); }

    constexpr move_t code() const { return static_cast<move_t>(field(code_shift, 7)); }
    constexpr void code(move_t const& code) { put(code_shift, 7, code); }
    constexpr xmove_t xcode() const { return static_cast<xmove_t>(field(xcode_shift, 0xFF)); }
    constexpr void xcode(xmove_t const& xcode) { put(xcode_shift, 0xFF, xcode); }

    /// The moving piece, the pawn for a promotion.
    constexpr Piece piece() const { return Piece(piece_id()); }
    constexpr void piece(Piece const& piece) { put(piece_shift, 0xF, bits(piece.id())); }
    constexpr void piece(unsigned int&& id) { put(piece_shift, 0xF, id); }
    constexpr int piece_id() const { return static_cast<int>(field(piece_shift, 0xF)); }
    constexpr void piece_id(int id) { put(piece_shift, 0xF, bits(id)); }
    /// The captured piece, no piece when there is none.
    constexpr Piece capture() const { return Piece(capture_id()); }
    constexpr void capture(Piece const& piece) { put(capture_shift, 0xF, bits(piece.id())); }
    constexpr void capture(unsigned int&& id) { put(capture_shift, 0xF, id); }
    constexpr int capture_id() const { return static_cast<int>(field(capture_shift, 0xF)); }
    constexpr void capture_id(int id) { put(capture_shift, 0xF, bits(id)); }

    /// The move gives check.
    constexpr bool check() const { return field(check_shift, 1) != 0; }
    constexpr void check(bool check) { put(check_shift, 1, check ? 1 : 0); }

    constexpr void clear() { word_ = 0; }
    /// The raw word.
    constexpr std::uint32_t word() const { return word_; }

    /// Same move whatever the ordering class. The check bit counts (oddity 83).
    constexpr bool operator==(Move const& other) const {
        return ((word_ ^ other.word_) & identity_mask) == 0;
    }
    /// Orders the whole words: by class first, then piece, capture, check, code, from, to.
    constexpr bool operator<(Move const& other) const { return word_ < other.word_; }

    /// The UCI text, "0000" for the empty move. With `chess960` castling stays written as the king
    /// taking its own rook. Without, so does castling with other squares than the standard
    /// ones (oddity 124).
    std::string algebraic(bool chess960) const;
    /// All fields in one line, for diagnosis.
    std::string dump() const;

 private:
    static constexpr int to_shift = 0;
    static constexpr int from_shift = 6;
    static constexpr int code_shift = 12;
    static constexpr int check_shift = 15;
    static constexpr int capture_shift = 16;
    static constexpr int piece_shift = 20;
    static constexpr int xcode_shift = 24;
    static constexpr std::uint32_t identity_mask = 0xFFFFFF;

    constexpr Move(Square from, Square to, std::uint32_t code, std::uint32_t piece,
                   std::uint32_t capture)
        : word_((((bits(to.id()) & 0x3F) << to_shift | (bits(from.id()) & 0x3F) << from_shift |
                  code << code_shift | capture << capture_shift | piece << piece_shift) &
                 identity_mask) |
                std::uint32_t{xnormal_move} << xcode_shift) {}

    static constexpr std::uint32_t bits(int value) { return static_cast<std::uint32_t>(value); }
    constexpr std::uint32_t field(int shift, std::uint32_t mask) const {
        return (word_ >> shift) & mask;
    }
    constexpr void put(int shift, std::uint32_t mask, std::uint32_t value) {
        word_ = (word_ & ~(mask << shift)) | (value << shift);
    }

    std::uint32_t word_ = 0;
};

}  // namespace orvelin
