#pragma once

// The innermost loops of the generator, for the files that hold its stages.

#include "generation/attacks.h"
#include "generation/move_generator.h"
#include "position/chess_position.h"
#include "position/set_steps.h"
#include "position/side.h"

namespace orvelin {

template <int PieceId>
BitBoard MoveGenerator::direct_check_squares() const {
    constexpr Piece piece(PieceId);
    if constexpr (piece.queen()) {
        return rook_check_squares_ | bishop_check_squares_;
    }
    if constexpr (piece.rook()) {
        return rook_check_squares_;
    }
    if constexpr (piece.bishop()) {
        return bishop_check_squares_;
    }
    if constexpr (piece.knight()) {
        return knight_check_squares_;
    }
    if constexpr (piece.pawn()) {
        return pawn_check_squares_;
    }
    return BitBoard();
}

template <int Side, int PieceId>
void MoveGenerator::append_moves(ChessPosition const& position, Square from, BitBoard to_set,
                                 BitBoard check_squares, MoveList& list) {
    constexpr Piece piece(PieceId);
    int count = move_count_;
    Move move(from, Square(0), normal_move, piece, Piece());
    // A piece that leaves the line of a slider behind it gives check wherever it goes, but a pawn
    // may stay on the line.
    bool const discovers = static_cast<bool>(discovering_ & from.bitboard());
    if (discovers && !piece.pawn()) {
        check_squares = ~BitBoard();
    }
    while (to_set && count < MoveList::capacity) {
        Square const to = to_set.get_first_square();
        BitBoard const to_bit = to_set.get_reset_square();
        move.to(to);
        // Asked on free squares too: an illegal promotion can leave a piece there that is in no
        // set.
        move.capture_id(position[to.id()].id());
        move.check(static_cast<bool>(to_bit & check_squares));
        if (discovers && piece.pawn()) {
            set_checkstatus<Side>(position, move);
        }
        list[count++] = move;
    }
    move_count_ = count;
}

/// What a pawn reaches: free squares ahead, and enemies.
template <int Side>
BitBoard pawn_targets(BitBoard pawn, BitBoard free, BitBoard enemies) {
    BitBoard const step = ahead<Side>(pawn, 1) & free;
    BitBoard const double_step = ahead<Side>(step & SideOf<Side>::third_rank, 1) & free;
    return step | double_step | (pawn_attacks<Side>(pawn) & enemies);
}

template <int Side, int PieceId>
BitBoard MoveGenerator::reached_from(Square from, BitBoard enemies) const {
    constexpr Piece piece(PieceId);
    if constexpr (piece.pawn()) {
        return pawn_targets<Side>(from.bitboard(), ~occupied_, enemies);
    }
    if constexpr (piece.knight()) {
        return attacks_->knight(from);
    }
    if constexpr (piece.bishop()) {
        return attacks_->bishop(from, occupied_);
    }
    if constexpr (piece.rook()) {
        return attacks_->rook(from, occupied_);
    }
    if constexpr (piece.queen()) {
        return attacks_->queen(from, occupied_);
    }
    if constexpr (piece.king()) {
        return attacks_->king(from);
    }
}

// The two ways in which a stage learns what a piece reaches. A full list is made from a move table,
// since captures and quiet moves ask for each piece in turn and the look-up of a slider is what
// costs. Captures alone ask once, and of many pieces not at all, so that filling a table first
// would be most of their cost. Both give the same list, word for word.

/// From a move table.
struct MoveGenerator::TableReach {
    movetable_t const& table;

    template <int PieceId>
    bool may_reach(BitBoard) const {
        return true;
    }

    template <int Side, int PieceId>
    BitBoard reached_from(Square from) const {
        return BitBoard(table[index(from)]);
    }
};

/// By a look-up when the piece's turn comes, at the occupancy that the generator cached.
struct MoveGenerator::DirectReach {
    MoveGenerator const& generator;
    attack_sets_t const& attacks;

    /// Whether a piece of this kind may attack one of the squares.
    template <int PieceId>
    bool may_reach(BitBoard targets) const {
        constexpr Piece piece(PieceId);
        static_assert(piece.knight() || piece.bishop() || piece.rook() || piece.queen());
        BitBoard const& reached = piece.knight()   ? attacks.knight_attacks
                                  : piece.bishop() ? attacks.bishop_attacks
                                  : piece.rook()   ? attacks.rook_attacks
                                                   : attacks.queen_attacks;
        return static_cast<bool>(reached & targets);
    }

    template <int Side, int PieceId>
    BitBoard reached_from(Square from) const {
        return generator.reached_from<Side, PieceId>(from, generator.enemy_pieces_);
    }
};

template <int Side, int PieceId, typename Reach>
void MoveGenerator::piece_moves(ChessPosition const& position, Reach const& reach, BitBoard to_mask,
                                MoveList& list) {
    BitBoard const check_squares = direct_check_squares<PieceId>();
    BitBoard const held = position.check() ? ~BitBoard() : pinned_;
    BitBoard pieces = position.piece(PieceId);
    while (pieces) {
        Square const from = pieces.get_first_square();
        BitBoard const from_bit = pieces.get_reset_square();
        BitBoard to_set = to_mask & reach.template reached_from<Side, PieceId>(from);
        if (!to_set) {
            continue;
        }
        if (held & from_bit) {
            to_set &= legal_targets(position, from);
        }
        append_moves<Side, PieceId>(position, from, to_set, check_squares, list);
    }
}

template <int Side, typename Reach>
void MoveGenerator::king_moves(ChessPosition const& position, Reach const& reach, BitBoard to_mask,
                               MoveList& list) {
    Piece const king(SideOf<Side>::king);
    BitBoard pieces = position.piece(SideOf<Side>::king);
    while (pieces) {
        Square const from = pieces.take_first_square();
        BitBoard to_set = to_mask & reach.template reached_from<Side, SideOf<Side>::king>(from);
        while (to_set) {
            Square const to = to_set.take_first_square();
            Move move(from, to, normal_move, king, position[to.id()]);
            if (!is_legal_kingmove<Side>(position, move)) {
                continue;
            }
            set_checkstatus<Side>(position, move);
            store(list, move);
        }
    }
}

}  // namespace orvelin
