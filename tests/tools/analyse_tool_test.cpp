// orvelin-analyse as a process: what it writes, and that it is the same however it came about.

#include "tools/analyse_tool.h"

#include <filesystem>
#include <gtest/gtest.h>
#include <string>

namespace orvelin::test::analysis {

namespace {

class AnalyseTool : public AnalyseProcess {};

constexpr char const* two_games =
    "[Event \"A\"]\n[White \"M\xFCller\"]\n[Black \"B\"]\n[Result \"1-0\"]\n\n"
    "1. e4 e5 2. Bc4 Nc6 3. Qh5 Nf6 4. Qxf7# 1-0\n\n[Event \"B\"]\n\n1. d4 d5 2. c4 *\n";

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

TEST_F(AnalyseTool, TellsHowMuchThereWas) {
    auto const errors = [](texts_t const& arguments, std::string const& input) {
        program_result_t const result = analyse(arguments, input);
        EXPECT_EQ(result.status, 0) << result.errors;
        return result.errors;
    };
    EXPECT_EQ(errors({"--limit", "static"}, two_games), "orvelin-analyse: 2 games, 12 positions\n");
    EXPECT_EQ(errors({"--limit", "static"}, ""), "orvelin-analyse: 0 positions\n");
    EXPECT_EQ(errors({"--limit", "static", "--quiet"}, two_games), "");
    // A game that is too short is no failure, though another one is broken.
    std::string const broken = "[Event \"x\"]\n\n1. e4 e5 2. Sf3 *\n\n" + std::string(two_games);
    std::string const told = errors({"--limit", "static", "--plies", "200-"}, broken);
    EXPECT_NE(told.find("2 games, 0 positions, 1 left out\n"), std::string::npos) << told;
    EXPECT_NE(told.find("English letters"), std::string::npos) << told;
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
    EXPECT_EQ(output_of({"verify", out_, "--jobs", "2", "--quiet"}),
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
    expect_error({"verify", "-"}, 1, "only the files of --jsonl", "number,file\r\n");
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

    expect_error(arguments, 1, "--overwrite replaces it");
    arguments.emplace_back("--overwrite");
    EXPECT_EQ(output_of(arguments), "");
    arguments.pop_back();
    std::filesystem::remove(out_);
    arguments.back() = "41";
    expect_error(arguments, 1, "the last position is 40 and not 41");
    std::string const part = bytes_of(parts[1]);
    put_bytes(parts[1], part.substr(0, part.rfind("{\"schema\"")));
    put_bytes(out_, "as it was");
    arguments.resize(6);
    arguments.emplace_back("--overwrite");
    expect_error(arguments, 1, "position 38 is missing");
    EXPECT_EQ(bytes_of(out_), "as it was");
    arguments.resize(4);
    put_bytes(parts[1], part);
    arguments.insert(arguments.end(), {"-o", out_, "--overwrite"});
    expect_error(arguments, 1, "cannot overwrite");
    EXPECT_EQ(bytes_of(out_), "as it was");
    put_bytes(out_, whole.substr(0, 300));
    EXPECT_EQ(output_of(arguments), "");
    EXPECT_EQ(bytes_of(out_), whole);
    expect_error({"merge", parts[0], parts[1], parts[0]}, 2, parts[0] + " is given twice");
    std::filesystem::create_hard_link(parts[0], directory_.file("other"));
    expect_error({"merge", parts[0], directory_.file("other")}, 2, "are the same file");
    put_bytes(directory_.file("copy"), bytes_of(parts[0]));
    expect_error({"merge", parts[0], directory_.file("copy")}, 1, "again in");
}

// The first position is answered at once, the others take long.
TEST_F(AnalyseTool, TellsTheTimeThatIsLeftOfAShortFileToo) {
    std::string const name = directory_.file("in.fen");
    put_bytes(name, "7k/5Q2/6K1/8/8/8/8/8 b - - 0 60\n" + positions(3));
    ChildProcess child({analyse_binary, {name, "--limit", "depth=60"}, directory_.path()});
    std::string const told = read_lines(child.errors(), 1);
    EXPECT_TRUE(told.starts_with("1 position, ")) << told;
    EXPECT_TRUE(told.ends_with(" left\n")) << told;
}

TEST_F(AnalyseTool, AFileThatHasGrownIsResumed) {
    std::string const name = input(10);
    output_of({name, "--limit", "static", "--jsonl", out_});
    std::string const whole = output_of({input(25), "--limit", "static"});
    output_of({name, "--limit", "static", "--jsonl", out_, "--resume"});
    EXPECT_EQ(bytes_of(out_), whole);
}

TEST_F(AnalyseTool, TakesAnswersFromACache) {
    std::string const name = input(10);
    std::string const plain = output_of({name, "--limit", "nodes=2000"});
    std::string const cache = directory_.file("cache");
    EXPECT_EQ(output_of({name, "--limit", "nodes=2000", "--cache", cache}), plain);
    EXPECT_EQ(output_of({name, "--limit", "nodes=2000", "--cache", cache, "--jobs", "2"}), plain);
    put_bytes(cache, "no cache");
    expect_error({name, "--limit", "nodes=2000", "--cache", cache}, 1, "cache");
    expect_error({name, "--jsonl", cache, "--cache", cache}, 2, "cannot both go to");
    expect_error({name, "--jsonl", cache, "--overwrite", "--cache", directory_.file("./cache")}, 2,
                 "cannot be written too");
    expect_error({name, "--cache", name}, 2, "cannot be written too");
    EXPECT_EQ(bytes_of(cache), "no cache");
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

}  // namespace orvelin::test::analysis
