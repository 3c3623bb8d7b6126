// orvelin-analyse as a process.

#include <algorithm>
#include <chrono>
#include <csignal>
#include <fcntl.h>
#include <gtest/gtest.h>
#include <optional>
#include <string>
#include <thread>
#include <unistd.h>
#include <vector>

#include "support/child_process.h"
#include "support/positions.h"
#include "support/program.h"
#include "support/temporary_directory.h"
#include "support/test_config.h"
#include "tools/analyse_files.h"

namespace orvelin::test {

namespace {

using texts_t = std::vector<std::string>;
using std::chrono_literals::operator""ms;
using std::chrono_literals::operator""s;

constexpr milliseconds patience = 60s;

program_result_t analyse(texts_t const& arguments, std::string const& input = "") {
    return run_program(analyse_binary, arguments, {.input = input});
}

/// What it prints; a failure when it does not end well.
std::string output_of(texts_t const& arguments, std::string const& input = "") {
    program_result_t const result = analyse(arguments, input);
    EXPECT_EQ(result.status, 0) << result.errors;
    EXPECT_EQ(result.signal, 0);
    return result.output;
}

void expect_error(texts_t const& arguments, int status, std::string const& text,
                  std::string const& input = "") {
    program_result_t const result = analyse(arguments, input);
    EXPECT_EQ(result.status, status) << text;
    EXPECT_EQ(result.output, "") << text;
    EXPECT_TRUE(result.errors.starts_with("orvelin-analyse: ")) << result.errors;
    EXPECT_NE(result.errors.find(text), std::string::npos) << result.errors << "not: " << text;
}

std::size_t lines_in(std::string const& text) {
    return static_cast<std::size_t>(std::count(text.begin(), text.end(), '\n'));
}

/// So many positions, a line each.
std::string positions(int count) {
    std::string text;
    texts_t const kinds = {positions::start, positions::kiwipete, positions::rook_ending,
                           positions::quiet_middle_game, positions::promotions};
    for (int i = 0; i < count; ++i) {
        text += kinds[static_cast<std::size_t>(i) % kinds.size()] + '\n';
    }
    return text;
}

constexpr char const* two_games =
    "[Event \"A\"]\n[White \"M\xFCller\"]\n[Black \"B\"]\n[Result \"1-0\"]\n\n"
    "1. e4 e5 2. Bc4 Nc6 3. Qh5 Nf6 4. Qxf7# 1-0\n\n[Event \"B\"]\n\n1. d4 d5 2. c4 *\n";

/// Reads what the child writes until there are so many lines.
std::string read_lines(int descriptor, std::size_t wanted) {
    std::string text;
    read_buffer_t buffer;
    while (lines_in(text) < wanted) {
        std::size_t const count = read_some(descriptor, buffer);
        if (count == 0) {
            break;
        }
        text.append(buffer.data(), count);
    }
    return text;
}

std::string read_all(int descriptor) {
    return read_lines(descriptor, std::string::npos);
}

std::uint64_t size_of(std::string const& name) {
    std::error_code error;
    auto const size = std::filesystem::file_size(name, error);
    return error ? 0 : size;
}

/// Waits until the file has grown beyond a size, or the child has ended.
void wait_for_growth(ChildProcess& child, std::string const& name, std::uint64_t size) {
    auto const end = std::chrono::steady_clock::now() + patience;
    while (size_of(name) <= size && !child.wait(1ms) && std::chrono::steady_clock::now() < end) {
    }
}

class AnalyseTool : public testing::Test {
 protected:
    std::string input(int count) {
        std::string const name = directory_.file("in.fen");
        put_bytes(name, positions(count));
        return name;
    }

