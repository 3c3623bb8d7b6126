#pragma once

#include "generation/magic_moves.h"
#include "position/bit_board.h"
#include "position/square.h"

namespace orvelin {

/// Attack sets of knight, king and sliders by square.
///
/// Owns its tables, is built once at start and is read-only afterwards, from any thread. For no
/// square (id 64) every look-up gives the empty set. The forms that take a one-square BitBoard in
/// place of a Square find its id by one multiplication; an empty one counts as no square, and
/// more than one bit is the caller's fault (the answer is then that of some square).
class Attacks {
 public:
    Attacks();

    BitBoard const& knight(Square const& square) const { return knight_[square.id()]; }
    BitBoard const& king(Square const& square) const { return king_[square.id()]; }
    /// `occupied` may hold the square itself and anything else; only the masked part counts.
    BitBoard const& bishop(Square const& square, BitBoard const& occupied) const {
        return magic_.bishop(square, occupied);
    }
    BitBoard const& rook(Square const& square, BitBoard const& occupied) const {
        return magic_.rook(square, occupied);
    }
    BitBoard queen(Square const& square, BitBoard const& occupied) const {
        return bishop(square, occupied) | rook(square, occupied);
    }

    BitBoard const& knight(BitBoard const& square) const {
        return knight(square.get_unique_square());
    }
    BitBoard const& king(BitBoard const& square) const { return king(square.get_unique_square()); }
    BitBoard const& bishop(BitBoard const& square, BitBoard const& occupied) const {
        return bishop(square.get_unique_square(), occupied);
    }
    BitBoard const& rook(BitBoard const& square, BitBoard const& occupied) const {
        return rook(square.get_unique_square(), occupied);
    }
    BitBoard queen(BitBoard const& square, BitBoard const& occupied) const {
        return queen(square.get_unique_square(), occupied);
    }

 private:
    static BitBoard knight_moves(BitBoard const& b);
    static BitBoard king_moves(BitBoard const& b);

    BitBoard knight_[65];
    BitBoard king_[65];
    MagicMoves magic_;
};

}  // namespace orvelin
