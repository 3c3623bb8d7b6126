// What waits: for a reader that does not read, in the queue, and behind long work of the front.

#include <cerrno>
#include <chrono>
#include <csignal>
#include <cstddef>
#include <fcntl.h>
#include <gtest/gtest.h>
#include <string>
#include <thread>
#include <unistd.h>
#include <vector>

#include "play/play_process.h"
#include "support/child_process.h"
#include "support/positions.h"
#include "support/test_config.h"

namespace orvelin::play::test {

namespace {

using orvelin::test::ChildProcess;
using clock = PlayProcess::clock;

void write_text(ChildProcess const& child, std::string const& text) {
    ASSERT_EQ(::write(child.input(), text.data(), text.size()), static_cast<ssize_t>(text.size()));
}

/// The status at the end, or -1 for a signal or no end.
int end_status(ChildProcess& child) {
    auto const end = child.wait(milliseconds(20000));
    return end && end->signal == 0 ? end->status : -1;
}

/// A process whose output is full, so that the front waits for a reader.
class ProcessPlayUnread : public testing::Test {
 protected:
    ProcessPlayUnread() : child_({orvelin::test::play_binary, {}, {}}) {
        std::string commands;
        for (int i = 0; i < 500; ++i) {
            commands += "uci\n";
        }
        write_text(child_, commands);
    }
    ChildProcess& child() { return child_; }

 private:
    ChildProcess child_;
};

TEST_F(ProcessPlayUnread, QuitEndsIt) {
    write_text(child(), "quit\n");
    EXPECT_EQ(end_status(child()), 1);
}

TEST_F(ProcessPlayUnread, EndOfInputEndsIt) {
    child().close_input();
    EXPECT_EQ(end_status(child()), 1);
}

TEST_F(ProcessPlayUnread, WithoutAnEndItWaitsForAReader) {
    EXPECT_FALSE(child().wait(milliseconds(3000)));
    write_text(child(), "quit\n");
    orvelin::test::read_buffer_t buffer;
    while (orvelin::test::read_some(child().output(), buffer) > 0) {
    }
    EXPECT_EQ(end_status(child()), 0);
}

// Writes as long as the process takes anything. A signal is seen all the same.
TEST_F(ProcessPlayUnread, TakesNoMoreThanItCanHold) {
    ASSERT_EQ(::fcntl(child().input(), F_SETFL, O_NONBLOCK), 0);
    constexpr std::size_t enough = std::size_t{64} << 20;
    std::string const line = std::string(999, 'x') + '\n';
    std::string text;
    for (int i = 0; i < 64; ++i) {
        text += line;
    }
    std::size_t taken = 0;
    for (clock::time_point last = clock::now();
         taken < enough && clock::now() - last < std::chrono::seconds(1);) {
        ssize_t const count = ::write(child().input(), text.data(), text.size());
        if (count > 0) {
            taken += static_cast<std::size_t>(count);
            last = clock::now();
        } else {
            std::this_thread::sleep_for(milliseconds(1));
        }
    }
    EXPECT_GT(taken, std::size_t{1} << 20);
    EXPECT_LT(taken, std::size_t{32} << 20);
    ASSERT_EQ(::kill(child().id(), SIGTERM), 0);
    EXPECT_EQ(end_status(child()), 143);
}

// All that did not fit at first is read when there is room again.
TEST(ProcessPlayWaiting, ActsOnAllThatWasSent) {
    PlayProcess process;
    std::string const line = std::string(100'000, 'x') + '\n';
    std::thread writing([&] {
        process.write("go perft 5\n");
        for (int i = 0; i < 400; ++i) {
            process.write(line);
        }
        process.write("isready\n");
    });
    EXPECT_EQ(process.find("readyok"), "readyok");
    writing.join();
    process.send("quit");
    auto const end = process.wait();
    ASSERT_TRUE(end);
    EXPECT_EQ(end->status, 0);
}

TEST(ProcessPlayWaiting, StopEndsCountsAndBench) {
    PlayProcess process;
    process.send("position fen " + std::string(positions::kiwipete));
    for (std::string const work : {"go perft 20", "perft 20", "bench 100"}) {
        process.send(work);
        std::this_thread::sleep_for(milliseconds(100));
        clock::time_point const begin = clock::now();
        process.send("stop");
        EXPECT_EQ(process.find("info string "), "info string stopped before its end") << work;
        EXPECT_LT(clock::now() - begin, milliseconds(5000)) << work;
        process.send_all({work, "stop"});
        EXPECT_EQ(process.find("info string "), "info string stopped before its end") << work;
    }
    process.send("d");
    EXPECT_EQ(process.find("FEN: "), "FEN: " + std::string(positions::kiwipete));
}

// Whoever pipes commands in gets their results.
TEST(ProcessPlayWaiting, QuitWaitsForCountsAndBench) {
    PlayProcess process;
    process.send_all({"go perft 3", "bench 3", "quit"});
    auto const end = process.wait();
    ASSERT_TRUE(end);
    EXPECT_EQ(end->status, 0);
    int sums = 0;
    for (std::string const& line : process.rest()) {
        sums += line.starts_with("Nodes searched: ") ? 1 : 0;
    }
    EXPECT_EQ(sums, 2);
}

TEST(ProcessPlayWaiting, BenchKeepsThePosition) {
    PlayProcess process;
    process.send_all({"position fen " + std::string(positions::kiwipete) + " moves e1g1", "d"});
    std::string const before = process.find("FEN: ");
    process.send_all({"bench 3", "d"});
    EXPECT_FALSE(before.empty());
    EXPECT_EQ(process.find("FEN: "), before);
    process.send_all({"position startpos moves e2e9", "bench 3"});
    EXPECT_EQ(best_move(process.ask("go depth 2")), "0000");
}

// Neither the opening of the one nor that of the other may wait for somebody at its other end.
TEST(ProcessPlayWaiting, APipeIsNeitherLogNorBook) {
    PlayProcess process;
    process.set_option("Log File", "/proc/self/fd/0");
    EXPECT_EQ(process.find("info string "), "info string the log file cannot be opened");
    process.set_option("Book File", "/proc/self/fd/0");
    EXPECT_EQ(process.find("info string "), "info string the book file cannot be opened");
    EXPECT_TRUE(process.ready());
}

}  // namespace

}  // namespace orvelin::play::test
