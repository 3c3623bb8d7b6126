// orvelin-analyse as a process: signals, pipes, full disks and bad arguments.

#include <csignal>
#include <fcntl.h>
#include <gtest/gtest.h>
#include <string>
#include <thread>
#include <unistd.h>

#include "tools/analyse_tool.h"

namespace orvelin::test::analysis {

namespace {

class AnalyseToolFaults : public AnalyseProcess {};

}  // namespace

TEST_F(AnalyseToolFaults, CtrlCEndsItWithWholeLines) {
    for (int const signal : {SIGINT, SIGTERM}) {
        ChildProcess child({analyse_binary,
                            {"--limit", "depth=100", "--shard", "1/1", "--jobs", "2", "-"},
                            directory_.path()});
        // Mate, where there is nothing to search; the others never end.
        std::string const text = "7k/6Q1/6K1/8/8/8/8/8 b - - 0 1\n" + positions(2);
        ASSERT_EQ(::write(child.input(), text.data(), text.size()),
                  static_cast<ssize_t>(text.size()));
        std::string const begin = read_lines(child.output(), 1);
        std::this_thread::sleep_for(50ms);
        ASSERT_EQ(::kill(child.id(), signal), 0);
        auto const end = child.wait(patience);
        ASSERT_TRUE(end);
        EXPECT_EQ(end->signal, 0);
        EXPECT_EQ(end->status, 130);
        EXPECT_EQ(lines_in(begin + read_all(child.output())), 1U);
    }
}

TEST_F(AnalyseToolFaults, CtrlCEndsItWhileItWaitsForInput) {
    ChildProcess child({analyse_binary, {"--limit", "static", "--jobs", "2"}, {}});
    std::this_thread::sleep_for(100ms);
    ASSERT_EQ(::kill(child.id(), SIGINT), 0);
    auto const end = child.wait(patience);
    ASSERT_TRUE(end);
    EXPECT_EQ(end->status, 130);
}

TEST_F(AnalyseToolFaults, AnswersAPipeThatGrowsAsItComes) {
    ChildProcess child({analyse_binary, {"--limit", "static"}, {}});
    for (int round = 0; round < 3; ++round) {
        std::string const text = positions(1);
        ASSERT_EQ(::write(child.input(), text.data(), text.size()),
                  static_cast<ssize_t>(text.size()));
        std::string const line = read_lines(child.output(), 1);
        EXPECT_EQ(line.find("{\"schema\":1,\"number\":" + std::to_string(round + 1) + ','), 0U);
    }
    child.close_input();
    auto const end = child.wait(patience);
    ASSERT_TRUE(end);
    EXPECT_EQ(end->status, 0);
}

TEST_F(AnalyseToolFaults, TellsAFullDiskAndAClosedPipe) {
    std::string const name = input(500);
    for (char const* const option : {"--jsonl", "--csv"}) {
        expect_error({name, "--limit", "static", option, "/dev/full"}, 1,
                     "cannot write /dev/full: No space left on device");
    }
    ChildProcess child({analyse_binary, {name, "--limit", "static", "--jobs", "2"}, {}});
    read_lines(child.output(), 1);
    ASSERT_EQ(::close(::dup(child.output())), 0);
    int const null = ::open("/dev/null", O_RDONLY);
    ASSERT_EQ(::dup2(null, child.output()), child.output());
    ::close(null);
    auto const end = child.wait(patience);
    ASSERT_TRUE(end);
    EXPECT_EQ(end->signal, 0);
    EXPECT_EQ(end->status, 1);
    EXPECT_EQ(read_all(child.errors()),
              "orvelin-analyse: cannot write standard output: Broken pipe\n");
}

TEST_F(AnalyseToolFaults, AFullDiskEndsItWhileItWaitsForInput) {
    ChildProcess child(
        {analyse_binary, {"--limit", "static", "--jobs", "2", "--jsonl", "/dev/full"}, {}});
    std::string const text = positions(1);
    ASSERT_EQ(::write(child.input(), text.data(), text.size()), static_cast<ssize_t>(text.size()));
    auto const end = child.wait(patience);
    ASSERT_TRUE(end);
    EXPECT_EQ(end->status, 1);
}

TEST_F(AnalyseToolFaults, TellsWhatCannotBeRead) {
    expect_error({directory_.file("none")}, 1, "No such file");
    expect_error({directory_.path().string()}, 1, "Is a directory");
    std::string const name = input(5);
    // What comes before is written.
    program_result_t const result = analyse({name, directory_.file("none"), "--limit", "static"});
    EXPECT_EQ(result.status, 1);
    EXPECT_EQ(lines_in(result.output), 5U);
}

TEST_F(AnalyseToolFaults, TellsFaultsOfTheCommandLine) {
    for (texts_t const& arguments :
         std::vector<texts_t>{{"--limit", "depth=101"},
                              {"--limit", "time=3"},
                              {"--lines", "0"},
                              {"--lines", "51"},
                              {"--lines", "x"},
                              {"--plies", "9-3"},
                              {"--moves", "worst"},
                              {"--shard", "4/3"},
                              {"--jobs", "0"},
                              {"--resume"},
                              {"--resume", "--csv", "-"},
                              {"--resume", "--overwrite", "--jsonl", "x"},
                              {"--jsonl", "-", "--csv", "-"},
                              {"--sqlite", "-"},
                              {"--nosuch"},
                              {"verify"},
                              {"verify", "-", "--sample", "101"},
                              {"verify", "-", "--sample", "0%"},
                              {"merge"}}) {
        expect_error(arguments, 2, "");
    }
    expect_error({"--depth", "12"}, 2, "--limit depth=12");
    expect_error({"--nodes", "9"}, 2, "--limit nodes=9");
    for (char const* const command : {"verfy", "vreify", "verifyy", "merg"}) {
        expect_error({command, "x"}, 2, "is a command");
    }
    expect_error({"other", "x"}, 1, "No such file");
    EXPECT_NE(output_of({"--help"}).find("--limit"), std::string::npos);
    EXPECT_NE(output_of({"verify", "--help"}).find("--sample"), std::string::npos);
    EXPECT_EQ(output_of({"--version"}), "Orvelin 0.40.1\n");
}

}  // namespace orvelin::test::analysis
