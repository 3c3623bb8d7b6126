#include <algorithm>
#include <chrono>
#include <csignal>
#include <gtest/gtest.h>
#include <string>
#include <vector>

#include "support/data_file.h"
#include "support/engine_process.h"
#include "support/positions.h"
#include "support/referee.h"
#include "support/test_config.h"
#include "support/text_pattern.h"

namespace orvelin::test {
namespace {

using lines_t = std::vector<std::string>;
using namespace std::chrono_literals;

/// The position that the engine holds. A bad `usermove` prints it, and ends the process.
std::string final_fen(EngineProcess& engine) {
    engine.send("usermove ?");
    engine.wait();
    std::string const errors = engine.error_text();
    return errors.substr(0, errors.find("    move="));
}

/// The answer to the commands: the `bestmove` line.
std::string answer(EngineProcess& engine, lines_t const& commands) {
    engine.send_all(commands);
    return engine.find("bestmove");
}

bool is_legal(std::string const& fen, std::string const& best_move_line) {
    lines_t const legal = Referee(fen).legal_moves();
    std::string const move = split_words(best_move_line).at(1);
    return std::find(legal.begin(), legal.end(), move) != legal.end();
}

void expect_abort(EngineProcess& engine, std::string const& exception_text) {
    auto const end = engine.wait();
    ASSERT_TRUE(end.has_value());
    EXPECT_EQ(end->signal, SIGABRT);
    EXPECT_NE(engine.error_text().find(exception_text + "\n"), std::string::npos)
        << engine.error_text();
}

TEST(ProcessPositionTest, EveryFormSetsThePosition) {
    struct {
        lines_t commands;
        std::string fen;
    } const cases[] = {
        {{}, start_fen},
        {{"position startpos"}, start_fen},
        {{"position startpos moves e2e4 e7e5 e1e2"},
         "rnbqkbnr/pppp1ppp/8/4p3/4P3/8/PPPPKPPP/RNBQ1BNR b kq - 1 2"},
        {{"position fen 4k3/8/8/8/8/8/8/4K2R w K - 5 9"}, "4k3/8/8/8/8/8/8/4K2R w K - 5 9"},
        {{"position fen 4k3/8/8/8/8/8/8/4K2R w K - 5 9 moves e1g1"},
         "4k3/8/8/8/8/8/8/5RK1 b - - 6 9"},
        {{"position testpos"}, "b4bN1/4p1p1/1Q1p2K1/q1np4/3p1Rnk/6pr/4Rppr/3N4 w - - 0 1"},
        {{"position startpos moves e2e4", "position nowhere"},
         "rnbqkbnr/pppppppp/8/8/4P3/8/PPPP1PPP/RNBQKBNR b KQkq - 0 1"},
        {{"position startpos moves e2e4", "position startpos moves e2e4 e7e5 g1f3 g8f6"},
         "rnbqkb1r/pppp1ppp/5n2/4p3/4P3/5N2/PPPP1PPP/RNBQKB1R w KQkq - 2 3"},
        {{"position startpos moves e2e4", "position startpos moves e2e4 e7e5"},
         "rnbqkbnr/pppp1ppp/8/4p3/4P3/8/PPPP1PPP/RNBQKBNR w KQkq - 0 2"},
        {{"position startpos moves e2e4", "usermove c7c5"},
         "rnbqkbnr/pp1ppppp/8/2p5/4P3/8/PPPP1PPP/RNBQKBNR w KQkq - 0 2"},
        {{"position startpos moves e2e4", "ucinewgame"}, start_fen},
    };
    for (auto const& item : cases) {
        EngineProcess engine;
        engine.send_all(item.commands);
        EXPECT_EQ(final_fen(engine), item.fen);
    }
}

TEST(ProcessPositionTest, TheIncrementalPathFollowsAWholeOpening) {
    EngineProcess engine;
    std::string line = "position startpos moves e2e4";
    Referee referee(start_fen);
    ASSERT_TRUE(referee.play("e2e4"));
    for (int move = 0; move < 6; ++move) {
        std::string const best = answer(engine, {line, "go depth 2"});
        std::string const own = split_words(best).at(1);
        ASSERT_TRUE(referee.play(own)) << best;
        std::string const reply = referee.legal_moves().front();
        ASSERT_TRUE(referee.play(reply));
        line.append(" ").append(own).append(" ").append(reply);
    }
    engine.send(line);
    EXPECT_EQ(final_fen(engine), referee.fen());
}

TEST(ProcessPositionTest, PositionDuringASearchStopsItSilently) {
    EngineProcess engine;
    engine.send_all({"position startpos", "go wtime 600000 btime 600000"});
    ASSERT_TRUE(engine.find("info depth").starts_with("info depth"));
    engine.send_all({"position startpos moves d2d4", "isready"});
    for (auto const& line : engine.read_until("readyok")) {
        EXPECT_FALSE(line.text.starts_with("bestmove")) << line.text;
    }
    // The state is still that of a thinking engine: the next go is refused.
    engine.send("go depth 1");
    EXPECT_TRUE(engine.read_for(200ms).empty());
    engine.send("stop");
    EXPECT_TRUE(engine.find("bestmove").starts_with("bestmove "));
    EXPECT_TRUE(is_legal("rnbqkbnr/pppppppp/8/8/3P4/8/PPP1PPPP/RNBQKBNR b KQkq - 0 1",
                         answer(engine, {"position startpos moves d2d4", "go depth 2"})));
}

TEST(ProcessPositionTest, ABadMoveEndsTheProcess) {
    struct {
        lines_t commands;
        std::string text;
    } const cases[] = {
        {{"position startpos moves e2e4 e7e9"},
         "ChessPosition::convert_to_move(const string& e7e9)"},
        {{"position startpos moves e2e4", "position startpos moves e2e4 x"},
         "ChessPosition::convert_to_move(const string& x)"},
        {{"position"}, "ChessPosition::convert_to_move(const string& osition)"},
        {{"go depth 1 searchmoves a2a3 depth 1"},
         "ChessPosition::convert_to_move(const string& depth)"},
        {{"usermove e2e4qq"}, "Engine::from_console() error"},
    };
    for (auto const& item : cases) {
        EngineProcess engine;
        engine.send_all(item.commands);
        expect_abort(engine, item.text);
        EXPECT_NE(engine.error_text().find("std::logic_error"), std::string::npos);
    }
}

TEST(ProcessPositionTest, ABadUsermoveTellsThePositionFirst) {
    EngineProcess engine;
    engine.send_all({"position startpos moves e2e4", "usermove e7-e5"});
    expect_abort(engine, "Engine::from_console() error");
    EXPECT_TRUE(engine.error_text().starts_with(
        "rnbqkbnr/pppppppp/8/8/4P3/8/PPPP1PPP/RNBQKBNR b KQkq - 0 1    move=e7-e5\n"))
        << engine.error_text();
}

TEST(ProcessSearchTest, EveryTokenOfGoLeadsToALegalMove) {
    for (std::string const go : {
             "go depth 3",
             "go mate 2",
             "go nodes 500",
             "go movetime 50",
             "go movetime 300",
             "go wtime 2000 btime 2000",
             "go wtime 2000 btime 2000 winc 10 binc 10",
             "go wtime 2000 btime 2000 movestogo 5",
             "go depth 2 searchmoves a2a3 b2b4",
             "go depth 3 searchmoves",
         }) {
        EngineProcess engine;
        std::string const line = answer(engine, {"position startpos", go});
        EXPECT_TRUE(matches(line, ("bestmove [a-h][1-8][a-h][1-8]( ponder [a-h][1-8][a-h][1-8])?")))
            << go << ": " << line;
        EXPECT_TRUE(is_legal(start_fen, line)) << go << ": " << line;
    }
}

TEST(ProcessSearchTest, GoWithoutLimitsEndsByStop) {
    for (std::string const go : {"go", "go infinite", "go ponder", "go wtime -1 btime -1"}) {
        EngineProcess engine;
        engine.send_all({"position startpos", go});
        ASSERT_TRUE(engine.find("info depth").starts_with("info depth")) << go;
        for (auto const& line : engine.read_for(200ms)) {
            EXPECT_TRUE(line.text.starts_with("info ")) << line.text;
        }
        engine.send("stop");
        EXPECT_TRUE(is_legal(start_fen, engine.find("bestmove"))) << go;
    }
}

TEST(ProcessSearchTest, GoDepthZeroAnswersTheEmptyMove) {
    EngineProcess engine;
    engine.send_all({"position startpos", "go depth 0"});
    auto const lines = engine.read_until("bestmove");
    ASSERT_EQ(lines.size(), 2U);
    EXPECT_EQ(lines[0].text, "info hashfull 0");
    EXPECT_EQ(lines[1].text, "bestmove 0000");
    EXPECT_EQ(final_fen(engine), "rnbqkbnr/pppppppp/8/8/8/8/PPPPPPPP/RNBQKBNR b KQkq - 1 1");
}

TEST(ProcessSearchTest, APonderedMoveIsHeldBackUntilPonderhit) {
    EngineProcess engine;
    engine.send_all({"position startpos moves e2e4 e7e5", "go ponder depth 3"});
    for (auto const& line : engine.read_for(400ms)) {
        EXPECT_TRUE(line.text.starts_with("info depth")) << line.text;
    }
    engine.send("ponderhit");
    auto const lines = engine.read_until("bestmove");
    ASSERT_GE(lines.size(), 2U);
    EXPECT_TRUE(lines.back().text.starts_with("bestmove "));
    EXPECT_TRUE(lines[lines.size() - 2].text.starts_with("info hashfull "));
}

TEST(ProcessSearchTest, PonderhitDuringTheSearchLetsTheClockEndIt) {
    EngineProcess engine;
    engine.send_all({"position startpos", "go ponder wtime 2000 btime 2000"});
    for (auto const& line : engine.read_for(500ms)) {
        EXPECT_TRUE(line.text.starts_with("info depth")) << line.text;
    }
    engine.send("ponderhit");
    EXPECT_TRUE(is_legal(start_fen, engine.find("bestmove")));
}

TEST(ProcessSearchTest, AnInfiniteSearchThatEndsByItselfIsHeldBackUntilStop) {
    EngineProcess engine;
    // A start under a sanitizer may take longer than the search.
    engine.send("isready");
    engine.read_until("readyok");
    engine.send_all({"position fen 6k1/5ppp/8/8/8/8/8/R5K1 w - - 0 1", "go infinite"});
    for (auto const& line : engine.read_for(400ms)) {
        EXPECT_TRUE(line.text.starts_with("info depth")) << line.text;
    }
    engine.send("stop");
    EXPECT_EQ(engine.find("bestmove"), "bestmove a1a8");
}

TEST(ProcessSearchTest, ARefusedGoLeavesTheSearchRunning) {
    EngineProcess engine;
    engine.send_all({"position startpos", "go wtime 600000 btime 600000"});
    ASSERT_TRUE(engine.find("info depth").starts_with("info depth"));
    engine.send("go depth 1");
    for (auto const& line : engine.read_for(300ms)) {
        EXPECT_TRUE(line.text.starts_with("info depth")) << line.text;
    }
    engine.send("stop");
    EXPECT_TRUE(is_legal(start_fen, engine.find("bestmove")));
    EXPECT_TRUE(engine.read_for(100ms).empty());
}

TEST(ProcessSearchTest, AClockTooSmallForItsMovesEndsTheProcess) {
    EngineProcess engine;
    engine.send_all({"position startpos", "go wtime 41 btime 41"});
    auto const end = engine.wait();
    ASSERT_TRUE(end.has_value());
    EXPECT_EQ(end->signal, SIGFPE);
}

TEST(ProcessSearchTest, StopWithoutASearchIsDropped) {
    EngineProcess engine;
    engine.send_all({"stop", "ponderhit", "stop", "stop", "isready"});
    auto const lines = engine.read_until("readyok");
    // The ponderhit makes the state one that a stop answers, with the empty move.
    ASSERT_EQ(lines.size(), 2U);
    EXPECT_EQ(lines[0].text, "bestmove 0000");
    EXPECT_EQ(lines[1].text, "readyok");
}

TEST(ProcessEvalTest, TheReportIsWrittenToTheByte) {
    EngineProcess engine;
    for (data_block_t const& block : read_data_blocks("eval_reports.txt")) {
        std::string const fen = block.front().substr(std::string("position ").size());
        engine.send_all({"position fen " + fen, "eval", "isready"});
        std::string text;
        for (auto const& line : engine.read_until("readyok")) {
            text += line.text + "\n";
        }
        std::string expected;
        for (std::size_t i = 1; i < block.size(); ++i) {
            expected += block[i].substr(1) + "\n";
        }
        EXPECT_EQ(text, expected + "readyok\n") << fen;
    }
}

TEST(ProcessBenchTest, TheFenIsPrintedBeforeTheSearchBegins) {
    EngineProcess engine;
    engine.send("bench");
    auto const deadline = EngineProcess::clock::now() + EngineProcess::default_timeout;
    while (engine.unfinished_line().empty() && EngineProcess::clock::now() < deadline) {
        std::this_thread::sleep_for(1ms);
    }
    EXPECT_EQ(engine.unfinished_line(), "position: " + start_fen + "\t");
}

#if !ORVELIN_SHORT_TESTS
TEST(ProcessBenchTest, TheReportIsWrittenToTheByteButForTheTimes) {
    EngineProcess engine;
    engine.send("bench");
    lines_t lines;
    for (int i = 0; i < 8; ++i) {
        auto const line = engine.read_line(600s);
        ASSERT_TRUE(line.has_value());
        lines.push_back(line->text);
    }
    auto const result = [](std::string const& fen, std::string const& nodes,
                           std::string const& tail) {
        return "position: " + fen + "\t  depth=12  nps=\\d+  nodes=" + nodes + "  time=[0-9.]+  " +
               tail;
    };
    lines_t const expected{
        result(positions::start, "1172417", "ebf=2.8  eval=74  bestmove e2e4"),
        result("rnbqkbnr/pppppppp/8/8/8/8/PPPPPPPP/RNBQKBNR w - - 0 1", "443654",
               "ebf=2.4  eval=32  bestmove d2d4"),
        result(positions::last_of_bench, "414152", "ebf=2.3  eval=313  bestmove c5c6"),
        "-------------------------------------",
        "nodes: \t2030223",
        "time: \t\\d+",
        "nps:  \t\\d+",
        "-------------------------------------",
    };
    for (std::size_t i = 0; i < expected.size(); ++i) {
        EXPECT_TRUE(matches(lines[i], expected[i])) << lines[i];
    }
    EXPECT_EQ(final_fen(engine), positions::last_of_bench);
}
#endif

}  // namespace
}  // namespace orvelin::test
