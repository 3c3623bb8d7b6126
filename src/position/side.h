#pragma once

#include "position/bit_board.h"
#include "position/masks.h"
#include "position/piece.h"
#include "position/square.h"

namespace orvelin {

/// The sides as template arguments. The numbers are those of the side to move, see
/// `ChessPosition::stm()`.
namespace side {

inline constexpr int black = 0;
inline constexpr int white = 1;

}  // namespace side

/// The other side.
template <int Side>
inline constexpr int enemy_of = 1 - Side;

/// What code that is written once for both sides says of one of them: piece ids, directions, and
/// its pieces in a position, which may be any class that has the board of each id.
template <int Side>
struct SideOf {
    static_assert(Side == side::white || Side == side::black);

    static constexpr bool is_white = Side == side::white;
    static constexpr int enemy = enemy_of<Side>;

    static constexpr int pawn = is_white ? white_pawn : black_pawn;
    static constexpr int knight = is_white ? white_knight : black_knight;
    static constexpr int bishop = is_white ? white_bishop : black_bishop;
    static constexpr int rook = is_white ? white_rook : black_rook;
    static constexpr int queen = is_white ? white_queen : black_queen;
    static constexpr int king = is_white ? white_king : black_king;

    /// Id of a1 or a8.
    static constexpr int home_rank = is_white ? 0 : 56;
    /// From a square to the one in front of it.
    static constexpr int forward = is_white ? 8 : -8;
    /// The rank that a pawn reaches with its first single step.
    static constexpr BitBoard third_rank = is_white ? rank3 : rank6;
    static constexpr BitBoard last_rank = is_white ? rank8 : rank1;

    template <typename Position>
    static BitBoard pawns(Position const& position) {
        return position.piece(pawn);
    }
    template <typename Position>
    static BitBoard knights(Position const& position) {
        return position.piece(knight);
    }
    template <typename Position>
    static BitBoard bishops(Position const& position) {
        return position.piece(bishop);
    }
    template <typename Position>
    static BitBoard rooks(Position const& position) {
        return position.piece(rook);
    }
    template <typename Position>
    static BitBoard queens(Position const& position) {
        return position.piece(queen);
    }
    /// More than one bit or none only in a position made by hand.
    template <typename Position>
    static BitBoard kings(Position const& position) {
        return position.piece(king);
    }
    template <typename Position>
    static BitBoard pieces(Position const& position) {
        return is_white ? position.white_pieces() : position.black_pieces();
    }
    template <typename Position>
    static BitBoard rooks_and_queens(Position const& position) {
        return rooks(position) | queens(position);
    }
    template <typename Position>
    static BitBoard bishops_and_queens(Position const& position) {
        return bishops(position) | queens(position);
    }
    /// The lowest square of a king, no square without one.
    template <typename Position>
    static Square king_square(Position const& position) {
        return kings(position).get_first_square();
    }

    /// See `ChessPosition::white_attackers()` and `white_blocked_attackers()`.
    template <typename Position>
    static BitBoard attackers(Position const& position, BitBoard const& target) {
        return is_white ? position.white_attackers(target) : position.black_attackers(target);
    }
    template <typename Position>
    static BitBoard blocked_attackers(Position const& position, BitBoard const& target) {
        return is_white ? position.white_blocked_attackers(target)
                        : position.black_blocked_attackers(target);
    }
};

}  // namespace orvelin
