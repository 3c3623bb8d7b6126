// How soon the program answers while it searches with many lines. Bounds are wide: the machine may
// be busy; the figures are printed.

#include <algorithm>
#include <chrono>
#include <cstddef>
#include <gtest/gtest.h>
#include <iostream>
#include <random>
#include <string>
#include <thread>
#include <vector>

#include "play/play_process.h"
#include "support/positions.h"

namespace orvelin::play::test {

namespace {

using orvelin::test::short_tests;
using clock = PlayProcess::clock;

constexpr int tries = short_tests ? 20 : 200;
constexpr double widest_median = short_tests ? 500.0 : 20.0;

/// Milliseconds, sorted and printed.
double median_of(std::string const& what, std::vector<double>& times) {
    std::sort(times.begin(), times.end());
    double const median = times[times.size() / 2];
    std::cout << what << ": median " << median << " ms, worst " << times.back() << " ms of "
              << times.size() << '\n';
    return median;
}

double milliseconds_between(clock::time_point begin, clock::time_point end) {
    return std::chrono::duration<double, std::milli>(end - begin).count();
}

TEST(ProcessPlayLatency, IsReadyIsAnsweredDuringASearchOfFiftyLines) {
    PlayProcess process;
    process.set_option("MultiPV", "50");
    process.send_all({"position fen " + std::string(positions::kiwipete), "go infinite"});
    ASSERT_TRUE(process.ready());
    std::vector<double> times;
    for (int i = 0; i < tries; ++i) {
        std::this_thread::sleep_for(milliseconds(5));
        clock::time_point const asked = clock::now();
        process.send("isready");
        auto const lines = process.read_until("readyok");
        ASSERT_FALSE(lines.empty());
        ASSERT_EQ(lines.back().text, "readyok");
        times.push_back(milliseconds_between(asked, lines.back().time));
    }
    EXPECT_LT(median_of("isready", times), widest_median);
    EXPECT_FALSE(best_move(process.ask("stop")).empty());
}

TEST(ProcessPlayLatency, StopIsAnsweredDuringASearchOfFiftyLines) {
    PlayProcess process;
    process.set_option("MultiPV", "50");
    process.send("position fen " + std::string(positions::kiwipete));
    std::mt19937 random(3);
    std::vector<double> times;
    for (int i = 0; i < tries; ++i) {
        process.send("go infinite");
        std::this_thread::sleep_for(milliseconds(10 + random() % 25));
        clock::time_point const asked = clock::now();
        process.send("stop");
        auto const lines = process.read_until("bestmove ");
        ASSERT_FALSE(lines.empty());
        ASSERT_TRUE(lines.back().text.starts_with("bestmove "));
        times.push_back(milliseconds_between(asked, lines.back().time));
    }
    EXPECT_LT(median_of("stop", times), widest_median);
}

TEST(ProcessPlayLatency, MovetimeIsKept) {
    PlayProcess process;
    process.set_option("Move Overhead", "0");
    process.send("position fen " + std::string(positions::kiwipete));
    ASSERT_TRUE(process.ready());
    for (int const movetime : {1, 5, 20, 100}) {
        std::vector<double> times;
        for (int i = 0; i < (short_tests ? 3 : 10); ++i) {
            clock::time_point const asked = clock::now();
            process.send("go movetime " + std::to_string(movetime));
            auto const lines = process.read_until("bestmove ");
            ASSERT_FALSE(lines.empty());
            times.push_back(milliseconds_between(asked, lines.back().time));
        }
        double const median = median_of("movetime " + std::to_string(movetime), times);
        EXPECT_LT(median, movetime + widest_median);
        EXPECT_GT(median, movetime * 0.9);
    }
}

TEST(ProcessPlayLatency, ALineOfProgressComesEachSecond) {
    PlayProcess process;
    process.send_all({"position fen " + std::string(positions::kiwipete), "go infinite"});
    auto const seen = process.read_for(milliseconds(2400));
    std::size_t reports = 0;
    for (auto const& line : seen) {
        if (line.text.find(" currmove ") != std::string::npos) {
            ++reports;
            EXPECT_NE(line.text.find(" currmovenumber "), std::string::npos);
            EXPECT_NE(line.text.find(" nps "), std::string::npos);
            EXPECT_NE(line.text.find(" hashfull "), std::string::npos);
        }
    }
    EXPECT_GE(reports, 1U);
    EXPECT_LE(reports, 2U);
    EXPECT_FALSE(best_move(process.ask("stop")).empty());
}

// The time of the report is that of the search, but the clock begins with ponderhit.
TEST(ProcessPlayLatency, ThinkingBeginsWithPonderhit) {
    PlayProcess process;
    process.send_all({"position startpos moves e2e4", "go ponder wtime 2000 btime 2000"});
    auto const before = process.read_for(milliseconds(600));
    for (auto const& line : before) {
        EXPECT_FALSE(line.text.starts_with("bestmove"));
    }
    clock::time_point const hit = clock::now();
    process.send("ponderhit");
    auto const lines = process.read_until("bestmove ");
    ASSERT_FALSE(lines.empty());
    ASSERT_TRUE(lines.back().text.starts_with("bestmove "));
    EXPECT_LT(milliseconds_between(hit, lines.back().time), 1500.0);
    for (auto const& line : lines) {
        std::size_t const time = line.text.find(" time ");
        if (time != std::string::npos) {
            EXPECT_GE(std::stoi(line.text.substr(time + 6)), 500) << line.text;
        }
    }
}

}  // namespace

}  // namespace orvelin::play::test
