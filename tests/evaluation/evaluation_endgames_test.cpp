#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <gtest/gtest.h>
#include <string>

#include "support/fresh_evaluation.h"
#include "support/positions.h"

namespace orvelin::test {

namespace {

/// The score after the endgame function, White's point of view.
int white_score(std::string const& fen) {
    FreshEvaluation at(fen);
    at.score();
    return static_cast<int>(at.evaluation().score());
}

/// The blend as the endgame functions find it.
int blend(FreshEvaluation& at) {
    return static_cast<int>(std::round(blended(at.evaluation())));
}

TEST(EvaluationEndgames, QueenOrRookAddsByRingToTheSizeOfTheBlend) {
    struct Row {
        char const* weak_king;
        int added;
    };
    // The strong king stands on e1; 10 less for each step between the kings.
    for (Row const row : {Row{"k7/8/8/8/8/8/8/", 1000 - 70}, Row{"8/1k6/8/8/8/8/8/", 900 - 60},
                          Row{"8/8/2k5/8/8/8/8/", 800 - 50}, Row{"8/8/8/3k4/8/8/8/", 0 - 40}}) {
        for (std::string const piece : {"Q", "R"}) {
            FreshEvaluation at(row.weak_king + std::string("4K2") + piece + " w - - 0 1");
            int const score = at.score();
            EXPECT_EQ(score, blend(at) + row.added) << row.weak_king << piece;
            // Called once more, the function builds on the score it left.
            int const again = piece == "Q" ? at.evaluation().KQK() : at.evaluation().KRK();
            EXPECT_EQ(again, score + row.added);
        }
    }
}

TEST(EvaluationEndgames, BlackQueenNegatesTheWholeSum) {
    FreshEvaluation white_to_move("4k2q/8/8/8/8/8/8/K7 w - - 0 1");
    int const score = white_to_move.score();
    EXPECT_LT(score, 0);
    EXPECT_EQ(score, blend(white_to_move) - 930);
    EXPECT_EQ(white_to_move.evaluation().score(), static_cast<float>(score));
    FreshEvaluation black_to_move("4k2q/8/8/8/8/8/8/K7 b - - 0 1");
    EXPECT_GT(black_to_move.score(), 0);
    EXPECT_LT(black_to_move.evaluation().score(), 0.0F);
}

TEST(EvaluationEndgames, TwoKnightsCountAKingInTheCornerOnly) {
    EXPECT_EQ(white_score("4k1nn/8/8/8/8/8/8/K7 w - - 0 1"), -100);
    EXPECT_EQ(white_score("4k1nn/8/8/8/8/8/8/1K6 w - - 0 1"), 0);
    EXPECT_EQ(white_score("7k/8/8/8/8/8/8/NN2K3 w - - 0 1"), 100);
    EXPECT_EQ(FreshEvaluation("7k/8/8/8/8/8/8/NN2K3 b - - 0 1").score(), -100);
    EXPECT_EQ(white_score("6k1/8/8/8/8/8/8/NN2K3 w - - 0 1"), 0);
}

TEST(EvaluationEndgames, BishopsOfOneColourWinNothing) {
    EXPECT_EQ(white_score("k7/8/1K6/8/8/8/8/B1B5 w - - 0 1"), 0);
    EXPECT_EQ(white_score("b1b5/8/8/8/8/1k6/8/K7 w - - 0 1"), 0);
}

TEST(EvaluationEndgames, TwoBishopsDriveTheKingIntoACorner) {
    EXPECT_EQ(white_score("k7/8/8/8/4K3/8/8/2B2B2 w - - 0 1"), 1000 + 30 - 4);
    EXPECT_EQ(white_score("k7/8/8/8/8/8/8/K1B2B2 w - - 0 1"), 1000 - 200 + 30 - 7);
    EXPECT_EQ(white_score("8/8/2k5/8/4K3/8/8/2B2B2 w - - 0 1"), 1000 - 20 + 10 - 2);
    EXPECT_EQ(white_score("2b2b2/8/8/4k3/8/8/8/K7 w - - 0 1"), -(1000 + 30 - 4));
    EXPECT_EQ(FreshEvaluation("2b2b2/8/8/4k3/8/8/8/K7 b - - 0 1").score(), 1026);
}

TEST(EvaluationEndgames, BishopAndKnightDriveToTheCornerOfTheBishop) {
    EXPECT_EQ(white_score("k7/8/8/8/8/8/8/4KBN1 w - - 0 1"), 660 - 7);
    EXPECT_EQ(white_score("8/8/8/8/8/8/8/k3KBN1 w - - 0 1"), 660 - 70 - 4);
    EXPECT_EQ(white_score("8/1k6/8/8/8/8/8/4KBN1 w - - 0 1"), 640 - 10 - 6);
    EXPECT_EQ(white_score("8/8/2k5/8/8/8/8/4KBN1 w - - 0 1"), 620 - 20 - 5);
    EXPECT_EQ(white_score("8/8/8/3k4/8/8/8/4KBN1 w - - 0 1"), 600 - 30 - 4);
    EXPECT_EQ(white_score("7k/8/8/8/8/8/8/2B1K1N1 w - - 0 1"), 660 - 7);
    EXPECT_EQ(white_score("4kbn1/8/8/8/8/8/8/K7 w - - 0 1"), -(660 - 7));
    EXPECT_EQ(white_score("4kbn1/8/8/8/8/8/8/7K w - - 0 1"), -(660 - 70 - 7));
}

TEST(EvaluationEndgames, RookPawnIsWorthTheDistanceToTheCorner) {
    EXPECT_EQ(white_score("k7/P7/8/8/8/8/8/4K3 w - - 0 1"), 0);
    EXPECT_EQ(white_score("1k6/P7/8/8/8/8/8/4K3 w - - 0 1"), 0);
    EXPECT_EQ(white_score("8/P1k5/8/8/8/8/8/4K3 w - - 0 1"), 2);
    EXPECT_EQ(white_score("8/8/8/8/8/8/P7/4K2k w - - 0 1"), 7);
    EXPECT_EQ(white_score("8/5k1P/8/8/8/8/8/4K3 w - - 0 1"), 2);
    EXPECT_EQ(white_score("4k3/8/8/8/8/8/p1K5/8 w - - 0 1"), -2);
    EXPECT_EQ(FreshEvaluation("4k3/8/8/8/8/8/p1K5/8 b - - 0 1").score(), 2);
}

TEST(EvaluationEndgames, KingInFrontOfThePawnHolds) {
    EXPECT_EQ(white_score("8/8/8/4k3/4P3/8/8/4K3 w - - 0 1"), 0);
    EXPECT_EQ(white_score("8/8/8/4k3/4P3/8/8/4K3 b - - 0 1"), 0);
    EXPECT_EQ(white_score("8/8/4k3/8/4P3/8/8/4K3 w - - 0 1"), 0);
    EXPECT_EQ(white_score("4k3/8/8/4p3/4K3/8/8/8 w - - 0 1"), 0);
}

TEST(EvaluationEndgames, OppositionCountsBelowRankFiveWithTheMove) {
    EXPECT_EQ(white_score("8/4k3/8/4K3/4P3/8/8/8 w - - 0 1"), 0);
    EXPECT_EQ(white_score("8/4k3/8/4K3/4P3/8/8/8 b - - 0 1"), 403);
    EXPECT_EQ(white_score("4k3/8/4K3/4P3/8/8/8/8 b - - 0 1"), 503);
    EXPECT_EQ(white_score("4k3/8/4K3/4P3/8/8/8/8 w - - 0 1"), 503);
    EXPECT_EQ(white_score("8/8/8/3p4/3k4/8/3K4/8 b - - 0 1"), 0);
    EXPECT_EQ(white_score("8/8/8/3p4/3k4/8/3K4/8 w - - 0 1"), -403);
}

TEST(EvaluationEndgames, WeakKingWithinReachAndOnTheMoveCatchesThePawn) {
    EXPECT_EQ(white_score("8/8/3P1k2/8/8/8/8/K7 b - - 0 1"), 0);
    EXPECT_EQ(white_score("8/8/3P1k2/8/8/8/8/K7 w - - 0 1"), 602);
    EXPECT_EQ(white_score("8/8/3P2k1/8/8/8/8/K7 b - - 0 1"), 603);
    EXPECT_EQ(white_score("8/2K5/3P1k2/8/8/8/8/8 b - - 0 1"), 602);
    EXPECT_EQ(white_score("8/8/8/8/8/3P3k/8/7K b - - 0 1"), 304);
    EXPECT_EQ(white_score("8/8/8/8/7k/3P4/8/K7 b - - 0 1"), 304);
    EXPECT_EQ(white_score("8/8/8/7k/3P4/8/8/7K b - - 0 1"), 404);
    EXPECT_EQ(white_score("8/8/8/7k/1P6/8/8/7K b - - 0 1"), 406);
    EXPECT_EQ(white_score("7K/8/8/7k/3P4/8/8/8 b - - 0 1"), 404);
    EXPECT_EQ(white_score("K7/8/8/7k/3P4/8/8/8 b - - 0 1"), 404);
}

TEST(EvaluationEndgames, BaseOfALonePawnByRank) {
    EXPECT_EQ(white_score("7k/1P6/8/8/8/8/8/K7 w - - 0 1"), 706);
    EXPECT_EQ(white_score("7k/8/1P6/8/8/8/8/K7 w - - 0 1"), 606);
    EXPECT_EQ(white_score("7k/8/8/1P6/8/8/8/K7 w - - 0 1"), 506);
    EXPECT_EQ(white_score("7k/8/8/8/1P6/8/8/K7 w - - 0 1"), 406);
    EXPECT_EQ(white_score("7k/8/8/8/8/1P6/8/K7 w - - 0 1"), 306);
    EXPECT_EQ(white_score("7k/8/8/8/8/8/1P6/K7 w - - 0 1"), 306);
    EXPECT_EQ(white_score("k7/8/8/8/8/8/6p1/6K1 b - - 0 1"), -701);
    EXPECT_EQ(white_score("k7/8/8/8/8/8/6p1/K7 w - - 0 1"), -706);
}

TEST(EvaluationEndgames, PawnBeforePromotionIsHeldFromTheDiagonalOnly) {
    EXPECT_EQ(white_score("3k4/4P3/4K3/8/8/8/8/8 w - - 0 1"), 0);
    EXPECT_EQ(white_score("5k2/4P3/4K3/8/8/8/8/8 w - - 0 1"), 0);
    EXPECT_EQ(white_score("4k3/4P3/4K3/8/8/8/8/8 w - - 0 1"), 701);
    EXPECT_EQ(white_score("4k3/4P3/8/8/8/8/8/K7 b - - 0 1"), 0);
}

TEST(EvaluationEndgames, LonePawnReplacesTheBlendOnEveryFile) {
    for (int file = 1; file < 7; ++file) {
        std::string const rank = std::to_string(file) + "P" + std::to_string(7 - file);
        FreshEvaluation evaluated("k6K/8/8/" + rank + "/8/8/8/8 b - - 0 1");
        int const steps = std::max(file, 3);
        bool const caught = steps <= 3 && std::max(7 - file, 3) > steps;
        EXPECT_EQ(evaluated.score(), caught ? 0 : -(500 + steps)) << file;
    }
}

TEST(EvaluationEndgames, WrongBishopWithARookPawnIsADraw) {
    // Light-squared bishop, promotion square h8 dark.
    EXPECT_EQ(white_score("7k/8/8/7P/4B3/8/8/4K3 w - - 0 1"), 0);
    EXPECT_EQ(white_score("8/6k1/8/7P/4B3/8/8/4K3 w - - 0 1"), 0);
    EXPECT_EQ(white_score("4k3/8/8/8/p7/8/8/K2b4 w - - 0 1"), 0);
}

TEST(EvaluationEndgames, RightBishopWithARookPawnKeepsTheBlend) {
    for (std::string const fen :
         {"7k/8/8/7P/3B4/8/8/4K3 w - - 0 1", "8/5k2/8/7P/4B3/8/8/4K3 w - - 0 1",
          "7k/8/8/6P1/4B3/8/8/4K3 w - - 0 1", "4k3/8/8/8/6p1/8/8/K1b5 w - - 0 1"}) {
        FreshEvaluation evaluated(fen);
        int const score = evaluated.score();
        EXPECT_EQ(score, blend(evaluated)) << fen;
        EXPECT_NE(score, 0);
    }
}

TEST(EvaluationEndgames, BlendOfABlackBishopAndPawnIsNotNegated) {
    FreshEvaluation evaluated("4k3/8/8/8/6p1/8/8/K1b5 w - - 0 1");
    EXPECT_LT(evaluated.score(), 0);
    EXPECT_LT(evaluated.evaluation().score(), 0.0F);
}

TEST(EvaluationEndgames, RookAndPawnAgainstRook) {
    // King far from the pawn's path: 3 steps behind, own king beside the pawn.
    EXPECT_EQ(white_score("7R/8/8/4K3/4P3/8/8/k6r w - - 0 1"), 300);
    // King on the promotion square, the other far away.
    EXPECT_EQ(white_score("4k3/8/8/8/4P3/8/7R/Kr6 w - - 0 1"), 10);
    // A pawn at home runs to rank 7 only, in five moves.
    EXPECT_EQ(white_score("7R/8/8/8/8/8/4P3/k2K3r w - - 0 1"), 100);
    // Level race: 0 is raised.
    EXPECT_EQ(white_score("7R/8/8/4K3/k3P3/8/8/7r w - - 0 1"), 10);
    // One step ahead and seven away: 40 stays.
    EXPECT_EQ(white_score("8/8/4P3/8/7k/8/8/RK5r w - - 0 1"), 210 - 50);
    EXPECT_EQ(white_score("K7/8/8/4P3/k6r/8/8/7R w - - 0 1"), 100 + 10 - 40);
    EXPECT_EQ(white_score("K6R/8/8/4p3/4k3/8/8/7r w - - 0 1"), -300);
    EXPECT_EQ(FreshEvaluation("K6R/8/8/4p3/4k3/8/8/7r b - - 0 1").score(), 300);
}

TEST(EvaluationEndgames, QueenAgainstRook) {
    EXPECT_EQ(white_score("k7/r7/2K5/8/8/8/8/7Q w - - 0 1"), 360 - 2 + 1);
    EXPECT_EQ(white_score("8/1k6/8/8/1K6/8/8/1r5Q w - - 0 1"), 340 - 3 + 6);
    EXPECT_EQ(white_score("8/8/2k5/8/1K6/8/8/1r5Q w - - 0 1"), 320 - 2 + 5);
    EXPECT_EQ(white_score("8/8/8/3k4/1K6/8/8/1r5Q w - - 0 1"), 300 - 2 + 4);
    EXPECT_EQ(white_score("7q/8/8/8/8/2k5/R7/K7 w - - 0 1"), -(360 - 2 + 1));
}

TEST(EvaluationEndgames, DistanceBetweenIsTheKingDistance) {
    FreshEvaluation evaluated(positions::bare_kings_in_corners);
    EXPECT_EQ(evaluated.evaluation().distance_between(Square("a1"), Square("c8")), 7);
    EXPECT_EQ(evaluated.evaluation().distance_between(Square("a1"), BitBoard()), 8);
    EXPECT_EQ(evaluated.evaluation().distance_between(Square("a1"), Square("d2").bitboard()), 3);
}

TEST(EvaluationEndgames, BoardsWithoutKingsAreHarmless) {
    for (std::string const pieces : {"Q7", "R7", "NN6", "BN6", "BB6", "BP6", "P7", "RPr5", "Qr6",
                                     "q7", "r7", "nn6", "bn6", "bb6", "bp6", "p7", "rpR5", "qR6"}) {
        for (std::string fen : {"8/8/8/8/8/8/8/@", "8/8/8/@/8/8/8/8"}) {
            fen.replace(fen.find('@'), 1, pieces);
            FreshEvaluation evaluated(fen + " w - - 0 1");
            EXPECT_LT(std::abs(evaluated.score()), 30000) << fen;
        }
    }
}

}  // namespace

}  // namespace orvelin::test
