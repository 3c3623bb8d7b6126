#include "play/searcher.h"

#include <algorithm>
#include <array>
#include <chrono>
#include <condition_variable>
#include <cstddef>
#include <cstdint>
#include <fcntl.h>
#include <gtest/gtest.h>
#include <mutex>
#include <sstream>
#include <string>
#include <thread>
#include <unistd.h>
#include <vector>

#include "play/position_reader.h"
#include "support/child_process.h"
#include "support/positions.h"
#include "support/test_config.h"

namespace orvelin::play::test {

namespace {

using clock = std::chrono::steady_clock;
using orvelin::test::short_tests;

/// A searcher whose output is collected.
class SearcherTest : public testing::Test {
 protected:
    SearcherTest() {
        if (pipe2(ends_.data(), O_CLOEXEC) != 0) {
            ADD_FAILURE();
        }
        output_.emplace(ends_[1]);
        searcher_.emplace(*output_);
        reading_ = std::thread([this] { collect(); });
    }
    ~SearcherTest() override {
        searcher_.reset();
        close(ends_[1]);
        reading_.join();
        close(ends_[0]);
    }

    Searcher& searcher() { return *searcher_; }

    void begin(GoLimits const& limits, Options const& options = {}) {
        SearchOrder order;
        order.limits = limits;
        order.options = options;
        order.start = clock::now();
        order.plan = plan_time(limits, searcher().position().white_to_move(), 0, milliseconds(0));
        searcher().begin(std::move(order));
    }

    static GoLimits to_depth(int depth) {
        GoLimits limits;
        limits.depth = depth;
        return limits;
    }

    static GoLimits endless() {
        GoLimits limits;
        limits.infinite = true;
        return limits;
    }

    bool answered_within(milliseconds time) {
        std::unique_lock lock(mutex_);
        return changed_.wait_for(lock, time, [this] { return answers_ > 0; });
    }

    /// Waits for the answer and gives all text up to it.
    std::string answer() {
        std::unique_lock lock(mutex_);
        bool const came =
            changed_.wait_for(lock, std::chrono::seconds(60), [this] { return answers_ > 0; });
        EXPECT_TRUE(came);
        answers_ = 0;
        return std::exchange(text_, "");
    }

    static std::string move_of(std::string const& text) {
        std::istringstream stream(text.substr(text.find("bestmove ") + 9));
        std::string move;
        stream >> move;
        return move;
    }

    bool legal(std::string const& move) {
        return find_legal_move(searcher().position(), searcher().tables(), move) != Move();
    }

 private:
    void collect() {
        orvelin::test::read_buffer_t buffer;
        while (std::size_t const count = orvelin::test::read_some(ends_[0], buffer)) {
            std::lock_guard const lock(mutex_);
            text_.append(buffer.data(), count);
            if (text_.find("bestmove ") != std::string::npos && text_.ends_with('\n')) {
                answers_ = 1;
                changed_.notify_all();
            }
        }
    }

