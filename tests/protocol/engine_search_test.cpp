#include <chrono>
#include <cstdint>
#include <gtest/gtest.h>
#include <limits>
#include <string>
#include <thread>
#include <vector>

#include "search/action.h"
#include "support/analysis_probe.h"
#include "support/engine_fixture.h"
#include "support/logic_error_text.h"
#include "time/time_manager.h"

namespace orvelin::test {
namespace {

using lines_t = std::vector<std::string>;

/// Milliseconds; beyond any clock given here and within what the absent clocks allow.
constexpr std::uint64_t long_time = std::uint64_t{1} << 35;

int count_best_moves(lines_t const& lines) {
    int count = 0;
    for (std::string const& line : lines) {
        count += line.starts_with("bestmove") ? 1 : 0;
    }
    return count;
}

class EngineSearchTest : public EngineFixture {
 protected:
    /// The limits as `go` leaves them; the search is stopped again.
    TimeManager& limits_of(std::string const& go, std::string const& moves = "") {
        command("ucinewgame");
        command("position startpos" + moves);
        command(go);
        command("stop");
        replies();
        return engine->analysis().time_manager();
    }
};

TEST_F(EngineSearchTest, ClocksOfTheSideToMoveMakeTheBudget) {
    TimeManager const& white = limits_of("go wtime 60000 btime 30000");
    EXPECT_EQ(white.hard_limit(), 3570U);
    EXPECT_EQ(white.soft_budget(), 2142U);
    // 30000 / 42 = 714: 2 * (714 - 178 + 357) and 714 + 714 - 357.
    TimeManager const& black = limits_of("go wtime 60000 btime 30000", " moves e2e4");
    EXPECT_EQ(black.hard_limit(), 1786U);
    EXPECT_EQ(black.soft_budget(), 1071U);
}

TEST_F(EngineSearchTest, IncrementsCountForTheirSide) {
    // (60000 + 1000 * 40) / 42 = 2380.
    TimeManager const& white = limits_of("go wtime 60000 btime 1 winc 1000 binc 2");
    EXPECT_EQ(white.soft_budget(), 2380U + 2380U - 1190U);
    TimeManager const& black = limits_of("go btime 60000 wtime 1 binc 1000 winc 2", " moves e2e4");
    EXPECT_EQ(black.soft_budget(), 2380U + 2380U - 1190U);
}

TEST_F(EngineSearchTest, MovestogoIsReadAndThirtyStandsForLessThanOne) {
    TimeManager const& one = limits_of("go wtime 60000 btime 60000 movestogo 1");
    EXPECT_EQ(one.hard_limit(), 30500U);
    EXPECT_EQ(one.soft_budget(), 10500U);
    // 60000 / 32 = 1875; 1875 + 30 * 1875 / 40 - 937.
    for (std::string const moves : {"0", "-5"}) {
        TimeManager const& none = limits_of("go wtime 60000 movestogo " + moves);
        EXPECT_EQ(none.soft_budget(), 1875U + 1406U - 937U);
    }
}

TEST_F(EngineSearchTest, AnAbsentMovestogoIsForty) {
    limits_of("go wtime 60000 movestogo 1");
    EXPECT_EQ(limits_of("go wtime 60000").hard_limit(), 3570U);
}

TEST_F(EngineSearchTest, MovetimeStopsBeforeItsEndAndZeroIsOne) {
    TimeManager const& second = limits_of("go movetime 1000");
    EXPECT_FALSE(second.time_to_move(799));
    EXPECT_TRUE(second.time_to_move(800));
    EXPECT_EQ(limits_of("go movetime 0").remaining_time(0), 1);
}

TEST_F(EngineSearchTest, NegativeTimesActAsEnormousClocks) {
    TimeManager const& limits = limits_of("go wtime -100 btime -100");
    EXPECT_FALSE(limits.time_to_move(long_time));
    EXPECT_EQ(limits.remaining_time(0), -100);
}

TEST_F(EngineSearchTest, InfiniteAndPonderTakeTimeOutOfPlay) {
    for (std::string const word : {"infinite", "ponder"}) {
        TimeManager const& limits = limits_of("go wtime 1000 btime 1000 " + word);
        EXPECT_FALSE(limits.time_to_move(long_time));
        EXPECT_EQ(limits.percentage(2000), 0);
    }
    TimeManager const& limits = limits_of("go wtime 1000 btime 1000");
    EXPECT_TRUE(limits.time_to_move(2000));
    EXPECT_GT(limits.percentage(2000), 100);
}

TEST_F(EngineSearchTest, ANumberOutOfRangeIsTheNearestAndEndsTheParse) {
    TimeManager const& large = limits_of("go movetime 99999999999999 infinite");
    EXPECT_EQ(large.remaining_time(0), std::numeric_limits<int>::max());
    EXPECT_EQ(engine->engine_state(), 0);
    TimeManager const& small = limits_of("go wtime -99999999999999");
    EXPECT_EQ(small.remaining_time(0), std::numeric_limits<int>::min());
}

TEST_F(EngineSearchTest, ANumberWithATailIsReadAndTheTailEndsTheParse) {
    EXPECT_EQ(best_move_of("go depth 2x infinite").substr(0, 9), "bestmove ");
    EXPECT_EQ(engine->analysis().get_iteration(), 2);
}

TEST_F(EngineSearchTest, DepthLimitsTheIterations) {
    EXPECT_TRUE(best_move_of("go depth 3").starts_with("bestmove "));
    EXPECT_EQ(engine->analysis().get_iteration(), 3);
}

TEST_F(EngineSearchTest, MateWritesTheDepthLimit) {
    EXPECT_TRUE(best_move_of("go depth 5 mate 2").starts_with("bestmove "));
    EXPECT_EQ(engine->analysis().get_iteration(), 2);
}

TEST_F(EngineSearchTest, DepthZeroRunsNoIteration) {
    EXPECT_EQ(best_move_of("go depth 0"), "bestmove 0000");
    EXPECT_EQ(engine->analysis().get_iteration(), 0);
}

TEST_F(EngineSearchTest, AMissingOrUnreadableNumberIsZero) {
    EXPECT_EQ(best_move_of("go depth"), "bestmove 0000");
    command("position startpos");
    EXPECT_EQ(best_move_of("go depth x infinite"), "bestmove 0000");
    command("position startpos");
    EXPECT_EQ(best_move_of("go mate  "), "bestmove 0000");
}

TEST_F(EngineSearchTest, NodesLimitsTheNodes) {
    EXPECT_TRUE(best_move_of("go nodes 1").starts_with("bestmove "));
    EXPECT_EQ(engine->analysis().get_node_count(), 1U);
    command("position startpos");
    EXPECT_TRUE(best_move_of("go nodes 777").starts_with("bestmove "));
    EXPECT_EQ(engine->analysis().get_node_count(), 777U);
}

TEST_F(EngineSearchTest, ANegativeNodeLimitIsNone) {
    EXPECT_TRUE(best_move_of("go nodes -1 depth 3").starts_with("bestmove "));
    EXPECT_EQ(engine->analysis().get_iteration(), 3);
    EXPECT_EQ(AnalysisProbe(engine->analysis()).max_nodes(),
              std::numeric_limits<std::uint64_t>::max());
}

TEST_F(EngineSearchTest, TheNodeLimitIsLiftedByTheNextGo) {
    best_move_of("go nodes 1");
    command("position startpos");
    best_move_of("go depth 3");
    EXPECT_GT(engine->analysis().get_node_count(), 1U);
}

TEST_F(EngineSearchTest, SearchmovesRestrictsTheBestMove) {
    EXPECT_TRUE(best_move_of("go depth 4 searchmoves a2a3").starts_with("bestmove a2a3"));
    command("position startpos");
    std::string const line = best_move_of("go depth 4 searchmoves a2a3 h2h3");
    EXPECT_TRUE(line.starts_with("bestmove a2a3") || line.starts_with("bestmove h2h3")) << line;
    command("position startpos");
    std::string const free_line = best_move_of("go depth 4");
    EXPECT_FALSE(free_line.starts_with("bestmove a2a3")) << free_line;
}

TEST_F(EngineSearchTest, SearchmovesRunsToTheEndOfTheLine) {
    EXPECT_EQ(logic_error_text([&] { command("go searchmoves a2a3 depth 2"); }),
              "ChessPosition::convert_to_move(const string& depth)");
    EXPECT_EQ(engine->analysis().get_action(), no_action);
}

TEST_F(EngineSearchTest, AnUnknownTokenEndsTheParse) {
    command("go fast depth 1");
    ASSERT_TRUE(wait_for_iteration(4));
    EXPECT_EQ(engine->analysis().get_status(), searching_status);
    command("stop");
    EXPECT_TRUE(replies().back().starts_with("bestmove "));
}

TEST_F(EngineSearchTest, GoAloneSearchesUntilStop) {
    command("go");
    ASSERT_TRUE(wait_for_iteration(4));
    EXPECT_EQ(engine->engine_state(), 1);
    EXPECT_FALSE(engine->analysis().time_manager().time_to_move(long_time));
    command("stop");
    EXPECT_TRUE(replies().back().starts_with("bestmove "));
    EXPECT_EQ(engine->engine_state(), 0);
    EXPECT_EQ(engine->analysis().get_status() == searching_status, false);
}

TEST_F(EngineSearchTest, GoWhileThinkingIsRefusedAndLeavesTheRestForTheNextTick) {
    open_log();
    command("go wtime 600000 btime 600000");
    ASSERT_TRUE(wait_for_status(searching_status));
    communicator.to_engine("go infinite");
    communicator.to_engine("isready");
    engine->from_console();
    EXPECT_EQ(replies(), lines_t{});
    EXPECT_EQ(engine->engine_state(), 1);
    EXPECT_EQ(engine->analysis().get_action(), no_action);
    std::string const text = log_text();
    EXPECT_TRUE(
        text.ends_with("engine <- go infinite\n"
                       "Error: received go while already thinking\n"))
        << text;
    engine->from_console();
    EXPECT_EQ(replies(), lines_t{"readyok"});
    // The refused line has taken the clocks away from the running search.
    EXPECT_FALSE(engine->analysis().time_manager().time_to_move(long_time));
    command("stop");
    EXPECT_EQ(count_best_moves(replies()), 1);
}

TEST_F(EngineSearchTest, GoWhileABestmoveIsHeldBackIsNotRefused) {
    command("go infinite");
    ASSERT_TRUE(wait_for_iteration(3));
    // The running search takes over the new limits and ends by them; the action stays, and so a
    // second search follows, whose end nobody waits for.
    command("go depth 2");
    EXPECT_EQ(engine->engine_state(), 1);
    EXPECT_EQ(count_best_moves(search_to_end()), 1);
    EXPECT_EQ(engine->engine_state(), 0);
    ASSERT_TRUE(wait_for([&] {
        return engine->analysis().get_action() == no_action &&
               engine->analysis().get_iteration() == 2 &&
               engine->analysis().get_status() == finished_status;
    }));
    engine->to_console();
    EXPECT_EQ(count_best_moves(replies()), 0);
}

TEST_F(EngineSearchTest, PonderHoldsBestmoveBackUntilPonderhit) {
    command("go ponder depth 2");
    EXPECT_EQ(engine->engine_state(), 2);
    ASSERT_TRUE(wait_for_status(finished_status));
    for (int tick = 0; tick < 3; ++tick) {
        engine->to_console();
    }
    EXPECT_EQ(count_best_moves(replies()), 0);
    EXPECT_EQ(fen(), start_fen);
    command("ponderhit");
    EXPECT_EQ(engine->engine_state(), 1);
    engine->to_console();
    lines_t const lines = replies();
    ASSERT_EQ(lines.size(), 2U);
    EXPECT_TRUE(lines[0].starts_with("info hashfull "));
    EXPECT_TRUE(lines[1].starts_with("bestmove "));
    EXPECT_EQ(engine->engine_state(), 0);
}

TEST_F(EngineSearchTest, PonderhitLetsTheClockCountAgain) {
    command("go ponder wtime 1000 btime 1000");
    ASSERT_TRUE(wait_for_status(searching_status));
    EXPECT_FALSE(engine->analysis().time_manager().time_to_move(long_time));
    command("ponderhit");
    EXPECT_TRUE(engine->analysis().time_manager().time_to_move(long_time));
    EXPECT_TRUE(search_to_end().back().starts_with("bestmove "));
}

TEST_F(EngineSearchTest, PonderhitDoesNotRestartTheClock) {
    command("go ponder depth 1 movetime 60000");
    ASSERT_TRUE(wait_for_status(finished_status));
    std::this_thread::sleep_for(std::chrono::milliseconds(20));
    TimeManager& clock = engine->analysis().time_manager();
    int const left = clock.remaining_time();
    EXPECT_LE(left, 60000 - 20);
    command("ponderhit");
    EXPECT_LE(clock.remaining_time(), left);
}

TEST_F(EngineSearchTest, StopReleasesAHeldBackBestmove) {
    for (std::string const word : {"ponder", "infinite"}) {
        command("ucinewgame");
        command("position startpos");
        command("go " + word + " depth 2");
        ASSERT_TRUE(wait_for_status(finished_status));
        engine->to_console();
        EXPECT_EQ(count_best_moves(replies()), 0);
        command("stop");
        lines_t const lines = replies();
        ASSERT_EQ(lines.size(), 1U);
        EXPECT_TRUE(lines[0].starts_with("bestmove "));
        EXPECT_EQ(engine->engine_state(), 0);
    }
}

// The analysis thread reports the stop later, as a rule: here it is enough that it once did.
TEST_F(EngineSearchTest, StopLeavesNothingToReport) {
    bool ready = false;
    for (int round = 0; round < 50 && !ready; ++round) {
        command("position startpos");
        command("go ponder depth 1");
        ASSERT_TRUE(wait_for_status(finished_status));
        command("stop");
        ready = engine->analysis().get_status() == ready_status;
    }
    EXPECT_TRUE(ready);
}

TEST_F(EngineSearchTest, TheLastOfInfiniteAndPonderDecidesOnTheState) {
    command("go infinite ponder");
    EXPECT_EQ(engine->engine_state(), 2);
    command("ponderhit");
    // Infinite is still on.
    EXPECT_FALSE(engine->analysis().time_manager().time_to_move(long_time));
    command("stop");
    command("position startpos");
    command("go ponder infinite");
    EXPECT_EQ(engine->engine_state(), 3);
    command("stop");
    EXPECT_EQ(engine->engine_state(), 0);
}

TEST_F(EngineSearchTest, StopWhileIdleDoesNothing) {
    command("stop");
    EXPECT_EQ(replies(), lines_t{});
    EXPECT_EQ(engine->analysis().get_action(), no_action);
    EXPECT_EQ(fen(), start_fen);
}

TEST_F(EngineSearchTest, PonderhitWhileIdleChangesTheStateAlone) {
    command("ponderhit");
    EXPECT_EQ(engine->engine_state(), 1);
    engine->to_console();
    EXPECT_EQ(replies(), lines_t{});
    command("stop");
}

TEST_F(EngineSearchTest, StopReportsWhatIsNewAndNoHashfull) {
    command("go infinite");
    ASSERT_TRUE(wait_for_iteration(6));
    ASSERT_TRUE(wait_for_report_time());
    command("stop");
    lines_t const lines = replies();
    ASSERT_EQ(lines.size(), 2U);
    EXPECT_TRUE(lines[0].starts_with("info depth ")) << lines[0];
    EXPECT_TRUE(lines[1].starts_with("bestmove ")) << lines[1];
    std::string const best = engine->analysis().best_move().algebraic(false);
    EXPECT_EQ(engine->position().history_str(), best);
}

TEST_F(EngineSearchTest, GoAfterAStopWithoutPositionPrintsTheOldBestMove) {
    command("position startpos");
    command("go infinite");
    ASSERT_TRUE(wait_for_iteration(4));
    command("stop");
    std::string const old_line = replies().back();
    // The stop stays in the action and is reported a second time by the analysis thread. Whether
    // that comes before or after the driver's last word is a matter of luck: here it comes after.
    ASSERT_TRUE(wait_for([&] { return engine->analysis().get_action() == no_action; }));
    engine->analysis().set_status(finished_status);
    std::string const old_move = engine->analysis().best_move().algebraic(false);
    communicator.to_engine("go depth 1");
    engine->from_console();
    engine->to_console();
    lines_t const lines = replies();
    ASSERT_EQ(lines.size(), 2U);
    EXPECT_TRUE(lines[0].starts_with("info hashfull "));
    EXPECT_EQ(lines[1], old_line);
    EXPECT_EQ(engine->engine_state(), 0);
    EXPECT_EQ(engine->position_line(), "position startpos " + old_move);
}

TEST_F(EngineSearchTest, AFinishedSearchGivesWayToTheNextGo) {
    std::string const first = best_move_of("go depth 2");
    std::string const second = best_move_of("go depth 2");
    EXPECT_TRUE(first.starts_with("bestmove "));
    EXPECT_TRUE(second.starts_with("bestmove "));
    EXPECT_EQ(engine->position().black_to_move(), false);
    EXPECT_EQ(engine->position().history().size(), 3U);
}

}  // namespace
}  // namespace orvelin::test
