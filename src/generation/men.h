#pragma once

#include "position/bit_board.h"
#include "position/chess_position.h"
#include "position/masks.h"

namespace orvelin {

/// The men and directions of one side, for code that is written once for both.
/// `Side` is 1 for White and 0 for Black.
template <int Side>
struct Men {
    static constexpr bool white = Side == 1;
    static constexpr int pawn = white ? 1 : 9;
    static constexpr int knight = white ? 2 : 10;
    static constexpr int bishop = white ? 3 : 11;
    static constexpr int rook = white ? 4 : 12;
    static constexpr int queen = white ? 5 : 13;
    static constexpr int king = white ? 6 : 14;
    /// Id of a1 or a8.
    static constexpr int home_rank = white ? 0 : 56;
    /// From a square to the one in front of it.
    static constexpr int forward = white ? 8 : -8;

    static BitBoard const& all(ChessPosition const& position) {
        return white ? position.white_pieces() : position.black_pieces();
    }
    static BitBoard const& last_rank() { return white ? rank8 : rank1; }

    /// The squares from which a pawn of this side attacks the one square of `target`.
    static BitBoard pawn_sources(BitBoard const& target) {
        if constexpr (white) {
            return ((target >> 7) & not_a_file) | ((target >> 9) & not_h_file);
        } else {
            return ((target << 7) & not_h_file) | ((target << 9) & not_a_file);
        }
    }
    static BitBoard attackers(ChessPosition const& position, BitBoard const& target) {
        return white ? position.white_attackers(target) : position.black_attackers(target);
    }
    static BitBoard blocked_attackers(ChessPosition const& position, BitBoard const& target) {
        return white ? position.white_blocked_attackers(target)
                     : position.black_blocked_attackers(target);
    }
    static BitBoard rooks_and_queens(ChessPosition const& position) {
        return position.piece(rook) | position.piece(queen);
    }
    static BitBoard bishops_and_queens(ChessPosition const& position) {
        return position.piece(bishop) | position.piece(queen);
    }
};

}  // namespace orvelin
