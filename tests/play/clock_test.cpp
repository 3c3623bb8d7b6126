#include "play/clock.h"

#include <algorithm>
#include <chrono>
#include <cstdint>
#include <gtest/gtest.h>
#include <limits>
#include <optional>

namespace orvelin::play::test {
namespace {

using namespace std::chrono_literals;

constexpr milliseconds usual_overhead{30};

GoLimits clock(milliseconds left, milliseconds increment = 0ms,
               std::optional<int> movestogo = std::nullopt) {
    GoLimits limits;
    limits.wtime = left;
    limits.winc = increment;
    limits.movestogo = movestogo;
    return limits;
}

GoLimits movetime(milliseconds time) {
    GoLimits limits;
    limits.movetime = time;
    return limits;
}

TimePlan plan_of(GoLimits const& limits, int game_ply = 0, milliseconds overhead = usual_overhead) {
    return plan_time(limits, true, game_ply, overhead);
}

TEST(ClockPlan, NothingGivenIsNotLimited) {
    EXPECT_FALSE(plan_of(GoLimits()).limited);
    GoLimits limits;
    limits.depth = 5;
    limits.nodes = 1000;
    limits.mate = 3;
    limits.winc = 1s;
    EXPECT_FALSE(plan_of(limits).limited);
}

TEST(ClockPlan, InfiniteAndPonderAreNotLimited) {
    GoLimits limits = clock(60s);
    limits.movetime = 1s;
    limits.infinite = true;
    EXPECT_FALSE(plan_of(limits).limited);
    limits.infinite = false;
    limits.ponder = true;
    EXPECT_FALSE(plan_of(limits).limited);
    limits.ponder = false;
    EXPECT_TRUE(plan_of(limits).limited);
}

TEST(ClockPlan, MovetimeIsKeptToTheMillisecond) {
    for (milliseconds const time : {100ms, 1000ms, 60000ms}) {
        TimePlan const plan = plan_of(movetime(time));
        EXPECT_TRUE(plan.limited);
        EXPECT_TRUE(plan.fixed);
        EXPECT_EQ(plan.maximum, time - usual_overhead);
    }
    EXPECT_EQ(plan_of(movetime(100ms), 0, 0ms).maximum, 100ms);
}

TEST(ClockPlan, AShortMovetimeIsHalfUsedWhateverTheOverhead) {
    EXPECT_EQ(plan_of(movetime(1ms)).maximum, 1ms);
    EXPECT_EQ(plan_of(movetime(2ms)).maximum, 1ms);
    EXPECT_EQ(plan_of(movetime(3ms)).maximum, 2ms);
    EXPECT_EQ(plan_of(movetime(40ms)).maximum, 20ms);
    EXPECT_EQ(plan_of(movetime(60ms)).maximum, 30ms);
    EXPECT_EQ(plan_of(movetime(1000ms), 0, 5s).maximum, 500ms);
    EXPECT_EQ(plan_of(movetime(0ms)).maximum, 1ms);
    EXPECT_EQ(plan_of(movetime(-7ms)).maximum, 1ms);
    EXPECT_EQ(plan_of(movetime(3ms), 0, 0ms).maximum, 3ms);
}

TEST(ClockPlan, OfClockAndMovetimeTheSmallerHolds) {
    TimePlan const by_clock = plan_of(clock(60s));
    GoLimits both = clock(60s);

    both.movetime = 500ms;
    TimePlan const short_move = plan_of(both);
    EXPECT_TRUE(short_move.fixed);
    EXPECT_EQ(short_move.maximum, 470ms);

    both.movetime = by_clock.optimum + 1s;
    TimePlan const middle = plan_of(both);
    EXPECT_FALSE(middle.fixed);
    EXPECT_EQ(middle.optimum, by_clock.optimum);
    EXPECT_EQ(middle.maximum, by_clock.optimum + 1s - usual_overhead);

    both.movetime = 50s;
    TimePlan const long_move = plan_of(both);
    EXPECT_FALSE(long_move.fixed);
    EXPECT_EQ(long_move.maximum, by_clock.maximum);
}

TEST(ClockPlan, DepthNodesAndMateLeaveTheClockInForce) {
    GoLimits limits = clock(60s, 1s);
    TimePlan const alone = plan_of(limits);
    limits.depth = 60;
    limits.nodes = 1000000000;
    limits.mate = 20;
    TimePlan const plan = plan_of(limits);
    EXPECT_TRUE(plan.limited);
    EXPECT_EQ(plan.optimum, alone.optimum);
    EXPECT_EQ(plan.maximum, alone.maximum);
}

TEST(ClockPlan, EachSidePlaysByItsOwnClock) {
    GoLimits limits = clock(60s, 0ms);
    limits.btime = 6s;
    limits.binc = 1s;
    TimePlan const white = plan_time(limits, true, 0, usual_overhead);
    TimePlan const black = plan_time(limits, false, 0, usual_overhead);
    EXPECT_EQ(white.optimum, plan_of(clock(60s)).optimum);
    EXPECT_EQ(black.optimum, plan_of(clock(6s, 1s)).optimum);
    EXPECT_EQ(black.maximum, plan_of(clock(6s, 1s)).maximum);
}

TEST(ClockPlan, TheOtherClockServesWhereTheOwnIsMissing) {
    TimePlan const plan = plan_time(clock(100ms), false, 0, usual_overhead);
    EXPECT_TRUE(plan.limited);
    EXPECT_LE(plan.maximum, 70ms);
}

TEST(ClockPlan, AClockOfNothingIsReadAsAMillisecond) {
    for (milliseconds const left : {1ms, 0ms, -1ms, -5000ms}) {
        for (milliseconds const overhead : {0ms, 30ms, 5000ms}) {
            TimePlan const plan = plan_of(clock(left), 0, overhead);
            EXPECT_TRUE(plan.limited);
            EXPECT_EQ(plan.optimum, 1ms);
            EXPECT_EQ(plan.maximum, 1ms);
        }
    }
}

TEST(ClockPlan, TheMostThatAMoveMayTakeLeavesTheOverhead) {
    for (std::int64_t left = 1; left < 10000000; left += 1 + left / 7) {
        for (milliseconds const increment : {0ms, 10ms, 1000ms, 60000ms}) {
            for (int const movestogo : {0, 1, 2, 5, 40, 1000}) {
                for (milliseconds const overhead : {0ms, 30ms, 100ms, 5000ms}) {
                    GoLimits limits = clock(milliseconds(left), increment);
                    if (movestogo > 0) {
                        limits.movestogo = movestogo;
                    }
                    TimePlan const plan = plan_of(limits, 40, overhead);
                    EXPECT_GE(plan.optimum, 1ms);
                    EXPECT_GE(plan.maximum, plan.optimum);
                    EXPECT_LE(plan.maximum, std::max(1ms, milliseconds(left) - overhead));
                }
            }
        }
    }
}

TEST(ClockPlan, OverheadIsReadWithinItsRange) {
    EXPECT_EQ(plan_of(clock(60s), 0, -5ms).maximum, plan_of(clock(60s), 0, 0ms).maximum);
    EXPECT_EQ(plan_of(movetime(60s), 0, 1h).maximum, 55s);
    EXPECT_LT(plan_of(clock(60s), 0, 100ms).optimum, plan_of(clock(60s), 0, 0ms).optimum);
}

TEST(ClockPlan, TheOverheadOfLaterMovesIsNotSpent) {
    // 40 moves lose 4 of the 5 s.
    TimePlan const plan = plan_of(clock(5s, 0ms, 40), 0, 100ms);
    EXPECT_LT(plan.maximum, 500ms);
    EXPECT_LT(plan.optimum * 40, 1s);
    // A game that can be paid for to its end.
    EXPECT_LT(plan_of(clock(30s), 0, 100ms).maximum, 2s);
}

TEST(ClockPlan, AClockTooShortForALongGameIsStillThoughtWith) {
    EXPECT_GT(plan_of(clock(3s), 0, usual_overhead).optimum, 20ms);
}

TEST(ClockPlan, WithMovesToGoAMoveTakesAFairPart) {
    for (int const moves : {2, 5, 10, 20, 39}) {
        TimePlan const plan = plan_of(clock(60s, 0ms, moves));
        milliseconds const fair = 60000ms / moves;
        EXPECT_LE(plan.optimum, fair);
        EXPECT_GT(plan.optimum, fair * 8 / 10) << moves;
        EXPECT_LT(plan.maximum, fair * 5);
        EXPECT_LT(plan.maximum, 45s);
    }
}

TEST(ClockPlan, TheLastMoveOfAControlMayUseNearlyAll) {
    TimePlan const plan = plan_of(clock(60s, 0ms, 1));
    EXPECT_GT(plan.maximum, 59s);
    EXPECT_LE(plan.maximum, 60s - usual_overhead - 50ms);
    EXPECT_LT(plan.optimum, 50s);
    EXPECT_LT(plan_of(clock(60s, 0ms, 2)).maximum, 45s);
}

TEST(ClockPlan, ManyMovesToGoAreLikeNone) {
    constexpr int most = std::numeric_limits<int>::max();
    EXPECT_EQ(plan_of(clock(60s, 0ms, most)).optimum, plan_of(clock(60s)).optimum);
    EXPECT_EQ(plan_of(clock(60s, 0ms, -3)).maximum, plan_of(clock(60s, 0ms, 1)).maximum);
}

TEST(ClockPlan, MostOfTheIncrementIsUsed) {
    milliseconds const without = plan_of(clock(60s)).optimum;
    milliseconds const with = plan_of(clock(60s, 2s)).optimum;
    EXPECT_GT(with - without, 1600ms);
    EXPECT_LT(with - without, 2100ms);
    // Short of time, a move does not count on more than the clock has.
    EXPECT_LT(plan_of(clock(1s, 60s)).maximum, 800ms);
    EXPECT_GT(plan_of(clock(1s, 60s)).maximum, 500ms);
}

TEST(ClockPlan, ALaterMoveTakesMoreOfTheClock) {
    milliseconds const first = plan_of(clock(60s), 0, 0ms).optimum;
    milliseconds const later = plan_of(clock(60s), 100, 0ms).optimum;
    EXPECT_GT(later, first * 5 / 4);
    EXPECT_LT(plan_of(clock(60s), 2000, 0ms).maximum, 20s);
    EXPECT_EQ(plan_of(clock(60s), -9, 0ms).optimum, first);
}

TEST(ClockPlan, AnyNumberGivesAPlan) {
    milliseconds const longest = milliseconds::max();
    TimePlan const plan = plan_of(clock(longest, longest, 1), 0, longest);
    EXPECT_TRUE(plan.limited);
    EXPECT_GE(plan.maximum, plan.optimum);
    EXPECT_LT(plan.maximum, 10000h);
    EXPECT_GE(plan_of(movetime(longest)).maximum, 1000h);
    EXPECT_LT(plan_of(movetime(longest)).maximum, 10000h);
    EXPECT_EQ(plan_of(clock(milliseconds::min(), milliseconds::min(), 1)).maximum, 1ms);
    EXPECT_TRUE(plan_time(clock(60s), true, std::numeric_limits<int>::max(), 0ms).limited);
}

}  // namespace
}  // namespace orvelin::play::test
