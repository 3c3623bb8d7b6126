#include "position/chess_position.h"
#include "position/move_buffer.h"
#include "search/analysis.h"
#include "search/lmr_table.h"
#include "search/transposition_table.h"

namespace orvelin {

namespace {

/// Reversible plies with which the game still goes on.
constexpr int last_dfz = 100;

/// Smallest depth at which a first move that failed low has the others reordered.
constexpr int reordering_depth = 4;

}  // namespace

int Analysis::pv_search(int const& depth, int alpha, int beta, PrincipalVariation& line) {
    new_node();
    if (auto const value = mate_distance_cut(alpha, beta)) {
        return *value;
    }
    if (counters_.ply > 0) {
        if (auto const value = pv_early_return()) {
            return *value;
        }
    }
    // The returns above come before this line is emptied, so a child that leaves through
    // one of them keeps the previous sibling's moves in it (oddity 63).
    line.clear();
    counters_.note_ply();
    if (stopped()) {
        return alpha;
    }
    if (depth < 1 || counters_.ply > max_iteration) {
        return leaf_value(alpha, beta);
    }

    Move const hash_move = pv_hash_move();
    movetable_t move_table;
    move_generator_.create_movetable(position_, move_table);
    MoveBuffer moves;
    MoveList list(moves.data());
    move_generator_.serialize_moves(position_, move_table, list);
    if (counters_.ply == 0) {
        select_searchmoves(list);
    }
    if (list.size() == 0) {
        return value_without_moves();
    }
    if (counters_.iteration.load(std::memory_order_relaxed) == 1 && counters_.ply == 0) {
        root_.best_move.store(list[0]);
    }
    localsort(list, depth, true, hash_move);
    return search_pv_moves(list, hash_move, depth, alpha, beta, line);
}

// The fifty-move rule is asked above 100, and here only (oddity 66).
std::optional<int> Analysis::pv_early_return() {
    // One earlier occurrence is enough, in the tree and in the game before it.
    if (position_.draw_by_threefold_repetition()) {
        return draw_score;
    }
    if (position_.get_dfz() > last_dfz) {
        return draw_score;
    }
    if (!position_.check()) {
        // The value hardly ever counts at this node, but evaluating renews the passed pawns
        // and king maps that `extend` reads.
        int const value = static_eval();
        if (value > min_mate_score || value < -min_mate_score) {
            return value;
        }
    }
    return std::nullopt;
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
        if (counters_.ply == 0) {
            root_.begin_move(move, i + 1);
        }
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
            put_in_tt(lower_bound, depth, beta, move, counters_.date);
            return beta;
        }
        if (score > alpha) {
            best_to_store = move;
            line = move + child_line;
            alpha = score;
            bound = exact_value;
            if (counters_.ply == 0) {
                raise_root(move, depth, alpha, line);
            }
        } else if (i == 0 && depth >= reordering_depth) {
            iidsort(list, depth, alpha, beta);
        }
    }
    put_in_tt(bound, depth, alpha, best_to_store, counters_.date);
    return alpha;
}

int Analysis::pv_reduction(Move const& move, int depth, int index, int extension) const {
    return reducible(move, extension) ? lmr_table_.pv_value(depth, static_cast<unsigned int>(index))
                                      : 0;
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

// A new best move late in the budget ends the search (oddity 37).
void Analysis::raise_root(Move const& move, int depth, int alpha, PrincipalVariation& line) {
    root_.raise(move, depth, alpha, line);
    if (RootResult::is_late(time_manager_.percentage())) {
        set_action(stop_action);
    }
}

void Analysis::iidsort(MoveList& list, int depth, int alpha, int beta) {
    int const size = static_cast<int>(list.size());
    if (depth < reordering_depth || size < 2) {
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

}  // namespace orvelin
