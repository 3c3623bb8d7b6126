#pragma once

#include <string>

#include "analyse/position_search.h"
#include "evaluation/evaluation.h"
#include "position/chess_position.h"

namespace orvelin {
struct Tables;
}

namespace orvelin::analyse {

/// Evaluates positions as they stand, each by itself: nothing is left of the ones before. One
/// thread at a time; the tables must outlive it.
class StaticEvaluator {
 public:
    explicit StaticEvaluator(Tables& tables) : position_(tables), evaluation_(position_, tables) {}

    /// Sets the position up and evaluates it. The FEN text must be one that play::check_fen()
    /// takes.
    void evaluate(std::string const& fen);

    /// From the side to move, in engine units.
    int score() const { return score_; }
    term_scores_t const& terms() const { return terms_; }
    ChessPosition const& position() const { return position_; }
    /// Whether the score is the rounded sum of the terms, and not that of a function of an endgame.
    bool is_sum() const;

 private:
    ChessPosition position_;
    Evaluation evaluation_;
    int score_ = 0;
    term_scores_t terms_{};
};

}  // namespace orvelin::analyse
