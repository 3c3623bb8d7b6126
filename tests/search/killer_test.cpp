#include "search/killer.h"

#include <gtest/gtest.h>

#include "position/move.h"
#include "position/square.h"

namespace orvelin {
namespace {

Move const first(Square("g1"), Square("f3"), normal_move, white_knight, no_piece);
Move const second(Square("b1"), Square("c3"), normal_move, white_knight, no_piece);
Move const third(Square("e2"), Square("e4"), normal_move, white_pawn, no_piece);

TEST(Killer, StartsEmptyAtEveryPly) {
    Killer const killers;
    for (int ply = 0; ply < 102; ++ply) {
        EXPECT_EQ(killers.get_killerA(ply), Move());
        EXPECT_EQ(killers.get_killerB(ply), Move());
    }
}

TEST(Killer, NewMovePushesTheFormerFirstDown) {
    Killer killers;
    killers.set_killer(7, first);
    EXPECT_EQ(killers.get_killerA(7), first);
    EXPECT_EQ(killers.get_killerB(7), Move());
    killers.set_killer(7, second);
    EXPECT_EQ(killers.get_killerA(7), second);
    EXPECT_EQ(killers.get_killerB(7), first);
    killers.set_killer(7, third);
    EXPECT_EQ(killers.get_killerA(7), third);
    EXPECT_EQ(killers.get_killerB(7), second);
    EXPECT_EQ(killers.get_killerA(6), Move());
    EXPECT_EQ(killers.get_killerA(8), Move());
}

TEST(Killer, FirstMoveAgainChangesNothing) {
    Killer killers;
    killers.set_killer(0, first);
    killers.set_killer(0, second);
    Move reclassed = second;
    reclassed.xcode(killer);
    killers.set_killer(0, reclassed);
    EXPECT_EQ(killers.get_killerA(0), second);
    EXPECT_EQ(killers.get_killerA(0).xcode(), xnormal_move);
    EXPECT_EQ(killers.get_killerB(0), first);
}

TEST(Killer, SecondMoveAgainExchangesThem) {
    Killer killers;
    killers.set_killer(3, first);
    killers.set_killer(3, second);
    killers.set_killer(3, first);
    EXPECT_EQ(killers.get_killerA(3), first);
    EXPECT_EQ(killers.get_killerB(3), second);
}

TEST(Killer, NegativePlyReadsTheFirstRow) {
    Killer killers;
    killers.set_killer(0, first);
    killers.set_killer(0, second);
    EXPECT_EQ(killers.get_killerA(-1), second);
    EXPECT_EQ(killers.get_killerB(-100), first);
}

TEST(Killer, LastPlyAndBeyondStayInside) {
    Killer killers;
    killers.set_killer(101, first);
    EXPECT_EQ(killers.get_killerA(101), first);
    EXPECT_EQ(killers.get_killerA(1000), first);
}

TEST(Killer, ClearEmptiesAll) {
    Killer killers;
    killers.set_killer(0, first);
    killers.set_killer(101, second);
    killers.set_killer(101, third);
    killers.clear();
    EXPECT_EQ(killers.get_killerA(0), Move());
    EXPECT_EQ(killers.get_killerA(101), Move());
    EXPECT_EQ(killers.get_killerB(101), Move());
}

}  // namespace
}  // namespace orvelin
