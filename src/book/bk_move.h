#pragma once

#include <cstdint>

#include "position/move.h"
#include "position/square.h"

namespace orvelin {

class ChessPosition;

/// A move of the opening book: to in bits 0-5, from in 6-11, promotion in 12-14 (0 none, 1 knight,
/// 2 bishop, 3 rook, 4 queen), after the published Polyglot book format.
///
/// A plain word, copied freely; word 0 is no move. Castling is the king taking his own rook, which
/// is also the engine's own way.
class BKmove {
 public:
    /// No move.
    BKmove() = default;
    /// A word as it stands in a book.
    explicit BKmove(std::uint16_t word) : word_(word) {}
    /// Squares and promotion of the move. The empty move gives 4160, not 0: its squares are none.
    explicit BKmove(Move const& move);

    /// The full move in the position, the empty move for word 0. Not tested for legality.
    Move operator()(ChessPosition const& position) const;

    /// Whether this is no move.
    bool nomove() const { return word_ == 0; }

    Square to() const { return Square(word_ & 0x3F); }
    Square from() const { return Square((word_ >> from_shift) & 0x3F); }
    /// The promotion field, 0 to 7; only 1 to 4 mean a promotion.
    int code() const { return (word_ >> code_shift) & 7; }

    /// Squares are cut to six bits, the promotion to three.
    void set_to(Square const& square) { put(0, 0x3F, square.id()); }
    void set_from(Square const& square) { put(from_shift, 0x3F, square.id()); }
    void set_code(char code) { put(code_shift, 7, code); }
    void clear() { word_ = 0; }

    /// The word as a number.
    std::uint16_t dump() const { return word_; }

 private:
    static constexpr int from_shift = 6;
    static constexpr int code_shift = 12;

    void put(int shift, int mask, int value) {
        word_ = static_cast<std::uint16_t>((word_ & ~(mask << shift)) | (value & mask) << shift);
    }

    std::uint16_t word_ = 0;
};

}  // namespace orvelin
