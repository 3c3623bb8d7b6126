#include "generation/attacks.h"
#include "generation/connections.h"
#include "generation/move_generator.h"
#include "generation/move_generator_pieces.h"
#include "position/castling_targets.h"
#include "position/chess_position.h"
#include "position/side.h"

namespace orvelin {

template <int Side>
void MoveGenerator::generate_quiet_moves(ChessPosition const& position, movetable_t& table,
                                         MoveList& list) {
    using Own = SideOf<Side>;
    BitBoard const free = ~occupied_;
    TableReach const reach{table};
    piece_moves<Side, Own::queen>(position, reach, free, list);
    piece_moves<Side, Own::rook>(position, reach, free, list);
    piece_moves<Side, Own::knight>(position, reach, free, list);
    piece_moves<Side, Own::bishop>(position, reach, free, list);
    piece_moves<Side, Own::pawn>(position, reach, free & ~Own::last_rank, list);
    king_moves<Side>(position, reach, free, list);
    castlings<Side>(position, list);
}

template <int Side>
void MoveGenerator::castlings(ChessPosition const& position, MoveList& list) {
    using Own = SideOf<Side>;
    Square const king = own_king_.get_unique_square();
    // A position made by hand can hold rights without a king.
    if (king == Square()) {
        return;
    }
    int const rights = (position.castlingrights() >> (Side == side::white ? 0 : 8)) & 0xFF;
    for (int file = 0; file < 8 && (rights >> file) != 0; ++file) {
        if (((rights >> file) & 1) == 0) {
            continue;
        }
        Square const rook(Own::home_rank + file);
        if (!castling_allowed<Side>(position, king, rook)) {
            continue;
        }
        Move move(king, rook, castling, Piece(Own::king), Piece());
        set_checkstatus<Side>(position, move);
        store(list, move);
    }
}

/// Neither piece may be stopped on its way and the king may neither stand on nor cross an attacked
/// square, its own included.
template <int Side>
bool MoveGenerator::castling_allowed(ChessPosition const& position, Square king,
                                     Square rook) const {
    using Enemy = SideOf<enemy_of<Side>>;
    CastlingTargets const targets = castling_targets(king, rook, SideOf<Side>::home_rank);
    BitBoard const others = occupied_ & ~(own_king_ | rook.bitboard());
    BitBoard king_way = connections_->closed_line_segment(king, targets.king);
    BitBoard const& rook_way = connections_->closed_line_segment(rook, targets.rook);
    if ((king_way | rook_way) & others) {
        return false;
    }
    while (king_way) {
        if (Enemy::attackers(position, king_way.get_reset_square())) {
            return false;
        }
    }
    // The rook's departure must not open the rank to an enemy rook or queen.
    return !(attacks_->rook(targets.king, others) & Enemy::rooks_and_queens(position));
}

template void MoveGenerator::generate_quiet_moves<side::black>(ChessPosition const&, movetable_t&,
                                                               MoveList&);
template void MoveGenerator::generate_quiet_moves<side::white>(ChessPosition const&, movetable_t&,
                                                               MoveList&);

}  // namespace orvelin
