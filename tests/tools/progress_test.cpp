#include "support/progress.h"

#include <gtest/gtest.h>
#include <sstream>
#include <string>

namespace orvelin::test {

using std::chrono_literals::operator""h;
using std::chrono_literals::operator""min;
using std::chrono_literals::operator""ms;
using std::chrono_literals::operator""s;

TEST(Progress, PlainOutputHasALineForEachText) {
    std::ostringstream out;
    {
        tools::Progress progress(out, {false, 0ms, 0ms});
        progress.show("one");
        progress.clear();
        progress.show("two");
    }
    EXPECT_EQ(out.str(), "one\ntwo\n");
}

TEST(Progress, ATerminalHasOneLineThatIsOverwrittenAndCleared) {
    std::ostringstream out;
    {
        tools::Progress progress(out, {true, 0ms, 0ms});
        progress.show("one");
        progress.show("two");
        EXPECT_EQ(out.str(), "\r\033[Kone\r\033[Ktwo");
    }
    EXPECT_EQ(out.str(), "\r\033[Kone\r\033[Ktwo\r\033[K");
}

TEST(Progress, ALineIsClearedOnce) {
    std::ostringstream out;
    tools::Progress progress(out, {true, 0ms, 0ms});
    progress.clear();
    EXPECT_EQ(out.str(), "");
    progress.show("one");
    progress.clear();
    progress.clear();
    EXPECT_EQ(out.str(), "\r\033[Kone\r\033[K");
}

TEST(Progress, WhatIsDoneBeforeTheDelayIsOverTellsNothing) {
    std::ostringstream out;
    {
        tools::Progress progress(out, {true, 1h, 0ms});
        progress.show("one");
    }
    EXPECT_EQ(out.str(), "");
}

TEST(Progress, TextsWithinTheIntervalAreLeftOut) {
    std::ostringstream out;
    tools::Progress progress(out, {false, 0ms, 1h});
    progress.show("one");
    progress.show("two");
    EXPECT_EQ(out.str(), "one\n");
}

TEST(Progress, TheIntervalGrowsWithTheTime) {
    tools::progress_style_t const log{false, 2s, 2s, 5min};
    EXPECT_EQ(tools::progress_interval(log, 3s), 2s);
    EXPECT_EQ(tools::progress_interval(log, 10min), 1min);
    EXPECT_EQ(tools::progress_interval(log, 24h), 5min);
    EXPECT_EQ(tools::progress_interval({true, 500ms, 100ms}, 24h), 100ms);
}

TEST(Progress, ALongLogHasFewLines) {
    std::ostringstream out;
    tools::Progress progress(out, {false, 0ms, 1ms, 1h});
    auto const end = std::chrono::steady_clock::now() + 500ms;
    while (std::chrono::steady_clock::now() < end) {
        progress.show("x");
    }
    // Ten in the first ten milliseconds, and then each a tenth later than the one before.
    EXPECT_LT(out.str().size(), 2U * 70U);
}

}  // namespace orvelin::test
