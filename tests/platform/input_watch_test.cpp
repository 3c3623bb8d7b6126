#include "platform/input_watch.h"

#include <array>
#include <chrono>
#include <csignal>
#include <fcntl.h>
#include <gtest/gtest.h>
#include <pthread.h>
#include <unistd.h>
#include <utility>

namespace orvelin::test {

namespace {

using std::chrono::milliseconds;
using std::chrono::seconds;
using wanted_t = InputWatch::wanted_t;

/// A watch on a pipe from which reading does not wait, and on one that is its output.
class InputWatchTest : public testing::Test {
 protected:
    InputWatchTest() {
        EXPECT_EQ(pipe2(input_.data(), O_CLOEXEC | O_NONBLOCK), 0);
        EXPECT_EQ(pipe2(output_.data(), O_CLOEXEC), 0);
    }
    ~InputWatchTest() override {
        for (int const descriptor : {input_[0], input_[1], output_[0], output_[1]}) {
            ::close(descriptor);
        }
    }

    void close_end(int& descriptor) { ::close(std::exchange(descriptor, -1)); }

    std::array<int, 2> input_{-1, -1};
    std::array<int, 2> output_{-1, -1};
    WakeUp flag_;
};

}  // namespace

TEST_F(InputWatchTest, SeesNothingWhereNothingHappens) {
    InputWatch watch(input_[0], output_[1], flag_);
    auto const start = std::chrono::steady_clock::now();
    InputWatch::seen_t const seen = watch.wait(wanted_t::bytes, milliseconds(20));
    EXPECT_GE(std::chrono::steady_clock::now() - start, milliseconds(15));
    EXPECT_EQ(seen.signal, 0);
    EXPECT_FALSE(seen.input || seen.output_lost || seen.flag);
    std::array<char, 8> room{};
    EXPECT_FALSE(watch.read(room.data(), room.size()));
}

TEST_F(InputWatchTest, ReadsWhatComesAndHearsTheEnd) {
    InputWatch watch(input_[0], output_[1], flag_);
    ASSERT_EQ(::write(input_[1], "go\n", 3), 3);
    EXPECT_TRUE(watch.wait(wanted_t::bytes, seconds(60)).input);
    EXPECT_FALSE(watch.wait(wanted_t::nothing, milliseconds(0)).input);
    std::array<char, 8> room{};
    EXPECT_EQ(watch.read(room.data(), room.size()), 3U);
    close_end(input_[1]);
    EXPECT_TRUE(watch.wait(wanted_t::loss, seconds(60)).input);
    EXPECT_EQ(watch.read(room.data(), room.size()), 0U);
}

TEST_F(InputWatchTest, AnInputThatCannotBeReadHasEnded) {
    InputWatch watch(input_[1], output_[1], flag_);
    std::array<char, 8> room{};
    EXPECT_EQ(watch.read(room.data(), room.size()), 0U);
}

TEST_F(InputWatchTest, SeesTheFlagAndALostReader) {
    InputWatch watch(input_[0], output_[1], flag_);
    flag_.set();
    EXPECT_TRUE(watch.wait(wanted_t::bytes, seconds(60)).flag);
    close_end(output_[0]);
    EXPECT_TRUE(watch.wait(wanted_t::bytes, seconds(60)).output_lost);
}

TEST_F(InputWatchTest, TakesASignalThatWouldEndTheProcess) {
    sigset_t signals;
    sigset_t before;
    sigemptyset(&signals);
    sigaddset(&signals, SIGTERM);
    ASSERT_EQ(pthread_sigmask(SIG_BLOCK, &signals, &before), 0);
    InputWatch watch(input_[0], output_[1], flag_);
    ASSERT_EQ(pthread_kill(pthread_self(), SIGTERM), 0);
    EXPECT_EQ(watch.wait(wanted_t::bytes, seconds(60)).signal, SIGTERM);
    EXPECT_EQ(watch.wait(wanted_t::bytes, milliseconds(0)).signal, 0);
    ASSERT_EQ(pthread_sigmask(SIG_SETMASK, &before, nullptr), 0);
}

}  // namespace orvelin::test
