// What is wrong is told in a line, and the process lives on; what ends it, ends it at once.

#include <chrono>
#include <csignal>
#include <cstddef>
#include <gtest/gtest.h>
#include <iostream>
#include <random>
#include <string>
#include <thread>
#include <unistd.h>
#include <utility>
#include <vector>

#include "play/play_process.h"
#include "support/child_process.h"
#include "support/positions.h"
#include "support/program.h"
#include "support/test_config.h"

namespace orvelin::play::test {

namespace {

using orvelin::test::ChildProcess;
using orvelin::test::process_end_t;
using orvelin::test::short_tests;
using clock = PlayProcess::clock;

constexpr milliseconds at_once{short_tests ? 5000 : 500};

/// Waits for the end and tells how long it took; the status, or -1 for a signal or no end.
template <class Process>
int end_status(Process& process, std::string const& what) {
    clock::time_point const begin = clock::now();
    auto const end = process.wait(milliseconds(20000));
    auto const time = std::chrono::duration<double, std::milli>(clock::now() - begin);
    std::cout << what << ": ended after " << time.count() << " ms\n";
    EXPECT_LT(time, at_once) << what;
    return end && end->signal == 0 ? end->status : -1;
}

void write_text(ChildProcess const& child, std::string const& text) {
    ASSERT_EQ(::write(child.input(), text.data(), text.size()), static_cast<ssize_t>(text.size()));
}

TEST(ProcessPlayHostile, EachFaultIsToldAndTheProcessLivesOn) {
    PlayProcess process;
    std::vector<std::string> const faults{
        "nonsense",
        "position",
        "position fen",
        "position fen 8/8/8/8 w - - 0 1",
        "position fen 9/8/8/8/8/8/8/8 w - - 0 1",
        "position fen xnbqkbnr/pppppppp/8/8/8/8/PPPPPPPP/RNBQKBNR w KQkq - 0 1",
        "position fen 8/8/8/8/8/8/8/8 w - - 0 1",
        "position startpos moves e2e5",
        "position startpos moves e2e4 zzzz",
        "setoption",
        "setoption name Nothing value 3",
        "setoption name Hash value 0",
        "setoption name Hash value 99999999999999999999",
        "setoption name Hash value -5",
        "setoption name MultiPV value many",
        "setoption name Move Overhead value 5001",
        "setoption name UCI_Elo value 100",
        "setoption name Threads value 2",
        "setoption name UCI_LimitStrength value perhaps",
        "setoption name Book File value /nowhere/at all.bin",
        "setoption name Log File value /nowhere/at all.log",
        "ponderhit",
        std::string("is\0ready", 8),
        std::string(std::size_t{3} << 20, 'x'),
        "\xff\xfe\x80 \x1b[2J",
    };
    for (std::string const& fault : faults) {
        process.send(fault);
        process.send("isready");
        std::vector<std::string> texts;
        for (auto const& line : process.read_until("readyok")) {
            texts.push_back(line.text);
        }
        SCOPED_TRACE(fault.substr(0, 60));
        ASSERT_GE(texts.size(), 2U);
        EXPECT_EQ(texts.back(), "readyok");
        std::size_t told = 0;
        for (std::string const& text : texts) {
            told += text.starts_with("info string ") ? 1U : 0U;
            EXPECT_LT(text.size(), 400U);
        }
        EXPECT_GE(told, 1U);
    }
}

TEST(ProcessPlayHostile, ARefusedPositionIsNotSearched) {
    PlayProcess process;
    for (std::string const command :
         {"position fen 8/8/8/8 w - - 0 1", "position startpos moves e2e4 e2e4"}) {
        process.send("position startpos moves d2d4");
        process.send(command);
        std::vector<std::string> const answer = process.ask("go depth 3");
        EXPECT_EQ(best_move(answer), "0000");
        ASSERT_GE(answer.size(), 2U);
        EXPECT_TRUE(answer[answer.size() - 2].starts_with("info string "));
        process.send_all({"d", "eval", "flip", "perft 2"});
        EXPECT_TRUE(process.ready());
    }
    process.send("position startpos");
    EXPECT_NE(best_move(process.ask("go depth 3")), "0000");
}

TEST(ProcessPlayHostile, WhatASearchDoesNotAllowIsRefused) {
    PlayProcess process;
    process.send_all({"position startpos moves e2e4", "go infinite"});
    for (std::string const command :
         {"go depth 1", "position startpos", "ucinewgame", "setoption name Hash value 1",
          "setoption name Clear Hash", "d", "eval", "flip", "bench 1", "perft 1"}) {
        process.send(command);
        EXPECT_FALSE(process.find("info string ").empty()) << command;
    }
    // A move of Black answers: the position is the old one.
    std::string const best = best_move(process.ask("stop"));
    ASSERT_EQ(best.size(), 4U);
    EXPECT_GE(best[1], '7');
    EXPECT_TRUE(process.ready());
    EXPECT_TRUE(process.rest().empty());
}

TEST(ProcessPlayHostile, AHashThatDoesNotFitIsRefusedOrTaken) {
    PlayProcess process;
    process.send("setoption name Hash value 65536");
    process.send("setoption name Hash value 65537");
    process.send("position startpos");
    EXPECT_FALSE(best_move(process.ask("go depth 4")).empty());
    EXPECT_TRUE(process.ready());
}

TEST(ProcessPlayHostile, EndOfInputIsQuitInTheMiddleOfASearch) {
    for (std::string const lines : {"1", "50"}) {
        PlayProcess process;
        process.set_option("MultiPV", lines);
        process.send_all({"position startpos", "go infinite"});
        std::this_thread::sleep_for(milliseconds(150));
        process.close_input();
        EXPECT_EQ(end_status(process, "end of input"), 0);
    }
}

TEST(ProcessPlayHostile, QuitEndsASearch) {
    PlayProcess process;
    process.send_all({"position startpos", "go infinite", "quit"});
    EXPECT_EQ(end_status(process, "quit"), 0);
}

TEST(ProcessPlayHostile, ASignalEndsItWithItsStatus) {
    for (auto const& [signal, status] :
         std::vector<std::pair<int, int>>{{SIGTERM, 143}, {SIGINT, 130}, {SIGHUP, 129}}) {
        for (std::string const text : {"isready\n", "go infinite\n", "go perft 9\n"}) {
            ChildProcess child({orvelin::test::play_binary, {}, {}});
            write_text(child, text);
            std::this_thread::sleep_for(milliseconds(150));
            ASSERT_EQ(::kill(child.id(), signal), 0);
            EXPECT_EQ(end_status(child, "signal " + std::to_string(signal)), status) << text;
        }
    }
}

TEST(ProcessPlayHostile, ALostOutputEndsIt) {
    for (std::string const text : {"isready\n", "go infinite\n"}) {
        // The shell's second command reads a line and is gone.
        ChildProcess shell(
            {"/bin/sh",
             {"-c", "{ \"$0\"; echo $? >&2; } | head -n 1 >/dev/null", orvelin::test::play_binary},
             {}});
        write_text(shell, std::string("isready\n") + text);
        clock::time_point const begin = clock::now();
        orvelin::test::read_buffer_t buffer;
        std::size_t const count = orvelin::test::read_some(shell.errors(), buffer);
        EXPECT_LT(clock::now() - begin, at_once + milliseconds(500)) << text;
        EXPECT_EQ(std::string(buffer.data(), count), "1\n");
    }
}

TEST(ProcessPlayHostile, WithoutInputOrOutputItEnds) {
    using orvelin::test::run_program;
    std::string const& binary = orvelin::test::play_binary;
    EXPECT_EQ(run_program("/bin/sh", {"-c", "exec \"$0\" <&-", binary}).status, 0);
    EXPECT_EQ(run_program("/bin/sh", {"-c", "exec \"$0\" >&-", binary}).status, 1);
}

// The pipe is full, so that every thread that has to tell something waits.
TEST(ProcessPlayHostile, ASignalEndsItWhenNobodyReads) {
    ChildProcess child({orvelin::test::play_binary, {}, {}});
    write_text(child, "setoption name MultiPV value 50\ngo infinite\n");
    std::string uci;
    for (int i = 0; i < 500; ++i) {
        uci += "uci\n";
    }
    write_text(child, uci);
    std::this_thread::sleep_for(milliseconds(short_tests ? 2000 : 500));
    ASSERT_EQ(::kill(child.id(), SIGTERM), 0);
    EXPECT_EQ(end_status(child, "signal with full output"), 143);
}

TEST(ProcessPlayHostile, ALineWithoutItsEndIsActedOn) {
    PlayProcess process;
    process.write("isready");
    process.close_input();
    EXPECT_EQ(end_status(process, "end of input"), 0);
    EXPECT_EQ(process.rest(), std::vector<std::string>{"readyok"});
}

TEST(ProcessPlayHostile, LinesMayEndInBothWays) {
    PlayProcess process;
    process.write("isready\r\n\r\n\n  \t isready  \r\n");
    EXPECT_EQ(process.find("readyok"), "readyok");
    EXPECT_EQ(process.find("readyok"), "readyok");
}

std::string storm_command(std::mt19937& random) {
    static std::vector<std::string> const commands{
        "uci",
        "isready",
        "ucinewgame",
        "stop",
        "stop",
        "stop",
        "ponderhit",
        "debug on",
        "register later",
        "d",
        "eval",
        "flip",
        "position startpos",
        "position startpos moves e2e4 e7e5 g1f3",
        "position startpos moves e2e4 e2e4",
        "position fen " + std::string(positions::kiwipete),
        "position fen " + std::string(positions::promotions),
        "position fen 6k1/5ppp/8/8/8/8/8/R5K1 w - - 0 1",
        "position fen 7k/5Q2/6K1/8/8/8/8/8 b - - 0 1",
        "position fen 7k/8/8/8 b - - 0 1",
        "go",
        "go infinite",
        "go depth 3",
        "go nodes 500",
        "go mate 2",
        "go movetime 3",
        "go wtime 20 btime 20",
        "go wtime -5 btime 9999999999999 movestogo 0",
        "go ponder wtime 100 btime 100",
        "go perft 2",
        "go depth x searchmoves",
        "go searchmoves e2e4 d2d4 depth 2",
        "setoption name MultiPV value 5",
        "setoption name MultiPV value 1",
        "setoption name Hash value 1",
        "setoption name Hash value 8",
        "setoption name Clear Hash",
        "setoption name UCI_LimitStrength value true",
        "setoption name UCI_LimitStrength value false",
        "setoption name UCI_Elo value 900",
        "setoption name UCI_Chess960 value true",
        "setoption name OwnBook value true",
        "setoption name UCI_ShowWDL value true",
        "setoption name Score Unit value engine",
    };
    std::string command = commands[random() % commands.size()];
    // With another digit a count would outlast every test.
    if (random() % 8 == 0 && command.find("perft") == std::string::npos) {
        command[random() % command.size()] = static_cast<char>(random() % 256);
    }
    return command;
}

TEST(ProcessPlayHostile, AStormOfCommandsLeavesItAlive) {
    PlayProcess process;
    std::mt19937 random(29);
    clock::time_point const end = clock::now() + milliseconds(short_tests ? 3000 : 6000);
    while (clock::now() < end) {
        std::string sent;
        for (int i = 0; i < 10; ++i) {
            sent += storm_command(random) + '\n';
        }
        process.write(sent);
        std::this_thread::sleep_for(milliseconds(random() % 4));
        process.send("stop");
        ASSERT_TRUE(process.ready()) << sent;
    }
    process.send_all({"stop", "ucinewgame"});
    ASSERT_TRUE(process.ready());
    process.read_for(milliseconds(300));
    process.send_all({"setoption name UCI_LimitStrength value false",
                      "setoption name OwnBook value false", "position startpos"});
    EXPECT_FALSE(best_move(process.ask("go depth 3")).empty());
}

}  // namespace

}  // namespace orvelin::play::test
