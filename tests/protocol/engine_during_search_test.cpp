#include <gtest/gtest.h>
#include <sstream>
#include <string>

#include "support/engine_fixture.h"
#include "support/logic_error_text.h"

namespace orvelin::test {

namespace {

/// Commands that touch what a running search works on.
class EngineDuringSearchTest : public EngineFixture {
 protected:
    void begin_search(std::string const& position) {
        command(position);
        command("go infinite");
        ASSERT_TRUE(wait_for_iteration(2));
        ASSERT_EQ(engine->analysis().get_status(), searching_status);
    }

    std::uint64_t buckets() { return engine->tables().transposition_table.buckets(); }

    /// What the command writes to the standard output.
    std::string output_of(std::string const& line) {
        ::testing::internal::CaptureStdout();
        command(line);
        return ::testing::internal::GetCapturedStdout();
    }
};

const std::string kings_pawn = "position startpos moves e2e4";

}  // namespace

TEST_F(EngineDuringSearchTest, ANewGameBeginsBehindTheSearch) {
    begin_search(kings_pawn);
    command("ucinewgame");
    EXPECT_EQ(engine->analysis().get_status(), searching_status);
    EXPECT_EQ(engine->position_line(), kings_pawn);
    command("stop");
    EXPECT_NE(replies().back().find("bestmove"), std::string::npos);
    EXPECT_EQ(fen(), start_fen);
    EXPECT_EQ(engine->position_line(), "");
}

TEST_F(EngineDuringSearchTest, ANewGameBeginsBehindABestmoveThatIsHeldBack) {
    command(kings_pawn);
    command("go ponder depth 1");
    command("ucinewgame");
    ASSERT_TRUE(wait_for_status(finished_status));
    command("ponderhit");
    EXPECT_TRUE(search_to_end().back().starts_with("bestmove"));
    EXPECT_EQ(fen(), start_fen);
}

TEST_F(EngineDuringSearchTest, APositionComesAfterTheNewGame) {
    begin_search("position startpos moves d2d4");
    command("ucinewgame");
    command("position startpos moves d2d4 d7d5");
    EXPECT_EQ(fen(), "rnbqkbnr/ppp1pppp/8/3p4/3P4/8/PPP1PPPP/RNBQKBNR w KQkq - 0 2");
}

TEST_F(EngineDuringSearchTest, TheHashTableIsExchangedBehindTheSearch) {
    begin_search(kings_pawn);
    command("setoption name Hash value 16");
    command("setoption name Hash value 8");
    EXPECT_EQ(buckets(), 2097152U);
    command("stop");
    EXPECT_EQ(buckets(), 131072U);
}

TEST_F(EngineDuringSearchTest, EvalReportsThePositionThatIsSearched) {
    command(kings_pawn);
    std::string const report = output_of("eval");
    begin_search(kings_pawn);
    EXPECT_EQ(output_of("eval"), report);
}

TEST_F(EngineDuringSearchTest, ReadingSearchmovesLeavesThePositionToTheSearch) {
    begin_search("position startpos moves e2e4 d7d5");
    for (int i = 0; i < 20; ++i) {
        command("go infinite searchmoves e4d5 g1f3");
    }
    EXPECT_EQ(engine->analysis().get_status(), searching_status);
    command("stop");
    std::string const best = engine->analysis().best_move().algebraic(false);
    EXPECT_EQ(engine->position().history_str(), "e2e4 d7d5 " + best);
}

// The old best move puts a queen on the new board that the material word does not know, so that
// what the first evaluation has found must not be taken for the second.
TEST_F(EngineDuringSearchTest, EvalBehindTheOldBestMoveOnANewBoardForgetsTheEvalBeforeIt) {
    auto const last_report = [&](bool eval_before) {
        command("position fen 7k/8/6K1/8/8/8/8/Q7 w - - 0 1");
        command("go infinite");
        EXPECT_TRUE(wait_for_status(finished_status));
        command("position fen 4k3/pppp4/8/8/8/8/PPPP4/4K3 w - - 0 1");
        if (eval_before) {
            output_of("eval");
        }
        command("stop");
        return output_of("eval");
    };
    std::string const report = last_report(false);
    EXPECT_NE(report.find("Total score: 316 "), std::string::npos) << report;
    EXPECT_EQ(last_report(true), report);
}

// The status is written by hand, so that the position is not that of the clock for sure.
TEST_F(EngineDuringSearchTest, MovestogoLeavesTheSideToMoveToTheSearch) {
    command(kings_pawn);
    TimeManager& limits = engine->analysis().time_manager();
    limits.set_white_to_move(true);
    engine->analysis().set_status(searching_status);
    command("go wtime 60000 btime 1 depth 0 movestogo 20");
    EXPECT_EQ(limits.remaining_time(0), 60000);
    EXPECT_TRUE(wait_for_status(finished_status));
}

TEST_F(EngineDuringSearchTest, BenchIsRefused) {
    begin_search(kings_pawn);
    EXPECT_EQ(logic_error_text([&] { command("bench"); }),
              "Analysis::init  init() call while thinking not allowed");
}

}  // namespace orvelin::test
