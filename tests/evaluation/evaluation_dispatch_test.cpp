#include <cmath>
#include <gtest/gtest.h>
#include <string>

#include "evaluation/evaluation.h"
#include "support/fresh_evaluation.h"

namespace orvelin {
namespace {

using test::blended;
using test::FreshEvaluation;

// For the functions that do not read the blend, which their own result has replaced by then.
void expect_replaced(char const* placement, int (Evaluation::*function)() const) {
    for (char const* side : {" w - - 0 1", " b - - 0 1"}) {
        FreshEvaluation at(std::string(placement) + side);
        int const score = at.score();
        int const sign = at.position().stm() == 1 ? 1 : -1;
        int const expected = (at.evaluation().*function)();
        EXPECT_EQ(score, sign * expected) << placement << side;
        EXPECT_EQ(at.evaluation().score(), static_cast<float>(expected)) << placement << side;
    }
}

TEST(EvaluationDispatchTest, TwoKnights) {
    expect_replaced("k7/8/8/8/8/8/8/1NN1K3", &Evaluation::KNNK);
    expect_replaced("1nn1k3/8/8/8/8/8/8/K7", &Evaluation::KNNK);
    EXPECT_EQ(FreshEvaluation("k7/8/8/8/8/8/8/1NN1K3 w - - 0 1").score(), 100);
    EXPECT_EQ(FreshEvaluation("1nn1k3/8/8/8/8/8/8/K7 w - - 0 1").score(), -100);
}

TEST(EvaluationDispatchTest, TwoBishops) {
    expect_replaced("7k/8/8/8/4K3/8/8/2B2B2", &Evaluation::KBBK);
    expect_replaced("2b2b2/8/8/4k3/8/8/8/7K", &Evaluation::KBBK);
    EXPECT_GT(FreshEvaluation("7k/8/8/8/4K3/8/8/2B2B2 w - - 0 1").score(), 500);
    EXPECT_LT(FreshEvaluation("2b2b2/8/8/4k3/8/8/8/7K w - - 0 1").score(), -500);
}

TEST(EvaluationDispatchTest, PawnOnAnyFile) {
    for (char file = 'a'; file <= 'h'; ++file) {
        int const index = file - 'a';
        std::string rank;
        if (index > 0) {
            rank += std::to_string(index);
        }
        std::string const white = rank + "P" + (index < 7 ? std::to_string(7 - index) : "");
        std::string const black = rank + "p" + (index < 7 ? std::to_string(7 - index) : "");
        expect_replaced(("k7/8/8/" + white + "/8/8/8/4K3").c_str(), &Evaluation::KPK);
        expect_replaced(("4k3/8/8/8/" + black + "/8/8/K7").c_str(), &Evaluation::KPK);
    }
}

TEST(EvaluationDispatchTest, BishopAndPawn) {
    // The wrong bishop in front of a king in the corner is the one draw that is known.
    EXPECT_EQ(FreshEvaluation("k7/8/8/P7/8/8/8/2B1K3 w - - 0 1").score(), 0);
    EXPECT_EQ(FreshEvaluation("4kb2/8/8/8/7p/8/8/7K w - - 0 1").score(), 0);
    EXPECT_GT(FreshEvaluation("4k3/8/8/P7/8/8/8/2B1K3 w - - 0 1").score(), 100);
    EXPECT_LT(FreshEvaluation("4kb2/8/8/8/7p/8/8/4K3 w - - 0 1").score(), -100);
}

TEST(EvaluationDispatchTest, RookAndPawnAgainstRook) {
    expect_replaced("k7/8/8/4K3/4P3/8/8/R6r", &Evaluation::KRPKR);
    expect_replaced("r6R/8/8/4p3/4k3/8/8/K7", &Evaluation::KRPKR);
    EXPECT_GE(FreshEvaluation("k7/8/8/4K3/4P3/8/8/R6r w - - 0 1").score(), 10);
    EXPECT_LE(FreshEvaluation("r6R/8/8/4p3/4k3/8/8/K7 w - - 0 1").score(), -10);
}

// The base of these two is the blend itself: a bare heavy piece outweighs its steps by far.
TEST(EvaluationDispatchTest, QueenOrRookAgainstTheBareKing) {
    for (char const* placement : {"k7/8/8/8/8/8/8/Q3K3", "k7/8/8/8/8/8/8/R3K3"}) {
        FreshEvaluation white(std::string(placement) + " w - - 0 1");
        FreshEvaluation black(std::string(placement) + " b - - 0 1");
        EXPECT_GT(white.score(), 1900) << placement;
        EXPECT_LT(black.score(), -1900) << placement;
    }
    for (char const* placement : {"q3k3/8/8/8/8/8/8/K7", "r3k3/8/8/8/8/8/8/K7"}) {
        FreshEvaluation white(std::string(placement) + " w - - 0 1");
        FreshEvaluation black(std::string(placement) + " b - - 0 1");
        EXPECT_LT(white.score(), -1900) << placement;
        EXPECT_GT(black.score(), 1900) << placement;
    }
    EXPECT_GT(FreshEvaluation("k7/8/8/8/8/8/8/Q3K3 w - - 0 1").score(),
              FreshEvaluation("k7/8/8/8/8/8/8/R3K3 w - - 0 1").score());
}

// Fixed bases, so the score is known to the last unit.
TEST(EvaluationDispatchTest, KnightAndBishop) {
    EXPECT_EQ(FreshEvaluation("k7/8/8/8/8/8/8/2BNK3 w - - 0 1").score(), 660 - 70 - 7);
    EXPECT_EQ(FreshEvaluation("2bnk3/8/8/8/8/8/8/K7 b - - 0 1").score(), 660 - 70 - 7);
    EXPECT_EQ(FreshEvaluation("2bnk3/8/8/8/8/8/8/K7 w - - 0 1").score(), -(660 - 70 - 7));
}

TEST(EvaluationDispatchTest, QueenAgainstRook) {
    EXPECT_EQ(FreshEvaluation("k6r/8/8/8/8/8/8/Q3K3 w - - 0 1").score(), 360 - 7 + 7);
    EXPECT_EQ(FreshEvaluation("q3k3/8/8/8/8/8/8/K5R1 w - - 0 1").score(), -(360 - 7 + 6));
}

TEST(EvaluationDispatchTest, OtherMaterialKeepsTheBlend) {
    for (char const* fen : {"k7/8/8/8/8/8/8/4K3 w - - 0 1", "k7/8/8/8/8/8/8/N3K3 w - - 0 1",
                            "k7/8/8/8/8/8/8/B3K3 b - - 0 1", "k7/8/8/8/8/8/8/QR2K3 w - - 0 1",
                            "kn6/8/8/8/8/8/8/R3K3 w - - 0 1", "k7/8/8/8/8/8/PP6/4K3 w - - 0 1",
                            "k7/8/8/8/8/8/P7/N3K3 w - - 0 1"}) {
        FreshEvaluation at(fen);
        int const score = at.score();
        int const sign = at.position().stm() == 1 ? 1 : -1;
        EXPECT_EQ(score, sign * static_cast<int>(std::round(blended(at.evaluation())))) << fen;
    }
}

}  // namespace
}  // namespace orvelin
