#include "search/strength_limits.h"

#include <array>
#include <gtest/gtest.h>

namespace orvelin::test {

TEST(StrengthLimits, EloTable) {
    struct row_t {
        int given;
        int stored;
        int depth;
        int margin;
    };
    std::array<row_t, 25> const rows = {
        {{-5, 1500, 2, 200},        {0, 1500, 2, 200},    {1499, 1500, 2, 200},
         {1500, 1500, 2, 200},      {1501, 1501, 2, 199}, {1599, 1599, 2, 160},
         {1600, 1600, 4, 160},      {1699, 1699, 4, 120}, {1700, 1700, 6, 120},
         {1750, 1750, 6, 100},      {1799, 1799, 6, 80},  {1800, 1800, 8, 80},
         {1899, 1899, 8, 40},       {1900, 1900, 10, 40}, {1997, 1997, 10, 1},
         {1998, 1998, 10, 0},       {1999, 1999, 10, 0},  {2000, 2000, 12, 0},
         {2099, 2099, 12, 0},       {2100, 2100, 14, 0},  {2199, 2199, 14, 0},
         {2200, 2200, 102, 0},      {2201, 2200, 102, 0}, {9999, 2200, 102, 0},
         {2147483647, 2200, 102, 0}}};
    for (row_t const& row : rows) {
        StrengthLimits strength;
        strength.set_elo(row.given);
        EXPECT_EQ(strength.elo, row.stored) << row.given;
        EXPECT_EQ(strength.max_strength_depth, row.depth) << row.given;
        EXPECT_EQ(strength.strength_margin, row.margin) << row.given;
    }
}

TEST(StrengthLimits, StrongestEloKeepsTheDepthThatWasSet) {
    StrengthLimits strength;
    strength.set_elo(1500);
    strength.set_elo(2200);
    EXPECT_EQ(strength.elo, 2200);
    EXPECT_EQ(strength.max_strength_depth, 2);
    EXPECT_EQ(strength.strength_margin, 0);
}

TEST(StrengthLimits, LiftingTheStrengthLimitForgetsDepthAndMargin) {
    StrengthLimits strength;
    strength.set_elo(1600);
    strength.set_limit_strength(true);
    EXPECT_TRUE(strength.limit_strength);
    EXPECT_EQ(strength.max_strength_depth, 4);
    EXPECT_EQ(strength.strength_margin, 160);
    strength.set_limit_strength(false);
    EXPECT_FALSE(strength.limit_strength);
    EXPECT_EQ(strength.max_strength_depth, 102);
    EXPECT_EQ(strength.strength_margin, 0);
    EXPECT_EQ(strength.elo, 1600);
}

}  // namespace orvelin::test
