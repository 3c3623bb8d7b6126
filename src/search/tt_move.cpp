#include "search/tt_move.h"

#include "position/chess_position.h"

namespace orvelin {

Piece TTmove::piece(ChessPosition const& position) const {
    if (word_ < first_coded_word) {
        return Piece(no_piece);
    }
    return position.get_piece_from(from());
}

Piece TTmove::capture(ChessPosition const& position) const {
    if (word_ < first_coded_word) {
        return Piece(no_piece);
    }
    if (word_ >> code_shift == en_passant) {
        return Piece(to().id() > from().id() ? black_pawn : white_pawn);
    }
    return position.get_piece_from(to());
}

Move TTmove::operator()(ChessPosition const& position) const {
    if (nomove()) {
        return Move();
    }
    Piece const moving = position.get_piece_from(from());
    Piece captured = position.get_piece_from(to());
    // The destination of a castling move holds the own rook.
    if (code() == castling) {
        captured.set_no_piece();
    }
    if (code() == en_passant) {
        captured = Piece(moving.white_pawn() ? black_pawn : white_pawn);
    }
    Move move(from(), to(), code(), moving, captured);
    move.check((word_ >> check_shift) != 0);
    move.xcode(hashtable_move);
    return move;
}

std::string TTmove::algebraic(ChessPosition const& position) const {
    if (code() == nullmove) {
        return "0000";
    }
    return (*this)(position).algebraic(false);
}

}  // namespace orvelin
