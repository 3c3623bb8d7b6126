#include "time/time_manager.h"

#include <chrono>
#include <csignal>
#include <cstdint>
#include <gtest/gtest.h>
#include <thread>

namespace orvelin {
namespace {

/// 12 days, more than any search of these tests may take.
constexpr std::uint64_t long_time = 1000000000;

volatile std::sig_atomic_t caught_signal = 0;

void catch_signal(int number) {
    caught_signal = number;
}

/// Sets what `go wtime ... btime ... movestogo ...` sets, White to move.
void set_clock(TimeManager& manager, std::uint64_t milliseconds, int movestogo) {
    manager.set_white_to_move(true);
    manager.set_wtime(milliseconds);
    manager.set_btime(milliseconds);
    manager.set_movestogo(movestogo);
}

TEST(TimeManager, NothingGivenNeverStops) {
    TimeManager manager;
    EXPECT_FALSE(manager.time_to_move());
    EXPECT_FALSE(manager.time_to_move(long_time));
    EXPECT_EQ(manager.percentage(20000000), 0);
}

TEST(TimeManager, WorkedCaseOfSixtySeconds) {
    TimeManager manager;
    set_clock(manager, 60000, 40);
    EXPECT_EQ(manager.hard_limit(), 3570U);
    EXPECT_EQ(manager.soft_budget(), 2142U);
    EXPECT_FALSE(manager.time_to_move(3570));
    EXPECT_TRUE(manager.time_to_move(3571));
    EXPECT_EQ(manager.percentage(1306), 60);
    EXPECT_EQ(manager.percentage(1307), 61);
}

TEST(TimeManager, WorkedCaseOfOneMoveToGo) {
    TimeManager manager;
    set_clock(manager, 60000, 1);
    EXPECT_EQ(manager.hard_limit(), 30500U);
    EXPECT_EQ(manager.soft_budget(), 10500U);
}

TEST(TimeManager, IncrementRaisesBothBudgets) {
    TimeManager manager;
    set_clock(manager, 60000, 40);
    manager.set_winc(1050);
    // q = (60000 + 42000) / 42 = 2428
    EXPECT_EQ(manager.hard_limit(), 2U * (2428 - 607 + 1214));
    EXPECT_EQ(manager.soft_budget(), 2428U + 2428 - 1214);
}

TEST(TimeManager, SideToMoveSaysWhichClockCounts) {
    TimeManager manager;
    set_clock(manager, 60000, 40);
    manager.set_btime(42);
    manager.set_binc(42);
    manager.set_white_to_move(false);
    // q = (42 + 1680) / 42 = 41
    EXPECT_EQ(manager.soft_budget(), 41U + 41 - 20);
    EXPECT_EQ(manager.remaining_time(0), 42);
    manager.set_white_to_move(true);
    EXPECT_EQ(manager.soft_budget(), 2142U);
    EXPECT_EQ(manager.remaining_time(0), 60000);
}

TEST(TimeManager, NegativeTimeActsAsAnEnormousClock) {
    TimeManager manager;
    set_clock(manager, static_cast<std::uint64_t>(-100), 40);
    EXPECT_FALSE(manager.time_to_move(long_time));
    EXPECT_EQ(manager.percentage(20000000), 0);
}

TEST(TimeManager, NegativeIncrementWrapsAround) {
    TimeManager manager;
    set_clock(manager, 60000, 40);
    manager.set_winc(static_cast<std::uint64_t>(-1));
    // 60000 - 40 in wrapping arithmetic: q = 59960 / 42 = 1427
    EXPECT_EQ(manager.soft_budget(), 1427U + 1427 - 713);
}

TEST(TimeManager, MovestogoBelowOneBecomesThirty) {
    for (int const moves : {0, -1, -1000000}) {
        TimeManager manager;
        set_clock(manager, 32000, moves);
        EXPECT_EQ(manager.hard_limit(), 2U * (1000 - 250 + 500 * 30 / 40));
        EXPECT_EQ(manager.soft_budget(), 1000U + 750 - 500);
    }
}

TEST(TimeManager, MovestogoStartsAt999) {
    TimeManager manager;
    manager.set_white_to_move(true);
    manager.set_wtime(1001000);
    // q = 1001000 / 1001 = 1000
    EXPECT_EQ(manager.soft_budget(), 1000U + 999000 / 40 - 500);
    EXPECT_EQ(manager.hard_limit(), 2U * (1000 - 250 + 500 * 999 / 40));
}

TEST(TimeManager, MovetimeZeroBecomesOne) {
    TimeManager manager;
    manager.set_movetime(0);
    EXPECT_EQ(manager.remaining_time(0), 1);
    EXPECT_FALSE(manager.time_to_move(long_time));
    EXPECT_EQ(manager.percentage(0), 0);
    EXPECT_EQ(manager.percentage(1), 100);
}

TEST(TimeManager, MovetimeBelowTheLagIsNotHardLimited) {
    TimeManager manager;
    manager.set_movetime(199);
    EXPECT_FALSE(manager.time_to_move(long_time));
    EXPECT_EQ(manager.percentage(199), 100);
}

TEST(TimeManager, MovetimeOfTheLagStopsAtOnce) {
    TimeManager manager;
    manager.set_movetime(200);
    EXPECT_TRUE(manager.time_to_move(0));
    EXPECT_TRUE(manager.time_to_move());
}

TEST(TimeManager, MovetimeOfOneSecond) {
    TimeManager manager;
    manager.set_movetime(1000);
    EXPECT_FALSE(manager.time_to_move(799));
    EXPECT_TRUE(manager.time_to_move(800));
    EXPECT_EQ(manager.percentage(609), 60);
    EXPECT_EQ(manager.percentage(610), 61);
}

TEST(TimeManager, MovetimeKeepsTheClockRuleOut) {
    TimeManager manager;
    set_clock(manager, 42, 40);
    manager.set_movetime(10000);
    EXPECT_FALSE(manager.time_to_move(9799));
    EXPECT_TRUE(manager.time_to_move(9800));
    EXPECT_EQ(manager.remaining_time(1000), 9000);
}

TEST(TimeManager, NegativeMovetimeNeitherStopsHardNorIsTheSoftBudget) {
    TimeManager manager;
    set_clock(manager, 60000, 40);
    manager.set_movetime(static_cast<std::uint64_t>(-5));
    EXPECT_FALSE(manager.time_to_move(long_time));
    EXPECT_EQ(manager.soft_budget(), 2142U);
    EXPECT_EQ(manager.remaining_time(0), -5);
}

TEST(TimeManager, InfiniteAndPonderingReportNoTimePressure) {
    TimeManager manager;
    set_clock(manager, 60000, 40);
    manager.set_infinite(true);
    EXPECT_FALSE(manager.time_to_move(long_time));
    EXPECT_EQ(manager.percentage(10000), 0);
    manager.set_infinite(false);
    manager.set_pondering(true);
    EXPECT_FALSE(manager.time_to_move(long_time));
    EXPECT_EQ(manager.percentage(10000), 0);
    EXPECT_EQ(manager.remaining_time(1000), 59000);
    manager.set_pondering(false);
    EXPECT_TRUE(manager.time_to_move(long_time));
    EXPECT_EQ(manager.percentage(2142), 100);
}

TEST(TimeManager, PercentageOverflowsItsThirtyTwoBitProduct) {
    TimeManager manager;
    manager.set_movetime(1000);
    EXPECT_EQ(manager.percentage(21474836), 2147483);
    // 2147483700 reads as -2147483596, which is 18446744071562068020 in 64 bits; a
    // thousandth of that has the low 32 bits 1269162836.
    EXPECT_EQ(manager.percentage(21474837), 1269162836);
}

TEST(TimeManager, FortyOneMillisecondsLeaveNoBudget) {
    TimeManager manager;
    set_clock(manager, 41, 40);
    EXPECT_EQ(manager.hard_limit(), 0U);
    EXPECT_EQ(manager.soft_budget(), 0U);
    EXPECT_FALSE(manager.time_to_move(0));
    EXPECT_TRUE(manager.time_to_move(1));
}

TEST(TimeManager, FortyTwoMillisecondsLeaveTwo) {
    TimeManager manager;
    set_clock(manager, 42, 40);
    EXPECT_EQ(manager.hard_limit(), 2U);
    EXPECT_EQ(manager.soft_budget(), 2U);
    EXPECT_EQ(manager.percentage(1), 50);
}

TEST(TimeManager, NoBudgetRaisesAnArithmeticFault) {
    TimeManager manager;
    set_clock(manager, 41, 40);
    caught_signal = 0;
    auto* const former = std::signal(SIGFPE, catch_signal);
    EXPECT_EQ(manager.percentage(5), 0);
    std::signal(SIGFPE, former);
    EXPECT_EQ(caught_signal, SIGFPE);
}

TEST(TimeManagerDeathTest, NoBudgetEndsTheProcess) {
    TimeManager manager;
    set_clock(manager, 41, 40);
    EXPECT_EXIT(
        {
            std::signal(SIGFPE, SIG_DFL);
            manager.percentage();
        },
        testing::KilledBySignal(SIGFPE), "");
}

TEST(TimeManager, NoFaultWhileTimeIsOutOfPlay) {
    TimeManager manager;
    set_clock(manager, 41, 40);
    manager.set_pondering(true);
    EXPECT_EQ(manager.percentage(5), 0);
}

TEST(TimeManager, RemainingTimeWithoutLimitIsTheTimeUsedNegative) {
    TimeManager manager;
    EXPECT_EQ(manager.remaining_time(0), 0);
    EXPECT_EQ(manager.remaining_time(2500), -2500);
}

TEST(TimeManager, RemainingTimeLooksAtTheLowThirtyTwoBits) {
    TimeManager manager;
    set_clock(manager, (std::uint64_t{7} << 32) + 5000, 40);
    EXPECT_EQ(manager.remaining_time((std::uint64_t{3} << 32) + 1000), 4000);
    manager.set_movetime((std::uint64_t{9} << 32) + 300);
    EXPECT_EQ(manager.remaining_time(500), -200);
}

TEST(TimeManager, ResetRestoresTheStartValues) {
    TimeManager manager;
    set_clock(manager, 42, 1);
    manager.set_winc(5);
    manager.set_binc(5);
    manager.set_movetime(7);
    manager.set_mate(3);
    manager.set_infinite(true);
    manager.set_pondering(true);
    manager.start();
    manager.reset();

    TimeManager const fresh;
    for (bool const white : {true, false}) {
        manager.set_white_to_move(white);
        EXPECT_EQ(manager.hard_limit(), fresh.hard_limit());
        EXPECT_EQ(manager.soft_budget(), fresh.soft_budget());
    }
    EXPECT_FALSE(manager.time_to_move(300));
    EXPECT_EQ(manager.remaining_time(300), -300);
    // The stopped timer stands at 0, and the flags are off again.
    std::this_thread::sleep_for(std::chrono::milliseconds(2));
    EXPECT_EQ(manager.remaining_time(), 0);
    set_clock(manager, 42, 40);
    EXPECT_TRUE(manager.time_to_move(3));
    EXPECT_EQ(manager.percentage(2), 100);
}

TEST(TimeManager, ResetKeepsLagAndSideToMove) {
    TimeManager manager;
    manager.set_lag(50);
    manager.set_white_to_move(true);
    manager.reset();
    manager.set_movetime(150);
    EXPECT_FALSE(manager.time_to_move(99));
    EXPECT_TRUE(manager.time_to_move(100));
    manager.reset();
    manager.set_wtime(1234);
    EXPECT_EQ(manager.remaining_time(0), 1234);
}

TEST(TimeManager, NegativeLagWrapsLikeAnyNumber) {
    TimeManager manager;
    manager.set_lag(-100);
    manager.set_movetime(100);
    EXPECT_FALSE(manager.time_to_move(199));
    EXPECT_TRUE(manager.time_to_move(200));
}

TEST(TimeManager, StartRunsTheClockFromZero) {
    TimeManager manager;
    set_clock(manager, 600000, 40);
    manager.start();
    std::this_thread::sleep_for(std::chrono::milliseconds(100));
    int const left = manager.remaining_time();
    EXPECT_LE(left, 599900);
    EXPECT_GT(left, 0);
    EXPECT_FALSE(manager.time_to_move());
    manager.start();
    EXPECT_GT(manager.remaining_time(), left);
}

TEST(TimeManager, QueriesFoldTheRunningClock) {
    TimeManager manager;
    set_clock(manager, 42, 40);
    manager.start();
    std::this_thread::sleep_for(std::chrono::milliseconds(4));
    EXPECT_TRUE(manager.time_to_move());
    EXPECT_GE(manager.percentage(), 200);
}

TEST(TimeManager, LimitsMayBeWrittenWhileTheSearchAsks) {
    TimeManager manager;
    manager.set_pondering(true);
    set_clock(manager, 60000, 40);
    manager.start();
    std::thread writer([&manager] {
        for (int i = 0; i < 1000; ++i) {
            manager.reset();
            manager.set_pondering(i % 2 == 0);
            manager.set_movestogo(40);
        }
    });
    int stops = 0;
    for (int i = 0; i < 1000; ++i) {
        stops += manager.time_to_move() ? 1 : 0;
    }
    writer.join();
    EXPECT_EQ(stops, 0);
}

}  // namespace
}  // namespace orvelin
