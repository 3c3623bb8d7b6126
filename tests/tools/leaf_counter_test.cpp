#include "perft/leaf_counter.h"

#include <cstdint>
#include <gtest/gtest.h>
#include <set>
#include <string>
#include <vector>

#include "position/chess_position.h"
#include "support/shared_tables.h"

namespace orvelin::test {

namespace {

class LeafCounterTest : public testing::Test {
 protected:
    LeafCounterTest() { position_.newgame(); }

    tools::LeafCounter counter_{shared_tables()};
    ChessPosition position_{shared_tables()};
};

}  // namespace

TEST_F(LeafCounterTest, DivideCallsBeforeAndAfterEachRootMove) {
    std::vector<std::string> events;
    std::uint64_t sum = 0;
    std::uint64_t const total = counter_.divide(
        position_, 2,
        [&](tools::root_move_t const& root) {
            EXPECT_EQ(root.index, events.size() / 2);
            EXPECT_EQ(root.count, 20U);
            events.push_back(root.move.algebraic(false));
        },
        [&](tools::root_move_t const& root, std::uint64_t leaves) {
            EXPECT_EQ(events.back(), root.move.algebraic(false));
            events.push_back(events.back());
            sum += leaves;
        });
    EXPECT_EQ(events.size(), 40U);
    EXPECT_EQ(std::set<std::string>(events.begin(), events.end()).size(), 20U);
    EXPECT_EQ(total, 400U);
    EXPECT_EQ(sum, total);
}

TEST_F(LeafCounterTest, DivideAtDepth0HasNoRootMoves) {
    int calls = 0;
    std::uint64_t const total = counter_.divide(
        position_, 0, [&](tools::root_move_t const&) { ++calls; },
        [&](tools::root_move_t const&, std::uint64_t) { ++calls; });
    EXPECT_EQ(total, 1U);
    EXPECT_EQ(calls, 0);
}

TEST_F(LeafCounterTest, ThePositionComesBack) {
    std::string const fen = position_.fen();
    EXPECT_EQ(counter_.count(position_, 3), 8902U);
    EXPECT_EQ(position_.fen(), fen);
    EXPECT_EQ(position_.history().size(), 1U);
}

}  // namespace orvelin::test
