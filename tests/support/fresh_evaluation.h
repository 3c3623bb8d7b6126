#pragma once

#include <cstddef>
#include <string>

#include "evaluation/evaluation.h"
#include "position/chess_position.h"
#include "support/shared_tables.h"

namespace orvelin::test {

/// A position with a freshly built evaluation of its own, which has not evaluated yet.
class FreshEvaluation {
 public:
    explicit FreshEvaluation(std::string const& fen)
        : position_(read(fen)), evaluation_(position_, shared_tables()) {}

    /// Evaluates; the score from the point of view of the side to move.
    int score() { return evaluation_.static_eval(); }
    /// Goes on to another position with the same evaluation, and evaluates it.
    void go_on(std::string const& fen) {
        position_.fen(fen);
        evaluation_.init();
        evaluation_.static_eval();
    }

    /// A variable of the last evaluation.
    float term(std::size_t index) const { return evaluation_.variable_vector()[index]; }
    ChessPosition& position() { return position_; }
    Evaluation& evaluation() { return evaluation_; }

 private:
    static ChessPosition read(std::string const& fen) {
        ChessPosition position(shared_tables());
        position.fen(fen);
        return position;
    }

    ChessPosition position_;
    Evaluation evaluation_;
};

/// One variable of the evaluation of a position.
inline float term_of(std::string const& fen, std::size_t index) {
    FreshEvaluation at(fen);
    at.score();
    return at.term(index);
}

/// The weighted sum of the terms of the last evaluation, before halving and rounding. Every
/// operation rounds to float, end game before middle game.
inline float blended(Evaluation const& evaluation) {
    float volatile score = 0.0F;
    for (std::size_t i = 0; i < term::count; ++i) {
        float const v = evaluation.variable_vector()[i];
        float volatile eg = v * evaluation.weight_eg_vector()[i];
        eg = eg * evaluation.eg_phase();
        float volatile mg = v * evaluation.weight_mg_vector()[i];
        mg = mg * evaluation.mg_phase();
        float const volatile sum = eg + mg;
        score = score + sum;
    }
    return score;
}

}  // namespace orvelin::test
