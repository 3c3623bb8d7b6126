#include "generation/connections.h"
#include "generation/move_generator.h"
#include "position/chess_position.h"
#include "position/side.h"

namespace orvelin {

namespace {

/// The square of the pawn that an en passant move takes.
Square en_passant_victim(Move const& move) {
    return move.piece().white_piece() ? move.to() - 8 : move.to() + 8;
}

}  // namespace

BitBoard MoveGenerator::legal_targets(ChessPosition const& position, Square from) const {
    BitBoard targets = ~BitBoard();
    BitBoard const from_bit = from.bitboard();
    bool const check = position.check();
    // Outside check a piece that is not pinned may go anywhere, a pinned one along its line only.
    if (!check && !(pinned_ & from_bit)) {
        return targets;
    }
    Square const king = own_king_.get_unique_square();
    BitBoard const occupied = occupied_ & ~from_bit;
    for (Square const& checker : potential_checkers_) {
        BitBoard const& line = connections_->line_segment(king, checker);
        bool const open = !(line & occupied);
        // The closed segment has both ends: taking the checker passes and so does interposing.
        if (open && (check || (line & from_bit))) {
            targets &= connections_->closed_line_segment(king, checker);
        }
    }
    return targets;
}

bool MoveGenerator::is_legal(ChessPosition const& position, Move const& move) const {
    return static_cast<bool>(legal_targets(position, move.from()) & move.to().bitboard());
}

bool MoveGenerator::is_legal_pawnmove(ChessPosition const& position, Move const& move) const {
    bool const en_passant_move = move.code() == en_passant;
    if (en_passant_move && !position.check()) {
        return en_passant_keeps_king_safe(move);
    }
    if (is_legal(position, move)) {
        return true;
    }
    // The checker may be the very pawn that goes.
    return en_passant_move && en_passant_keeps_king_safe(move);
}

/// Takes both pawns off the board, so that two pawns on the king's rank are seen as no shield.
bool MoveGenerator::en_passant_keeps_king_safe(Move const& move) const {
    Square const king = own_king_.get_unique_square();
    Square const victim = en_passant_victim(move);
    BitBoard const to = move.to().bitboard();
    BitBoard const occupied = occupied_ & ~(move.from().bitboard() | victim.bitboard());
    for (Square const& checker : potential_checkers_) {
        bool const open = !(connections_->line_segment(king, checker) & occupied);
        if (open && checker != victim && !(connections_->closed_line_segment(king, checker) & to)) {
            return false;
        }
    }
    return true;
}

template <int Side>
bool MoveGenerator::is_legal_kingmove(ChessPosition const& position, Move const& move) const {
    using Enemy = SideOf<enemy_of<Side>>;
    Square const to = move.to();
    if (!position.check()) {
        return !Enemy::attackers(position, to.bitboard());
    }
    // Without the king on its old square a step back along a checker's line stays in check.
    BitBoard const occupied = occupied_ & ~move.from().bitboard();
    BitBoard attackers = Enemy::blocked_attackers(position, to.bitboard());
    while (attackers) {
        Square const attacker = attackers.take_first_square();
        if (!(connections_->line_segment(to, attacker) & occupied)) {
            return false;
        }
    }
    return true;
}

template bool MoveGenerator::is_legal_kingmove<side::black>(ChessPosition const&,
                                                            Move const&) const;
template bool MoveGenerator::is_legal_kingmove<side::white>(ChessPosition const&,
                                                            Move const&) const;

}  // namespace orvelin
