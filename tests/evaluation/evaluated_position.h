#pragma once

#include <string>

#include "evaluation/evaluation.h"
#include "position/chess_position.h"
#include "support/shared_tables.h"

namespace orvelin::test {

/// A position with its own fresh evaluation, evaluated once.
struct EvaluatedPosition {
    explicit EvaluatedPosition(std::string const& fen)
        : position(shared_tables()), evaluation(position, shared_tables()) {
        evaluate(fen);
    }

    /// Goes on to another position with the same evaluation.
    void evaluate(std::string const& fen) {
        position.fen(fen);
        evaluation.init();
        score = evaluation.static_eval();
    }

    float term(std::size_t index) const { return evaluation.variable_vector()[index]; }

    ChessPosition position;
    Evaluation evaluation;
    int score = 0;
};

/// One variable of the evaluation of a position.
inline float term_of(std::string const& fen, std::size_t index) {
    return EvaluatedPosition(fen).term(index);
}

}  // namespace orvelin::test
