#include "search/root_result.h"

namespace orvelin {

void RootResult::clear() {
    begin_move(Move(), 0);
    best_score.store(0);
    best_move.store(Move());
    ponder_move.store(Move());
    root_line.clear();
}

void RootResult::raise(Move const& move, int depth, int score, PrincipalVariation& line) {
    line.set_depth(depth);
    line.set_score(score);
    root_line = line;
    best_score.store(score);
    best_move.store(move);
}

}  // namespace orvelin
