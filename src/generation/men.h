#pragma once

#include "position/bit_board.h"
#include "position/chess_position.h"
#include "position/side_ids.h"

namespace orvelin {

/// The men of one side in a position, beside their ids and directions.
template <int Side>
struct Men : SideIds<Side> {
    using SideIds<Side>::white;
    using SideIds<Side>::bishop;
    using SideIds<Side>::rook;
    using SideIds<Side>::queen;

    static BitBoard const& all(ChessPosition const& position) {
        return white ? position.white_pieces() : position.black_pieces();
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
