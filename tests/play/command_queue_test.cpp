#include "play/command_queue.h"

#include <chrono>
#include <gtest/gtest.h>
#include <string>
#include <thread>

namespace orvelin::play::test {

namespace {

using clock = std::chrono::steady_clock;

Command command(std::string const& line) {
    return {line, clock::now()};
}

TEST(CommandQueue, HandsOutTheOldestFirst) {
    CommandQueue queue;
    queue.push(command("one"));
    queue.push(command("two"));
    EXPECT_EQ(queue.pop(std::nullopt)->line, "one");
    EXPECT_EQ(queue.pop(std::nullopt)->line, "two");
}

TEST(CommandQueue, GivesUpAtTheDeadline) {
    CommandQueue queue;
    auto const begin = clock::now();
    EXPECT_FALSE(queue.pop(begin + std::chrono::milliseconds(30)));
    EXPECT_GE(clock::now() - begin, std::chrono::milliseconds(30));
    EXPECT_FALSE(queue.ended());
}

TEST(CommandQueue, ADeadlineInThePastLosesNoLine) {
    CommandQueue queue;
    queue.push(command("here"));
    auto const taken = queue.pop(clock::now() - std::chrono::seconds(1));
    ASSERT_TRUE(taken);
    EXPECT_EQ(taken->line, "here");
}

TEST(CommandQueue, WakesForALine) {
    CommandQueue queue;
    std::thread writer([&queue] {
        std::this_thread::sleep_for(std::chrono::milliseconds(20));
        queue.push(command("late"));
    });
    auto const taken = queue.pop(clock::now() + std::chrono::seconds(60));
    writer.join();
    ASSERT_TRUE(taken);
    EXPECT_EQ(taken->line, "late");
}

TEST(CommandQueue, WakesForTheEnd) {
    CommandQueue queue;
    std::thread writer([&queue] { queue.end(); });
    EXPECT_FALSE(queue.pop(std::nullopt));
    writer.join();
    EXPECT_TRUE(queue.ended());
}

TEST(CommandQueue, HandsOutWhatWaitsBehindTheEnd) {
    CommandQueue queue;
    queue.push(command("last"));
    queue.end();
    EXPECT_FALSE(queue.ended());
    EXPECT_EQ(queue.pop(std::nullopt)->line, "last");
    EXPECT_TRUE(queue.ended());
    EXPECT_FALSE(queue.pop(std::nullopt));
}

}  // namespace

}  // namespace orvelin::play::test
