// What the program answers to GUIs, testers and people, through pipes.

#include <algorithm>
#include <cstddef>
#include <gtest/gtest.h>
#include <set>
#include <sstream>
#include <string>
#include <vector>

#include "play/play_process.h"
#include "support/child_process.h"
#include "support/positions.h"
#include "support/referee.h"

namespace orvelin::play::test {

namespace {

using orvelin::test::ChildProcess;
using orvelin::test::Referee;
using orvelin::test::short_tests;

struct run_t {
    int status = -1;
    std::string output;
    std::string errors;
};

std::string read_all(int descriptor) {
    std::string text;
    orvelin::test::read_buffer_t buffer;
    while (std::size_t const count = orvelin::test::read_some(descriptor, buffer)) {
        text.append(buffer.data(), count);
    }
    return text;
}

run_t run(std::vector<std::string> const& arguments) {
    ChildProcess child({orvelin::test::play_binary, arguments, {}});
    run_t result;
    result.output = read_all(child.output());
    result.errors = read_all(child.errors());
    auto const end = child.wait(milliseconds(60000));
    result.status = end && end->signal == 0 ? end->status : -1;
    return result;
}

std::vector<std::string> lines_of(std::string const& text) {
    std::vector<std::string> lines;
    std::istringstream stream(text);
    for (std::string line; std::getline(stream, line);) {
        lines.push_back(line);
    }
    return lines;
}

/// All lines up to the answer of `isready`.
std::vector<std::string> told(PlayProcess& process, std::string const& command) {
    process.send_all({command, "isready"});
    std::vector<std::string> texts;
    for (auto const& line : process.read_until("readyok")) {
        texts.push_back(line.text);
    }
    return texts;
}

bool contains(std::vector<std::string> const& lines, std::string const& wanted) {
    return std::find(lines.begin(), lines.end(), wanted) != lines.end();
}

TEST(ProcessPlay, CommandLineTellsVersionAndHelp) {
    run_t const version = run({"--version"});
    EXPECT_EQ(version.status, 0);
    EXPECT_TRUE(version.output.starts_with("Orvelin ")) << version.output;
    EXPECT_EQ(lines_of(version.output).size(), 1U);
    run_t const help = run({"--help"});
    EXPECT_EQ(help.status, 0);
    for (std::string const word : {"bench", "perft", "--version", "--help"}) {
        EXPECT_NE(help.output.find(word), std::string::npos) << word;
    }
    EXPECT_EQ(version.errors + help.errors, "");
}

TEST(ProcessPlay, CommandLineRefusesWhatItDoesNotKnow) {
    for (std::vector<std::string> const& arguments : {std::vector<std::string>{"nonsense"},
                                                      {"bench", "x"},
                                                      {"bench", "0"},
                                                      {"bench", "3", "4"},
                                                      {"perft"},
                                                      {"perft", "-1"},
                                                      {"perft", "3x"}}) {
        run_t const result = run(arguments);
        EXPECT_EQ(result.status, 2) << arguments[0];
        EXPECT_EQ(result.output, "");
        EXPECT_NE(result.errors.find("usage: "), std::string::npos);
    }
}

TEST(ProcessPlay, CommandLineBenchEndsInNodesAndSpeed) {
    std::string const depth = short_tests ? "5" : "12";
    run_t const result = run({"bench", depth});
    EXPECT_EQ(result.status, 0);
    std::vector<std::string> const lines = lines_of(result.output);
    ASSERT_GE(lines.size(), 2U);
    EXPECT_TRUE(lines[lines.size() - 2].starts_with("Nodes searched: "));
    EXPECT_TRUE(lines.back().starts_with("Nodes/second: "));
    if (!short_tests) {
        EXPECT_EQ(lines[lines.size() - 2], "Nodes searched: 2030223");
    }
}

TEST(ProcessPlay, CommandLinePerftCounts) {
    run_t const result = run({"perft", "4"});
    EXPECT_EQ(result.status, 0);
    EXPECT_EQ(lines_of(result.output).back(), "Nodes searched: 197281");
}

TEST(ProcessPlay, HandshakeListsTheOptions) {
    PlayProcess process;
    process.send("uci");
    std::set<std::string> names;
    std::vector<std::string> texts;
    for (auto const& line : process.read_until("uciok")) {
        texts.push_back(line.text);
        if (line.text.starts_with("option name ")) {
            names.insert(line.text.substr(12, line.text.find(" type ") - 12));
        }
    }
    ASSERT_FALSE(texts.empty());
    EXPECT_EQ(texts.back(), "uciok");
    EXPECT_TRUE(texts[0].starts_with("id name Orvelin "));
    EXPECT_TRUE(texts.at(1).starts_with("id author "));
    for (std::string const name :
         {"Hash", "Clear Hash", "Threads", "Ponder", "MultiPV", "OwnBook", "Book File",
          "Move Overhead", "UCI_Chess960", "UCI_LimitStrength", "UCI_Elo", "UCI_ShowWDL",
          "UCI_AnalyseMode", "UCI_EngineAbout", "Log File", "Score Unit"}) {
        EXPECT_TRUE(names.contains(name)) << name;
    }
}

// One go behind the other without a position is for the position that was set last.
TEST(ProcessPlay, TestersGetAnAnswerForThePositionThatWasSetLast) {
    std::vector<std::string> const limits{"go wtime 100", "go btime 100",
                                          "go wtime 100 winc 100 btime 100 binc 100"};
    PlayProcess process;
    for (std::string const& setup :
         {std::string("ucinewgame"), std::string("position startpos moves e2e4"),
          std::string("ucinewgame"), std::string("position startpos moves d2d4 d7d5"),
          "position fen " + std::string(positions::kiwipete)}) {
        process.send(setup);
        Referee board(positions::start);
        if (setup.find("moves") != std::string::npos) {
            std::istringstream moves(setup.substr(setup.find("moves") + 6));
            for (std::string move; moves >> move;) {
                ASSERT_TRUE(board.play(move));
            }
        } else if (setup.starts_with("position fen")) {
            board.start(positions::kiwipete);
        }
        for (std::string const& limit : limits) {
            std::vector<std::string> const answer = process.ask(limit);
            SCOPED_TRACE(setup + ", " + limit);
            EXPECT_TRUE(board.legal(best_move(answer)));
            auto const first = latest_first_line(answer);
            ASSERT_TRUE(first);
            EXPECT_TRUE(first->has_score());
            EXPECT_EQ(first->moves[0], best_move(answer));
        }
    }
}

TEST(ProcessPlay, AnEndedGameHasNoMove) {
    PlayProcess process;
    process.send("position fen 7k/5Q2/6K1/8/8/8/8/8 b - - 0 1");
    std::vector<std::string> const stalemate = process.ask("go depth 5");
    EXPECT_EQ(best_move(stalemate), "0000");
    EXPECT_EQ(read_infos(stalemate).at(0).cp, 0);
    process.send("position fen 7k/6Q1/6K1/8/8/8/8/8 b - - 0 1");
    std::vector<std::string> const mate = process.ask("go wtime 1000");
    EXPECT_EQ(best_move(mate), "0000");
    EXPECT_EQ(read_infos(mate).at(0).mate, 0);
}

TEST(ProcessPlay, AMateIsToldInMoves) {
    PlayProcess process;
    process.send("position fen 6k1/5ppp/8/8/8/8/8/R5K1 w - - 0 1");
    std::vector<std::string> const answer = process.ask("go mate 1");
    EXPECT_EQ(best_move(answer), "a1a8");
    auto const first = latest_first_line(answer);
    ASSERT_TRUE(first);
    EXPECT_EQ(first->mate, 1);
}

TEST(ProcessPlay, BoardIsShown) {
    PlayProcess process;
    process.send("position startpos moves e2e4");
    std::vector<std::string> const lines = told(process, "d");
    EXPECT_TRUE(contains(lines, "4 |   |   |   |   | P |   |   |   |"));
    EXPECT_TRUE(contains(lines, "8 | r | n | b | q | k | b | n | r |"));
    bool moves = false;
    for (std::string const& line : lines) {
        if (line.starts_with("Moves:")) {
            moves = true;
            EXPECT_NE(line.find(" g8f6"), std::string::npos);
        }
    }
    EXPECT_TRUE(moves);
}

TEST(ProcessPlay, EvaluationIsShownAsAWhole) {
    PlayProcess process;
    process.send("position fen " + std::string(positions::kiwipete));
    EXPECT_GT(told(process, "eval").size(), 5U);
}

TEST(ProcessPlay, PerftCountsByMove) {
    PlayProcess process;
    std::vector<std::string> const lines = told(process, "go perft 3");
    EXPECT_TRUE(contains(lines, "Nodes searched: 8902"));
    EXPECT_TRUE(contains(lines, "e2e4: 600"));
    EXPECT_EQ(told(process, "perft 2").size(), lines.size());
}

TEST(ProcessPlay, FlipExchangesTheColours) {
    PlayProcess process;
    process.send_all({"position startpos moves e2e4", "flip"});
    std::string const fen = "FEN: rnbqkbnr/pppp1ppp/8/4p3/8/8/PPPPPPPP/RNBQKBNR w KQkq";
    std::vector<std::string> const lines = told(process, "d");
    EXPECT_TRUE(std::any_of(lines.begin(), lines.end(),
                            [&](std::string const& line) { return line.starts_with(fen); }));
}

TEST(ProcessPlay, BenchInsideLeavesTheBoardUsable) {
    PlayProcess process;
    EXPECT_TRUE(told(process, "bench 4")[3].starts_with("Nodes searched: "));
    EXPECT_TRUE(Referee().legal(best_move(process.ask("go depth 3"))));
}

TEST(ProcessPlay, ChancesAreToldWhenWanted) {
    PlayProcess process;
    for (std::string const& line : process.ask("go depth 3")) {
        EXPECT_EQ(line.find(" wdl "), std::string::npos);
    }
    process.set_option("UCI_ShowWDL", "true");
    EXPECT_NE(process.ask("go depth 3")[0].find(" wdl "), std::string::npos);
}

}  // namespace

}  // namespace orvelin::play::test
