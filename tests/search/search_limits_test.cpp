#include "search/search_limits.h"

#include <gtest/gtest.h>

namespace orvelin::test {

TEST(SearchLimits, StartWithoutLimits) {
    SearchLimits const limits;
    EXPECT_EQ(limits.depth_limit, 101);
    EXPECT_EQ(limits.max_nodes, std::uint64_t{1} << 62);
    EXPECT_TRUE(limits.searchmoves.empty());
    EXPECT_TRUE(limits.aspiration);
}

TEST(SearchLimits, ResetLeavesNodesAndWindow) {
    SearchLimits limits;
    limits.depth_limit = 7;
    limits.max_nodes = 1000;
    limits.aspiration = false;
    Move const move(Square("e2"), Square("e4"), normal_move, white_pawn, no_piece);
    limits.set_searchmoves({move, move});
    EXPECT_EQ(limits.searchmoves, (std::vector<Move>{move, move}));
    limits.reset();
    EXPECT_EQ(limits.depth_limit, 101);
    EXPECT_TRUE(limits.searchmoves.empty());
    EXPECT_EQ(limits.max_nodes, 1000U);
    EXPECT_FALSE(limits.aspiration);
}

}  // namespace orvelin::test
