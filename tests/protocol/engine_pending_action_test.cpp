#include <chrono>
#include <gtest/gtest.h>
#include <initializer_list>
#include <string>
#include <thread>
#include <vector>

#include "search/action.h"
#include "support/engine_fixture.h"
#include "support/test_config.h"

namespace orvelin::test {

namespace {

/// What is asked of the analysis thread and not yet taken, when the main thread goes on. The thread
/// looks every 5 ms, so the main thread is as a rule the faster one; where it must be, a test tries
/// again.
class EnginePendingActionTest : public EngineFixture {
 protected:
    EnginePendingActionTest() { command("setoption name Hash value 6"); }

    Analysis& analysis() { return engine->analysis(); }

    static void sleep_for(int milliseconds) {
        std::this_thread::sleep_for(std::chrono::milliseconds(milliseconds));
    }

    /// Hands over all lines for one tick.
    void commands(std::initializer_list<char const*> lines) {
        for (char const* const line : lines) {
            communicator.to_engine(line);
        }
        engine->from_console();
    }

    void start_search(std::string const& go) {
        command("position startpos");
        command(go);
        ASSERT_TRUE(wait_for_iteration(2));
    }

    /// A search has ended whose answer is held back.
    void end_pondering() {
        command("position startpos");
        command("go ponder depth 1");
        ASSERT_TRUE(wait_for_status(finished_status));
        engine->to_console();
        replies();
    }

    /// Nothing is left to do for the thread, and the next search is as deep as it should be.
    void expect_no_stop_is_left() {
        EXPECT_EQ(analysis().get_action(), no_action);
        EXPECT_EQ(analysis().get_status(), ready_status);
        command("go ponder depth 5");
        ASSERT_TRUE(wait_for_status(finished_status));
        EXPECT_EQ(analysis().get_iteration(), 5);
        command("stop");
        EXPECT_TRUE(replies().back().starts_with("bestmove "));
    }

    /// No search comes in the time that the thread needs to take one up.
    void expect_no_search_begins() {
        EXPECT_NE(analysis().get_action(), think_action);
        sleep_for(15);
        EXPECT_NE(analysis().get_action(), think_action);
        EXPECT_NE(analysis().get_status(), searching_status);
    }
};

constexpr std::initializer_list<int> delays{0, 3, 8};

}  // namespace

TEST_F(EnginePendingActionTest, APositionDuringASearchLeavesNoStop) {
    for (int const delay : delays) {
        start_search("go infinite");
        command("position startpos moves e2e4");
        sleep_for(delay);
        expect_no_stop_is_left();
    }
}

TEST_F(EnginePendingActionTest, APositionBehindAStopLeavesNoStop) {
    for (int const delay : delays) {
        start_search("go infinite");
        command("stop");
        sleep_for(delay);
        command("position startpos moves d2d4");
        sleep_for(delay);
        expect_no_stop_is_left();
    }
}

TEST_F(EnginePendingActionTest, APositionBehindAStopOfAnEndedSearchLeavesNoStop) {
    for (int const delay : delays) {
        end_pondering();
        command("stop");
        sleep_for(delay);
        command("position startpos moves d2d4");
        sleep_for(delay);
        expect_no_stop_is_left();
    }
}

TEST_F(EnginePendingActionTest, APositionBehindANodeLimitLeavesNoStop) {
    for (int const delay : delays) {
        command("position startpos");
        EXPECT_TRUE(best_move_of("go nodes 400").starts_with("bestmove "));
        sleep_for(delay);
        command("position startpos moves c2c4");
        sleep_for(delay);
        expect_no_stop_is_left();
    }
}

TEST_F(EnginePendingActionTest, AMoveBehindAStopLeavesNoStop) {
    for (int const delay : delays) {
        start_search("go infinite searchmoves g1f3");
        command("stop");
        sleep_for(delay);
        command("usermove e7e5");
        sleep_for(delay);
        expect_no_stop_is_left();
    }
}

TEST_F(EnginePendingActionTest, AStopTakesBackAGoThatWaits) {
    for (int round = 0; round < 10; ++round) {
        ASSERT_NO_FATAL_FAILURE(end_pondering());
        commands({"go infinite", "stop"});
        expect_no_search_begins();
        std::vector<std::string> const lines = replies();
        ASSERT_FALSE(lines.empty());
        EXPECT_TRUE(lines.back().starts_with("bestmove ")) << lines.back();
    }
}

// The work that is deferred until the old move is made takes longer than the thread sleeps.
TEST_F(EnginePendingActionTest, AStopTakesBackAGoBeforeTheWorkThatWaitsWithIt) {
    command("setoption name Hash value 64");
    for (int round = 0; round < 5; ++round) {
        ASSERT_NO_FATAL_FAILURE(end_pondering());
        commands({"go", "ucinewgame", "ucinewgame", "stop"});
        expect_no_search_begins();
    }
}

TEST_F(EnginePendingActionTest, APositionTakesBackAGoBeforeTheWorkThatWaitsWithIt) {
    command("setoption name Hash value 64");
    for (int round = 0; round < 5; ++round) {
        ASSERT_NO_FATAL_FAILURE(end_pondering());
        commands({"go", "ucinewgame", "ucinewgame", "position startpos moves e2e4"});
        EXPECT_EQ(engine->position_line(), "position startpos moves e2e4");
        expect_no_search_begins();
        command("stop");
    }
}

TEST_F(EnginePendingActionTest, AGoThatWaitsBeginsBehindAllThatWaitsWithIt) {
    command("setoption name Hash value 64");
    constexpr int wanted = short_tests ? 1 : 5;
    int answered_at_once = 0;
    for (int round = 0; round < 50 && answered_at_once < wanted; ++round) {
        ASSERT_NO_FATAL_FAILURE(end_pondering());
        commands({"go", "ucinewgame", "ucinewgame", "ucinewgame"});
        engine->to_console();
        // A search that has begun was the one that was asked for, and no second one waits behind.
        if (analysis().get_status() == searching_status) {
            EXPECT_TRUE(wait_for([&] { return analysis().get_action() == no_action; }));
        }
        std::vector<std::string> const lines = replies();
        if (!lines.empty() && lines.back().starts_with("bestmove ")) {
            ++answered_at_once;
            EXPECT_EQ(engine->position_line(), "");
        }
        ASSERT_TRUE(wait_for_status(searching_status));
        EXPECT_TRUE(wait_for([&] { return analysis().get_action() == no_action; }));
        command("position startpos");
        replies();
    }
    EXPECT_GE(answered_at_once, wanted);
}

}  // namespace orvelin::test
