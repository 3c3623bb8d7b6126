#include <algorithm>
#include <cstdint>
#include <gtest/gtest.h>
#include <sstream>
#include <string>
#include <vector>

#include "support/data_file.h"
#include "support/positions.h"
#include "support/program.h"
#include "support/session_reader.h"
#include "support/test_config.h"
#include "support/text_pattern.h"

namespace orvelin::test {

namespace {

constexpr char const* kiwipete = positions::kiwipete;
constexpr char const* bare_castling = "4k3/8/8/8/8/8/8/1RK4R w BH - 0 1";

program_result_t perft(std::vector<std::string> const& arguments) {
    return run_program(perft_binary, arguments);
}

/// The lines that the tool prints; a failure when it does not end well.
std::vector<std::string> lines_of(std::vector<std::string> const& arguments) {
    program_result_t const result = perft(arguments);
    EXPECT_EQ(result.status, 0) << result.errors;
    EXPECT_EQ(result.signal, 0);
    std::vector<std::string> lines;
    std::istringstream in(result.output);
    for (std::string line; std::getline(in, line);) {
        lines.push_back(line);
    }
    return lines;
}

bool contains(std::vector<std::string> const& lines, std::string const& line) {
    return std::find(lines.begin(), lines.end(), line) != lines.end();
}

/// Bad usage: nothing on standard output, the tool's name and this text in the error.
void expect_usage_error(std::vector<std::string> const& arguments, std::string const& text) {
    program_result_t const result = perft(arguments);
    EXPECT_EQ(result.status, 2) << text;
    EXPECT_EQ(result.signal, 0) << text;
    EXPECT_EQ(result.output, "") << text;
    EXPECT_TRUE(result.errors.starts_with("orvelin-perft: ")) << result.errors;
    EXPECT_NE(result.errors.find(text), std::string::npos) << result.errors;
}

}  // namespace

TEST(PerftTool, CountsFromTheStartPositionWhenNoOtherIsGiven) {
    EXPECT_EQ(lines_of({"3"}), std::vector<std::string>{"8902"});
}

TEST(PerftTool, Depth0HasOneLeaf) {
    EXPECT_EQ(lines_of({"0"}), std::vector<std::string>{"1"});
    EXPECT_EQ(lines_of({"0", "--divide"}), std::vector<std::string>{"1"});
    EXPECT_EQ(lines_of({"0", "--check"}), std::vector<std::string>{"1"});
}

TEST(PerftTool, CountsTheLeavesOfKnownPositions) {
    constexpr std::size_t wanted = short_tests ? 2 : 12;
    constexpr std::uint64_t leaf_limit = short_tests ? 100'000 : 400'000;
    std::size_t done = 0;
    for (session_t const& session : read_sessions("perft.txt")) {
        std::string fen;
        for (session_command_t const& command : session.commands) {
            if (command.text.starts_with("pos ")) {
                fen = command.text.substr(4);
            }
            if (!command.text.starts_with("perft ")) {
                continue;
            }
            std::vector<std::string> const answer = split_words(command.answer.at(0));
            if (done >= wanted || std::stoull(answer.at(2)) > leaf_limit) {
                continue;
            }
            EXPECT_EQ(lines_of({answer[1], "--fen", fen}), std::vector<std::string>{answer[2]})
                << fen;
            ++done;
        }
    }
    EXPECT_EQ(done, wanted);
}

TEST(PerftTool, DividePrintsALineAMoveAndTheirSum) {
    std::vector<std::string> lines = lines_of({"3", "--divide", "--fen", kiwipete});
    ASSERT_EQ(lines.size(), 49U);
    EXPECT_TRUE(contains(lines, "e1g1: 2059"));
    EXPECT_TRUE(contains(lines, "g2h3: 1970"));
    EXPECT_EQ(lines.back(), "97862");
    lines.pop_back();
    std::uint64_t sum = 0;
    for (std::string const& line : lines) {
        EXPECT_TRUE(matches(line, "[a-h][1-8][a-h][1-8][qrbn]?: \\d+")) << line;
        sum += std::stoull(line.substr(line.find(' ')));
    }
    EXPECT_EQ(sum, 97862U);
    EXPECT_EQ(lines_of({"3", "--fen", kiwipete}), std::vector<std::string>{"97862"});
}

TEST(PerftTool, DivideAtDepth1HasOneLeafAMove) {
    std::vector<std::string> const lines = lines_of({"1", "--divide"});
    EXPECT_EQ(lines.size(), 21U);
    EXPECT_TRUE(contains(lines, "e2e4: 1"));
    EXPECT_EQ(lines.back(), "20");
}

TEST(PerftTool, CheckCountsTheSameLeaves) {
    std::string const depth = short_tests ? "2" : "3";
    EXPECT_EQ(lines_of({depth, "--check", "--divide", "--fen", kiwipete}),
              lines_of({depth, "--divide", "--fen", kiwipete}));
}

TEST(PerftTool, APositionWithoutMovesHasNoLeaves) {
    EXPECT_EQ(lines_of({"2", "--divide", "--fen", "7k/5Q2/6K1/8/8/8/8/8 b - - 0 1"}),
              std::vector<std::string>{"0"});
}

TEST(PerftTool, Chess960WritesCastlingAsTheKingTakingHisRook) {
    std::vector<std::string> const lines =
        lines_of({"1", "--divide", "--chess960", "--fen", bare_castling});
    EXPECT_TRUE(contains(lines, "c1h1: 1"));
    EXPECT_TRUE(contains(lines, "c1b1: 1"));
    EXPECT_FALSE(contains(lines, "c1g1: 1"));
}

TEST(PerftTool, WithoutChess960CastlingIsWrittenAsTheKingsMove) {
    std::vector<std::string> const plain = lines_of({"1", "--divide", "--fen", kiwipete});
    EXPECT_TRUE(contains(plain, "e1g1: 1"));
    EXPECT_FALSE(contains(plain, "e1h1: 1"));
    std::vector<std::string> const chess960 =
        lines_of({"1", "--divide", "--chess960", "--fen", kiwipete});
    EXPECT_TRUE(contains(chess960, "e1h1: 1"));
    EXPECT_FALSE(contains(chess960, "e1g1: 1"));
}

TEST(PerftTool, TellsTimeAndSpeedOnStandardError) {
    EXPECT_TRUE(matches(perft({"2"}).errors, "\\d+\\.\\d\\d\\d s, \\d+ leaves per second\n"));
}

TEST(PerftTool, HelpNamesEveryOptionAndEndsWell) {
    program_result_t const result = perft({"--help"});
    EXPECT_EQ(result.status, 0);
    EXPECT_EQ(result.errors, "");
    for (char const* word : {"DEPTH", "--fen", "--divide", "--check", "--chess960"}) {
        EXPECT_NE(result.output.find(word), std::string::npos) << word;
    }
}

TEST(PerftTool, RefusesBadArguments) {
    expect_usage_error({}, "DEPTH is required");
    expect_usage_error({"-1"}, "DEPTH");
    expect_usage_error({"101"}, "DEPTH");
    expect_usage_error({"three"}, "DEPTH");
    expect_usage_error({"3", "4"}, "4");
    expect_usage_error({"3", "--depth"}, "--depth");
    expect_usage_error({"3", "--fen"}, "--fen");
}

TEST(PerftTool, RefusesPositionsThatMoveGenerationDoesNotTake) {
    expect_usage_error({"1", "--fen", ""}, "the placement and the side to move are needed");
    expect_usage_error({"1", "--fen", "4x3/8/8/8/8/8/8/4K3 w - - 0 1"}, "'x' is no piece");
    expect_usage_error({"1", "--fen", "8/8/8/8/8/8/8/4K3 w - - 0 1"},
                       "Black has not exactly one king");
    expect_usage_error({"1", "--fen", "4k3/4R3/8/8/8/8/8/4K3 w - - 0 1"},
                       "the side that is not to move is in check");
}

TEST(PerftTool, AnOutputThatCannotBeWrittenIsAFailure) {
    program_result_t const result =
        run_program("/bin/sh", {"-c", "exec \"$0\" 1 >/dev/full", perft_binary});
    EXPECT_EQ(result.status, 1);
    EXPECT_NE(result.errors.find("orvelin-perft: cannot write to standard output\n"),
              std::string::npos)
        << result.errors;
}

}  // namespace orvelin::test
