#include "support/progress.h"

#include <gtest/gtest.h>
#include <sstream>
#include <string>

namespace orvelin::test {

using std::chrono_literals::operator""h;
using std::chrono_literals::operator""ms;

TEST(Progress, plain_output_has_a_line_for_each_text) {
    std::ostringstream out;
    {
        tools::Progress progress(out, {false, 0ms, 0ms});
        progress.show("one");
        progress.clear();
        progress.show("two");
    }
    EXPECT_EQ(out.str(), "one\ntwo\n");
}

TEST(Progress, a_terminal_has_one_line_that_is_overwritten_and_cleared) {
    std::ostringstream out;
    {
        tools::Progress progress(out, {true, 0ms, 0ms});
        progress.show("one");
        progress.show("two");
        EXPECT_EQ(out.str(), "\r\033[Kone\r\033[Ktwo");
    }
    EXPECT_EQ(out.str(), "\r\033[Kone\r\033[Ktwo\r\033[K");
}

TEST(Progress, a_line_is_cleared_once) {
    std::ostringstream out;
    tools::Progress progress(out, {true, 0ms, 0ms});
    progress.clear();
    EXPECT_EQ(out.str(), "");
    progress.show("one");
    progress.clear();
    progress.clear();
    EXPECT_EQ(out.str(), "\r\033[Kone\r\033[K");
}

TEST(Progress, what_is_done_before_the_delay_is_over_tells_nothing) {
    std::ostringstream out;
    {
        tools::Progress progress(out, {true, 1h, 0ms});
        progress.show("one");
    }
    EXPECT_EQ(out.str(), "");
}

TEST(Progress, texts_within_the_interval_are_left_out) {
    std::ostringstream out;
    tools::Progress progress(out, {false, 0ms, 1h});
    progress.show("one");
    progress.show("two");
    EXPECT_EQ(out.str(), "one\n");
}

}  // namespace orvelin::test
