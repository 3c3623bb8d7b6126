#include "analyse/term_scores.h"

#include <cmath>
#include <gtest/gtest.h>
#include <string>

#include "analyse/static_evaluator.h"
#include "evaluation/linear_model.h"
#include "support/data_file.h"
#include "support/fresh_evaluation.h"
#include "support/positions.h"

namespace orvelin::analyse::test {

namespace {

using orvelin::test::FreshEvaluation;
using orvelin::test::shared_tables;

std::string const opposite_bishops = "3r2k1/5ppp/3b4/1P6/8/3B4/5PPP/3R2K1 b - - 0 1";

TEST(TermScoresTest, TheirSumIsTheScoreBeforeItIsRounded) {
    int sums = 0;
    for (auto const& block : orvelin::test::read_data_blocks("positions.txt")) {
        std::string const fen =
            orvelin::test::join_words(orvelin::test::split_words(block.at(0)), 1);
        FreshEvaluation at(fen);
        at.score();
        auto const terms = term_scores(at.evaluation());
        float const halved = at.term(term::opposite_colored_bishops) != 0 ? 0.5F : 1.0F;
        EXPECT_EQ(sum_of(terms), orvelin::test::blended(at.evaluation()) * halved) << fen;
        if (is_sum_of_terms(at.evaluation(), terms)) {
            EXPECT_EQ(std::round(sum_of(terms)), at.evaluation().score());
            ++sums;
        }
    }
    EXPECT_GT(sums, 100);
}

TEST(TermScoresTest, AreFromThePointOfViewOfWhite) {
    FreshEvaluation at("4k3/8/8/8/8/8/8/QQ2K3 b - - 0 1");
    at.score();
    auto const terms = term_scores(at.evaluation());
    EXPECT_GT(terms[term::material], 1000.0F);
    EXPECT_EQ(terms[term::stm], -14.0F);
}

TEST(TermScoresTest, BishopsOfOppositeColoursHalveEachTerm) {
    FreshEvaluation at(opposite_bishops);
    at.score();
    auto const terms = term_scores(at.evaluation());
    ASSERT_EQ(at.term(term::opposite_colored_bishops), 1.0F);
    EXPECT_EQ(terms[term::stm], -7.0F);
    EXPECT_TRUE(is_sum_of_terms(at.evaluation(), terms));
}

TEST(TermScoresTest, AFunctionOfAnEndgameIsNoSum) {
    FreshEvaluation at("8/8/8/3k4/8/3K4/3P4/8 w - - 0 1");
    at.score();
    EXPECT_FALSE(is_sum_of_terms(at.evaluation(), term_scores(at.evaluation())));
}

TEST(TermScoresTest, APawnIsWorthItsWeightInThePhase) {
    EXPECT_NEAR(pawn_value(positions::start), 250.148, 1e-3);
    EXPECT_NEAR(pawn_value(positions::bare_kings), 205.895, 1e-3);
    // A queen and a rook: 14 of 62.
    EXPECT_NEAR(pawn_value("4k3/8/8/8/8/8/8/Q3K2r w - - 0 1"),
                205.895 + (250.148 - 205.895) * 14 / 62, 1e-3);
    // The letters of the other fields count for nothing.
    EXPECT_EQ(pawn_value("r3k2r/8/8/8/8/8/8/R3K2R b KQkq - 0 1"),
              pawn_value("r3k2r/8/8/8/8/8/8/R3K2R"));
}

TEST(StaticEvaluatorTest, TellsScoreAndTermsOfEachPositionByItself) {
    StaticEvaluator evaluator(shared_tables());
    for (auto const& block : orvelin::test::read_data_blocks("positions.txt")) {
        std::string const fen =
            orvelin::test::join_words(orvelin::test::split_words(block.at(0)), 1);
        evaluator.evaluate(fen);
        FreshEvaluation at(fen);
        EXPECT_EQ(evaluator.score(), at.score()) << fen;
        EXPECT_EQ(evaluator.terms(), term_scores(at.evaluation())) << fen;
        EXPECT_EQ(evaluator.is_sum(), is_sum_of_terms(at.evaluation(), evaluator.terms()));
    }
}

}  // namespace

}  // namespace orvelin::analyse::test
