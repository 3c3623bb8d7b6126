#include "protocol/engine.h"

#include <gtest/gtest.h>
#include <iostream>
#include <sstream>
#include <string>
#include <vector>

#include "search/action.h"
#include "support/engine_fixture.h"

namespace orvelin::test {
namespace {

using lines_t = std::vector<std::string>;

class EngineTest : public EngineFixture {};

TEST_F(EngineTest, StartsIdleOnTheStartPosition) {
    EXPECT_EQ(fen(), start_fen);
    EXPECT_EQ(engine->engine_state(), 0);
    EXPECT_EQ(engine->position_line(), "");
    EXPECT_EQ(engine->analysis().get_status(), ready_status);
    EXPECT_EQ(engine->analysis().get_action(), no_action);
    EXPECT_EQ(engine->analysis().mpv_version(), 0);
    EXPECT_EQ(engine->analysis().mpv().number(), 1);
}

TEST_F(EngineTest, OptionNamesMatchWithoutRegardToCase) {
    EXPECT_TRUE(Engine::equal_options("uci_ELO", "UCI_Elo"));
    EXPECT_TRUE(Engine::equal_options("", ""));
    EXPECT_FALSE(Engine::equal_options("Hash", "Hash "));
    EXPECT_FALSE(Engine::equal_options("Hash", "Hast"));
}

TEST_F(EngineTest, IsreadyQueuesReadyok) {
    command("isready");
    EXPECT_EQ(replies(), lines_t{"readyok"});
}

TEST_F(EngineTest, AnUnknownWordIsDroppedAndTheQueueWorkedOn) {
    communicator.to_engine("debug on");
    communicator.to_engine("isready");
    communicator.to_engine("Isready");
    communicator.to_engine("isready now");
    engine->from_console();
    EXPECT_EQ(replies(), (lines_t{"readyok", "readyok"}));
    EXPECT_EQ(communicator.from_interface(), "");
}

TEST_F(EngineTest, EachCommandIsLoggedBeforeItsAnswer) {
    open_log();
    command("isready  now");
    command("nonsense");
    EXPECT_EQ(log_text(),
              "engine <- isready  now\n"
              "engine -> readyok\n"
              "engine <- nonsense\n");
}

TEST_F(EngineTest, ALineOfBlanksIsDroppedWithoutALogLine) {
    open_log();
    communicator.to_engine("   ");
    communicator.to_engine("isready");
    engine->from_console();
    EXPECT_EQ(replies(), lines_t{"readyok"});
    EXPECT_EQ(log_text(), "engine <- isready\nengine -> readyok\n");
}

TEST_F(EngineTest, AClosedLogIsLeftInAFailedState) {
    EXPECT_TRUE(log.good());
    command("isready");
    EXPECT_TRUE(log.fail());
}

TEST_F(EngineTest, IsreadyDuringASearchDoesNotDisturbIt) {
    command("position startpos");
    command("go infinite");
    ASSERT_TRUE(wait_for_status(searching_status));
    command("isready");
    EXPECT_EQ(replies(), lines_t{"readyok"});
    EXPECT_EQ(engine->analysis().get_status(), searching_status);
    EXPECT_EQ(engine->engine_state(), 3);
    ASSERT_TRUE(wait_for_iteration(3));
    command("stop");
    EXPECT_TRUE(replies().back().starts_with("bestmove "));
}

TEST_F(EngineTest, SetActionStartsAndStopsTheSearch) {
    engine->set_action(1);
    EXPECT_EQ(engine->analysis().get_status(), searching_status);
    engine->set_action(7);
    EXPECT_EQ(engine->analysis().get_status(), searching_status);
    engine->set_action(2);
    EXPECT_EQ(engine->analysis().get_status(), finished_status);
    engine->set_action(0);
    EXPECT_EQ(engine->engine_state(), 0);
    engine->to_console();
    for (std::string const& line : replies()) {
        EXPECT_TRUE(line.starts_with("info depth")) << line;
    }
}

TEST_F(EngineTest, AStopWhileIdleGivesStatusTwoAndNoSearch) {
    engine->set_action(2);
    ASSERT_TRUE(wait_for_status(finished_status));
    EXPECT_EQ(engine->analysis().get_action(), no_action);
    EXPECT_EQ(engine->analysis().get_node_count(), 0U);
    engine->to_console();
    EXPECT_EQ(replies(), lines_t{});
}

TEST_F(EngineTest, QuitEndsARunningSearch) {
    command("go infinite");
    ASSERT_TRUE(wait_for_status(searching_status));
    command("quit");
    EXPECT_NE(engine->analysis().get_status(), searching_status);
}

TEST_F(EngineTest, QuitEndsTheAnalysisThread) {
    command("quit");
    std::this_thread::sleep_for(std::chrono::milliseconds(50));
    command("go depth 1");
    std::this_thread::sleep_for(std::chrono::milliseconds(50));
    EXPECT_NE(engine->analysis().get_status(), searching_status);
    EXPECT_EQ(engine->analysis().get_iteration(), 0);
}

TEST_F(EngineTest, EvalWritesTheReportPastTheQueue) {
    std::ostringstream output;
    std::streambuf* const old_buffer = std::cout.rdbuf(output.rdbuf());
    command("position startpos moves e2e4");
    command("eval");
    std::cout.rdbuf(old_buffer);
    EXPECT_EQ(replies(), lines_t{});
    EXPECT_EQ(output.str(), engine->analysis().static_eval_report());
}

}  // namespace
}  // namespace orvelin::test
