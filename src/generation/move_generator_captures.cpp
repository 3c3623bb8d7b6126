#include <cstdlib>

#include "generation/move_generator.h"
#include "generation/move_generator_pieces.h"
#include "position/chess_position.h"
#include "position/side.h"

namespace orvelin {

template <int Side>
void MoveGenerator::generate_captures(ChessPosition const& position, movetable_t& table,
                                      MoveList& list) {
    captures<Side>(position, TableReach{table}, list);
}

template <int Side>
void MoveGenerator::captures_directly(ChessPosition const& position, attack_sets_t const& attacks,
                                      MoveList& list) {
    captures<Side>(position, DirectReach{*this, attacks}, list);
}

template <int Side, typename Reach>
void MoveGenerator::captures(ChessPosition const& position, Reach const& reach, MoveList& list) {
    using Own = SideOf<Side>;
    targets_ = enemy_pieces_ & ~enemy_king_;
    pawn_captures<Side>(position, reach, list);
    piece_captures<Side, Own::knight>(position, reach, list);
    piece_captures<Side, Own::bishop>(position, reach, list);
    piece_captures<Side, Own::rook>(position, reach, list);
    piece_captures<Side, Own::queen>(position, reach, list);
    king_moves<Side>(position, reach, targets_, list);
    sort_by_victim(list);
}

template <int Side, int PieceId, typename Reach>
void MoveGenerator::piece_captures(ChessPosition const& position, Reach const& reach,
                                   MoveList& list) {
    if (reach.template may_reach<PieceId>(targets_)) {
        piece_moves<Side, PieceId>(position, reach, targets_, list);
    }
}

template <int Side, typename Reach>
void MoveGenerator::pawn_captures(ChessPosition const& position, Reach const& reach,
                                  MoveList& list) {
    using Own = SideOf<Side>;
    BitBoard const& last_rank = Own::last_rank;
    BitBoard const check_squares = direct_check_squares<Own::pawn>();
    BitBoard pawns = position.piece(Own::pawn);
    // Only those that stand so that they can capture or promote. Where sets overlap, the table can
    // hold what another piece reaches, and all are asked.
    if (!position.board_is_inconsistent()) {
        pawns &= pawn_attacks<enemy_of<Side>>(targets_ | position.ep().bitboard()) |
                 ahead<enemy_of<Side>>(last_rank, 1);
    }
    while (pawns) {
        Square const from = pawns.take_first_square();
        BitBoard const reached = reach.template reached_from<Side, Own::pawn>(from);
        BitBoard const to_set = reached & targets_ & ~last_rank;
        if (to_set) {
            append_moves<Side, Own::pawn>(position, from, to_set & legal_targets(position, from),
                                          check_squares, list);
        }
        en_passant_capture<Side>(position, from, list);
        promotions<Side>(position, from, reached & last_rank & ~enemy_king_, list);
    }
}

template <int Side>
void MoveGenerator::en_passant_capture(ChessPosition const& position, Square from, MoveList& list) {
    using Own = SideOf<Side>;
    Square const to = position.ep();
    if (to == Square()) {
        return;
    }
    int const distance = Side == side::white ? to - from : from - to;
    if (distance != 7 && distance != 9) {
        return;
    }
    if (std::abs(to.file_number() - from.file_number()) >= 2) {
        return;
    }
    Move move(from, to, en_passant, Piece(Own::pawn), Piece(SideOf<enemy_of<Side>>::pawn));
    set_checkstatus<Side>(position, move);
    if (is_legal_pawnmove(position, move)) {
        store(list, move);
    }
}

template <int Side>
void MoveGenerator::promotions(ChessPosition const& position, Square from, BitBoard to_set,
                               MoveList& list) {
    if (to_set) {
        to_set &= legal_targets(position, from);
    }
    while (to_set) {
        Square const to = to_set.take_first_square();
        for (move_t const code : {promo_queen, promo_rook, promo_bishop, promo_knight}) {
            Move move(from, to, code, Piece(SideOf<Side>::pawn), position[to.id()]);
            set_checkstatus<Side>(position, move);
            store(list, move);
        }
    }
}

/// Stable, so that of two moves with equal victims the lower attacker stays in front.
void MoveGenerator::sort_by_victim(MoveList& list) const {
    for (int i = 1; i < move_count_; ++i) {
        Move const move = list[i];
        int const value = move.capture().abs_value();
        int j = i;
        while (j > 0 && list[j - 1].capture().abs_value() < value) {
            list[j] = list[j - 1];
            --j;
        }
        list[j] = move;
    }
}

template void MoveGenerator::captures_directly<side::black>(ChessPosition const&,
                                                            attack_sets_t const&, MoveList&);
template void MoveGenerator::captures_directly<side::white>(ChessPosition const&,
                                                            attack_sets_t const&, MoveList&);
template void MoveGenerator::generate_captures<side::black>(ChessPosition const&, movetable_t&,
                                                            MoveList&);
template void MoveGenerator::generate_captures<side::white>(ChessPosition const&, movetable_t&,
                                                            MoveList&);

}  // namespace orvelin
