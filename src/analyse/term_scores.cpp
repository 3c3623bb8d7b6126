#include "analyse/term_scores.h"

#include <cstddef>

#include "evaluation/linear_model.h"
#include "evaluation/weight.h"

namespace orvelin::analyse {

namespace {

/// Hundreds of the pieces that make the phase, and their sum at the start of a game.
constexpr int hundreds_of(char piece) {
    switch (piece) {
        case 'Q':
        case 'q':
            return 9;
        case 'R':
        case 'r':
            return 5;
        case 'B':
        case 'b':
        case 'N':
        case 'n':
            return 3;
        default:
            return 0;
    }
}

constexpr double full_board = 62;

/// The material term counts a pawn as a hundred.
constexpr double material_of_pawn = 100;

}  // namespace

term_scores_t term_scores(Evaluation const& evaluation) {
    auto const& values = evaluation.variable_vector();
    float const mg_phase = evaluation.mg_phase();
    float const eg_phase = evaluation.eg_phase();
    float const scale = values[term::opposite_colored_bishops] != 0.0F ? 0.5F : 1.0F;
    term_scores_t scores;
    for (std::size_t i = 0; i < term::count; ++i) {
        float const end_game = values[i] * Weight::eg_row[i] * eg_phase;
        float const middle_game = values[i] * Weight::mg_row[i] * mg_phase;
        scores[i] = (end_game + middle_game) * scale;
    }
    return scores;
}

float sum_of(term_scores_t const& terms) {
    float sum = 0.0F;
    for (float const score : terms) {
        sum += score;
    }
    return sum;
}

bool is_sum_of_terms(Evaluation const& evaluation, term_scores_t const& terms) {
    return rounded(sum_of(terms)) == evaluation.score();
}

double pawn_value(std::string_view fen) {
    int hundreds = 0;
    for (char const letter : fen.substr(0, fen.find(' '))) {
        hundreds += hundreds_of(letter);
    }
    double const share = hundreds / full_board;
    return material_of_pawn * (share * static_cast<double>(Weight::mg_row[term::material]) +
                               (1 - share) * static_cast<double>(Weight::eg_row[term::material]));
}

}  // namespace orvelin::analyse
