#include "support/position_argument.h"

#include <algorithm>
#include <string>

#include "position/bit_board.h"
#include "position/chess_position.h"
#include "position/masks.h"
#include "position/square.h"
#include "support/fen_fields.h"

namespace orvelin::tools {

namespace {

/// Pieces beyond the first set of their kind were pawns once.
bool promotions_explain(int pawns, int knights, int bishops, int rooks, int queens) {
    return pawns + std::max(knights - 2, 0) + std::max(bishops - 2, 0) + std::max(rooks - 2, 0) +
               std::max(queens - 1, 0) <=
           8;
}

void check_pieces(ChessPosition const& position) {
    require_fen(position.white_king().popcount() == 1, "White has not exactly one king");
    require_fen(position.black_king().popcount() == 1, "Black has not exactly one king");
    require_fen(!((position.white_pawn() | position.black_pawn()) & (rank1 | rank8)),
                "a pawn stands on the first or the last rank");
    require_fen(
        promotions_explain(position.white_pawn().popcount(), position.white_knight().popcount(),
                           position.white_bishop().popcount(), position.white_rook().popcount(),
                           position.white_queen().popcount()),
        "White has more pieces than promotions can give");
    require_fen(
        promotions_explain(position.black_pawn().popcount(), position.black_knight().popcount(),
                           position.black_bishop().popcount(), position.black_rook().popcount(),
                           position.black_queen().popcount()),
        "Black has more pieces than promotions can give");
}

void check_castling(ChessPosition const& position) {
    for (int bit = 0; bit < 16; ++bit) {
        if ((position.castlingrights() >> bit & 1) == 0) {
            continue;
        }
        bool const white = bit < 8;
        Square const rook(white ? bit : bit - 8 + 56);
        BitBoard const rooks = white ? position.white_rook() : position.black_rook();
        BitBoard const king = white ? position.white_king() & rank1 : position.black_king() & rank8;
        require_fen(king && (rooks & rook.bitboard()),
                    "there is no king or no rook to castle with at " + rook.name());
    }
}

void check_en_passant(ChessPosition const& position) {
    Square const target = position.ep();
    if (target.id() > 63) {
        return;
    }
    bool const white = position.white_to_move();
    int const forward = white ? 8 : -8;
    BitBoard const pawns = white ? position.black_pawn() : position.white_pawn();
    BitBoard const passed = target.bitboard() | Square(target.id() + forward).bitboard();
    require_fen((pawns & Square(target.id() - forward).bitboard()) && !(position.pieces() & passed),
                "no pawn has just passed " + target.name());
}

}  // namespace

void set_position(ChessPosition& position, std::string const& fen) {
    position.fen(read_fen_fields(fen).text());
    check_pieces(position);
    check_castling(position);
    check_en_passant(position);
    bool const mover_in_check = position.white_to_move()
                                    ? position.white_attacks(position.black_king())
                                    : position.black_attacks(position.white_king());
    require_fen(!mover_in_check, "the side that is not to move is in check");
}

}  // namespace orvelin::tools
