#include "play/command_queue.h"

#include <chrono>
#include <gtest/gtest.h>
#include <poll.h>
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

bool readable(int descriptor) {
    pollfd source{descriptor, POLLIN, 0};
    return ::poll(&source, 1, 0) == 1;
}

TEST(CommandQueue, TellsWhenTooMuchWaitsAndWhenThereIsRoom) {
    CommandQueue queue(1000);
    EXPECT_FALSE(queue.full());
    queue.push(command(std::string(800, 'a')));
    EXPECT_FALSE(queue.full());
    queue.push(command(std::string(800, 'b')));
    queue.push(command("c"));
    EXPECT_TRUE(queue.full());
    EXPECT_FALSE(readable(static_cast<int>(queue.room().handle())));
    queue.pop(std::nullopt);
    EXPECT_FALSE(queue.full());
    EXPECT_TRUE(readable(static_cast<int>(queue.room().handle())));
    queue.take_room();
    EXPECT_FALSE(readable(static_cast<int>(queue.room().handle())));
    queue.take_room();
    queue.pop(std::nullopt);
    EXPECT_FALSE(readable(static_cast<int>(queue.room().handle())));
}

TEST(CommandQueue, CountsEmptyLinesToo) {
    CommandQueue queue(1000);
    for (int i = 0; i < 100; ++i) {
        queue.push(command(""));
    }
    EXPECT_TRUE(queue.full());
}

TEST(CommandQueue, SeesThatTheEndIsNear) {
    for (std::string const line : {"quit", " \tquit now"}) {
        CommandQueue queue;
        queue.push(command("quiet"));
        queue.push(command("go quit"));
        EXPECT_FALSE(queue.ending());
        queue.push(command(line));
        EXPECT_TRUE(queue.ending());
    }
    CommandQueue queue;
    queue.end();
    EXPECT_TRUE(queue.ending());
}

TEST(CommandQueue, FetchesLinesWhereNobodyPushesThem) {
    CommandQueue queue;
    int fetched = 0;
    queue.fill_by([&](auto) { queue.push(command(std::to_string(++fetched))); });
    EXPECT_EQ(queue.pop(std::nullopt)->line, "1");
    queue.fill();
    EXPECT_EQ(fetched, 2);
    // What waits is taken first.
    EXPECT_EQ(queue.pop(std::nullopt)->line, "2");
    EXPECT_EQ(fetched, 2);
}

TEST(CommandQueue, CallsForAStopThatWaitsOrComes) {
    CommandQueue queue;
    int calls = 0;
    auto const count = [&calls] { ++calls; };
    queue.on_stop(count);
    queue.push(command("isready"));
    EXPECT_EQ(calls, 0);
    queue.push(command("stop"));
    EXPECT_EQ(calls, 1);
    queue.on_stop(count);
    EXPECT_EQ(calls, 2);
    queue.on_stop({});
    queue.push(command("stop"));
    EXPECT_EQ(calls, 2);
    EXPECT_EQ(queue.pop(std::nullopt)->line, "isready");
    EXPECT_EQ(queue.pop(std::nullopt)->line, "stop");
}

}  // namespace

}  // namespace orvelin::play::test
