#include "time/timer.h"

#include <chrono>
#include <cstdint>
#include <gtest/gtest.h>
#include <thread>

namespace orvelin {
namespace {

void wait_milliseconds(int count) {
    std::this_thread::sleep_for(std::chrono::milliseconds(count));
}

Duration const none = std::chrono::duration<double>(0.0);

TEST(Timer, StartsStoppedWithNothingMeasured) {
    Timer timer;
    EXPECT_EQ(timer.total_time(), none);
    EXPECT_EQ(timer.average_time(), none);
    wait_milliseconds(2);
    EXPECT_EQ(timer.total_time(), none);
}

TEST(Timer, NeverStartedRunsSinceTheEpoch) {
    // The start of a new timer is tick 0 of the system clock, and running_time() does not
    // look at whether the timer runs.
    Timer const timer;
    EXPECT_GT(timer.running_time().seconds(), 1600000000U);
}

TEST(Timer, TotalIsTheSumOfFinishedIntervals) {
    Timer timer;
    timer.start();
    wait_milliseconds(3);
    timer.stop();
    std::uint64_t const first = timer.total_time().microseconds();
    EXPECT_GE(first, 3000U);
    wait_milliseconds(3);
    EXPECT_EQ(timer.total_time().microseconds(), first);
    timer.start();
    wait_milliseconds(3);
    timer.stop();
    EXPECT_GE(timer.total_time().microseconds(), first + 3000U);
}

TEST(Timer, StopOnAStoppedTimerDoesNothing) {
    Timer timer;
    timer.start();
    wait_milliseconds(2);
    timer.stop();
    Duration const total = timer.total_time();
    timer.stop();
    EXPECT_EQ(timer.total_time(), total);
    EXPECT_EQ(timer.average_time(), total);
}

TEST(Timer, EachPollOfARunningTimerCountsAsAnInterval) {
    Timer timer;
    timer.start();
    wait_milliseconds(4);
    timer.total_time();
    timer.total_time();
    timer.total_time();
    timer.stop();
    std::uint64_t const total = timer.total_time().nanoseconds();
    std::uint64_t const average = timer.average_time().nanoseconds();
    EXPECT_GE(total, 4000000U);
    EXPECT_NEAR(static_cast<double>(average) * 4.0, static_cast<double>(total), 8.0);
}

TEST(Timer, PollLeavesTheTimerRunning) {
    Timer timer;
    timer.start();
    std::uint64_t const first = timer.total_time().nanoseconds();
    wait_milliseconds(2);
    EXPECT_GE(timer.total_time().nanoseconds(), first + 2000000U);
}

TEST(Timer, ResetStopsAndForgets) {
    Timer timer;
    timer.start();
    wait_milliseconds(2);
    timer.total_time();
    timer.reset();
    EXPECT_EQ(timer.total_time(), none);
    EXPECT_EQ(timer.average_time(), none);
    wait_milliseconds(2);
    EXPECT_EQ(timer.total_time(), none);
}

TEST(Timer, TheIntervalAfterAResetIsTheOnlyOne) {
    Timer timer;
    timer.start();
    timer.stop();
    timer.reset();
    timer.start();
    wait_milliseconds(2);
    timer.stop();
    EXPECT_NE(timer.total_time(), none);
    EXPECT_EQ(timer.average_time(), timer.total_time());
}

TEST(Timer, PollsCountNoTimeTwice) {
    Timer timer;
    auto const before = std::chrono::system_clock::now();
    timer.start();
    for (int poll = 0; poll < 5; ++poll) {
        wait_milliseconds(3);
        timer.total_time();
    }
    timer.stop();
    std::chrono::duration<double, std::nano> const outside =
        std::chrono::system_clock::now() - before;
    EXPECT_LT(static_cast<double>(timer.total_time().nanoseconds()), 1.5 * outside.count());
}

TEST(Timer, RunningTimeCountsFromTheLastStartAlsoWhenStopped) {
    Timer timer;
    timer.start();
    timer.stop();
    wait_milliseconds(3);
    EXPECT_GE(timer.running_time().milliseconds(), 3U);
    EXPECT_LT(timer.running_time().seconds(), 60U);
    timer.reset();
    EXPECT_LT(timer.running_time().seconds(), 60U);
}

TEST(Timer, CopiesAreIndependent) {
    Timer timer;
    timer.start();
    wait_milliseconds(2);
    timer.stop();
    Timer copy(timer);
    EXPECT_EQ(copy.total_time(), timer.total_time());
    timer.reset();
    EXPECT_NE(copy.total_time(), none);
    timer = copy;
    EXPECT_EQ(timer.total_time(), copy.total_time());
    EXPECT_EQ(timer.average_time(), copy.average_time());
}

}  // namespace
}  // namespace orvelin
