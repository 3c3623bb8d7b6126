#pragma once

#include <string_view>

#include "analyse/position_search.h"
#include "evaluation/evaluation.h"

namespace orvelin::analyse {

/// What each term added at the last evaluation, in the arithmetic of the engine: their sum, taken
/// in order, is the score before it is rounded, bit for bit, unless a function of an endgame made
/// the score. Bishops of opposite colours halve the whole score: each term is halved then, which is
/// exact.
term_scores_t term_scores(Evaluation const& evaluation);

/// The sum in the order of the terms, in single precision as the engine takes it.
float sum_of(term_scores_t const& terms);

/// Whether the score of the last evaluation is the sum of the terms, and no function of an endgame
/// gave another one.
bool is_sum_of_terms(Evaluation const& evaluation, term_scores_t const& terms);

/// What a pawn counts in the phase of a position, in engine units: the two weights of the material
/// in hundreds, blended by the pieces of the board. 250 with all pieces on the board, 206 without
/// any. Takes a FEN text or its first field.
double pawn_value(std::string_view fen);

}  // namespace orvelin::analyse
