#pragma once

#include "position/bit_board.h"
#include "position/chess_position.h"

namespace orvelin {

/// Men of one side by type, for code that is written once for both sides. `Side` is the number of
/// the side as side to move: 1 White, 0 Black.
template <int Side>
struct SideMen {
    static constexpr int enemy = 1 - Side;

    static BitBoard pawns(ChessPosition const& position) {
        if constexpr (Side == 1) {
            return position.white_pawn();
        } else {
            return position.black_pawn();
        }
    }

    static BitBoard knights(ChessPosition const& position) {
        if constexpr (Side == 1) {
            return position.white_knight();
        } else {
            return position.black_knight();
        }
    }

    static BitBoard bishops(ChessPosition const& position) {
        if constexpr (Side == 1) {
            return position.white_bishop();
        } else {
            return position.black_bishop();
        }
    }

    static BitBoard rooks(ChessPosition const& position) {
        if constexpr (Side == 1) {
            return position.white_rook();
        } else {
            return position.black_rook();
        }
    }

    static BitBoard queens(ChessPosition const& position) {
        if constexpr (Side == 1) {
            return position.white_queen();
        } else {
            return position.black_queen();
        }
    }

    static BitBoard kings(ChessPosition const& position) {
        if constexpr (Side == 1) {
            return position.white_king();
        } else {
            return position.black_king();
        }
    }

    static BitBoard all(ChessPosition const& position) {
        if constexpr (Side == 1) {
            return position.white_pieces();
        } else {
            return position.black_pieces();
        }
    }

    /// Square of the king, no square without one.
    static Square king(ChessPosition const& position) { return kings(position).get_first_square(); }
};

}  // namespace orvelin
