#pragma once

#include <cstdint>

#include "position/bit_board.h"
#include "position/move.h"
#include "position/square.h"

namespace orvelin {

/// The castling rights on rooks that do not start in a corner, which neither standard notation
/// nor the published book keys know.
inline constexpr std::uint16_t chess960_rights = 0x7E7E;

/// What one ply knows beyond the placement of the pieces. ChessPosition keeps one record for each
/// ply of the game and of the line being searched; the last one describes the current position.
struct history_t {
    /// Pieces of both colours pinned against their own king.
    BitBoard pinned_pieces;
    /// Pieces of both colours that stand alone between their own slider and the enemy king.
    BitBoard discovering_pieces;
    /// Where a white queen would give check: queen moves from the black king's square.
    BitBoard white_queencheck_squares;
    /// Where a black queen would give check: queen moves from the white king's square.
    BitBoard black_queencheck_squares;
    /// The position's make-move counter when the record was pushed.
    std::uint64_t make_move_counter = 0;
    /// Bit f: White may castle with the rook on file f of rank 1. Bit 8 + f: Black, rank 8.
    std::uint16_t castlingrights = 0;
    /// Half-moves since the last capture or pawn move.
    std::uint16_t dfz = 0;
    /// The move that led here, the empty move in the first record.
    Move last_move;
    /// En passant target square, or no square.
    Square ep;
    Square white_kingsfield;
    Square black_kingsfield;
    /// The side to move is in check.
    bool check = false;
};

}  // namespace orvelin
