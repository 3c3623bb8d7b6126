#include "play/dead_draw.h"

#include <gtest/gtest.h>
#include <string>

#include "position/chess_position.h"
#include "support/positions.h"
#include "support/shared_tables.h"

namespace orvelin::play::test {

namespace {

bool dead(std::string const& fen) {
    static ChessPosition position(orvelin::test::shared_tables());
    position.fen(fen);
    return is_dead_draw(position);
}

TEST(DeadDraw, PiecesThatCannotGiveMate) {
    EXPECT_TRUE(dead("4k3/8/8/8/8/8/8/4K3 w - - 0 1"));
    EXPECT_TRUE(dead("4k3/8/8/8/8/8/8/4KN2 w - - 0 1"));
    EXPECT_TRUE(dead("4kb2/8/8/8/8/8/8/4K3 b - - 0 1"));
    // Both bishops on dark squares.
    EXPECT_TRUE(dead("4kb2/8/8/8/8/8/8/2B1K3 w - - 0 1"));
}

TEST(DeadDraw, PiecesThatCanGiveMateSomehow) {
    EXPECT_FALSE(dead("4k3/8/8/8/8/8/8/2B1KB2 w - - 0 1"));
    EXPECT_FALSE(dead("2b1k3/8/8/8/8/8/8/2B1K3 w - - 0 1"));
    EXPECT_FALSE(dead("4k3/8/8/8/8/8/8/4KNN1 w - - 0 1"));
    EXPECT_FALSE(dead("4k1n1/8/8/8/8/8/8/4KN2 w - - 0 1"));
    EXPECT_FALSE(dead("4k3/8/8/8/8/8/8/3BKN2 w - - 0 1"));
    for (std::string const piece : {"P", "R", "Q", "p", "r", "q"}) {
        EXPECT_FALSE(dead("4k3/8/8/8/8/" + piece + "7/8/4K3 w - - 0 1")) << piece;
    }
    EXPECT_FALSE(dead(positions::start));
}

TEST(DeadDraw, AHundredHalfMovesWithoutProgress) {
    EXPECT_FALSE(dead("4k3/8/8/8/8/8/8/4K2R w - - 99 80"));
    EXPECT_TRUE(dead("4k3/8/8/8/8/8/8/4K2R w - - 100 80"));
    EXPECT_TRUE(dead("4k3/8/8/8/8/8/8/4K2R w - - 101 80"));
}

}  // namespace

}  // namespace orvelin::play::test
