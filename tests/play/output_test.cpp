#include "play/output.h"

#include <array>
#include <chrono>
#include <cstddef>
#include <fcntl.h>
#include <filesystem>
#include <fstream>
#include <gtest/gtest.h>
#include <sstream>
#include <string>
#include <sys/stat.h>
#include <thread>
#include <unistd.h>
#include <vector>

#include "support/child_process.h"
#include "support/temporary_directory.h"

namespace orvelin::play::test {

namespace {

using std::chrono::milliseconds;

/// A pipe to write to; what was written is read when the writing end is closed.
class OutputTest : public testing::Test {
 protected:
    OutputTest() {
        if (pipe2(ends_.data(), O_CLOEXEC) != 0) {
            ADD_FAILURE();
        }
    }
    ~OutputTest() override {
        close_writer();
        close(ends_[0]);
    }
    int writer() const { return ends_[1]; }
    int reader() const { return ends_[0]; }
    void close_writer() {
        if (ends_[1] >= 0) {
            close(ends_[1]);
            ends_[1] = -1;
        }
    }
    std::string written() {
        close_writer();
        std::string text;
        orvelin::test::read_buffer_t buffer;
        while (std::size_t const count = orvelin::test::read_some(ends_[0], buffer)) {
            text.append(buffer.data(), count);
        }
        return text;
    }

 private:
    std::array<int, 2> ends_{-1, -1};
};

std::string text_of(std::filesystem::path const& file) {
    std::ifstream stream(file);
    std::ostringstream text;
    text << stream.rdbuf();
    return text.str();
}

TEST_F(OutputTest, WritesALineAtOnce) {
    Output output(writer());
    output.line("readyok");
    orvelin::test::read_buffer_t buffer;
    std::size_t const count = orvelin::test::read_some(reader(), buffer);
    EXPECT_EQ(std::string(buffer.data(), count), "readyok\n");
}

TEST_F(OutputTest, MakesARemarkOneHarmlessLine) {
    Output output(writer());
    output.remark("a\nb\rc\x1b[2J\x7f");
    EXPECT_EQ(written(), "info string a b c [2J \n");
}

TEST_F(OutputTest, KeepsLinesOfManyThreadsWhole) {
    Output output(writer());
    std::string text;
    std::thread reading([&] {
        orvelin::test::read_buffer_t buffer;
        while (std::size_t const count = orvelin::test::read_some(reader(), buffer)) {
            text.append(buffer.data(), count);
        }
    });
    std::vector<std::thread> threads;
    for (char const letter : {'a', 'b', 'c', 'd'}) {
        threads.emplace_back([&output, letter] {
            for (int i = 0; i < 200; ++i) {
                output.line(std::string(5000, letter));
            }
        });
    }
    for (std::thread& thread : threads) {
        thread.join();
    }
    close_writer();
    reading.join();
    std::istringstream lines(text);
    int number = 0;
    for (std::string line; std::getline(lines, line); ++number) {
        ASSERT_EQ(line, std::string(5000, line[0]));
    }
    EXPECT_EQ(number, 800);
}

TEST_F(OutputTest, WaitsForAFullPipeThatDoesNotBlock) {
    ASSERT_EQ(fcntl(writer(), F_SETFL, O_NONBLOCK), 0);
    Output output(writer());
    std::string const text(std::size_t{1} << 20, 'x');
    std::thread writing([&] {
        output.line(text);
        close_writer();
    });
    std::string seen;
    orvelin::test::read_buffer_t buffer;
    while (std::size_t const count = orvelin::test::read_some(reader(), buffer)) {
        seen.append(buffer.data(), count);
    }
    writing.join();
    EXPECT_EQ(seen, text + '\n');
}

TEST_F(OutputTest, LogsWhatComesAndGoes) {
    orvelin::test::TemporaryDirectory const directory;
    std::filesystem::path const file = directory.path() / "log";
    Output output(writer());
    output.line("before");
    ASSERT_TRUE(output.set_log(file.string()));
    output.log_input("isready");
    output.line("readyok");
    output.text("one\n\nthree\n");
    std::string const log = "> isready\n< readyok\n< one\n< \n< three\n";
    EXPECT_EQ(text_of(file), log);
    ASSERT_TRUE(output.set_log(""));
    output.line("behind");
    EXPECT_EQ(text_of(file), log);
    EXPECT_EQ(written(), "before\nreadyok\none\n\nthree\nbehind\n");
}

TEST_F(OutputTest, TellsThatSomethingCouldNotBeWritten) {
    Output good(writer());
    good.line("read");
    EXPECT_FALSE(good.lost());
    int const full = open("/dev/full", O_WRONLY | O_CLOEXEC);
    ASSERT_GE(full, 0);
    Output output(full);
    output.line("no room");
    EXPECT_TRUE(output.lost());
    close(full);
}

TEST_F(OutputTest, TellsThatNobodyReads) {
    Output output(writer());
    output.line("read");
    EXPECT_FALSE(output.stuck_for(milliseconds(0)));
    std::thread writing([&] { output.line(std::string(std::size_t{1} << 20, 'x')); });
    auto const end = std::chrono::steady_clock::now() + std::chrono::seconds(60);
    while (!output.stuck_for(milliseconds(50)) && std::chrono::steady_clock::now() < end) {
        std::this_thread::sleep_for(milliseconds(5));
    }
    EXPECT_TRUE(output.stuck_for(milliseconds(50)));
    EXPECT_FALSE(output.stuck_for(std::chrono::hours(1)));
    orvelin::test::read_buffer_t buffer;
    for (std::size_t seen = 0; seen < (std::size_t{1} << 20);) {
        seen += orvelin::test::read_some(reader(), buffer);
    }
    writing.join();
    EXPECT_FALSE(output.stuck_for(milliseconds(0)));
}

// To open a pipe for writing waits until somebody reads it.
TEST_F(OutputTest, TakesNoPipeForALog) {
    orvelin::test::TemporaryDirectory const directory;
    std::string const pipe = (directory.path() / "pipe").string();
    ASSERT_EQ(mkfifo(pipe.c_str(), 0600), 0);
    Output output(writer());
    EXPECT_FALSE(output.set_log(pipe));
}

TEST_F(OutputTest, TellsThatALogCannotBeOpened) {
    Output output(writer());
    EXPECT_FALSE(output.set_log("/nowhere/at/all"));
    output.line("goes on");
    EXPECT_EQ(written(), "goes on\n");
}

}  // namespace

}  // namespace orvelin::play::test
