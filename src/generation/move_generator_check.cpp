#include "generation/attacks.h"
#include "generation/move_generator.h"
#include "generation/move_generator_pieces.h"
#include "position/castling_targets.h"
#include "position/chess_position.h"
#include "position/set_steps.h"
#include "position/side.h"

namespace orvelin {

namespace {

bool meets(BitBoard const& left, BitBoard const& right) {
    return static_cast<bool>(left & right);
}

/// The square of the castling rook after the move. The rank is told by the king's square, so a
/// king that does not stand on its home rank (a position made by hand) gives no square.
Square castled_rook(Square const& from, Square const& to) {
    if (from.id() <= 6) {
        return castling_targets(from, to, SideOf<side::white>::home_rank).rook;
    }
    if (from.id() > 56) {
        return castling_targets(from, to, SideOf<side::black>::home_rank).rook;
    }
    return Square();
}

}  // namespace

template <int Side>
void MoveGenerator::set_checkstatus(ChessPosition const& position, Move& move) {
    move.check(false);
    move.xcode(xnormal_move);
    bool check = false;
    switch (move.code()) {
        case nullmove:
            return;
        case normal_move:
            check = checks_by_normal_move<Side>(position, move);
            break;
        case castling:
            check = checks_by_castling(move);
            break;
        case en_passant:
            check = checks_by_en_passant<Side>(position, move);
            break;
        default:
            check = checks_by_promotion<Side>(position, move);
            break;
    }
    if (check) {
        move.check(true);
    }
}

template <int Side>
bool MoveGenerator::slider_reaches_king(ChessPosition const& position,
                                        BitBoard const& occupied) const {
    Square const king = enemy_king_.get_unique_square();
    return meets(attacks_->rook(king, occupied), SideOf<Side>::rooks_and_queens(position)) ||
           meets(attacks_->bishop(king, occupied), SideOf<Side>::bishops_and_queens(position));
}

BitBoard MoveGenerator::direct_check_squares(Piece piece) const {
    if (piece.queen()) {
        return direct_check_squares<white_queen>();
    }
    if (piece.rook()) {
        return direct_check_squares<white_rook>();
    }
    if (piece.bishop()) {
        return direct_check_squares<white_bishop>();
    }
    if (piece.knight()) {
        return direct_check_squares<white_knight>();
    }
    if (piece.pawn()) {
        return direct_check_squares<white_pawn>();
    }
    return BitBoard();
}

template <int Side>
bool MoveGenerator::checks_by_normal_move(ChessPosition const& position, Move const& move) const {
    BitBoard const from = move.from().bitboard();
    BitBoard const to = move.to().bitboard();
    Piece const piece = move.piece();
    if (meets(discovering_, from)) {
        // A pawn or king may stay on the line; any other piece leaves it when it moves.
        if (!piece.pawn() && !piece.king()) {
            return true;
        }
        if (slider_reaches_king<Side>(position, (occupied_ & ~from) | to)) {
            return true;
        }
    }
    return meets(direct_check_squares(piece), to);
}

template <int Side>
bool MoveGenerator::checks_by_promotion(ChessPosition const& position, Move const& move) const {
    Square const king = enemy_king_.get_unique_square();
    BitBoard const to = move.to().bitboard();
    BitBoard const occupied = (occupied_ & ~move.from().bitboard()) | to;
    BitBoard const rook_lines = attacks_->rook(king, occupied);
    BitBoard const bishop_lines = attacks_->bishop(king, occupied);
    bool direct = false;
    switch (move.code()) {
        case promo_queen:
            direct = meets(rook_lines | bishop_lines, to);
            break;
        case promo_rook:
            direct = meets(rook_lines, to);
            break;
        case promo_bishop:
            direct = meets(bishop_lines, to);
            break;
        default:
            direct = meets(knight_check_squares_, to);
            break;
    }
    return direct || meets(rook_lines, SideOf<Side>::rooks_and_queens(position)) ||
           meets(bishop_lines, SideOf<Side>::bishops_and_queens(position));
}

/// Only the rook can give check: the king's own lines open along the rank, to the rook.
bool MoveGenerator::checks_by_castling(Move const& move) const {
    BitBoard const occupied = occupied_ & ~(move.from().bitboard() | move.to().bitboard());
    BitBoard const& lines = attacks_->rook(enemy_king_.get_unique_square(), occupied);
    return meets(lines, castled_rook(move.from(), move.to()).bitboard());
}

template <int Side>
bool MoveGenerator::checks_by_en_passant(ChessPosition const& position, Move const& move) const {
    BitBoard const to = move.to().bitboard();
    BitBoard const victim = ahead<enemy_of<Side>>(to, 1);
    BitBoard const occupied = (occupied_ & ~(move.from().bitboard() | victim)) | to;
    return slider_reaches_king<Side>(position, occupied) || meets(pawn_check_squares_, to);
}

template void MoveGenerator::set_checkstatus<side::black>(ChessPosition const&, Move&);
template void MoveGenerator::set_checkstatus<side::white>(ChessPosition const&, Move&);

}  // namespace orvelin
