// What waits: for a reader that does not read, in the queue, and behind long work of the front.

#include <cerrno>
#include <chrono>
#include <csignal>
#include <cstddef>
#include <fcntl.h>
#include <gtest/gtest.h>
#include <string>
#include <sys/resource.h>
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

TEST_F(ProcessPlayUnread, ReadsOnWhenThereIsRoomAgain) {
    std::string const line = std::string(99'999, 'x') + '\n';
    std::thread writing([&] {
        for (int i = 0; i < 400; ++i) {
            write_text(child(), line);
        }
        write_text(child(), "isready\nquit\n");
    });
    std::this_thread::sleep_for(milliseconds(500));
    std::string text;
    orvelin::test::read_buffer_t buffer;
    while (std::size_t const count = orvelin::test::read_some(child().output(), buffer)) {
        text.append(buffer.data(), count);
    }
    writing.join();
    EXPECT_EQ(end_status(child()), 0);
    EXPECT_TRUE(text.ends_with("\nreadyok\n"));
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

// A game does not go on meanwhile.
TEST(ProcessPlayWaiting, TheClockStandsStillDuringACount) {
    PlayProcess process;
    // It takes longer than the difference that is allowed below.
    std::string const count = orvelin::test::short_tests ? "perft 5" : "perft 6";
    process.send_all({"position startpos", count, "go movetime 600"});
    process.find("Nodes searched: ");
    clock::time_point const begin = clock::now();
    EXPECT_FALSE(process.find("bestmove ").empty());
    EXPECT_GT(clock::now() - begin, milliseconds(400));
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

#if !defined(__SANITIZE_ADDRESS__) && !defined(__SANITIZE_THREAD__) && !defined(__has_feature)
// The table of a level is of another size, and for that behind it the memory is gone by then. What
// a search takes beside it has been taken and given back by then. The sanitizers need more room
// than can be left.
TEST(ProcessPlayWaiting, ASearchWithoutMemoryIsAnswered) {
    ChildProcess child({orvelin::test::play_binary, {}, {}});
    write_text(child, "setoption name UCI_LimitStrength value true\ngo depth 3\n");
    std::string text;
    orvelin::test::read_buffer_t buffer;
    std::size_t count = 0;
    while (text.find("bestmove ") == std::string::npos &&
           (count = orvelin::test::read_some(child.output(), buffer)) > 0) {
        text.append(buffer.data(), count);
    }
    rlimit old{};
    rlimit const little{std::size_t{1} << 20, RLIM_INFINITY};
    ASSERT_EQ(::prlimit(child.id(), RLIMIT_AS, &little, &old), 0);
    write_text(child, "setoption name UCI_LimitStrength value false\ngo depth 3\n");
    text.clear();
    while (text.find("bestmove 0000\n") == std::string::npos &&
           (count = orvelin::test::read_some(child.output(), buffer)) > 0) {
        text.append(buffer.data(), count);
    }
    EXPECT_EQ(text, "info string no memory to search with\nbestmove 0000\n");
    ASSERT_EQ(::prlimit(child.id(), RLIMIT_AS, &old, nullptr), 0);
    write_text(child, "go depth 3\nsetoption name Clear Hash\nisready\n");
    for (text.clear(); text.find("bestmove ") == std::string::npos &&
                       (count = orvelin::test::read_some(child.output(), buffer)) > 0;) {
        text.append(buffer.data(), count);
    }
    EXPECT_EQ(text.find("bestmove 0000"), std::string::npos) << text;
}
#endif

// Neither the opening of the one nor that of the other may wait for somebody at its other end.
TEST(ProcessPlayWaiting, APipeIsNeitherLogNorBook) {
    PlayProcess process;
    process.set_option("Log File", "/proc/self/fd/0");
    EXPECT_EQ(process.find("info string "),
              "info string the log file cannot be opened: \"/proc/self/fd/0\"");
    process.set_option("Book File", "/proc/self/fd/0");
    EXPECT_EQ(process.find("info string "),
              "info string the book file cannot be opened: \"/proc/self/fd/0\"");
    EXPECT_TRUE(process.ready());
}

}  // namespace

}  // namespace orvelin::play::test
