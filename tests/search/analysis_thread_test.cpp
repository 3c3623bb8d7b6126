#include <atomic>
#include <chrono>
#include <functional>
#include <string>
#include <thread>
#include <vector>

#include "support/analysis_fixture.h"
#include "support/positions.h"

namespace orvelin::test {

namespace {

class AnalysisThread : public AnalysisFixture {
 protected:
    ~AnalysisThread() override { join(); }

    void start_thread() {
        thread_ = std::thread([this] { analysis_(); });
    }

    /// Ends the thread as the engine does: a stop first, then the quit flag.
    void join() {
        if (!thread_.joinable()) {
            return;
        }
        analysis_.set_action(stop_action);
        analysis_.quit();
        thread_.join();
    }

    /// One tick of the thread body, run here: the quit flag ends it behind the first step.
    void run_one_tick() {
        probe_.quit();
        analysis_();
    }

    static void sleep_for(int milliseconds) {
        std::this_thread::sleep_for(std::chrono::milliseconds(milliseconds));
    }

    /// Waits, patiently enough for a loaded machine.
    static bool comes_true(std::function<bool()> const& condition) {
        for (int i = 0; i < 20000; ++i) {
            if (condition()) {
                return true;
            }
            sleep_for(1);
        }
        return false;
    }

    std::thread thread_;
};

/// Reads action and status without the lock while searches begin, and counts the moments in which
/// neither word told of the search.
class HandOverReader {
 public:
    explicit HandOverReader(Analysis const& analysis)
        : analysis_(analysis), thread_([this] { read(); }) {}
    ~HandOverReader() { stop(); }
    HandOverReader(HandOverReader const&) = delete;
    HandOverReader& operator=(HandOverReader const&) = delete;

    /// Odd while a search is asked for and taken up.
    std::atomic<int> phase{0};
    std::atomic<int> gaps{0};

    void stop() {
        done_.store(true);
        if (thread_.joinable()) {
            thread_.join();
        }
    }

 private:
    void read() {
        while (!done_.load()) {
            int const before = phase.load();
            bool const asked = analysis_.get_action() == think_action;
            bool const announced = analysis_.get_status() != ready_status;
            if (before % 2 == 1 && before == phase.load() && !asked && !announced) {
                ++gaps;
            }
        }
    }

