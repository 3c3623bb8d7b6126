#include "tables/words.h"

#include <chrono>
#include <gtest/gtest.h>

#include "support/counted.h"

namespace orvelin::test {

TEST(TableWords, AValueNamesTheWinnerAndTheDistance) {
    EXPECT_EQ(tools::value_text(29999), "White mates in 1 ply (1 move)");
    EXPECT_EQ(tools::value_text(29998), "White mates in 2 plies (1 move)");
    EXPECT_EQ(tools::value_text(29988), "White mates in 12 plies (6 moves)");
    EXPECT_EQ(tools::value_text(29987), "White mates in 13 plies (7 moves)");
    EXPECT_EQ(tools::value_text(-29999), "Black mates in 1 ply (1 move)");
    EXPECT_EQ(tools::value_text(-29930), "Black mates in 70 plies (35 moves)");
}

TEST(TableWords, AValueWithoutADistanceHasItsOwnWords) {
    EXPECT_EQ(tools::value_text(30000), "Black is mated");
    EXPECT_EQ(tools::value_text(-30000), "White is mated");
    EXPECT_EQ(tools::value_text(0), "draw");
    EXPECT_EQ(tools::value_text(254), "illegal position");
    EXPECT_EQ(tools::value_text(255), "not known");
}

TEST(TableWords, OneIsNotMany) {
    EXPECT_EQ(tools::counted(0, "key", "keys"), "0 keys");
    EXPECT_EQ(tools::counted(1, "key", "keys"), "1 key");
    EXPECT_EQ(tools::counted(2, "key", "keys"), "2 keys");
}

TEST(TableWords, SecondsHaveADecimal) {
    EXPECT_EQ(tools::seconds_text(std::chrono::milliseconds(1240)), "1.2 s");
    EXPECT_EQ(tools::seconds_text(std::chrono::seconds(0)), "0.0 s");
}

}  // namespace orvelin::test