    std::array<int, 2> ends_{-1, -1};
    std::optional<Output> output_;
    std::optional<Searcher> searcher_;
    std::mutex mutex_;
    std::condition_variable changed_;
    std::string text_;
    int answers_ = 0;
    std::thread reading_;
};

TEST_F(SearcherTest, AnswersAndIsFreeAgain) {
    begin(to_depth(4));
    std::string const text = answer();
    EXPECT_TRUE(legal(move_of(text)));
    EXPECT_FALSE(searcher().busy());
    EXPECT_NE(text.find("info depth 4 "), std::string::npos);
    EXPECT_EQ(text.find("info depth 5 "), std::string::npos);
    EXPECT_EQ(searcher().position().fen(), positions::start);
}

TEST_F(SearcherTest, ForgetsWhatItHasLearnt) {
    begin(to_depth(6));
    answer();
    std::uint64_t const first = searcher().analysis().get_node_count();
    begin(to_depth(6));
    answer();
    EXPECT_NE(searcher().analysis().get_node_count(), first);
    searcher().forget();
    begin(to_depth(6));
    answer();
    EXPECT_EQ(searcher().analysis().get_node_count(), first);
}

// An ending for which memory of the table is set aside, in which entries of before stay.
TEST_F(SearcherTest, ForgetsWhatLiesUnderTheTablesOfEndings) {
    searcher().set_hash(8);
    begin(to_depth(7));
    answer();
    std::uint64_t const first = searcher().analysis().get_node_count();
    for (bool const all : {true, false}) {
        searcher().position().fen("4k3/8/8/8/8/8/8/KQ5r w - - 0 1");
        begin(to_depth(1));
        answer();
        if (all) {
            searcher().forget();
        } else {
            searcher().clear_hash();
            searcher().position().newgame();
        }
        begin(to_depth(7));
        answer();
        EXPECT_EQ(searcher().analysis().get_node_count(), first);
    }
}

// At the root a search reads attack maps before it has made its own.
TEST_F(SearcherTest, ForgetsTheMapsOfTheLastEvaluation) {
    Options level;
    level.limit_strength = true;
    for (Options const& options : {Options(), level}) {
        std::uint64_t first = 0;
        for (int i = 0; i < 2; ++i) {
            searcher().forget();
            searcher().position().fen("6k1/5ppp/8/6B1/4n2P/8/5PP1/6K1 b - - 0 1");
            Move const capture =
                find_legal_move(searcher().position(), searcher().tables(), "e4g5");
            ASSERT_NE(capture, Move());
            searcher().position().make_move(capture);
            for (int search = 0; search < (options.limit_strength ? 2 : 1); ++search) {
                begin(to_depth(1), options);
                answer();
                std::uint64_t const nodes = searcher().analysis().get_node_count();
                first = first == 0 ? nodes : first;
                EXPECT_EQ(nodes, first);
            }
        }
    }
}

TEST_F(SearcherTest, HoldsAnEndlessAnswerBackUntilStop) {
    GoLimits limits = endless();
    limits.depth = 2;
    begin(limits);
    EXPECT_FALSE(answered_within(milliseconds(150)));
    EXPECT_TRUE(searcher().busy());
    searcher().stop();
    EXPECT_TRUE(legal(move_of(answer())));
}

TEST_F(SearcherTest, HoldsAPonderedAnswerBackUntilPonderhit) {
    GoLimits limits = to_depth(2);
    limits.ponder = true;
    begin(limits);
    EXPECT_FALSE(answered_within(milliseconds(150)));
    searcher().ponderhit({}, clock::now());
    EXPECT_TRUE(legal(move_of(answer())));
}

TEST_F(SearcherTest, StopEndsAtLeastOneIteration) {
    for (int i = 0; i < 20; ++i) {
        begin(endless());
        searcher().stop();
        EXPECT_NE(answer().find("info depth 1 "), std::string::npos);
    }
}

TEST_F(SearcherTest, StopAtOnceStillGivesAMove) {
    for (int i = 0; i < 20; ++i) {
        begin(endless());
        searcher().stop_at_once();
        std::string const text = answer();
        EXPECT_TRUE(legal(move_of(text)));
        EXPECT_NE(text.find(" score "), std::string::npos);
    }
}

TEST_F(SearcherTest, KeepsToTheSearchMovesWithoutAnyIteration) {
    for (char const* const wanted : {"h2h3", "g1f3"}) {
        GoLimits limits = endless();
        limits.searchmoves = {find_legal_move(searcher().position(), searcher().tables(), wanted)};
        limits.nodes = 1;
        begin(limits);
        searcher().stop_at_once();
        EXPECT_EQ(move_of(answer()), wanted);
    }
}

TEST_F(SearcherTest, ALevelKeepsItsBudgetAndTheLimitOfNodes) {
    Options options;
    options.limit_strength = true;
    options.elo = 1200;
    begin(endless(), options);
    EXPECT_FALSE(answered_within(milliseconds(300)));
    searcher().stop();
    answer();
    std::uint64_t const budget = searcher().analysis().get_node_count();
    EXPECT_LT(budget, 10000U);
    GoLimits limits;
    limits.nodes = 100000000;
    begin(limits, options);
    answer();
    EXPECT_EQ(searcher().analysis().get_node_count(), budget);
    limits.nodes = 600;
    begin(limits, options);
    answer();
    EXPECT_LE(searcher().analysis().get_node_count(), 600U);
}

TEST_F(SearcherTest, ProgressIsToldOnlyDuringASearch) {
    searcher().tell_progress();
    begin(endless());
    for (int i = 0; i < (short_tests ? 200 : 20); ++i) {
        searcher().tell_progress();
        std::this_thread::sleep_for(milliseconds(5));
    }
    searcher().stop();
    std::string const text = answer();
    EXPECT_NE(text.find(" currmove "), std::string::npos);
    EXPECT_TRUE(text.starts_with("info depth 1 ")) << text;
}

TEST_F(SearcherTest, NoProgressIsToldWhileTheAnswerOnlyWaits) {
    GoLimits limits = endless();
    limits.depth = 1;
    begin(limits);
    EXPECT_FALSE(answered_within(milliseconds(short_tests ? 1000 : 300)));
    for (int i = 0; i < 5; ++i) {
        searcher().tell_progress();
    }
    searcher().stop();
    EXPECT_EQ(answer().find(" currmove "), std::string::npos);
}

TEST_F(SearcherTest, AHashThatCannotBeHadLeavesTheOldOne) {
    EXPECT_TRUE(searcher().set_hash(4));
    EXPECT_FALSE(searcher().set_hash(1 << 30));
    begin(to_depth(4));
    EXPECT_TRUE(legal(move_of(answer())));
}

TEST_F(SearcherTest, EndsWithASearchThatRuns) {
    begin(endless());
    SUCCEED();
}

}  // namespace

}  // namespace orvelin::play::test