    TemporaryDirectory directory_;
    std::string out_ = directory_.file("out.jsonl");
};

}  // namespace

TEST_F(AnalyseTool, WritesARecordForEachPositionOfEachGame) {
    std::string const text = output_of({"--limit", "depth=2", "--moves", "best,played"}, two_games);
    EXPECT_EQ(lines_in(text), 12U);
    EXPECT_NE(text.find("\"white\":\"M\xC3\xBCller\""), std::string::npos);
    EXPECT_NE(text.find("\"san\":\"Qxf7#\""), std::string::npos);
    EXPECT_NE(text.find("\"score\":-30000,\"centipawns\":-10030,\"mate\":0"), std::string::npos);
    EXPECT_EQ(lines_in(output_of({"--plies", "2-3", "--limit", "static"}, two_games)), 4U);
    EXPECT_EQ(lines_in(output_of({"--plies", "4-", "--limit", "static"}, two_games)), 4U);
    EXPECT_EQ(lines_in(output_of({"--plies", "0", "--limit", "static"}, two_games)), 2U);
}

TEST_F(AnalyseTool, TellsABrokenGameAndGoesOn) {
    program_result_t const result = analyse(
        {"--limit", "static"}, "[Event \"x\"]\n\n1. e4 e5 2. Qxh8 *\n\n" + std::string(two_games));
    EXPECT_EQ(result.status, 0);
    EXPECT_EQ(lines_in(result.output), 12U);
    EXPECT_NE(result.errors.find("orvelin-analyse: -: "), std::string::npos) << result.errors;
    EXPECT_NE(result.errors.find("Qxh8"), std::string::npos) << result.errors;
    expect_error({"--limit", "static"}, 1, "nothing of the input could be read",
                 "[Event \"x\"]\n\n1. e5 *\n");
    EXPECT_EQ(output_of({"--limit", "static"}), "");
}

TEST_F(AnalyseTool, WritesTheSameWithTwoJobs) {
    std::string const name = input(60);
    for (std::string const limit : {"static", "nodes=3000"}) {
        std::string const one = output_of({name, "--limit", limit, "--lines", "2"});
        EXPECT_EQ(lines_in(one), 60U);
        EXPECT_EQ(output_of({name, "--limit", limit, "--lines", "2", "--jobs", "2"}), one);
    }
}

TEST_F(AnalyseTool, WhatItWritesCanBeVerified) {
    std::string const name = input(20);
    output_of({name, "--limit", "nodes=2000", "--jsonl", out_});
    EXPECT_EQ(output_of({"verify", out_, "--jobs", "2"}),
              "20 records of 20 computed again, no difference\n");
    EXPECT_NE(output_of({"verify", out_, "--sample", "5%"}).find("of 20 computed again"),
              std::string::npos);
    std::string text = bytes_of(out_);
    std::size_t const at = text.find("\"nodes\":2", text.size() / 2);
    ASSERT_NE(at, std::string::npos);
    text[at + 8] = '3';
    program_result_t const result = analyse({"verify", "-"}, text);
    EXPECT_EQ(result.status, 1);
    EXPECT_NE(result.output.find(": nodes is 3"), std::string::npos) << result.output;
    expect_error({"verify", "-"}, 1, "line 1: no JSON", "rubbish\n");
    expect_error({"verify", "-"}, 1, "no record");
    expect_error({"verify", directory_.file("none")}, 1, "No such file");
}

TEST_F(AnalyseTool, ARunThatIsKilledGoesOnToTheSameBytes) {
    std::string const name = input(150);
    std::string const whole = output_of({name, "--limit", "nodes=2000"});
    ASSERT_EQ(lines_in(whole), 150U);
    texts_t const arguments = {name, "--limit",  "nodes=2000", "--jsonl",
                               out_, "--resume", "--jobs",     "2"};
    for (int kills = 0; kills < 3; ++kills) {
        ChildProcess child({analyse_binary, arguments, {}});
        wait_for_growth(child, out_, size_of(out_) + 20000);
        child.kill();
    }
    EXPECT_GT(size_of(out_), 20000U);
    // Whatever the kill has left, half a line is worse.
    std::string const part = bytes_of(out_);
    put_bytes(out_, part.substr(0, part.size() - 300));
    output_of(arguments);
    EXPECT_EQ(bytes_of(out_), whole);
}

TEST_F(AnalyseTool, ShardsAreMergedToTheSameBytes) {
    std::string const name = input(40);
    std::string const whole = output_of({name, "--limit", "nodes=1000"});
    texts_t parts;
    for (std::string const shard : {"1/3", "2/3", "3/3"}) {
        parts.push_back(directory_.file("part" + shard.substr(0, 1)));
        output_of({name, "--limit", "nodes=1000", "--shard", shard, "--jsonl", parts.back()});
    }
    texts_t arguments = {"merge", parts[2], parts[0], parts[1]};
    EXPECT_EQ(output_of(arguments), whole);
    arguments.insert(arguments.end(), {"-o", out_, "--positions", "40"});
    EXPECT_EQ(output_of(arguments), "");
    EXPECT_EQ(bytes_of(out_), whole);

    arguments.back() = "41";
    expect_error(arguments, 1, "the last position is 40 and not 41");
    std::string const part = bytes_of(parts[1]);
    put_bytes(parts[1], part.substr(0, part.rfind("{\"schema\"")));
    put_bytes(out_, "as it was");
    arguments.resize(6);
    expect_error(arguments, 1, "position 38 is missing");
    EXPECT_EQ(bytes_of(out_), "as it was");
    expect_error({"merge", parts[0], parts[0]}, 1, "again in");
}

TEST_F(AnalyseTool, CtrlCEndsItWithWholeLines) {
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

TEST_F(AnalyseTool, CtrlCEndsItWhileItWaitsForInput) {
    ChildProcess child({analyse_binary, {"--limit", "static", "--jobs", "2"}, {}});
    std::this_thread::sleep_for(100ms);
    ASSERT_EQ(::kill(child.id(), SIGINT), 0);
    auto const end = child.wait(patience);
    ASSERT_TRUE(end);
    EXPECT_EQ(end->status, 130);
}

TEST_F(AnalyseTool, AnswersAPipeThatGrowsAsItComes) {
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

TEST_F(AnalyseTool, AFileThatHasGrownIsResumed) {
    std::string const name = input(10);
    output_of({name, "--limit", "static", "--jsonl", out_});
    std::string const whole = output_of({input(25), "--limit", "static"});
    output_of({name, "--limit", "static", "--jsonl", out_, "--resume"});
    EXPECT_EQ(bytes_of(out_), whole);
}

TEST_F(AnalyseTool, TellsAFullDiskAndAClosedPipe) {
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

TEST_F(AnalyseTool, AFullDiskEndsItWhileItWaitsForInput) {
    ChildProcess child(
        {analyse_binary, {"--limit", "static", "--jobs", "2", "--jsonl", "/dev/full"}, {}});
    std::string const text = positions(1);
    ASSERT_EQ(::write(child.input(), text.data(), text.size()), static_cast<ssize_t>(text.size()));
    auto const end = child.wait(patience);
    ASSERT_TRUE(end);
    EXPECT_EQ(end->status, 1);
}

TEST_F(AnalyseTool, TakesAnswersFromACache) {
    std::string const name = input(10);
    std::string const plain = output_of({name, "--limit", "nodes=2000"});
    std::string const cache = directory_.file("cache");
    EXPECT_EQ(output_of({name, "--limit", "nodes=2000", "--cache", cache}), plain);
    EXPECT_EQ(output_of({name, "--limit", "nodes=2000", "--cache", cache, "--jobs", "2"}), plain);
    put_bytes(cache, "no cache");
    expect_error({name, "--limit", "nodes=2000", "--cache", cache}, 1, "cache");
}

TEST_F(AnalyseTool, TwoProcessesShareACache) {
    std::string const name = input(10);
    std::string const plain = output_of({name, "--limit", "nodes=2000"});
    std::string const cache = directory_.file("cache");
    texts_t const arguments = {name,  "--limit", "nodes=2000", "--cache",
                               cache, "--jobs",  "2",          "--jsonl"};
    texts_t first = arguments;
    first.push_back(directory_.file("first"));
    ChildProcess child({analyse_binary, first, {}});
    texts_t second = arguments;
    second.push_back(directory_.file("second"));
    output_of(second);
    auto const end = child.wait(patience);
    ASSERT_TRUE(end);
    EXPECT_EQ(end->status, 0);
    EXPECT_EQ(bytes_of(directory_.file("first")), plain);
    EXPECT_EQ(bytes_of(directory_.file("second")), plain);
}

TEST_F(AnalyseTool, TellsWhatCannotBeRead) {
    expect_error({directory_.file("none")}, 1, "No such file");
    expect_error({directory_.path().string()}, 1, "Is a directory");
    std::string const name = input(5);
    // What comes before is written.
    program_result_t const result = analyse({name, directory_.file("none"), "--limit", "static"});
    EXPECT_EQ(result.status, 1);
    EXPECT_EQ(lines_in(result.output), 5U);
}

TEST_F(AnalyseTool, TellsFaultsOfTheCommandLine) {
    for (texts_t const& arguments :
         std::vector<texts_t>{{"--limit", "depth=101"},
                              {"--limit", "time=3"},
                              {"--lines", "0"},
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
                              {"merge"}}) {
        expect_error(arguments, 2, "");
    }
    EXPECT_NE(output_of({"--help"}).find("--limit"), std::string::npos);
    EXPECT_NE(output_of({"verify", "--help"}).find("--sample"), std::string::npos);
    EXPECT_EQ(output_of({"--version"}), "Orvelin 0.40.1\n");
}

}  // namespace orvelin::test
