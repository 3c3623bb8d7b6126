#include "perft/checked_leaf_counter.h"

#include "position/chess_position.h"

namespace orvelin::tools {

namespace {

bool same_record(history_t const& left, history_t const& right) {
    return left.pinned_pieces == right.pinned_pieces &&
           left.discovering_pieces == right.discovering_pieces &&
           left.white_queencheck_squares == right.white_queencheck_squares &&
           left.black_queencheck_squares == right.black_queencheck_squares &&
           left.make_move_counter == right.make_move_counter &&
           left.castlingrights == right.castlingrights && left.dfz == right.dfz &&
           left.last_move == right.last_move && left.ep == right.ep &&
           left.white_kingsfield == right.white_kingsfield &&
           left.black_kingsfield == right.black_kingsfield && left.check == right.check;
}

/// What is wrong with the position behind a move; empty when nothing is.
std::string fault_behind(ChessPosition const& position, Move const& move) {
    bool const white = position.white_to_move();
    bool const mover_in_check = white ? position.white_attacks(position.black_king())
                                      : position.black_attacks(position.white_king());
    bool const in_check = white ? position.black_attacks(position.white_king())
                                : position.white_attacks(position.black_king());
    if (mover_in_check) {
        return "it leaves its own king in check";
    }
    if (move.check() != in_check) {
        return in_check ? "it gives check without the check bit"
                        : "it has the check bit and gives no check";
    }
    if (position.check() != in_check) {
        return "the record behind it has a wrong check flag";
    }
    return "";
}

}  // namespace

PositionSnapshot::PositionSnapshot(ChessPosition const& position)
    : fen_(position.fen()),
      hash_(position.get_hash()),
      pawn_hash_(position.get_pawnhash()),
      material_(position.materialindex()),
      board_(position.board()),
      record_(position.history().back()),
      records_(position.history().size()),
      repetition_filter_(position.repetition_filter()) {}

std::string PositionSnapshot::difference(ChessPosition const& position) const {
    if (position.fen() != fen_) {
        return "FEN " + position.fen();
    }
    if (position.board() != board_) {
        return "board";
    }
    if (position.get_hash() != hash_) {
        return "hash";
    }
    if (position.get_pawnhash() != pawn_hash_) {
        return "pawn hash";
    }
    if (position.materialindex() != material_) {
        return "material";
    }
    if (position.history().size() != records_) {
        return "number of records";
    }
    if (!same_record(position.history().back(), record_)) {
        return "record";
    }
    if (position.repetition_filter() != repetition_filter_) {
        return "repetition record";
    }
    return "";
}

std::uint64_t CheckedLeafCounter::count_behind(ChessPosition& position, Move const& move,
                                               int depth) {
    PositionSnapshot const before(position);
    position.make_move(move);
    std::string fault = fault_behind(position, move);
    std::uint64_t const leaves = fault.empty() ? count(position, depth) : 0;
    position.unmake_move();
    if (fault.empty()) {
        std::string const difference = before.difference(position);
        if (!difference.empty()) {
            fault = "taking it back leaves another " + difference;
        }
    }
    if (!fault.empty()) {
        throw TreeFault(before.fen(), move.algebraic(chess960_), fault);
    }
    return leaves;
}

}  // namespace orvelin::tools
