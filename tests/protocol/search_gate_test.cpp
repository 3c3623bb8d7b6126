#include "protocol/search_gate.h"

#include <gtest/gtest.h>
#include <string>
#include <vector>

#include "support/analysis_fixture.h"
#include "support/logic_error_text.h"
#include "support/positions.h"

namespace orvelin::test {

namespace {

std::string const start = positions::start;

/// A gate without an analysis thread: action and status change only where the test says so.
class SearchGateTest : public AnalysisFixture {
 protected:
    SearchGateTest() { set(start); }

    /// As the analysis thread takes up what it is asked for.
    void take_up() {
        analysis_.set_status(searching_status);
        analysis_.set_action(no_action);
    }

    void defer(std::string const& name) {
        gate.do_between_searches([this, name] { done.push_back(name); });
    }

    SearchGate gate{analysis_, position_, search_tables()};
    texts_t done;
};

}  // namespace

TEST_F(SearchGateTest, ASearchWaitsAndThenRuns) {
    EXPECT_FALSE(gate.search_runs_or_waits());
    gate.begin_search();
    EXPECT_EQ(analysis_.get_action(), think_action);
    EXPECT_TRUE(gate.search_runs_or_waits());
    take_up();
    EXPECT_TRUE(gate.search_runs_or_waits());
    analysis_.set_status(finished_status);
    EXPECT_FALSE(gate.search_runs_or_waits());
}

TEST_F(SearchGateTest, AStopIsNoSearch) {
    analysis_.set_action(stop_action);
    EXPECT_FALSE(gate.search_runs_or_waits());
}

TEST_F(SearchGateTest, OnlyASearchThatWaitsIsWithdrawn) {
    EXPECT_FALSE(gate.withdraw_search());
    gate.begin_search();
    EXPECT_TRUE(gate.withdraw_search());
    EXPECT_EQ(analysis_.get_action(), no_action);
    EXPECT_FALSE(gate.withdraw_search());
    analysis_.set_action(stop_action);
    EXPECT_FALSE(gate.withdraw_search());
    EXPECT_EQ(analysis_.get_action(), stop_action);
}

TEST_F(SearchGateTest, ACommandThatNeedsThePositionTakesBackASearchThatWaits) {
    gate.begin_search();
    gate.require_no_search();
    EXPECT_EQ(analysis_.get_action(), no_action);
    analysis_.set_action(stop_action);
    analysis_.set_status(finished_status);
    gate.require_no_search();
    EXPECT_EQ(analysis_.get_action(), stop_action);
    EXPECT_EQ(analysis_.get_status(), finished_status);
}

TEST_F(SearchGateTest, ACommandThatNeedsThePositionIsRefusedUnderASearch) {
    gate.begin_search();
    take_up();
    EXPECT_EQ(logic_error_text([&] { gate.require_no_search(); }),
              "Analysis::init  init() call while thinking not allowed");
    analysis_.set_status(ready_status);
}

TEST_F(SearchGateTest, TheSearchedPositionIsThatOfTheBeginning) {
    position_.make_move(move("e2e4"));
    std::string const fen = position_.fen();
    gate.begin_search();
    take_up();
    position_.make_move(move("e7e5"));
    EXPECT_EQ(gate.searched_position().fen(), fen);
    EXPECT_EQ(gate.searched_records(), 2U);
    gate.begin_search();
    EXPECT_EQ(analysis_.get_action(), think_action);
    EXPECT_EQ(gate.searched_position().fen(), fen);
    EXPECT_EQ(gate.searched_records(), 2U);
}

TEST_F(SearchGateTest, WorkIsDoneAtOnceWithoutASearch) {
    defer("a");
    EXPECT_EQ(done, texts_t{"a"});
    gate.catch_up();
    EXPECT_EQ(done, texts_t{"a"});
}

TEST_F(SearchGateTest, WorkWaitsForTheSearchInItsOrder) {
    gate.begin_search();
    defer("a");
    take_up();
    defer("b");
    analysis_.set_status(finished_status);
    defer("c");
    EXPECT_EQ(done, texts_t{});
    gate.catch_up();
    EXPECT_EQ(done, (texts_t{"a", "b", "c"}));
    defer("d");
    EXPECT_EQ(done, (texts_t{"a", "b", "c", "d"}));
}

TEST_F(SearchGateTest, InIdlenessItCatchesUpOnlyBehindTheSearch) {
    gate.begin_search();
    defer("a");
    gate.catch_up_in_idleness();
    take_up();
    gate.catch_up_in_idleness();
    EXPECT_EQ(done, texts_t{});
    analysis_.set_status(finished_status);
    gate.catch_up_in_idleness();
    EXPECT_EQ(done, texts_t{"a"});
}

TEST_F(SearchGateTest, AStopWithoutASearchIsNotWaitedFor) {
    gate.set_action(stop_action);
    EXPECT_EQ(analysis_.get_action(), stop_action);
    gate.set_action(no_action);
    EXPECT_EQ(analysis_.get_action(), stop_action);
}

}  // namespace orvelin::test
