#include "analyse/score.h"

#include <gtest/gtest.h>

#include "search/score.h"

namespace orvelin::analyse::test {

namespace {

TEST(ScoreTest, ADrawIsCertain) {
    EXPECT_EQ((Score{0, true}.chances().draw), 1000);
    EXPECT_EQ((Score{0, true}.points()), 0.5);
    EXPECT_LT(Score{0}.chances().draw, 1000);
}

TEST(ScoreTest, PointsGrowWithTheScore) {
    EXPECT_EQ(Score{0}.points(), 0.5);
    EXPECT_NEAR(Score{299}.points() + Score{-299}.points(), 1, 1e-12);
    EXPECT_NEAR(Score{299}.points(), 0.704, 0.001);
    EXPECT_EQ(Score{mate_score - 3}.points(), 1);
    EXPECT_EQ(Score{4 - mate_score}.points(), 0);
}

TEST(ScoreTest, TellsMatesInMovesFromTheSideToMove) {
    EXPECT_EQ(Score{mate_score - 1}.mate(), 1);
    EXPECT_EQ(Score{mate_score - 2}.mate(), 1);
    EXPECT_EQ(Score{mate_score - 3}.mate(), 2);
    EXPECT_EQ(Score{-mate_score}.mate(), 0);
    EXPECT_EQ(Score{-mate_score + 4}.mate(), -2);
    EXPECT_EQ(Score{min_mate_score}.mate(), 51);
    EXPECT_FALSE(Score{max_ordinary_score}.mate());
    EXPECT_FALSE(Score{-max_ordinary_score}.mate());
}

}  // namespace

}  // namespace orvelin::analyse::test
