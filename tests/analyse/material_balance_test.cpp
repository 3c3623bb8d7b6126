#include "analyse/material_balance.h"

#include <gtest/gtest.h>

#include "support/positions.h"

namespace orvelin::analyse::test {

namespace {

TEST(MaterialBalanceTest, CountsWhatWhiteHasMore) {
    EXPECT_EQ(material_of(positions::start), MaterialBalance());
    MaterialBalance const balance = material_of("QQrn4/ppp5/8/8/8/8/B7/K6k b - - 0 1");
    EXPECT_EQ(balance, (MaterialBalance{{-3, -1, 1, -1, 2}}));
    EXPECT_EQ(balance.value(), 1800 - 500 - 300);
    EXPECT_EQ((-balance).value(), -1000);
}

TEST(MaterialBalanceTest, IsToldAsPlayersDo) {
    auto const text = [](int pawns, int knights, int bishops, int rooks, int queens) {
        return won_text({{pawns, knights, bishops, rooks, queens}});
    };
    EXPECT_EQ(text(1, 0, 0, 0, 0), "a pawn");
    EXPECT_EQ(text(-2, 0, 1, 0, 0), "a bishop for two pawns");
    EXPECT_EQ(text(0, 0, 0, -2, 1), "the queen for two rooks");
    EXPECT_EQ(text(1, 1, 0, 1, 0), "a rook, a knight and a pawn");
    EXPECT_EQ(text(0, -1, 0, 1, 0), "the exchange");
    EXPECT_EQ(text(2, 0, -1, 1, 0), "the exchange and two pawns");
    EXPECT_EQ(text(-1, 0, -1, 1, 0), "the exchange for a pawn");
    EXPECT_EQ(text(1, -1, 1, 0, 0), "a pawn");
    EXPECT_EQ(text(0, -2, 1, 0, 0), "");
    EXPECT_EQ(text(0, 2, -1, 0, 0), "a knight");
    EXPECT_EQ(text(0, 0, 0, 0, 0), "");
    EXPECT_EQ(text(9, 0, 0, 0, 0), "9 pawns");
}

TEST(MaterialBalanceTest, ABishopPairIsOfBothColours) {
    EXPECT_TRUE(has_bishop_pair(positions::start, true));
    EXPECT_TRUE(has_bishop_pair(positions::start, false));
    EXPECT_TRUE(has_bishop_pair("8/8/8/8/8/8/8/1BB1K2k w - - 0 1", true));
    EXPECT_FALSE(has_bishop_pair("8/8/8/8/8/8/8/1BB1K2k w - - 0 1", false));
    // On squares of one colour, one above the other and aside.
    EXPECT_FALSE(has_bishop_pair("8/8/8/8/8/2b5/8/b3K2k b - - 0 1", false));
    EXPECT_FALSE(has_bishop_pair("8/8/8/8/8/8/1b6/b3K2k b - - 0 1", false));
    EXPECT_TRUE(has_bishop_pair("8/8/8/8/8/8/b7/b3K2k b - - 0 1", false));
    EXPECT_FALSE(has_bishop_pair("8/8/8/8/8/8/8/B3K2k w - - 0 1", true));
}

}  // namespace

}  // namespace orvelin::analyse::test
