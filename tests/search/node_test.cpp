// What every node of the search does: counting, limits, and writing to the table.

#include <chrono>
#include <string>
#include <thread>

#include "search/tt_move.h"
#include "support/analysis_fixture.h"
#include "support/positions.h"

namespace orvelin::test {

namespace {

using Node = AnalysisFixture;

void sleep_for(int milliseconds) {
    std::this_thread::sleep_for(std::chrono::milliseconds(milliseconds));
}

}  // namespace

TEST_F(Node, NodeIsCountedUpToTheNodeLimit) {
    analysis_.clear_node_count();
    analysis_.set_nodes(2);
    analysis_.new_node();
    analysis_.new_node();
    EXPECT_EQ(node_count(), 2U);
    EXPECT_EQ(analysis_.get_action(), no_action);
    analysis_.new_node();
    EXPECT_EQ(node_count(), 2U);
    EXPECT_EQ(analysis_.get_action(), stop_action);
}

TEST_F(Node, ClockIsPolledEvery16384NodesAwayFromTheRoot) {
    struct row_t {
        std::uint64_t count;
        int ply;
        bool stops;
    };
    for (row_t const& row : {row_t{0, 3, true}, row_t{0, 2, false}, row_t{1, 3, false},
                             row_t{16383, 9, false}, row_t{16384, 9, true}, row_t{16384, 2, false},
                             row_t{8192, 9, false}, row_t{1 << 20, 3, true}}) {
        set(start_fen);
        analysis_.set_movetime(201);
        probe_.start_clock();
        sleep_for(3);
        ASSERT_TRUE(analysis_.time_manager().time_to_move());
        analysis_.add_node_count(row.count);
        probe_.ply(row.ply);
        analysis_.new_node();
        EXPECT_EQ(analysis_.get_action(), row.stops ? stop_action : no_action) << row.count;
        EXPECT_EQ(node_count(), row.stops ? row.count : row.count + 1) << row.count;
    }
}

TEST_F(Node, NodeLimitDisablesTheTimeLimit) {
    set(start_fen);
    analysis_.set_movetime(201);
    analysis_.set_nodes(1000000);
    probe_.start_clock();
    sleep_for(3);
    ASSERT_TRUE(analysis_.time_manager().time_to_move());
    probe_.ply(5);
    analysis_.new_node();
    EXPECT_EQ(analysis_.get_action(), no_action);
    EXPECT_EQ(node_count(), 1U);
}

TEST_F(Node, EntryHoldsWhatWasPut) {
    set(start_fen);
    probe_.ply(6);
    analysis_.put_in_tt(lower_bound, 9, -123, move("e2e4"), 77);
    TTrecord const* const found = record();
    ASSERT_NE(found, nullptr);
    EXPECT_EQ(found->get_key(), position_.get_hash());
    EXPECT_TRUE(found->is_lowerbound());
    EXPECT_EQ(found->get_draft(), 9);
    EXPECT_EQ(found->get_date(), 77);
    EXPECT_EQ(found->get_score(0), -123);
    EXPECT_EQ(found->get_move(), TTmove(move("e2e4")));
}

TEST_F(Node, EntryHoldsMateDistanceFromTheNode) {
    struct row_t {
        int score;
        int stored;
    };
    for (row_t const& row :
         {row_t{29990, 29996}, row_t{29898, 29904}, row_t{29897, 29897}, row_t{-29897, -29897},
          row_t{-29898, -29904}, row_t{-29990, -29996}, row_t{0, 0}}) {
        set(start_fen);
        probe_.ply(6);
        store(exact_value, 1, row.score);
        auto const word = static_cast<std::int16_t>(record()->get_value() >> 32);
        EXPECT_EQ(word, row.stored) << row.score;
    }
}

TEST_F(Node, DepthIsCutToEightBits) {
    set(start_fen);
    store(exact_value, 0x105, 1);
    EXPECT_EQ(record()->get_draft(), 5);
}

}  // namespace orvelin::test
