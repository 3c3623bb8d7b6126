#include "position/side.h"

#include <gtest/gtest.h>

#include "position/chess_position.h"
#include "support/shared_tables.h"
#include "support/squares.h"

namespace orvelin {
namespace {

template <int Side>
void expect_side(int colour, int home_rank, int forward) {
    using own = SideOf<Side>;
    EXPECT_EQ(own::pawn, colour + 1);
    EXPECT_EQ(own::knight, colour + 2);
    EXPECT_EQ(own::bishop, colour + 3);
    EXPECT_EQ(own::rook, colour + 4);
    EXPECT_EQ(own::queen, colour + 5);
    EXPECT_EQ(own::king, colour + 6);
    EXPECT_EQ(own::home_rank, home_rank);
    EXPECT_EQ(own::forward, forward);
}

TEST(SideOf, WhiteStandsBelowAndGoesUp) {
    expect_side<side::white>(0, 0, 8);
    EXPECT_EQ(SideOf<side::white>::third_rank, rank3);
    EXPECT_EQ(SideOf<side::white>::last_rank, rank8);
}

TEST(SideOf, BlackStandsAboveAndGoesDown) {
    expect_side<side::black>(8, 56, -8);
    EXPECT_EQ(SideOf<side::black>::third_rank, rank6);
    EXPECT_EQ(SideOf<side::black>::last_rank, rank1);
}

TEST(SideOf, FindsThePiecesOfOneSideInAPosition) {
    ChessPosition position(test::shared_tables());
    position.fen("1n2k1q1/1r3b2/3p4/8/8/4P3/2N2Q2/B3K2R w - - 0 1");
    using White = SideOf<side::white>;
    using Black = SideOf<side::black>;
    EXPECT_EQ(White::pawns(position), test::squares({"e3"}));
    EXPECT_EQ(White::knights(position), test::squares({"c2"}));
    EXPECT_EQ(White::bishops(position), test::squares({"a1"}));
    EXPECT_EQ(White::rooks(position), test::squares({"h1"}));
    EXPECT_EQ(White::queens(position), test::squares({"f2"}));
    EXPECT_EQ(White::kings(position), test::squares({"e1"}));
    EXPECT_EQ(White::king_square(position), Square("e1"));
    EXPECT_EQ(White::rooks_and_queens(position), test::squares({"h1", "f2"}));
    EXPECT_EQ(White::bishops_and_queens(position), test::squares({"a1", "f2"}));
    EXPECT_EQ(White::pieces(position), position.white_pieces());
    EXPECT_EQ(Black::pawns(position), test::squares({"d6"}));
    EXPECT_EQ(Black::knights(position), test::squares({"b8"}));
    EXPECT_EQ(Black::bishops(position), test::squares({"f7"}));
    EXPECT_EQ(Black::rooks(position), test::squares({"b7"}));
    EXPECT_EQ(Black::queens(position), test::squares({"g8"}));
    EXPECT_EQ(Black::king_square(position), Square("e8"));
    EXPECT_EQ(Black::pieces(position), position.black_pieces());
}

TEST(SideOf, FindsWhoAttacksASquare) {
    ChessPosition position(test::shared_tables());
    position.fen("4k3/4r3/8/4p3/8/2B5/4R3/K3Q3 w - - 0 1");
    BitBoard const target = test::squares({"e5"});
    using White = SideOf<side::white>;
    EXPECT_EQ(White::attackers(position, target), test::squares({"c3", "e2"}));
    EXPECT_EQ(White::blocked_attackers(position, target), test::squares({"c3", "e2", "e1"}));
    EXPECT_EQ(SideOf<side::black>::attackers(position, target), test::squares({"e7"}));
}

}  // namespace
}  // namespace orvelin
