// orvelin-analyse as a process: what it holds of an input of any size.

#include <fstream>
#include <gtest/gtest.h>
#include <string>
#include <unistd.h>

#include "tools/analyse_tool.h"

namespace orvelin::test::analysis {

namespace {

/// The most memory that the process ever had, in KiB.
long peak_memory(pid_t process) {
    std::ifstream status("/proc/" + std::to_string(process) + "/status");
    std::string word;
    while (status >> word && word != "VmHWM:") {
    }
    long kib = 0;
    status >> kib;
    return kib;
}

bool write_all(int descriptor, std::string const& text) {
    std::size_t done = 0;
    while (done < text.size()) {
        ssize_t const count = ::write(descriptor, text.data() + done, text.size() - done);
        if (count <= 0) {
            return false;
        }
        done += static_cast<std::size_t>(count);
    }
    return true;
}

/// Games of 64 KiB, most of it in comments and variations.
std::string games(int count) {
    std::string game = "[Event \"Memory\"]\n\n1. e4 ";
    while (game.size() < 65'000) {
        game += "{[%clk 0:10:00] a long remark} (1. d4 d5 2. c4 $1 (2. Nf3 Nf6))\n";
    }
    game += "e5 *\n\n";
    std::string text;
    for (int i = 0; i < count; ++i) {
        text += game;
    }
    return text;
}

}  // namespace

TEST(AnalyseToolMemory, DoesNotGrowWithTheInput) {
    std::string const few = games(32);
    for (std::string const jobs : {"1", "2"}) {
        ChildProcess child(
            {analyse_binary,
             {"--limit", "static", "--plies", "0", "--jobs", jobs, "--csv", "/dev/null"},
             {}});
        // What was written was read, but for the little that a pipe holds.
        ASSERT_TRUE(write_all(child.input(), few));
        long const before = peak_memory(child.id());
        ASSERT_GT(before, 1000);
        for (int i = 0; i < 32; ++i) {
            ASSERT_TRUE(write_all(child.input(), few));
        }
        EXPECT_LT(peak_memory(child.id()) - before, 16 * 1024) << "of 64 MiB, with jobs " << jobs;
        child.close_input();
        auto const end = child.wait(patience);
        ASSERT_TRUE(end);
        EXPECT_EQ(end->status, 0) << read_all(child.errors());
    }
}

}  // namespace orvelin::test::analysis
