#include <chrono>
#include <cmath>
#include <cstdint>
#include <functional>
#include <gtest/gtest.h>
#include <iostream>
#include <mutex>
#include <sstream>
#include <streambuf>
#include <string>
#include <thread>
#include <vector>

#include "search/action.h"
#include "support/analysis_probe.h"
#include "support/engine_fixture.h"
#include "support/positions.h"
#include "support/text_pattern.h"

namespace orvelin::test {
namespace {

constexpr char const* last_fen = positions::last_of_bench;

class EngineBenchTest : public EngineFixture {
 protected:
    int hash_megabytes() const {
        return static_cast<int>(engine->tables().transposition_table.get_size());
    }

    /// The report of a `bench` whose searches are cut short by a node limit: the reset of the
    /// limits does not touch it.
    std::string short_bench(std::uint64_t nodes) {
        engine->analysis().set_max_nodes(nodes);
        return bench();
    }

    std::string bench() {
        std::stringbuf output;
        run_bench(output);
        return output.str();
    }

    void run_bench(std::streambuf& output) {
        std::streambuf* const old_buffer = std::cout.rdbuf(&output);
        std::streamsize const old_precision = std::cout.precision();
        command("bench");
        std::cout.precision(old_precision);
        std::cout.rdbuf(old_buffer);
    }
};

TEST_F(EngineBenchTest, TheReportHasItsFixedForm) {
    std::string const result =
        "  depth=12  nps=\\d+  nodes=2000  time=[0-9.e-]+  ebf=[0-9.]+  eval=-?\\d+"
        "  bestmove [a-h][1-8][a-h][1-8]\n";
    std::string const form(
        "position: rnbqkbnr/pppppppp/8/8/8/8/PPPPPPPP/RNBQKBNR w KQkq - 0 1\t" + result +
        "position: rnbqkbnr/pppppppp/8/8/8/8/PPPPPPPP/RNBQKBNR w - - 0 1\t" + result +
        "position: r2q2k1/pp1rbppp/4pn2/2P5/1P3B2/6P1/P3QPBP/1R3RK1 w - - 0 1\t" + result +
        "-------------------------------------\n"
        "nodes: \t6000\n"
        "time: \t\\d+\n"
        "nps:  \t-?\\d+\n"
        "-------------------------------------\n");
    std::string const text = short_bench(2000);
    EXPECT_TRUE(matches(text, form)) << text;
}

TEST_F(EngineBenchTest, ItWritesPastTheQueueAndLeavesTheStateAlone) {
    command("position startpos moves e2e4");
    short_bench(500);
    EXPECT_TRUE(replies().empty());
    EXPECT_EQ(engine->position_line(), "position startpos moves e2e4");
    EXPECT_EQ(engine->engine_state(), 0);
    EXPECT_NE(engine->analysis().get_status(), searching_status);
    EXPECT_EQ(fen(), last_fen);
}

TEST_F(EngineBenchTest, ItRestoresTheTableTo128Megabytes) {
    for (int const megabytes : {16, 256}) {
        engine->analysis().set_hash_size(megabytes);
        ASSERT_EQ(hash_megabytes(), megabytes);
        short_bench(100);
        EXPECT_EQ(hash_megabytes(), 128);
    }
}

TEST_F(EngineBenchTest, ItsClocksLeaveTheTimeLimitsOutOfReach) {
    short_bench(100);
    // 6000000 / 3 = 2000000: 2 * (2000000 - 500000 + 25000).
    EXPECT_EQ(engine->analysis().time_manager().hard_limit(), 3050000U);
    EXPECT_GT(engine->analysis().time_manager().remaining_time(0), 5000000);
}

/// What the benchmark writes, and the precision at which it wrote each character.
class PrecisionRecorder : public std::streambuf {
 public:
    /// The precision at which the number behind each place of the name was written.
    std::vector<std::streamsize> precisions_of(std::string const& name) const {
        std::vector<std::streamsize> found;
        for (std::size_t at = text_.find(name); at != std::string::npos;
             at = text_.find(name, at + 1)) {
            found.push_back(precisions_[at + name.size()]);
        }
        return found;
    }

 protected:
    int_type overflow(int_type character) override {
        text_ += traits_type::to_char_type(character);
        precisions_.push_back(std::cout.precision());
        return character;
    }

