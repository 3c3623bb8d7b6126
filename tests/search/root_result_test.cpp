#include "search/root_result.h"

#include <gtest/gtest.h>

namespace orvelin::test {

namespace {

Move const first(Square("e2"), Square("e4"), normal_move, white_pawn, no_piece);
Move const second(Square("e7"), Square("e5"), normal_move, black_pawn, no_piece);

}  // namespace

TEST(RootResult, NewBestMoveBringsItsLine) {
    RootResult result;
    PrincipalVariation reply;
    reply[0] = second;
    PrincipalVariation line = first + reply;
    result.raise(first, 6, -31, line);
    EXPECT_EQ(result.best_move.load(), first);
    EXPECT_EQ(result.best_score, -31);
    ASSERT_EQ(result.root_line.size(), 2);
    EXPECT_EQ(result.root_line[0], first);
    EXPECT_EQ(result.root_line[1], second);
    EXPECT_EQ(result.root_line.depth(), 6);
    EXPECT_EQ(result.root_line.score(), -31);
    // The searched line itself is told too.
    EXPECT_EQ(line.depth(), 6);
    EXPECT_EQ(line.score(), -31);
}

TEST(RootResult, ClearForgetsLineMovesAndScore) {
    RootResult result;
    PrincipalVariation line = first + PrincipalVariation();
    result.raise(first, 6, 44, line);
    result.ponder_move.store(second);
    result.clear();
    EXPECT_EQ(result.best_move.load(), Move());
    EXPECT_EQ(result.ponder_move.load(), Move());
    EXPECT_EQ(result.best_score, 0);
    EXPECT_EQ(result.root_line.size(), 0);
    EXPECT_EQ(result.root_line.score(), 0);
}

TEST(RootResult, NewBestMoveIsLateAboveSixtyPercent) {
    EXPECT_FALSE(RootResult::is_late(0));
    EXPECT_FALSE(RootResult::is_late(60));
    EXPECT_TRUE(RootResult::is_late(61));
    EXPECT_TRUE(RootResult::is_late(1000));
}

}  // namespace orvelin::test
