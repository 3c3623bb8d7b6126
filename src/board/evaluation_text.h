#pragma once

#include <string>

#include "analyse/position_search.h"
#include "analyse/score.h"
#include "board/json_writer.h"

namespace orvelin::board {

/// An evaluation from the point of view of White.
struct WhiteEvaluation {
    std::string fen;
    analyse::Score score;
    analyse::term_scores_t terms{};
    /// The score is the rounded sum of the terms, and not that of a function of an endgame.
    bool is_sum = true;
};

/// Writes the members: the score in all units, and the terms by groups, in engine units, as records
/// have them, and in pawns of the phase.
void write_evaluation(WhiteEvaluation const& evaluation, JsonWriter& answer);

}  // namespace orvelin::board
