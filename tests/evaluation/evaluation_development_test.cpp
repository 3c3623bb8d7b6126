#include <gtest/gtest.h>

#include "evaluation/evaluation.h"
#include "support/fresh_evaluation.h"
#include "support/positions.h"

namespace orvelin {
namespace {

float development(char const* fen) {
    test::FreshEvaluation at(fen);
    at.evaluation().compute_development();
    return at.evaluation().variable_vector()[term::development];
}

TEST(EvaluationDevelopmentTest, StartPositionCancels) {
    EXPECT_EQ(development(positions::start), 0.0F);
}

TEST(EvaluationDevelopmentTest, MinorsOnTheFirstRank) {
    EXPECT_EQ(development("4k3/8/8/8/8/8/8/N3K3 w - - 0 1"), -20.0F);
    EXPECT_EQ(development("4k3/8/8/8/8/8/8/NB2K1BN w - - 0 1"), -80.0F);
    EXPECT_EQ(development("4k3/8/8/8/8/8/N7/4K3 w - - 0 1"), 0.0F);
    EXPECT_EQ(development("N3k3/8/8/8/8/8/8/4K3 w - - 0 1"), 0.0F);
    EXPECT_EQ(development("nb2k3/8/8/8/8/8/8/4K3 w - - 0 1"), 40.0F);
    EXPECT_EQ(development("4k3/8/8/8/8/8/8/b3K3 w - - 0 1"), 0.0F);
}

TEST(EvaluationDevelopmentTest, RooksOnFilesWithoutAnOwnPawn) {
    EXPECT_EQ(development("4k3/8/8/8/8/8/P7/R3K3 w - - 0 1"), 0.0F);
    EXPECT_EQ(development("4k3/8/8/8/R7/8/P7/4K3 w - - 0 1"), 0.0F);
    EXPECT_EQ(development("4k3/p7/8/8/8/8/8/R3K3 w - - 0 1"), 20.0F);
    EXPECT_EQ(development("4k3/8/8/8/8/8/8/RR2K3 w - - 0 1"), 40.0F);
    EXPECT_EQ(development("4k3/8/8/8/8/8/P7/r3K3 w - - 0 1"), -20.0F);
    EXPECT_EQ(development("4k3/p7/8/8/8/8/8/r3K3 w - - 0 1"), 0.0F);
}

TEST(EvaluationDevelopmentTest, WhiteCentrePawnsThatAreBlocked) {
    EXPECT_EQ(development("4k3/8/8/8/8/2n5/2P5/4K3 w - - 0 1"), -10.0F);
    EXPECT_EQ(development("4k3/8/8/8/8/3Q4/3P4/4K3 w - - 0 1"), -20.0F);
    EXPECT_EQ(development("4k3/8/8/8/8/4q3/4P3/4K3 w - - 0 1"), -20.0F);
    EXPECT_EQ(development("4k3/8/8/8/8/1NNNNN2/1PPPPP2/4K3 w - - 0 1"), -50.0F);
    EXPECT_EQ(development("4k3/8/8/8/2n5/8/2P5/4K3 w - - 0 1"), 0.0F);
    EXPECT_EQ(development("4k3/8/8/8/8/2n5/2p5/4K3 w - - 0 1"), 0.0F);
    EXPECT_EQ(development("4k3/8/8/8/2n5/2P5/8/4K3 w - - 0 1"), 0.0F);
}

TEST(EvaluationDevelopmentTest, BlackCentrePawnsThatAreBlocked) {
    EXPECT_EQ(development("4k3/2p5/2N5/8/8/8/8/4K3 w - - 0 1"), 10.0F);
    EXPECT_EQ(development("4k3/3p4/3q4/8/8/8/8/4K3 w - - 0 1"), 20.0F);
    EXPECT_EQ(development("4k3/4p3/4Q3/8/8/8/8/4K3 w - - 0 1"), 20.0F);
    EXPECT_EQ(development("4k3/1ppppp2/1nnnnn2/8/8/8/8/4K3 w - - 0 1"), 50.0F);
    EXPECT_EQ(development("4k3/2p5/8/2N5/8/8/8/4K3 w - - 0 1"), 0.0F);
}

// The files are those of the board, also where the current pawn record is one of no pawns.
TEST(EvaluationDevelopmentTest, ABoardWithoutPawnsHasOnlyOpenFiles) {
    test::FreshEvaluation at("4k3/8/8/8/8/8/8/R3K3 w - - 0 1");
    at.score();
    EXPECT_EQ(at.evaluation().variable_vector()[term::development], 20.0F);
}

}  // namespace
}  // namespace orvelin
