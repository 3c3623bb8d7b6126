#pragma once

#include <vector>

#include "analyse/position_search.h"
#include "generation/move_generator.h"
#include "position/move.h"
#include "position/move_list.h"

namespace orvelin {
class Analysis;
class ChessPosition;
struct Tables;
}  // namespace orvelin

namespace orvelin::analyse {

class StaticEvaluator;

/// Finds the position whose static evaluation is the score of a line.
///
/// The search ends its principal variation where it hands over to quiescence, and of that it keeps
/// the value alone. The line is played out on the board of the search, and from its end the
/// captures are followed whose value in quiescence is the value of the node, down to the node that
/// is worth its own evaluation. Which capture that is each time, the quiescence of the engine
/// itself tells, in a window just around the value. Sums of the evaluation that follow moves are
/// rounded on the way, so that a value may be found one unit beside the score.
///
/// The board of the search must be the root of the line and no search may run; it is left as it was
/// found, and nodes are counted on. One thread at a time.
class LeafFinder {
 public:
    LeafFinder(Tables const& tables, Analysis& analysis, StaticEvaluator& evaluator)
        : generator_(tables), analysis_(analysis), evaluator_(evaluator) {}

    /// Sets the leaf of the line, or why there is none. The moves of the line must be legal and go
    /// no further than the game.
    void find(Line& line);

 private:
    unexplained look_behind(Line const& line, Leaf& leaf);
    bool game_is_over();
    bool has_endgame_score();
    bool follow(int value, int tolerance, int level);
    void make(Move const& move);
    void unmake();
    ChessPosition const& position() const;

    MoveGenerator generator_;
    Analysis& analysis_;
    StaticEvaluator& evaluator_;
    /// Moves made on the board since the root.
    std::vector<Move> moves_;
};

}  // namespace orvelin::analyse
