#include <algorithm>
#include <cstdint>

#include "position/chess_position.h"
#include "position/move_buffer.h"
#include "search/analysis.h"
#include "search/lmr_table.h"
#include "search/move_sort.h"
#include "search/transposition_table.h"

namespace orvelin {

namespace {

/// How far below alpha a null move must end to tell a threat.
constexpr int threat_margin = 200;

/// Plies that a null move is reduced by, and the depth that each further one takes.
constexpr int nullmove_reduction = 4;
constexpr int nullmove_plies_per_step = 5;

/// How far above beta a node may stand to be tried at a depth reduced by so many plies.
constexpr int reduced_search_margin = 200;
constexpr int reduced_search_plies = 4;

/// Up to this ply no move is pruned for being late. Behind it the first index that is, at depths
/// 1 and 2, and at depths 3 and 4.
constexpr int last_full_ply = 4;
constexpr int shallow_late_index = 7;
constexpr int late_index = 11;

/// How far below alpha the evaluation may be for a quiet move to be searched, by depth.
constexpr int futility_margin_1 = 99;
constexpr int futility_margin_2 = 499;
constexpr int futility_margin_3 = 899;

}  // namespace

struct Analysis::NullWindowNode {
    int depth;
    int alpha;
    int beta;
    int eval;
    bool check;
    Move hash_move;
};

int Analysis::nullwindow_search(int depth, int alpha, int beta) {
    new_node();
    if (auto const value = mate_distance_cut(alpha, beta)) {
        return *value;
    }
    counters_.note_ply();
    if (stopped()) {
        return alpha;
    }
    if (position_.draw_by_threefold_repetition()) {
        return draw_score;
    }
    if (depth < 1 || counters_.ply > max_iteration) {
        return leaf_value(alpha, beta);
    }
    std::uint64_t const key = position_.get_hash();
    // The entry is read behind the evaluation, which hides the wait for the memory.
    transposition_table_.prefetch(key);

    NullWindowNode node{depth, alpha, beta, -infinite_score, position_.check(), Move()};
    if (!node.check) {
        node.eval = static_eval();
        if (node.eval > min_mate_score || node.eval < -min_mate_score) {
            return node.eval;
        }
    }
    if (nullmove_cut(node)) {
        return beta;
    }
    if (reduced_search_cut(node)) {
        return beta;
    }
    if (auto const value = table_cut(node, key)) {
        return *value;
    }
    // Made here and not at the start of the node: most nodes never come to it.
    movetable_t move_table;
    move_generator_.create_movetable(position_, move_table);
    if (node.hash_move.code() != nullmove) {
        // Searched already. For a promotion all four moves leave the list (oddity 69).
        move_table[static_cast<std::size_t>(node.hash_move.from().id())] &=
            ~to_ull(node.hash_move.to().bitboard());
    }
    MoveBuffer moves;
    MoveList list(moves.data());
    move_generator_.serialize_moves(position_, move_table, list);
    if (list.size() == 0 && node.hash_move == Move()) {
        return value_without_moves();
    }
    give_classes(list, node.depth, false, Move());
    return search_null_window_moves(node, list);
}

// A null move that loses far below alpha tells a threat: it deepens the node by one ply for all
// that follows in it.
bool Analysis::nullmove_cut(NullWindowNode& node) {
    if (node.eval < node.beta || !nullmove_allowed()) {
        return false;
    }
    if (nullmove_search(node.depth, node.alpha, node.beta) >= node.beta) {
        return true;
    }
    int const threat_alpha = node.alpha - threat_margin;
    if (nullmove_search(node.depth, threat_alpha, node.beta - threat_margin) < threat_alpha) {
        ++node.depth;
    }
    return false;
}

// The position has to hold well above beta at a reduced depth. No move is made, so the same node
// is entered, and counted, once more.
bool Analysis::reduced_search_cut(NullWindowNode const& node) {
    int const raised_beta = node.beta + reduced_search_margin;
    if (node.eval < raised_beta || node.check || node.depth <= reduced_search_plies ||
        counters_.mate_attack_count != 0) {
        return false;
    }
    return nullwindow_search(node.depth - reduced_search_plies, raised_beta - 1, raised_beta) >=
           raised_beta;
}

// Table cut-off, then the search of the hash move before any list is made.
std::optional<int> Analysis::table_cut(NullWindowNode& node, std::uint64_t key) {
    TTrecord const* const record = transposition_table_.find(key);
    if (record == nullptr) {
        return std::nullopt;
    }
    if (record->get_draft() >= node.depth) {
        int const score = record->get_score(counters_.ply);
        if (record->is_exact_value()) {
            // Not clamped to the window (oddity 68).
            return score;
        }
        if (record->is_upperbound() && score <= node.alpha) {
            return node.alpha;
        }
        if (record->is_lowerbound() && score >= node.beta) {
            return node.beta;
        }
    }
    TTmove ttmove = record->get_move();
    if (!is_legal(ttmove)) {
        return std::nullopt;
    }
    node.hash_move = ttmove(position_);
    return hash_move_cut(node) ? std::optional<int>(node.beta) : std::nullopt;
}

// Neither reduced nor followed by a stop test: a stopped subtree can store its bound here
// (oddity 70). The ordering tables learn nothing from this cut-off.
bool Analysis::hash_move_cut(NullWindowNode const& node) {
    MoveList const no_list(nullptr);
    int const extension = extend(no_list, node.hash_move);
    make_move(node.hash_move);
    int const score = -nullwindow_search(node.depth - 1 + extension, -node.beta, -node.alpha);
    unmake_move(node.hash_move);
    if (score < node.beta) {
        return false;
    }
    put_in_tt(lower_bound, node.depth, node.beta, node.hash_move, counters_.date);
    return true;
}

int Analysis::search_null_window_moves(NullWindowNode const& node, MoveList& list) {
    int const size = static_cast<int>(list.size());
    // Sorted as far as the moves are wanted.
    MoveSort sort(list);
    // The index counts the skipped moves too.
    for (int i = 0; i < size; ++i) {
        sort.fill(i);
        Move const move = list[i];
        if (move == node.hash_move) {
            continue;
        }
        if (!node.check && skip_late_move(node, move, i)) {
            continue;
        }
        int const score = search_null_window_move(node, list, move, i);
        if (stopped()) {
            return node.alpha;
        }
        if (score > node.alpha) {
            if (move.capture_id() == 0) {
                learn_cutoff(node, list, i);
            }
            put_in_tt(lower_bound, node.depth, node.beta, move, counters_.date);
            return node.beta;
        }
    }
    put_in_tt(upper_bound, node.depth, node.alpha, node.hash_move, counters_.date);
    return node.alpha;
}

// Late move pruning and futility, for quiet moves of a node that is not in check.
bool Analysis::skip_late_move(NullWindowNode const& node, Move const& move, int index) const {
    bool const quiet = move.capture_id() == 0 && move.code() == normal_move && !move.check();
    if (!quiet) {
        return false;
    }
    if (counters_.ply > last_full_ply) {
        if (node.depth <= 2 && index >= shallow_late_index) {
            return true;
        }
        if ((node.depth == 3 || node.depth == 4) && index >= late_index) {
            return true;
        }
    }
    switch (node.depth) {
        case 1:
            return node.eval < node.alpha - futility_margin_1;
        case 2:
            return node.eval < node.alpha - futility_margin_2;
        case 3:
            return node.eval < node.alpha - futility_margin_3;
        default:
            return false;
    }
}

int Analysis::search_null_window_move(NullWindowNode const& node, MoveList const& list,
                                      Move const& move, int index) {
    int const extension = extend(list, move);
    int const reduction = reducible(move, extension)
                              ? lmr_table_.value(node.depth, static_cast<unsigned int>(index))
                              : 0;
    make_move(move);
    int score = -nullwindow_search(node.depth - 1 - reduction + extension, -node.beta, -node.alpha);
    if (score >= node.beta && reduction > 0) {
        score = -nullwindow_search(node.depth - 1, -node.beta, -node.alpha);
    }
    unmake_move(move);
    return score;
}

// Raises the quiet move that cut, and lowers every list entry before it, captures and
// skipped moves included.
void Analysis::learn_cutoff(NullWindowNode const& node, MoveList const& list, int index) {
    Move const cut_move = list[index];
    int const depth = node.depth;
    auto const teach_counter = [&](Move const& earlier) {
        counter_moves_->increment(earlier, cut_move, depth);
        for (int j = 0; j < index; ++j) {
            counter_moves_->decrement(earlier, list[j], depth);
        }
    };
    Move const previous = position_.last_move();
    if (previous != Move()) {
        teach_counter(previous);
        Move const before_previous = move_before_last();
        if (before_previous != Move()) {
            teach_counter(before_previous);
        }
    }
    unsigned int const history_depth = static_cast<unsigned int>(depth);
    history_table_.increment(cut_move, history_depth);
    for (int j = 0; j < index; ++j) {
        history_table_.decrement(list[j], history_depth);
    }
    killers_.set_killer(counters_.ply, cut_move);
}

int Analysis::nullmove_search(int depth, int alpha, int beta) {
    make_nullmove();
    int const reduced_depth =
        std::max(depth - depth / nullmove_plies_per_step - nullmove_reduction, 0);
    int const score = nullwindow_search(reduced_depth, -beta, -alpha);
    unmake_nullmove();
    return -score;
}

bool Analysis::nullmove_allowed() const {
    if (position_.last_move().code() == nullmove) {
        return false;
    }
    if (position_.check()) {
        return false;
    }
    if (counters_.ply < 1) {
        return false;
    }
    // Knights and pawns do not count.
    BitBoard const sliders =
        position_.stm() == 1
            ? position_.white_bishop() | position_.white_rook() | position_.white_queen()
            : position_.black_bishop() | position_.black_rook() | position_.black_queen();
    return static_cast<bool>(sliders);
}

}  // namespace orvelin
