#pragma once

#include <string>

#include "evaluation/evaluation.h"
#include "position/chess_position.h"
#include "support/shared_tables.h"

namespace orvelin::test {

/// A position with a freshly built evaluation of its own.
class FreshEvaluation {
 public:
    explicit FreshEvaluation(std::string const& fen)
        : position_(read(fen)), evaluation_(position_, shared_tables()) {}

    /// Evaluates; the score from the point of view of the side to move.
    int score() { return evaluation_.static_eval(); }
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

}  // namespace orvelin::test
