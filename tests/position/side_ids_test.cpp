#include "position/side_ids.h"

#include <gtest/gtest.h>

namespace orvelin {
namespace {

template <int Side>
void expect_side(int colour, int home_rank, int forward) {
    using side = SideIds<Side>;
    EXPECT_EQ(side::pawn, colour + 1);
    EXPECT_EQ(side::knight, colour + 2);
    EXPECT_EQ(side::bishop, colour + 3);
    EXPECT_EQ(side::rook, colour + 4);
    EXPECT_EQ(side::queen, colour + 5);
    EXPECT_EQ(side::king, colour + 6);
    EXPECT_EQ(side::home_rank, home_rank);
    EXPECT_EQ(side::forward, forward);
}

TEST(SideIds, WhiteStandsBelowAndGoesUp) {
    expect_side<1>(0, 0, 8);
    EXPECT_EQ(SideIds<1>::third_rank, rank3);
    EXPECT_EQ(SideIds<1>::last_rank, rank8);
}

TEST(SideIds, BlackStandsAboveAndGoesDown) {
    expect_side<0>(8, 56, -8);
    EXPECT_EQ(SideIds<0>::third_rank, rank6);
    EXPECT_EQ(SideIds<0>::last_rank, rank1);
}

}  // namespace
}  // namespace orvelin
