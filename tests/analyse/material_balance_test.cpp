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

}  // namespace

}  // namespace orvelin::analyse::test
