#include "support/progress.h"

#include <gtest/gtest.h>
#include <sstream>
#include <string>

namespace orvelin::test {

using std::chrono_literals::operator""h;
using std::chrono_literals::operator""ms;

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

}  // namespace orvelin::test
