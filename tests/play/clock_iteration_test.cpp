#include <chrono>
#include <gtest/gtest.h>

#include "play/clock.h"

namespace orvelin::play::test {
namespace {

using namespace std::chrono_literals;

/// A search that is settled enough to take the usual time.
SearchProgress usual_progress(milliseconds elapsed, milliseconds last_iteration) {
    SearchProgress progress;
    progress.elapsed = elapsed;
    progress.last_iteration = last_iteration;
    progress.depth = 10;
    progress.stable_iterations = 4;
    progress.moves = 30;
    return progress;
}

constexpr TimePlan second_plan{true, false, 1000ms, 4500ms};

/// The first time, in steps of 10 ms, at which no further iteration is begun after one that took
/// half of the time.
milliseconds end_of(SearchProgress progress) {
    for (progress.elapsed = 10ms; progress.elapsed < 10s; progress.elapsed += 10ms) {
        progress.last_iteration = progress.elapsed / 2;
        if (!begin_next_iteration(second_plan, progress)) {
            break;
        }
    }
    return progress.elapsed;
}

TEST(ClockIteration, WithoutALimitThereIsAlwaysANext) {
    SearchProgress progress = usual_progress(1000h, 500h);
    progress.moves = 1;
    progress.mate_found = true;
    EXPECT_TRUE(begin_next_iteration(TimePlan(), progress));
}

TEST(ClockIteration, AFixedTimeIsUsedToItsEnd) {
    TimePlan const fixed{true, true, 1000ms, 1000ms};
    SearchProgress progress = usual_progress(999ms, 900ms);
    EXPECT_TRUE(begin_next_iteration(fixed, progress));
    progress.moves = 1;
    progress.mate_found = true;
    EXPECT_TRUE(begin_next_iteration(fixed, progress));
    progress.elapsed = 1000ms;
    EXPECT_FALSE(begin_next_iteration(fixed, progress));
}

TEST(ClockIteration, AUsualMoveEndsAroundItsTime) {
    EXPECT_GE(end_of(usual_progress(0ms, 0ms)), 500ms);
    EXPECT_LE(end_of(usual_progress(0ms, 0ms)), 1000ms);
}

TEST(ClockIteration, WhatCannotEndInTimeIsNotBegun) {
    TimePlan const patient{true, false, 2000ms, 2400ms};
    EXPECT_TRUE(begin_next_iteration(patient, usual_progress(1000ms, 690ms)));
    EXPECT_FALSE(begin_next_iteration(patient, usual_progress(1000ms, 710ms)));
    // However much is still to be found out.
    SearchProgress restless = usual_progress(1000ms, 710ms);
    restless.stable_iterations = 1;
    restless.score_drop = 100;
    EXPECT_FALSE(begin_next_iteration(patient, restless));
}

TEST(ClockIteration, AtTheMaximumNothingIsBegun) {
    EXPECT_FALSE(begin_next_iteration(second_plan, usual_progress(4500ms, 0ms)));
    EXPECT_FALSE(begin_next_iteration(second_plan, usual_progress(1h, 1ms)));
}

TEST(ClockIteration, AShortIterationIsFollowedByAnother) {
    EXPECT_TRUE(begin_next_iteration(second_plan, usual_progress(900ms, 20ms)));
    EXPECT_FALSE(begin_next_iteration(second_plan, usual_progress(1010ms, 20ms)));
    TimePlan const least{true, false, 1ms, 1ms};
    EXPECT_TRUE(begin_next_iteration(least, usual_progress(0ms, 0ms)));
    EXPECT_FALSE(begin_next_iteration(least, usual_progress(1ms, 1ms)));
}

TEST(ClockIteration, AChangingBestMoveGetsMoreTime) {
    SearchProgress changing = usual_progress(0ms, 0ms);
    changing.stable_iterations = 1;
    EXPECT_GT(end_of(changing), end_of(usual_progress(0ms, 0ms)) * 3 / 2);
}

TEST(ClockIteration, ASettledMoveGetsLess) {
    SearchProgress settled = usual_progress(0ms, 0ms);
    settled.stable_iterations = 12;
    EXPECT_LT(end_of(settled), end_of(usual_progress(0ms, 0ms)) * 4 / 5);
    SearchProgress progress = usual_progress(0ms, 0ms);
    for (int stable = 0; stable < 60; ++stable) {
        progress.stable_iterations = stable;
        milliseconds const before = end_of(progress);
        progress.stable_iterations = stable + 1;
        EXPECT_LE(end_of(progress), before) << stable;
    }
}

TEST(ClockIteration, AFallingScoreGetsMoreTime) {
    SearchProgress falling = usual_progress(0ms, 0ms);
    falling.score_drop = 40;
    EXPECT_GT(end_of(falling), end_of(usual_progress(0ms, 0ms)) * 5 / 4);
    SearchProgress collapsing = falling;
    collapsing.score_drop = 10000;
    EXPECT_GT(end_of(collapsing), end_of(falling));
    collapsing.stable_iterations = 0;
    EXPECT_LE(end_of(collapsing), second_plan.maximum);
    SearchProgress rising = falling;
    rising.score_drop = -10000;
    EXPECT_EQ(end_of(rising), end_of(usual_progress(0ms, 0ms)));
}

TEST(ClockIteration, AnOnlyMoveIsAnsweredAtOnce) {
    SearchProgress only = usual_progress(0ms, 0ms);
    only.moves = 1;
    only.depth = 1;
    only.stable_iterations = 1;
    EXPECT_FALSE(begin_next_iteration(second_plan, only));
    only.moves = 2;
    EXPECT_TRUE(begin_next_iteration(second_plan, only));
}

TEST(ClockIteration, AFoundMateEndsTheSearchSoon) {
    SearchProgress mate = usual_progress(0ms, 0ms);
    mate.mate_found = true;
    mate.score_drop = 10000;
    mate.stable_iterations = 1;
    EXPECT_LT(end_of(mate), 150ms);
    // But a shorter one is looked for while that costs nothing.
    EXPECT_TRUE(begin_next_iteration(second_plan, usual_progress(5ms, 3ms)));
    mate.elapsed = 5ms;
    mate.last_iteration = 3ms;
    EXPECT_TRUE(begin_next_iteration(second_plan, mate));
}

}  // namespace
}  // namespace orvelin::play::test
