#include <algorithm>

#include "position/chess_position.h"
#include "position/move_buffer.h"
#include "search/analysis.h"

namespace orvelin {

namespace {

/// Below this level of quiescence only captures that win material are searched.
constexpr int losing_captures_end = -8;

/// No line goes on past this ply. Captures run out, and a game of chess does not get near it; but
/// where a side has several kings a check need not be answered, so that two sides give check after
/// check without end, and the stack has one.
constexpr int deepest_ply = 500;

}  // namespace

int Analysis::quiescence(int alpha, int beta, int qdepth) {
    // At level 0 the caller has already counted this node.
    if (qdepth < 0) {
        new_node();
    }
    bool const check = position_.check();
    int value = counters_.ply - mate_score;
    if (!check) {
        value = static_eval();
        if (value > max_ordinary_score) {
            value -= counters_.ply;
        } else if (value < -max_ordinary_score) {
            value += counters_.ply;
        }
    }
    if (value >= beta) {
        return beta;
    }
    alpha = std::max(value, alpha);
    if (stopped() || counters_.ply >= deepest_ply) {
        return alpha;
    }

    // Moves are looked for here and not at the start: most nodes of quiescence end above.
    MoveBuffer moves;
    MoveList list(moves.data());
    if (check) {
        move_generator_.generate_moves(position_, list);
        if (list.size() == 0) {
            return counters_.ply - mate_score;
        }
    } else {
        // The evaluation has just found what is attacked.
        move_generator_.generate_captures_directly(
            position_, evaluation_.mobility_maps().attack_sets(position_.stm()), list);
        if (list.size() == 0) {
            return alpha;
        }
    }
    for (Move const& move : list) {
        if (qdepth < losing_captures_end && !check && see(move) <= 0) {
            continue;
        }
        int const score = quiescence_move(move, alpha, beta, qdepth);
        if (score >= beta) {
            return beta;
        }
        alpha = std::max(alpha, score);
    }
    return alpha;
}

// A mate score has the ply taken off again at each level that it passes, beyond the ply
// already in it: mates seen in quiescence are discounted (oddity 72).
int Analysis::quiescence_move(Move const& move, int alpha, int beta, int qdepth) {
    make_move(move);
    int const reply = quiescence(-beta, -alpha, qdepth - 1);
    int score = -reply;
    if (reply < -max_ordinary_score) {
        score = -reply - counters_.ply;
    } else if (reply > max_ordinary_score) {
        score = counters_.ply - reply;
    }
    unmake_move(move);
    return score;
}

}  // namespace orvelin
