#include "search/control_words.h"

#include <gtest/gtest.h>

namespace orvelin {
namespace {

TEST(ControlWords, BeginWithNothingToDoAndNothingToReport) {
    ControlWords const words;
    EXPECT_EQ(words.action(), no_action);
    EXPECT_EQ(words.status(), ready_status);
    EXPECT_FALSE(words.quit());
}

TEST(ControlWords, AThinkActionIsTakenOnceAndAnnounced) {
    ControlWords words;
    EXPECT_FALSE(words.take_think());
    words.set_action(think_action);
    words.take_stop();
    EXPECT_EQ(words.action(), think_action);
    EXPECT_TRUE(words.take_think());
    EXPECT_EQ(words.action(), no_action);
    EXPECT_EQ(words.status(), searching_status);
    EXPECT_FALSE(words.take_think());
}

TEST(ControlWords, AStopIsTakenAsTheEndOfASearch) {
    ControlWords words;
    words.take_stop();
    EXPECT_EQ(words.status(), ready_status);
    words.set_action(stop_action);
    EXPECT_FALSE(words.take_think());
    words.take_stop();
    EXPECT_EQ(words.action(), no_action);
    EXPECT_EQ(words.status(), finished_status);
}

TEST(ControlWords, OnlyAThinkActionIsWithdrawn) {
    ControlWords words;
    EXPECT_FALSE(words.withdraw_think());
    words.set_action(stop_action);
    EXPECT_FALSE(words.withdraw_think());
    EXPECT_EQ(words.action(), stop_action);
    words.set_action(think_action);
    EXPECT_TRUE(words.withdraw_think());
    EXPECT_EQ(words.action(), no_action);
    EXPECT_EQ(words.status(), ready_status);
}

TEST(ControlWords, AResetKeepsTheQuitFlag) {
    ControlWords words;
    words.set_action(stop_action);
    words.set_status(finished_status);
    words.set_quit();
    words.reset();
    EXPECT_EQ(words.action(), no_action);
    EXPECT_EQ(words.status(), ready_status);
    EXPECT_TRUE(words.quit());
}

}  // namespace
}  // namespace orvelin
