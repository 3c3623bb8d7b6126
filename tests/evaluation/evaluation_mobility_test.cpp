#include <gtest/gtest.h>

#include "support/fresh_evaluation.h"
#include "support/positions.h"

namespace orvelin::test {

namespace {

float locked_up(std::string const& fen) {
    return term_of(fen, term::locked_up_rook);
}

TEST(EvaluationMobility, RookOnH7IsLockedUpByTheKingOnG8Only) {
    EXPECT_EQ(locked_up("6k1/7r/8/8/8/8/8/4K3 w - - 0 1"), 1.0F);
    EXPECT_EQ(locked_up("7k/7r/8/8/8/8/8/4K3 w - - 0 1"), 0.0F);
}

TEST(EvaluationMobility, LockedUpRookSquaresOfBlack) {
    for (std::string const fen :
         {"5kr1/8/8/8/8/8/8/4K3 w - - 0 1", "5k1r/8/8/8/8/8/8/4K3 w - - 0 1",
          "6kr/8/8/8/8/8/8/4K3 w - - 0 1", "rk6/8/8/8/8/8/8/4K3 w - - 0 1",
          "1rk5/8/8/8/8/8/8/4K3 w - - 0 1", "2rk4/8/8/8/8/8/8/4K3 w - - 0 1",
          "3k4/r7/8/8/8/8/8/4K3 w - - 0 1"}) {
        EXPECT_EQ(locked_up(fen), 1.0F) << fen;
    }
    for (std::string const fen :
         {"4k1r1/8/8/8/8/8/8/4K3 w - - 0 1", "r3k3/8/8/8/8/8/8/4K3 w - - 0 1",
          "k6r/8/8/8/8/8/8/4K3 w - - 0 1", "6k1/6r1/8/8/8/8/8/4K3 w - - 0 1"}) {
        EXPECT_EQ(locked_up(fen), 0.0F) << fen;
    }
}

TEST(EvaluationMobility, LockedUpRookSquaresOfWhite) {
    for (std::string const fen :
         {"4k3/8/8/8/8/8/8/5KR1 w - - 0 1", "4k3/8/8/8/8/8/8/5K1R w - - 0 1",
          "4k3/8/8/8/8/8/7R/6K1 w - - 0 1", "4k3/8/8/8/8/8/8/RK6 w - - 0 1",
          "4k3/8/8/8/8/8/8/1RK5 w - - 0 1", "4k3/8/8/8/8/8/8/2RK4 w - - 0 1",
          "4k3/8/8/8/8/8/R7/3K4 w - - 0 1"}) {
        EXPECT_EQ(locked_up(fen), -1.0F) << fen;
    }
}

TEST(EvaluationMobility, LockedUpRookIsAtMostOneForEachSide) {
    EXPECT_EQ(locked_up("r4k1r/r6r/8/8/8/8/8/4K3 w - - 0 1"), 1.0F);
    EXPECT_EQ(locked_up("4k3/8/8/8/8/8/R6R/R1K3RR w - - 0 1"), -1.0F);
    EXPECT_EQ(locked_up("5k1r/8/8/8/8/8/8/RK6 w - - 0 1"), 0.0F);
}

TEST(EvaluationMobility, SharesAddUpToTheWhole) {
    FreshEvaluation evaluated(positions::kiwipete);
    evaluated.score();
    EXPECT_EQ(evaluated.term(term::mobility), 17.0F);
    EXPECT_EQ(evaluated.term(term::knight_mobility), 8.0F);
    EXPECT_EQ(evaluated.term(term::bishop_mobility), 28.0F);
    EXPECT_EQ(evaluated.term(term::rook_mobility), -10.0F);
    EXPECT_EQ(evaluated.term(term::queen_mobility), -9.0F);
}

TEST(EvaluationMobility, VariablesAreThoseOfTheMaps) {
    FreshEvaluation evaluated("q3k3/8/8/n7/8/1R6/8/4K2N w - - 0 1");
    evaluated.score();
    Mobility const& maps = evaluated.evaluation().mobility_maps();
    EXPECT_EQ(evaluated.term(term::undefended_pieces),
              static_cast<float>(maps.undefended_pieces(evaluated.position())));
    EXPECT_EQ(evaluated.term(term::own_hanging_material),
              static_cast<float>(maps.hanging_pieces(evaluated.position())));
    EXPECT_EQ(evaluated.term(term::safe_queencheck), static_cast<float>(maps.safe_queen_checks()));
    EXPECT_EQ(evaluated.evaluation().mobility(), maps.safe_mobility());
}

}  // namespace

}  // namespace orvelin::test
