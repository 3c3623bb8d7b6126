#include <cstdint>
#include <gtest/gtest.h>
#include <string>

#include "support/engine_fixture.h"

namespace orvelin::test {

namespace {

/// A `go` behind a search that has ended but not been answered: its own search follows the answer,
/// and nothing is printed at its end.
class EngineWaitingGoTest : public EngineFixture {
 protected:
    /// Ends in the silent search, which runs until it is stopped.
    void SetUp() override {
        command("position startpos moves e2e4");
        command("go ponder depth 1");
        ASSERT_TRUE(wait_for_status(finished_status));
        command("go");
        engine->to_console();
        best_move = replies().back();
        ASSERT_TRUE(best_move.starts_with("bestmove ")) << best_move;
        ASSERT_TRUE(wait_for_status(searching_status));
        ASSERT_TRUE(wait_for_iteration(2));
    }

    void end_silently() {
        engine->analysis().set_action(stop_action);
        ASSERT_TRUE(wait_for_status(finished_status));
    }

    std::uint64_t buckets() { return engine->tables().transposition_table.buckets(); }

    /// What `eval` says of material and mobility: the sums further down drift under a search.
    std::string mobility() {
        ::testing::internal::CaptureStdout();
        command("eval");
        std::string const report = ::testing::internal::GetCapturedStdout();
        return report.substr(0, report.find("development"));
    }

    std::string best_move;
};

}  // namespace

TEST_F(EngineWaitingGoTest, EvalIsOfThePositionBehindTheAnswer) {
    std::string const during = mobility();
    end_silently();
    EXPECT_EQ(during, mobility());
}

TEST_F(EngineWaitingGoTest, ANewGameBeginsBehindTheSilentEnd) {
    command("ucinewgame");
    EXPECT_NE(engine->position_line(), "");
    end_silently();
    command("isready");
    EXPECT_EQ(engine->position_line(), "");
    EXPECT_EQ(fen(), start_fen);
}

TEST_F(EngineWaitingGoTest, TheLastOfTwoHashSizesStands) {
    command("setoption name Hash value 16");
    EXPECT_EQ(buckets(), 2097152U);
    end_silently();
    command("setoption name Hash value 8");
    command("position startpos");
    EXPECT_EQ(buckets(), 131072U);
}

TEST_F(EngineWaitingGoTest, WhatIsDeferredKeepsItsOrderBehindABestmoveThatIsHeldBack) {
    command("go ponder");
    command("setoption name Hash value 16");
    end_silently();
    command("setoption name Hash value 8");
    EXPECT_EQ(buckets(), 2097152U);
    command("stop");
    EXPECT_EQ(buckets(), 131072U);
}

}  // namespace orvelin::test