 private:
    std::string text_;
    std::vector<std::streamsize> precisions_;
};

TEST_F(EngineBenchTest, TimeHasFourDigitsAndTheBranchingFactorTwo) {
    PrecisionRecorder output;
    engine->analysis().set_max_nodes(100);
    run_bench(output);
    EXPECT_EQ(output.precisions_of("  time="), std::vector<std::streamsize>(3, 4));
    EXPECT_EQ(output.precisions_of("  ebf="), std::vector<std::streamsize>(3, 2));
}

TEST_F(EngineBenchTest, ItLiftsTheLimitsOfAnEarlierGo) {
    Analysis& analysis = engine->analysis();
    analysis.set_searchmoves({Move()});
    analysis.set_movetime(1234);
    short_bench(100);
    AnalysisProbe const limits(analysis);
    EXPECT_TRUE(limits.searchmoves().empty());
    EXPECT_EQ(limits.depth_limit(), 12);
    EXPECT_GT(analysis.time_manager().remaining_time(0), 5000000);
}

TEST_F(EngineBenchTest, TheLastRateIsRounded) {
    for (int round = 0; round < 4; ++round) {
        std::string const text = short_bench(10000);
        std::size_t const time = text.find("time: \t");
        std::size_t const rate = text.find("nps:  \t");
        ASSERT_NE(rate, std::string::npos);
        double const milliseconds = std::stod(text.substr(time + 7));
        ASSERT_GT(milliseconds, 0.0);
        EXPECT_EQ(std::stol(text.substr(rate + 7)), std::lround(30000 * 1000.0 / milliseconds));
    }
}

/// Ends the waits of weakened searches by stops, which it sends again and again because the idle
/// analysis thread takes them away. It is itself the output of the benchmark: the end of a result
/// line ends the stops for that search, before the next one is set up.
class WaitEnder : public std::streambuf {
 public:
    explicit WaitEnder(Analysis& analysis) : analysis_(analysis) {}

    /// Body of a thread of its own; ends after the waits of three searches.
    void operator()() {
        for (waits_ended = 0; waits_ended < 3; ++waits_ended) {
            while (!begun() || analysis_.get_iteration() != 3) {
                sleep();
            }
            std::this_thread::sleep_for(std::chrono::milliseconds(200));
            EXPECT_EQ(analysis_.get_iteration(), 3);
            while (stop_once()) {
                sleep();
            }
        }
    }

    std::string const& text() const { return text_; }

    int waits_ended = 0;

 protected:
    int_type overflow(int_type character) override {
        std::lock_guard<std::mutex> const guard(mutex_);
        text_ += traits_type::to_char_type(character);
        if (character == '\n') {
            ++lines_;
        } else if (character == '\t') {
            ++searches_;
            // The search begins behind this, on this thread. What the one before has left would
            // be taken for its own.
            AnalysisProbe(analysis_).iteration(0);
        }
        return character;
    }

 private:
    static void sleep() { std::this_thread::sleep_for(std::chrono::microseconds(100)); }

    /// True once the search whose turn it is begins.
    bool begun() {
        std::lock_guard<std::mutex> const guard(mutex_);
        return searches_ > waits_ended;
    }

    /// False once the search whose turn it is has been reported.
    bool stop_once() {
        std::lock_guard<std::mutex> const guard(mutex_);
        if (lines_ > waits_ended) {
            return false;
        }
        analysis_.set_action(stop_action);
        return true;
    }

    Analysis& analysis_;
    std::mutex mutex_;
    std::string text_;
    int lines_ = 0;
    int searches_ = 0;
};

TEST_F(EngineBenchTest, WeakenedItEndsItsIterationsEarlierAndStillPrintsDepthTwelve) {
    engine->analysis().set_uci_limitstrength(true);
    engine->analysis().set_uci_elo(1500);
    WaitEnder output(engine->analysis());
    std::thread wait_ender(std::ref(output));
    run_bench(output);
    wait_ender.join();
    EXPECT_EQ(output.waits_ended, 3);
    std::string const& text = output.text();
    std::size_t found = 0;
    for (std::size_t at = text.find("  depth=12  "); at != std::string::npos;
         at = text.find("  depth=12  ", at + 1)) {
        ++found;
    }
    EXPECT_EQ(found, 3U);
}

}  // namespace
}  // namespace orvelin::test
