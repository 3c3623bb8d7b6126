#include "position/chess_position.h"
#include "search/analysis.h"

namespace orvelin {

namespace {

/// Past this many plies beyond the nominal depth nothing is extended.
constexpr int extension_margin = 8;

/// Material, without pawns, up to which a position counts as an ending.
constexpr int ending_material = 1000;

}  // namespace

int Analysis::extend(MoveList const& list, Move const& move) {
    if (counters_.ply > counters_.iteration.load(std::memory_order_relaxed) + extension_margin) {
        return 0;
    }
    int const base = extends_by_one(list, move) ? 1 : 0;
    // King maps and passed pawns are those of the last position evaluated anywhere in the
    // tree; they are not recomputed for this node (oddity 75).
    Move const last_move = position_.last_move();
    if (move.capture_id() != 0 && last_move.capture_id() != 0 && move.to() == last_move.to()) {
        Mobility const& maps = evaluation_.mobility_maps();
        BitBoard const& battlefield =
            position_.stm() == 1 ? maps.black_king_battlefield() : maps.white_king_battlefield();
        if (move.to().bitboard() & battlefield) {
            return base + 1;
        }
    }
    if (base == 1) {
        return 1;
    }
    bool const passed_pawn =
        move.piece().pawn() && (move.from().bitboard() & evaluation_.passed_pawns());
    return passed_pawn && position_.nobelmen() <= ending_material ? 1 : 0;
}

bool Analysis::extends_by_one(MoveList const& list, Move const& move) {
    if (move.check() && see(move) >= 0) {
        return true;
    }
    if (list.size() == 1) {
        return true;
    }
    int const to = move.to().id();
    if (move.piece().white_pawn() && to >= 56) {
        return true;
    }
    // Not a mirror of the line above: a black pawn reaching the third rank is extended, one
    // that promotes is not (oddity 74).
    if (move.piece().black_pawn() && to >= 16 && to <= 23) {
        return true;
    }
    return move.xcode() == mate_attack;
}

}  // namespace orvelin
