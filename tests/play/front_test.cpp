// The front as a page drives it: it acts on the lines that wait, and waits for no more.

#include "play/front.h"

#include <array>
#include <chrono>
#include <fcntl.h>
#include <gtest/gtest.h>
#include <poll.h>
#include <string>
#include <string_view>
#include <unistd.h>

#include "play/line_reader.h"
#include "support/child_process.h"

namespace orvelin::play::test {

namespace {

using clock = std::chrono::steady_clock;

class FrontTest : public testing::Test {
 protected:
    FrontTest() {
        queue_.fill_by([this](auto deadline) { reader_.look_until(deadline); });
    }
    ~FrontTest() override {
        for (int const descriptor : {in_[0], in_[1], out_[0], out_[1]}) {
            ::close(descriptor);
        }
    }

    static std::array<int, 2> new_pipe() {
        std::array<int, 2> ends{-1, -1};
        EXPECT_EQ(pipe2(ends.data(), O_CLOEXEC), 0);
        return ends;
    }

    void send(std::string_view text) {
        EXPECT_EQ(::write(in_[1], text.data(), text.size()), static_cast<ssize_t>(text.size()));
    }

    /// All that was said up to a text.
    std::string until(std::string_view last) {
        std::string text;
        orvelin::test::read_buffer_t buffer;
        pollfd asked{out_[0], POLLIN, 0};
        while (text.find(last) == std::string::npos && ::poll(&asked, 1, 60'000) > 0) {
            text.append(buffer.data(), orvelin::test::read_some(out_[0], buffer));
        }
        EXPECT_NE(text.find(last), std::string::npos);
        return text;
    }

    std::array<int, 2> in_ = new_pipe();
    std::array<int, 2> out_ = new_pipe();
    CommandQueue queue_;
    Output output_{out_[1]};
    LineReader reader_{in_[0], output_, queue_};
    Front front_{queue_, output_};
};

}  // namespace

TEST_F(FrontTest, ActsOnAllLinesThatWait) {
    EXPECT_TRUE(front_.act_on_all());
    send("uci\nposition startpos moves e2e4\ngo depth 2\nisre");
    EXPECT_TRUE(front_.act_on_all());
    EXPECT_EQ(until("bestmove").find("readyok"), std::string::npos);
    send("ady\nquit\nd\n");
    EXPECT_FALSE(front_.act_on_all());
    EXPECT_EQ(until("readyok").find("FEN"), std::string::npos);
}

TEST_F(FrontTest, ALineIsWaitedForUntilTheDeadline) {
    auto const start = clock::now();
    EXPECT_FALSE(queue_.pop(start + milliseconds(20)));
    EXPECT_GE(clock::now() - start, milliseconds(20));
    EXPECT_FALSE(queue_.pop(clock::time_point::min()));
    send("isready\n");
    EXPECT_TRUE(queue_.pop(start + std::chrono::hours(1)));
    send("isready\n");
    EXPECT_TRUE(queue_.pop(std::nullopt));
}

}  // namespace orvelin::play::test
