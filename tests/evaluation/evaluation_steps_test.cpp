// The steps of the evaluation taken by themselves.

#include <functional>
#include <gtest/gtest.h>
#include <string>
#include <utility>
#include <vector>

#include "evaluation/evaluation.h"
#include "support/fresh_evaluation.h"
#include "support/positions.h"

namespace orvelin {
namespace {

using test::FreshEvaluation;

// The two differ in every term that the steps write, but for the one that measures nothing.
constexpr char const* crowded_fen = positions::kiwipete;
constexpr char const* sparse_fen = "2b3k1/6r1/1n1q4/8/4P2P/2B5/5P2/3RK3 w - - 0 1";

struct step_t {
    char const* name;
    void (Evaluation::*take)();
};

std::vector<step_t> all_steps() {
    return {{"phase", &Evaluation::compute_phase},
            {"material", &Evaluation::compute_material},
            {"mobility", &Evaluation::compute_mobility},
            {"pst", &Evaluation::compute_pst},
            {"pawn_eval", &Evaluation::compute_pawn_eval},
            {"development", &Evaluation::compute_development},
            {"space", &Evaluation::compute_space},
            {"king_safety", &Evaluation::compute_king_safety},
            {"king_activity", &Evaluation::compute_king_activity},
            {"pinned_pieces", &Evaluation::compute_pinned_pieces},
            {"opposite_colored_bishops", &Evaluation::compute_opposite_colored_bishops}};
}

TEST(EvaluationStepsTest, APhaseOfAnotherPositionDoesNotStay) {
    FreshEvaluation at(crowded_fen);
    int const score = at.score();
    at.position().fen(sparse_fen);
    at.evaluation().compute_phase();
    at.position().fen(crowded_fen);
    EXPECT_EQ(at.score(), score);
    EXPECT_EQ(at.evaluation().mg_phase(), 1.0F);
}

TEST(EvaluationStepsTest, NoStepOnAnotherPositionChangesTheNextEvaluation) {
    for (step_t const& step : all_steps()) {
        FreshEvaluation at(crowded_fen);
        int const score = at.score();
        std::vector<float> const terms = at.evaluation().variable_vector();
        at.position().fen(sparse_fen);
        (at.evaluation().*step.take)();
        at.position().fen(crowded_fen);
        EXPECT_EQ(at.score(), score) << step.name;
        EXPECT_EQ(at.evaluation().variable_vector(), terms) << step.name;
    }
}

/// Places of the steps' own terms lie between those of others.
TEST(EvaluationStepsTest, AStepOnTheSamePositionChangesNoTerm) {
    for (step_t const& step : all_steps()) {
        FreshEvaluation at("r1bq1rk1/ppp2ppp/2n5/4P3/2B3nQ/5N2/PPP2PPP/RNB2RK1 w - - 0 1");
        at.score();
        std::vector<float> const terms = at.evaluation().variable_vector();
        EXPECT_NE(terms[term::king_attack], 0.0F);
        (at.evaluation().*step.take)();
        EXPECT_EQ(at.evaluation().variable_vector(), terms) << step.name;
    }
}

// A move that only the position follows: to the evaluation the position stands as it did before.
TEST(EvaluationStepsTest, NoStepBehindAMoveChangesTheNextEvaluation) {
    Move const capture{Square(std::string("e2")), Square(std::string("a6")),
                       static_cast<unsigned int>(normal_move), Piece(white_bishop),
                       Piece(black_bishop)};
    for (step_t const& step : all_steps()) {
        FreshEvaluation at(crowded_fen);
        int const score = at.score();
        std::vector<float> const terms = at.evaluation().variable_vector();
        at.position().make_move(capture);
        (at.evaluation().*step.take)();
        at.position().unmake_move();
        EXPECT_EQ(at.score(), score) << step.name;
        EXPECT_EQ(at.evaluation().variable_vector(), terms) << step.name;
    }
}

}  // namespace
}  // namespace orvelin
