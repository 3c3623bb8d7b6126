#include <algorithm>

#include "position/chess_position.h"
#include "position/move_buffer.h"
#include "search/analysis.h"
#include "search/lmr_table.h"
#include "search/transposition_table.h"

namespace orvelin {

int Analysis::pv_search(int const& depth, int alpha, int beta, PrincipalVariation& line) {
    new_node();
    int result = 0;
    if (mate_distance_cut(alpha, beta, result)) {
        return result;
    }
    if (ply_ > 0 && pv_early_return(result)) {
        return result;
    }
    // The returns above come before this line is emptied, so a child that leaves through
    // one of them keeps the previous sibling's moves in it: by design.
    line.clear();
    if (ply_ > seldepth_.load(std::memory_order_relaxed)) {
        seldepth_.store(ply_);
    }
    if (stopped()) {
        return alpha;
    }
    if (depth < 1 || ply_ > max_iteration) {
        return leaf_value(alpha, beta);
    }

    Move const hash_move = pv_hash_move();
    movetable_t move_table;
    move_generator_.create_movetable(position_, move_table);
    MoveBuffer moves;
    MoveList list(moves.data());
    move_generator_.serialize_moves(position_, move_table, list);
    if (ply_ == 0) {
        select_searchmoves(list);
    }
    if (list.size() == 0) {
        return position_.check() ? ply_ - mate_score : draw_score;
    }
    if (iteration_.load(std::memory_order_relaxed) == 1 && ply_ == 0) {
        best_move_.store(list[0]);
    }
    localsort(list, depth, true, hash_move);
    return search_pv_moves(list, hash_move, depth, alpha, beta, line);
}

bool Analysis::pv_early_return(int& result) {
    // One earlier occurrence is enough, in the tree and in the game before it.
    if (position_.draw_by_threefold_repetition()) {
        result = draw_score;
        return true;
    }
    // At exactly 100 the game goes on here.
    if (position_.get_dfz() > 100) {
        result = draw_score;
        return true;
    }
    if (!position_.check()) {
        // The value hardly ever counts at this node, but evaluating renews the passed pawns
        // and king maps that `extend` reads.
        int const value = static_eval();
        if (value > min_mate_score || value < -min_mate_score) {
            result = value;
            return true;
        }
    }
    return false;
}

Move Analysis::pv_hash_move() const {
    // Draft, score and bound are not looked at: the table never cuts an open-window node.
    TTrecord const* const record = transposition_table_.find(position_.get_hash());
    if (record == nullptr) {
        return Move();
    }
    TTmove ttmove = record->get_move();
    return is_legal(ttmove) ? ttmove(position_) : Move();
}

int Analysis::search_pv_moves(MoveList& list, Move const& hash_move, int depth, int alpha, int beta,
                              PrincipalVariation& line) {
    PrincipalVariation child_line;
    Move best_to_store = hash_move;
    bound_t bound = upper_bound;
    int const size = static_cast<int>(list.size());
    for (int i = 0; i < size; ++i) {
        Move const move = list[i];
        int const extension = extend(list, move);
        int const reduction = pv_reduction(move, depth, i, extension);
        make_move(move);
        int const score =
            search_pv_move(i, depth - 1 + extension, reduction, alpha, beta, child_line);
        unmake_move(move);
        if (stopped()) {
            return alpha;
        }
        if (score >= beta) {
            put_in_tt(lower_bound, depth, beta, move, date_);
            return beta;
        }
        if (score > alpha) {
            best_to_store = move;
            line = move + child_line;
            alpha = score;
            bound = exact_value;
            if (ply_ == 0) {
                raise_root(move, depth, alpha, line);
            }
        } else if (i == 0 && depth > 3) {
            iidsort(list, depth, alpha, beta);
        }
    }
    put_in_tt(bound, depth, alpha, best_to_store, date_);
    return alpha;
}

int Analysis::pv_reduction(Move const& move, int depth, int index, int extension) const {
    return reducible(move, extension) ? lmr_table_.pv_value(depth, static_cast<unsigned int>(index))
                                      : 0;
}

// Asked before the move is made.
bool Analysis::reducible(Move const& move, int extension) const {
    return extension == 0 && !position_.check() && move.xcode() != good_capture &&
           move.xcode() != killer && !move.check();
}

// Called with the move made; `depth` is the child's full depth.
int Analysis::search_pv_move(int index, int depth, int reduction, int alpha, int beta,
                             PrincipalVariation& child_line) {
    if (index == 0) {
        return -pv_search(depth, -beta, -alpha, child_line);
    }
    int score = -nullwindow_search(depth - reduction, -alpha - 1, -alpha);
    if (score <= alpha) {
        return score;
    }
    if (reduction > 0) {
        score = -nullwindow_search(depth, -alpha - 1, -alpha);
        if (score <= alpha) {
            return score;
        }
    }
    return -pv_search(depth, -beta, -alpha, child_line);
}

void Analysis::raise_root(Move const& move, int depth, int alpha, PrincipalVariation& line) {
    line.set_depth(depth);
    line.set_score(alpha);
    root_line_ = line;
    best_score_.store(alpha);
    best_move_.store(move);
    // A new best move late in the budget ends the search there and then.
    if (time_manager_.percentage() > 60) {
        set_action(stop_action);
    }
}

void Analysis::iidsort(MoveList& list, int depth, int alpha, int beta) {
    int const size = static_cast<int>(list.size());
    if (depth < 4 || size < 2) {
        return;
    }
    int const shallow_depth = depth / 2 - 2;
    for (int i = 1; i < size; ++i) {
        Move const move = list[i];
        PrincipalVariation local_line;
        make_move(move);
        int const score = -pv_search(shallow_depth, -beta, -alpha, local_line);
        unmake_move(move);
        // No stop test: after a stop the order of this node does not matter.
        if (score > alpha) {
            for (int j = i; j > 1; --j) {
                list[j] = list[j - 1];
            }
            list[1] = move;
            return;
        }
    }
}

bool Analysis::mate_distance_cut(int& alpha, int& beta, int& result) const {
    int const mating = mate_score - ply_;
    if (mating < beta) {
        if (mating <= alpha) {
            result = mating;
            return true;
        }
        beta = mating;
    }
    int const mated = ply_ - mate_score;
    if (mated > alpha) {
        if (mated >= beta) {
            result = mated;
            return true;
        }
        alpha = mated;
    }
    return false;
}

int Analysis::leaf_value(int alpha, int beta) {
    ++leaf_count_;
    return fade(quiescence(alpha, beta, 0));
}

int Analysis::fade(int value) const {
    int const dfz = position_.get_dfz();
    if (dfz <= 50) {
        return value;
    }
    // Past 100 the factor is negative and turns the sign of the value: by design.
    double const factor = std::min(1.0, 1.0 - (static_cast<double>(dfz) - 50.0) * 0.02);
    return static_cast<int>(static_cast<double>(value) * factor);
}

}  // namespace orvelin
