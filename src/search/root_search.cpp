#include "search/analysis.h"

namespace orvelin {

int Analysis::root_search(MoveList& /*list*/, int depth, int alpha, int beta) {
    build_endgame_table();
    PrincipalVariation local_line;
    int const score = pv_search(depth, alpha, beta, local_line);
    {
        std::lock_guard const lock(analysis_mutex_);
        mpv_.clear();
        // Published whatever happened: after a stop this is the best line fully searched.
        mpv_.add(root_.root_line);
        if (mpv_.number() < 2) {
            return score;
        }
    }
    search_further_lines(depth);
    return score;
}

void Analysis::publish(PrincipalVariation const& line) {
    std::lock_guard const lock(analysis_mutex_);
    mpv_.add(line);
}

void Analysis::search_further_lines(int depth) {
    int const saved_score = root_.best_score.load();
    Move const saved_move = root_.best_move.load();
    MoveList list;
    // The `searchmoves` limit holds for the first line only (oddity 58).
    move_generator_.generate_moves(position_, list);
    remove(saved_move, list);
    PrincipalVariation pass_line;
    for (int n = 1; n < wanted_lines(); ++n) {
        Move pass_move;
        if (list.size() > 0) {
            search_root_pass(list, depth, pass_line, pass_move);
        }
        // The line is not emptied between passes: with no move left it is added again (oddity 60).
        publish(pass_line);
        if (list.size() > 0) {
            remove(pass_move, list);
        }
    }
    root_.best_score.store(saved_score);
    root_.best_move.store(saved_move);
}

// The window is handed on as it stands, never flipped for the opponent's side (oddity 57): the
// lower bound is the pass's best, the upper bound infinity. A later move can thus only improve on
// a negative best. No stop test stands here: after a stop each search returns at once (oddity 56).
void Analysis::search_root_pass(MoveList& list, int depth, PrincipalVariation& pass_line,
                                Move& pass_move) {
    int best = -infinite_score;
    int number = 0;
    for (Move const move : list) {
        root_.begin_move(move, ++number);
        PrincipalVariation child_line;
        make_move(move);
        int const score = -pv_search(depth - 1, best, infinite_score, child_line);
        unmake_move(move);
        if (score > best) {
            pass_line = move + child_line;
            best = score;
            pass_line.set_score(score);
            pass_line.set_depth(depth);
            pass_move = move;
        }
    }
}

int Analysis::wanted_lines() const {
    std::lock_guard const lock(analysis_mutex_);
    return mpv_.number();
}

}  // namespace orvelin