    Analysis const& analysis_;
    std::atomic<bool> done_{false};
    std::thread thread_;
};

}  // namespace

TEST_F(AnalysisThread, StopWhileIdleGivesAFinishedStatusAndNoSearch) {
    set(start_fen);
    unsigned char const date = probe_.date();
    start_thread();
    analysis_.set_action(stop_action);
    EXPECT_TRUE(comes_true([&] { return analysis_.get_status() == finished_status; }));
    EXPECT_EQ(analysis_.get_action(), no_action);
    join();
    EXPECT_EQ(probe_.date(), date);
    EXPECT_EQ(node_count(), 0U);
}

TEST_F(AnalysisThread, StopWhileIdleIsTakenInOneTick) {
    set(start_fen);
    unsigned char const date = probe_.date();
    analysis_.set_action(stop_action);
    run_one_tick();
    EXPECT_EQ(analysis_.get_status(), finished_status);
    EXPECT_EQ(analysis_.get_action(), no_action);
    EXPECT_EQ(probe_.date(), date);
}

TEST_F(AnalysisThread, IdleTickChangesNothing) {
    set(start_fen);
    run_one_tick();
    EXPECT_EQ(analysis_.get_status(), ready_status);
    EXPECT_EQ(analysis_.get_action(), no_action);
}

TEST_F(AnalysisThread, QuitWhileIdleEndsTheThread) {
    set(start_fen);
    start_thread();
    sleep_for(12);
    auto const begin = std::chrono::steady_clock::now();
    analysis_.quit();
    thread_.join();
    // One sleep of 5 ms, with room for a loaded machine.
    EXPECT_LT(std::chrono::steady_clock::now() - begin, std::chrono::seconds(2));
    EXPECT_EQ(analysis_.get_status(), ready_status);
}

TEST_F(AnalysisThread, SearchThatEndsByItselfLeavesNoAction) {
    set(start_fen);
    analysis_.set_depth(2);
    analysis_.set_action(think_action);
    run_one_tick();
    EXPECT_EQ(analysis_.get_status(), finished_status);
    EXPECT_EQ(analysis_.get_action(), no_action);
    EXPECT_EQ(analysis_.get_iteration(), 2);
}

TEST_F(AnalysisThread, StopStaysUntilTheNextTickWhichReportsItAgain) {
    set(start_fen);
    analysis_.set_nodes(100);
    analysis_.set_action(think_action);
    run_one_tick();
    EXPECT_EQ(analysis_.get_status(), finished_status);
    EXPECT_EQ(analysis_.get_action(), stop_action);
    // The driver has reported the move; the next tick brings the status back.
    analysis_.set_status(ready_status);
    run_one_tick();
    EXPECT_EQ(analysis_.get_status(), finished_status);
    EXPECT_EQ(analysis_.get_action(), no_action);
    EXPECT_EQ(node_count(), 100U);
}

TEST_F(AnalysisThread, ThreadReportsAStopTwice) {
    set(start_fen);
    start_thread();
    analysis_.set_action(think_action);
    ASSERT_TRUE(comes_true([&] { return analysis_.get_node_count() > 1000; }));
    EXPECT_EQ(analysis_.get_status(), searching_status);
    EXPECT_EQ(analysis_.get_action(), no_action);
    analysis_.set_action(stop_action);
    EXPECT_TRUE(comes_true([&] { return analysis_.get_action() == no_action; }));
    EXPECT_TRUE(comes_true([&] { return analysis_.get_status() == finished_status; }));
}

TEST_F(AnalysisThread, QuitDuringASearchWaitsForItsEnd) {
    set(start_fen);
    start_thread();
    analysis_.set_action(think_action);
    ASSERT_TRUE(comes_true([&] { return analysis_.get_node_count() > 1000; }));
    analysis_.quit();
    std::uint64_t const nodes = analysis_.get_node_count();
    ASSERT_TRUE(comes_true([&] { return analysis_.get_node_count() > nodes + 1000; }));
    EXPECT_EQ(analysis_.get_status(), searching_status);
    analysis_.set_action(stop_action);
    thread_.join();
    EXPECT_EQ(analysis_.get_status(), finished_status);
    // The thread ended before another tick could take the stop.
    EXPECT_EQ(analysis_.get_action(), stop_action);
}

TEST_F(AnalysisThread, StopFromAnotherThreadLeavesPositionAndBestMove) {
    set(positions::kiwipete);
    ChessPosition const before = position_;
    start_thread();
    for (std::uint64_t round = 0; round < 5; ++round) {
        analysis_.clear_node_count();
        analysis_.set_action(think_action);
        ASSERT_TRUE(comes_true([&] { return analysis_.get_status() == searching_status; }));
        ASSERT_TRUE(comes_true([&] { return analysis_.get_node_count() >= 1500 * round; }));
        analysis_.set_action(stop_action);
        ASSERT_TRUE(comes_true([&] { return analysis_.get_action() == no_action; }));
        ASSERT_TRUE(comes_true([&] { return analysis_.get_status() == finished_status; }));
    }
    join();
    EXPECT_EQ(position_, before);
    EXPECT_EQ(position_.get_hash(), before.get_hash());
    EXPECT_EQ(analysis_.ply(), 0);
    EXPECT_EQ(move(analysis_.best_move().algebraic(true)), analysis_.best_move());
}

TEST_F(AnalysisThread, SearchIsAlwaysAskedForOrAnnounced) {
    set(start_fen);
    HandOverReader reader(analysis_);
    // Long enough for the two threads to run side by side on a loaded machine.
    auto const end = std::chrono::steady_clock::now() + std::chrono::seconds(2);
    while (reader.gaps.load() == 0 && std::chrono::steady_clock::now() < end) {
        analysis_.set_action(think_action);
        analysis_.set_status(ready_status);
        ++reader.phase;
        ASSERT_TRUE(probe_.take_think_action());
        ++reader.phase;
    }
    analysis_.set_status(ready_status);
    reader.stop();
    EXPECT_EQ(reader.gaps.load(), 0);
}

TEST_F(AnalysisThread, ReportsCanBeReadDuringASearch) {
    set(start_fen);
    analysis_.set_multipv(3);
    probe_.iteration(0);
    int version = analysis_.mpv_version();
    start_thread();
    analysis_.set_action(think_action);
    int changes = 0;
    EXPECT_TRUE(comes_true([&] {
        MultiPV const lines = analysis_.mpv();
        changes += analysis_.mpv_version() != version ? 1 : 0;
        version = analysis_.mpv_version();
        EXPECT_LE(lines.size(), 3);
        EXPECT_GE(analysis_.get_hashfull(), 0);
        EXPECT_GE(analysis_.get_seldepth(), 0);
        EXPECT_GE(analysis_.get_ebf(), 0.0F);
        EXPECT_LE(analysis_.get_iteration(), 101);
        return analysis_.get_iteration() > 3;
    }));
    EXPECT_GT(changes, 0);
    join();
}

}  // namespace orvelin::test
