#include "search/analysis.h"

#include <chrono>
#include <stdexcept>
#include <thread>

#include "support/analysis_fixture.h"
#include "support/positions.h"

namespace orvelin::test {

namespace {

constexpr std::uint64_t no_limit = std::uint64_t{1} << 62;

using AnalysisTest = AnalysisFixture;

void sleep_for(int milliseconds) {
    std::this_thread::sleep_for(std::chrono::milliseconds(milliseconds));
}

}  // namespace

TEST_F(AnalysisTest, StartValues) {
    ChessPosition position(search_tables());
    position.newgame();
    Analysis fresh(position, search_tables());
    AnalysisProbe const probe(fresh);
    EXPECT_EQ(fresh.get_action(), no_action);
    EXPECT_EQ(fresh.get_status(), ready_status);
    EXPECT_EQ(&fresh.chessposition(), &position);
    EXPECT_EQ(fresh.mpv().number(), 1);
    EXPECT_EQ(fresh.mpv_version(), 0);
    EXPECT_EQ(fresh.mpv().size(), 0);
    EXPECT_EQ(fresh.pv().size(), 0);
    EXPECT_EQ(fresh.root_line().size(), 0);
    EXPECT_EQ(probe.max_threads(), 1U);
    EXPECT_EQ(fresh.get_iteration(), 0);
    EXPECT_EQ(fresh.ply(), 0);
    EXPECT_EQ(fresh.get_seldepth(), 0);
    EXPECT_EQ(probe.date(), 0);
    EXPECT_EQ(fresh.get_node_count(), 0U);
    EXPECT_EQ(fresh.mate_attack_count(), 0);
    EXPECT_EQ(fresh.get_id(), 0);
    EXPECT_EQ(fresh.leaf_count(), 0U);
    EXPECT_EQ(fresh.get_ebf(), 0.0F);
    EXPECT_FALSE(probe.log_on());
    EXPECT_EQ(probe.depth_limit(), 101);
    EXPECT_EQ(probe.max_nodes(), no_limit);
    EXPECT_TRUE(probe.searchmoves().empty());
    EXPECT_FALSE(probe.limit_strength());
    EXPECT_EQ(fresh.elo(), 2000);
    EXPECT_EQ(fresh.strength_depth(), 102);
    EXPECT_EQ(fresh.strength_margin(), 0);
    EXPECT_EQ(fresh.eval(), 0);
    EXPECT_EQ(fresh.best_move(), Move());
    EXPECT_EQ(fresh.pondermove(), Move());
    EXPECT_TRUE(probe.aspiration());
}

TEST_F(AnalysisTest, ConstructorClearsTheTable) {
    set(start_fen);
    store(exact_value, 3, 17);
    ASSERT_NE(record(), nullptr);
    Analysis const another(position_, search_tables());
    EXPECT_EQ(record(), nullptr);
}

TEST_F(AnalysisTest, InitWhileSearchingFails) {
    set(start_fen);
    analysis_.set_status(searching_status);
    analysis_.set_action(stop_action);
    try {
        analysis_.init(position_);
        FAIL() << "nothing thrown";
    } catch (std::logic_error const& error) {
        EXPECT_STREQ(error.what(), "Analysis::init  init() call while thinking not allowed");
    }
    EXPECT_EQ(analysis_.get_status(), searching_status);
    EXPECT_EQ(analysis_.get_action(), stop_action);
    analysis_.set_status(ready_status);
}

TEST_F(AnalysisTest, InitClearsAFinishedStatusAndTheAction) {
    set(start_fen);
    analysis_.set_status(finished_status);
    analysis_.set_action(stop_action);
    EXPECT_NO_THROW(analysis_.init(position_));
    EXPECT_EQ(analysis_.get_status(), ready_status);
    EXPECT_EQ(analysis_.get_action(), no_action);
}

TEST_F(AnalysisTest, InitCopiesAnotherPosition) {
    set(start_fen);
    ChessPosition other(search_tables());
    other.fen("7k/8/8/8/8/8/8/K2R4 b - - 3 9");
    int const id = position_.id();
    analysis_.init(other);
    EXPECT_EQ(position_.fen(), other.fen());
    EXPECT_EQ(position_.id(), id);
    EXPECT_TRUE(analysis_.evaluation().piece_square_tables().verify_score());
}

TEST_F(AnalysisTest, InitRebuildsTheSumsAndResetsTheTimes) {
    set(start_fen);
    analysis_.set_movetime(1);
    analysis_.set_infinite(true);
    position_.fen("7k/8/8/8/8/8/8/K2R4 w - - 0 1");
    analysis_.init(position_);
    EXPECT_TRUE(analysis_.evaluation().piece_square_tables().verify_score());
    EXPECT_EQ(analysis_.time_manager().soft_budget(), TimeManager().soft_budget());
    EXPECT_FALSE(analysis_.time_manager().time_to_move(1000000));
    analysis_.set_wtime(0);
    analysis_.set_btime(0);
    EXPECT_TRUE(analysis_.time_manager().time_to_move(1000000));
}

TEST_F(AnalysisTest, HashfullCountsEntriesOfThisSearchInTheSample) {
    set(start_fen);
    probe_.date(9);
    EXPECT_EQ(analysis_.get_hashfull(), 0);
    TTrecord written;
    written.set_date(9);
    for (std::uint64_t i = 1; i <= 1100; ++i) {
        written.set_key(i);
        probe_.table().write(written);
        written.set_key(i + probe_.table().buckets());
        probe_.table().write(written);
    }
    // The sample is the first 1000 buckets of four entries; bucket 0 stays empty.
    EXPECT_EQ(analysis_.get_hashfull(), 2 * 999 / 4);
    probe_.date(10);
    EXPECT_EQ(analysis_.get_hashfull(), 0);
}

TEST_F(AnalysisTest, RunningTimeGoesOnAfterTheSearch) {
    set(start_fen);
    analysis_.set_depth(1);
    analysis_.iterative_search();
    std::uint64_t const first = analysis_.get_running_time();
    sleep_for(20);
    EXPECT_GE(analysis_.get_running_time(), first + 19);
    analysis_.iterative_search();
    EXPECT_LT(analysis_.get_running_time(), 10000U);
}

TEST_F(AnalysisTest, EvaluationReports) {
    set(start_fen);
    std::string const report = analysis_.static_eval_report();
    EXPECT_EQ(report, analysis_.evaluation().report());
    EXPECT_NE(report.find("Total score: " + std::to_string(eval())), std::string::npos);
}

}  // namespace orvelin::test
